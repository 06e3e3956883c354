#include "base/row_difference.h"

#include <algorithm>

namespace nivora {

RowDifference row_difference(const std::vector<std::string>& before, const std::vector<std::string>& after) {
    const std::size_t shorter = std::min(before.size(), after.size());
    std::size_t first = 0;
    while (first < shorter && before[first] == after[first]) ++first;
    std::size_t last = 0;
    while (last < shorter - first && before[before.size() - 1 - last] == after[after.size() - 1 - last])
        ++last;
    return {.first = first, .removed = before.size() - first - last, .inserted = after.size() - first - last};
}

}  // namespace nivora
