#include "widgets/text_table_model.h"

namespace nivora {
namespace {

/// A pale yellow under black text, readable beside light and dark cells.
constexpr QRgb k_mark = 0xFFFFE97A;
constexpr QRgb k_marked_text = 0xFF000000;

}  // namespace

TextTableModel::TextTableModel(std::vector<TextColumn> columns, QObject* parent)
    : GridModel(parent), columns_(std::move(columns)) {}

void TextTableModel::show(std::vector<QStringList> rows) {
    rows_ = std::move(rows);
    highlighted_.clear();
    reload();
}

void TextTableModel::set_headers(const QStringList& headers) {
    for (std::size_t column = 0; column < columns_.size(); ++column)
        columns_[column].header = headers.at(static_cast<qsizetype>(column));
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
}

void TextTableModel::highlight(std::set<std::pair<int, int>> cells) {
    highlighted_ = std::move(cells);
    show_values();
}

int TextTableModel::rowCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}

int TextTableModel::columnCount(const QModelIndex& parent) const {
    return parent.isValid() ? 0 : static_cast<int>(columns_.size());
}

CellFormat TextTableModel::format(int /*row*/, int column) const {
    return {.kind = columns_.at(static_cast<std::size_t>(column)).kind};
}

QString TextTableModel::text(int row, int column) const {
    return rows_.at(static_cast<std::size_t>(row)).at(column);
}

QString TextTableModel::header(int column) const {
    return columns_.at(static_cast<std::size_t>(column)).header;
}

QString TextTableModel::unit(int column) const { return columns_.at(static_cast<std::size_t>(column)).unit; }

bool TextTableModel::locked(int /*row*/, int /*column*/) const { return true; }

QColor TextTableModel::back_colour(int row, int column) const {
    return highlighted_.contains({row, column}) ? QColor::fromRgb(k_mark) : QColor{};
}

QColor TextTableModel::text_colour(int row, int column) const {
    return highlighted_.contains({row, column}) ? QColor::fromRgb(k_marked_text) : QColor{};
}

bool TextTableModel::put(int /*row*/, int /*column*/, const QString& /*text*/) { return false; }

}  // namespace nivora
