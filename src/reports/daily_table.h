// A daily table: a column for each month, a row for each day, at most six months in a block.
#pragma once

#include "reports/report_head.h"
#include "store/daily_table.h"

#include <span>
#include <string>
#include <vector>

namespace nivora {

/// The place of a value within the 18 characters of a cell, and its form.
struct CellSlot {
    std::size_t offset = 0;
    std::size_t width = 8;
    bool whole = false;  ///< a whole number, right aligned
    bool stars = false;  ///< "**" in place of the value, which the inputs no longer give
};

/// The values of one zone, or of the basin.
struct DailySeries {
    std::string zone_letter;                       ///< empty for the basin
    std::vector<std::span<const double>> columns;  ///< one for each slot, one value a day; NaN if missing
};

struct DailyTable {
    ReportHead head;  ///< without a zone letter, which is that of each series
    Period period;
    std::string title;
    std::string column_head;  ///< the 18 characters above the cells of a month
    std::vector<CellSlot> slots;
    std::vector<DailySeries> series;
    std::string note;       ///< below every block, if not empty
    bool zone_sum = false;  ///< whether the sum of all columns of a zone follows its last block
};

/// Writes all blocks, each on a page of its own.
///
/// Totals are sums in Double without the missing values: "Total " of the month, "T." from the start of the
/// period to the end of the month. Without any value the total is blank.
void write_daily_table(ReportLines& lines, int& pages, const DailyTable& table, double now);

}  // namespace nivora
