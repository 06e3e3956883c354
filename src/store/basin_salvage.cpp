#include "store/basin_salvage.h"

#include "base/durable_file.h"
#include "base/text.h"
#include "store/basin_copy.h"
#include "store/basin_opening.h"
#include "store/raw_pages.h"
#include "store/row_copy.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <SQLiteCpp/Statement.h>
#include <SQLiteCpp/Transaction.h>
#include <fmt/format.h>
#include <sqlite3.h>

#include <algorithm>
#include <memory>

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

/// The schema of a table by its name or, if a user named it, by the fields in the statement that created it.
std::optional<TableSchema> recognized(const StoredTable& table) {
    for (TableSchema& fixed : fixed_tables()) {
        if (same_name(fixed.name, table.name)) return std::move(fixed);
    }
    if (has_two_of(table.statement, {"LagTime", "LapseRate", "Xcoeff", "Ycoeff"}) &&
        table.statement.find("DailyQ") == std::string::npos)  // the results have these fields, too
        return parameter_table(table.name);
    if (has_two_of(table.statement, {"VarParm", "EditAction", "EditFactor"}))
        return scenario_table(table.name);
    for (TableSchema& fixed : fixed_tables()) {
        if (one_character_apart(fixed.name, table.name)) return std::move(fixed);
    }
    return std::nullopt;
}

/// A damaged file that is read in spite of damaged declarations.
class DamagedFile {
public:
    explicit DamagedFile(const fs::path& copy) : path_(copy) {
        // The journal is played back through the header, and may restore the header from before the change.
        if (!repair_header(copy))
            throw StoreError(StoreFault::NotADatabase, "The file is not a Nivora basin file.");
        undo_interrupted();
        static_cast<void>(repair_header(copy));
        tables_ = listed();
        restore_declarations();
    }

    [[nodiscard]] const std::vector<StoredTable>& tables() const { return tables_; }
    [[nodiscard]] SQLite::Database open() const { return opened(SQLite::OPEN_READONLY); }

private:
    void undo_interrupted() const {
        try {
            BasinDatabase database{path_, Access::ReadWrite};
            static_cast<void>(database.table_names());
        } catch (const StoreError&) {
            // A file that can't be opened has no change to roll back.
        }
        fs::path journal = path_;
        journal += "-journal";
        fs::remove(journal);
    }

    /// With the list of tables writable, the engine skips its damaged entries.
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
                // The first statement reports the damaged entries; the next ones work with the others.
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
            // The list ends at the place that can't be read; the tables after that place are reported as
            // missing.
        }
        return tables;
    }

    /// Replaces the declaration of each recognized table by that of its schema, so that flipped bits in names
    /// and types do no harm, and drops all other entries.
    void restore_declarations() {
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
            // The declarations stay unchanged and are used as far as possible.
        }
    }

    fs::path path_;
    std::vector<StoredTable> tables_;
};

