#include "windows/prep/import_columns_model.h"

#include "base/text.h"
#include "widgets/qt_text.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr int k_header = 0;
constexpr int k_meaning = 1;
constexpr int k_unit = 2;
constexpr int k_first_value = 3;
constexpr const char* k_left_out = "(not read)";

}  // namespace

void ImportColumnsModel::show(TableSample sample, ColumnMeanings meanings) {
    beginResetModel();
    sample_ = std::move(sample);
    meanings_ = std::move(meanings);
    choices_ = guessed_columns(sample_, meanings_);
    steps_.clear();
    endResetModel();
}

void ImportColumnsModel::end_change() {
    if (before_.size() == choices_.size() && before_ != choices_)
        steps_.add({.before = std::exchange(before_, {}), .after = choices_});
}

std::optional<int> ImportColumnsModel::undo() {
    if (!can_undo()) return std::nullopt;
    const int row = show_choices(steps_.to_undo()->before);
    steps_.undone();
    return row;
}

std::optional<int> ImportColumnsModel::redo() {
    if (!can_redo()) return std::nullopt;
    const int row = show_choices(steps_.to_redo()->after);
    steps_.redone();
    return row;
}

/// @return the first row that differs
int ImportColumnsModel::show_choices(const std::vector<ColumnChoice>& choices) {
    const auto first = std::mismatch(choices_.begin(), choices_.end(), choices.begin(), choices.end()).first;
    const int row = static_cast<int>(first - choices_.begin());
    choices_ = choices;
    show_values();
    return row;
}

int ImportColumnsModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(choices_.size());
}

int ImportColumnsModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : k_first_value + static_cast<int>(sample_.rows.size());
}

CellFormat ImportColumnsModel::format(int /*row*/, int column) const {
    if (column != k_meaning) return {};
    QStringList items{QString::fromUtf8(k_left_out)};
    for (const auto* names : {&meanings_.keys, &meanings_.values}) {
        for (const std::string& name : *names) items << to_qt(name);
    }
    return {.kind = CellFormat::Kind::List, .items = items};
}

QString ImportColumnsModel::text(int row, int column) const {
    const ColumnChoice& choice = choices_.at(static_cast<std::size_t>(row));
    switch (column) {
        case k_header: return to_qt(choice.header);
        case k_meaning: return choice.meaning.empty() ? QString::fromUtf8(k_left_out) : to_qt(choice.meaning);
        case k_unit: return to_qt(choice.unit);
        default: break;
    }
    const auto& cells = sample_.rows.at(static_cast<std::size_t>(column - k_first_value));
    const auto cell = static_cast<std::size_t>(row);
    return cell < cells.size() ? to_qt(cells[cell]) : QString{};
}

QString ImportColumnsModel::header(int column) const {
    switch (column) {
        case k_header: return QStringLiteral("Column of the file");
        case k_meaning: return QStringLiteral("Is");
        case k_unit: return QStringLiteral("Unit");
        default: return QStringLiteral("Row %1").arg(column - k_first_value + 1);
    }
}

bool ImportColumnsModel::locked(int /*row*/, int column) const {
    return column != k_meaning && column != k_unit;
}

QString ImportColumnsModel::cleared_text(int /*row*/, int column) const {
    return column == k_meaning ? QString::fromUtf8(k_left_out) : QString{};
}

bool ImportColumnsModel::put(int row, int column, const QString& text) {
    ColumnChoice& choice = choices_.at(static_cast<std::size_t>(row));
    if (column == k_unit) {
        choice.unit = from_qt(text.trimmed());
        return true;
    }
    const QString wanted = text.trimmed();
    for (const QString& item : format(row, column).items) {
        if (item.compare(wanted, Qt::CaseInsensitive) != 0) continue;
        choice.meaning = item == QString::fromUtf8(k_left_out) ? std::string{} : from_qt(item);
        return true;
    }
    return false;
}

QString ImportColumnsModel::locked_reason(int /*row*/, int /*column*/) const {
    return QStringLiteral("this is what stands in the file");
}

}  // namespace nivora
