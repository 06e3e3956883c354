// Windows on a real display with a window manager, worked by keys and the mouse of that display.
#pragma once

#include "shell/desktop_link.h"
#include "shell/frmNVR.h"
#include "store/table_io.h"
#include "tests/program/test_display.h"
#include "tests/support/temporary_folder.h"
#include "tests/support/watched_dialogs.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace nivora {

inline void PrintTo(Answer answer, std::ostream* out) { *out << answer_name(answer); }

/// The display of this process; none where the machine lacks the programs for one.
[[nodiscard]] const TestDisplay* screen_display();

/// A test of windows on the display. It is skipped, and says so, where the machine has no display programs.
class ScreenTest : public testing::Test {
protected:
    void SetUp() override {
        if (screen_display() == nullptr) {
            GTEST_SKIP() << "these tests need a display; not installed: "
                         << testing::PrintToString(TestDisplay::missing_programs());
        }
    }

    /// Lets the windows work until the condition holds. @return whether it came to hold
    static bool await(const std::function<bool()>& condition, int milliseconds = 10000) {
        return QTest::qWaitFor(condition, milliseconds);
    }
    /// Lets the windows do what they have to do.
    static void settle() { QTest::qWait(60); }

    /// Waits until a window is on the screen and has the keyboard.
    static void await_active(QWidget& window) {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window)) << from_qt(window.objectName());
        ASSERT_TRUE(await([&] { return window.isActiveWindow(); })) << from_qt(window.objectName());
        settle();
    }

    /// Presses keys as they are named for X ("alt+f", "Return", "ctrl+v"), wherever the focus is.
    static void press(const std::vector<std::string>& keys) {
        screen_display()->press(keys);
        settle();
    }
    static void type(const std::string& text) {
        screen_display()->type(text);
        settle();
    }
    /// Clicks into the middle of a widget with the left button.
    static void click(const QWidget& widget) { click(widget, widget.rect().center()); }
    static void click(const QWidget& widget, QPoint place) {
        const QPoint at = widget.mapToGlobal(place);
        screen_display()->click(at.x(), at.y());
        settle();
    }
    static void click_cell(const QTableView& grid, int row, int column) {
        click(*grid.viewport(), grid.visualRect(grid.model()->index(row, column)).center());
    }

    /// What the screen shows where a widget is, frames of other windows included.
    static QImage picture(const QWidget& widget) { return picture(widget, widget.rect()); }
    static QImage picture(const QWidget& widget, QRect part) {
        QApplication::processEvents();
        const QPoint corner = widget.mapToGlobal(part.topLeft());
        return widget.screen()
            ->grabWindow(0, corner.x(), corner.y(), part.width(), part.height())
            .toImage()
            .convertToFormat(QImage::Format_RGB32);
    }
    static QImage picture_of_cell(const QTableView& grid, int row, int column) {
        return picture(*grid.viewport(), grid.visualRect(grid.model()->index(row, column)));
    }
    /// The colour that most points of a picture have: the background of a cell or box.
    static QRgb main_colour(const QImage& picture) {
        std::map<QRgb, int> counts;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) ++counts[picture.pixel(x, y) & 0xFFFFFFU];
        }
        const auto most =
            std::max_element(counts.begin(), counts.end(),
                             [](const auto& one, const auto& other) { return one.second < other.second; });
        return most == counts.end() ? 0 : most->first;
    }

    /// The open top-level window of a name, once it shows; null where it does not come.
    static QWidget* await_window(const char* name) {
        QWidget* found = nullptr;
        await([&] {
            for (QWidget* top : QApplication::topLevelWidgets()) {
                if (top->isVisible() && top->objectName() == QString::fromUtf8(name)) found = top;
            }
            return found != nullptr;
        });
        return found;
    }
    /// Does something once a modal window of this name is open; what is still open then is closed.
    void in_modal(const char* name, std::function<void(QWidget&)> act) {
        QTimer::singleShot(0, qApp, [this, name, act = std::move(act)] {
            QWidget* window = await_window(name);
            if (window == nullptr) return;
            await_active(*window);
            act(*window);
            ++modal_windows_seen_;
            if (window->isVisible()) window->close();
        });
    }

    int modal_windows_seen_ = 0;
};

/// The main window on a program folder of its own; boxes go by a script, and `dialogs_.while_shown` looks at
/// the screen while one is shown.
class MainWindowOnScreenTest : public ScreenTest {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        if (IsSkipped()) return;
        BasinDatabase::create_template(program_ / "null.mdb");
        for (const char* name : {"NIVORAHelp.txt", "quickhelp.txt", "climate_1.ss2"}) {
            std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data" / name,
                                       program_ / name);
        }
        start_main_window();
    }

    void TearDown() override {
        quick_help_.set_on(false);
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    void start_main_window() {
        window_ = std::make_unique<frmNVR>(WindowContext{session_, quick_help_, program_.path()});
        link_.lead_to(window_.get());
        window_->start();
        await_active(*window_);
    }

    template <typename Element>
    Element* find(const char* name) {
        auto* element = window_->findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }
    void choose(const char* action) {
        find<QAction>(action)->trigger();
        settle();
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

    TemporaryFolder program_;
    TemporaryFolder user_;
    WatchedDialogs dialogs_;
    DesktopLink link_;
    Session session_{dialogs_, link_};
    QuickHelp quick_help_;
    std::unique_ptr<frmNVR> window_;
};

}  // namespace nivora
