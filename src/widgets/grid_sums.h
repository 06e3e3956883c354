// Number, sum, mean, minimum and maximum of the selected numbers of a grid.
#pragma once

#include <QString>
#include <QStringList>
#include <cstddef>

namespace nivora {

class GridView;

struct GridSums {
    std::size_t count = 0;  ///< of cells with a number; the others are 0 if it is 0
    double sum = 0.0;
    double least = 0.0;
    double most = 0.0;
};

/// The sums of the selected block. Cells without a number and hidden rows and columns do not count.
[[nodiscard]] GridSums sums_of_selection(const GridView& grid);

/// The sums as the status bar shows them, with up to four decimals; empty for fewer than two numbers.
[[nodiscard]] QString sums_text(const GridSums& sums);

/// The same in fewer and fewer words for less and less room, the whole text first: the count goes first, then
/// minimum and maximum, then the mean. None for fewer than two numbers.
[[nodiscard]] QStringList sums_texts(const GridSums& sums);

}  // namespace nivora
