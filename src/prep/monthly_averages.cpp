#include "prep/monthly_averages.h"

#include "base/single.h"
#include "store/daily_fields.h"
#include "store/daily_table.h"
#include "store/transactions.h"

#include <algorithm>
#include <span>
#include <utility>

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
    Step::Cell cell{.zone = zone, .month = month, .before = stored.values, .after = changed.values};
    stored = changed;
    if (unsaved_ != nullptr) unsaved_->add_value(k_fields.at(item), stored.row, as_double(value));
    if (open_step_) {
        open_step_->cells.push_back(cell);
    } else {
        note_step({.cells = {cell}});
    }
}

void MonthlyAverages::begin_step() {
    end_step();
    open_step_ = Step{};
}

void MonthlyAverages::end_step() {
    if (!open_step_) return;
    note_step(std::move(*open_step_));
    open_step_.reset();
}

void MonthlyAverages::note_step(Step step) {
    if (step.cells.empty()) return;
    if (!step.calculated) ++set_steps_;
    steps_.add(std::move(step));
}

std::optional<int> MonthlyAverages::undo() {
    end_step();
    const auto zone = reverse(steps_.to_undo(), false);
    if (zone) steps_.undone();
    return zone;
}

std::optional<int> MonthlyAverages::redo() {
    end_step();
    const auto zone = reverse(steps_.to_redo(), true);
    if (zone) steps_.redone();
    return zone;
}

std::optional<int> MonthlyAverages::reverse(Step* step, bool redo) {
    if (step == nullptr) return std::nullopt;
    std::vector<StoredYear> years = years_;
    // Backwards the oldest values of a month that was changed twice come last.
    std::vector<Step::Cell> cells = step->cells;
    if (!redo) std::reverse(cells.begin(), cells.end());
    const auto month_of = [&years](const Step::Cell& cell) -> StoredMonth& {
        return years.at(static_cast<std::size_t>(cell.zone) - 1).at(static_cast<std::size_t>(cell.month) - 1);
    };
    atomically(database_, [&] {
        for (const Step::Cell& cell : cells) {
            StoredMonth& month = month_of(cell);
            month.values = redo ? cell.after : cell.before;
            store_month(database_, month);
        }
    });
    for (const Step::Cell& cell : cells) note(month_of(cell));
    years_ = std::move(years);
    if (!step->calculated) set_steps_ += redo ? 1 : -1;
    return step->cells.front().zone;
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
    end_step();
    Step step{.cells = {}, .calculated = true};
    for (std::size_t zone = 0; zone < years.size(); ++zone) {
        for (std::size_t month = 0; month < k_months; ++month) {
            if (sums[zone][month].count[k_precipitation] == 0) continue;
            note(years[zone][month]);
            step.cells.push_back({.zone = static_cast<int>(zone) + 1,
                                  .month = static_cast<int>(month) + 1,
                                  .before = years_[zone][month].values,
                                  .after = years[zone][month].values});
        }
    }
    years_ = std::move(years);
    note_step(std::move(step));
    return true;
}

void MonthlyAverages::commit() {
    transaction_.commit();
    end_notes();
}

}  // namespace nivora
