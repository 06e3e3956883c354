// A daily table: months across, days down, at most six months in a block.
#pragma once

#include "reports/report_head.h"

#include <span>
#include <string>
#include <vector>

namespace nivora {

/// Where a value stands within the 18 characters of a cell, and in which form.
struct CellSlot {
    std::size_t offset = 0;
    std::size_t width = 8;
    bool whole = false;  ///< a whole number at the right of its width
    bool stars = false;  ///< "**" in its place: the value no longer follows from the input
};

/// The series of one zone, or of the basin.
struct DailySeries {
    std::string zone_letter;                       ///< empty for the basin
    std::vector<std::span<const double>> columns;  ///< one for each slot, one value a day; NaN where missing
};

struct DailyTable {
    ReportHead head;  ///< its start and end are the period; the zone letter is that of each series
    std::string title;
    std::string column_head;  ///< the 18 characters over the cells of a month
    std::vector<CellSlot> slots;
    std::vector<DailySeries> series;
    std::string note;       ///< below every block, if any
    bool zone_sum = false;  ///< the sum of all columns of a zone, below its last block
};

/// Writes all blocks, each on a page of its own.
///
/// Totals are sums in Double with missing values left out: "Total " of the month, "T." from the period's
/// start to the month's end; blank where there is no value at all.
void write_daily_table(ReportLines& lines, int& pages, const DailyTable& table, double now);

}  // namespace nivora
