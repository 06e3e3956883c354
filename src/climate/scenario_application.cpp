#include "climate/scenario_application.h"

#include "base/number_text.h"
#include "climate/scenario_codes.h"
#include "store/table_io.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <functional>
#include <limits>

namespace nivora {
namespace {

using SingleField = std::vector<float> SimResults::*;

/// The target of an assignment, a column of the changed climate,
/// and its source, the column of the present one.
struct Assignment {
    SingleField target = nullptr;
    SingleField source = nullptr;
};

/// The columns that the edits of a variable change; null if there are none.
struct VariableSlot {
    Assignment assignment;          ///< of an addition or a multiplication
    SingleField shifted = nullptr;  ///< of a shift
};

constexpr Assignment k_maximum{&SimResults::TMaxCC, &SimResults::TMax};
constexpr Assignment k_minimum{&SimResults::TminCC, &SimResults::Tmin};
constexpr Assignment k_average{&SimResults::TAvgCC, &SimResults::TAvg};
constexpr Assignment k_precipitation{&SimResults::PrecipCC, &SimResults::Precip};

/// By code. Code 0 adds and multiplies on two columns at once, see `add_or_multiply`.
/// Intended: with codes 4 to 7 an addition changes another column than a shift, and some codes allow only one
/// of the two.
constexpr std::array<VariableSlot, 14> k_slots{{
    {{}, nullptr},
    {k_average, nullptr},
    {k_precipitation, &SimResults::PrecipCC},
    {k_maximum, &SimResults::TMaxCC},
    {k_average, &SimResults::TcritCC},
    {k_precipitation, &SimResults::LagTimeCC},
    {k_maximum, &SimResults::LRCC},
    {k_average, &SimResults::ANCC},
    {{&SimResults::CSCC, &SimResults::CS}, &SimResults::CSCC},
    {{&SimResults::CRCC, &SimResults::CR}, &SimResults::CRCC},
    {{}, &SimResults::RCACC},
    {{}, &SimResults::NetRadCC},
    {{}, nullptr},
    {{}, nullptr},
}};

/// A complete row of the scenario, and its zones.
struct Edit {
    int number = 0;  ///< of the row, from 1
    int variable = 0;
    DayCount start = 0;
    DayCount end = 0;
    int action = 0;
    float factor = 0.0F;  ///< 0 if the action needs none
    int lowest_zone = 1;
    int highest_zone = 1;
};

template <typename Value>
Value stored_value(const std::optional<Value>& value) {
    if (!value) throw null_fault();
    return *value;
}

constexpr int k_factor_position = 4;

bool needs_factor(const ScenarioRow& row) {
    return row.action && *row.action < static_cast<int>(EditAction::Normalize);
}

/// @throws Fault 94 where a value is missing, even if the action does not use it; only the factor may be
/// missing if the action needs none
Edit edit_of(const ScenarioRow& row, int number, int zone_count) {
    Edit edit;
    edit.number = number;
    edit.variable = stored_value(row.variable);
    edit.start = stored_value(row.start);
    edit.end = stored_value(row.end);
    edit.action = stored_value(row.action);
    if (needs_factor(row)) edit.factor = required(row.factor);
    // Any zone number beyond the highest possible one means the same.
    const int zones = std::min(stored_value(row.zones), k_most_zones + 1);
    edit.lowest_zone = zones == 0 ? 1 : zones;
    edit.highest_zone = zones == 0 ? zone_count : zones;
    return edit;
}

const VariableSlot& slot_of(const Edit& edit) {
    if (edit.variable < 0 || edit.variable >= static_cast<int>(k_slots.size())) {
        throw Fault(k_fault_subscript, fmt::format("Row {}: there is no variable or parameter with code {}.",
                                                   edit.number, edit.variable));
    }
    return k_slots[static_cast<std::size_t>(edit.variable)];
}

/// The fault of an action without a column to change.
Fault no_column_fault(const Edit& edit) {
    const std::string variable = scenario_variable_text(edit.variable);
    return {k_fault_item_not_found,
            fmt::format("Row {}: '{}' can't be applied to '{}'.", edit.number, edit_action_text(edit.action),
                        variable.empty() ? std::to_string(edit.variable) : variable)};
}

/// A number with seven significant digits of a Single, as a statement text has it.
double statement_number(float value) { return exact_number(single_text(value)).value(); }

RowOrder rows_where(const SimResults& results, const std::function<bool(std::size_t)>& condition) {
    RowOrder rows;
    for (std::size_t row = 0; row < results.size(); ++row) {
        if (condition(row)) rows.push_back(static_cast<std::uint32_t>(row));
    }
    return rows;
}

/// Sets columns on some rows to a value computed from their source, all or nothing: if a value exceeds the
/// largest Single, it is a fault and no row changes.
template <typename Value>
void set_columns(SimResults& results, std::initializer_list<Assignment> assignments, const RowOrder& rows,
                 Value&& value) {
    std::vector<float> computed;
    computed.reserve(assignments.size() * rows.size());
    for (const Assignment& assignment : assignments) {
        const auto& source = results.*assignment.source;
        for (const auto row : rows) computed.push_back(to_single_field(value(as_double(source[row]))));
    }
    auto next = computed.begin();
    for (const Assignment& assignment : assignments) {
        auto& target = results.*assignment.target;
        for (const auto row : rows) target[row] = *next++;
    }
}

/// The source is the column of the present climate, so of two rows that cover a day only the last one counts.
void add_or_multiply(SimResults& results, const Edit& edit) {
    const Assignment assignment = slot_of(edit).assignment;
    if (edit.variable != 0 && assignment.target == nullptr) throw no_column_fault(edit);
    const double factor = statement_number(edit.factor);
    const bool multiplies = edit.action == static_cast<int>(EditAction::Multiply);
    const auto value = [=](double present_value) {
        return multiplies ? present_value * factor : present_value + factor;
    };
    const RowOrder rows = rows_where(results, [&](std::size_t row) {
        return results.Date[row] >= edit.start && results.Date[row] <= edit.end &&
               results.Zone[row] >= edit.lowest_zone && results.Zone[row] <= edit.highest_zone;
    });
    if (edit.variable == 0) {
        // Intended: the averages keep their values.
        set_columns(results, {k_maximum, k_minimum}, rows, value);
    } else {
        set_columns(results, {assignment}, rows, value);
    }
}

/// Index in `order` of the row for `zone` on `date`. @throws Fault if there is none
std::size_t find_day(const SimResults& results, const RowOrder& order, const Edit& edit, int zone,
                     double date) {
    const auto found = std::find_if(order.begin(), order.end(), [&](std::uint32_t row) {
        return results.Zone[row] == zone && static_cast<double>(results.Date[row]) == date;
    });
    if (found != order.end()) return static_cast<std::size_t>(found - order.begin());
    const std::string day =
        std::abs(date) <= k_largest_day ? iso_moment_text(date) : "day " + double_text(date);
    throw Fault(k_fault_no_record,
                fmt::format("Row {}: the simulation has no {} in zone {} to shift from or to.", edit.number,
                            day, zone));
}

/// Moves a zone's values from the source date to the start date, on to the zone's last day. Values are taken
/// from the column that is written, so that earlier edits are shifted, too, and a shift to later days repeats
/// values that it has just written. The zone's last value repeats to its end.
void shift_zone(const SimResults& results, std::vector<float>& column, const RowOrder& order,
                const Edit& edit, int zone) {
    std::size_t target = find_day(results, order, edit, zone, static_cast<double>(edit.start));
    std::size_t source =
        find_day(results, order, edit, zone, static_cast<double>(edit.start) + as_double(edit.factor));
    for (;;) {
        column[order[target]] = column[order[source]];
        ++target;
        if (target == order.size() || results.Zone[order[target]] != zone) return;
        ++source;
        if (source == order.size() || results.Zone[order[source]] != zone) --source;
    }
}

/// Intended: both shifts run the same code; the sign of the factor alone sets the direction.
void shift(SimResults& results, const Edit& edit) {
    const SingleField shifted = slot_of(edit).shifted;
    if (shifted == nullptr) throw no_column_fault(edit);
    const RowOrder order =
        run_rows(results, std::numeric_limits<DayCount>::min(), std::numeric_limits<DayCount>::max()).by_zone;
    for (int zone = edit.lowest_zone; zone <= edit.highest_zone; ++zone)
        shift_zone(results, results.*shifted, order, edit, zone);
}

/// The long-term averages, row by row from the first one, whatever zone they are needed for.
class AveragesCursor {
public:
    explicit AveragesCursor(BasinDatabase& database)
        : rows_(read_table<MonthlyRow>(database, basin_averages_table())) {
        // An empty table has no first row.
        static_cast<void>(current());
    }

