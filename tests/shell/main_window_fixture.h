// A main window on a program folder of its own, with a script for every box.
#pragma once

#include "tests/support/with_main_window.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolButton>

namespace nivora {

/// A test of windows offscreen, where nothing but the event loop has to be waited for.
class OffscreenTest : public testing::Test {
protected:
    static void settle() { QTest::qWait(1); }
};

class MainWindowTest : public WithMainWindow<OffscreenTest> {
protected:
    MainWindowTest() {
        make_program_folder();
        start_main_window();
        // The window of the first period opens whenever zones are fixed; tests that are not about it let it
        // pass.
        QObject::connect(&let_pass_, &QTimer::timeout, [] {
            for (QWidget* top : QApplication::topLevelWidgets()) {
                if (top->isVisible() && top->objectName() == QStringLiteral("frmPopulate")) top->close();
            }
        });
        let_pass_.start(5);
        settle();
    }

    QLineEdit* box(int number) { return find<QLineEdit>(("Text(" + std::to_string(number) + ")").c_str()); }
    bool enabled(const char* action) { return find<QAction>(action)->isEnabled(); }

    /// Types into a box as a user would, over what it held.
    void type(int number, const char* text) {
        box(number)->setFocus();
        box(number)->selectAll();
        QTest::keyClick(box(number), Qt::Key_Delete);
        QTest::keyClicks(box(number), QString::fromUtf8(text));
    }

    void leave(QWidget* widget) {
        QFocusEvent out(QEvent::FocusOut, Qt::TabFocusReason);
        QApplication::sendEvent(widget, &out);
        QTest::qWait(1);
    }

    /// Chooses the units of a fresh basin and answers the question.
    void choose_units(int index, Answer answer) {
        auto* units = find<QComboBox>("Combo1");
        units->setFocus();
        units->setCurrentIndex(index);
        dialogs_.then(answer);
        leave(units);
    }

    /// Gives a basin whose units are fixed its number of zones and answers the question; the window that asks
    /// for the period of the daily data is closed.
    void give_zones(const char* number, Answer answer) {
        type(1, number);
        dialogs_.then(answer);
        look_at_modal("frmPopulate", [](QWidget*) {});
        leave(box(1));
        seen_ = false;
    }

    [[nodiscard]] QColor colour_of(const QWidget* widget) const {
        return widget->palette().color(QPalette::Base);
    }

    /// Does something with a modal window as soon as it is shown, and closes it.
    template <typename Look>
    void look_at_modal(const char* name, Look look) {
        QTimer::singleShot(0, window_.get(), [this, name, look] {
            for (QWidget* top : QApplication::topLevelWidgets()) {
                if (top->objectName() != QString::fromUtf8(name) || !top->isVisible()) continue;
                look(top);
                seen_ = true;
                if (top->isVisible()) top->close();
            }
        });
    }

    QTimer let_pass_;
    bool seen_ = false;
};

}  // namespace nivora