/// Why the rows at a table's place are not its own; empty if they are.
std::string place_problem(const fs::path& copy, const std::vector<StoredTable>& tables,
                          const StoredTable& table) {
    const auto fields = fields_of_first_row(copy, table.page);
    const auto declared = static_cast<int>(table.schema->fields.size());
    if (fields && *fields != declared)
        return fmt::format("all rows: those in the place of the table have {} fields, not {}", *fields,
                           declared);
    for (const StoredTable& other : tables) {
        if (other.row == table.row || other.page != table.page) continue;
        if (!other.schema || !fields || static_cast<int>(other.schema->fields.size()) == declared)
            return fmt::format(
                "all rows: '{}' has the same place, and the file does not show to which of the two "
                "the rows belong",
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
        salvaged.losses.push_back(std::string{"all other rows, which can't be read: "} + error.what());
    }
    const bool has_parameters =
        !is_fixed_table(table.schema->name) && same_name(table.schema->fields[0].name, "Zone");
    if (has_parameters && !from_start) made.create_daily_index(table.schema->name);
    return salvaged;
}

/// The names that an index lists.
std::vector<std::string> listed_names(BasinDatabase& made, const char* index, const char* field) {
    SQLite::Statement rows{made.sql(),
                           fmt::format("SELECT {} FROM {} WHERE {} IS NOT NULL", field, index, field)};
    std::vector<std::string> names;
    while (rows.executeStep()) names.push_back(rows.getColumn(0).getString());
    return names;
}

bool lists(const std::vector<std::string>& names, std::string_view name) {
    return std::any_of(names.begin(), names.end(),
                       [&](const std::string& listed) { return same_name(listed, name); });
}

/// Restores table names that a flipped bit changed.
class NameRestorer {
public:
    NameRestorer(BasinDatabase& made, std::vector<SalvagedTable>& all)
        : made_(made),
          all_(all),
          simulations_(listed_names(made, k_simulation_index, "SimName")),
          scenarios_(listed_names(made, k_scenario_index, "ScenarioFile")) {}

    void restore() {
        restore(simulations_, parameter_table("").fields.front().name);
        restore(scenarios_, scenario_table("").fields.front().name);
    }

private:
    /// Renames a table only if exactly one free name fits it and that name fits no other table.
    void restore(const std::vector<std::string>& names, const std::string& first_field) {
        for (SalvagedTable& table : all_) {
            if (!nameless(table.name, first_field)) continue;
            std::vector<std::string> fitting;
            for (const std::string& name : names) {
                if (one_character_apart(table.name, name) && !made_.has_table(name) && !lists(fitting, name))
                    fitting.push_back(name);
            }
            if (fitting.size() == 1 && tables_near(fitting.front(), first_field) == 1)
                rename(table, fitting.front());
        }
    }

    /// Whether a table is in the new file, of that kind, and under a name that nothing lists.
    [[nodiscard]] bool nameless(const std::string& name, const std::string& first_field) const {
        return !is_fixed_table(name) && !lists(simulations_, name) && !lists(scenarios_, name) &&
               made_.has_table(name) && same_name(made_.table_fields(name).front().name, first_field);
    }

    [[nodiscard]] std::int64_t tables_near(const std::string& name, const std::string& first_field) const {
        const std::vector<std::string> tables = made_.table_names();
        return std::count_if(tables.begin(), tables.end(), [&](const std::string& table) {
            return one_character_apart(table, name) && nameless(table, first_field);
        });
    }

    void rename(SalvagedTable& table, const std::string& name) {
        made_.rename_table(table.name, name);
        if (has_daily_index(table.name)) {  // which keeps the old name
            made_.execute("DROP INDEX " + quoted_name(table.name + ".key"));
            made_.create_daily_index(name);
        }
        table.losses.push_back(fmt::format("its name, which was '{}'", table.name));
        table.name = name;
    }

    [[nodiscard]] bool has_daily_index(const std::string& table) const {
        SQLite::Statement query{made_.sql(), "SELECT 1 FROM sqlite_schema WHERE type = 'index' AND name = ?"};
        query.bind(1, table + ".key");
        return query.executeStep();
    }

    BasinDatabase& made_;
    std::vector<SalvagedTable>& all_;
    std::vector<std::string> simulations_;
    std::vector<std::string> scenarios_;
};

/// Adds the parts of a basin that the damaged file did not provide.
void complete(BasinDatabase& made, std::vector<SalvagedTable>& all) {
    for (const TableSchema& table : template_tables()) {
        const bool known = std::any_of(all.begin(), all.end(),
                                       [&](const SalvagedTable& t) { return same_name(t.name, table.name); });
        if (!known)
            all.push_back({table.name, 0, {"all rows: the table is not in the file's list of tables"}});
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
    made.write_without_flushing();  // the file is flushed before it is renamed
    std::vector<SalvagedTable> all;
    HeldTransaction transaction{made};
    guarded([&] {
        made.execute("DELETE FROM BasinDescription");
        for (const StoredTable& table : damaged.tables()) {
            const bool twice = std::any_of(all.begin(), all.end(), [&](const SalvagedTable& salvaged) {
                return table.schema && same_name(salvaged.name, table.schema->name);
            });
            if (!table.schema || twice) {
                all.push_back({table.name, 0, {"all rows: the file does not show which table this is"}});
            } else {
                all.push_back(salvage_table(damaged, copy, table, made));
            }
        }
        complete(made, all);
        NameRestorer{made, all}.restore();
    });
    transaction.commit();
    return all;
}

/// An entry of a basin's own list of tables and indexes.
struct Declaration {
    std::string type;
    std::string name;
    std::string statement;
};

/// The entries of one type, without those of the results.
std::vector<Declaration> declarations(BasinDatabase& database, const char* type) {
    SQLite::Statement rows{
        database.sql(),
        "SELECT name, tbl_name, sql FROM sqlite_schema WHERE type = ? AND sql IS NOT NULL AND "
        "name NOT LIKE 'sqlite\\_%' ESCAPE '\\' ORDER BY rowid"};
    rows.bind(1, type);
    std::vector<Declaration> found;
    while (rows.executeStep()) {
        if (same_name(rows.getColumn(1).getString(), k_sim_results)) continue;
        found.push_back({type, rows.getColumn(0).getString(), rows.getColumn(2).getString()});
    }
    return found;
}

[[noreturn]] void refuse_declaration(const Declaration& declaration) {
    throw StoreError(
        StoreFault::Damaged,
        fmt::format("The declaration of the {} '{}' in the basin file is not a statement that creates "
                    "it. To copy what can be read into a new file, run: nivora-batch salvage",
                    declaration.type, declaration.name));
}

/// Whether a statement begins like those that the engine stores for an entry of this type.
bool makes_entry(const Declaration& declaration) {
    const auto begins = [&](std::string_view words) {
        return same_name(std::string_view{declaration.statement}.substr(0, words.size()), words);
    };
    if (declaration.type == "table") return begins("CREATE TABLE ");
    if (declaration.type == "index") return begins("CREATE INDEX ") || begins("CREATE UNIQUE INDEX ");
    if (declaration.type == "view") return begins("CREATE VIEW ");
    return begins("CREATE TRIGGER ");
}

std::int64_t entries_of(SQLite::Database& database, const Declaration& declaration) {
    SQLite::Statement count{database, "SELECT count(*) FROM sqlite_schema WHERE type = ? AND name = ?"};
    count.bind(1, declaration.type);
    count.bind(2, declaration.name);
    return count.executeStep() ? count.getColumn(0).getInt64() : 0;
}

/// Creates an entry with the statement stored in the file, which is not trusted: it has to be a single
/// statement that creates this entry.
void make_as_stored(SQLite::Database& made, const Declaration& declaration) {
    if (!makes_entry(declaration)) refuse_declaration(declaration);
    sqlite3_stmt* prepared = nullptr;
    const char* rest = nullptr;
    const int answer =
        sqlite3_prepare_v2(made.getHandle(), declaration.statement.c_str(), -1, &prepared, &rest);
    const std::unique_ptr<sqlite3_stmt, int (*)(sqlite3_stmt*)> owner{prepared, sqlite3_finalize};
    if (answer != SQLITE_OK) throw SQLite::Exception(made.getHandle(), answer);
    if (prepared == nullptr || !trimmed(rest).empty()) refuse_declaration(declaration);
    const int done = sqlite3_step(prepared);
    if (done != SQLITE_DONE) throw SQLite::Exception(made.getHandle(), done);
    if (entries_of(made, declaration) != 1) refuse_declaration(declaration);
}

bool same_fields(const std::vector<Field>& a, const std::vector<Field>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), [](const Field& one, const Field& other) {
        return one.name == other.name && one.type == other.type && one.width == other.width;
    });
}

