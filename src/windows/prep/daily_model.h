// The days of one zone as a grid shows them.
#pragma once

#include "prep/daily_editor.h"
#include "widgets/grid_model.h"

#include <optional>
#include <string>
#include <utility>

namespace nivora {

/// One row a day, the columns of the view. Cells show rounded values; an editor and the clipboard get
/// the full value.
class DailyModel : public GridModel {
    Q_OBJECT

public:
    /// @param units of what the table holds: the basin, or a simulation
    DailyModel(bool read_only, Units units, QObject* parent)
        : GridModel(parent), read_only_(read_only), units_(units) {}

    /// Shows the days of an editor, or nothing for null. Another zone of one editor keeps the rows that both
    /// zones have.
    void show(DailyEditor* editor);
    /// Notes what is being typed, for a crash.
    void note_typed(const std::optional<CellText>& typed);
    /// Returns and clears the reason why the store refused a value; empty if it did not.
    [[nodiscard]] std::string take_fault() { return std::exchange(fault_, {}); }

    void begin_change() override {
        if (editor_ != nullptr) editor_->begin_step();
    }

    [[nodiscard]] int zone() const { return editor_->zone(); }
    /// The first and the last day; nothing for a table without rows.
    [[nodiscard]] std::optional<Period> days() const;
    /// The first row of a day; nothing if the shown zone has none.
    [[nodiscard]] std::optional<int> row_of(DayCount day) const;

    [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
    [[nodiscard]] CellFormat format(int row, int column) const override;
    [[nodiscard]] QString text(int row, int column) const override;
    [[nodiscard]] QString whole_text(int row, int column) const override;
    [[nodiscard]] QString header(int column) const override;
    [[nodiscard]] bool locked(int row, int column) const override;
    [[nodiscard]] std::optional<double> number(int row, int column) const override;
    [[nodiscard]] QColor text_colour(int row, int column) const override;
    [[nodiscard]] QString widest_text(int column) const override;
    [[nodiscard]] QString unit(int column) const override;
    [[nodiscard]] QString place(int row, int column) const override;
    /// A block of dates under a heading is placed by its dates.
    [[nodiscard]] std::optional<OfferedPaste> offered_paste(const CellBlock& copied,
                                                            int active_column) const override;

protected:
    void end_change() override {
        if (editor_ != nullptr) editor_->end_step();
    }
    [[nodiscard]] bool put(int row, int column, const QString& text) override;
    [[nodiscard]] QString entry_refusal(int row, int column, const QString& text) const override;
    [[nodiscard]] QString locked_reason(int row, int column) const override;

private:
    [[nodiscard]] const DailyColumn& column_of(int column) const;
    [[nodiscard]] QString number_text(double value, int column) const;

    DailyEditor* editor_ = nullptr;
    int rows_ = 0;  ///< the number of shown rows; the editor may already have another zone
    bool read_only_;
    Units units_;
    std::vector<std::string> patterns_;
    std::string fault_;
};

}  // namespace nivora
