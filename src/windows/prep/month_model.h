// The months of one zone as a grid shows them.
#pragma once

#include "base/units.h"
#include "prep/monthly_averages.h"
#include "widgets/grid_model.h"

#include <optional>
#include <string>
#include <utility>

namespace nivora {

/// Twelve rows, January first: the month's name, maximum, minimum and average temperature, precipitation.
class MonthModel : public GridModel {
    Q_OBJECT

public:
    /// @param units of the basin
    MonthModel(Units units, QObject* parent) : GridModel(parent), units_(units) {}

    /// Shows a zone of these averages, or nothing for null.
    void show_zone(MonthlyAverages* averages, int zone);
    /// Notes what is being typed, for a crash.
    void note_typed(const std::optional<CellText>& typed);
    void begin_change() override {
        if (averages_ != nullptr) averages_->begin_step();
    }
    /// Returns and clears the reason why the store refused a value; empty if it did not.
    [[nodiscard]] std::string take_fault() { return std::exchange(fault_, {}); }

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString whole_text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    /// A month without a value is missing, and stays so if the cursor only passes over it.
    [[nodiscard]] QString cleared_text(int /*row*/, int /*column*/) const override { return {}; }
    [[nodiscard]] QString unit(int column) const override;
    [[nodiscard]] QString place(int row, int column) const override;

protected:
    void end_change() override {
        if (averages_ != nullptr) averages_->end_step();
    }
    [[nodiscard]] bool put(int row, int column, const QString& text) override;
    [[nodiscard]] QString entry_refusal(int row, int column, const QString& text) const override;

private:
    [[nodiscard]] float value(int row, int column) const;

    MonthlyAverages* averages_ = nullptr;
    Units units_;
    int zone_ = 1;
    std::string fault_;
};

}  // namespace nivora
