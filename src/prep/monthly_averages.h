// The long-term monthly averages that one window edits, inside one transaction.
#pragma once

#include "base/undo_steps.h"
#include "prep/daily_edits.h"
#include "store/monthly_table.h"
#include "store/transactions.h"

#include <filesystem>
#include <optional>
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
    /// Until end_step() all values that are set are one change, which undo() takes back as a whole.
    void begin_step();
    void end_step();
    [[nodiscard]] bool can_undo() const { return steps_.to_undo() != nullptr; }
    [[nodiscard]] bool can_redo() const { return steps_.to_redo() != nullptr; }
    /// Takes the newest change back, or makes the last undone one again; a new calculation is one, too.
    ///
    /// @return the first zone that it changed; nothing if there is no such change.
    /// @throws StoreError, with all values unchanged
    std::optional<int> undo();
    std::optional<int> redo();
    /// Whether a value that was set is not undone.
    [[nodiscard]] bool has_set_values() const { return set_steps_ > 0; }

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
    struct Step {
        struct Cell {
            int zone = 1;
            int month = 1;
            MonthValues before{};
            MonthValues after{};
        };

        std::vector<Cell> cells;
        bool calculated = false;

        [[nodiscard]] std::size_t bytes() const { return sizeof(Step) + cells.capacity() * sizeof(Cell); }
    };
    [[nodiscard]] std::optional<int> reverse(Step* step, bool redo);
    void note_step(Step step);
    [[nodiscard]] StoredMonth& held(int zone, int month);
    void note(const StoredMonth& month);
    void end_notes();

    BasinDatabase database_;
    HeldTransaction transaction_;
    int zones_;
    std::vector<StoredYear> years_;  ///< zone 1 first
    DailyEdits* unsaved_;            ///< null once nothing is unsaved any more
    UndoSteps<Step> steps_;
    std::optional<Step> open_step_;  ///< the values that are set together
    int set_steps_ = 0;              ///< made and not undone, without calculations
};

}  // namespace nivora
