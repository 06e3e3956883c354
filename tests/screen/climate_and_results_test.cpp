// The windows of an evaluation and of a run's statistics on a real display.

#include "tests/screen/screen_fixture.h"
#include "windows/climate/frmCtrlClim.h"
#include "windows/engine/Results.h"

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTextBrowser>

namespace nivora {
namespace {

/// The sample basin with a scenario, two degrees warmer.
class ClimateOnScreenTest : public MainWindowOnScreenTest {
protected:
    static constexpr const char* k_simulation = "ellervane-1997-98";

    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        choose_simulation_named(k_simulation);
    }
    void TearDown() override {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() != QStringLiteral("frmNVR")) top->hide();
        }
        MainWindowOnScreenTest::TearDown();
    }

    void choose_simulation_named(const char* name) {
        const auto row = find_simulation(session_.basin, name);
        ASSERT_TRUE(row);
        click_cell(*find<QTableView>("DBGrid1"), static_cast<int>(*row), 0);
        ASSERT_EQ(session_.basin.Current_Sim_Name, name);
    }
    void change(const std::string& statement) {
        BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute(statement);
    }
    void add_scenario() {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        const auto& basin = session_.basin;
        database.in_transaction([&] {
            const ScenarioIndexRow row{.simulation = basin.Current_Sim_Name,
                                       .scenario = "warmer",
                                       .winter_end_date = static_cast<double>(*day_count({1998, 3, 31})),
                                       .creation_date = std::nullopt,
                                       .comments = "two degrees"};
            add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index), std::span{&row, 1});
            database.create_table(scenario_table("warmer"));
            ScenarioRow warmer;
            warmer.variable = 1;
            warmer.start = basin.Current_Start;
            warmer.end = basin.Current_End;
            warmer.action = 0;
            warmer.factor = 2.0F;
            warmer.zones = 0;
            add_rows<ScenarioRow>(database, scenario_table("warmer"), std::span{&warmer, 1});
            return true;
        });
    }

    template <typename Element>
    static Element* in(QWidget* window, const char* name) {
        auto* element = window->findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(element, nullptr) << name;
        return element;
    }

    /// Opens the window of an evaluation and chooses the scenario.
    QWidget* open_climate() {
        choose("mnuRunClim");
        QWidget* window = await_window("frmCtrlClim");
        if (window == nullptr) return nullptr;
        await_active(*window);
        in<QComboBox>(window, "CmboScenario")->setCurrentText(QStringLiteral("warmer"));
        return window;
    }
    /// Ticks the steps up to one with the mouse.
    void tick_to(QWidget* window, int last) {
        for (int step = 1; step <= last; ++step) {
            if (step == 5) {
                for (int zone = 1; zone <= session_.basin.ZoneCount; ++zone) dialogs_.then_text("0");
            }
            const auto name = "Check1(" + std::to_string(step - 1) + ")";
            auto* box = in<QCheckBox>(window, name.c_str());
            click(*box, {8, box->height() / 2});
            ASSERT_TRUE(await([&] { return box->isChecked() && !box->isEnabled(); })) << step;
        }
    }
    /// The points of a picture that differ from its main colour: an empty element has none.
    static int drawn_points(const QImage& image) {
        const QRgb ground = main_colour(image);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                count += (image.pixel(x, y) & 0xFFFFFFU) != ground ? 1 : 0;
        }
        return count;
    }
    /// Keeps a picture for who looks at the tests.
    static void keep(const QWidget& window, const char* name) {
        const char* folder = std::getenv("NIVORA_PICTURES");
        if (folder != nullptr)
            picture(window).save(QString::fromUtf8(folder) + QLatin1Char('/') + QString::fromUtf8(name));
    }
};

/// A simulation that begins on 1 March, on a full snow pack.
class LateBeginOnScreenTest : public ClimateOnScreenTest {
protected:
    void SetUp() override {
        ClimateOnScreenTest::SetUp();
        if (IsSkipped()) return;
        Simulation& simulation = *session_.basin.current_simulation();
        simulation.start = day_count({1998, 3, 1});
        simulation.initial_runoff = 2.0F;
        select_simulation(session_.basin, *session_.basin.current_row);
        add_scenario();
    }
};

TEST_F(LateBeginOnScreenTest, NotesAreReadInTheWindowAndTheirLinkOpensTheHelp) {
    dialogs_.then(Answer::Ok);  // the initial runoff is another than the day before
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 5);
    auto* notes = in<QTextBrowser>(window, "txtNotes");
    ASSERT_TRUE(await([&] { return notes->isVisible(); }));
    settle();
    EXPECT_GT(drawn_points(picture(*notes)), 500);
    EXPECT_TRUE(window->rect().contains(QRect(notes->mapTo(window, QPoint{}), notes->size())));
    keep(*window, "climate-notes.png");
    click(*notes->viewport(), {40, notes->fontMetrics().height()});
    QWidget* help = await_window("frmNVRHelp");
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(in<QTextBrowser>(help, "txtHelp")
                    ->toPlainText()
                    .startsWith(QStringLiteral("NOTES ON AN EVALUATION")));
    keep(*help, "climate-notes-help.png");
    help->close();
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window->close());
}

