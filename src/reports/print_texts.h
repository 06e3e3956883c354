// The texts around a printed grid, in the mark-up of its print: /n a new line, /l /c /r left, centre and
// right, /fb and /fu bold and underline on (1) and off (0), /p the page number.
#pragma once

#include "base/calendar.h"

#include <optional>
#include <string>

namespace nivora {

inline constexpr const char* k_print_job_name = "Hollin Flow Model";
inline constexpr const char* k_grid_print_footer = "/fb0/cPage /p";
inline constexpr const char* k_climate_statistics_title = "Climate Change Statistics";
inline constexpr const char* k_scenario_title = "Climate Change Scenario";
inline constexpr const char* k_monthly_averages_title = "/lLong Term Monthly Averages";

/// The title of the daily values of a simulation.
[[nodiscard]] std::string daily_values_title(const std::string& simulation);

/// The header of every page: program, date and time, version, title and basin.
///
/// @param title in mark-up
/// @param now   date and time of the print
[[nodiscard]] std::string grid_print_header(const std::string& title, const std::string& basin_name,
                                            double now);

/// The text above the rows of a printed scenario.
struct ScenarioHeading {
    std::string basin_name = {};
    std::string simulation = {};
    std::string scenario = {};
    std::optional<DayCount> start = {};
    std::optional<DayCount> end = {};
    std::optional<DayCount> winter_end = {};
    std::string comments = {};
};
[[nodiscard]] std::string scenario_heading(const ScenarioHeading& heading);

/// The text below the rows: the meaning of each column.
[[nodiscard]] std::string scenario_legend();

/// The footer of a printed scenario.
[[nodiscard]] std::string scenario_footer(const std::string& basin_file);

}  // namespace nivora
