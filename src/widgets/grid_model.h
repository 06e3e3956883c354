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

/// How a cell reads what is typed or pasted into it, and how it shows.
struct CellFormat {
    enum class Kind { Text, Number, Integer, Date, List };
    Kind kind = Kind::Text;
    QStringList items = {};  ///< of a list
};

/// A text and the cell that it is meant for.
struct PlacedText {
    int row = 0;
    int column = 0;
    QString text = {};
};

/// Another way to paste a block than cell by cell: the question that offers it, with Yes, No and Cancel, and
/// where the texts go after a Yes.
struct OfferedPaste {
    Message question;
    std::vector<PlacedText> cells;
};

/// The role under which a header gives the unit of its column.
inline constexpr int k_unit_role = Qt::UserRole + 1;

/// The cells of one grid. Rows and columns count from 0. A model says what its cells hold and takes texts
/// into them; all else of a grid is the view's.
class GridModel : public QAbstractTableModel {
    Q_OBJECT

public:
    using QAbstractTableModel::QAbstractTableModel;

    [[nodiscard]] virtual CellFormat format(int row, int column) const = 0;
    /// What the cell shows.
    [[nodiscard]] virtual QString text(int row, int column) const = 0;
    /// What an editor and the clipboard get: the whole value, where `text` shows less.
    [[nodiscard]] virtual QString whole_text(int row, int column) const { return text(row, column); }
    [[nodiscard]] virtual QString header(int column) const = 0;
    [[nodiscard]] virtual QString row_header(int row) const { return QString::number(row + 1); }
    [[nodiscard]] virtual bool locked(int row, int column) const;
    [[nodiscard]] virtual QColor text_colour(int row, int column) const;
    /// The colour that marks a cell, seen also while the cell is selected; none for a plain cell.
    [[nodiscard]] virtual QColor back_colour(int row, int column) const;
    /// What a cell holds once it was cut or emptied.
    [[nodiscard]] virtual QString cleared_text(int row, int column) const;
    /// The longest text of a column, for its width.
    [[nodiscard]] virtual QString widest_text(int column) const;
    /// The unit of a column's numbers, or what they mean; empty where there is nothing to say.
    [[nodiscard]] virtual QString unit(int column) const;
    /// A column's header and its unit, as the tool tip and the status bar say them.
    [[nodiscard]] QString tip(int column) const;
    /// The cell in words, for a message.
    [[nodiscard]] virtual QString place(int row, int column) const;
    /// Another way to paste a block at a column, where the block itself says where it belongs.
    [[nodiscard]] virtual std::optional<OfferedPaste> offered_paste(const CellBlock& copied,
                                                                    int active_column) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    /// Takes what was typed; a cell that was emptied gets its cleared text.
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Why the cell can't take a text: a clause without its full stop; empty where it can. A locked cell
    /// takes the text that it has.
    [[nodiscard]] QString refusal(int row, int column, const QString& text) const;
    /// Takes a text into a cell, without telling anybody: a block of cells is announced as a whole by
    /// `changed_block`. @return false where the cell can't hold it and keeps what it had
    [[nodiscard]] bool take(int row, int column, const QString& text);
    void changed_block(int first_row, int first_column, int last_row, int last_column);

    /// Shows all cells anew.
    void reload();
    /// Paints a block in the colour of refused input; an empty one ends it.
    void mark(const QRect& cells);

    /// The colour of a box or cell whose content was refused.
    static constexpr unsigned k_refused_colour = 0xFF8080;

signals:
    /// A user's change of cells was taken.
    void edited(int first_row, int first_column, int last_row, int last_column);
    /// A text was typed that the cell can't hold.
    void refused(int row, int column, const QString& text);

protected:
    [[nodiscard]] virtual bool put(int row, int column, const QString& text) = 0;
    /// Why a cell that is not locked can't take a text, as `refusal` says it: the rules of the cell's format.
    [[nodiscard]] virtual QString entry_refusal(int row, int column, const QString& text) const;
    /// Why nothing can be entered into a locked cell.
    [[nodiscard]] virtual QString locked_reason(int row, int column) const;

private:
    QRect marked_;
};

}  // namespace nivora
