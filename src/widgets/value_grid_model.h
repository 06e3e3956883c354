// Read-only figures: texts by row and column, some of them highlighted.
#pragma once

#include "widgets/grid_model.h"

#include <set>
#include <utility>
#include <vector>

namespace nivora {

class ValueGridModel : public GridModel {
    Q_OBJECT

public:
    /// @param row_headers the names of the rows; empty texts if rows have no names
    ValueGridModel(QStringList headers, QStringList row_headers, QObject* parent);

    void set_text(int row, int column, const QString& text);
    /// Highlights these cells and no others.
    void highlight(std::set<std::pair<int, int>> cells);

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] QString row_header(int row) const override;
    /// A row without a header is named by its first text for those who hear it.
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    [[nodiscard]] QColor back_colour(int row, int column) const override;

protected:
    [[nodiscard]] bool put(int row, int column, const QString& text) override;

private:
    QStringList headers_;
    QStringList row_headers_;
    std::vector<QStringList> texts_;
    std::set<std::pair<int, int>> highlighted_;
};

}  // namespace nivora
