#include "reports/report_period.h"

#include "base/text.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr Period k_no_days{.start = 1, .end = 0};

}  // namespace

bool is_last_run(const BasinState& basin, const RunState& run) {
    return !run.LastRunSimulation.empty() && same_name(run.LastRunSimulation, basin.Current_Sim_Name);
}

int reported_climate_step(const BasinState& basin, const RunState& run) {
    return is_last_run(basin, run) ? run.ClimateStep : 0;
}

Period ReportPeriod::covered() const { return start && end ? Period{*start, *end} : k_no_days; }

ReportPeriod report_period(const BasinState& basin, const RunState& run) {
    if (reported_climate_step(basin, run) > 0) return {.start = run.RunStart, .end = run.RunEnd};
    const Simulation* simulation = basin.current_simulation();
    if (simulation == nullptr) return {};
    return {.start = simulation->start, .end = simulation->end};
}

std::optional<PeriodProblem> period_problem(const BasinState& basin, const RunState& run) {
    if (basin.current_simulation() == nullptr)
        return PeriodProblem{"no simulation is selected", "Select one in the simulation table"};
    const ReportPeriod period = report_period(basin, run);
    if (period.covered().days() > 0) return std::nullopt;
    const std::string name = one_line(basin.Current_Sim_Name);
    if (period.start && period.end) {
        return PeriodProblem{fmt::format("the simulation '{}' starts on {} and ends on {}", name,
                                         long_date_text(*period.start), long_date_text(*period.end)),
                             "Correct the dates in the simulation table"};
    }
    std::string missing = period.start ? "no end date" : "no start date";
    if (!period.start && !period.end) missing = "no start date and no end date";
    return PeriodProblem{fmt::format("the simulation '{}' has {}", name, missing),
                         "Enter what is missing in the simulation table"};
}

}  // namespace nivora
