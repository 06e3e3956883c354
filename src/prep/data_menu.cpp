#include "prep/data_menu.h"

#include "prep/daily_editor.h"
#include "prep/daily_records.h"
#include "store/basin_marks.h"
#include "store/run_period.h"
#include "store/table_io.h"

#include <stdexcept>

namespace nivora {
namespace {

/// The simulation name for the basin's whole record.
constexpr const char* k_all_days = "<All>";

/// What is checked before a view, and what is asked if days are missing.
struct Check {
    std::string table;
    Message question;
};

Check check_of(DataEntry entry, const std::string& name) {
    if (entry == DataEntry::Variables) {
        return {k_physical_data,
                {.text = "This simulation, " + name +
                         ", requires daily variables not found in the basin's physical database.\nAdd the "
                         "additional daily records?",
                 .title = "Incomplete physical database",
                 .buttons = Buttons::YesNo}};
    }
    return {name,
            {.text = "This simulation, " + name + ", is missing data.  Add the additional daily records?",
             .title = "Incomplete parameter table",
             .buttons = Buttons::YesNo}};
}

/// The period of the selected row, or that of the scanned table if the row has none.
std::optional<Period> requested_period(const Simulation* row, const RecordExtent& extent) {
    std::optional<DayCount> start;
    std::optional<DayCount> end;
    if (extent.count > 0) {
        start = extent.first;
        end = extent.last;
    }
    if (row != nullptr && row->start) start = row->start;
    if (row != nullptr && row->end) end = row->end;
    if (!start || !end) return std::nullopt;
    return Period{*start, *end};
}

/// Copies the dates of the selected row; false if it has none.
bool copy_dates_of_row(const PrepContext& context) {
    const Simulation* row = context.basin.current_simulation();
    if (row == nullptr) return false;
    if (!row->start || !row->end) {
        context.dialogs.stop("Please check the start/end dates for this simulation!");
        return false;
    }
    context.basin.Current_Start = row->start;
    context.basin.Current_End = row->end;
    if (*row->start <= *row->end) return true;
    context.dialogs.stop("Date range error!");
    return false;
}

void prepare_variables(PrepState& prep, const std::optional<Period>& period) {
    prep.Data_View = DataView::PhysicalData;
    prep.query = {.table = k_physical_data, .fields = daily_fields(DataView::PhysicalData), .period = period};
    prep.window_title = "Edit basin variables";
    prep.caption_prefix = "Basin variables for simulation ";
}

void prepare_parameters(PrepState& prep, const std::string& name, const Period& period) {
    prep.Data_View = DataView::Parameters;
    prep.query = {.table = name, .fields = daily_fields(DataView::Parameters), .period = period};
    prep.window_title = "Edit simulation parameters";
    prep.caption_prefix = "Parameter table for simulation ";
}

/// The date and the fields that follow it in the table, by their names in the file.
std::vector<std::string> result_fields(BasinDatabase& database) {
    std::vector<std::string> names{"Date"};
    const auto fields = database.table_fields(k_sim_results);
    for (std::size_t position = 2; position < fields.size(); ++position)
        names.push_back(fields[position].name);
    return names;
}

void prepare_results(PrepState& prep, BasinDatabase& database, const Period& period) {
    prep.query = {.table = k_sim_results, .fields = result_fields(database), .period = period};
    prep.Data_View = DataView::Results;
    prep.window_title = "Simulation results";
    prep.caption_prefix = "Calculated value table for simulation ";
}

DataOutcome prepare(const PrepContext& context, BasinDatabase& database, DataEntry entry,
                    const Period& period) {
    PrepState& prep = context.prep;
    const std::string& name = context.basin.Current_Sim_Name;
    switch (entry) {
        case DataEntry::SimulationDefinition:
            prep.working_record.definition.name = name;
            prep.SimOptions_Mode = SimOptionsMode::Edit;
            return DataOutcome::ShowDefinition;
        case DataEntry::Scenarios: return DataOutcome::ShowScenarios;
        case DataEntry::Variables:
            prepare_variables(prep, name == k_all_days ? std::nullopt : std::optional{period});
            break;
        case DataEntry::Parameters: prepare_parameters(prep, name, period); break;
        case DataEntry::Results: prepare_results(prep, database, period); break;
    }
    return DataOutcome::ShowEditor;
}

/// Whether the definition of a simulation without a table is requested: its window recreates the table.
bool is_definition_without_table(const BasinState& basin, BasinDatabase& database, DataEntry entry) {
    return entry == DataEntry::SimulationDefinition && basin.current_simulation() != nullptr &&
           !database.has_table(basin.Current_Sim_Name);
}

DataOutcome check_and_prepare(const PrepContext& context, BasinDatabase& database, DataEntry entry) {
    const BasinState& basin = context.basin;
    if (is_definition_without_table(basin, database, entry)) return prepare(context, database, entry, {});
    const Check check = check_of(entry, basin.Current_Sim_Name);
    const RecordExtent extent = scan_daily_table(database, check.table);
    const auto period = requested_period(basin.current_simulation(), extent);
    if (!period) return DataOutcome::Stopped;
    if (entry == DataEntry::Parameters && !is_run_period(period->start, period->end)) {
        context.dialogs.stop("Date range error!  366 ");
        return DataOutcome::Stopped;
    }
    if (extent.count < period->days() * basin.ZoneCount) {
        if (context.dialogs.message(check.question) == Answer::No) return DataOutcome::Stopped;
        // Intended: adds rows in the mode of the view that was opened last, whatever is missing here. They go
        // into the table of this simulation all the same, never into that of the last view.
        Build_Daily_Records(context, database, basin.Current_Sim_Name);
    }
    if (entry == DataEntry::Parameters && !copy_dates_of_row(context)) return DataOutcome::Stopped;
    context.prep.Edit_Locked = false;
    return prepare(context, database, entry, *period);
}

/// Offers to add the days that the daily variables lack. @return false if the user then wants no view
bool days_complete(const PrepContext& context, BasinDatabase& database, const std::optional<Period>& period) {
    const int zones = context.basin.ZoneCount;
    const std::int64_t present = period ? count_days(database, k_physical_data, *period) : 0;
    if (present > 0 && present == period->days() * zones) return true;
    const Answer answer = context.dialogs.message(
        {.text = "The physical data table is missing days.  Add?", .buttons = Buttons::YesNo});
    if (answer == Answer::No) return false;
    if (!period) return true;
    if (add_missing_days_as_zeros(database, *period, zones) > 0) mark_input_changed(context.basin);
    context.prep.record = Scan_Physical_Data(database);
    return true;
}

DataOutcome check_and_prepare_record(const PrepContext& context, BasinDatabase& database) {
    const RecordExtent& record = context.prep.record;
    prepare_variables(context.prep, std::nullopt);
    // An empty record has no days that could be missing.
    std::optional<Period> period;
    if (record.count > 0) period = Period{record.first, record.last};
    return days_complete(context, database, period) ? DataOutcome::ShowEditor : DataOutcome::Stopped;
}

DataOutcome check_and_prepare_simulation(const PrepContext& context, BasinDatabase& database) {
    const BasinState& basin = context.basin;
    if (!basin.Current_Start || !basin.Current_End) return DataOutcome::Stopped;
    const Period period{*basin.Current_Start, *basin.Current_End};
    prepare_variables(context.prep, period);
    return days_complete(context, database, period) ? DataOutcome::ShowEditor : DataOutcome::Stopped;
}

}  // namespace

DataOutcome mnuDataOpt_Click(const PrepContext& context, BasinDatabase& database, DataEntry entry) {
    try {
        return check_and_prepare(context, database, entry);
    } catch (const StoreError&) {
        // Intended: the command ends without a message if something is missing or refused.
    } catch (const std::invalid_argument&) {
    }
    return DataOutcome::Stopped;
}

DataOutcome mnuDataOptVar_Click(const PrepContext& context, BasinDatabase& database, int index) {
    context.prep.Edit_Locked = false;
    try {
        return index == 0 ? check_and_prepare_record(context, database)
                          : check_and_prepare_simulation(context, database);
    } catch (const StoreError& error) {
        context.dialogs.stop(error.what());
    }
    return DataOutcome::Stopped;
}

DataOutcome view_record(const PrepContext& context, BasinDatabase& database) {
    context.prep.Edit_Locked = false;
    context.prep.record = Scan_Physical_Data(database);
    if (context.prep.record.count == 0) return DataOutcome::Stopped;
    prepare_variables(context.prep, std::nullopt);
    return DataOutcome::ShowEditor;
}

}  // namespace nivora
