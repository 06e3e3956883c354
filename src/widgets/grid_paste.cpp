#include "widgets/grid_paste.h"

#include "widgets/qt_text.h"

#include <algorithm>

namespace nivora {
namespace {

/// How many characters of a refused text are quoted.
constexpr qsizetype k_quoted_characters = 40;

std::string refused_text(const GridModel& cells, const PastePlan& plan) {
    const CellText& first = plan.first_refused;
    const std::string count = std::to_string(plan.refused);
    const std::size_t all = plan.cells.size() + static_cast<std::size_t>(plan.refused);
    const std::string begin =
        plan.refused == 1 && all == 1 ? "The pasted cell can't be accepted: "
        : plan.cells.empty()          ? "None of the pasted cells can be accepted. The first is "
                                      : count + " of the " + std::to_string(all) +
                                   (plan.refused == 1 ? " pasted cells can't be accepted: "
                                                      : " pasted cells can't be accepted. The first is ");
    return begin + "'" + from_qt(first.text.left(k_quoted_characters)) + "' for " +
           from_qt(cells.place(first.row, first.column)) + "; " +
           from_qt(cells.refusal(first.row, first.column, first.text)) + ".";
}

std::string counted(int count, const char* what) {
    return std::to_string(count) + " " + what + (count == 1 ? "" : "s");
}

/// What the grid has no room for; empty if it has room for everything.
std::string cut_off_text(const PastePlan& plan) {
    if (plan.cut_off_rows == 0 && plan.cut_off_columns == 0) return {};
    std::string text = "The grid has no room for ";
    if (plan.cut_off_rows > 0) text += counted(plan.cut_off_rows, "row");
    if (plan.cut_off_rows > 0 && plan.cut_off_columns > 0) text += " and ";
    if (plan.cut_off_columns > 0) text += counted(plan.cut_off_columns, "column");
    return text + " of the clipboard.";
}

}  // namespace

PastePlan checked_paste(const GridModel& cells, std::vector<CellText> texts) {
    PastePlan plan;
    plan.cells.reserve(texts.size());
    for (CellText& cell : texts) {
        if (cells.refusal(cell.row, cell.column, cell.text).isEmpty()) {
            plan.cells.push_back(std::move(cell));
        } else if (plan.refused++ == 0) {
            plan.first_refused = std::move(cell);
        }
    }
    return plan;
}

PastePlan plan_paste(const GridModel& cells, const CellBlock& copied, const CellRange& target) {
    const int rows = cells.rowCount();
    const int room = cells.columnCount() - target.first_column;
    std::size_t widest = 0;
    for (const auto& row : copied) widest = std::max(widest, row.size());
    std::vector<CellText> texts;
    const auto first = static_cast<std::size_t>(target.first_row);
    for (const PastePiece& piece : paste_pieces(first, static_cast<std::size_t>(target.rows()), copied.size(),
                                                static_cast<std::size_t>(rows))) {
        for (std::size_t i = 0; i < piece.rows; ++i) {
            const int last = std::min(static_cast<int>(copied[i].size()), room);
            for (int column = 0; column < last; ++column) {
                texts.push_back({static_cast<int>(piece.to_row + i), target.first_column + column,
                                 to_qt(copied[i][static_cast<std::size_t>(column)])});
            }
        }
    }
    PastePlan plan = checked_paste(cells, std::move(texts));
    plan.cut_off_rows = std::max(0, static_cast<int>(copied.size()) - (rows - target.first_row));
    plan.cut_off_columns = std::max(0, static_cast<int>(widest) - room);
    return plan;
}

std::optional<Message> paste_question(const GridModel& cells, const PastePlan& plan) {
    const std::string cut_off = cut_off_text(plan);
    if (plan.refused == 0 && cut_off.empty()) return std::nullopt;
    std::string text;
    if (plan.refused > 0) text = refused_text(cells, plan);
    if (!text.empty() && !cut_off.empty()) text += "\n";
    text += cut_off;
    if (plan.cells.empty()) return Message{.text = text, .title = "Paste", .icon = Icon::Warning};
    return Message{.text = text + "\nPaste the rest? No leaves all cells as they are.",
                   .title = "Paste",
                   .icon = Icon::Warning,
                   .buttons = Buttons::YesNo,
                   .default_answer = Answer::No};
}

}  // namespace nivora
