#include "prep/daily_records.h"

#include "base/single.h"
#include "store/basin_marks.h"
#include "store/daily_writer.h"
#include "store/transactions.h"

#include <array>
#include <cmath>
#include <functional>
#include <span>
#include <stdexcept>
#include <tuple>
#include <utility>

namespace nivora {
namespace {

bool before(const StoredDay& day, int zone, DayCount date) {
    return std::tie(day.zone, day.date) < std::tie(zone, date);
}

bool is_day(const StoredDay& day, int zone, DayCount date) { return day.zone == zone && day.date == date; }

/// Goes through the wanted days and the stored rows side by side, in one pass. A stored row of no wanted day
/// is skipped, and a day with several rows is visited with each of them.
void merge_days(const Period& period, int zones, std::span<const StoredDay> stored,
                const std::function<void(const StoredDay&)>& found,
                const std::function<void(int zone, DayCount date)>& missing) {
    auto position = stored.begin();
    for (int zone = 1; zone <= zones; ++zone) {
        for (DayCount date = period.start; date <= period.end; ++date) {
            while (position != stored.end() && before(*position, zone, date)) ++position;
            if (position == stored.end() || !is_day(*position, zone, date)) {
                missing(zone, date);
                continue;
            }
            for (; position != stored.end() && is_day(*position, zone, date); ++position) found(*position);
        }
    }
}

using FirstFields = std::array<FieldValue, 9>;

/// The first values as the fields of the parameter table get them.
/// @throws std::invalid_argument if one is missing or too large
FirstFields first_fields(const ParameterRow& row) {
    // Intended: x and y are rounded to a Single like the other values, though their fields could hold more
    // digits.
    const auto single = [](double value) {
        const auto rounded = static_cast<float>(value);
        if (!std::isfinite(rounded))
            throw std::invalid_argument("a first value of the parameter table is missing or too large");
        return as_double(rounded);
    };
    // Intended: a lag of whole hours, though the field could hold fractions.
    const auto lag = to_integer16(as_double(row.lag_hours));
    if (!lag || !row.rca) throw std::invalid_argument("a first value of the parameter table is missing");
    return {{{"LapseRate", single(row.lapse_rate)},
             {"Tcrit", single(row.tcrit)},
             {"An", single(row.an)},
             {"Cs", single(row.cs)},
             {"Cr", single(row.cr)},
             {"Xcoeff", single(row.xcoeff)},
             {"Ycoeff", single(row.ycoeff)},
             {"LagTime", static_cast<double>(*lag)},
             {"RCA", static_cast<double>(*row.rca)}}};
}

/// What is to be written, and for which days.
struct Work {
    std::string table;
    Period period;
    int zones = 0;
    std::vector<StoredDay> stored;

