// A place among the rows of a summer, which step 5 holds two of: one to read and one to write.
#pragma once

#include "base/fault.h"
#include "engine/sim_results.h"

#include <algorithm>
#include <span>

namespace nivora {

/// Stands on one of the rows, which are ordered zone by zone and day by day, or past the last one. Where it
/// stands past the last, using it is the fault "No current record."; zones follow each other without a seam.
class SummerCursor {
public:
    /// @param rows has to outlive the cursor
    SummerCursor(const SimResults& results, std::span<const std::uint32_t> rows)
        : results_(results), rows_(rows) {}

    /// Goes to the first day of a zone. @throws Fault where the zone has no rows
    void find_zone(int zone) {
        const auto found =
            std::lower_bound(rows_.begin(), rows_.end(), zone,
                             [&](std::uint32_t row, int wanted) { return results_.Zone[row] < wanted; });
        if (found == rows_.end() || results_.Zone[*found] != zone) throw no_record_fault();
        at_ = static_cast<std::size_t>(found - rows_.begin());
    }

    [[nodiscard]] bool past_end() const { return at_ >= rows_.size(); }

    /// The row of the results table.
    [[nodiscard]] std::uint32_t row() const {
        if (past_end()) throw no_record_fault();
        return rows_[at_];
    }

    /// Whether the row's zone is not above this one.
    [[nodiscard]] bool within(int zone) const { return results_.Zone[row()] <= zone; }

    [[nodiscard]] DayCount date() const { return results_.Date[row()]; }

    void step_on() {
        if (past_end()) throw no_record_fault();
        ++at_;
    }
    void step_back() {
        if (at_ == 0) throw no_record_fault();
        --at_;
    }
    void step_back_from_end() {
        if (past_end()) step_back();
    }

private:
    const SimResults& results_;
    std::span<const std::uint32_t> rows_;
    std::size_t at_ = 0;
};

}  // namespace nivora
