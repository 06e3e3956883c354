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
    std::string zone_letter;        ///< empty for a basin-wide table
    std::optional<DayCount> start;  ///< a missing date is left blank
    std::optional<DayCount> end;
    std::string run_number;           ///< as the simulation grid shows it
    std::optional<int> climate_step;  ///< 1 to 6 in a climate evaluation
    bool no_snow = false;
    std::string file;  ///< the basin's file as the user knows it
    std::string simulation;
    std::string scenario;  ///< shown only in a climate evaluation
    DayCount today = 0;
};

/// The width of the head of a table with up to four months, and of a report without months.
inline constexpr std::size_t k_narrow_head = 73;

/// Writes the head of a table of `width` characters, its title and the empty line below it.
void write_report_head(ReportLines& lines, const ReportHead& head, const std::string& title,
                       std::size_t width);

/// "mm/dd/yyyy"; empty for a missing day.
[[nodiscard]] std::string head_date(std::optional<DayCount> day);

/// "Run: 3", or "Run/Step: 3/6" in a climate evaluation.
[[nodiscard]] std::string run_mark(const std::string& run_number, std::optional<int> climate_step);

/// Ends the page of a report: two empty lines, the line with time, version and page number, a form feed.
///
/// @param pages the number of pages before this one; counted up
void end_report_page(ReportLines& lines, int& pages, double now);

/// Writes the lines of a simulation's comments.
void write_comment_lines(ReportLines& lines, const std::string& comments);

/// Writes the line that ends a block of a daily table, or the table of a zone.
void end_report_block(ReportLines& lines);

}  // namespace nivora
