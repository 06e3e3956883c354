// What tells whether a basin file was changed, and what its tables hold, in short.
#pragma once

#include "store/database.h"

#include <cstdint>
#include <filesystem>
#include <map>
#include <optional>
#include <string>

namespace nivora {

/// The number in a basin file that every committed transaction changes. A transaction that is still open, or
/// that a crash takes back, leaves it as it was. Needs no lock, and keeps those of other connections.
///
/// @return nothing if the file can't be read
[[nodiscard]] std::optional<std::uint32_t> change_counter(const std::filesystem::path& file);

/// How many rows a table has, and a digest of them all in stored order.
struct TableContent {
    std::int64_t rows = 0;
    std::uint64_t digest = 0;

    bool operator==(const TableContent&) const = default;
};

/// Reads every row of every table of a basin. @throws StoreError
[[nodiscard]] std::map<std::string, TableContent> table_contents(BasinDatabase& database);

}  // namespace nivora
