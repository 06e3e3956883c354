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

/// Copies a text file line by line; each line ends with CR LF. A pipe or a folder of that name is refused: a
/// pipe may never end, and a folder reads as an empty file.
void copy_lines(ReportLines& lines, const std::filesystem::path& file) {
    std::error_code unknown;  // a name that cannot be looked up is not a regular file
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
    : sources_(sources),
      figures_(figures),
      climate_report_(std::move(climate_report)),
      tables_(sources.database, report_period(sources.basin, sources.run).covered()) {}

void ReportGenerator::expect(std::span<const Report> reports) {
    for (const Report report : reports) {
        if (report_refusal(report, sources_.basin, sources_.run)) continue;
        if (report == Report::InputSummary) tables_.expect(input_summary_fields(sources_));
        if (is_daily_report(report)) tables_.expect(daily_report_fields(report, sources_));
    }
}

void ReportGenerator::write(Report report, ReportLines& lines, int& pages) {
    switch (report) {
        case Report::DataDescription: return write_data_description(lines, pages, sources_);
        case Report::InputSummary: return write_input_summary(lines, pages, sources_, figures_, tables_);
        case Report::DeficitGain: return copy_lines(lines, climate_report_);
        default: return write_daily_report(lines, pages, report, sources_, tables_);
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
    generator.expect(ordered);
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
