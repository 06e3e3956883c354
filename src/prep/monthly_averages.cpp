#include "prep/monthly_averages.h"

#include "base/single.h"
#include "store/daily_fields.h"
#include "store/daily_table.h"
#include "store/transactions.h"

#include <span>

namespace nivora {
namespace {

constexpr std::size_t k_months = 12;
constexpr std::size_t k_items = 4;
constexpr std::size_t k_precipitation = 3;
constexpr std::array<const char*, k_items> k_fields{"TMaxN", "TMinN", "TAvgN", "PrecipN"};

/// The sum and the count of the values of a zone and month, item by item.
struct MonthSums {
    std::array<double, k_items> sum{};
    std::array<std::int64_t, k_items> count{};

    void add(std::span<const double> values) {
        for (std::size_t item = 0; item < k_items; ++item) {
            if (is_missing(values[item])) continue;
            sum[item] += values[item];
            ++count[item];
        }
    }

    [[nodiscard]] MonthValues averages() const {
        MonthValues values{};
        for (std::size_t item = 0; item < k_items; ++item) {
            values[item] = count[item] == 0
                               ? k_missing
                               : static_cast<float>(sum[item] / static_cast<double>(count[item]));
        }
        return values;
    }
};

using YearSums = std::array<MonthSums, k_months>;

/// Sums up the daily variables zone by zone, in date order.
std::vector<YearSums> sums_of_record(BasinDatabase& database, int zones) {
    const std::array<Field, k_items> fields{
        Field{"Tmax", FieldType::Single}, Field{"Tmin", FieldType::Single}, Field{"Tavg", FieldType::Single},
        Field{"Precip", FieldType::Single}};
    std::vector<YearSums> sums(static_cast<std::size_t>(zones));
    visit_days(database, k_physical_data, fields, zones,
               [&](int zone, DayCount day, std::span<const double> values) {
                   const auto month = static_cast<std::size_t>(civil_date(day).month);
                   sums[static_cast<std::size_t>(zone) - 1][month - 1].add(values);
               });
    return sums;
}

}  // namespace

MonthlyAverages::MonthlyAverages(const std::filesystem::path& work_file, int zones, DailyEdits* unsaved)
    : database_(work_file, Access::ReadWrite), transaction_(database_), zones_(zones), unsaved_(unsaved) {
    for (int zone = 1; zone <= zones_; ++zone) years_.push_back(read_stored_year(database_, zone));
    if (unsaved_ != nullptr) unsaved_->begin(k_basin_averages);
}

MonthlyAverages::~MonthlyAverages() { end_notes(); }

StoredMonth& MonthlyAverages::held(int zone, int month) {
    return years_.at(static_cast<std::size_t>(zone) - 1).at(static_cast<std::size_t>(month) - 1);
}

const MonthValues& MonthlyAverages::values(int zone, int month) const {
    return years_.at(static_cast<std::size_t>(zone) - 1).at(static_cast<std::size_t>(month) - 1).values;
}

void MonthlyAverages::set_value(int zone, int month, std::size_t item, float value) {
    StoredMonth& stored = held(zone, month);
    StoredMonth changed = stored;
    changed.values.at(item) = value;
    store_month(database_, changed);
    stored = changed;
    if (unsaved_ != nullptr) unsaved_->add_value(k_fields.at(item), stored.row, as_double(value));
}

void MonthlyAverages::note_typed(int zone, int month, std::size_t item, float value) {
    if (unsaved_ != nullptr) unsaved_->type_value(k_fields.at(item), held(zone, month).row, as_double(value));
}

void MonthlyAverages::note_nothing_typed() {
    if (unsaved_ != nullptr) unsaved_->type_nothing();
}

void MonthlyAverages::note(const StoredMonth& month) {
    if (unsaved_ == nullptr) return;
    for (std::size_t item = 0; item < k_items; ++item)
        unsaved_->add_value(k_fields[item], month.row, as_double(month.values[item]));
}

void MonthlyAverages::end_notes() {
    if (unsaved_ != nullptr) unsaved_->end();
    unsaved_ = nullptr;
}

bool MonthlyAverages::has_physical_data() { return has_days(database_, k_physical_data); }

bool MonthlyAverages::recalculate() {
    if (!has_physical_data()) return false;
    const std::vector<YearSums> sums = sums_of_record(database_, zones_);
    std::vector<StoredYear> years = years_;
    atomically(database_, [&] {
        for (std::size_t zone = 0; zone < years.size(); ++zone) {
            for (std::size_t month = 0; month < k_months; ++month) {
                // Intended: precipitation alone decides whether a month has data.
                if (sums[zone][month].count[k_precipitation] == 0) continue;
                years[zone][month].values = sums[zone][month].averages();
                store_month(database_, years[zone][month]);
            }
        }
    });
    for (std::size_t zone = 0; zone < years.size(); ++zone) {
        for (std::size_t month = 0; month < k_months; ++month) {
            if (sums[zone][month].count[k_precipitation] > 0) note(years[zone][month]);
        }
    }
    years_ = std::move(years);
    return true;
}

void MonthlyAverages::commit() {
    transaction_.commit();
    end_notes();
}

}  // namespace nivora
