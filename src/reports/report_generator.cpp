#include "reports/report_generator.h"

#include "base/durable_file.h"
#include "reports/data_description.h"
#include "store/store_error.h"

#include <algorithm>
#include <fstream>
#include <sstream>

namespace nivora {
namespace {

[[noreturn]] void refuse_climate_report(const std::filesystem::path& file) {
    throw StoreError(StoreFault::Missing,
                     "The climate change report " + path_text(file) +
                         " cannot be read. Run the climate change evaluation again to write it.");
}

/// Copies a text file line by line, each line ended by CR LF. A pipe or a folder of that name is refused: one
/// may never end, the other reads as an empty file.
void copy_lines(ReportLines& lines, const std::filesystem::path& file) {
    std::error_code unknown;  // a name that can't even be looked up is no regular file
    if (!std::filesystem::is_regular_file(file, unknown)) refuse_climate_report(file);
    std::ifstream input{file, std::ios::binary};
    if (!input) refuse_climate_report(file);
    for (std::string line; std::getline(input, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.line(line);
    }
    if (input.bad()) refuse_climate_report(file);
}

}  // namespace

ReportGenerator::ReportGenerator(const ReportSources& sources, const RunFigures& figures,
                                 std::filesystem::path climate_report)
    : sources_(sources), figures_(figures), climate_report_(std::move(climate_report)) {}

void ReportGenerator::write(Report report, ReportLines& lines, int& pages) {
    switch (report) {
        case Report::DataDescription: return write_data_description(lines, pages, sources_);
        case Report::InputSummary: return write_input_summary(lines, pages, sources_, figures_);
        case Report::DeficitGain: return copy_lines(lines, climate_report_);
        default: return write_daily_report(lines, pages, report, sources_);
    }
}

std::optional<Message> ReportGenerator::add(Report report) {
    if (auto refusal = report_refusal(report, sources_.basin, sources_.run)) return refusal;
    ReportLines lines;
    int pages = pages_;
    try {
        write(report, lines, pages);
    } catch (const StoreError& error) {
        return Message{.text = error.what(),
                       .title = report_title(report, reported_climate_step(sources_.basin, sources_.run)),
                       .icon = Icon::Stop};
    }
    text_ += lines.written();
    pages_ = pages;
    return std::nullopt;
}

ReportRequest make_reports(ReportGenerator generator, std::span<const Report> reports) {
    std::vector<Report> ordered{reports.begin(), reports.end()};
    std::sort(ordered.begin(), ordered.end());
    ordered.erase(std::unique(ordered.begin(), ordered.end()), ordered.end());
    ReportRequest request;
    for (const Report report : ordered) {
        request.refusal = generator.add(report);
        if (request.refusal) break;
        ++request.made;
    }
    request.text = generator.text();
    return request;
}

}  // namespace nivora
