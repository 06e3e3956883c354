// What a grid shows: typed cells, by row and column.
#pragma once

#include <QAbstractTableModel>
#include <QColor>
#include <QRect>
#include <QStringList>
#include <optional>

namespace nivora {

/// How a cell reads what is typed or pasted into it, and how it shows.
struct CellFormat {
    enum class Kind { Text, Number, Integer, Date, List };
    Kind kind = Kind::Text;
    QStringList items = {};  ///< of a list
};

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
    [[nodiscard]] virtual QColor back_colour(int row, int column) const;
    /// What a cell holds once it was cut or emptied.
    [[nodiscard]] virtual QString cleared_text(int row, int column) const;
    /// The longest text of a column, for its width.
    [[nodiscard]] virtual QString widest_text(int column) const;

    [[nodiscard]] QVariant data(const QModelIndex& index, int role) const override;
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] Qt::ItemFlags flags(const QModelIndex& index) const override;
    bool setData(const QModelIndex& index, const QVariant& value, int role) override;

    /// Takes a text into a cell that is not locked, without telling anybody: a block of cells is announced as
    /// a whole by `changed_block`. @return false where the cell can't hold it and keeps what it had
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

private:
    QRect marked_;
};

}  // namespace nivora
