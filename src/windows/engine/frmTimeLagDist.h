// The custom distribution of a day's melt over days.
#pragma once

#include "widgets/nivora_window.h"

#include <array>

class QLabel;
class QLineEdit;
class QPushButton;

namespace nivora {

/// Edits the number of days and their shares; Accept keeps them for the life of the program.
class frmTimeLagDist : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmTimeLagDist(const WindowContext& context, QWidget* parent = nullptr);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* make_boxes();
    QWidget* make_buttons();
    void open_boxes();
    bool leave_count();
    void enable_shares(int count);
    void show_total();
    void move_on(int box);
    void accept();
    [[nodiscard]] std::vector<std::string> shares() const;
    [[nodiscard]] int count() const;

    std::array<QLineEdit*, 7> boxes_{};
    std::array<QPushButton*, 3> buttons_{};
    QLabel* total_;
    bool telling_ = false;
};

}  // namespace nivora
