// The grid that all windows use: a view of typed cells with block selection, clipboard and fill.
#pragma once

#include "base/dialogs.h"
#include "widgets/grid_paste.h"

#include <QKeySequence>
#include <QTableView>
#include <optional>
#include <vector>

class QMenu;

namespace nivora {

class FrozenColumn;

/// What a copy under the columns' headers is asked for with.
inline constexpr QKeyCombination k_copy_with_headers = Qt::CTRL | Qt::SHIFT | Qt::Key_C;

/// Shows a GridModel. Keys are those of a spreadsheet: Enter goes down, Tab to the right and from the last
/// cell to the next control, Shift+Tab back and from the first cell to the previous control, F2 edits, typing
/// replaces, Delete cuts, Ctrl+X, C, V work on the block, Ctrl+Shift+C copies it under its headers.
class GridView : public QTableView {
    Q_OBJECT

public:
    /// @param user asked before a paste leaves anything out
    GridView(GridModel* model, Dialogs& user, QWidget* parent = nullptr);
    ~GridView() override;

    [[nodiscard]] GridModel& cells() const { return *cells_; }
    /// The selected block, or the active cell as a block of one; empty if there is neither.
    [[nodiscard]] CellRange block() const;

    /// Cuts the block: its cells go to the clipboard and are cleared. Locked cells stay.
    void cut();
    void copy() const;
    /// The same under a line of the columns' headers.
    void copy_with_headers() const;
    /// Pastes with fill: a copy of fewer rows than the selected block repeats over it. A grid that selects
    /// whole rows takes a copy that is narrower than a row at its active cell. A block that can't be accepted
    /// as a whole is pasted only after a Yes, and then without the refused cells.
    void paste();
    /// Whether a cut would change a cell, and whether a paste could.
    [[nodiscard]] bool can_cut() const;
    [[nodiscard]] bool can_paste() const;
    /// Moves to a cell, and selects it alone or its row. It works also while a modifier key is held down,
    /// which would extend the selection in setCurrentIndex() and selectRow().
    void go_to(const QModelIndex& cell);
    /// Selects a block and brings its first cell into view.
    void show_block(const CellRange& range);
    /// Stores the text of the cell that is being edited in the model.
    void commit_editor();

    /// The text of the cell that is being edited, as the model would get it if the cell were left now;
    /// nothing if none is edited, if its text has not changed, or if the cell can't hold it.
    [[nodiscard]] std::optional<CellText> typed_cell() const;

    /// Sets the widths by header and content; `kept` holds them once they have been measured.
    void fit_columns(std::vector<int>& kept);
    void fit_columns();
    /// Widens columns whose texts have outgrown them.
    void widen_columns(int first_column, int last_column);

    /// Whether Delete clears cells.
    void set_clears_cells(bool clears) { clears_ = clears; }
    /// Whether Enter moves to the cell below after an edit.
    void set_enter_goes_down(bool goes) { enter_goes_down_ = goes; }
    /// The colour of the area beside and below the cells; by default that of the cells.
    void set_empty_area_colour(const QColor& colour) { empty_area_ = colour; }
    /// Keeps the first column in view while the others scroll; see FrozenColumn for what it demands.
    void freeze_first_column();
    /// Whether cells are redrawn while the scroll bar is dragged.
    void set_track_scrolling(bool track);
    [[nodiscard]] bool track_scrolling() const;

    void scrollTo(const QModelIndex& index, ScrollHint hint = EnsureVisible) override;

    /// A key that a locked cell does not accept must not move to another cell.
    void keyboardSearch(const QString& /*search*/) override {}

signals:
    /// The cursor has left a cell, by key, mouse or a change of the focus.
    void left_cell(int row, int column);
    /// Cells were pasted.
    void pasted();
    /// The context menu is about to open: entries can be added to it.
    void menu_asked(QMenu* menu);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    bool focusNextPrevChild(bool next) override;
    void commitData(QWidget* editor) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;
    void paintEvent(QPaintEvent* event) override;
    void updateGeometries() override;

private:
    [[nodiscard]] CellBlock copied_block() const;
    void leave(const QModelIndex& cell);
    [[nodiscard]] bool is_open(QWidget* editor) const;
    void focus_moved(const QWidget* from, const QWidget* to);
    bool edit_key(const QKeyEvent* event);
    [[nodiscard]] bool all_locked(const CellRange& range) const;
    [[nodiscard]] CellRange paste_target(const CellBlock& copied) const;
    [[nodiscard]] std::optional<PastePlan> chosen_paste(const CellBlock& copied, const CellRange& target);
    [[nodiscard]] bool agrees_to(const PastePlan& plan);
    void put(const PastePlan& plan);
    void go_down();
    [[nodiscard]] bool is_at_edge(bool forward);
    void paint_empty_area();
    [[nodiscard]] int content_width(int column) const;
    [[nodiscard]] int measured_width(int column) const;
    void fit_header();

    GridModel* cells_;
    Dialogs& user_;
    QColor empty_area_;
    FrozenColumn* frozen_ = nullptr;
    bool clears_ = true;
    bool enter_goes_down_ = true;
};

}  // namespace nivora
