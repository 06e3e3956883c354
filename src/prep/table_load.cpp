#include "prep/table_load.h"

#include "base/text.h"
#include "prep/table_cells.h"
#include "prep/table_columns.h"
#include "store/daily_table.h"
#include "store/field_rows.h"
#include "store/monthly_table.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <charconv>
#include <utility>

namespace nivora {
namespace {

constexpr int k_most_zones = 16;
constexpr int k_months_a_year = 12;

[[noreturn]] void refuse(const std::string& reason) { throw TableFault(0, reason); }

std::optional<Simulation> simulation_named(BasinDatabase& database, std::string_view name) {
    const auto simulations = read_table<Simulation>(database, template_table(k_simulation_index));
    const auto found = std::find_if(simulations.begin(), simulations.end(),
                                    [&](const Simulation& row) { return same_name(row.name, name); });
    return found == simulations.end() ? std::nullopt : std::optional{*found};
}

/// The fields of a table without the two of its key, which come first.
std::vector<Field> value_fields(TableSchema table) {
    table.fields.erase(table.fields.begin(), table.fields.begin() + 2);
    return std::move(table.fields);
}

/// Where the rows of a table are stored, by zone and day or month. The two are called the key of a row.
class StoredKeys {
public:
    StoredKeys(BasinDatabase& database, const LoadTarget& target)
        : rows_(static_cast<std::size_t>(target.zones)) {
        if (target.monthly) {
            read_months(database, target);
        } else {
            read_days(database, target);
        }
    }

    [[nodiscard]] std::optional<std::int64_t> row(int zone, DayCount key) const {
        const auto& rows = rows_[static_cast<std::size_t>(zone - 1)];
        const auto found =
            std::lower_bound(rows.begin(), rows.end(), key,
                             [](const Key& stored, DayCount wanted) { return stored.key < wanted; });
        if (found == rows.end() || found->key != key) return std::nullopt;
        return found->row;
    }

private:
    struct Key {
        DayCount key = 0;
        std::int64_t row = 0;
    };

    void read_months(BasinDatabase& database, const LoadTarget& target) {
        Ensure_Monthly_Table(database);
        for (int zone = 1; zone <= target.zones; ++zone) {
            DayCount month = 0;
            for (const StoredMonth& stored : read_stored_year(database, zone))
                rows_[static_cast<std::size_t>(zone - 1)].push_back({.key = ++month, .row = stored.row});
        }
    }

    void read_days(BasinDatabase& database, const LoadTarget& target) {
        for (const StoredDay& day : stored_days(database, target.table, {})) {
            if (day.zone < 1 || day.zone > target.zones) continue;
            auto& rows = rows_[static_cast<std::size_t>(day.zone - 1)];
            if (!rows.empty() && rows.back().key == day.date) {
                refuse(fmt::format(
                    "the table '{}' has two rows for zone {} on {}; nivora-batch check tells more",
                    target.table, day.zone, iso_date_text(day.date)));
            }
            rows.push_back({.key = day.date, .row = day.row});
        }
    }

    std::vector<std::vector<Key>> rows_;
};

/// Which keys the file has had, in memory that does not grow with the file.
class FileKeys {
public:
    FileKeys(int zones, DayCount first, DayCount last) : first_(first) {
        ZoneKeys none;
        none.seen.resize(static_cast<std::size_t>(last - first + 1));
        zones_.assign(static_cast<std::size_t>(zones), none);
    }

    [[nodiscard]] bool has(int zone, DayCount key) const { return of(zone).seen[index(key)]; }
    [[nodiscard]] std::optional<DayCount> last(int zone) const { return of(zone).last; }
    void take(int zone, DayCount key) {
        ZoneKeys& keys = zones_[static_cast<std::size_t>(zone - 1)];
        keys.seen[index(key)] = true;
        keys.last = key;
    }

private:
    struct ZoneKeys {
        std::optional<DayCount> last = {};
        std::vector<bool> seen = {};
    };

