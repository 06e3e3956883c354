// The long-term monthly averages that one window edits, inside one transaction.
#pragma once

#include "prep/daily_edits.h"
#include "store/monthly_table.h"
#include "store/transactions.h"

#include <filesystem>
#include <vector>

namespace nivora {

/// The twelve months of each zone, in stored order. All changes wait in one transaction for commit(); without
/// it they are rolled back.
class MonthlyAverages {
public:
    /// @param unsaved notes each change until commit(), or the end of the editing; it outlives this object
    /// @throws StoreError if the table is missing, or does not have twelve rows for each zone
    MonthlyAverages(const std::filesystem::path& work_file, int zones, DailyEdits* unsaved = nullptr);
    MonthlyAverages(const MonthlyAverages&) = delete;
    MonthlyAverages& operator=(const MonthlyAverages&) = delete;
    ~MonthlyAverages();

    [[nodiscard]] int zones() const { return zones_; }
    /// The values of a zone and a month, both counted from 1.
    [[nodiscard]] const MonthValues& values(int zone, int month) const;
    /// Stores one value, item 0 to 3; NaN for a missing one. @throws StoreError for an infinite one
    void set_value(int zone, int month, std::size_t item, float value);
    /// Notes the value that is being typed, for a crash, without storing it.
    void note_typed(int zone, int month, std::size_t item, float value);
    void note_nothing_typed();

    /// Whether the basin has any daily variables.
    [[nodiscard]] bool has_physical_data();
    /// Averages all days of each zone and calendar month over all years. Missing values do not count, and a
    /// month without any precipitation value keeps its averages, even if it has temperatures. The caller sets
    /// the basin's flags.
    ///
    /// @return false if there are no daily variables at all. @throws StoreError, with all values unchanged
    [[nodiscard]] bool recalculate();

    /// Commits the changes and ends the editing. @throws StoreError
    void commit();

private:
    [[nodiscard]] StoredMonth& held(int zone, int month);
    void note(const StoredMonth& month);
    void end_notes();

    BasinDatabase database_;
    HeldTransaction transaction_;
    int zones_;
    std::vector<StoredYear> years_;  ///< zone 1 first
    DailyEdits* unsaved_;            ///< null once nothing is unsaved any more
};

}  // namespace nivora
