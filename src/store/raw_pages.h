// The few bytes of a database file that are read and repaired without the database engine,
// which would refuse the file.
#pragma once

#include <cstdint>
#include <filesystem>
#include <optional>

namespace nivora {

/// Repairs the marks and the fixed header values of a basin file, in a copy that is only read afterwards: the
/// list of free pages is emptied, and a page that was cut off is replaced by zeros, unless it is the first.
///
/// @return false for a file that has neither the mark of the engine nor that of a basin
[[nodiscard]] bool repair_header(const std::filesystem::path& copy);

/// The number of fields in the first row of the tree that begins on a page, counted from 1; nothing if the
/// tree is empty or can't be followed. It distinguishes the rows of one table from those of another.
[[nodiscard]] std::optional<int> fields_of_first_row(const std::filesystem::path& file, std::int64_t page);

}  // namespace nivora
