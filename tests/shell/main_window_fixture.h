// A main window in a program folder of its own, with a script for every box.
#pragma once

#include "tests/support/expected_windows.h"
#include "tests/support/with_main_window.h"

#include <QApplication>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTableView>
#include <QTest>
#include <QToolButton>

namespace nivora {

/// A test of offscreen windows, which has to wait for the event loop only.
class OffscreenTest : public testing::Test {
protected:
    static void settle() { QTest::qWait(1); }
};

class MainWindowTest : public WithMainWindow<OffscreenTest> {
protected:
    MainWindowTest() {
        make_program_folder();
        start_main_window();
        settle();
    }

    void TearDown() override {
        EXPECT_TRUE(modal_.complaints().empty()) << modal_.complaints().front();
        EXPECT_EQ(modal_.left(), 0U) << "windows that did not open";
        WithMainWindow::TearDown();
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

    /// Enters the number of zones of a basin whose units are fixed and answers the question; closes the
    /// window that asks for the period of the daily data.
    void give_zones(const char* number, Answer answer) {
        type(1, number);
        dialogs_.then(answer);
        if (answer == Answer::Yes) let_pass("frmPopulate");
        leave(box(1));
    }

    [[nodiscard]] QColor colour_of(const QWidget* widget) const {
        return widget->palette().color(QPalette::Base);
    }

    /// Expects a window, inspects it once it is shown, and closes it.
    template <typename Look>
    void look_at_modal(const char* name, Look look) {
        modal_.then(name, [this, look](QWidget& window) {
            look(&window);
            seen_ = true;
            if (window.isVisible()) window.close();
        });
    }
    /// Expects a window that the test is not about, and closes it.
    void let_pass(const char* name) {
        modal_.then(name, [](QWidget& window) { window.close(); });
    }

    ExpectedWindows modal_;
    bool seen_ = false;  ///< the window that `look_at_modal` expected
};

}  // namespace nivora
