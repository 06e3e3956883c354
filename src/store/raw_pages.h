// The few bytes of a database file that are read and mended past the database engine, where the engine would
// refuse the file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace nivora {

/// Puts the marks of a basin file and the fixed values of its header right, in a copy that is only read
/// afterwards: the free pages are forgotten, and a page that was cut off is replaced by zeros, unless it is
/// the first.
///
/// @return false for a file that bears neither the mark of the engine nor that of a basin
[[nodiscard]] bool mend_header(const std::filesystem::path& copy);

/// The number of fields in the first row of the tree that begins on a page, counted from 1; nothing where the
/// tree is empty or can't be followed. It tells the rows of one table from those of another.
[[nodiscard]] std::optional<int> fields_of_first_row(const std::filesystem::path& file, std::int64_t page);

}  // namespace nivora
