// The welcome window.
#pragma once

#include "session/session.h"

#include <QDialog>

class QBoxLayout;
class QCheckBox;

namespace nivora {

/// Welcomes the user; at the start of the program it can also end it.
class frmSplash : public QDialog {
    Q_OBJECT

public:
    /// @param at_start whether the program is starting; otherwise the last button only closes the window
    frmSplash(Session& session, bool at_start, QWidget* parent = nullptr);

    /// Whether the user chose to leave the program.
    [[nodiscard]] bool leaves() const { return leaves_; }

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    [[nodiscard]] QWidget* make_welcome();
    [[nodiscard]] QSize room_for_welcome() const;
    void make_buttons(QBoxLayout* layout, bool at_start);

    Session& session_;
    QCheckBox* skip_;
    bool leaves_ = false;
};

/// The text about warranty and liability.
[[nodiscard]] const char* disclaimer_text();

}  // namespace nivora
