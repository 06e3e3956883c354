// Report 7: the input summary with the statistics of the run.
#pragma once

#include "reports/daily_reports.h"

#include <optional>
#include <vector>

namespace nivora {

/// What a run leaves that its results table does not hold. What the run did not produce is missing, and the
/// report prints nothing for it. Depths are cm or inches, discharges m³/s or ft³/s, volumes 10^6 m³ or ft³.
struct RunFigures {
    std::optional<float> initial_runoff;  ///< of the first day of the reported period
    std::optional<float> measured_volume;
    std::optional<float> average_measured;
    std::optional<float> computed_volume;
    std::optional<float> average_computed;
    std::optional<float> volume_difference;  ///< percent
    std::optional<float> r2;
    std::vector<float> ending_stores;  ///< new snow left after the last day's melt, zone 1 first
    std::vector<float>
        present_stores;  ///< the same at the end of the present summer, of a climate evaluation
    std::vector<float> changed_stores;  ///< and of the changed one
};

/// Writes the summary on one page. @throws StoreError where the results are missing
void write_input_summary(ReportLines& lines, int& pages, const ReportSources& sources,
                         const RunFigures& figures);

}  // namespace nivora
