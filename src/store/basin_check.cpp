#include "store/basin_check.h"

#include "base/durable_file.h"
#include "base/text.h"
#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>
#include <fmt/format.h>

#include <algorithm>
#include <map>

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// Texts of a column; the first read error is passed on.
std::vector<std::string> texts(BasinDatabase& database, const std::string& query) {
    return guarded([&] {
        SQLite::Statement rows{database.sql(), query};
        std::vector<std::string> found;
        while (rows.executeStep()) found.push_back(rows.getColumn(0).getString());
        return found;
    });
}

std::string quoted_text(std::string_view text) {
    std::string quoted = "'";
    for (const char character : text) {
        quoted.push_back(character);
        if (character == '\'') quoted.push_back('\'');
    }
    return quoted + "'";
}

/// The names that a field of an index lists.
std::vector<std::string> listed_names(BasinDatabase& database, const char* table, const char* field) {
    if (!database.has_table(table)) return {};
    return texts(database, fmt::format("SELECT {} FROM {} WHERE {} IS NOT NULL", quoted_name(field),
                                       quoted_name(database.existing_table(table)), quoted_name(field)));
}

std::string_view without_end_point(std::string_view clause) {
    return !clause.empty() && clause.back() == '.' ? clause.substr(0, clause.size() - 1) : clause;
}

bool lists(const std::vector<std::string>& names, std::string_view name) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& listed) { return same_name(listed, name); });
}

/// Whether the averages have their old layout, which the desktop program updates when it opens the file.
bool is_outdated_averages(const TableSchema& table, const std::vector<Field>& fields) {
    return same_name(table.name, k_basin_averages) && !fields.empty() &&
           !same_name(fields.front().name, "Zone");
}

/// How a table's fields differ from its schema; empty if they do not.
std::string field_problem(const TableSchema& table, const std::vector<Field>& fields) {
    if (is_outdated_averages(table, fields)) return {};
    if (fields.size() < table.fields.size())
        return fmt::format("it has {} fields instead of {}", fields.size(), table.fields.size());
    for (std::size_t i = 0; i < table.fields.size(); ++i) {
        if (!same_name(fields[i].name, table.fields[i].name))
            return fmt::format("field {} is called '{}', not '{}'", i + 1, fields[i].name,
                               table.fields[i].name);
        if (fields[i].type != table.fields[i].type)
            return fmt::format("the field '{}' is not declared as {}", fields[i].name,
                               declared_type(table.fields[i]));
    }
    return {};
}

void check_fields(BasinDatabase& database, std::vector<BasinDamage>& damage) {
    for (const std::string& name : database.table_names()) {
        const auto table = known_table(database, name);
        if (!table) continue;
        const std::string problem = field_problem(*table, database.table_fields(name));
        if (!problem.empty()) damage.push_back({name, problem});
    }
}

void check_presence(BasinDatabase& database, std::vector<BasinDamage>& damage) {
    for (const TableSchema& table : template_tables()) {
        if (!database.has_table(table.name)) damage.push_back({table.name, "the table is missing"});
    }
}

/// Checks that each table and index begins inside the file and on a page of its own.
void check_places(BasinDatabase& database, std::vector<BasinDamage>& damage) {
    guarded([&] {
        const int pages = database.sql().execAndGet("PRAGMA page_count").getInt();
        SQLite::Statement entries{database.sql(),
                                  "SELECT rootpage, tbl_name, name FROM sqlite_schema "
                                  "WHERE type IN ('table', 'index') ORDER BY rowid"};
        std::map<int, std::string> taken;
        while (entries.executeStep()) {
            const int place = entries.getColumn(0).getInt();
            const std::string table = entries.getColumn(1).getString();
            const std::string name = entries.getColumn(2).getString();
            if (place < 2 || place > pages)
                damage.push_back({table, fmt::format("'{}' begins on page {}, which the file does not have",
                                                     name, place)});
            const auto [other, is_new] = taken.emplace(place, table);
            if (is_new) continue;
            const std::string what =
                fmt::format("it begins on page {}, where another table or index begins too", place);
            damage.push_back({other->second, what});
            damage.push_back({table, what});
        }
    });
}

bool has_index(BasinDatabase& database, const std::string& name) {
    return !texts(database,
                  "SELECT name FROM sqlite_schema WHERE type = 'index' AND name = " + quoted_text(name))
                .empty();
}

/// The verdict of the database engine as a clause; empty if it finds nothing.
std::string verdict(BasinDatabase& database, const std::string& check) {
    std::string all;
    for (std::string text : texts(database, "PRAGMA " + check)) {
        if (text == "ok") return {};
        constexpr std::string_view k_heading = "*** in database main ***\n";
        if (text.rfind(k_heading, 0) == 0) text.erase(0, k_heading.size());
        std::replace(text.begin(), text.end(), '\n', ';');
        all += (all.empty() ? "" : "; ") + text;
    }
    return all;
}

/// The same; an error that ends the check is the verdict.
std::string verdict_or_fault(BasinDatabase& database, const std::string& check) {
    try {
        return verdict(database, check);
    } catch (const StoreError& error) {
        if (error.fault() != StoreFault::Damaged) throw;
        return error.what();
    }
}

/// The engine's check mistakes a table name that begins with a number, such as 1996, for a limit.
bool reads_as_limit(const std::string& table) {
    const std::size_t at = table.find_first_of("+-") == 0 ? 1 : 0;
    return at < table.size() && table[at] >= '0' && table[at] <= '9';
}

