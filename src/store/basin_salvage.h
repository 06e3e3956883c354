// What can be read of a damaged basin file, in a new file.
#pragma once

#include "store/basin_check.h"

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace nivora {

/// What came over of one table.
struct SalvagedTable {
    std::string name;
    std::int64_t rows = 0;                 ///< copied
    std::vector<std::string> losses = {};  ///< clauses: what could not be read, and where
};

/// Copies every table and row that can be read into a new basin file with sound structure. The damaged file
/// is read through a private copy and stays as it is.
///
/// A row is left out where a value of it is one that its field can't hold, or its key one that no row can
/// have: such a row belongs to another table, or to none.
///
/// @param made must not exist
/// @throws StoreError, FileError where nothing can be read at all, or the new file can't be written
[[nodiscard]] std::vector<SalvagedTable> salvage_basin(const std::filesystem::path& damaged,
                                                       const std::filesystem::path& made);

/// Writes all tables but the results into a new file, from a basin of which only these are damaged. The file
/// is not flushed. @throws StoreError
void copy_without_results(BasinDatabase& database, const std::filesystem::path& made);

/// Puts a file of all tables but the results into the place of a basin of which only these are damaged.
/// @param database the damaged file, held alone; the caller closes it and opens the file anew
/// @throws StoreError, FileError, with the file as it was
void replace_without_results(BasinDatabase& database);

}  // namespace nivora
