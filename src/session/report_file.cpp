#include "session/report_file.h"

#include "base/durable_file.h"
#include "climate/winter_report.h"
#include "reports/report_generator.h"
#include "reports/run_figures.h"
#include "store/store_error.h"

namespace nivora {
namespace {

ReportRequest make_request(const Session& session, const std::filesystem::path& program_folder,
                           std::span<const Report> reports, double now) {
    BasinDatabase database{session.basin.Work_File, Access::ReadOnly};
    const ReportSources sources{database, session.basin, session.run, now};
    const RunFigures figures = run_figures(session.run);
    return make_reports(ReportGenerator{sources, figures, program_folder / k_winter_report_name}, reports);
}

Message stopped(const std::string& text) { return {.text = text, .title = "Reports", .icon = Icon::Stop}; }

}  // namespace

ReportFileOutcome write_report_file(const Session& session, const std::filesystem::path& program_folder,
                                    std::span<const Report> reports, double now) {
    const std::filesystem::path path = program_folder / k_report_file_name;
    try {
        ReportRequest request = make_request(session, program_folder, reports, now);
        // A basin may have this name, too, or a link of this name may lead to it.
        write_whole_file(path, request.text, {session.basin.Basin_File, session.basin.Work_File});
        return {.file = ReportFile{.path = path, .text = std::move(request.text), .made = request.made},
                .problem = std::move(request.refusal)};
    } catch (const FileError& error) {
        return {.file = std::nullopt,
                .problem = stopped(std::string{error.what()} +
                                   "\n\nThe reports were not produced, and the file is as it was. Make sure "
                                   "that no other program has it open and that it can be written to, then "
                                   "produce the reports again.")};
    } catch (const StoreError& error) {
        return {.file = std::nullopt, .problem = stopped(error.what())};
    }
}

}  // namespace nivora
