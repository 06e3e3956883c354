// A response study: its basin, and the pairs of changes.
#pragma once

#include "base/units.h"
#include "engine/batch_dialogs.h"
#include "search/study_file.h"
#include "studies/response.h"

#include <chrono>
#include <filesystem>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// What a response is asked for.
struct ResponsePlan {
    std::filesystem::path basin = {};
    std::string simulation = {};
    std::string winter_end = {};            ///< yyyy-mm-dd
    std::vector<float> temperature = {};    ///< added, °C or °F; each once
    std::vector<float> precipitation = {};  ///< factors; each once
    std::chrono::milliseconds wait = {};
};

/// What the points of a response are of.
struct ResponseHead {
    std::string basin;
    std::string simulation;
    DayCount winter_end = 0;
    Units units = Units::Metric;
};

/// The basin of a response, and all its pairs.
struct ResponseStudy {
    ResponseHead head;
    std::shared_ptr<const StudyBasin> basin;
    std::vector<ClimateChange> pairs;

    [[nodiscard]] int zones() const { return static_cast<int>(basin->inputs.zones); }
};

/// Reads the basin, which is not changed; nothing after a report.
/// @throws StoreError
[[nodiscard]] std::optional<ResponseStudy> read_response_study(const ResponsePlan& plan,
                                                               BatchDialogs& dialogs);

/// The first line of a file with these pairs of the study.
[[nodiscard]] StudyTitle response_title(const ResponseStudy& study, const ResponsePlan& plan,
                                        const RunSpan& span);

}  // namespace nivora
