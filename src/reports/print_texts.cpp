#include "reports/print_texts.h"

#include "base/text.h"
#include "reports/page_head.h"
#include "reports/print_mark_up.h"

namespace nivora {
namespace {

/// Mark-up that shows a name on one line.
std::string name_of(const std::string& name) { return mark_up_text(one_line(name)); }

std::string date_of(const std::optional<DayCount>& day) { return day ? long_date_text(*day) : std::string{}; }

}  // namespace

std::string daily_values_title(const std::string& simulation) {
    return "/lSimulation: " + name_of(simulation);
}

std::string grid_print_header(const std::string& title, const std::string& basin_name, double now) {
    return "/fb0/cHollin Flow Model (Nivora)/r" + short_date_text(whole_day(now)) + " " + time_text(now) +
           "/n/cVersion " + k_report_version + "/n/c" + title + "/n/n/nBasin name:   " + name_of(basin_name) +
           "/n";
}

std::string scenario_heading(const ScenarioHeading& heading) {
    return "/nBasin name:   " + name_of(heading.basin_name) +
           "/nSimulation:   " + name_of(heading.simulation) +
           "/nClimate Scenario:  " + name_of(heading.scenario) +
           "/n/nStarting Date:   " + date_of(heading.start) + "/nEnding Date:   " + date_of(heading.end) +
           "/nWinter End Date:  " + date_of(heading.winter_end) + "/n/n/fu1Comments/fu0/n" +
           mark_up_text(heading.comments);
}

std::string scenario_legend() {
    return "/fb0/lVariable or Parameter - the variable or parameter affected by corresponding edit action/n"
           "Starting Date - the starting date of the edit action/n"
           "Ending Date - the ending date of the edit action/n"
           "Edit action - the climate change modifying action to employ/n"
           "Edit Factor - the quantative value employed by the edit action/n"
           "  Signed constant ADDed to each day in the time period (T+4, T-2)/n"
           "  % constant to multiply each daily P value by (P*1.2)/n"
           "  # of days to SHIFT forward or backward in time/n"
           "  Normalize temperature//precipitation using long-term monthly averages)/n"
           "Zone - the zone or zones affected by the edit/n/n/n/n/n";
}

std::string scenario_footer(const std::string& basin_file) {
    return "/fb0/cBasin Filename:  " + name_of(basin_file);
}

}  // namespace nivora
