// The days of one zone as a grid shows them.
#pragma once

#include "prep/daily_editor.h"
#include "session/column_layout.h"
#include "widgets/grid_model.h"
#include "widgets/grid_sheet.h"

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// The discharge that the last run computed, which can stand beside the measured one.
struct ComputedFlow {
    std::string beside;                        ///< the field of the measured discharge
    Units units = Units::Metric;               ///< of the run
    int told_column = 0;                       ///< the column whose help line explains it
    std::function<double(std::size_t)> value;  ///< of a row of the shown zone; NaN if there is none
};

/// One row a day, the columns of the view as far as the user wants to see them, in the order in which he
/// wants them. Cells show rounded values; an editor and the clipboard get the full value.
///
/// A column of the model is one that is seen: whoever selects, copies or pastes has nothing to do with the
/// others. The editor keeps its own columns: `field_column` and `column_of_field` lead from one to the other.
class DailyModel : public GridModel {
    Q_OBJECT

public:
    /// @param units of what the table holds: the basin, or a simulation
    DailyModel(bool read_only, Units units, QObject* parent)
        : GridModel(parent), read_only_(read_only), units_(units) {}

    /// Shows the days of an editor, or nothing for null. Another zone of one editor keeps the rows that both
    /// zones have.
    void show(DailyEditor* editor);
    /// Offers the computed discharge as a column, which is not seen before `arrange` names it.
    void offer(ComputedFlow flow);
    /// The columns that can be seen, in the order of the view.
    [[nodiscard]] std::vector<OfferedColumn> offered() const;
    [[nodiscard]] QString offered_header(std::size_t offered) const;
    /// Which columns are seen, in which order, by their places among those that are offered; the dates first.
    void arrange(const std::vector<std::size_t>& seen);
    /// The place of a column among those that are offered.
    [[nodiscard]] std::size_t offered_place(int column) const;
    /// Columns by their places among those that are offered, whether seen or not, as a sheet that is printed.
    [[nodiscard]] PrintedSheet sheet(const std::vector<std::size_t>& printed, int first_row,
                                     int last_row) const;
    /// The editor's column that a column shows; nothing for the computed discharge.
    [[nodiscard]] std::optional<std::size_t> field_column(int column) const;
    /// The column that shows one of the editor; nothing if it is not seen.
    [[nodiscard]] std::optional<int> column_of_field(std::size_t field_column) const;
    /// The place of the editor's column among those that are offered.
    [[nodiscard]] std::size_t offered_field(std::size_t field_column) const;
    /// Whether the cell holds another value than when the editor was opened.
    [[nodiscard]] bool changed(int row, int column) const;
    /// The headers of hidden columns in which cells of the shown zone have changed.
    [[nodiscard]] QStringList changed_out_of_sight() const;
    /// The zones in which cells have changed; none if they can't be read.
    [[nodiscard]] std::vector<int> changed_zones() const;
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
    [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
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
    static constexpr int k_computed = -1;

    [[nodiscard]] int source(int column) const { return seen_.at(static_cast<std::size_t>(column)); }
    [[nodiscard]] std::size_t field_of(int column) const { return static_cast<std::size_t>(source(column)); }
    [[nodiscard]] bool is_computed(int column) const { return source(column) == k_computed; }
    [[nodiscard]] double value_of(std::size_t day, int column) const;
    [[nodiscard]] QString header_of(int source) const;
    [[nodiscard]] const DailyColumn& column_of(int column) const;
    [[nodiscard]] QString number_text(double value, int column) const;

    DailyEditor* editor_ = nullptr;
    int rows_ = 0;  ///< the number of shown rows; the editor may already have another zone
    bool read_only_;
    Units units_;
    std::vector<std::string> patterns_;  ///< by column of the editor
    std::vector<int> offered_;           ///< columns of the editor, or the computed discharge
    std::vector<int> seen_;              ///< likewise, as the model shows them
    ComputedFlow flow_;
    std::string fault_;
};

}  // namespace nivora
