// Report 7: the input summary with the statistics of the run.
#pragma once

#include "reports/daily_reports.h"

#include <optional>
#include <vector>

namespace nivora {

/// The results of a run that its results table does not hold. The report prints nothing for a missing one.
/// Depths are cm or inches, discharges m³/s or ft³/s, volumes 10^6 m³ or 10^6 ft³.
struct RunFigures {
    std::optional<float> initial_runoff;  ///< before the first day of the reported period
    std::optional<float> measured_volume;
    std::optional<float> average_measured;
    std::optional<float> computed_volume;
    std::optional<float> average_computed;
    std::optional<float> volume_difference;  ///< percent
    std::optional<float> r2;
    /// New snow left after the last day's melt, zone 1 first.
    std::vector<float> ending_stores;
    /// The same at the end of the present summer of a climate evaluation, and of the changed one.
    std::vector<float> present_stores;
    std::vector<float> changed_stores;
};

/// The fields that the summary shows.
[[nodiscard]] ReportFields input_summary_fields(const ReportSources& sources);

/// Writes the summary on one page. @throws StoreError if the results table or a field is missing
void write_input_summary(ReportLines& lines, int& pages, const ReportSources& sources,
                         const RunFigures& figures, ReportTables& tables);

}  // namespace nivora
