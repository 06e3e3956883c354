// What is wrong with a basin file: its structure, and the contents of its tables.
#pragma once

#include "store/database.h"

#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// One defect.
struct BasinDamage {
    std::string table;  ///< empty if it concerns the file as a whole
    std::string what;   ///< a clause: what, and in which row, zone or on which day
};

/// The schema of a table by its name and by the lists of simulations and scenarios; nothing for
/// an unknown table.
[[nodiscard]] std::optional<TableSchema> known_table(BasinDatabase& database, const std::string& name);

/// Compares the declarations of the file with the tables of a basin (missing tables, wrong names or types of
/// fields, two tables on one page), and checks the few pages of the basin's definition and its lists. Fast
/// for a file of any size.
[[nodiscard]] std::vector<BasinDamage> schema_damage(BasinDatabase& database);

/// The same, and every page of the file: trees, indexes against rows, free pages. About a second for each
/// 100 MB.
///
/// @param most entries for each table
[[nodiscard]] std::vector<BasinDamage> structure_damage(BasinDatabase& database, int most = 1);

/// Defects in the rows of a sound structure: duplicate or missing keys, values that their fields can't hold
/// or the model can't use, rows of zones and simulations that do not exist.
[[nodiscard]] std::vector<BasinDamage> content_damage(BasinDatabase& database);

/// Refuses a damaged file with a message that names the first defect and says how to rescue the rest.
/// @throws StoreError Damaged, if there is any
void refuse_damage(const std::filesystem::path& file, const std::vector<BasinDamage>& damage);

/// Checks every page of a basin before it is used, and refuses any damage except in the results, which the
/// next run rebuilds.
///
/// @param file the name that the user knows, for the message
/// @return whether the results are damaged
/// @throws StoreError
[[nodiscard]] bool has_only_damaged_results(BasinDatabase& database, const std::filesystem::path& file);

}  // namespace nivora
