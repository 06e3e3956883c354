#include "prep/sim_options.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/single.h"
#include "prep/daily_records.h"
#include "prep/simulation_grid.h"
#include "prep/simulation_names.h"
#include "store/basin_marks.h"
#include "store/run_period.h"
#include "store/scenario_placeholder.h"
#include "store/simulation_days.h"

#include <cmath>
#include <stdexcept>

namespace nivora {
namespace {

constexpr CivilDate k_default_start{1980, 10, 1};
constexpr CivilDate k_default_end{1981, 9, 30};

constexpr const char* k_reserved_name =
    "The simulation has a name that its parameter table can't have. Cancel, and add it under another name.";

constexpr std::array<const char*, k_first_values> k_value_captions{
    "Degree Day Factor:",          "Critical Temperature:",       "Temperature Lapse Rate:",
    "Runoff Coefficients (Snow):", "Runoff Coefficients (Rain):", "Rainfall Contributing Area:",
    "Lag Time to Gage (hr):",      "X recession coefficient:",    "Y recession coefficient:"};

std::string& box(SimOptionsForm& form, FirstValue which) {
    return form.first_values.at(static_cast<std::size_t>(which));
}

const std::string& box(const SimOptionsForm& form, FirstValue which) {
    return form.first_values.at(static_cast<std::size_t>(which));
}

/// A coefficient as it was typed: the parameter table holds it in a Double, but most values came
/// from a Single.
std::string coefficient_text(double value) {
    const auto single = static_cast<float>(value);
    return as_double(single) == value ? single_text(single) : double_text(value);
}

void fill_first_values(SimOptionsForm& form, const ParameterRow& row) {
    box(form, FirstValue::An) = single_text(row.an);
    box(form, FirstValue::Tcrit) = single_text(row.tcrit);
    box(form, FirstValue::LapseRate) = single_text(row.lapse_rate);
    box(form, FirstValue::Cs) = single_text(row.cs);
    box(form, FirstValue::Cr) = single_text(row.cr);
    box(form, FirstValue::RCA) = row.rca ? std::to_string(*row.rca) : std::string{};
    box(form, FirstValue::LagTime) = single_text(row.lag_hours);
    box(form, FirstValue::Xcoeff) = coefficient_text(row.xcoeff);
    box(form, FirstValue::Ycoeff) = coefficient_text(row.ycoeff);
}

bool is_by_zone(const std::optional<Distribution>& cell) { return cell == Distribution::ByZone; }

SimOptionsForm form_of(const Simulation& row) {
    SimOptionsForm form;
    form.name = row.name;
    form.run_number = row.text(2);
    form.start = Date_Size(row.text(3));
    form.end = Date_Size(row.text(4));
    form.units = row.units.value_or(Units::Metric);
    form.temperature_values = row.temperature_values.value_or(0);
    form.by_zone = {is_by_zone(row.temperature),          is_by_zone(row.precipitation),
                    is_by_zone(row.lapse_rate),           is_by_zone(row.runoff_coefficients),
                    is_by_zone(row.critical_temperature), is_by_zone(row.recession)};
    form.initial_runoff = row.text(13);
    form.threshold = row.text(14);
    form.comments = row.text(17);
    box(form, FirstValue::Xcoeff) = row.text(15);
    box(form, FirstValue::Ycoeff) = row.text(16);
    return form;
}

SimOptionsForm form_of(const SimulationRecord& record) {
    SimOptionsForm form = form_of(record.definition);
    fill_first_values(form, record.first_values);
    return form;
}

/// The first row of a simulation's parameter table in its period; nothing if there is none.
std::optional<ParameterRow> first_day(BasinDatabase& database, const Simulation& simulation) {
    if (!simulation.start || !simulation.end) return std::nullopt;
    return first_parameters(database, simulation.name, {*simulation.start, *simulation.end});
}

/// Shows the values that a later edit would overwrite, or says that there are none.
void show_first_day(const PrepContext& context, BasinDatabase& database, const Simulation& simulation,
                    SimOptionsForm& form) {
    try {
        const auto row = first_day(database, simulation);
        if (!row) {
            form.rebuilds_table = true;
            context.dialogs.stop(
                "Missing/empty parameter table for this simulation.  "
                "The table will be rebuilt when you click 'Accept'.",
                "Missing parameter table");
            return;
        }
        fill_first_values(form, *row);
        form.values_of_first_day = true;
    } catch (const StoreError& error) {
        context.dialogs.stop(error.what());
    }
}

std::optional<float> single_cell(const std::string& text) {
    const auto number = exact_number(text);
    if (!number || std::isinf(static_cast<float>(*number))) return std::nullopt;
    return static_cast<float>(*number);
}

std::optional<std::int16_t> integer_cell(const std::string& text) {
    const auto number = exact_number(text);
    return number ? to_integer16(*number) : std::nullopt;
}

/// Whether the parameter table holds this first value as a whole number.
bool is_whole(FirstValue which) { return which == FirstValue::RCA || which == FirstValue::LagTime; }

/// A first value; nothing if the parameter table can't hold it.
std::optional<double> table_value(const SimOptionsForm& form, FirstValue which) {
    const auto number = exact_number(box(form, which));
    if (!number || std::isinf(static_cast<float>(*number)) || (is_whole(which) && !to_integer16(*number)))
        return std::nullopt;
    return number;
}

/// A sentence about a box. @param caption as the window shows it, with its colon
std::string box_fault(std::string caption, const std::string& text, const std::string& refusal,
                      const char* needed) {
    caption.pop_back();
    if (text.find_first_not_of(" /_") == std::string::npos)
        return "The box '" + caption + "' is empty; it needs " + needed + ".";
    return "The box '" + caption + "' holds '" + text + "': " + refusal + ".";
}

std::string date_fault(const char* caption, const std::string& text) {
    return box_fault(caption, text, date_refusal(text), "a date, mm/dd/yyyy");
}

std::string first_value_fault(const SimOptionsForm& form, FirstValue which) {
    const std::string& text = box(form, which);
    return box_fault(first_value_caption(which), text,
                     is_whole(which) ? integer_refusal(text) : single_refusal(text),
                     is_whole(which) ? "a whole number" : "a number");
}

float single_value(const std::string& text) { return single_cell(text).value_or(k_missing); }

ParameterRow first_values_of(const SimOptionsForm& form) {
    ParameterRow row;
    row.an = single_value(box(form, FirstValue::An));
    row.tcrit = single_value(box(form, FirstValue::Tcrit));
    row.lapse_rate = single_value(box(form, FirstValue::LapseRate));
    row.cs = single_value(box(form, FirstValue::Cs));
    row.cr = single_value(box(form, FirstValue::Cr));
    row.rca = integer_cell(box(form, FirstValue::RCA));
    row.lag_hours = single_value(box(form, FirstValue::LagTime));
    const auto missing = as_double(k_missing);
    row.xcoeff = exact_number(box(form, FirstValue::Xcoeff)).value_or(missing);
    row.ycoeff = exact_number(box(form, FirstValue::Ycoeff)).value_or(missing);
    return row;
}

std::optional<Period> period_of(const SimOptionsForm& form) {
    const auto start = read_date(form.start);
    const auto end = read_date(form.end);
    if (!start || !end) return std::nullopt;
    return Period{*start, *end};
}

/// The definition's row in the grid; it becomes the active row. An overwritten simulation keeps its row,
/// since two rows of one name would share one parameter table; otherwise the grid gets a new row.
Simulation* go_to_row(BasinState& basin, SimOptionsMode mode, SimOptionsForm& form) {
    if (!form.grid_row) {
        if (mode == SimOptionsMode::Edit) return nullptr;
        form.grid_row = find_simulation(basin, form.name);
    }
    if (!form.grid_row) {
        basin.simulations.emplace_back();
        form.grid_row = basin.simulations.size() - 1;
    }
    if (*form.grid_row >= basin.simulations.size()) return nullptr;
    basin.current_row = form.grid_row;
    return basin.current_simulation();
}

void write_cells_up_to_units(Simulation& row, const SimOptionsForm& form, const Period& period) {
    row.name = form.name;
    row.run_number = integer_cell(form.run_number);
    row.start = period.start;
    row.end = period.end;
    row.units = form.units;
}

void write_other_cells(Simulation& row, const SimOptionsForm& form) {
    const auto distribution = [&](std::size_t item) {
        return form.by_zone.at(item) ? Distribution::ByZone : Distribution::Basinwide;
    };
    row.temperature_values = static_cast<std::int16_t>(form.temperature_values);
    row.temperature = distribution(0);
    row.precipitation = distribution(1);
    row.lapse_rate = distribution(2);
    row.runoff_coefficients = distribution(3);
    row.critical_temperature = distribution(4);
    row.recession = distribution(5);
    row.initial_runoff = single_cell(form.initial_runoff);
    row.precipitation_threshold = single_cell(form.threshold);
    row.initial_x = exact_number(box(form, FirstValue::Xcoeff));
    row.initial_y = exact_number(box(form, FirstValue::Ycoeff));
    row.comments.reset();
    if (!form.comments.empty()) row.comments = form.comments;
}

/// Whether the units of the definition may become those of the basin, if it has none yet.
bool units_confirmed(const PrepContext& context, const Simulation& row) {
    if (context.basin.basin_units != Units::NotFixed) return true;
    const Answer answer = context.dialogs.message(
        {.text =
             "Once units are established within a basin, any additional simulations for the basin must use "
             "the same units.  Continue?",
         .title = "Are your units correct?",
         .buttons = Buttons::OkCancel});
    if (answer == Answer::Cancel) return false;
    context.basin.basin_units = row.units.value_or(Units::Metric);
    context.basin.Units_Code = context.basin.basin_units;
    return true;
}

/// Fills the parameter table; afterwards the mode is that of the daily variables. @return the user's answer
Answer build_parameter_table(const PrepContext& context, BasinDatabase& database, const std::string& name) {
    context.prep.Data_View = DataView::Parameters;
    const Answer answer = Build_Daily_Records(context, database, name);
    context.prep.Data_View = DataView::PhysicalData;
    return answer;
}

/// Fills the parameter table, then the daily variables. @return the last answer
Answer build_tables(const PrepContext& context, BasinDatabase& database, const std::string& name) {
    const Answer first = build_parameter_table(context, database, name);
    // Intended: the daily variables are filled even if the parameter table was not.
    const Answer second = Build_Daily_Records(context, database);
    return second == Answer::Ok ? first : second;
}

/// Recreates the parameter table of an edited simulation, or fills one that has no day of the period.
Answer rebuild_table(const PrepContext& context, BasinDatabase& database, const std::string& name) {
    if (!database.has_table(name)) {
        if (is_fixed_table(name) || simulation_name_problem(name))
            throw std::invalid_argument(k_reserved_name);
        database.create_table(parameter_table(name));
        database.create_daily_index(name);
    }
    return build_parameter_table(context, database, name);
}

/// Fills the tables of the definition: both for a new simulation, a missing parameter table for an edited
/// one, none for an import, which has filled its own.
Answer complete_tables(const PrepContext& context, BasinDatabase& database, const SimOptionsForm& form) {
    if (context.prep.SimOptions_Mode == SimOptionsMode::Add)
        return build_tables(context, database, form.name);
    if (form.rebuilds_table) return rebuild_table(context, database, form.name);
    return Answer::Ok;
}

bool invalid_data(Dialogs& dialogs, const std::string& reason) {
    refuse_definition(dialogs, reason);
    return false;
}

}  // namespace

UnitTexts unit_texts(Units units) {
    const UnitWords& words = unit_words(units);
    return {.area_word = words.depth,
            .flow_letter = words.length_letter,
            .default_threshold = units == Units::English ? "2.36" : "6.00"};
}

bool first_values_count(SimOptionsMode mode, const SimOptionsForm& form) {
    return mode == SimOptionsMode::Add || form.rebuilds_table;
}

std::string first_values_note(SimOptionsMode mode, const SimOptionsForm& form) {
    if (first_values_count(mode, form)) return {};
    return "The parameter table has values of its own, which this window does not change. "
           "Change them with Data, Parameters in the main window.";
}

std::optional<FirstValue> faulty_first_value(const SimOptionsForm& form) {
    for (std::size_t value = 0; value < k_first_values; ++value) {
        const auto which = static_cast<FirstValue>(value);
        if (!table_value(form, which)) return which;
    }
    return std::nullopt;
}

const char* first_value_caption(FirstValue which) {
    return k_value_captions.at(static_cast<std::size_t>(which));
}

std::string definition_fault(SimOptionsMode mode, const SimOptionsForm& form) {
    if (!read_date(form.start)) return date_fault("Start Date:", form.start);
    if (!read_date(form.end)) return date_fault("End Date:", form.end);
    if (!first_values_count(mode, form)) return {};
    const auto which = faulty_first_value(form);
    return which ? first_value_fault(form, *which) : std::string{};
}

void refuse_definition(Dialogs& dialogs, const std::string& reason) {
    dialogs.stop("Missing/invalid data\n" + reason);
}

SimulationRecord new_simulation_record(const BasinState& basin, const std::string& name) {
    SimulationRecord record;
    record.definition.name = name;
    record.definition.start = day_count(k_default_start);
    record.definition.end = day_count(k_default_end);
    if (basin.basin_units != Units::NotFixed) record.definition.units = basin.basin_units;
    record.definition.comments = "Comments concerning the simulation go here";
    return record;
}

SimOptionsForm open_sim_options(const PrepContext& context, BasinDatabase& database) {
    const PrepState& prep = context.prep;
    const Simulation* row = context.basin.current_simulation();
    if (prep.SimOptions_Mode == SimOptionsMode::Edit && row != nullptr) {
        SimOptionsForm form = form_of(*row);
        form.grid_row = context.basin.current_row;
        show_first_day(context, database, *row, form);
        return form;
    }
    SimOptionsForm form = form_of(prep.working_record);
    // Showing the units also sets their default threshold, but only for a simulation that is added.
    if (prep.SimOptions_Mode == SimOptionsMode::Add && form.threshold.empty())
        form.threshold = unit_texts(form.units).default_threshold;
    return form;
}

bool accept_sim_options(const PrepContext& context, BasinDatabase& database, SimOptionsForm& form) {
    BasinState& basin = context.basin;
    PrepState& prep = context.prep;
    const auto period = period_of(form);
    if (!period) return invalid_data(context.dialogs, definition_fault(prep.SimOptions_Mode, form));
    prep.Daily_Start = period->start;
    prep.Daily_End = period->end;
    if (!is_run_period(period->start, period->end)) {
        context.dialogs.stop("Date range error!");
        return false;
    }
    if (const auto fault = definition_fault(prep.SimOptions_Mode, form); !fault.empty())
        return invalid_data(context.dialogs, fault);
    Simulation* row = go_to_row(basin, prep.SimOptions_Mode, form);
    if (row == nullptr) {
        return invalid_data(context.dialogs, "No row of the simulation grid is selected for '" + form.name +
                                                 "'. Cancel, and select the simulation first.");
    }
    write_cells_up_to_units(*row, form, *period);
    mark_input_changed(basin);
    // Intended: a new row stays in the grid even if the user answers No to the units.
    if (!units_confirmed(context, *row)) return false;
    write_other_cells(*row, form);
    prep.working_record.first_values = first_values_of(form);
    try {
        if (complete_tables(context, database, form) == Answer::Cancel) return false;
        ensure_scenario_placeholder(database, form.name);
    } catch (const StoreError& error) {
        return invalid_data(context.dialogs, error.what());
    } catch (const std::invalid_argument&) {
        return invalid_data(context.dialogs, k_reserved_name);
    }
    basin.Current_Sim_Name = form.name;
    basin.Current_Start = period->start;
    basin.Current_End = period->end;
    return true;
}

}  // namespace nivora
