// A main window on a program folder of its own, with a script for every box.
#pragma once

#include "shell/desktop_link.h"
#include "shell/frmNVR.h"
#include "store/table_io.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/watched_dialogs.h"

#include <gtest/gtest.h>

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

class MainWindowTest : public testing::Test {
protected:
    MainWindowTest() {
        BasinDatabase::create_template(program_ / "null.mdb");
        for (const char* name : {"NIVORAHelp.txt", "quickhelp.txt"}) {
            std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data" / name,
                                       program_ / name);
        }
        window_ = std::make_unique<frmNVR>(WindowContext{session_, quick_help_, program_.path()});
        link_.lead_to(window_.get());
        window_->start();
        // The window of the first period opens whenever zones are fixed; tests that are not about it let it
        // pass.
        QObject::connect(&let_pass_, &QTimer::timeout, [] {
            for (QWidget* top : QApplication::topLevelWidgets()) {
                if (top->isVisible() && top->objectName() == QStringLiteral("frmPopulate")) top->close();
            }
        });
        let_pass_.start(5);
        QTest::qWait(1);
    }

    void TearDown() override {
        quick_help_.set_on(false);
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    template <typename Element>
    Element* find(const char* name) {
        auto* element = window_->findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }

    QLineEdit* box(int number) { return find<QLineEdit>(("Text(" + std::to_string(number) + ")").c_str()); }
    bool enabled(const char* action) { return find<QAction>(action)->isEnabled(); }
    void choose(const char* action) {
        find<QAction>(action)->trigger();
        QTest::qWait(1);
    }

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

    /// Opens the bundled sample basin as the user's file.
    std::filesystem::path open_sample() {
        const auto file = user_ / "ellervane.mdb";
        std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb",
                                   file);
        dialogs_.then_file(file);
        choose("mnuFileItem(1)");
        return file;
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

    [[nodiscard]] const Message& last_message() const { return dialogs_.messages().back().message; }

    TemporaryFolder program_;
    TemporaryFolder user_;
    WatchedDialogs dialogs_;
    DesktopLink link_;
    Session session_{dialogs_, link_};
    QuickHelp quick_help_;
    std::unique_ptr<frmNVR> window_;
    QTimer let_pass_;
    bool seen_ = false;
};

}  // namespace nivora
