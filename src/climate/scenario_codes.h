// The codes of a scenario's rows and their words, for window, sheet, batch and help.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Codes of `EditAction`.
enum class EditAction { Add = 0, Multiply = 1, ShiftBackward = 2, ShiftForward = 3, Normalize = 4 };

/// The highest code of `VarParm` that has a meaning.
inline constexpr int k_last_scenario_variable = 11;

/// The text of a variable's code, 0 to 11: "M/M Temperature", "Average Temperature", "Precipitation", then
/// the field's words for the columns of the results. Empty for any other code.
[[nodiscard]] const char* scenario_variable_text(int code);
/// "Add/subtract to each", "Multiply each", "Shift backward", "Shift forward", "Normalize";
/// empty for any other code.
[[nodiscard]] const char* edit_action_text(int code);
/// "All" for 0, "A" for zone 1 ... up to the most zones that a basin may have; empty for any other code.
[[nodiscard]] std::string scenario_zone_text(int code);

/// The code of a text in upper or lower case, or of a code written as a number; nothing for other texts.
[[nodiscard]] std::optional<int> scenario_variable_code(std::string_view text);
[[nodiscard]] std::optional<int> edit_action_code(std::string_view text);
[[nodiscard]] std::optional<int> scenario_zone_code(std::string_view text);

/// The actions that the list of a row offers for its variable: the four base actions, and "Normalize" for the
/// codes 1 and 2.
[[nodiscard]] std::vector<std::string> edit_action_list(std::optional<int> variable);

}  // namespace nivora
