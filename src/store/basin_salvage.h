// Copies what can be read of a damaged basin file into a new file.
#pragma once

#include "store/basin_check.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// What was copied of one table.
struct SalvagedTable {
    std::string name;
    std::int64_t rows = 0;                 ///< copied
    std::vector<std::string> losses = {};  ///< clauses: what could not be read, and where
};

/// Copies every table and row that can be read into a new basin file with sound structure. The damaged file
/// is read through a private copy and is not changed.
///
/// A row is left out if one of its fields can't hold its value, or if its key is invalid: such a row belongs
/// to another table, or to none.
///
/// @param made must not exist
/// @throws StoreError, FileError if nothing can be read at all, or the new file can't be written
[[nodiscard]] std::vector<SalvagedTable> salvage_basin(const std::filesystem::path& damaged,
                                                       const std::filesystem::path& made);

/// Writes all tables except the results into a new file, from a basin in which only the results are damaged.
/// The file is not flushed. @throws StoreError
void copy_without_results(BasinDatabase& database, const std::filesystem::path& made);

/// Replaces a basin in which only the results are damaged by a file of all other tables.
/// @param database the damaged file, held exclusively; the caller closes it and opens the file again
/// @throws StoreError, FileError, with the file unchanged
void replace_without_results(BasinDatabase& database);

}  // namespace nivora
