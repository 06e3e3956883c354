// What a list of rows gained and lost.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace nivora {

/// After the leading rows that both lists share, rows of the first list were removed and rows of the second
/// inserted; the trailing rows are shared again.
struct RowDifference {
    std::size_t first = 0;
    std::size_t removed = 0;
    std::size_t inserted = 0;

    bool operator==(const RowDifference&) const = default;
};

/// @param before,after the names of the rows
[[nodiscard]] RowDifference row_difference(const std::vector<std::string>& before,
                                           const std::vector<std::string>& after);

}  // namespace nivora
