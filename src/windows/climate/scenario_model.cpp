#include "windows/climate/scenario_model.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "base/single.h"
#include "base/text.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_variable = 0;
constexpr int k_start = 1;
constexpr int k_end = 2;
constexpr int k_action = 3;
constexpr int k_factor = 4;
constexpr int k_columns = 6;
constexpr int k_rows = 40;
constexpr int k_blank_rows = 10;

QStringList to_qt_list(const std::vector<std::string>& texts) {
    QStringList list;
    for (const std::string& text : texts) list << to_qt(text);
    return list;
}

std::optional<DayCount>& date_of(ScenarioRow& row, int column) {
    return column == k_start ? row.start : row.end;
}

}  // namespace

bool is_blank(const ScenarioRow& row) {
    return !row.variable && !row.start && !row.end && !row.action &&
           is_missing(static_cast<double>(row.factor)) && !row.zones;
}

void ScenarioModel::show(std::vector<ScenarioRow>* rows) {
    beginResetModel();
    rows_ = rows;
    shown_rows_ = wanted_rows();
    endResetModel();
}

const ScenarioRow& ScenarioModel::row_at(int row) const {
    static const ScenarioRow k_blank;
    const auto at = static_cast<std::size_t>(row);
    return rows_ != nullptr && at < rows_->size() ? (*rows_)[at] : k_blank;
}

ScenarioRow& ScenarioModel::made_row(int row) {
    const auto at = static_cast<std::size_t>(row);
    if (at >= rows_->size()) {
        rows_->resize(at + 1);
        change_rows(shown_rows_, wanted_rows());
    }
    return (*rows_)[at];
}

/// The number of rows to show: the existing ones, then the blank ones.
int ScenarioModel::wanted_rows() const {
    return rows_ == nullptr ? 0 : std::max(k_rows, static_cast<int>(rows_->size()) + k_blank_rows);
}

int ScenarioModel::rowCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : shown_rows_; }

int ScenarioModel::columnCount(const QModelIndex& parent) const { return parent.isValid() ? 0 : k_columns; }

CellFormat ScenarioModel::format(int row, int column) const {
    switch (column) {
        case k_variable: return {.kind = CellFormat::Kind::List, .items = to_qt_list(sheet_.variables)};
        case k_start:
        case k_end: return {.kind = CellFormat::Kind::Date};
        case k_action:
            return {.kind = CellFormat::Kind::List,
                    .items = to_qt_list(edit_action_list(row_at(row).variable))};
        case k_factor: return {.kind = CellFormat::Kind::Number};
        default:
            return {.kind = CellFormat::Kind::List, .items = to_qt_list(sheet_.zones).mid(0, zones_ + 1)};
    }
}

QString ScenarioModel::text(int row, int column) const {
    ScenarioRow shown = row_at(row);
    switch (column) {
        case k_variable:
            return shown.variable ? QString::fromUtf8(scenario_variable_text(*shown.variable)) : QString{};
        case k_start:
        case k_end: {
            const auto& date = date_of(shown, column);
            return date ? to_qt(long_date_text(*date)) : QString{};
        }
        case k_action: return shown.action ? QString::fromUtf8(edit_action_text(*shown.action)) : QString{};
        case k_factor: return to_qt(single_text(shown.factor));
        default: return shown.zones ? to_qt(scenario_zone_text(*shown.zones)) : QString{};
    }
}

QString ScenarioModel::whole_text(int row, int column) const {
    return column == k_factor ? to_qt(shortest_text(row_at(row).factor)) : text(row, column);
}

QString ScenarioModel::header(int column) const {
    return to_qt(sheet_.headers.at(static_cast<std::size_t>(column)));
}

/// The code of a text in a column of codes; nothing if it is not one.
std::optional<int> ScenarioModel::code_of(int column, const std::string& text) {
    if (column == k_variable) return scenario_variable_code(text);
    return column == k_action ? edit_action_code(text) : scenario_zone_code(text);
}

QString ScenarioModel::entry_refusal(int row, int column, const QString& text) const {
    const std::string typed{trimmed(from_qt(text))};
    switch (column) {
        case k_start:
        case k_end: return to_qt(date_refusal(typed));
        case k_factor: return to_qt(single_refusal(typed));
        default: break;
    }
    // A list shows fewer items than a cell accepts: also an item's number, and the action
    // of another variable.
    return code_of(column, typed) ? QString{} : GridModel::entry_refusal(row, column, text);
}

bool ScenarioModel::put_code(int row, int column, const std::string& text) {
    std::optional<int> code;
    if (!text.empty()) {
        code = code_of(column, text);
        if (!code) return false;
    }
    const RowChange change = set_scenario_code(made_row(row), column + 1, code);
    if (change.beep) QApplication::beep();
    return true;
}

bool ScenarioModel::put(int row, int column, const QString& text) {
    const std::string typed{trimmed(from_qt(text))};
    switch (column) {
        case k_start:
        case k_end: {
            const auto date = read_date(typed);
            if (!date && !typed.empty()) return false;
            date_of(made_row(row), column) = date;
            return true;
        }
        case k_factor: {
            const auto number = typed.empty() ? std::optional<double>{k_missing} : exact_number(typed);
            if (!number) return false;
            const auto factor = static_cast<float>(*number);
            if (std::isinf(factor)) return false;
            made_row(row).factor = factor;
            return true;
        }
        default: return put_code(row, column, typed);
    }
}

void ScenarioModel::leave(int row, int column, bool row_left) {
    if (rows_ == nullptr || static_cast<std::size_t>(row) >= rows_->size()) return;
    if (column != k_action && !row_left) return;
    emit change_begins(true);
    if (leave_scenario_row((*rows_)[static_cast<std::size_t>(row)]))
        changed_block(row, 0, row, k_columns - 1);
}

}  // namespace nivora
