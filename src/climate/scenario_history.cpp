#include "climate/scenario_history.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

bool same_row(const ScenarioRow& a, const ScenarioRow& b) {
    const bool same_factor = a.factor == b.factor || (is_missing(static_cast<double>(a.factor)) &&
                                                      is_missing(static_cast<double>(b.factor)));
    return same_factor && a.variable == b.variable && a.start == b.start && a.end == b.end &&
           a.action == b.action && a.zones == b.zones;
}

bool same_rows(const std::vector<ScenarioRow>& a, const std::vector<ScenarioRow>& b) {
    return std::equal(a.begin(), a.end(), b.begin(), b.end(), same_row);
}

}  // namespace

void ScenarioHistory::begin(const Scenario& scenario, const BasinState& basin, bool joined) {
    begun_ = Step{.scenario = scenario.index.scenario,
                  .before = scenario.rows,
                  .after = {},
                  .marks_before = edit_marks(basin),
                  .marks_after = {}};
    joined_ = joined;
}

void ScenarioHistory::end(const Scenario& scenario, const BasinState& basin) {
    if (!begun_) return;
    Step step = *std::exchange(begun_, std::nullopt);
    if (same_rows(step.before, scenario.rows)) return;
    step.after = scenario.rows;
    step.marks_after = edit_marks(basin);
    const Step* newest = steps_.to_undo();
    if (joined_ && newest != nullptr && newest->scenario == step.scenario &&
        same_rows(newest->after, step.before)) {
        step.before = newest->before;
        step.marks_before = newest->marks_before;
        steps_.drop_newest();
    }
    steps_.add(std::move(step));
}

void ScenarioHistory::forget() {
    steps_.clear();
    begun_.reset();
}

std::optional<ScenarioHistory::Reversed> ScenarioHistory::undo(std::vector<Scenario>& scenarios,
                                                               BasinState& basin) {
    const auto reversed = reverse(scenarios, basin, steps_.to_undo(), false);
    if (reversed) steps_.undone();
    return reversed;
}

std::optional<ScenarioHistory::Reversed> ScenarioHistory::redo(std::vector<Scenario>& scenarios,
                                                               BasinState& basin) {
    const auto reversed = reverse(scenarios, basin, steps_.to_redo(), true);
    if (reversed) steps_.redone();
    return reversed;
}

std::optional<ScenarioHistory::Reversed> ScenarioHistory::reverse(std::vector<Scenario>& scenarios,
                                                                  BasinState& basin, Step* step, bool redo) {
    if (step == nullptr) return std::nullopt;
    const auto& rows_now = redo ? step->before : step->after;
    const auto& rows_then = redo ? step->after : step->before;
    const auto found = std::find_if(scenarios.begin(), scenarios.end(), [&](const Scenario& scenario) {
        return scenario.index.scenario == step->scenario;
    });
    if (found == scenarios.end() || !same_rows(found->rows, rows_now)) {
        forget();
        return std::nullopt;
    }
    const auto first =
        std::mismatch(rows_now.begin(), rows_now.end(), rows_then.begin(), rows_then.end(), same_row).first;
    const Reversed reversed{.scenario = static_cast<std::size_t>(found - scenarios.begin()),
                            .row = static_cast<int>(first - rows_now.begin())};
    found->rows = rows_then;
    EditMarks& left = redo ? step->marks_before : step->marks_after;
    EditMarks& wanted = redo ? step->marks_after : step->marks_before;
    const EditMarks now = edit_marks(basin);
    if (!unmark_edit(basin, left, wanted)) mark_input_edited(basin);
    left = now;
    wanted = edit_marks(basin);
    return reversed;
}

}  // namespace nivora
