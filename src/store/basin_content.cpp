#include "base/text.h"
#include "store/basin_check.h"
#include "store/basin_store.h"
#include "store/field_ranges.h"
#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>
#include <fmt/format.h>

namespace nivora {
namespace {

constexpr std::array k_scenario_ranges{FieldRange{"VarParm", 0.0, 11.0}, FieldRange{"EditAction", 0.0, 4.0},
                                       FieldRange{"Zones", 0.0, 16.0}};

/// Collects what is wrong in a basin whose structure is sound.
class ContentCheck {
public:
    explicit ContentCheck(BasinDatabase& database) : database_(database) {}

    std::vector<BasinDamage> all();

private:
    void add(const std::string& table, const std::string& what) { damage_.push_back({table, what}); }

    /// Adds the first find of a query, with the number of finds if there are more.
    void add_found(const std::string& table, const std::string& from_where, const std::string& text);
    void check_values(const TableSchema& table, const std::string& name);
    void check_ranges(const std::string& table, std::span<const FieldRange> ranges);
    void check_keys(const std::string& table);
    void check_header();
    void check_zones();
    void check_variables();
    void check_simulations();
    void check_simulation(const Simulation& simulation);
    void check_period(const Simulation& simulation, const std::string& table);
    void check_scenarios();
    void check_results();
    void check_averages();

    [[nodiscard]] std::int64_t count(const std::string& from_where) {
        return guarded(
            [&] { return database_.sql().execAndGet("SELECT count(*) FROM " + from_where).getInt64(); });
    }

