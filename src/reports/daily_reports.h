// The daily reports 1 to 6: which fields of which table they show.
#pragma once

#include "reports/daily_table.h"
#include "reports/report_catalogue.h"
#include "reports/report_tables.h"

namespace nivora {

/// The data of the reports of one request.
struct ReportSources {
    BasinDatabase& database;
    const BasinState& basin;
    const RunState& run;
    double now = 0.0;  ///< date and time that the reports show
};

/// The head of the reports of the current simulation.
[[nodiscard]] ReportHead report_head(const ReportSources& sources);

/// The fields that a daily report shows.
[[nodiscard]] ReportFields daily_report_fields(Report report, const ReportSources& sources);

/// Writes a daily report, which report_refusal does not refuse.
/// @throws StoreError if its table or a field is missing
void write_daily_report(ReportLines& lines, int& pages, Report report, const ReportSources& sources,
                        ReportTables& tables);

}  // namespace nivora
