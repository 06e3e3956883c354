#include "widgets/grid_delegate.h"

#include "widgets/colours.h"
#include "widgets/grid_model.h"
#include "widgets/readable_palette.h"
#include "widgets/undo_keys.h"

#include <QApplication>
#include <QComboBox>
#include <QKeyEvent>
#include <QLineEdit>
#include <QRegularExpressionValidator>

namespace nivora {
namespace {

/// Accepts a number while it is typed, with a point in every locale.
QValidator* number_validator(CellFormat::Kind kind, QObject* parent) {
    // A comma, or a point in a whole number, may be typed, and the cell then refuses the text: if the
    // character were dropped, a different number would remain.
    const QString pattern = kind == CellFormat::Kind::Integer
                                ? QStringLiteral("-?[0-9.,]*")
                                : QStringLiteral("-?[0-9,]*\\.?[0-9,]*([eE][-+]?[0-9]*)?");
    return new QRegularExpressionValidator(QRegularExpression(pattern), parent);
}

}  // namespace

void GridDelegate::initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const {
    QStyledItemDelegate::initStyleOption(option, index);
    if (index.data(Qt::ForegroundRole).isValid()) {
        const bool plain = option->backgroundBrush.style() == Qt::NoBrush;
        const QColor ground = plain ? option->palette.color(QPalette::Base) : option->backgroundBrush.color();
        option->palette.setColor(QPalette::Text, readable_on(option->palette.color(QPalette::Text), ground));
    }
    if (option->backgroundBrush.style() != Qt::NoBrush)
        option->palette.setColor(QPalette::Text,
                                 text_on_mark(option->palette.color(QPalette::Text),
                                              option->backgroundBrush.color(), option->palette));
    // The colour of a marked cell must stay visible: the selection would be painted over it, and the pointer
    // or the focus on the cell would tint it.
    if (option->backgroundBrush.style() != Qt::NoBrush)
        option->state &= ~(QStyle::State_Selected | QStyle::State_MouseOver | QStyle::State_HasFocus);
}

QWidget* GridDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& /*option*/,
                                    const QModelIndex& index) const {
    const auto* model = qobject_cast<const GridModel*>(index.model());
    if (model == nullptr) return nullptr;
    const CellFormat format = model->format(index.row(), index.column());
    QWidget* editor = nullptr;
    if (format.kind == CellFormat::Kind::List) {
        auto* list = new QComboBox(parent);
        list->addItems(format.items);
        editor = list;
    } else {
        auto* line = new QLineEdit(parent);
        line->setFrame(false);
        // No digit is required: a mask that is short of one would keep Enter from ending the editor.
        if (format.kind == CellFormat::Kind::Date) line->setInputMask(QStringLiteral("00/00/0000;_"));
        if (format.kind == CellFormat::Kind::Number || format.kind == CellFormat::Kind::Integer) {
            line->setValidator(number_validator(format.kind, line));
            line->setAlignment(Qt::AlignRight);
        }
        editor = line;
    }
    editor->setProperty(k_grid_editor, true);
    editor->setAccessibleName(model->place(index.row(), index.column()));
    editor->setAutoFillBackground(true);
    return editor;
}

bool GridDelegate::eventFilter(QObject* editor, QEvent* event) {
    const auto* line = qobject_cast<const QLineEdit*>(editor);
    const bool untouched = line != nullptr && !line->isUndoAvailable() && !line->isRedoAvailable();
    if (untouched && event->type() == QEvent::ShortcutOverride &&
        UndoKeys::is_key(*static_cast<const QKeyEvent*>(event))) {
        event->ignore();
        return true;
    }
    return QStyledItemDelegate::eventFilter(editor, event);
}

void GridDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
    auto* list = qobject_cast<QComboBox*>(editor);
    if (list == nullptr) return QStyledItemDelegate::setEditorData(editor, index);
    // A blank cell has none of the items, and stays blank unless one is chosen.
    list->setCurrentIndex(list->findText(index.data(Qt::EditRole).toString()));
}

QString GridDelegate::text_of(const QWidget& editor) {
    if (const auto* list = qobject_cast<const QComboBox*>(&editor)) return list->currentText();
    const QString text = static_cast<const QLineEdit&>(editor).text();
    // The rest of an emptied mask.
    return text == QStringLiteral("//") ? QString{} : text;
}

void GridDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
    if (!model->setData(index, text_of(*editor), Qt::EditRole)) QApplication::beep();
}

}  // namespace nivora