    [[nodiscard]] const MonthlyRow& current() const {
        if (at_ >= rows_.size()) {
            throw Fault(k_fault_no_record,
                        fmt::format("The long-term monthly averages end after {} of the months needed.",
                                    rows_.size()));
        }
        return rows_[at_];
    }

    void next() {
        static_cast<void>(current());
        ++at_;
    }

private:
    std::vector<MonthlyRow> rows_;
    std::size_t at_ = 0;
};

/// The rows of a zone by month, 1 to 12, over all years, each in date order.
std::array<RowOrder, 13> rows_by_month(const SimResults& results, const RowOrder& by_zone, int zone) {
    std::array<RowOrder, 13> months;
    for (const auto row : by_zone) {
        if (results.Zone[row] == zone)
            months.at(static_cast<std::size_t>(civil_date(results.Date[row]).month)).push_back(row);
    }
    return months;
}

/// The average of the values that are not missing; missing if all are.
double average(const std::vector<float>& column, const RowOrder& rows) {
    double sum = 0.0;
    int count = 0;
    for (const auto row : rows) {
        if (is_missing(column[row])) continue;
        sum += as_double(column[row]);
        ++count;
    }
    return count == 0 ? as_double(k_missing) : sum / count;
}

/// Asks whether to continue with an average of zero, which may come from data that nobody entered.
bool accepts_zero_average(Dialogs& dialogs, const char* what, const std::string& month, int zone) {
    return dialogs.message(
               {.text = fmt::format(
                    "The simulation's average monthly {0} for {1}, Zone# {2} is zero.  This often occurs "
                    "when "
                    "no valid {0} data has been provided.\r\nIf these data are valid, click 'Ok' to continue "
                    "the process of normalization, 'Cancel' to abort the climate change run.",
                    what, month, zone),
                .title = fmt::format("Possible missing {} data", what),
                .buttons = Buttons::OkCancel}) == Answer::Ok;
}

void normalize_temperature(SimResults& results, const RowOrder& month, float difference) {
    const double offset = statement_number(difference);
    set_columns(results, {k_average}, month, [=](double present_value) { return present_value + offset; });
}

/// Dry days stay dry, wet days change by the difference, not by the ratio, and no day of the month stays
/// below zero, not even one that an earlier row made negative.
void normalize_precipitation(SimResults& results, const RowOrder& month, float difference) {
    const double offset = statement_number(difference);
    RowOrder wet;
    std::copy_if(month.begin(), month.end(), std::back_inserter(wet),
                 [&](std::uint32_t row) { return results.Precip[row] > 0.0F; });
    set_columns(results, {k_precipitation}, wet,
                [=](double present_value) { return present_value + offset; });
    for (const auto row : month) {
        if (results.PrecipCC[row] < 0.0F) results.PrecipCC[row] = 0.0F;
    }
}

/// One zone and month. @return false if the user cancelled
bool normalize_month(SimResults& results, const Edit& edit, const RowOrder& month, int zone,
                     const AveragesCursor& normals, Dialogs& dialogs) {
    constexpr int k_average_temperature = 1;
    constexpr int k_precipitation_code = 2;
    const bool temperature = edit.variable == k_average_temperature;
    if (!temperature && edit.variable != k_precipitation_code) return true;
    const double present_average = average(temperature ? results.TAvg : results.Precip, month);
    const MonthlyRow& normal = normals.current();
    if (present_average == 0.0 &&
        !accepts_zero_average(dialogs, temperature ? "temperature" : "precipitation", normal.month, zone)) {
        return false;
    }
    const auto normal_average = as_double(temperature ? normal.tavg : normal.precip);
    const float difference = to_single(normal_average - present_average);
    if (temperature) {
        normalize_temperature(results, month, difference);
    } else {
        normalize_precipitation(results, month, difference);
    }
    return true;
}

/// Shifts or scales the monthly averages to the long-term ones, whatever the dates of the row.
/// Intended: the long-term averages are read from the first row on, so that a row for a later zone alone gets
/// those of zone 1.
/// @return false if the user cancelled
bool normalize(BasinDatabase& database, SimResults& results, const Edit& edit, Dialogs& dialogs) {
    AveragesCursor normals{database};
    const RowOrder by_zone =
        run_rows(results, std::numeric_limits<DayCount>::min(), std::numeric_limits<DayCount>::max()).by_zone;
    for (int zone = edit.lowest_zone; zone <= edit.highest_zone; ++zone) {
        const auto months = rows_by_month(results, by_zone, zone);
        for (std::size_t month = 1; month < months.size(); ++month) {
            if (!normalize_month(results, edit, months.at(month), zone, normals, dialogs)) return false;
            normals.next();
        }
    }
    return true;
}

/// Every action but Normalize. A code without an action is ignored.
void apply_plain_edit(SimResults& results, const Edit& edit) {
    switch (edit.action) {
        case static_cast<int>(EditAction::Add):
        case static_cast<int>(EditAction::Multiply): add_or_multiply(results, edit); break;
        case static_cast<int>(EditAction::ShiftBackward):
        case static_cast<int>(EditAction::ShiftForward): shift(results, edit); break;
        default: break;
    }
}

/// @return false if the user cancelled
bool apply_edit(BasinDatabase& database, SimResults& results, const Edit& edit, Dialogs& dialogs) {
    if (edit.action == static_cast<int>(EditAction::Normalize))
        return normalize(database, results, edit, dialogs);
    apply_plain_edit(results, edit);
    return true;
}

/// The header of the first missing value that a row needs; empty if none is missing.
std::string missing_column(const ScenarioRow& row) {
    if (!row.variable) return "Variable/Parameter";
    if (!row.start) return "Start Date";
    if (!row.end) return "End Date";
    if (!row.action) return "Edit Action";
    if (needs_factor(row) && is_missing(row.factor)) return "Edit Factor";
    return row.zones ? std::string{} : "Zones";
}

/// For the user: where a value of a scenario is missing.
std::string missing_value_text(int number, const ScenarioRow& row) {
    if (number == 0) return {};
    const std::string column = missing_column(row);
    const std::string what = column.empty()
                                 ? "needs a value that the days or the monthly averages do not have"
                                 : "has no " + column;
    return fmt::format("\nRow {} {}.", number, what);
}

/// Reads and applies row by row, so that the rows before an error are applied.
/// @param number the current row, from 1; 0 before the first
/// @param row    its content
int apply_rows(BasinDatabase& database, SimResults& results, const BasinState& basin,
               const std::string& scenario_name, Dialogs& dialogs, int& number, ScenarioRow& row) {
    TableReader reader{database, scenario_table(scenario_name)};
    while (reader.next()) {
        row = {};
        ++number;
        int position = 0;
        ScenarioRow::visit(row, [&](auto& member) {
            // Values that an action does not need are not read.
            if (position != k_factor_position || needs_factor(row)) reader.read(position, member);
            ++position;
        });
        if (!apply_edit(database, results, edit_of(row, number, basin.ZoneCount), dialogs)) return 1;
    }
    if (number > 0) return 0;
    dialogs.stop(fmt::format("The selected CC scenario, '{}', contains no climate change specifications",
                             scenario_name),
                 "The current scenario is empty");
    return 1;
}

}  // namespace

void apply_scenario_rows(SimResults& results, std::span<const ScenarioRow> rows, int zone_count) {
    int number = 0;
    for (const ScenarioRow& row : rows) {
        const Edit edit = edit_of(row, ++number, zone_count);
        if (edit.action == static_cast<int>(EditAction::Normalize)) throw no_column_fault(edit);
        apply_plain_edit(results, edit);
    }
}

int Apply_Scenario(BasinDatabase& database, SimResults& results, const BasinState& basin,
                   const std::string& scenario_name, Dialogs& dialogs) {
    constexpr const char* k_error = "Error in climate change definition";
    int number = 0;
    ScenarioRow row;
    try {
        return apply_rows(database, results, basin, scenario_name, dialogs, number, row);
    } catch (const Fault& fault) {
        if (fault.number() == k_fault_null) {
            dialogs.stop(fmt::format("The selected CC scenario, '{}', contains missing value(s).  Please "
                                     "correct before continuing{}",
                                     scenario_name, missing_value_text(number, row)),
                         "Missing/invalid data in climate change scenario");
        } else {
            dialogs.stop(fault.what(), k_error);
        }
    } catch (const StoreError& error) {
        dialogs.stop(error.what(), k_error);
    }
    return 1;
}

}  // namespace nivora
