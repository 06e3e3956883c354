// When the first values of a parameter table can be entered, and when the window only shows them.
#include "tests/windows/prep/sim_options_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

class SimOptionsFirstValuesTest : public SimOptionsWindowTest {
protected:
    QLabel* note() { return find<QLabel>("lblValuesNote"); }
    void expect_values_enabled(bool enabled) {
        for (int index = 6; index <= 14; ++index) EXPECT_EQ(box(index)->isEnabled(), enabled) << index;
        EXPECT_EQ(note()->isVisible(), !enabled);
    }
    void add_table(const std::string& name) {
        make_parameter_table(name);
        add_parameters(name, {full_row(1, 1)});
    }
};

TEST_F(SimOptionsFirstValuesTest, ANewSimulationTakesThem) {
    open_to_add("s");
    expect_values_enabled(true);
}

TEST_F(SimOptionsFirstValuesTest, AnEditShowsThemAndSaysWhereTheyAreChanged) {
    add_simulation("s", october(1), october(3));
    add_table("s");
    open_to_edit();
    expect_values_enabled(false);
    EXPECT_THAT(from_qt(note()->text()), HasSubstr("Data, Parameters"));
    EXPECT_THAT(first_values(),
                ElementsAre("0.45", "0.75", "0.65", "0.8", "0.7", "1", "18", "1.05", "0.025"));
    EXPECT_EQ(caption("Label4(0)"), "Degree Day Factor: (Zone 1, Day 1)");
    key(Qt::Key_Tab);
    QTest::keyClicks(box(6), QStringLiteral("9"));
    EXPECT_EQ(text(6), "0.45");
}

TEST_F(SimOptionsFirstValuesTest, AnImportThatBroughtItsTableOnlyShowsThem) {
    session_.prep.working_record = new_simulation_record(session_.basin, "legacy");
    session_.prep.working_record.first_values = full_row(1, 1);
    session_.prep.SimOptions_Mode = SimOptionsMode::Import;
    open();
    expect_values_enabled(false);
}

TEST_F(SimOptionsFirstValuesTest, AnEditOfAnEmptyTableTakesThemAndAcceptRebuildsIt) {
    add_simulation("s", october(1), october(2));
    make_parameter_table("s");
    open_to_edit();
    EXPECT_EQ(last_message().title, "Missing parameter table");
    expect_values_enabled(true);
    fill_first_values();
    press(0);
    EXPECT_FALSE(window_->isVisible());
    // Two days of two zones.
    EXPECT_EQ(stored("SELECT count(*) FROM s WHERE round(An, 4) = 0.45"), "4");
    EXPECT_EQ(stored("SELECT count(*) FROM PhysicalData"), "0");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    open_to_edit();
    expect_values_enabled(false);
    EXPECT_EQ(messages(), 2U) << "the missing table, and the one that was made";
}

TEST_F(SimOptionsFirstValuesTest, AnEditOfAMissingTableMakesIt) {
    add_simulation("s", october(1), october(2));
    open_to_edit();
    expect_values_enabled(true);
    fill_first_values();
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "4");
}

TEST_F(SimOptionsFirstValuesTest, CancelOfARebuildLeavesTheTableEmpty) {
    add_simulation("s", october(1), october(2));
    make_parameter_table("s");
    open_to_edit();
    fill_first_values();
    press(1);
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "0");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(SimOptionsFirstValuesTest, TheBoxThatPreventsAnAcceptGetsTheKeyboard) {
    open_to_add("s");
    fill_first_values();
    fill_period("02/30/1980", "10/03/1980");
    press(0);
    EXPECT_EQ(QApplication::focusWidget(), box(2));
    fill_period("10/01/1980", "10/03/1981");
    press(0);
    EXPECT_EQ(QApplication::focusWidget(), box(3));
    fill_period("10/01/1980", "10/03/1980");
    box(9)->clear();
    press(0);
    EXPECT_EQ(QApplication::focusWidget(), box(9));
    EXPECT_EQ(session_.basin.simulations.size(), 0U);
    press(1);
    EXPECT_EQ(session_.basin.simulations.size(), 0U) << "a cancelled definition leaves no row";
}

}  // namespace
}  // namespace nivora
