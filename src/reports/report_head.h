// The lines above the tables of a report.
#pragma once

#include "base/calendar.h"
#include "reports/report_lines.h"

#include <optional>
#include <string>

namespace nivora {

/// What the head of a daily table says about basin, run and moment.
struct ReportHead {
    std::string basin_name;
    std::string zone_letter;  ///< empty for a basin-wide table
    DayCount start = 0;
    DayCount end = 0;
    std::string run_number;           ///< as the simulation grid shows it
    std::optional<int> climate_step;  ///< 1 to 6 in a climate evaluation
    bool no_snow = false;
    std::string file;  ///< the basin's file as the user knows it
    std::string simulation;
    std::string scenario;  ///< shown in a climate evaluation alone
    DayCount today = 0;
};

/// The width of a table's head without months, or with up to four.
inline constexpr std::size_t k_narrow_head = 73;

/// Writes the head of a table of `width` characters, its title and the empty line below it.
void write_report_head(ReportLines& lines, const ReportHead& head, const std::string& title,
                       std::size_t width);

/// "Run: 3", or "Run/Step: 3/6" in a climate evaluation.
[[nodiscard]] std::string run_mark(const std::string& run_number, std::optional<int> climate_step);

/// Ends the page of a report: two empty lines, the line with moment, version and page number, a form feed.
///
/// @param pages the pages that were ended before; one more afterwards
void end_report_page(ReportLines& lines, int& pages, double now);

/// Writes a simulation's comments, a line each.
void write_comment_lines(ReportLines& lines, const std::string& comments);

/// The line that ends a block of a daily table, or a zone's table.
void end_report_block(ReportLines& lines);

}  // namespace nivora
