// Results of one zone, column by column.
#pragma once

#include "tests/support/plot_basin.h"

#include <utility>
#include <vector>

namespace nivora {

/// A column of the results, day by day from the first; days behind its end are missing.
struct MeltColumn {
    std::vector<float> SimResults::*column = nullptr;
    std::vector<float> values;
};

/// Writes the results of a basin; columns that are not named are missing. The other zones are like zone 1.
inline void write_columns(PlotBasin& basin, const std::vector<MeltColumn>& columns) {
    basin.write_results([&](SimResults& results, std::size_t row, int, int day) {
        const auto index = static_cast<std::size_t>(day - 1);
        for (const MeltColumn& column : columns) {
            if (index < column.values.size()) (results.*column.column)[row] = column.values[index];
        }
    });
}

/// As many values as there are days, all alike.
[[nodiscard]] inline std::vector<float> constant(const PlotBasin& basin, float value) {
    return std::vector<float>(static_cast<std::size_t>(basin.days()), value);
}

/// The values with one of them changed; days count from 1.
[[nodiscard]] inline std::vector<float> with(std::vector<float> values, int day, float value) {
    values.at(static_cast<std::size_t>(day - 1)) = value;
    return values;
}

}  // namespace nivora
