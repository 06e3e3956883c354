// The window in which a simulation is defined.
#pragma once

#include "prep/sim_options.h"
#include "widgets/nivora_window.h"

#include <array>
#include <vector>

class QButtonGroup;
class QCheckBox;
class QGroupBox;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace nivora {

/// Shows the definition that is to be added, edited or imported, as `PrepState::SimOptions_Mode` says, and
/// stores it in the simulation grid on Accept.
class SimOptions : public NivoraWindow {
    Q_OBJECT

public:
    explicit SimOptions(const WindowContext& context, QWidget* parent = nullptr);

    /// Fills the controls. @return false if the working file can't be read, which was shown
    [[nodiscard]] bool open();
    /// Whether the definition was accepted.
    [[nodiscard]] bool accepted() const { return accepted_; }

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    QWidget* make_head();
    QWidget* make_choices();
    QWidget* make_by_zone();
    QWidget* make_starts();
    QWidget* make_first_values();
    QWidget* make_comments();
    QLineEdit* make_box(int index, int help, QWidget* parent);
    QButtonGroup* make_options(const char* name, const std::array<const char*, 2>& captions, int help,
                               QWidget* frame);

    void show_form();
    void read_form();
    void show_units(Units units);
    void show_value_units(Units units);
    bool move_on(const QObject* from, int step);
    bool move_on_from_option(const QObject* from);
    void accept();
    void focus_faulty_box();

    SimOptionsForm form_;
    bool accepted_ = false;
    std::array<QLineEdit*, 15> boxes_{};  ///< by index, from 1; 0 stays empty, the name has a label
    QLabel* name_ = nullptr;
    QPlainTextEdit* comments_ = nullptr;
    QButtonGroup* units_ = nullptr;
    QButtonGroup* temperature_ = nullptr;
    std::array<QCheckBox*, 6> by_zone_{};
    std::array<QLabel*, k_first_values> value_labels_{};
    QLabel* value_note_ = nullptr;  ///< why the first values are disabled
    QGroupBox* runoff_frame_ = nullptr;
    QGroupBox* threshold_frame_ = nullptr;
    std::vector<QPushButton*> buttons_;
};

}  // namespace nivora
