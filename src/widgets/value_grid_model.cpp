#include "widgets/value_grid_model.h"

namespace nivora {
namespace {

/// Light cyan, the eleventh of the sixteen colours.
constexpr QRgb k_highlight = 0xFF00FFFF;

}  // namespace

ValueGridModel::ValueGridModel(QStringList headers, QStringList row_headers, QObject* parent)
    : GridModel(parent), headers_(std::move(headers)), row_headers_(std::move(row_headers)) {
    const QStringList blank(headers_.size(), QString{});
    texts_.assign(static_cast<std::size_t>(row_headers_.size()), blank);
}

void ValueGridModel::set_text(int row, int column, const QString& text) {
    texts_.at(static_cast<std::size_t>(row))[column] = text;
    emit dataChanged(index(row, column), index(row, column));
}

void ValueGridModel::highlight(std::set<std::pair<int, int>> cells) {
    highlighted_ = std::move(cells);
    emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

int ValueGridModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(texts_.size());
}

int ValueGridModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(headers_.size());
}

CellFormat ValueGridModel::format(int /*row*/, int column) const {
    const bool label = headers_.at(column) == QStringLiteral("Statistics");
    return {.kind = label ? CellFormat::Kind::Text : CellFormat::Kind::Number};
}

QString ValueGridModel::text(int row, int column) const {
    return texts_.at(static_cast<std::size_t>(row)).at(column);
}

QString ValueGridModel::header(int column) const { return headers_.at(column); }

QString ValueGridModel::row_header(int row) const { return row_headers_.at(row); }

QVariant ValueGridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    const bool heard = orientation == Qt::Vertical && role == Qt::AccessibleTextRole;
    if (heard && section < rowCount() && row_headers_.at(section).isEmpty()) return text(section, 0);
    return GridModel::headerData(section, orientation, role);
}

bool ValueGridModel::locked(int /*row*/, int /*column*/) const { return true; }

QColor ValueGridModel::back_colour(int row, int column) const {
    return highlighted_.contains({row, column}) ? QColor::fromRgb(k_highlight) : QColor{};
}

bool ValueGridModel::put(int /*row*/, int /*column*/, const QString& /*text*/) { return false; }

}  // namespace nivora
