#include "widgets/grid_sums.h"

#include "widgets/grid_view.h"

#include <QHeaderView>
#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_decimals = 4;
/// Outside these limits decimals say nothing, or all digits.
constexpr double k_smallest_with_decimals = 1e-4;
constexpr double k_largest_with_decimals = 1e12;

QString figure(double value) {
    const double size = std::abs(value);
    if (size != 0.0 && (size < k_smallest_with_decimals || size >= k_largest_with_decimals))
        return QString::number(value, 'g', 6);
    QString text = QString::number(value, 'f', k_decimals);
    while (text.endsWith(QLatin1Char('0'))) text.chop(1);
    if (text.endsWith(QLatin1Char('.'))) text.chop(1);
    return text == QStringLiteral("-0") ? QStringLiteral("0") : text;
}

void add(GridSums& sums, double number) {
    sums.least = sums.count == 0 ? number : std::min(sums.least, number);
    sums.most = sums.count == 0 ? number : std::max(sums.most, number);
    sums.sum += number;
    ++sums.count;
}

}  // namespace

GridSums sums_of_selection(const GridView& grid) {
    GridSums sums;
    const GridModel& cells = grid.cells();
    const CellRange range = grid.block();
    const bool hides_rows = grid.verticalHeader()->hiddenSectionCount() > 0;
    for (int column = range.first_column; column <= range.last_column; ++column) {
        if (grid.isColumnHidden(column)) continue;
        for (int row = range.first_row; row <= range.last_row; ++row) {
            if (hides_rows && grid.isRowHidden(row)) continue;
            if (const auto number = cells.number(row, column)) add(sums, *number);
        }
    }
    return sums;
}

QString sums_text(const GridSums& sums) {
    if (sums.count < 2) return {};
    return QStringLiteral("%1 numbers   Sum %2   Mean %3   Minimum %4   Maximum %5")
        .arg(QString::number(sums.count), figure(sums.sum),
             figure(sums.sum / static_cast<double>(sums.count)), figure(sums.least), figure(sums.most));
}

QStringList sums_texts(const GridSums& sums) {
    if (sums.count < 2) return {};
    const QString count = QString::number(sums.count);
    const QString sum = figure(sums.sum);
    const QString mean = figure(sums.sum / static_cast<double>(sums.count));
    const QString least = figure(sums.least);
    const QString most = figure(sums.most);
    return {sums_text(sums),
            QStringLiteral("%1 numbers  Sum %2  Mean %3  Min %4  Max %5").arg(count, sum, mean, least, most),
            QStringLiteral("Sum %1  Mean %2  Min %3  Max %4").arg(sum, mean, least, most),
            QStringLiteral("Sum %1  Mean %2").arg(sum, mean), QStringLiteral("Sum %1").arg(sum)};
}

}  // namespace nivora
