// Simulation definitions, the days that the Data menu adds, and imports, with real keys on a real display.

#include "tests/prep/legacy_text.h"
#include "tests/screen/screen_fixture.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

namespace nivora {
namespace {

class SimulationDataOnScreenTest : public MainWindowOnScreenTest {
protected:
    void select_row(int row) { click_cell(*find<QTableView>("DBGrid1"), row, 1); }
    std::vector<std::string> simulations() {
        std::vector<std::string> names;
        for (const Simulation& row : session_.basin.simulations) names.push_back(row.name);
        return names;
    }
    std::int64_t count(const std::string& from) {
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        SQLite::Statement query{database.sql(), "SELECT count(*) FROM " + from};
        query.executeStep();
        return query.getColumn(0).getInt64();
    }
    template <typename Element>
    static Element* part(QWidget& window, const char* name) {
        auto* found = window.findChild<Element*>(QString::fromUtf8(name));
        EXPECT_NE(found, nullptr) << name;
        return found;
    }
    /// Types a period over the proposed one, and the nine values, moving from box to box with Enter.
    static void fill_definition(QWidget& window, const char* start, const char* end) {
        click(*part<QLineEdit>(window, "mtxt(2)"));
        press({"ctrl+a"});
        type(start);
        press({"Return", "ctrl+a"});
        type(end);
        click(*part<QLineEdit>(window, "mtxt(6)"));
        for (const char* value : {"0.45", "0.75", "0.65", "0.8", "0.7", "1", "18", "1.05", "0.025"}) {
            press({"ctrl+a"});
            type(value);
            press({"Return"});
        }
    }
};

TEST_F(SimulationDataOnScreenTest, AnOverwrittenSimulationHasOneRow) {
    open_sample();
    select_row(1);
    dialogs_.then_text("Ellervane-1996").then(Answer::Yes);
    in_modal("SimOptions", [](QWidget& window) {
        fill_definition(window, "10/01/1997", "10/03/1997");
        press({"alt+a"});
    });
    find<QPushButton>("Command1(0)")->click();
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_THAT(simulations(), testing::ElementsAre("Ellervane-1996", "ellervane-1997-98"));
    EXPECT_EQ(find<QTableView>("DBGrid1")->currentIndex().row(), 0);
    EXPECT_EQ(count("\"ellervane-1996\""), 15);  // three days of five zones
}

TEST_F(SimulationDataOnScreenTest, AnEditGreysTheFirstValuesAndTakesNoKeysInThem) {
    open_sample();
    select_row(0);
    QRgb open_box = 0;
    QRgb closed_box = 0;
    in_modal("SimOptions", [&](QWidget& window) {
        auto* degree_days = part<QLineEdit>(window, "mtxt(6)");
        const QString before = degree_days->text();
        open_box = main_colour(picture(*part<QLineEdit>(window, "mtxt(4)")));
        closed_box = main_colour(picture(*degree_days));
        click(*degree_days);
        type("9");
        EXPECT_EQ(degree_days->text(), before);
        EXPECT_TRUE(part<QLabel>(window, "lblValuesNote")->isVisible());
        // Enter from the threshold leads past the grey boxes.
        click(*part<QLineEdit>(window, "mtxt(5)"));
        press({"Return"});
        EXPECT_EQ(QApplication::focusWidget()->objectName().left(11), QStringLiteral("optTempType"));
        press({"alt+c"});
    });
    find<QPushButton>("Command1(2)")->click();
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_NE(open_box, closed_box);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimulationDataOnScreenTest, AParameterTableThatWasEmptiedIsRebuiltByAnEdit) {
    open_sample();
    BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute("DELETE FROM \"ellervane-1996\"");
    select_row(0);
    dialogs_.then(Answer::Yes);  // the days are missing; the window that opens next adds them
    in_modal("SimOptions", [](QWidget& window) {
        fill_definition(window, "10/01/1997", "10/03/1997");
        press({"alt+a"});
    });
    find<QPushButton>("Command1(2)")->click();
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_EQ(count("\"ellervane-1996\""), 15);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(SimulationDataOnScreenTest, DaysAddedByTheDataMenuAreAskedAboutAtNew) {
    open_sample();
    BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute(
        "DELETE FROM PhysicalData WHERE Zone = 5");
    select_row(0);
    ASSERT_FALSE(session_.basin.Basin_Changed);
    dialogs_.then(Answer::Yes);
    in_modal("frmData", [](QWidget& window) { click(*part<QPushButton>(window, "Command1(1)")); });
    choose("mnuDataOptVar(1)");
    EXPECT_EQ(modal_windows_seen_, 1);
    dialogs_.then(Answer::Cancel);
    press({"alt+f", "n"});
    EXPECT_EQ(dialogs_.messages().back().message.title, "Save Data?");
    EXPECT_EQ(simulations().size(), 2U);
}

TEST_F(SimulationDataOnScreenTest, AnImportedSimulationIsTheSelectedRow) {
    open_sample();
    select_row(0);
    LegacyParts parts;
    parts.zones = "5";
    parts.pairs = legacy_pairs(5);
    dialogs_.then_file(user_.write("alder.NVR", parts.text()));
    // The last answer is for the days of the period, which the basin already has.
    dialogs_.then(Answer::No).then_text("alder").then(Answer::Yes);
    in_modal("SimOptions", [](QWidget&) { press({"alt+a"}); });
    choose("mnuFileItem(2)");
    EXPECT_EQ(modal_windows_seen_, 1);
    ASSERT_EQ(simulations().size(), 3U);
    auto* grid = find<QTableView>("DBGrid1");
    EXPECT_EQ(grid->currentIndex().row(), 2);
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("alder"));
    EXPECT_EQ(main_colour(picture_of_cell(*grid, 0, 1)), main_colour(picture_of_cell(*grid, 1, 1)));
    EXPECT_NE(main_colour(picture_of_cell(*grid, 2, 1)), main_colour(picture_of_cell(*grid, 1, 1)));
}

TEST_F(SimulationDataOnScreenTest, ARunOfTheFirstRowReportsAPeriodThatIsTooLong) {
    open_sample();
    select_row(0);
    session_.basin.simulations[0].end = *session_.basin.simulations[0].start + 366;
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(dialogs_.messages().back().message.text, "Date range error!  366 ");
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(SimulationDataOnScreenTest, TheTimeLagBeginsWithTheWholeOnTheDayItself) {
    open_sample();
    in_modal("frmTimeLagDist", [](QWidget& window) {
        EXPECT_EQ(part<QLineEdit>(window, "Text1(1)")->text(), QStringLiteral("1.0"));
        click(*part<QLineEdit>(window, "Text1(0)"));
        type("2");
        press({"Return"});
        type("0.5");  // replaces the 1.0, which is selected when the box gets the focus
        press({"Return"});
        type(".5");
        press({"Return", "space"});
    });
    choose("mnuToolsItm(4)");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_EQ(session_.run.LagDistribution[0], 2.0F);
    in_modal("frmTimeLagDist", [](QWidget& window) {
        for (const char* share : {"Text1(1)", "Text1(2)"}) {
            click(*part<QLineEdit>(window, share));
            press({"ctrl+a"});
            type("0");
        }
        press({"alt+a"});
    });
    choose("mnuToolsItm(4)");
    EXPECT_EQ(modal_windows_seen_, 2);
    EXPECT_THAT(session_.run.LagDistribution, testing::Each(0.0F));
}

}  // namespace
}  // namespace nivora
