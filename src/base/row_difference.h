// What a list of rows gained and lost.
#pragma once

#include <cstddef>
#include <string>
#include <vector>

namespace nivora {

/// Behind the first rows, which both lists have, some rows of the one were removed and some of the other
/// inserted; the last rows are those of both again.
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
