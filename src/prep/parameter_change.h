// One parameter of a simulation changed in many zones and days at once, with a preview.
#pragma once

#include "prep/daily_editor.h"
#include "store/daily_table.h"
#include "store/database.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

enum class ParameterAction { Set, Add, Multiply };

/// Which values of a parameter table change, and how. Zones, days and months all have to hold.
struct ParameterChange {
    std::string field;  ///< in the parameter table
    ParameterAction action = ParameterAction::Set;
    double number = 0.0;
    std::vector<int> zones = {};   ///< from 1
    Period days = {};              ///< within the simulation's period
    std::vector<int> months = {};  ///< 1 to 12; empty for all of the year
};

/// A value of a zone and day before the change and after it; NaN for a missing one.
struct ChangedValue {
    int zone = 0;
    DayCount date = 0;
    double before = 0.0;
    double after = 0.0;
};

/// Smallest and largest of the values that are not missing.
struct ValueRange {
    double low = 0.0;
    double high = 0.0;
    bool operator==(const ValueRange&) const = default;
};

/// What a change does, as its user sees it before it is made.
struct ParameterPreview {
    std::int64_t rows = 0;     ///< rows of the chosen zones and days
    std::int64_t changed = 0;  ///< of these, rows whose value becomes another
    std::int64_t missing = 0;  ///< of these, rows without a value that stay so
    std::int64_t refused = 0;  ///< of these, rows that can't hold their new value
    std::string refusal;       ///< the first of them, and why, as a sentence; empty if there is none
    std::optional<ValueRange> before;
    std::optional<ValueRange> after;  ///< also of values that are refused
    std::vector<ChangedValue> first;  ///< the first rows, zone by zone
};

/// The most rows that a preview lists.
inline constexpr std::size_t k_preview_rows = 200;

/// The nine parameters as the columns of the daily editor, in its order.
[[nodiscard]] std::vector<DailyColumn> parameter_columns();

/// The name of a parameter in words: "Degree day factor"; the field itself for any other field.
[[nodiscard]] std::string parameter_name(std::string_view field);

/// What a change would do. Set gives its number to rows without a value, too; Add and Multiply leave those
/// without. Results are rounded as the field keeps them, and a value is refused where a cell of the daily
/// editor refuses it. @throws StoreError
[[nodiscard]] ParameterPreview preview_parameter_change(BasinDatabase& database,
                                                        const std::string& simulation,
                                                        const ParameterChange& change);

/// Makes a change, wholly or not at all. If a value became another, the marks are those after an edit in the
/// daily editor: `Basin_Changed` and `Input_Changed` are set, `Output_Valid` is cleared. @return what it did.
/// If a value was refused, nothing was changed.
/// @throws StoreError, with nothing changed
ParameterPreview make_parameter_change(BasinState& basin, BasinDatabase& database,
                                       const std::string& simulation, const ParameterChange& change);

}  // namespace nivora
