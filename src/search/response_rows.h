// What came of each pair of changes, as a line of a CSV file.
#pragma once

#include "engine/run_notes.h"
#include "studies/response.h"

#include <cstddef>
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

/// Changed minus present climate: volumes in their unit, days later.
struct ResponseChange {
    std::optional<float> winter;
    std::optional<float> summer;
    std::optional<float> year;
    std::optional<DayCount> median_day;
    std::optional<DayCount> centre;
    std::optional<DayCount> highest_day;
    std::optional<float> highest;
    std::vector<std::optional<DayCount>> snow;  ///< by zone
};

[[nodiscard]] ResponseChange change_of(const ResponseFigures& changed, const ResponseFigures& present);
[[nodiscard]] std::optional<DayCount> centre_day(const FlowFigures& flow);

[[nodiscard]] ResponsePoint response_point(std::size_t index, const StudyBasin& study,
                                           const ClimateResponse& response);

/// The line of names for a basin with this number of zones, with its end.
[[nodiscard]] std::string response_names(int zones);
/// A point's line. Every figure stands beside that of the present climate and the difference,
/// which counts days later; an unknown one is empty.
[[nodiscard]] std::string response_line(const ResponsePoint& point, int zones);
/// Reads a line without its end; nothing where it is damaged.
[[nodiscard]] std::optional<ResponsePoint> read_response_line(std::string_view line, int zones);

}  // namespace nivora