    BasinDatabase& database_;
    int zones_ = 0;
    std::vector<BasinDamage> damage_;
};

/// The place of a daily row as text in SQL: "zone 2, 1996-04-01".
constexpr const char* k_daily_place =
    "'zone ' || coalesce(Zone, 'missing') || ', ' || coalesce(date(Date + 2415018.5), 'no date')";

void ContentCheck::add_found(const std::string& table, const std::string& from_where,
                             const std::string& text) {
    const std::int64_t finds = count(from_where);
    if (finds == 0) return;
    const std::string place = guarded([&] {
        return database_.sql().execAndGet("SELECT " + text + " FROM " + from_where + " LIMIT 1").getString();
    });
    add(table, finds == 1 ? place : fmt::format("{} (and {} more)", place, finds - 1));
}

/// The SQL condition for a value whose type differs from its field's, or a number that the field can't hold.
std::string wrong_value(const Field& field) {
    const std::string column = quoted_name(field.name);
    const std::string text = fmt::format("typeof({}) IN ('text', 'blob')", column);
    switch (field.type) {
        case FieldType::Integer:
            return fmt::format("{0} OR {1} <> round({1}) OR {1} < -32768 OR {1} > 32767", text, column);
        case FieldType::Long:
            return fmt::format("{0} OR {1} <> round({1}) OR {1} < -2147483648 OR {1} > 2147483647", text,
                               column);
        case FieldType::Single:
            // Rounding a number beyond the largest Single would end the query.
            return fmt::format(
                "{0} OR CASE WHEN abs({1}) > 3.4028234663852886e38 THEN 1 ELSE {1} <> single({1}) END", text,
                column);
        case FieldType::Double: return fmt::format("{} OR abs({}) > 1.7976931348623157e308", text, column);
        case FieldType::Date: return fmt::format("{} OR abs({}) > 1000000", text, column);
        case FieldType::Text: break;
    }
    return fmt::format("typeof({}) = 'blob'", column);
}

void ContentCheck::check_values(const TableSchema& table, const std::string& name) {
    const std::string from = quoted_name(name);
    std::string any;
    for (const Field& field : table.fields) any += (any.empty() ? "" : " OR ") + wrong_value(field);
    if (count(from + " WHERE " + any) == 0) return;  // a sound table is read only once
    for (const Field& field : table.fields) {
        add_found(name, from + " WHERE " + wrong_value(field),
                  fmt::format("'row ' || rowid || ': {} holds ' || quote({}) || ', which is not a valid {}'",
                              field.name, quoted_name(field.name), declared_type(field)));
    }
}

void ContentCheck::check_ranges(const std::string& table, std::span<const FieldRange> ranges) {
    for (const FieldRange& range : ranges) {
        add_found(table,
                  fmt::format("{0} WHERE {1} < {2} OR {1} > {3}", quoted_name(table),
                              quoted_name(range.field), range.least, range.most),
                  fmt::format("'row ' || rowid || ': {} is ' || {}", range.field, quoted_name(range.field)));
    }
}

/// Checks that each zone has one row on each day of the table.
void ContentCheck::check_keys(const std::string& table) {
    const std::string from = quoted_name(table);
    add_found(
        table,
        fmt::format("{} WHERE Zone IS NULL OR Zone < 1 OR Zone > {} OR Date IS NULL OR Date <> round(Date)",
                    from, zones_),
        fmt::format("'row ' || rowid || ' is not of a zone of the basin, or not of a calendar day: ' || {}",
                    k_daily_place));
    add_found(
        table,
        fmt::format("(SELECT Zone, Date, count(*) AS n FROM {} GROUP BY Zone, Date HAVING n > 1)", from),
        fmt::format("{} appears ' || n || ' times'", std::string{k_daily_place} + " || '"));
    add_found(
        table,
        fmt::format("(SELECT Date, count(DISTINCT Zone) AS n FROM {} WHERE Date IS NOT NULL GROUP BY Date "
                    "HAVING n < {})",
                    from, zones_),
        fmt::format("coalesce(date(Date + 2415018.5), Date) || ' has rows for ' || n || ' of {} zones'",
                    zones_));
}

void ContentCheck::check_header() {
    const std::int64_t rows = count(k_basin_description);
    if (rows != 1) add(k_basin_description, fmt::format("it has {} rows, not one", rows));
    if (rows == 0) return;
    const BasinDescription header = read_basin_description(database_);
    zones_ = header.zones.value_or(0);
    if (header.zones && (zones_ < 1 || zones_ > k_most_zones))
        add(k_basin_description, fmt::format("Zones is {}, which is not from 1 to {}", zones_, k_most_zones));
    if (header.units && !is_known(*header.units))
        add(k_basin_description,
            fmt::format("Units is {}, neither Metric nor English", static_cast<int>(*header.units)));
    if (header.latitude && !(*header.latitude >= -90.0 && *header.latitude <= 90.0))
        add(k_basin_description, fmt::format("Latitude is {}", *header.latitude));
}

void ContentCheck::check_zones() {
    const auto zones = read_table<Zone>(database_, template_table(k_zone_description));
    if (static_cast<int>(zones.size()) != zones_)
        add(k_zone_description, fmt::format("it has {} rows for {} zones", zones.size(), zones_));
    double below = -1.0;
    for (const Zone& zone : zones) {
        if (zone.area && !(*zone.area > 0.0))
            add(k_zone_description, fmt::format("the area of zone {} is {}", zone.id, *zone.area));
        if (zone.elevation && !(*zone.elevation > below))
            add(k_zone_description,
                fmt::format("the elevation of zone {}, {}, is not above that of the zone before", zone.id,
                            *zone.elevation));
        below = zone.elevation.value_or(below);
    }
}

void ContentCheck::check_variables() {
    check_ranges(k_physical_data, variable_ranges());
    check_keys(k_physical_data);
}

void ContentCheck::check_period(const Simulation& simulation, const std::string& table) {
    const DayCount days = *simulation.end - *simulation.start + 1;
    for (int zone = 1; zone <= zones_; ++zone) {
        const std::int64_t found =
            count(fmt::format("(SELECT DISTINCT Date FROM {} WHERE Zone = {} AND Date >= {} AND Date <= {})",
                              quoted_name(table), zone, *simulation.start, *simulation.end));
        if (found == days) continue;
        add(table, fmt::format("zone {} has {} of the {} days of the simulation '{}'", zone, found, days,
                               simulation.name));
    }
}

void ContentCheck::check_simulation(const Simulation& simulation) {
    const std::string subject = fmt::format("the simulation '{}' ", simulation.name);
    if (simulation.name.empty()) return add(k_simulation_index, "a simulation has no name");
    if (!simulation.start || !simulation.end || *simulation.start > *simulation.end)
        return add(k_simulation_index, subject + "has no period");
    const auto table = database_.stored_name(simulation.name);
    if (!table) return add(k_simulation_index, subject + "has no parameter table");
    check_values(parameter_table(*table), *table);
    check_ranges(*table, parameter_ranges());
    check_keys(*table);
    check_period(simulation, *table);
    check_period(simulation, k_physical_data);
}

void ContentCheck::check_simulations() {
    const auto simulations = read_table<Simulation>(database_, template_table(k_simulation_index));
    for (std::size_t i = 0; i < simulations.size(); ++i) {
        for (std::size_t k = 0; k < i; ++k) {
            if (same_name(simulations[i].name, simulations[k].name))
                add(k_simulation_index, fmt::format("the name '{}' appears twice", simulations[i].name));
        }
        check_simulation(simulations[i]);
    }
}

void ContentCheck::check_scenarios() {
    for (const auto& row : read_table<ScenarioIndexRow>(database_, template_table(k_scenario_index))) {
        if (same_name(row.scenario, k_no_scenario)) continue;
        const auto table = database_.stored_name(row.scenario);
        if (!table) {
            add(k_scenario_index, fmt::format("the scenario '{}' has no table", row.scenario));
            continue;
        }
        check_values(scenario_table(*table), *table);
        check_ranges(*table, k_scenario_ranges);
        add_found(*table, quoted_name(*table) + " WHERE EndDate < StartDate",
                  "'row ' || rowid || ' ends before it starts'");
    }
}

void ContentCheck::check_results() {
    if (!database_.has_table(k_sim_results)) return;
    check_values(sim_results_table(), k_sim_results);
    check_keys(k_sim_results);
}

void ContentCheck::check_averages() {
    if (!database_.has_table(k_basin_averages)) return;
    if (!same_name(database_.table_fields(k_basin_averages).front().name, "Zone")) return;
    check_values(basin_averages_table(), k_basin_averages);
    add_found(k_basin_averages,
              "(SELECT Zone, Month, count(*) AS n FROM BasinAverages GROUP BY Zone, Month HAVING n > 1)",
              "'zone ' || Zone || ', ' || Month || ' appears ' || n || ' times'");
}

std::vector<BasinDamage> ContentCheck::all() {
    for (const TableSchema& table : template_tables()) check_values(table, table.name);
    if (!damage_.empty()) return damage_;  // rows that can't be read can't be compared
    using Part = void (ContentCheck::*)();
    constexpr std::array<std::pair<const char*, Part>, 7> k_parts{
        {{k_basin_description, &ContentCheck::check_header},
         {k_zone_description, &ContentCheck::check_zones},
         {k_physical_data, &ContentCheck::check_variables},
         {k_simulation_index, &ContentCheck::check_simulations},
         {k_scenario_index, &ContentCheck::check_scenarios},
         {k_basin_averages, &ContentCheck::check_averages},
         {k_sim_results, &ContentCheck::check_results}}};
    for (const auto& [table, part] : k_parts) {
        try {
            (this->*part)();
        } catch (const StoreError& error) {
            add(table, error.what());
        }
    }
    return damage_;
}

}  // namespace

std::vector<BasinDamage> content_damage(BasinDatabase& database) { return ContentCheck{database}.all(); }

}  // namespace nivora
