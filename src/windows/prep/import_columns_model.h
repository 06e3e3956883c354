// The columns of a file that is to be imported: what each of them is, and the first values in it.
#pragma once

#include "prep/table_sample.h"
#include "widgets/grid_model.h"

#include <vector>

namespace nivora {

/// A row for each column of the file: its header, what it is, its unit, and its cells in the first rows.
class ImportColumnsModel : public GridModel {
    Q_OBJECT

public:
    using GridModel::GridModel;

    /// Shows a file, with what its headers say.
    void show(TableSample sample, ColumnMeanings meanings);
    /// The choices of the user.
    [[nodiscard]] const std::vector<ColumnChoice>& choices() const { return choices_; }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    [[nodiscard]] QString cleared_text(int row, int column) const override;

protected:
    [[nodiscard]] bool put(int row, int column, const QString& text) override;
    [[nodiscard]] QString locked_reason(int row, int column) const override;

private:
    TableSample sample_;
    ColumnMeanings meanings_;
    std::vector<ColumnChoice> choices_;
};

}  // namespace nivora
