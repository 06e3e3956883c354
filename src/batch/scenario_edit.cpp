#include "batch/scenario_edit.h"

#include "base/iso_date.h"
#include "base/number_text.h"
#include "base/text.h"
#include "climate/scenario_definitions.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

constexpr std::size_t k_parts = 6;
constexpr int k_variable_column = 1;
constexpr int k_action_column = 4;
constexpr int k_zones_column = 6;

std::vector<std::string_view> parts_of(std::string_view text) {
    std::vector<std::string_view> parts;
    for (;;) {
        const std::size_t colon = text.find(':');
        parts.push_back(trimmed(text.substr(0, colon)));
        if (colon == std::string_view::npos) return parts;
        text.remove_prefix(colon + 1);
    }
}

std::string take_dates(ScenarioRow& row, std::string_view start, std::string_view end) {
    row.start = read_iso_date(start);
    if (!row.start) return fmt::format("'{}' is not a date such as 1996-04-01", start);
    row.end = read_iso_date(end);
    if (!row.end) return fmt::format("'{}' is not a date such as 1996-04-01", end);
    if (*row.start > *row.end) return fmt::format("the start, {}, is after the end, {}", start, end);
    return {};
}

/// Sets variable and action in the same order as the grid.
std::string parse_action(ScenarioRow& row, std::string_view variable, std::string_view action) {
    const auto variable_code = scenario_variable_code(variable);
    if (!variable_code)
        return fmt::format("'{}' is not a variable: give a name, or a code from 0 to {}", variable,
                           k_last_scenario_variable);
    const auto action_code = edit_action_code(action);
    if (!action_code) return fmt::format("'{}' is not an action: give a name, or a code from 0 to 4", action);
    set_scenario_code(row, k_variable_column, variable_code);
    const auto offered = edit_action_list(variable_code);
    const bool listed =
        std::find(offered.begin(), offered.end(), edit_action_text(*action_code)) != offered.end();
    if (!listed || !set_scenario_code(row, k_action_column, action_code).kept)
        return fmt::format("'{}' can't be chosen for '{}'", edit_action_text(*action_code),
                           scenario_variable_text(*variable_code));
    return {};
}

std::string parse_factor(ScenarioRow& row, std::string_view text) {
    const bool needed = row.action != static_cast<int>(EditAction::Normalize);
    const auto factor = exact_number(text);
    const bool fits = factor && std::isfinite(static_cast<float>(*factor));
    if (!fits && (needed || !text.empty())) return fmt::format("'{}' is not a number", text);
    if (fits) row.factor = static_cast<float>(*factor);
    leave_scenario_row(row);
    return {};
}

std::string parse_zones(ScenarioRow& row, std::string_view text) {
    const auto code = scenario_zone_code(text);
    if (!code) return fmt::format("'{}' is not a zone: give All, a letter or a number", text);
    set_scenario_code(row, k_zones_column, code);
    return {};
}

}  // namespace

ReadEdit read_scenario_edit(std::string_view text) {
    const auto parts = parts_of(text);
    if (parts.size() != k_parts)
        return {{}, fmt::format("'{}' is not of the form VARIABLE:START:END:ACTION:FACTOR:ZONE", text)};
    ReadEdit edit;
    edit.problem = parse_action(edit.row, parts[0], parts[3]);
    if (edit.problem.empty()) edit.problem = take_dates(edit.row, parts[1], parts[2]);
    if (edit.problem.empty()) edit.problem = parse_factor(edit.row, parts[4]);
    if (edit.problem.empty()) edit.problem = parse_zones(edit.row, parts[5]);
    return edit;
}

}  // namespace nivora
