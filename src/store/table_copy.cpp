#include "store/table_copy.h"

#include "base/text.h"
#include "store/table_io.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>

namespace nivora {
namespace {

/// No table of a user has a point in its name.
constexpr const char* k_name_between = "renamed.between";

/// Removes the index that was created with a daily table, whatever table it belongs to now.
void drop_daily_index(BasinDatabase& database, const std::string& table) {
    database.execute("DROP INDEX IF EXISTS " + quoted_name(table + ".key"));
}

}  // namespace

void copy_table(BasinDatabase& database, std::string_view from, const TableSchema& copy) {
    const std::string source = database.existing_table(from);
    const auto held = database.table_fields(source);
    std::string fields;
    for (const Field& field : copy.fields) {
        const bool known = std::any_of(held.begin(), held.end(),
                                       [&](const Field& other) { return same_name(other.name, field.name); });
        if (!known) {
            throw StoreError(StoreFault::Missing,
                             fmt::format("The table '{}' has no field '{}'.", source, field.name));
        }
        fields += (fields.empty() ? "" : ", ") + quoted_name(field.name);
    }
    database.create_table(copy);
    database.execute(fmt::format("INSERT INTO {} ({}) SELECT {} FROM {} ORDER BY rowid",
                                 quoted_name(copy.name), fields, fields, quoted_name(source)));
}

void rename_daily_table(BasinDatabase& database, std::string_view table, std::string_view name) {
    const std::string from = database.existing_table(table);
    drop_daily_index(database, from);
    if (!same_name(from, name)) drop_daily_index(database, std::string{name});
    // The store takes a name that differs in case alone for a name that is taken.
    database.rename_table(from, k_name_between);
    database.rename_table(k_name_between, name);
    database.create_daily_index(name);
}

}  // namespace nivora
