// A position in the rows of a summer. Step 5 has two of them: one to read and one to write.
#pragma once

#include "base/fault.h"
#include "engine/sim_results.h"

#include <algorithm>
#include <span>

namespace nivora {

/// Points to one of the rows, which are ordered by zone and day, or past the last one. Its use past the last
/// row is the fault "No current record."; the first row of a zone follows the last row of the zone before.
class SummerCursor {
public:
    /// @param rows must outlive the cursor
    SummerCursor(const SimResults& results, std::span<const std::uint32_t> rows)
        : results_(results), rows_(rows) {}

    /// Goes to the first day of a zone. @throws Fault if the zone has no rows
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

    /// Whether the row belongs to this zone or a lower one.
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
