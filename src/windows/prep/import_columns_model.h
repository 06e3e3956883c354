// The columns of a file that is to be imported: what each of them is, and the first values in it.
#pragma once

#include "base/undo_steps.h"
#include "prep/table_sample.h"
#include "widgets/grid_model.h"

#include <optional>
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

    void begin_change() override { before_ = choices_; }
    [[nodiscard]] bool can_undo() const { return steps_.to_undo() != nullptr; }
    [[nodiscard]] bool can_redo() const { return steps_.to_redo() != nullptr; }
    /// Takes the last choice back, or makes it again. @return its row; nothing if there is none
    std::optional<int> undo();
    std::optional<int> redo();

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    [[nodiscard]] QString cleared_text(int row, int column) const override;

protected:
    void end_change() override;
    [[nodiscard]] bool put(int row, int column, const QString& text) override;
    [[nodiscard]] QString locked_reason(int row, int column) const override;

private:
    /// The choices on both sides of a change.
    struct Step {
        std::vector<ColumnChoice> before;
        std::vector<ColumnChoice> after;

        [[nodiscard]] std::size_t bytes() const {
            return (before.size() + after.size()) * sizeof(ColumnChoice);
        }
    };
    int show_choices(const std::vector<ColumnChoice>& choices);

    TableSample sample_;
    ColumnMeanings meanings_;
    std::vector<ColumnChoice> choices_;
    std::vector<ColumnChoice> before_;  ///< the change that is being made
    UndoSteps<Step> steps_;             ///< since the file was shown
};

}  // namespace nivora