TEST_F(ClimateOnScreenTest, TheCloseKeyBetweenStepsAsksAndAfterYesDailyDataCanBeEdited) {
    add_scenario();
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 2);
    dialogs_.then(Answer::No);
    press({"alt+F4"});
    EXPECT_TRUE(window->isVisible());
    EXPECT_EQ(session_.run.ClimateStep, 2);
    dialogs_.then(Answer::Yes);
    press({"alt+F4"});
    ASSERT_TRUE(await([&] { return !window->isVisible(); }));
    EXPECT_EQ(session_.run.ClimateStep, 0);
    in_modal("frmData",
             [](QWidget& data) { EXPECT_FALSE(data.windowTitle().contains(QStringLiteral("Read-only"))); });
    choose("mnuDataOptVar(1)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(ClimateOnScreenTest, TheMainWindowStaysWhereTheEvaluationIsNotToBeEnded) {
    add_scenario();
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 1);
    dialogs_.then(Answer::No);
    EXPECT_FALSE(window_->close());
    EXPECT_TRUE(window_->isVisible());
    EXPECT_TRUE(window->isVisible());
    dialogs_.then(Answer::Yes);
    window->close();
}

TEST_F(ClimateOnScreenTest, StatisticsThatShowSayThatTheyAreOutOfDateWhenAnInputChanges) {
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);
    const auto* status = in<QLabel>(results, "panel2");
    EXPECT_EQ(status->text(), QStringLiteral("10/01/1997 to 09/30/1998, 365 days"));
    const QImage before = picture(*status);
    EXPECT_GT(drawn_points(before), 50);
    window_->raise();
    window_->activateWindow();
    await_active(*window_);
    auto* name = find<QLineEdit>("Text(0)");
    click(*name);
    type("x");
    EXPECT_TRUE(
        status->text().startsWith(QStringLiteral("Out of date: inputs have changed since the run of ")));
    results->raise();
    settle();
    EXPECT_NE(picture(*status), before);
    keep(*results, "statistics-out-of-date.png");
    in_modal("frmData", [&](QWidget& data) {
        const auto* told = in<QLabel>(&data, "panel2");
        EXPECT_TRUE(told->isVisible());
        EXPECT_TRUE(told->text().startsWith(QStringLiteral("Results of 'ellervane-1997-98', run of ")));
        EXPECT_TRUE(told->text().endsWith(QStringLiteral("; inputs have changed since, run it again")));
        keep(data, "results-out-of-date.png");
    });
    choose("mnuDataOpt(7)");
    EXPECT_EQ(modal_windows_seen_, 1);
    // Saving does not bring them up to date.
    choose("mnuFileItem(4)");
    EXPECT_FALSE(session_.basin.Input_Changed);
    EXPECT_TRUE(status->text().startsWith(QStringLiteral("Out of date: ")));
    results->close();
}

TEST_F(ClimateOnScreenTest, ARunOverMissingDaysAndAMissingMeasurementShowsWhatThereIs) {
    change("DELETE FROM PhysicalData WHERE Date BETWEEN 36000 AND 36009");  // 24 July to 2 August 1998
    change("UPDATE PhysicalData SET Runoff = NULL WHERE Date = 35900");
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);
    EXPECT_EQ(dialogs_.messages().back().message.title,
              "Run statistics failed, probably caused by missing/invalid data");
    const auto* grid = in<QTableView>(results, "SpdStat");
    EXPECT_FALSE(grid->model()->index(0, 1).data().toString().isEmpty());
    EXPECT_TRUE(grid->model()->index(5, 1).data().toString().isEmpty());
    EXPECT_EQ(
        in<QLabel>(results, "panel2")->text(),
        QStringLiteral("10/01/1997 to 09/30/1998, 365 days; 10 of 365 days without rows in zones 1 to 5"));
    const auto* notes = in<QLabel>(results, "lblNotes");
    EXPECT_TRUE(notes->isVisible());
    EXPECT_GT(drawn_points(picture(*notes)), 500);
    // Its whole text fits into its room.
    EXPECT_LE(notes->heightForWidth(notes->width()), notes->height());
    keep(*results, "statistics-missing-days.png");
    results->close();
}

}  // namespace
}  // namespace nivora
