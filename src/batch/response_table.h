// What came of each pair of changes: as a line of a CSV file, as a printed table, and as JSON.
#pragma once

#include "batch/json.h"
#include "store/run_period.h"
#include "studies/response.h"

#include <cstddef>
#include <iosfwd>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The figures of one climate.
struct ResponseFigures {
    std::optional<float> winter;  ///< runoff, 10^6 m³ or ft³
    std::optional<float> summer;
    std::optional<float> year;
    FlowFigures flow;
    LastSnow snow;  ///< by zone
};

/// A pair and what came of it.
struct ResponsePoint {
    std::size_t index = 0;
    ClimateChange change;
    std::string problem;  ///< why it was not done; empty if it was
    ResponseFigures present;
    ResponseFigures changed;
    std::vector<RunNote> notes;  ///< empty for a point that was read from a file
    std::size_t note_count = 0;

    [[nodiscard]] bool done() const { return problem.empty(); }
};

[[nodiscard]] ResponsePoint response_point(std::size_t index, const StudyBasin& study,
                                           const ClimateResponse& response);

/// The line of names for a basin with this number of zones, with its end.
[[nodiscard]] std::string response_names(int zones);
/// A point's line. Every figure stands beside that of the present climate and the difference,
/// which counts days later; an unknown one is empty.
[[nodiscard]] std::string response_line(const ResponsePoint& point, int zones);
/// Reads a line without its end; nothing where it is damaged.
[[nodiscard]] std::optional<ResponsePoint> read_response_line(std::string_view line, int zones);

/// What the points are of.
struct ResponseHead {
    std::string basin;
    std::string simulation;
    DayCount winter_end = 0;
    Units units = Units::Metric;
};

void print_response(const ResponseHead& head, const std::vector<ResponsePoint>& points, std::ostream& out);
[[nodiscard]] Json response_json(const ResponseHead& head, const std::vector<ResponsePoint>& points);

}  // namespace nivora
