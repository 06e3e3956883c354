#include "store/basin_salvage.h"

#include "base/durable_file.h"
#include "base/text.h"
#include "store/basin_copy.h"
#include "store/basin_opening.h"
#include "store/raw_pages.h"
#include "store/row_copy.h"
#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// A table of the damaged file, as its list of tables has it.
struct StoredTable {
    std::int64_t row = 0;   ///< in the list
    std::string name;       ///< as stored, perhaps with flipped bits
    std::int64_t page = 0;  ///< where it begins
    std::string statement;  ///< that made it
    std::optional<TableSchema> schema = {};
};

bool one_character_apart(std::string_view a, std::string_view b) {
    if (a.size() != b.size()) return false;
    int differing = 0;
    for (std::size_t i = 0; i < a.size(); ++i) differing += a[i] != b[i] ? 1 : 0;
    return differing == 1;
}

std::vector<TableSchema> fixed_tables() {
    std::vector<TableSchema> tables = template_tables();
    tables.push_back(basin_averages_table());
    tables.push_back(sim_results_table());
    return tables;
}

bool has_two_of(const std::string& text, std::initializer_list<const char*> words) {
    return std::count_if(words.begin(), words.end(),
                         [&](const char* word) { return text.find(word) != std::string::npos; }) >= 2;
}

/// What a table is by its name or, for one that a user named, by the fields in the statement that made it.
std::optional<TableSchema> recognized(const StoredTable& table) {
    for (TableSchema& fixed : fixed_tables()) {
        if (same_name(fixed.name, table.name) || one_character_apart(fixed.name, table.name))
            return std::move(fixed);
    }
    if (has_two_of(table.statement, {"LagTime", "LapseRate", "Xcoeff", "Ycoeff"}))
        return parameter_table(table.name);
    if (has_two_of(table.statement, {"VarParm", "EditAction", "EditFactor"}))
        return scenario_table(table.name);
    return std::nullopt;
}

/// A damaged file that is read past what its declarations say.
class DamagedFile {
public:
    explicit DamagedFile(const fs::path& copy) : path_(copy) {
        undo_interrupted();
        if (!mend_header(copy))
            throw StoreError(StoreFault::NotADatabase, "It is no basin file, damaged or not.");
        tables_ = listed();
        declare_anew();
    }

    [[nodiscard]] const std::vector<StoredTable>& tables() const { return tables_; }
    [[nodiscard]] SQLite::Database open() const { return opened(SQLite::OPEN_READONLY); }

private:
    void undo_interrupted() const {
        try {
            BasinDatabase database{path_, Access::ReadWrite};
            static_cast<void>(database.table_names());
        } catch (const StoreError&) {
            // What can't be opened has no change that could be undone.
        }
        fs::path journal = path_;
        journal += "-journal";
        fs::remove(journal);
    }

