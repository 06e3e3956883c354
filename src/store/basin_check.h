// What is wrong with a basin file: its structure, and the contents of its tables.
#pragma once

#include "store/database.h"

#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// One thing that is wrong.
struct BasinDamage {
    std::string table;  ///< empty where it concerns the file as a whole
    std::string what;   ///< a clause: what, and in which row, zone or on which day
};

/// The fields that a table has by its name and by the lists of simulations and scenarios; nothing for a table
/// that the basin does not know.
[[nodiscard]] std::optional<TableSchema> known_table(BasinDatabase& database, const std::string& name);

/// Compares what the file declares with the tables of a basin: those that are missing, fields of other names
/// or types, two tables in one place; and checks the few pages of the basin's definition and its lists. Quick
/// for a file of any size.
[[nodiscard]] std::vector<BasinDamage> schema_damage(BasinDatabase& database);

/// The same, and every page of the file: trees, indexes against rows, free pages. About a second for each
/// 100 MB.
///
/// @param most entries for each table
[[nodiscard]] std::vector<BasinDamage> structure_damage(BasinDatabase& database, int most = 1);

/// What is wrong in the rows of a sound structure: keys that are doubled or missing, values that their fields
/// can't hold or the model can't use, rows of zones and simulations that do not exist.
[[nodiscard]] std::vector<BasinDamage> content_damage(BasinDatabase& database);

/// The refusal of a damaged file: the first place, and how to rescue the rest.
/// @throws StoreError Damaged, if there is any
void refuse_damage(const std::filesystem::path& file, const std::vector<BasinDamage>& damage);

/// Checks every page of a basin before somebody works in it, and refuses all damage but that of the results,
/// which the next run rebuilds.
///
/// @param file the name that the user knows, which the refusal tells
/// @return whether the results are damaged
/// @throws StoreError
[[nodiscard]] bool has_only_damaged_results(BasinDatabase& database, const std::filesystem::path& file);

}  // namespace nivora
