// The changes of the daily editor, or of the monthly averages, that are not in the basin yet, kept so that
// they survive a crash.
#pragma once

#include "store/daily_fields.h"
#include "store/database.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace nivora {

/// The changes since the editor was opened, as lines of text, in their order. They refer to the stored rows
/// of the file in the state in which the editor found it.
class DailyEdits {
public:
    /// An editor is opened on a table.
    void begin(const std::string& table);
    /// A value was stored; NaN for a missing one.
    void add_value(const std::string& field, std::int64_t row, double value);
    void add_mass_edit(const std::string& field, int zone, const Period& days, MassEdit edit, double number);
    /// A value stands in the cell that is being edited: it is kept like a change until the next call, which
    /// replaces or forgets it.
    void type_value(const std::string& field, std::int64_t row, double value);
    void type_nothing() { typed_.clear(); }
    /// The changes are in the basin now, or were taken back.
    void end();

    [[nodiscard]] const std::string& table() const { return table_; }
    [[nodiscard]] const std::string& lines() const { return lines_; }
    /// The line of the value that is being typed; empty if there is none.
    [[nodiscard]] const std::string& typed() const { return typed_; }
    [[nodiscard]] bool empty() const { return lines_.empty() && typed_.empty(); }
    /// Another number for each begin and end, so that a reader that takes only new lines knows where it is.
    [[nodiscard]] unsigned editing() const { return editing_; }

private:
    std::string table_;
    std::string lines_;
    std::string typed_;
    unsigned editing_ = 0;
};

/// How many changes the lines are.
[[nodiscard]] std::size_t count_daily_edits(std::string_view lines);

/// Makes the changes anew, all of them or none.
/// @throws StoreError, also if a line can't be read
void apply_daily_edits(BasinDatabase& database, const std::string& table, std::string_view lines);

}  // namespace nivora
