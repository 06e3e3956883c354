// What is likely to be wrong in the daily variables, as a list that leads to the days.
#pragma once

#include "prep/daily_place.h"
#include "prep/data_check.h"
#include "widgets/nivora_window.h"

#include <string>
#include <vector>

class QComboBox;
class QLabel;
class QPushButton;

namespace nivora {

class GridView;
class TextTableModel;

/// Stays open beside the main window.
class frmDataCheck : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmDataCheck(const WindowContext& context, QWidget* parent = nullptr);

    /// Looks through the daily variables of the open basin as they are now.
    void look();
    /// The same if another basin is open now.
    void refresh();
    /// Looks, and shows the missing values of a zone with the cursor on those of a day and field.
    void show_missing(const DailyPlace& place);

signals:
    /// The user wants to see a finding in the daily editor.
    void wanted(const nivora::DataFinding& finding);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* make_head();
    QWidget* make_buttons();
    void fill();
    void fill_zones();
    void copy();
    void go_to(int row);
    [[nodiscard]] QString summary() const;
    [[nodiscard]] const DataFinding& shown(int row) const {
        return check_.findings[shown_[static_cast<std::size_t>(row)]];
    }

    DataCheck check_;
    std::string basin_file_;          ///< of the basin that was looked through
    QString fault_;                   ///< why the data can't be read; empty if they were
    std::vector<std::size_t> shown_;  ///< positions in the findings, by row
    std::size_t chosen_ = 0;          ///< findings of the chosen kind and zone, also those without a row
    QComboBox* kinds_;
    QComboBox* zones_;
    QLabel* told_;
    TextTableModel* rows_;
    GridView* list_;
    QPushButton* copy_ = nullptr;
    QPushButton* go_ = nullptr;
};

}  // namespace nivora