    /// With the list of tables writable, the engine passes over the entries of it that are damaged.
    [[nodiscard]] SQLite::Database opened(int flags) const {
        return guarded([&] {
            SQLite::Database sql{path_text(path_), flags};
            sqlite3_db_config(sql.getHandle(), SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
            sqlite3_db_config(sql.getHandle(), SQLITE_DBCONFIG_ENABLE_TRIGGER, 0, nullptr);
            sqlite3_db_config(sql.getHandle(), SQLITE_DBCONFIG_ENABLE_VIEW, 0, nullptr);
            sql.exec("PRAGMA writable_schema = ON");
            sql.exec("PRAGMA cell_size_check = ON");
            try {
                sql.execAndGet("SELECT count(*) FROM sqlite_schema");
            } catch (const SQLite::Exception&) {
                // The first statement tells that entries are damaged; those that follow work with the others.
            }
            return sql;
        });
    }

    [[nodiscard]] std::vector<StoredTable> listed() const {
        std::vector<StoredTable> tables;
        SQLite::Database sql = opened(SQLite::OPEN_READONLY);
        try {
            SQLite::Statement rows{
                sql,
                "SELECT rowid, name, rootpage, sql FROM sqlite_schema WHERE type = 'table' "
                "AND name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid"};
            while (rows.executeStep()) {
                StoredTable table{rows.getColumn(0).getInt64(), rows.getColumn(1).getString(),
                                  rows.getColumn(2).getInt64(), rows.getColumn(3).getString()};
                table.schema = recognized(table);
                tables.push_back(std::move(table));
            }
        } catch (const SQLite::Exception&) {
            // The list ends where it can't be read; the tables behind that place are told as missing.
        }
        return tables;
    }

    /// Gives each table that was recognized the declaration that it has to have, so that flipped bits in
    /// names and types don't count, and drops the entries of all else.
    void declare_anew() {
        try {
            SQLite::Database sql = opened(SQLite::OPEN_READWRITE);
            SQLite::Transaction transaction{sql};
            sql.exec("DELETE FROM sqlite_schema WHERE type <> 'table'");
            for (StoredTable& table : tables_) {
                if (!table.schema) continue;
                SQLite::Statement update{
                    sql, "UPDATE sqlite_schema SET name = ?1, tbl_name = ?1, sql = ?2 WHERE rowid = ?3"};
                update.bind(1, table.schema->name);
                update.bind(2, create_statement(*table.schema));
                update.bind(3, table.row);
                update.exec();
            }
            transaction.commit();
            for (StoredTable& table : tables_) {
                if (table.schema) table.name = table.schema->name;
            }
        } catch (const SQLite::Exception&) {
            // The declarations stay as they are, and serve as far as they go.
        }
    }

    fs::path path_;
    std::vector<StoredTable> tables_;
};

/// Why the rows at a table's place are not its own; empty where they are.
std::string place_problem(const fs::path& copy, const std::vector<StoredTable>& tables,
                          const StoredTable& table) {
    const auto fields = fields_of_first_row(copy, table.page);
    const auto declared = static_cast<int>(table.schema->fields.size());
    if (fields && *fields != declared)
        return fmt::format("nothing: the rows at its place have {} fields, not {}", *fields, declared);
    for (const StoredTable& other : tables) {
        if (other.row == table.row || other.page != table.page) continue;
        if (!other.schema || !fields || static_cast<int>(other.schema->fields.size()) == declared)
            return fmt::format(
                "nothing: it has its place in common with '{}', and whose rows stand there can't be "
                "told",
                other.name);
    }
    return {};
}

SalvagedTable salvage_table(DamagedFile& damaged, const fs::path& copy, const StoredTable& table,
                            BasinDatabase& made) {
    SalvagedTable salvaged{table.schema->name};
    const bool from_start = made.has_table(table.schema->name);
    if (!from_start) made.create_table(*table.schema);
    const std::string problem = place_problem(copy, damaged.tables(), table);
    if (!problem.empty()) {
        salvaged.losses.push_back(problem);
        return salvaged;
    }
    try {
        SQLite::Database from = damaged.open();
        CopiedRows copied = copy_readable_rows(from, table.name, made.sql(), *table.schema);
        salvaged.rows = copied.rows;
        salvaged.losses = std::move(copied.losses);
    } catch (const StoreError& error) {
        if (error.fault() == StoreFault::Full || error.fault() == StoreFault::ReadOnly) throw;
        salvaged.losses.push_back(std::string{"what was not copied can't be read: "} + error.what());
    }
    const bool has_parameters =
        !is_fixed_table(table.schema->name) && same_name(table.schema->fields[0].name, "Zone");
    if (has_parameters && !from_start) made.create_daily_index(table.schema->name);
    return salvaged;
}

/// Names of the index that no table bears, where a table with one flipped character stands.
void restore_names(BasinDatabase& made, const char* index, const char* field,
                   std::vector<SalvagedTable>& all) {
    SQLite::Statement rows{made.sql(),
                           fmt::format("SELECT {} FROM {} WHERE {} IS NOT NULL", field, index, field)};
    std::vector<std::string> names;
    while (rows.executeStep()) names.push_back(rows.getColumn(0).getString());
    for (const std::string& name : names) {
        if (made.has_table(name)) continue;
        for (SalvagedTable& table : all) {
            if (is_fixed_table(table.name) || !one_character_apart(table.name, name)) continue;
            made.execute(
                fmt::format("ALTER TABLE {} RENAME TO {}", quoted_name(table.name), quoted_name(name)));
            table.losses.push_back(fmt::format("its name, which was '{}'", table.name));
            table.name = name;
            break;
        }
    }
}

/// Adds what the basin needs and what the damaged file did not yield.
void complete(BasinDatabase& made, std::vector<SalvagedTable>& all) {
    for (const TableSchema& table : template_tables()) {
        const bool known = std::any_of(all.begin(), all.end(),
                                       [&](const SalvagedTable& t) { return same_name(t.name, table.name); });
        if (!known) all.push_back({table.name, 0, {"the table is not in the file's list"}});
    }
    const auto header = made.sql().execAndGet("SELECT count(*) FROM BasinDescription").getInt();
    if (header > 0) return;
    SQLite::Statement row{made.sql(), "INSERT INTO BasinDescription (BasinName, Units) VALUES (?, -1)"};
    row.bind(1, k_unnamed_basin);
    row.exec();
}

std::vector<SalvagedTable> salvage_into(const fs::path& copy, const fs::path& part) {
    DamagedFile damaged{copy};
    BasinDatabase::create_template(part);
    BasinDatabase made{part, Access::ReadWrite};
    made.execute("PRAGMA synchronous = OFF");  // the file is brought to the disk before it gets its name
    std::vector<SalvagedTable> all;
    made.in_transaction([&] {
        made.execute("DELETE FROM BasinDescription");
        for (const StoredTable& table : damaged.tables()) {
            const bool twice = std::any_of(all.begin(), all.end(), [&](const SalvagedTable& salvaged) {
                return table.schema && same_name(salvaged.name, table.schema->name);
            });
            if (!table.schema || twice) {
                all.push_back({table.name, 0, {"all of it: the file does not say which table it is"}});
            } else {
                all.push_back(salvage_table(damaged, copy, table, made));
            }
        }
        complete(made, all);
        restore_names(made, k_simulation_index, "SimName", all);
        restore_names(made, k_scenario_index, "ScenarioFile", all);
        return true;
    });
    return all;
}

/// Statements of the damaged basin's own list, for a copy with the same tables and indexes.
std::vector<std::pair<std::string, std::string>> statements(BasinDatabase& database, const char* type) {
    SQLite::Statement rows{
        database.sql(),
        "SELECT name, tbl_name, sql FROM sqlite_schema WHERE type = ? AND sql IS NOT NULL AND "
        "name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid"};
    rows.bind(1, type);
    std::vector<std::pair<std::string, std::string>> found;
    while (rows.executeStep()) {
        if (same_name(rows.getColumn(1).getString(), k_sim_results)) continue;
        found.emplace_back(rows.getColumn(0).getString(), rows.getColumn(2).getString());
    }
    return found;
}

void copy_without_results(BasinDatabase& database, const fs::path& part) {
    guarded([&] {
        SQLite::Database made{path_text(part), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
        made.exec("PRAGMA page_size = 4096");
        made.exec("PRAGMA encoding = 'UTF-8'");
        made.exec("PRAGMA synchronous = OFF");
        SQLite::Transaction transaction{made};
        for (const auto& [name, statement] : statements(database, "table")) {
            made.exec(statement);
            copy_sound_rows(database.sql(), made, name);
        }
        for (const char* type : {"index", "view", "trigger"}) {
            for (const auto& [name, statement] : statements(database, type)) made.exec(statement);
        }
        made.exec(fmt::format("PRAGMA application_id = {}", k_application_id));
        made.exec(fmt::format("PRAGMA user_version = {}", k_schema_version));
        transaction.commit();
    });
}

}  // namespace

std::vector<SalvagedTable> salvage_basin(const fs::path& damaged, const fs::path& made) {
    std::error_code unknown;  // a name that can't even be looked up is refused when the file is made
    if (fs::exists(fs::symlink_status(made, unknown)))
        throw FileError(fmt::format("The file '{}' exists already; it was left as it is.", path_text(made)));
    if (!fs::is_regular_file(damaged, unknown))
        throw FileError(
            fmt::format("The file '{}' can't be read: there is no such file.", path_text(damaged)));
    const PrivateFolder folder;
    const fs::path copy = folder.path() / "basin.mdb";
    copy_with_journal(damaged, copy);
    const PartFile part{made};
    std::vector<SalvagedTable> tables = guarded([&] { return salvage_into(copy, part.path()); });
    give_new_name(part.path(), made);
    return tables;
}

void replace_without_results(BasinDatabase& database) {
    const fs::path target = fs::canonical(database.path());
    const PartFile part{target};
    copy_without_results(database, part.path());
    fs::permissions(part.path(), fs::status(target).permissions());
    move_into_place(part.path(), target);
}

}  // namespace nivora
