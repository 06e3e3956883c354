// A basin file of two zones, a session on it, and the windows of data preparation one by one.
#pragma once

#include "base/scripted_dialogs.h"
#include "session/session.h"
#include "store/table_io.h"
#include "tests/support/basin_file.h"
#include "tests/support/recorded_printers.h"
#include "widgets/grid_view.h"
#include "widgets/nivora_window.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QClipboard>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTest>
#include <memory>

namespace nivora {

inline void PrintTo(Answer answer, std::ostream* out) { *out << answer_name(answer); }

/// Records the calls to the desktop program.
struct KeptCalls : Desktop {
    KeptCalls() {
        show_help_topic = [this](int topic) { topics.push_back(topic); };
    }
    KeptCalls(const KeptCalls&) = delete;
    KeptCalls& operator=(const KeptCalls&) = delete;

    std::vector<int> topics;
};

/// Days of October 1980.
inline DayCount october(int day) { return *day_count({1980, 10, 1}) + day - 1; }

class PrepWindowTest : public testing::Test {
protected:
    static constexpr int k_zones = 2;

    PrepWindowTest() {
        for (const char* name : {"NIVORAHelp.txt", "quickhelp.txt"}) {
            std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data" / name,
                                       program_ / name);
        }
        session_.basin.Work_File = file_.path();
        session_.basin.Basin_File = "alp.mdb";
        session_.basin.ZoneCount = k_zones;
        session_.basin.basin_units = Units::Metric;
        session_.basin.Units_Code = Units::Metric;
        session_.basin.basin_name = "Alp";
        QApplication::clipboard()->clear();
    }

    void TearDown() override {
        quick_help_.set_on(false);
        window_.reset();
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    [[nodiscard]] WindowContext context() { return {session_, quick_help_, program_.path(), printing_}; }

    /// Shows a window that was opened.
    void show_window() {
        window_->show();
        window_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
    }

    template <typename Element>
    Element* find(const std::string& name) {
        auto* element = window_->findChild<Element*>(to_qt(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }
    QPushButton* button(int index) { return find<QPushButton>("Command1(" + std::to_string(index) + ")"); }
    void press(int index) { QTest::mouseClick(button(index), Qt::LeftButton); }
    void choose(const std::string& action) { find<QAction>(action)->trigger(); }

    /// Sends a key to where a user's key would go: to the widget that has the focus.
    static void key(Qt::Key which, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), which, with);
        QApplication::processEvents();  // the grid takes the text only after Enter was processed
    }
    static void type(const char* text) {
        for (const char* at = text; *at != '\0'; ++at) QTest::keyClick(QApplication::focusWidget(), *at);
    }
    /// Replaces the content of a box by typing.
    static void fill(QLineEdit* box, const char* text) {
        box->setFocus();
        box->selectAll();
        QTest::keyClick(box, Qt::Key_Delete);
        QTest::keyClicks(box, QString::fromUtf8(text));
    }

    /// Adds a simulation to the grid and selects it.
    Simulation& add_simulation(const std::string& name, DayCount start, DayCount end) {
        Simulation row;
        row.name = name;
        row.start = start;
        row.end = end;
        row.units = Units::Metric;
        session_.basin.simulations.push_back(row);
        select_simulation(session_.basin, session_.basin.simulations.size() - 1);
        return session_.basin.simulations.back();
    }

    /// Adds days of both zones. The runoff is 100 for the zone and 1 for the day: 101 on the first day of
    /// zone 1, 202 on the second of zone 2; everything else is missing.
    void add_physical(int first_day, int last_day) {
        std::vector<PhysicalRow> rows;
        for (std::int16_t zone = 1; zone <= k_zones; ++zone) {
            for (int day = first_day; day <= last_day; ++day) {
                PhysicalRow row;
                row.zone = zone;
                row.date = october(day);
                row.runoff = static_cast<float>(100 * zone + day);
                rows.push_back(row);
            }
        }
        BasinDatabase database = file_.open();
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }
    void make_parameter_table(const std::string& name) {
        BasinDatabase database = file_.open();
        database.create_table(parameter_table(name));
        database.create_daily_index(name);
    }
    void add_parameters(const std::string& name, const std::vector<ParameterRow>& rows) {
        BasinDatabase database = file_.open();
        add_rows<ParameterRow>(database, parameter_table(name), rows);
    }

    /// The single value of a query on the file, read as another program would; "Null" for a missing one.
    [[nodiscard]] std::string stored(const std::string& query) const {
        const auto texts = file_.column(query);
        return texts.empty() ? "nothing" : texts.front();
    }

    [[nodiscard]] const Message& message(std::size_t index) const {
        return dialogs_.messages().at(index).message;
    }
    [[nodiscard]] const Message& last_message() const { return dialogs_.messages().back().message; }
    [[nodiscard]] std::size_t messages() const { return dialogs_.messages().size(); }

    BasinFile file_;
    TemporaryFolder program_;
    ScriptedDialogs dialogs_;
    KeptCalls desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    std::unique_ptr<NivoraWindow> window_;
};

}  // namespace nivora