    [[nodiscard]] const ZoneKeys& of(int zone) const { return zones_[static_cast<std::size_t>(zone - 1)]; }
    [[nodiscard]] std::size_t index(DayCount key) const { return static_cast<std::size_t>(key - first_); }

    DayCount first_;
    std::vector<ZoneKeys> zones_;
};

/// The first and the last key that a row may have.
DayCount first_key(bool monthly) { return monthly ? 1 : *day_count({k_first_year, 1, 1}); }
DayCount last_key(bool monthly) { return monthly ? k_months_a_year : *day_count({k_last_year, 12, 31}); }

/// A month by its three letters in English or its number.
std::optional<DayCount> read_month(std::string_view text, std::string& reason) {
    const std::string_view name = trimmed(text);
    int number = 0;
    const auto [end, error] = std::from_chars(name.data(), name.data() + name.size(), number);
    if (error == std::errc{} && end == name.data() + name.size() && number >= 1 && number <= k_months_a_year)
        return number;
    for (int month = 1; month <= k_months_a_year; ++month) {
        if (same_name(month_name(month), name)) return month;
    }
    reason = fmt::format("'{}' is no month from Jan to Dec or 1 to 12", shown_cell(name));
    return std::nullopt;
}

class Loading {
public:
    Loading(BasinDatabase& database, const TableLoad& load, LoadTarget target, LoadedColumns columns,
            bool keep)
        : load_(load),
          target_(std::move(target)),
          columns_(std::move(columns)),
          cells_(load.form),
          stored_(database, target_),
          keys_(target_.zones, first_key(target_.monthly), last_key(target_.monthly)),
          rows_(database, target_.table, columns_.fields),
          writes_(keep) {
        if (!target_.monthly) new_days_.emplace(database, target_.table, columns_.fields);
        values_.resize(columns_.fields.size());
    }

    void take(std::span<const std::string_view> cells, std::size_t line) {
        line_ = line;
        if (cells.size() != columns_.cells) {
            return refuse_row(
                fmt::format("the row has {} cells, and the first row has {}", cells.size(), columns_.cells));
        }
        const auto key = target_.monthly ? read_month(cells[columns_.key], reason_)
                                         : load_.form.dates.day(cells[columns_.key], reason_);
        if (!key) return refuse_row(reason_);
        if (load_.wide_field.empty()) {
            take_long(cells, *key);
        } else {
            take_wide(cells, *key);
        }
    }

    LoadResult result() { return std::move(result_); }

private:
    void refuse_row(std::string reason) {
        writes_ = false;
        ++result_.refused;
        if (result_.refusals.size() < k_listed_refusals)
            result_.refusals.push_back({.line = line_, .reason = std::move(reason)});
    }

    void take_long(std::span<const std::string_view> cells, DayCount key) {
        int zone = columns_.fixed_zone;
        if (columns_.zone) {
            const auto read = zone_of_text(cells[*columns_.zone], target_);
            if (!read) {
                return refuse_row(fmt::format("the basin has no zone '{}'; its zones are 1 to {}",
                                              shown_cell(cells[*columns_.zone]), target_.zones));
            }
            zone = *read;
        }
        if (!take_key(zone, key)) return;
        for (const ValueColumn& column : columns_.values) {
            if (!read_value(cells, column)) return refuse_row(reason_);
        }
        store(zone, key);
    }

    void take_wide(std::span<const std::string_view> cells, DayCount key) {
        for (const ValueColumn& column : columns_.values) {
            if (!take_key(column.zone, key)) continue;
            if (read_value(cells, column)) {
                store(column.zone, key);
            } else {
                refuse_row(fmt::format("zone {}: {}", column.zone, reason_));
            }
        }
    }

    [[nodiscard]] std::string key_text(DayCount key) const {
        return target_.monthly ? month_name(static_cast<int>(key)) : iso_date_text(key);
    }

