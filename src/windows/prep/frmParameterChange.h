// One parameter of the current simulation changed in many zones and days at once.
#pragma once

#include "prep/parameter_change.h"
#include "widgets/nivora_window.h"

#include <array>
#include <optional>
#include <vector>

class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLabel;
class QLineEdit;
class QRadioButton;

namespace nivora {

class GridView;
class TextTableModel;

/// Shows what a change would do while it is chosen; Apply makes it, wholly or not at all.
class frmParameterChange : public NivoraWindow {
    Q_OBJECT

public:
    explicit frmParameterChange(const WindowContext& context, QWidget* parent = nullptr);

    /// Prepares the window for the current simulation. @return false, after a message, if its parameter table
    /// has no day of its period
    [[nodiscard]] bool open();

private:
    QWidget* make_action();
    QWidget* make_zones();
    QWidget* make_days();
    QWidget* make_preview();
    QWidget* make_buttons();
    void choose_all_zones(bool all);
    void show_unit();
    void preview();
    void show_preview(const ParameterPreview& shown);
    void show_reason(const QString& text);
    /// The chosen change; nothing, with the reason shown, if a part of it is missing.
    [[nodiscard]] std::optional<ParameterChange> chosen();
    [[nodiscard]] std::optional<Period> chosen_days();
    [[nodiscard]] int decimals() const;
    void apply();

    Period period_;  ///< of the simulation
    QComboBox* parameter_;
    QComboBox* action_;
    QLineEdit* number_;
    QLabel* unit_;
    QCheckBox* all_zones_ = nullptr;
    std::vector<QCheckBox*> zones_;
    QRadioButton* by_month_ = nullptr;
    QRadioButton* by_date_ = nullptr;
    std::array<QCheckBox*, 12> months_{};
    std::array<QLineEdit*, 2> dates_{};
    QLabel* summary_;
    TextTableModel* rows_;
    GridView* grid_ = nullptr;
    QAbstractButton* apply_ = nullptr;
};

}  // namespace nivora
