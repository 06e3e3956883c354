// The long-term monthly averages of the basin.
#pragma once

#include "prep/monthly_averages.h"
#include "widgets/nivora_window.h"

#include <memory>

class QGroupBox;
class QSpinBox;

namespace nivora {

class GridView;
class MonthModel;

/// Shows and edits the twelve months of a zone. All changes wait for Accept.
class frmLongTermAvg : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmLongTermAvg(const WindowContext& context, QWidget* parent = nullptr);
    ~frmLongTermAvg() override;

    /// Opens the table. @return false if it is missing, which was shown
    [[nodiscard]] bool open();

protected:
    void closeEvent(QCloseEvent* event) override;

private:
    void make_menus();
    void Show_Zone_Months(int zone);
    void recalculate();
    void add_undo();
    void reverse(std::optional<int> (MonthlyAverages::*act)());
    void show_store_error();
    void accept();
    void print();
    [[nodiscard]] bool may_discard();

    std::unique_ptr<MonthlyAverages> averages_;
    MonthModel* months_;
    GridView* grid_;
    QGroupBox* zone_frame_;
    QSpinBox* zone_ = nullptr;
    bool done_ = false;
};

}  // namespace nivora
