#include "widgets/grid_model.h"

#include "base/entry_refusal.h"
#include "base/number_text.h"
#include "widgets/qt_text.h"

namespace nivora {
namespace {

bool is_number(const CellFormat& format) {
    return format.kind == CellFormat::Kind::Number || format.kind == CellFormat::Kind::Integer;
}

}  // namespace

bool GridModel::locked(int /*row*/, int /*column*/) const { return false; }

QColor GridModel::text_colour(int /*row*/, int /*column*/) const { return {}; }

QColor GridModel::back_colour(int /*row*/, int /*column*/) const { return {}; }

std::optional<double> GridModel::number(int row, int column) const {
    if (!is_number(format(row, column))) return std::nullopt;
    return exact_number(from_qt(whole_text(row, column)));
}

bool GridModel::lacks_number(int row, int column) const {
    return is_number(format(row, column)) && !number(row, column);
}

QString GridModel::cleared_text(int row, int column) const {
    return is_number(format(row, column)) ? QStringLiteral("0") : QString{};
}

QString GridModel::widest_text(int column) const {
    QString widest;
    for (int row = 0; row < rowCount(); ++row) {
        const QString shown = text(row, column);
        if (shown.size() > widest.size()) widest = shown;
    }
    return widest;
}

QString GridModel::unit(int /*column*/) const { return {}; }

QString GridModel::tip(int column) const {
    return header(column).trimmed() + QStringLiteral(": ") + unit(column);
}

QString GridModel::place(int row, int column) const {
    return QStringLiteral("%1, row %2").arg(header(column).trimmed()).arg(row + 1);
}

std::optional<OfferedPaste> GridModel::offered_paste(const CellBlock& /*copied*/,
                                                     int /*active_column*/) const {
    return std::nullopt;
}

QString GridModel::entry_refusal(int row, int column, const QString& text) const {
    const CellFormat cell = format(row, column);
    const std::string entry = from_qt(text);
    switch (cell.kind) {
        case CellFormat::Kind::Number: return to_qt(number_refusal(entry));
        case CellFormat::Kind::Integer: return to_qt(integer_refusal(entry));
        case CellFormat::Kind::Date: return to_qt(date_refusal(entry));
        case CellFormat::Kind::List: {
            std::vector<std::string> items;
            for (const QString& item : cell.items) items.push_back(from_qt(item));
            return to_qt(item_refusal(entry, items));
        }
        case CellFormat::Kind::Text: break;
    }
    return {};
}

QString GridModel::locked_reason(int /*row*/, int /*column*/) const {
    return QStringLiteral("this cell can't be changed");
}

QString GridModel::refusal(int row, int column, const QString& text) const {
    if (!locked(row, column)) return entry_refusal(row, column, text);
    return text == whole_text(row, column) ? QString{} : locked_reason(row, column);
}

QVariant GridModel::data(const QModelIndex& index, int role) const {
    if (!index.isValid() || index.row() >= rowCount()) return {};
    switch (role) {
        case Qt::DisplayRole: return text(index.row(), index.column());
        case Qt::EditRole: return whole_text(index.row(), index.column());
        case Qt::TextAlignmentRole: {
            const bool numeric = is_number(format(index.row(), index.column()));
            return {(numeric ? Qt::AlignRight : Qt::AlignLeft) | Qt::AlignVCenter};
        }
        case Qt::BackgroundRole:
            if (marked_.contains(index.column(), index.row())) return QColor::fromRgb(k_refused_colour);
            if (const QColor colour = back_colour(index.row(), index.column()); colour.isValid())
                return colour;
            return {};
        case Qt::AccessibleDescriptionRole: {
            // What a screen reader does not read from the headers; the colour, too, must be heard.
            QStringList heard;
            if (const QString words = unit(index.column()); !words.isEmpty()) heard << words;
            if (marked_.contains(index.column(), index.row())) heard << QStringLiteral("refused");
            return heard.join(QStringLiteral(", "));
        }
        case Qt::ForegroundRole: {
            const QColor colour = text_colour(index.row(), index.column());
            return colour.isValid() ? QVariant{colour} : QVariant{};
        }
        case Qt::ToolTipRole: return unit(index.column()).isEmpty() ? QVariant{} : tip(index.column());
        default: return {};
    }
}

QVariant GridModel::headerData(int section, Qt::Orientation orientation, int role) const {
    // A view of several may ask for a column before it is told that the model has fewer now.
    if (orientation == Qt::Horizontal && section >= columnCount()) return {};
    if (orientation == Qt::Horizontal && role == k_unit_role) return unit(section);
    if (orientation == Qt::Horizontal && role == Qt::ToolTipRole)
        return unit(section).isEmpty() ? QVariant{} : tip(section);
    if (role != Qt::DisplayRole) return {};
    return orientation == Qt::Vertical ? row_header(section) : header(section).trimmed();
}

Qt::ItemFlags GridModel::flags(const QModelIndex& index) const {
    const Qt::ItemFlags flags = QAbstractTableModel::flags(index);
    return index.isValid() && !locked(index.row(), index.column()) ? flags | Qt::ItemIsEditable : flags;
}

bool GridModel::take(int row, int column, const QString& text) {
    if (locked(row, column)) return text == whole_text(row, column);
    return put(row, column, text);
}

bool GridModel::setData(const QModelIndex& index, const QVariant& value, int role) {
    if (role != Qt::EditRole || !index.isValid()) return false;
    const QString before = whole_text(index.row(), index.column());
    QString text = value.toString();
    if (text == before) return true;
    if (text.isEmpty()) text = cleared_text(index.row(), index.column());
    if (text == before) return true;
    begin_change();
    if (!take(index.row(), index.column(), text)) {
        emit refused(index.row(), index.column(), text);
        return false;
    }
    changed_block(index.row(), index.column(), index.row(), index.column());
    return true;
}

void GridModel::changed_block(int first_row, int first_column, int last_row, int last_column) {
    emit dataChanged(index(first_row, first_column), index(last_row, last_column));
    emit edited(first_row, first_column, last_row, last_column);
    end_change();
}

void GridModel::reload() {
    beginResetModel();
    endResetModel();
}

void GridModel::show_values() {
    if (columnCount() == 0) return;
    emit headerDataChanged(Qt::Horizontal, 0, columnCount() - 1);
    if (rowCount() > 0) emit dataChanged(index(0, 0), index(rowCount() - 1, columnCount() - 1));
}

void GridModel::change_rows(int& rows, int wanted) {
    if (wanted < rows) {
        beginRemoveRows({}, wanted, rows - 1);
        rows = wanted;
        endRemoveRows();
    } else if (wanted > rows) {
        beginInsertRows({}, rows, wanted - 1);
        rows = wanted;
        endInsertRows();
    }
}

void GridModel::mark(const QRect& cells) {
    const QRect shown = marked_ | cells;
    marked_ = cells;
    if (rowCount() > 0 && shown.isValid())
        emit dataChanged(index(shown.top(), shown.left()), index(shown.bottom(), shown.right()));
}

}  // namespace nivora
