#include "prep/daily_records.h"

#include "base/single.h"
#include "store/basin_marks.h"
#include "store/table_io.h"
#include "store/transactions.h"

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

/// Goes through the wanted days and the stored rows side by side, once each. A stored row of no wanted day is
/// skipped, and a day with several rows is found with each of them.
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

/// The first values as fields of a statement, in the same order for new and existing rows.
class FirstValues {
public:
    explicit FirstValues(const ParameterRow& row)
        : singles_{checked(row.lapse_rate), checked(row.tcrit),  checked(row.an),    checked(row.cs),
                   checked(row.cr),         checked(row.xcoeff), checked(row.ycoeff)} {
        const auto lag = to_integer16(static_cast<double>(row.lag_hours));
        if (!lag || !row.rca) throw std::invalid_argument("a first value of the parameter table is missing");
        lag_ = *lag;
        rca_ = *row.rca;
    }

    static constexpr int k_count = 9;
    static constexpr const char* k_fields = "LapseRate, Tcrit, An, Cs, Cr, Xcoeff, Ycoeff, LagTime, RCA";
    static constexpr const char* k_places = "?, ?, ?, ?, ?, ?, ?, ?, ?";

    /// Binds the values to the positions from 1 on.
    void bind(SQLite::Statement& statement) const {
        int position = 1;
        for (const float value : singles_) bind_value(statement, position++, value);
        bind_value(statement, position++, lag_);
        bind_value(statement, position++, rca_);
    }

private:
    /// Intended: x and y are rounded to a Single like the other values, though their fields could
    /// hold more digits.
    static float checked(double value) {
        const auto rounded = static_cast<float>(value);
        if (!std::isfinite(rounded)) {
            throw std::invalid_argument("a first value of the parameter table is missing or too large");
        }
        return rounded;
    }

    std::array<float, 7> singles_;
    std::int16_t lag_ = 0;  ///< Intended: whole hours, though the field could hold fractions
    std::int16_t rca_ = 0;
};

void run(SQLite::Statement& statement) {
    statement.exec();
    statement.reset();
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
void write_first_values(BasinDatabase& database, const Work& work, const FirstValues& values) {
    const std::string name = quoted_name(database.existing_table(work.table));
    SQLite::Statement update{database.sql(), "UPDATE " + name + " SET (" + FirstValues::k_fields + ") = (" +
                                                 FirstValues::k_places + ") WHERE rowid = ?"};
    SQLite::Statement insert{database.sql(), "INSERT INTO " + name + " (" + FirstValues::k_fields +
                                                 ", Zone, Date) VALUES (" + FirstValues::k_places +
                                                 ", ?, ?)"};
    values.bind(update);
    values.bind(insert);
    merge_days(
        work.period, work.zones, work.stored,
        [&](const StoredDay& day) {
            update.bind(FirstValues::k_count + 1, day.row);
            run(update);
        },
        [&](int zone, DayCount date) {
            insert.bind(FirstValues::k_count + 1, zone);
            insert.bind(FirstValues::k_count + 2, date);
            run(insert);
        });
}

/// Adds the days that have no row, with a zone and a date and whatever else the statement adds.
/// @return how many it added
int add_missing_days(const Work& work, SQLite::Statement insert) {
    int added = 0;
    merge_days(
        work.period, work.zones, work.stored, [](const StoredDay&) {},
        [&](int zone, DayCount date) {
            insert.bind(1, zone);
            insert.bind(2, date);
            run(insert);
            ++added;
        });
    return added;
}

/// Adds the missing days without values, as one change of the basin.
void add_empty_days(BasinState& basin, BasinDatabase& database, const Work& work) {
    const std::string name = quoted_name(database.existing_table(work.table));
    int added = 0;
    atomically(database, [&] {
        added =
            add_missing_days(work, {database.sql(), "INSERT INTO " + name + " (Zone, Date) VALUES (?, ?)"});
    });
    if (added > 0) mark_input_changed(basin);
}

/// Makes the period of the row that is selected in the simulation grid that of the rows to add.
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
    const FirstValues values{context.prep.working_record.first_values};
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
    const Work work{k_physical_data, period, zones, stored_days(database, k_physical_data, period)};
    int added = 0;
    atomically(database, [&] {
        added =
            add_missing_days(work, {database.sql(),
                                    "INSERT INTO PhysicalData (Zone, Date, Runoff, Tmax, Tmin, Tavg, Precip, "
                                    "SCA, NetRadiation) VALUES (?, ?, 0, 0, 0, 0, 0, 0, 0)"});
    });
    return added;
}

}  // namespace nivora
