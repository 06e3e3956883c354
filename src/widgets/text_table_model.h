// A read-only table of texts whose rows come and go as a whole.
#pragma once

#include "widgets/grid_model.h"

#include <QStringList>
#include <set>
#include <utility>
#include <vector>

namespace nivora {

/// A column of the table.
struct TextColumn {
    QString header;
    CellFormat::Kind kind = CellFormat::Kind::Text;
    QString unit = {};
};

class TextTableModel : public GridModel {
    Q_OBJECT

public:
    TextTableModel(std::vector<TextColumn> columns, QObject* parent);

    /// Shows other rows, each with a text for every column, in place of those that it had.
    void show(std::vector<QStringList> rows);
    void set_headers(const QStringList& headers);
    /// Marks these cells, by row and column, and no others.
    void highlight(std::set<std::pair<int, int>> cells);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] QString unit(int column) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    [[nodiscard]] QColor back_colour(int row, int column) const override;
    [[nodiscard]] QColor text_colour(int row, int column) const override;

protected:
    [[nodiscard]] bool put(int row, int column, const QString& text) override;

private:
    std::vector<TextColumn> columns_;
    std::vector<QStringList> rows_;
    std::set<std::pair<int, int>> highlighted_;
};

}  // namespace nivora
