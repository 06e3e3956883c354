#include "prep/parameter_change.h"

#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "store/basin_marks.h"
#include "store/daily_fields.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <functional>

namespace nivora {
namespace {

struct NamedField {
    const char* field;
    const char* name;
};

constexpr std::array<NamedField, 9> k_names{{{"LapseRate", "Temperature lapse rate"},
                                             {"Tcrit", "Critical temperature"},
                                             {"An", "Degree day factor"},
                                             {"LagTime", "Lag time"},
                                             {"Cs", "Runoff coefficient, snow"},
                                             {"Cr", "Runoff coefficient, rain"},
                                             {"RCA", "Rainfall contributing area"},
                                             {"Xcoeff", "X recession coefficient"},
                                             {"Ycoeff", "Y recession coefficient"}}};

DailyColumn column_of(std::string_view field) {
    for (DailyColumn& column : parameter_columns()) {
        if (same_name(column.field, field)) return column;
    }
    throw StoreError(StoreFault::Missing, fmt::format("A parameter table has no parameter '{}'.", field));
}

double changed_value(const ParameterChange& change, double before) {
    switch (change.action) {
        case ParameterAction::Set: return change.number;
        case ParameterAction::Add: return before + change.number;
        case ParameterAction::Multiply: return before * change.number;
    }
    return before;
}

bool has_month(const ParameterChange& change, DayCount date) {
    return change.months.empty() || std::find(change.months.begin(), change.months.end(),
                                              civil_date(date).month) != change.months.end();
}

void widen(std::optional<ValueRange>& range, double value) {
    if (is_missing(value)) return;
    if (!range) range = ValueRange{value, value};
    range->low = std::min(range->low, value);
    range->high = std::max(range->high, value);
}

bool same_value(double a, double b) { return a == b || (is_missing(a) && is_missing(b)); }

/// Is called with each value that becomes another, and where it is stored.
using StoreValue = std::function<void(DailyFields& fields, std::int64_t row, double value)>;

/// Walks the chosen rows of all zones.
class ChangeWalk {
public:
    ChangeWalk(BasinDatabase& database, const std::string& simulation, const ParameterChange& change)
        : change_(change),
          column_(column_of(change.field)),
          fields_(database, DailySelection{.table = simulation,
                                           .fields = {{column_.field, column_.type}},
                                           .period = change.days}) {}

    ParameterPreview walk(const StoreValue& store) {
        for (const int zone : change_.zones) {
            const ZoneDays days = fields_.read(zone);
            for (std::size_t row = 0; row < days.rows.size(); ++row) {
                if (!has_month(change_, days.dates[row])) continue;
                take({.zone = zone, .date = days.dates[row], .before = days.values[row]}, days.rows[row],
                     store);
            }
        }
        return std::move(preview_);
    }

private:
    void take(ChangedValue value, std::int64_t row, const StoreValue& store) {
        const double wanted = changed_value(change_, value.before);
        const auto kept = kept_daily_value(column_, wanted);
        value.after = kept.value_or(wanted);
        ++preview_.rows;
        widen(preview_.before, value.before);
        widen(preview_.after, value.after);
        if (preview_.first.size() < k_preview_rows) preview_.first.push_back(value);
        if (!kept) return refuse(value);
        if (is_missing(value.after)) ++preview_.missing;
        if (same_value(value.before, value.after)) return;
        ++preview_.changed;
        if (store) store(fields_, row, value.after);
    }

    void refuse(const ChangedValue& value) {
        if (preview_.refused++ > 0) return;
        preview_.refusal = fmt::format(
            "Zone {}, {}: {} would become {}, but {}.", zone_letter(value.zone), long_date_text(value.date),
            is_missing(value.before) ? "a missing value" : seven_digit_text(value.before),
            seven_digit_text(value.after), daily_refusal(column_, value.after));
    }

    const ParameterChange& change_;
    DailyColumn column_;
    DailyFields fields_;
    ParameterPreview preview_;
};

}  // namespace

std::vector<DailyColumn> parameter_columns() {
    auto columns = daily_columns(DataView::Parameters, daily_fields(DataView::Parameters));
    columns.erase(columns.begin());  // the date
    return columns;
}

std::string parameter_name(std::string_view field) {
    for (const NamedField& named : k_names) {
        if (same_name(named.field, field)) return named.name;
    }
    return std::string{field};
}

ParameterPreview preview_parameter_change(BasinDatabase& database, const std::string& simulation,
                                          const ParameterChange& change) {
    return ChangeWalk{database, simulation, change}.walk({});
}

ParameterPreview make_parameter_change(BasinState& basin, BasinDatabase& database,
                                       const std::string& simulation, const ParameterChange& change) {
    ParameterPreview made;
    const bool kept = atomically_if(database, [&] {
        made = ChangeWalk{database, simulation, change}.walk(
            [](DailyFields& fields, std::int64_t row, double value) { fields.store(row, 0, value); });
        return made.refused == 0;
    });
    if (kept && made.changed > 0) {
        mark_output_invalid(basin);
        mark_input_changed(basin);
    }
    return made;
}

}  // namespace nivora
