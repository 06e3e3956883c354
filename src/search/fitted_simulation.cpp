#include "search/fitted_simulation.h"

#include "base/text.h"
#include "engine/named_run.h"
#include "prep/simulation_copies.h"
#include "store/basin_opening.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <span>

namespace nivora {
namespace {

/// The value of a parameter row that a variable stands for; null for a physical variable, and for the switch
/// of the contributing area and the recession, which have other types.
float ParameterRow::*single_parameter(StudyVariable variable) {
    switch (variable) {
        case StudyVariable::CriticalTemperature: return &ParameterRow::tcrit;
        case StudyVariable::LagTime: return &ParameterRow::lag_hours;
        case StudyVariable::LapseRate: return &ParameterRow::lapse_rate;
        case StudyVariable::DegreeDayFactor: return &ParameterRow::an;
        case StudyVariable::SnowCoefficient: return &ParameterRow::cs;
        case StudyVariable::RainCoefficient: return &ParameterRow::cr;
        default: return nullptr;
    }
}

void change_row(ParameterRow& row, const Adjustment& adjustment) {
    if (const auto single = single_parameter(adjustment.variable)) {
        adjust_values(std::span{&(row.*single), 1}, adjustment);
    } else if (adjustment.variable == StudyVariable::RecessionX) {
        adjust_values(std::span{&row.xcoeff, 1}, adjustment);
    } else if (adjustment.variable == StudyVariable::RecessionY) {
        adjust_values(std::span{&row.ycoeff, 1}, adjustment);
    } else if (adjustment.variable == StudyVariable::RainContributingArea) {
        float value = row.rca ? static_cast<float>(*row.rca) : k_missing;
        adjust_values(std::span{&value, 1}, adjustment);
        row.rca = is_missing(value) ? std::nullopt : std::optional{static_cast<std::int16_t>(value)};
    }
}

bool touches(const Adjustment& adjustment, const ParameterRow& row, const Period& period) {
    if (row.zone < 1 || row.zone > k_most_zones || !adjustment.zones.at(static_cast<std::size_t>(row.zone)))
        return false;
    const Period days = adjustment.days.value_or(period);
    return row.date >= std::max(days.start, period.start) && row.date <= std::min(days.end, period.end);
}

/// Changes the days of the simulation's period; the search knew no others.
void change_parameters(BasinDatabase& database, const std::string& name,
                       const std::vector<Adjustment>& adjustments, const Period& period) {
    const TableSchema table = parameter_table(name);
    for (Stored<ParameterRow>& stored : read_stored_rows<ParameterRow>(database, table)) {
        bool changed = false;
        for (const Adjustment& adjustment : adjustments) {
            if (!touches(adjustment, stored.row, period)) continue;
            change_row(stored.row, adjustment);
            changed = true;
        }
        if (changed) replace_row(database, table, stored);
    }
}

}  // namespace

std::string fitted_name_problem(const std::filesystem::path& basin, const std::string& simulation,
                                const std::string& name, const StudyProblem& problem,
                                std::chrono::milliseconds wait, BatchDialogs& dialogs) {
    for (const FreeRange& range : problem.ranges()) {
        if (is_physical(range.variable)) {
            return fmt::format(
                "'{}' belongs to the basin and not to a simulation, so that --save-as can't store it.",
                study_variable_text(range.variable));
        }
    }
    BasinState state;
    const OpenBasin open = open_to_read(basin, wait, Check::All);
    if (!select_by_name(open.database(), basin, simulation, state, dialogs)) return "The simulation is gone.";
    if (const auto text = other_name_problem(open.database(), state, trimmed(name), std::nullopt))
        return fmt::format("--save-as {}: {}.", name, *text);
    return {};
}

bool store_fitted(const std::filesystem::path& basin, const std::string& simulation, const std::string& name,
                  const StudyProblem& problem, const std::vector<double>& numbers,
                  std::chrono::milliseconds wait, BatchDialogs& dialogs) {
    const std::string trimmed_name{trimmed(name)};
    BasinState state;
    PrepState prep;
    const OpenBasin open = open_to_write(basin, wait);
    BasinDatabase& database = open.database();
    if (!select_by_name(database, basin, simulation, state, dialogs)) return false;
    if (const auto text = other_name_problem(database, state, trimmed_name, std::nullopt)) {
        dialogs.report_problem("The simulation can't be stored",
                               fmt::format("--save-as {}: {}.", name, *text));
        return false;
    }
    std::vector<Adjustment> adjustments;
    for (std::size_t i = 0; i < numbers.size(); ++i)
        adjustments.push_back(problem.ranges()[i].at(numbers[i]));
    const RunState& run = problem.cases().front().basin->run;
    HeldTransaction transaction{database};
    const SimulationCopy copy =
        duplicate_simulation({state, prep, dialogs}, database, *state.current_row, trimmed_name);
    change_parameters(database, trimmed_name, adjustments, {run.RunStart, run.RunEnd});
    add_rows<Simulation>(database, template_table(k_simulation_index),
                         std::span{&state.simulations.at(copy.row), 1});
    transaction.commit();
    return true;
}

}  // namespace nivora
