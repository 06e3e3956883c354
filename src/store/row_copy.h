// Rows of one basin file into another, also out of a file whose trees are damaged.
#pragma once

#include "store/database.h"

#include <cstdint>
#include <string>
#include <vector>

namespace nivora {

/// What was copied, and clauses that say what was not.
struct CopiedRows {
    std::int64_t rows = 0;
    std::vector<std::string> losses = {};
};

/// Copies all rows of a table in stored order. @throws StoreError at the first that can't be read
void copy_sound_rows(SQLite::Database& from, SQLite::Database& to, const std::string& table);

/// Copies every row that can be reached, except rows with a value that its
/// field can't hold or with an invalid key.
///
/// @param stored  the name of the table in the damaged file; its fields are taken by position
/// @param table   the table in the new file
[[nodiscard]] CopiedRows copy_readable_rows(SQLite::Database& from, const std::string& stored,
                                            SQLite::Database& to, const TableSchema& table);

}  // namespace nivora
