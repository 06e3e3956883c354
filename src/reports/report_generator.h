// The report file of one request: one report after another.
#pragma once

#include "reports/input_summary.h"

#include <filesystem>
#include <span>

namespace nivora {

/// The reports of one request as one text. Lines end with CR LF; page numbers run on over all reports.
class ReportGenerator {
public:
    /// @param sources        basin, run and time, which must not change during the request
    /// @param figures        the results of the last run that its table does not hold
    /// @param climate_report the deficit and gain report, which report 8 copies
    ReportGenerator(const ReportSources& sources, const RunFigures& figures,
                    std::filesystem::path climate_report);

    /// Tells which reports will be added, so that they share the reading of the tables. Not required.
    void expect(std::span<const Report> reports);

    /// Adds a report. @return the message if it is refused or fails; the text is then unchanged
    [[nodiscard]] std::optional<Message> add(Report report);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] int Report_Page() const { return pages_; }

private:
    void write(Report report, ReportLines& lines, int& pages);

    const ReportSources& sources_;
    const RunFigures& figures_;
    std::filesystem::path climate_report_;
    ReportTables tables_;
    std::string text_;
    int pages_ = 0;
};

/// What came of a request.
struct ReportRequest {
    std::string text;                ///< the reports before the refused one
    std::optional<Message> refusal;  ///< why it ended early
    int made = 0;                    ///< the number of reports in the text
};
/// Makes reports in ascending order until one is refused or fails.
[[nodiscard]] ReportRequest make_reports(ReportGenerator generator, std::span<const Report> reports);

}  // namespace nivora
