// Drives windows as a user does: boxes by keys, grids through the clipboard.
#pragma once

#include <QApplication>
#include <QClipboard>
#include <QLineEdit>
#include <QTableView>
#include <QTest>
#include <QWidget>
#include <stdexcept>
#include <string>

namespace nivora {

/// An element of a window. @throws std::logic_error if there is none
template <typename Element>
Element& element(const QWidget& window, const char* name) {
    auto* found = window.findChild<Element*>(QString::fromUtf8(name));
    if (found == nullptr) throw std::logic_error(std::string{"there is no "} + name);
    return *found;
}

/// Replaces the content of a box by typing from its first position.
inline void type_over(QLineEdit& box, const QString& text) {
    box.setFocus();
    box.selectAll();
    QTest::keyClick(&box, Qt::Key_Delete);
    QTest::keyClick(&box, Qt::Key_Home);
    QTest::keyClicks(&box, text);
}

/// Types into a cell and leaves it with Enter.
inline void type_into_cell(QTableView& grid, int row, int column, const QString& text) {
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(row, column));
    QTest::keyClick(&grid, Qt::Key_F2);
    // A closed editor may not be deleted yet; the newest is the last.
    const auto editors = grid.viewport()->findChildren<QLineEdit*>();
    if (editors.isEmpty()) throw std::logic_error("the cell has no editor");
    auto* editor = editors.last();
    editor->selectAll();
    QTest::keyClicks(editor, text);
    QTest::keyClick(editor, Qt::Key_Return);
    // The grid takes the text after the key was processed.
    QApplication::processEvents();
}

/// Puts a text on the clipboard, as another program would, and pastes it from a cell on.
inline void paste_at(QTableView& grid, int row, int column, const QString& text) {
    QApplication::clipboard()->setText(text);
    grid.setFocus();
    grid.setCurrentIndex(grid.model()->index(row, column));
    QTest::keyClick(&grid, Qt::Key_V, Qt::ControlModifier);
}

/// Selects a block from one corner to the opposite one, both included.
inline void select_block(QTableView& grid, int row, int column, int last_row, int last_column) {
    grid.setCurrentIndex(grid.model()->index(row, column));
    grid.selectionModel()->select(
        QItemSelection(grid.model()->index(row, column), grid.model()->index(last_row, last_column)),
        QItemSelectionModel::ClearAndSelect);
}

}  // namespace nivora
