#include "session/definition_history.h"

#include "session/definition_rules.h"
#include "session/session.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr std::array<BasinBox, 5> k_edited_boxes{BasinBox::Name, BasinBox::ReferenceElevation,
                                                 BasinBox::Latitude, BasinBox::Description,
                                                 BasinBox::Longitude};
constexpr int k_zone_columns = 11;
constexpr int k_simulation_columns = 17;

/// Adds the rows that differ. @return false if the lists are not of one length
template <typename Rows, typename Changed>
bool add_changed(const Rows& before, const Rows& after, std::vector<Changed>& changed) {
    if (before.size() != after.size()) return false;
    for (std::size_t row = 0; row < before.size(); ++row) {
        if (!(before[row] == after[row])) changed.push_back({row, before[row], after[row]});
    }
    return true;
}

/// Whether the rows are as a step left them, or found them.
template <typename Rows, typename Changed, typename Side>
bool are_as(const Rows& rows, const std::vector<Changed>& changed, Side side) {
    return std::all_of(changed.begin(), changed.end(), [&](const Changed& row) {
        return row.row < rows.size() && rows[row.row] == row.*side;
    });
}

template <typename Rows, typename Changed, typename Side>
void set(Rows& rows, const std::vector<Changed>& changed, Side side) {
    for (const Changed& row : changed) rows[row.row] = row.*side;
}

/// The first column of the zone grid in which two zones differ, from 1.
int changed_column(const Zone& before, const Zone& after) {
    constexpr int k_first_number = 2;
    const auto numbers = [](const Zone& zone) {
        std::vector<std::optional<double>> all{zone.area, zone.elevation};
        for (const Aspect& aspect : zone.aspects) all.insert(all.end(), {aspect.share, aspect.elevation});
        return all;
    };
    if (before.id != after.id) return 1;
    const auto a = numbers(before);
    const auto b = numbers(after);
    const auto [first, other] = std::mismatch(a.begin(), a.end(), b.begin());
    return first == a.end() ? 1
                            : std::min(k_zone_columns, static_cast<int>(first - a.begin()) + k_first_number);
}

/// The same for the simulation grid.
int changed_column(const Simulation& before, const Simulation& after) {
    for (int column = 1; column <= k_simulation_columns; ++column) {
        if (before.text(column) != after.text(column)) return column;
    }
    return 1;
}

}  // namespace

std::size_t DefinitionHistory::Step::bytes() const {
    constexpr std::size_t k_text = 256;  // comments and names hold at most that much
    return sizeof(Step) + boxes.size() * (sizeof(ChangedRow<std::string>) + k_text) +
           zones.size() * (sizeof(ChangedRow<Zone>) + k_text) +
           simulations.size() * (sizeof(ChangedRow<Simulation>) + 2 * k_text);
}

bool DefinitionHistory::Step::empty() const { return boxes.empty() && zones.empty() && simulations.empty(); }

DefinitionHistory::Content DefinitionHistory::content_of(const Session& session) {
    const BasinState& basin = session.basin;
    Content content{.boxes = {},
                    .zones = basin.zones,
                    .simulations = basin.simulations,
                    .selected = {.row = basin.current_row,
                                 .units = basin.Units_Code,
                                 .start = basin.Current_Start,
                                 .end = basin.Current_End,
                                 .reports = session.shell.reports},
                    .marks = edit_marks(basin)};
    for (const BasinBox box : k_edited_boxes)
        content.boxes.at(static_cast<std::size_t>(box)) = basin_box_text(basin, box);
    return content;
}

std::optional<DefinitionHistory::Step> DefinitionHistory::difference(const Content& before,
                                                                     const Content& after) {
    Step step;
    const bool comparable = add_changed(before.boxes, after.boxes, step.boxes) &&
                            add_changed(before.zones, after.zones, step.zones) &&
                            add_changed(before.simulations, after.simulations, step.simulations);
    if (!comparable) return std::nullopt;
    step.selected_before = before.selected;
    step.selected_after = after.selected;
    step.marks_before = before.marks;
    step.marks_after = after.marks;
    return step;
}

void DefinitionHistory::begin(const Session& session) { begun_ = content_of(session); }

