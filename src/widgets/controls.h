// Controls that several windows use.
#pragma once

#include <QString>
#include <initializer_list>
#include <vector>

class QLabel;
class QLineEdit;
class QPushButton;
class QSpinBox;
class QWidget;

namespace nivora {

/// The buttons of a window in one row at its foot, named Command1(0), Command1(1) ... in the order of their
/// captions; their help lines count from `first_help`.
struct ButtonRow {
    QWidget* frame = nullptr;
    std::vector<QPushButton*> buttons;
};
[[nodiscard]] ButtonRow make_button_row(std::initializer_list<const char*> captions, int first_help,
                                        QWidget* parent);

/// A label with a help line.
[[nodiscard]] QLabel* make_label(const QString& name, const QString& text, int help, QWidget* parent);

/// A box for a date with the mask mm/dd/yyyy.
[[nodiscard]] QLineEdit* make_date_box(const QString& name, int help, QWidget* parent);

/// A box to choose a zone from 1 to `zones`, by arrows (UpDown1) or by its number (Text1).
[[nodiscard]] QSpinBox* make_zone_box(int zones, int help, QWidget* parent);

}  // namespace nivora
