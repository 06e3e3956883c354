// What a grid shows: typed cells, by row and column.
#pragma once

#include "base/clipboard_text.h"
#include "base/dialogs.h"

#include <QAbstractTableModel>
#include <QColor>
#include <QRect>
#include <QStringList>
#include <optional>
#include <vector>

namespace nivora {

/// How a cell reads what is typed or pasted into it, and how it is shown.
struct CellFormat {
    enum class Kind { Text, Number, Integer, Date, List };
    Kind kind = Kind::Text;
    QStringList items = {};  ///< of a list
};

/// A text and its cell.
struct CellText {
    int row = 0;
    int column = 0;
    QString text = {};
};

/// An alternative to pasting a block cell by cell: the question that offers it, with Yes, No and Cancel, and
/// where the texts go after a Yes.
struct OfferedPaste {
    Message question;
    std::vector<CellText> cells;
};

/// The role of the unit of a column in its header.
inline constexpr int k_unit_role = Qt::UserRole + 1;
/// The role of a column's place before the user hid or moved any, from 0.
inline constexpr int k_column_role = Qt::UserRole + 2;

/// The cells of one grid. Rows and columns count from 0. A model says what its cells hold and stores texts in
/// them; the view does everything else.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] virtual CellFormat format(int row, int column) const = 0;
    /// What the cell shows.
    [[nodiscard]] virtual QString text(int row, int column) const = 0;
    /// What an editor and the clipboard get: the full value, if `text` shows less.
    [[nodiscard]] virtual QString whole_text(int row, int column) const { return text(row, column); }
    [[nodiscard]] virtual QString header(int column) const = 0;
    [[nodiscard]] virtual QString row_header(int row) const { return QString::number(row + 1); }
    [[nodiscard]] virtual bool locked(int row, int column) const;
    [[nodiscard]] virtual QColor text_colour(int row, int column) const;
    /// The colour that marks a cell, seen also while the cell is selected; none for a plain cell.
    [[nodiscard]] virtual QColor back_colour(int row, int column) const;
    /// The number in a cell of numbers; nothing for a missing one, and in any other cell.
    [[nodiscard]] virtual std::optional<double> number(int row, int column) const;
    /// Whether a cell of numbers has none.
    [[nodiscard]] bool lacks_number(int row, int column) const;
    /// What a cell holds after it was cut or emptied.
    [[nodiscard]] virtual QString cleared_text(int row, int column) const;
    /// The longest text of a column, for its width.
    [[nodiscard]] virtual QString widest_text(int column) const;
    /// The unit of a column's numbers, or what they mean; empty if there is nothing to say.
    [[nodiscard]] virtual QString unit(int column) const;
    /// A column's header and unit, as the tool tip and the status bar show them.
    [[nodiscard]] QString tip(int column) const;
    /// The cell in words, for a message.
    [[nodiscard]] virtual QString place(int row, int column) const;
    /// An alternative way to paste a block at a column, if the block itself says where it belongs.
    [[nodiscard]] virtual std::optional<OfferedPaste> offered_paste(const CellBlock& copied,
                                                                    int active_column) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Stores what was typed; a cell that was emptied gets its cleared text.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Why the cell can't hold a text: a clause without a full stop; empty if it can. A locked cell accepts
    /// the text that it has.
    [[nodiscard]] QString refusal(int row, int column, const QString& text) const;
    /// Stores a text in a cell without emitting a signal: `changed_block` announces the whole block.
    /// @return false if the cell can't hold the text and is unchanged
    [[nodiscard]] bool take(int row, int column, const QString& text);
    /// The user begins to change cells, until `changed_block` announces them: one change that can be undone.
    virtual void begin_change() {}
    void changed_block(int first_row, int first_column, int last_row, int last_column);

    /// Shows other rows and columns: selection, active cell and scroll position are reset.
    void reload();
    /// Shows other values in the rows that are there.
    void show_values();
    /// Paints a block in the colour of refused input; an empty block removes the colour.
    void mark(const QRect& cells);

    /// The colour of a box or cell whose content was refused.
    static constexpr unsigned k_refused_colour = 0xFF8080;

signals:
    /// The user has changed cells.
    void edited(int first_row, int first_column, int last_row, int last_column);
    /// The user has typed a text that the cell can't hold.
    void refused(int row, int column, const QString& text);

protected:
    [[nodiscard]] virtual bool put(int row, int column, const QString& text) = 0;
    /// The cells were changed, and those who were told have done what follows from it.
    virtual void end_change() {}
    /// Why a cell that is not locked can't hold a text, by the rules of its format;
    /// the form is that of `refusal`.
    [[nodiscard]] virtual QString entry_refusal(int row, int column, const QString& text) const;
    /// Why nothing can be entered into a locked cell.
    [[nodiscard]] virtual QString locked_reason(int row, int column) const;

    /// Changes the number of rows that the model keeps, by adding or removing rows at the end.
    void change_rows(int& rows, int wanted);

private:
    QRect marked_;
};

}  // namespace nivora
