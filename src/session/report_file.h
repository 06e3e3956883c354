// The report file beside the program, which holds the reports of one request.
#pragma once

#include "reports/report_catalogue.h"
#include "session/session.h"

#include <span>

namespace nivora {

inline constexpr const char* k_report_file_name = "NVRrpts.out";

/// A report file as it was written.
struct ReportFile {
    std::filesystem::path path;
    std::string text;  ///< with the marks that end pages and blocks
    int made = 0;      ///< the number of reports in it
};

/// The result of a request.
struct ReportFileOutcome {
    /// The new file, with the reports before a refused one; nothing if the old one was kept.
    std::optional<ReportFile> file;
    /// Why some reports, or all, were not made; nothing if all were.
    std::optional<Message> problem;
};

/// Makes reports of the open basin and its last run, and replaces the report file with them: it is complete
/// at every moment, the old one or the new one.
///
/// @param program_folder where the report file and the report of the last climate evaluation are
/// @param now            date and time that the reports show
[[nodiscard]] ReportFileOutcome write_report_file(const Session& session,
                                                  const std::filesystem::path& program_folder,
                                                  std::span<const Report> reports, double now);

}  // namespace nivora
