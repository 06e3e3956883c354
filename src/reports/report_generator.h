// The report file of one request: several reports behind each other.
#pragma once

#include "reports/input_summary.h"

#include <filesystem>
#include <span>

namespace nivora {

/// The reports of one request in one text, lines ended by CR LF, pages counted through.
class ReportGenerator {
public:
    /// @param sources        basin, run and moment, which stay as they are for the whole request
    /// @param figures        what the last run left beside its table
    /// @param climate_report the deficit and gain report, which report 8 copies
    ReportGenerator(const ReportSources& sources, const RunFigures& figures,
                    std::filesystem::path climate_report);

    /// Adds a report. @return what is told where it was refused or failed; the text is as it was then
    [[nodiscard]] std::optional<Message> add(Report report);

    [[nodiscard]] const std::string& text() const { return text_; }
    [[nodiscard]] int Report_Page() const { return pages_; }

private:
    void write(Report report, ReportLines& lines, int& pages);

    const ReportSources& sources_;
    const RunFigures& figures_;
    std::filesystem::path climate_report_;
    std::string text_;
    int pages_ = 0;
};

/// Makes reports in ascending order until one is refused or fails.
struct ReportRequest {
    std::string text;                ///< the reports before the refused one
    std::optional<Message> refusal;  ///< why it ended early
    int made = 0;
};
[[nodiscard]] ReportRequest make_reports(ReportGenerator generator, std::span<const Report> reports);

}  // namespace nivora
