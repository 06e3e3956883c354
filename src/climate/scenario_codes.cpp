#include "climate/scenario_codes.h"

#include "base/text.h"
#include "store/basin_store.h"

#include <array>
#include <charconv>

namespace nivora {
namespace {

constexpr std::array k_variables{
    "M/M Temperature",           "Average Temperature",        "Precipitation",
    "Maximum Temperature",       "Critical Temperature",       "Lag Time",
    "Temperature Lapse Rate",    "Degree Day Factor",          "Runoff Coefficient (Snow)",
    "Runoff Coefficient (Rain)", "Rainfall Contributing Area", "Net Radiation"};
static_assert(k_variables.size() == k_last_scenario_variable + 1);

constexpr std::array k_actions{"Add/subtract to each", "Multiply each", "Shift backward", "Shift forward",
                               "Normalize"};
constexpr int k_last_action = static_cast<int>(EditAction::Normalize);

std::optional<int> whole_number(std::string_view text) {
    int value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) return std::nullopt;
    return value;
}

/// The code from 0 to `last` of a text: a number, or one of the words of `text_of`.
template <typename TextOf>
std::optional<int> code_of(std::string_view text, int last, TextOf&& text_of) {
    const std::string_view shown = trimmed(text);
    if (const auto number = whole_number(shown)) {
        return *number >= 0 && *number <= last ? number : std::nullopt;
    }
    for (int code = 0; code <= last; ++code) {
        if (same_name(text_of(code), shown)) return code;
    }
    return std::nullopt;
}

}  // namespace

const char* scenario_variable_text(int code) {
    if (code < 0 || code > k_last_scenario_variable) return "";
    return k_variables.at(static_cast<std::size_t>(code));
}

const char* edit_action_text(int code) {
    if (code < 0 || code > k_last_action) return "";
    return k_actions.at(static_cast<std::size_t>(code));
}

std::string scenario_zone_text(int code) {
    if (code == 0) return "All";
    if (code < 0 || code > k_most_zones) return {};
    return zone_letter(code);
}

std::optional<int> scenario_variable_code(std::string_view text) {
    return code_of(text, k_last_scenario_variable, scenario_variable_text);
}

std::optional<int> edit_action_code(std::string_view text) {
    return code_of(text, k_last_action, edit_action_text);
}

std::optional<int> scenario_zone_code(std::string_view text) {
    return code_of(text, k_most_zones, scenario_zone_text);
}

std::vector<std::string> edit_action_list(std::optional<int> variable) {
    const int code = variable.value_or(0);
    const bool normalizable = code == 1 || code == 2;
    return {k_actions.begin(), normalizable ? k_actions.end() : k_actions.end() - 1};
}

}  // namespace nivora