    /// Whether a row of this key may follow those before it; refuses it if not.
    bool take_key(int zone, DayCount key) {
        if (keys_.has(zone, key)) {
            refuse_row(fmt::format("the file has zone {} on {} a second time", zone, key_text(key)));
            return false;
        }
        const auto last = keys_.last(zone);
        // The rows behind one in the wrong place are compared with it, so that each break is named once.
        keys_.take(zone, key);
        if (load_.any_order || !last || *last < key) return true;
        refuse_row(
            fmt::format("{} of zone {} stands behind {}; sort the file, or state that it has any order",
                        key_text(key), zone, key_text(*last)));
        return false;
    }

    bool read_value(std::span<const std::string_view> cells, const ValueColumn& column) {
        const auto value =
            cells_.read(cells[column.cell], columns_.fields[column.field], column.conversion, reason_);
        if (value) values_[column.field] = *value;
        return value.has_value();
    }

    void store(int zone, DayCount key) {
        const auto row = stored_.row(zone, key);
        if (!row) {
            ++result_.added;
            if (writes_) new_days_->add(zone, key, values_);  // the averages have all their months
        } else if (rows_.has(*row, values_)) {
            ++result_.equal;
        } else {
            ++result_.changed;
            if (writes_) rows_.change(*row, values_);
        }
    }

    const TableLoad& load_;
    LoadTarget target_;
    LoadedColumns columns_;
    NumberCells cells_;
    StoredKeys stored_;
    FileKeys keys_;
    FieldRows rows_;
    std::optional<DayRows> new_days_;
    bool writes_;
    std::size_t line_ = 0;
    std::string reason_;
    std::vector<double> values_;
    LoadResult result_;
};

LoadResult load_rows(BasinDatabase& database, const ByteSource& source, const TableLoad& load, bool keep) {
    LoadTarget target = load_target(database, load.table);
    if (load.table_units) target.units = *load.table_units;
    CsvReader reader{source, load.form.separator};
    if (!reader.next()) throw TableFault(0, "the file is empty");
    if (load.form.decimal == DecimalSign::Comma && reader.separator() == ',')
        throw TableFault(reader.line(), "a comma can't be both the decimal sign and the separator");
    LoadedColumns columns = match_columns(reader.cells(), reader.line(), load, target);
    Loading loading{database, load, std::move(target), std::move(columns), keep};
    while (reader.next()) loading.take(reader.cells(), reader.line());
    return loading.result();
}

}  // namespace

LoadTarget load_target(BasinDatabase& database, const std::string& table) {
    const BasinDescription basin = read_basin_description(database);
    LoadTarget target;
    target.zones = basin.zones.value_or(0);
    if (target.zones < 1 || target.zones > k_most_zones)
        refuse("the basin has no zones yet, so that there is nothing that a table could belong to");
    target.units = basin.units.value_or(Units::NotFixed);
    for (const Zone& zone : read_table<Zone>(database, template_table(k_zone_description)))
        target.zone_names.push_back(zone.id);
    if (same_name(table, k_physical_data)) {
        target.table = k_physical_data;
        target.fields = value_fields(template_table(k_physical_data));
    } else if (same_name(table, k_basin_averages)) {
        target.table = k_basin_averages;
        target.fields = value_fields(basin_averages_table());
        target.monthly = true;
    } else if (const auto simulation = simulation_named(database, table);
               simulation && database.has_table(table)) {
        target.table = database.existing_table(table);
        target.units = simulation->units.value_or(target.units);
        target.fields = value_fields(parameter_table(table));
    } else {
        refuse(fmt::format("'{}' is neither PhysicalData nor BasinAverages nor a simulation of the basin",
                           shown_cell(table)));
    }
    return target;
}

LoadResult load_table(BasinDatabase& database, const ByteSource& source, const TableLoad& load, bool keep) {
    LoadResult result;
    static_cast<void>(atomically_if(database, [&] {
        result = load_rows(database, source, load, keep);
        // Rows that are equal may be all that is new: the averages get their table, filled with zeros,
        // before.
        return keep && result.refused == 0;
    }));
    return result;
}

}  // namespace nivora
