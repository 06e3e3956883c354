#include "reports/report_head.h"

#include "base/text.h"
#include "reports/page_head.h"

#include <sstream>

namespace nivora {
namespace {

constexpr std::size_t k_text_column = 13;
constexpr const char* k_block_end = "\x01";

/// Ends a line with an item at its right edge.
void end_right(ReportLines& lines, const std::string& item, std::size_t width) {
    const std::size_t length = character_count(item);
    lines.tab(width > length ? width - length : 1).text(item).end_line();
}

}  // namespace

std::string run_mark(const std::string& run_number, std::optional<int> climate_step) {
    if (!climate_step) return "Run: " + run_number;
    return "Run/Step: " + run_number + "/" + std::to_string(*climate_step);
}

void write_report_head(ReportLines& lines, const ReportHead& head, const std::string& title,
                       std::size_t width) {
    lines.text("Hollin Flow Model");
    end_right(lines, std::string{"Version "} + k_report_version, width);
    lines.text("Basin: ").tab(k_text_column).text(head.basin_name);
    if (!head.zone_letter.empty()) lines.text("  --  Zone ").text(head.zone_letter);
    end_right(lines, long_date_text(head.today), width);
    lines.text("Period: ").tab(k_text_column).text(long_date_text(head.start));
    lines.text(" to ").text(long_date_text(head.end));
    end_right(lines, run_mark(head.run_number, head.climate_step), width);
    if (head.no_snow) end_right(lines, "Mode: 'No Snow'", width);
    lines.text("File: ").tab(k_text_column).line(head.file);
    lines.line("Simulation: " + head.simulation);
    if (head.climate_step) lines.line("Scenario  : " + head.scenario);
    lines.end_line();
    lines.end_line();
    lines.line(title);
    lines.end_line();
}

void end_report_page(ReportLines& lines, int& pages, double now) {
    lines.end_line();
    lines.end_line();
    int number = ++pages;  // counted before it is printed
    write_page_head(lines, number, now);
}

void end_report_block(ReportLines& lines) { lines.line(k_block_end); }

void write_comment_lines(ReportLines& lines, const std::string& comments) {
    std::istringstream text{comments};
    for (std::string line; std::getline(text, line);) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        lines.line(line);
    }
}

}  // namespace nivora
