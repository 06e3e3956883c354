// The colours of the QuickHelp strip.
#pragma once

#include "widgets/nivora_window.h"
#include "widgets/strip_colours.h"

#include <QDialog>
#include <array>

class QLabel;

namespace nivora {

class ColourField;
class Colours;

/// Stores both colours in the settings if the user accepts them. It has no QuickHelp of its own: it is opened
/// from a strip, thus while QuickHelp is on, and has to act nevertheless. Its help texts are tool tips.
class frmColorDef : public QDialog {
    Q_OBJECT

public:
    frmColorDef(const WindowContext& context, Colours& colours, QWidget* parent);

private:
    QWidget* make_field(int index);
    QWidget* make_buttons();
    void show_colours();
    void choose(int index);
    void explain(QWidget* element, int line);

    Session& session_;
    Colours& colours_;
    QuickHelpTexts texts_;
    StripColours chosen_;
    std::array<ColourField*, 2> fields_ = {};
    QLabel* sample_;
};

}  // namespace nivora
