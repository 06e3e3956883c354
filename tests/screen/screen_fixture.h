// Windows on a real display with a window manager, worked by keys and the mouse of that display.
#pragma once

#include "tests/program/test_display.h"
#include "tests/screen/arrived_input.h"
#include "tests/support/with_main_window.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QImage>
#include <QPixmap>
#include <QScreen>
#include <QTableView>
#include <QTest>
#include <QTimer>
#include <QToolTip>
#include <algorithm>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace nivora {

inline void PrintTo(Answer answer, std::ostream* out) { *out << answer_name(answer); }

/// The display of this process; null if the machine lacks the programs for one.
[[nodiscard]] const TestDisplay* screen_display();

/// A test of windows on the display. It is skipped with a message if the machine has no display programs.
class ScreenTest : public testing::Test {
protected:
    void SetUp() override {
        if (screen_display() == nullptr) {
            GTEST_SKIP() << "these tests need a display; not installed: "
                         << testing::PrintToString(TestDisplay::missing_programs());
        }
    }

    /// Processes events until the condition holds. @return whether it held in time
    static bool await(const std::function<bool()>& condition, int milliseconds = 10000) {
        return QTest::qWaitFor(condition, milliseconds);
    }
    /// Lets the windows finish their work. A button that is pressed by its letter
    /// stays down for a while before it acts. In a file dialog the button of the chosen view is always down.
    static void settle() {
        QTest::qWait(60);
        await([] {
            return std::ranges::none_of(QApplication::allWidgets(), [](const QWidget* widget) {
                const auto* button = qobject_cast<const QAbstractButton*>(widget);
                return button != nullptr && button->isVisible() && button->isDown() &&
                       qobject_cast<const QFileDialog*>(button->window()) == nullptr;
            });
        });
    }

    /// Waits until a window is on the screen and has the keyboard.
    static void await_active(QWidget& window) {
        ASSERT_TRUE(QTest::qWaitForWindowExposed(&window)) << from_qt(window.objectName());
        ASSERT_TRUE(await([&] { return window.isActiveWindow(); })) << from_qt(window.objectName());
        settle();
    }

    /// Presses keys by their X names ("alt+f", "Return", "ctrl+v"), wherever the focus is.
    static void press(const std::vector<std::string>& keys) {
        await_keyboard();
        int releases = 0;
        for (const std::string& key : keys) releases += 1 + static_cast<int>(std::ranges::count(key, '+'));
        ArrivedInput arrived;
        screen_display()->press(keys);
        await([&] { return arrived.key_releases() >= releases; }, k_arrival_ms);
        settle();
    }
    static void type(const std::string& text) {
        await_keyboard();
        ArrivedInput arrived;
        screen_display()->type(text);
        await([&] { return arrived.key_releases() >= static_cast<int>(text.size()); }, k_arrival_ms);
        settle();
    }
    /// Clicks into the middle of a widget with the left button.
    static void click(const QWidget& widget) { click(widget, widget.rect().center()); }
    static void click(const QWidget& widget, QPoint place) {
        const QPoint at = widget.mapToGlobal(place);
        ArrivedInput arrived;
        screen_display()->click(at.x(), at.y());
        await([&] { return arrived.button_releases() > 0; }, k_arrival_ms);
        settle();
    }
    /// Moves the mouse to a place and leaves it there until a tool tip shows.
    static void point_at(const QWidget& widget, QPoint place) {
        const QPoint at = widget.mapToGlobal(place);
        screen_display()->point_at(at.x() + 2, at.y());
        settle();
        screen_display()->point_at(at.x(), at.y());
        await([] { return QToolTip::isVisible(); });
    }
    static void click_cell(const QTableView& grid, int row, int column) {
        click(*grid.viewport(), grid.visualRect(grid.model()->index(row, column)).center());
    }

    /// What the screen shows in the area of a widget, including windows in front of it.
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
    /// The most frequent colour of a picture: the background of a cell or box.
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

    /// The number of pixels that differ from the picture's main colour: an empty element has none.
    static int drawn_points(const QImage& image) {
        const QRgb ground = main_colour(image);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += (image.pixel(x, y) & 0xFFFFFFU) != ground ? 1 : 0;
        }
        return count;
    }

    /// The open top-level window with a name; null if there is none.
    static QWidget* open_window(const char* name) {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->objectName() == QString::fromUtf8(name)) return top;
        }
        return nullptr;
    }
    /// The same once the window is shown; null if it does not open.
    static QWidget* await_window(const char* name) {
        await([&] { return open_window(name) != nullptr; });
        return open_window(name);
    }
    /// Runs an action once a modal window with this name is open and has the keyboard; closes it if it is
    /// still open afterwards.
    ///
    /// A timer looks for the window, because it may open only after the code that calls this continues.
    void in_modal(const char* name, std::function<void(QWidget&)> act) {
        once_open(
            [name] {
                QWidget* window = open_window(name);
                return window != nullptr && window->isModal() ? window : nullptr;
            },
            std::move(act));
    }
    /// The same for a dialog by its type, such as a message box.
    template <typename Dialog>
    void in_dialog(std::function<void(Dialog&)> act) {
        once_open([]() -> QWidget* { return qobject_cast<Dialog*>(QApplication::activeModalWidget()); },
                  [act = std::move(act)](QWidget& dialog) { act(static_cast<Dialog&>(dialog)); });
    }

    /// The name of the element that has the keyboard.
    static std::string focused() {
        const QWidget* focus = QApplication::focusWidget();
        return focus == nullptr ? "nothing" : from_qt(focus->objectName());
    }

    int modal_windows_seen_ = 0;

private:
    /// How long keys and clicks may take to arrive;
    /// input that reaches none of our windows is awaited no longer.
    static constexpr int k_arrival_ms = 3000;

    /// After a window closes nothing has the keyboard until the window manager passes it on.
    static void await_keyboard() {
        await([] { return QGuiApplication::focusWindow() != nullptr; }, k_arrival_ms);
    }

    void once_open(std::function<QWidget*()> find, std::function<void(QWidget&)> act) {
        auto* look = new QTimer(&waiting_);
        QObject::connect(look, &QTimer::timeout, look,
                         [this, look, find = std::move(find), act = std::move(act)] {
                             QWidget* window = find();
                             if (window == nullptr) return;
                             look->stop();
                             await_active(*window);
                             act(*window);
                             ++modal_windows_seen_;
                             if (window->isVisible()) window->close();
                         });
        look->start(10);
    }

    QObject waiting_;  ///< parent of the timers that wait for modal windows, which end with the test
};

/// The main window in a program folder of its own. A script answers the boxes; `dialogs_.while_shown`
/// inspects the screen while one is shown.
class MainWindowOnScreenTest : public WithMainWindow<ScreenTest> {
protected:
    void SetUp() override {
        WithMainWindow::SetUp();
        if (IsSkipped()) return;
        make_program_folder();
        start_main_window();
    }

    void start_main_window() {
        WithMainWindow::start_main_window();
        await_active(*window_);
    }
};

}  // namespace nivora
