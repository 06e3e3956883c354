// The choice of reports and of their destination.
#pragma once

#include "reports/report_choice.h"
#include "session/report_file.h"
#include "widgets/nivora_window.h"

#include <array>
#include <vector>

class QCheckBox;
class QGroupBox;
class QPushButton;
class QRadioButton;

namespace nivora {

/// Produces the ticked reports in one file, and prints or shows it. The next window begins with nothing
/// ticked.
class frmPrint : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmPrint(const WindowContext& context, QWidget* parent = nullptr);

private:
    QGroupBox* make_boxes();
    QGroupBox* make_destinations();
    void make_buttons(const std::vector<QPushButton*>& buttons);
    void show_choice();
    [[nodiscard]] ReportDestination destination() const;
    void produce();
    void view(ReportFile file, const std::string& title);

    ReportChoice choice_;
    std::array<QCheckBox*, k_reports> boxes_{};
    std::array<QRadioButton*, 2> destinations_{};
    QPushButton* produce_ = nullptr;
    QPushButton* all_ = nullptr;
};

}  // namespace nivora
