#include "reports/report_head.h"

#include "base/text.h"
#include "reports/page_head.h"

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

std::string head_date(std::optional<DayCount> day) { return day ? long_date_text(*day) : std::string{}; }

std::string run_mark(const std::string& run_number, std::optional<int> climate_step) {
    if (!climate_step) return "Run: " + run_number;
    return "Run/Step: " + run_number + "/" + std::to_string(*climate_step);
}

void write_report_head(ReportLines& lines, const ReportHead& head, const std::string& title,
                       std::size_t width) {
    lines.text("Hollin Flow Model");
    end_right(lines, std::string{"Version "} + k_report_version, width);
    lines.text("Basin: ").tab(k_text_column).user_text(head.basin_name);
    if (!head.zone_letter.empty()) lines.text("  --  Zone ").text(head.zone_letter);
    end_right(lines, long_date_text(head.today), width);
    lines.text("Period: ").tab(k_text_column).text(head_date(head.start));
    lines.text(" to ").text(head_date(head.end));
    end_right(lines, run_mark(head.run_number, head.climate_step), width);
    if (head.no_snow) end_right(lines, "Mode: 'No Snow'", width);
    lines.text("File: ").tab(k_text_column).user_text(head.file).end_line();
    lines.text("Simulation: ").user_text(head.simulation).end_line();
    if (head.climate_step) lines.text("Scenario  : ").user_text(head.scenario).end_line();
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
    for (const std::string& line : split_lines(comments)) lines.line(line);
}

}  // namespace nivora
