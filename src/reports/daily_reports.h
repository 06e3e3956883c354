// The daily reports 1 to 6: which columns they show of which table.
#pragma once

#include "reports/daily_table.h"
#include "reports/report_catalogue.h"

namespace nivora {

/// What the reports of one request are made of.
struct ReportSources {
    BasinDatabase& database;
    const BasinState& basin;
    const RunState& run;
    double now = 0.0;  ///< date and time that the reports bear
};

/// The days that reports show: those of the simulation, or of the climate step that was taken last.
struct ReportPeriod {
    DayCount start = 0;
    DayCount end = 0;
};
[[nodiscard]] ReportPeriod report_period(const BasinState& basin, const RunState& run);

/// The head of the reports of the current simulation.
[[nodiscard]] ReportHead report_head(const ReportSources& sources);

/// Writes a daily report. @throws StoreError where its table or a field is missing
void write_daily_report(ReportLines& lines, int& pages, Report report, const ReportSources& sources);

}  // namespace nivora