void DefinitionHistory::end(Session& session, JoinedEdit joined) {
    if (!begun_) return;
    const Content before = *std::exchange(begun_, std::nullopt);
    const Step* newest = steps_.to_undo();
    const bool joins = joined != JoinedEdit::None && newest != nullptr && before_newest_ &&
                       (joined == JoinedEdit::LastEdit || joined == newest->joined) &&
                       before.marks.marks == newest->marks_after.marks;
    const Content& from = joins ? *before_newest_ : before;
    auto step = difference(from, content_of(session));
    if (!step) return forget();
    if (joins) {
        step->joined = newest->joined;
        steps_.drop_newest();
        // The text is again what it was: nothing was edited.
        if (step->empty()) static_cast<void>(unmark_edit(session.basin, step->marks_after, from.marks));
    } else {
        step->joined = joined;
        before_newest_ = before;
    }
    if (step->empty()) {
        if (joins) before_newest_.reset();
        return;
    }
    steps_.add(std::move(*step));
}

void DefinitionHistory::separate() { before_newest_.reset(); }

void DefinitionHistory::forget() {
    steps_.clear();
    begun_.reset();
    before_newest_.reset();
}

bool DefinitionHistory::is_typing_in(int box) const {
    const Step* newest = steps_.to_undo();
    return newest != nullptr && before_newest_ && newest->joined == typing_in_box(box);
}

std::optional<DefinitionField> DefinitionHistory::undo(Session& session) {
    Step* step = steps_.to_undo();
    if (step == nullptr) return std::nullopt;
    const auto place = reverse(session, *step, false);
    if (place) steps_.undone();
    return place;
}

std::optional<DefinitionField> DefinitionHistory::redo(Session& session) {
    Step* step = steps_.to_redo();
    if (step == nullptr) return std::nullopt;
    const auto place = reverse(session, *step, true);
    if (place) steps_.redone();
    return place;
}

std::optional<DefinitionField> DefinitionHistory::reverse(Session& session, Step& step, bool redo) {
    BasinState& basin = session.basin;
    const auto here = [redo](auto row) { return redo ? &decltype(row)::before : &decltype(row)::after; };
    const auto there = [redo](auto row) { return redo ? &decltype(row)::after : &decltype(row)::before; };
    const auto boxes = content_of(session).boxes;
    const bool as_left = are_as(boxes, step.boxes, here(ChangedRow<std::string>{})) &&
                         are_as(basin.zones, step.zones, here(ChangedRow<Zone>{})) &&
                         are_as(basin.simulations, step.simulations, here(ChangedRow<Simulation>{}));
    if (!as_left) {
        forget();
        return std::nullopt;
    }
    separate();
    for (const auto& box : step.boxes)
        basin_box_text(basin, static_cast<BasinBox>(box.row)) = redo ? box.after : box.before;
    set(basin.zones, step.zones, there(ChangedRow<Zone>{}));
    set(basin.simulations, step.simulations, there(ChangedRow<Simulation>{}));
    const Selected& selected = redo ? step.selected_after : step.selected_before;
    const bool same_row = !step.simulations.empty() && selected.row == basin.current_row;
    if (same_row) {
        basin.Units_Code = selected.units;
        basin.Current_Start = selected.start;
        basin.Current_End = selected.end;
    }
    EditMarks& left = redo ? step.marks_before : step.marks_after;
    EditMarks& wanted = redo ? step.marks_after : step.marks_before;
    const EditMarks now = edit_marks(basin);
    if (unmark_edit(basin, left, wanted)) {
        session.shell.reports = selected.reports;
    } else {
        // Only boxes and zones make results invalid at once; an edited simulation outdates them.
        if (step.simulations.empty()) mark_output_invalid(basin);
        mark_input_changed(basin);
        if (!step.simulations.empty()) session.shell.reports = false;
    }
    left = now;
    wanted = edit_marks(basin);
    if (!step.zones.empty()) take_zone_areas(session);
    if (!step.boxes.empty())
        return DefinitionField{DefinitionField::Part::Box, 0, static_cast<int>(step.boxes.front().row)};
    if (!step.zones.empty()) {
        const auto& zone = step.zones.front();
        return DefinitionField{DefinitionField::Part::Zones, zone.row,
                               changed_column(zone.before, zone.after)};
    }
    const auto& simulation = step.simulations.front();
    return DefinitionField{DefinitionField::Part::Simulations, simulation.row,
                           changed_column(simulation.before, simulation.after)};
}

}  // namespace nivora