/// Reads a table row by row, and looks up each row in its index; empty if all is well.
std::string walked_verdict(BasinDatabase& database, const std::string& table) {
    const std::string name = quoted_name(table);
    const std::string key = quoted_name(table + ".key");
    const auto count = [&](const std::string& query) {
        return database.sql().execAndGet("SELECT count(*) FROM " + query).getInt64();
    };
    return guarded([&]() -> std::string {
        SQLite::Statement rows{database.sql(),
                               "SELECT rowid, * FROM " + name + " NOT INDEXED ORDER BY rowid"};
        std::int64_t before = 0;
        for (bool first = true; rows.executeStep(); first = false) {
            const std::int64_t row = rows.getColumn(0).getInt64();
            if (!first && row <= before) return fmt::format("row {} is out of order", row);
            before = row;
        }
        if (!has_index(database, table + ".key")) return {};
        const std::int64_t all = count(name + " NOT INDEXED");
        const std::int64_t found = count(
            fmt::format("{0} AS a NOT INDEXED WHERE EXISTS (SELECT 1 FROM {0} AS b INDEXED BY {1} WHERE "
                        "b.Zone IS a.Zone AND b.Date IS a.Date AND b.rowid = a.rowid)",
                        name, key));
        if (all == found &&
            all == count(name + " INDEXED BY " + key + " WHERE Zone >= -1e300 OR Zone IS NULL"))
            return {};
        return fmt::format("{} of {} rows are missing from index {}", all - found, all, table + ".key");
    });
}

/// What the check of one table finds; empty if it finds nothing.
std::string table_verdict(BasinDatabase& database, const std::string& table) {
    if (!reads_as_limit(table))
        return verdict_or_fault(database, fmt::format("integrity_check({})", quoted_text(table)));
    try {
        return walked_verdict(database, table);
    } catch (const StoreError& error) {
        if (error.fault() != StoreFault::Damaged) throw;
        return error.what();
    }
}

/// The small tables, which every command reads.
void check_definition(BasinDatabase& database, std::vector<BasinDamage>& damage) {
    for (const char* table :
         {k_basin_description, k_zone_description, k_simulation_index, k_scenario_index}) {
        const std::string found = table_verdict(database, database.existing_table(table));
        if (!found.empty()) damage.push_back({table, found});
    }
}

/// Declarations that differ from the tables of a basin.
std::vector<BasinDamage> declaration_damage(BasinDatabase& database) {
    std::vector<BasinDamage> damage;
    try {
        check_places(database, damage);
        check_presence(database, damage);
        if (damage.empty()) check_fields(database, damage);
    } catch (const StoreError& error) {
        if (error.fault() == StoreFault::Busy) throw;
        damage.push_back({"", error.what()});
    }
    return damage;
}

bool only_results(const std::vector<BasinDamage>& damage) {
    return std::all_of(damage.begin(), damage.end(),
                       [](const BasinDamage& entry) { return same_name(entry.table, k_sim_results); });
}

}  // namespace

std::optional<TableSchema> known_table(BasinDatabase& database, const std::string& name) {
    for (TableSchema& table : template_tables()) {
        if (same_name(table.name, name)) return std::move(table);
    }
    if (same_name(name, k_basin_averages)) return basin_averages_table();
    if (same_name(name, k_sim_results)) return sim_results_table();
    if (lists(listed_names(database, k_simulation_index, "SimName"), name)) return parameter_table(name);
    if (lists(listed_names(database, k_scenario_index, "ScenarioFile"), name)) return scenario_table(name);
    return std::nullopt;
}

std::vector<BasinDamage> schema_damage(BasinDatabase& database) {
    std::vector<BasinDamage> damage = declaration_damage(database);
    if (damage.empty()) check_definition(database, damage);
    return damage;
}

std::vector<BasinDamage> structure_damage(BasinDatabase& database, int most) {
    std::vector<BasinDamage> damage = declaration_damage(database);
    const std::string whole = verdict_or_fault(database, fmt::format("integrity_check({})", most));
    if (whole.empty()) return damage;
    bool placed = false;
    try {
        for (const std::string& table : database.table_names()) {
            const std::string found = table_verdict(database, table);
            if (found.empty()) continue;
            damage.push_back({table, found});
            placed = true;
        }
    } catch (const StoreError&) {
        placed = false;  // the list of the tables can't be read; the verdict on the whole file says why
    }
    if (!placed) damage.push_back({"", whole});
    return damage;
}

void refuse_damage(const fs::path& file, const std::vector<BasinDamage>& damage) {
    if (damage.empty()) return;
    const BasinDamage& first = damage.front();
    const std::string place = first.table.empty() ? "" : fmt::format(" in the table '{}'", first.table);
    throw StoreError(
        StoreFault::Damaged,
        fmt::format("The file '{0}' is damaged{1}: {2}. To copy what can be read into a new file, "
                    "run: nivora-batch salvage \"{0}\" NEW.mdb",
                    path_text(file), place, without_end_point(first.what)));
}

bool has_only_damaged_results(BasinDatabase& database, const fs::path& file) {
    const auto damage = structure_damage(database);
    if (damage.empty()) return false;
    if (!only_results(damage)) refuse_damage(file, damage);
    return true;
}

}  // namespace nivora
