// The editors of a grid's cells.
#pragma once

#include <QStyledItemDelegate>

namespace nivora {

/// Marks a widget as the editor of a grid's cell.
inline constexpr const char* k_grid_editor = "gridEditor";

/// A line for texts, numbers and dates, with a mask for dates; a list for lists. A text that a cell can't
/// hold is discarded with a beep. A cell that is marked by a colour shows it also while it is selected.
class GridDelegate : public QStyledItemDelegate {
    Q_OBJECT

public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                          const QModelIndex& index) const override;
    void setEditorData(QWidget* editor, const QModelIndex& index) const override;
    void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
    /// What an editor of a cell holds.
    [[nodiscard]] static QString text_of(const QWidget& editor);

    /// An editor in which nothing was typed leaves the keys of undo to its window.
    bool eventFilter(QObject* editor, QEvent* event) override;

protected:
    void initStyleOption(QStyleOptionViewItem* option, const QModelIndex& index) const override;
};

}  // namespace nivora