/// Creates a table of the basin from its schema, and one that a user added, or of an older layout, as
/// it is stored.
void make_table(BasinDatabase& database, SQLite::Database& made, const Declaration& declaration) {
    const auto known = known_table(database, declaration.name);
    if (known && same_fields(known->fields, database.table_fields(declaration.name))) {
        made.exec(create_statement({declaration.name, known->fields}));
    } else {
        make_as_stored(made, declaration);
    }
}

}  // namespace

std::vector<SalvagedTable> salvage_basin(const fs::path& damaged, const fs::path& made) {
    std::error_code unknown;  // a name that can't even be looked up is refused when the file is made
    if (fs::exists(fs::symlink_status(made, unknown)))
        throw FileError(fmt::format("The file '{}' already exists and was not changed. Choose another name.",
                                    path_text(made)));
    if (!fs::is_regular_file(damaged, unknown))
        throw FileError(
            fmt::format("The file '{}' can't be read: there is no such file.", path_text(damaged)));
    const PrivateFolder folder;
    const fs::path copy = folder.path() / "basin.mdb";
    copy_with_journal(damaged, copy);
    const PartFile part{made};
    std::vector<SalvagedTable> tables = guarded([&] { return salvage_into(copy, part.path()); });
    move_basin_to_new_name(part.path(), made);
    return tables;
}

void copy_without_results(BasinDatabase& database, const fs::path& made_file) {
    guarded([&] {
        SQLite::Database made{path_text(made_file), SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
        open_defensively(made);
        made.exec("PRAGMA page_size = 4096");
        made.exec("PRAGMA encoding = 'UTF-8'");
        made.exec("PRAGMA synchronous = OFF");
        SQLite::Transaction transaction{made};
        for (const Declaration& table : declarations(database, "table")) {
            make_table(database, made, table);
            copy_sound_rows(database.sql(), made, table.name);
        }
        for (const char* type : {"index", "view", "trigger"}) {
            for (const Declaration& entry : declarations(database, type)) make_as_stored(made, entry);
        }
        made.exec(fmt::format("PRAGMA application_id = {}", k_application_id));
        made.exec(fmt::format("PRAGMA user_version = {}", k_schema_version));
        transaction.commit();
    });
}

void replace_without_results(BasinDatabase& database) {
    const fs::path target = fs::canonical(database.path());
    const PartFile part{target};
    copy_without_results(database, part.path());
    fs::permissions(part.path(), fs::status(target).permissions());
    move_into_place(part.path(), target);
}

}  // namespace nivora
