// The rules of a scenario that need no basin file: its winter end date and the codes of its rows.
#include "base/single.h"
#include "climate/scenario_definitions.h"

namespace nivora {
namespace {

constexpr int k_add = static_cast<int>(EditAction::Add);
constexpr int k_shift_forward = static_cast<int>(EditAction::ShiftForward);
constexpr int k_normalize = static_cast<int>(EditAction::Normalize);

constexpr int k_variable_column = 1;
constexpr int k_action_column = 4;
constexpr int k_zones_column = 6;

/// The first variable that allows a shift forward, and the one that is normalized without a beep.
constexpr int k_first_forward_variable = 4;
constexpr int k_average_temperature = 1;

void set_variable(ScenarioRow& row, std::optional<int> code) {
    row.variable = code;
    const bool normalizable = edit_action_list(code).size() > edit_action_list(std::nullopt).size();
    if (!normalizable && row.action == k_normalize) row.action.reset();
}

/// Intended: a shift backward has no such test, and precipitation may be normalized in spite of the beep.
RowChange set_action(ScenarioRow& row, std::optional<int> code) {
    row.action = code;
    if (code == k_shift_forward && row.variable && *row.variable < k_first_forward_variable) {
        row.action = k_add;
        return {.beep = true, .kept = false};
    }
    const bool beep = code == k_normalize && row.variable && *row.variable != k_average_temperature;
    return {.beep = beep, .kept = true};
}

}  // namespace

double default_winter_end(DayCount start, DayCount end) {
    const auto half_period = static_cast<float>(static_cast<double>(end - start) / 2.0);
    return static_cast<double>(start) + (as_double(half_period) - 1.0);
}

std::optional<Message> winter_end_problem(const BasinState& basin, std::string_view text) {
    const auto date = read_date(text);
    if (!date) return Message{.text = "Invalid date value!"};
    const bool within = basin.Current_Start && basin.Current_End && *date >= *basin.Current_Start &&
                        *date <= *basin.Current_End;
    if (!within) return Message{.text = "Invalid winter end date!"};
    return std::nullopt;
}

RowChange set_scenario_code(ScenarioRow& row, int column, std::optional<int> code) {
    switch (column) {
        case k_variable_column: set_variable(row, code); return {};
        case k_action_column: return set_action(row, code);
        case k_zones_column: row.zones = code; return {};
        default: return {};  // the other columns hold no code
    }
}

bool leave_scenario_row(ScenarioRow& row) {
    if (row.action != k_normalize || row.factor == 0.0F) return false;
    row.factor = 0.0F;
    return true;
}

}  // namespace nivora