    [[nodiscard]] bool complete() const {
        return static_cast<std::int64_t>(stored.size()) >= period.days() * zones;
    }
};

/// Writes the first values into every day of the period, and adds the days that have no row.
void write_first_values(BasinDatabase& database, const Work& work, const FirstFields& values) {
    DailyWriter writer{database, work.table, values};
    merge_days(
        work.period, work.zones, work.stored, [&](const StoredDay& day) { writer.overwrite(day.row); },
        [&](int zone, DayCount date) { writer.add(zone, date); });
}

/// Adds the days that have no row, all with the same values. @return how many it added
int add_missing_days(BasinDatabase& database, const Work& work, std::span<const FieldValue> values) {
    int added = 0;
    atomically(database, [&] {
        DailyWriter writer{database, work.table, values};
        merge_days(
            work.period, work.zones, work.stored, [](const StoredDay&) {},
            [&](int zone, DayCount date) {
                writer.add(zone, date);
                ++added;
            });
    });
    return added;
}

/// Adds the missing days without values, as one change of the basin.
void add_empty_days(BasinState& basin, BasinDatabase& database, const Work& work) {
    if (add_missing_days(database, work, {}) > 0) mark_input_changed(basin);
}

/// Sets the period of the rows to add to that of the row that is selected in the simulation grid.
void use_period_of_selected_row(const BasinState& basin, PrepState& prep) {
    const Simulation* row = basin.current_simulation();
    if (row == nullptr) return;
    if (!row->start || !row->end) throw std::invalid_argument("the selected simulation lacks a date");
    prep.Daily_Start = *row->start;
    prep.Daily_End = *row->end;
}

Message parameters_question(bool complete) {
    if (complete) {
        return {.text =
                    "you are about to overwrite this simulation's existing parameter table using the "
                    "values shown!  Continue!",
                .title = "Replace existing parameter table?",
                .buttons = Buttons::OkCancel};
    }
    return {.text =
                "The parameter table for this simulation will be created using the initial parameter "
                "table\nvalues shown on this window.  Once the parameter table for a simulation has been "
                "created,\n it may be edited by clicking 'Data/Parameters'."};
}

Message physical_question(const Period& period) {
    return {.text = "Daily physical data records for the period '" + long_date_text(period.start) + " to " +
                    long_date_text(period.end) + "' will be added to this basin's physical data table.  Ok?",
            .buttons = Buttons::YesNo};
}

Message climate_question() {
    return {.text = " message 2", .title = "Climate change", .buttons = Buttons::YesNo};
}

Answer build_physical_days(const PrepContext& context, BasinDatabase& database, const Work& work) {
    if (work.complete()) return Answer::Ok;
    const Answer answer = context.dialogs.message(physical_question(work.period));
    if (answer == Answer::No) return answer;
    add_empty_days(context.basin, database, work);
    context.basin.Current_Start = work.period.start;
    context.basin.Current_End = work.period.end;
    context.prep.record = Scan_Physical_Data(database);
    return answer;
}

Answer build_parameter_days(const PrepContext& context, BasinDatabase& database, const Work& work) {
    const Answer answer = context.dialogs.message(parameters_question(work.complete()));
    if (answer == Answer::Cancel) return answer;
    const FirstFields values = first_fields(context.prep.working_record.first_values);
    atomically(database, [&] { write_first_values(database, work, values); });
    mark_input_changed(context.basin);
    return answer;
}

Answer build_climate_days(const PrepContext& context, BasinDatabase& database, const Work& work) {
    const Answer answer = context.dialogs.message(climate_question());
    if (answer == Answer::No) return answer;
    add_empty_days(context.basin, database, work);
    return answer;
}

}  // namespace

RecordExtent Scan_Physical_Data(BasinDatabase& database) {
    return scan_daily_table(database, k_physical_data);
}

Answer Build_Daily_Records(const PrepContext& context, BasinDatabase& database,
                           const std::string& simulation_table) {
    PrepState& prep = context.prep;
    use_period_of_selected_row(context.basin, prep);
    const Period period{prep.Daily_Start, prep.Daily_End};
    const auto work_on = [&](const std::string& table, const std::optional<Period>& read) {
        return Work{table, period, context.basin.ZoneCount, stored_days(database, table, read)};
    };
    switch (prep.Data_View) {
        case DataView::PhysicalData:
            return build_physical_days(context, database, work_on(k_physical_data, period));
        case DataView::Parameters:
            return build_parameter_days(context, database, work_on(simulation_table, std::nullopt));
        case DataView::Results:
            return build_climate_days(context, database, work_on(simulation_table, std::nullopt));
        case DataView::Scenario: break;
    }
    return Answer::Ok;
}

int add_missing_days_as_zeros(BasinDatabase& database, const Period& period, int zones) {
    constexpr std::array<FieldValue, 7> k_zeros{{{"Runoff", 0.0},
                                                 {"Tmax", 0.0},
                                                 {"Tmin", 0.0},
                                                 {"Tavg", 0.0},
                                                 {"Precip", 0.0},
                                                 {"SCA", 0.0},
                                                 {"NetRadiation", 0.0}}};
    const Work work{k_physical_data, period, zones, stored_days(database, k_physical_data, period)};
    return add_missing_days(database, work, k_zeros);
}

}  // namespace nivora
