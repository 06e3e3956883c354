// The rows of a scenario as a grid shows them.
#pragma once

#include "climate/scenario_definitions.h"
#include "widgets/grid_model.h"

#include <vector>

namespace nivora {

/// Six columns: variable, start, end, action, factor, zones.
/// Blank rows to be filled follow the existing ones.
class ScenarioModel : public GridModel {
    Q_OBJECT

public:
    ScenarioModel(const ScenarioSheet& sheet, int zones, QObject* parent)
        : GridModel(parent), sheet_(sheet), zones_(zones) {}

    /// Shows the rows of a scenario, or none for null.
    void show(std::vector<ScenarioRow>* rows);
    /// Applies the rules for leaving a cell to its row. @param row_left whether the row is left, too
    void leave(int row, int column, bool row_left);

    void begin_change() override { emit change_begins(false); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString whole_text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    /// A row that was cut is blank and is not stored.
    [[nodiscard]] QString cleared_text(int /*row*/, int /*column*/) const override { return {}; }

signals:
    /// The shown rows are about to change. @param joined as what follows from the last change
    void change_begins(bool joined);
    void change_ends();

protected:
    void end_change() override { emit change_ends(); }
    [[nodiscard]] bool put(int row, int column, const QString& text) override;
    [[nodiscard]] QString entry_refusal(int row, int column, const QString& text) const override;

private:
    [[nodiscard]] const ScenarioRow& row_at(int row) const;
    [[nodiscard]] ScenarioRow& made_row(int row);
    [[nodiscard]] int wanted_rows() const;
    [[nodiscard]] static std::optional<int> code_of(int column, const std::string& text);
    [[nodiscard]] bool put_code(int row, int column, const std::string& text);

    const ScenarioSheet& sheet_;
    int zones_;
    std::vector<ScenarioRow>* rows_ = nullptr;
    int shown_rows_ = 0;
};

/// Whether a row holds nothing.
[[nodiscard]] bool is_blank(const ScenarioRow& row);

}  // namespace nivora
