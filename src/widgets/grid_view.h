// The grid of all windows: a view of typed cells with block selection, clipboard and fill.
#pragma once

#include "widgets/grid_model.h"

#include <QTableView>
#include <string>
#include <vector>

namespace nivora {

/// What became of a block that was pasted.
struct PasteOutcome {
    int taken = 0;          ///< cells that hold what was pasted
    int refused = 0;        ///< cells that could not hold it and kept what they had
    QString first_refused;  ///< the text of the first of them
    int cut_off = 0;        ///< rows and columns of the block for which the grid has no room
};

/// A block of cells, both ends in it, from 0.
struct CellRange {
    int first_row = 0;
    int first_column = 0;
    int last_row = -1;
    int last_column = -1;

    [[nodiscard]] int rows() const { return last_row - first_row + 1; }
    [[nodiscard]] int columns() const { return last_column - first_column + 1; }
};

/// Shows a GridModel. Keys are those of a spreadsheet: Enter goes down, Tab to the right, F2 edits, typing
/// replaces, Delete cuts, Ctrl+X, C, V work on the block.
class GridView : public QTableView {
    Q_OBJECT

public:
    explicit GridView(GridModel* model, QWidget* parent = nullptr);
    ~GridView() override;

    [[nodiscard]] GridModel& cells() const { return *cells_; }
    /// The selected block, or the active cell as a block of one; empty where there is neither.
    [[nodiscard]] CellRange block() const;

    /// Cuts the block: its cells go to the clipboard and are cleared. Locked cells stay.
    void cut();
    void copy() const;
    /// Pastes with fill: a copy of fewer rows than the selected block repeats over it.
    void paste();
    /// Takes the cell that is being edited into the model.
    void commit_editor();

    /// Widths by header and content; `kept` holds them once they were measured.
    void fit_columns(std::vector<int>& kept);
    void fit_columns();

    /// Whether Delete, and leaving an empty cell, clear cells.
    void set_clears_cells(bool clears) { clears_ = clears; }
    /// Whether cells are redrawn while the scroll bar is dragged.
    void set_track_scrolling(bool track);
    [[nodiscard]] bool track_scrolling() const;

    /// A key that a locked cell does not take leads to no other cell.
    void keyboardSearch(const QString& /*search*/) override {}

signals:
    /// The cursor left a cell, by key, mouse or a change of the focus.
    void left_cell(int row, int column);
    void pasted(const nivora::PasteOutcome& outcome);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void closeEditor(QWidget* editor, QAbstractItemDelegate::EndEditHint hint) override;

private:
    void leave(const QModelIndex& cell);
    void focus_moved(const QWidget* from, const QWidget* to);
    bool edit_key(const QKeyEvent* event);
    [[nodiscard]] bool all_locked(const CellRange& range) const;
    PasteOutcome put_block(const std::vector<std::vector<std::string>>& copied, const CellRange& target);
    [[nodiscard]] int measured_width(int column) const;
    void fit_header();

    GridModel* cells_;
    bool clears_ = true;
};

}  // namespace nivora
