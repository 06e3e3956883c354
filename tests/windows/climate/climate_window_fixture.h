// A basin of six days, a session on it, and the windows of a climate evaluation one by one.
#pragma once

#include "session/session.h"
#include "tests/climate/climate_run_fixture.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/watched_dialogs.h"
#include "widgets/grid_view.h"
#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QGroupBox>
#include <QLineEdit>
#include <QPushButton>
#include <QScrollBar>
#include <QTest>
#include <QTextEdit>
#include <QToolButton>
#include <functional>
#include <memory>

namespace nivora {

inline void PrintTo(Answer answer, std::ostream* out) { *out << answer_name(answer); }

/// Records the calls to the desktop program, and lets a test inspect
/// the session when the daily editor would open.
struct WatchedDesktop : Desktop {
    WatchedDesktop() {
        show_help_topic = [this](int topic) { topics.push_back(topic); };
        open_daily_editor = [this] {
            ++editors;
            if (while_editing) while_editing();
        };
    }
    WatchedDesktop(const WatchedDesktop&) = delete;
    WatchedDesktop& operator=(const WatchedDesktop&) = delete;

    std::vector<int> topics;
    int editors = 0;
    std::function<void()> while_editing;
};

class ClimateWindowTest : public testing::Test {
protected:
    ClimateWindowTest() {
        for (const char* name : {"NIVORAHelp.txt", "quickhelp.txt", "climate_1.ss2"}) {
            std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data" / name,
                                       program_ / name);
        }
    }

    void TearDown() override {
        quick_help_.set_on(false);
        window_.reset();
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    void write(const SmallBasin& small) {
        small.write(file_);
        session_.basin = opened_basin(file_);
    }
    void add_scenario(const std::string& name, const std::vector<ScenarioRow>& rows,
                      double winter_end = static_cast<double>(SixDays::winter_end())) {
        write_scenario(file_, name, winter_end, rows);
    }
    void change(const std::string& statement) { BasinDatabase{file_, Access::ReadWrite}.execute(statement); }

    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }

    /// Shows a window that was opened.
    void show_window() {
        window_->show();
        window_->activateWindow();
        ASSERT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }

    template <typename Element>
    Element* find(const std::string& name) {
        auto* element = window_->findChild<Element*>(to_qt(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }
    QPushButton* button(int index) { return find<QPushButton>("Command1(" + std::to_string(index) + ")"); }
    void press(int index) { QTest::mouseClick(button(index), Qt::LeftButton); }

    /// Sends a key to where a user's key would go: to the widget that has the focus.
    static void key(Qt::Key which, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), which, with);
        QApplication::processEvents();  // the grid takes the text only after Enter was processed
    }
    static void type(const std::string& text) {
        for (const char character : text) QTest::keyClick(QApplication::focusWidget(), character);
    }

    /// Tries to close the window while QuickHelp is on.
    void expect_close_refused() {
        quick_help_.set_on(true);
        EXPECT_FALSE(window_->close());
        EXPECT_TRUE(window_->isVisible());
        EXPECT_EQ(from_qt(find<QTextEdit>("lblHelp")->toPlainText()),
                  "The Windows native control for closing the form is disabled while QuickHelp' is on.");
        quick_help_.set_on(false);
    }

    [[nodiscard]] const Message& last_message() const { return dialogs_.messages().back().message; }
    [[nodiscard]] std::size_t messages() const { return dialogs_.messages().size(); }

    TemporaryFolder program_;
    TemporaryFolder user_;
    std::filesystem::path file_ = user_ / "basin.mdb";
    WatchedDialogs dialogs_;
    WatchedDesktop desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    std::unique_ptr<NivoraWindow> window_;
};

}  // namespace nivora
