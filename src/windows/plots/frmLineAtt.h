// The attributes of the plot lines.
#pragma once

#include "plots/line_edit.h"
#include "widgets/nivora_window.h"

class QComboBox;
class QFormLayout;
class QSpinBox;

namespace nivora {

class ColourField;
class Colours;
class LineSample;

/// What the line attributes are opened for.
struct LineQuestion {
    int edited_line = 1;  ///< the line that is shown first; line 1 if there is no such line
    int curves = 1;       ///< the number of curves of the plot
    bool fills = false;   ///< whether the plot has filled bands
};

/// Changes a copy of the lines. Done stores it in the settings, so that it holds for all plots; any other way
/// to close the window drops it.
class frmLineAtt : public NivoraWindow {
    Q_OBJECT

public:
    frmLineAtt(const WindowContext& context, Colours& colours, const LineQuestion& question,
               QWidget* parent = nullptr);

    /// The line that was shown when Done was pressed; k_no_edited_line after a cancel: then no plot has to be
    /// drawn again.
    [[nodiscard]] int EditedLine() const { return edited_line_; }

private:
    void make_line_controls(QFormLayout& rows);
    void make_colour_controls(QFormLayout& rows);
    void make_fill_control(QFormLayout& rows);
    QWidget* make_buttons();
    void connect_controls();
    void show_line();
    void show_samples();
    void choose_colour();
    void finish();

    LineEdit edit_;
    Colours& colours_;
    bool fills_;
    int edited_line_ = k_no_edited_line;
    QSpinBox* line_ = nullptr;
    QComboBox* style_ = nullptr;
    QSpinBox* width_ = nullptr;
    ColourField* colour_ = nullptr;
    QComboBox* fill_ = nullptr;
    LineSample* sample_ = nullptr;
};

}  // namespace nivora
