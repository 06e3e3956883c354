#include "tests/windows/prep/sim_options_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;

/// Accept and Cancel of the definition window.
class SimOptionsAcceptTest : public SimOptionsWindowTest {
protected:
    static constexpr const char* k_parameters_told =
        "The parameter table for this simulation will be created using the initial parameter table\n"
        "values shown on this window.  Once the parameter table for a simulation has been created,\n"
        " it may be edited by clicking 'Data/Parameters'.";

    void open_short(const char* start = "10/01/1980", const char* end = "10/03/1980") {
        open_to_add("s");
        fill_first_values();
        fill_period(start, end);
    }
    std::size_t rows() { return session_.basin.simulations.size(); }
};

TEST_F(SimOptionsAcceptTest, ADefinitionIsAddedAndBothTablesAreFilled) {
    open_short();
    box(1)->setText(QStringLiteral("3"));
    box(4)->setText(QStringLiteral("1.5"));
    by_zone(1)->setChecked(true);
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    ASSERT_EQ(messages(), 2U);
    EXPECT_EQ(message(0).text, k_parameters_told);
    EXPECT_EQ(message(0).buttons, Buttons::Ok);
    EXPECT_EQ(message(1).text,
              "Daily physical data records for the period '10/01/1980 to 10/03/1980' will be added to this "
              "basin's physical data table.  Ok?");
    EXPECT_EQ(message(1).buttons, Buttons::YesNo);
    ASSERT_EQ(rows(), 1U);
    const Simulation& row = session_.basin.simulations[0];
    EXPECT_EQ(row.name, "s");
    EXPECT_EQ(row.run_number, 3);
    EXPECT_EQ(row.start, october(1));
    EXPECT_EQ(row.end, october(3));
    EXPECT_EQ(row.units, Units::Metric);
    EXPECT_EQ(row.temperature, Distribution::Basinwide);
    EXPECT_EQ(row.precipitation, Distribution::ByZone);
    EXPECT_EQ(row.initial_runoff, 1.5F);
    EXPECT_EQ(row.precipitation_threshold, 6.0F);
    // Three days of two zones.
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "6");
    EXPECT_EQ(stored("SELECT count(*) FROM PhysicalData"), "6");
    EXPECT_EQ(stored("SELECT count(*) FROM PhysicalData WHERE Runoff IS NULL AND Precip IS NULL"), "6");
    EXPECT_EQ(stored("SELECT count(DISTINCT An) FROM s"), "1");
    EXPECT_EQ(stored("SELECT LagTime FROM s LIMIT 1"), "18.0");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "s");
    EXPECT_EQ(session_.basin.current_row, 0U);
}

TEST_F(SimOptionsAcceptTest, APeriodThatTheRecordHoldsAsksNothingOfTheDailyVariables) {
    add_physical(1, 3);
    open_short();
    press(0);
    EXPECT_EQ(messages(), 1U);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(stored("SELECT count(*) FROM PhysicalData WHERE Runoff > 100"), "6");
}

TEST_F(SimOptionsAcceptTest, NoToTheDailyVariablesStillAddsTheDefinition) {
    open_short();
    dialogs_.then(Answer::No);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(rows(), 1U);
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "6");
    EXPECT_EQ(stored("SELECT count(*) FROM PhysicalData"), "0");
}

TEST_F(SimOptionsAcceptTest, APeriodOf367DaysIsRefusedAndOf366Accepted) {
    // 1980 is a leap year of 366 days.
    open_short("01/01/1980", "01/01/1981");
    press(0);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Date range error!");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(rows(), 0U);
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "0");
    fill_period("01/01/1980", "12/31/1980");
    dialogs_.then(Answer::No);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "732");  // 366 days of two zones
}

TEST_F(SimOptionsAcceptTest, APeriodOfOneDayIsRefused) {
    open_short("10/01/1980", "10/01/1980");
    press(0);
    EXPECT_EQ(last_message().text, "Date range error!");
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(rows(), 0U);
}

TEST_F(SimOptionsAcceptTest, APeriodThatEndsBeforeItStartsIsRefused) {
    open_short("10/02/1980", "10/01/1980");
    press(0);
    EXPECT_EQ(last_message().text, "Date range error!");
    EXPECT_EQ(rows(), 0U);
}

TEST_F(SimOptionsAcceptTest, ADateThatDoesNotExistIsInvalidData) {
    open_short("02/30/1980", "03/10/1980");
    press(0);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "Missing/invalid data\nThe box 'Start Date' holds '02/30/1980': the calendar has no such day.");
    EXPECT_EQ(window_->focusWidget(), box(2));
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(rows(), 0U);
}

TEST_F(SimOptionsAcceptTest, AMissingFirstValueIsInvalidDataAndAddsNoRowsToTheTables) {
    open_short();
    box(6)->clear();
    press(0);
    EXPECT_EQ(last_message().text,
              "Missing/invalid data\nThe box 'Degree Day Factor' is empty; it needs a number.");
    EXPECT_EQ(window_->focusWidget(), box(6));
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "0");
}

TEST_F(SimOptionsAcceptTest, ALetterInAFirstValueIsInvalidData) {
    open_short();
    box(13)->setText(QStringLiteral("1,05"));
    press(0);
    EXPECT_EQ(last_message().text,
              "Missing/invalid data\nThe box 'X recession coefficient' holds '1,05': a number has a point as "
              "its decimal sign and no other separators.");
    EXPECT_EQ(window_->focusWidget(), box(13));
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "0");
}

TEST_F(SimOptionsAcceptTest, UnitsThatAreNotFixedAreFixedAfterAQuestion) {
    session_.basin.basin_units = session_.basin.Units_Code = Units::NotFixed;
    add_physical(1, 3);
    open_short();
    units(1)->click();
    dialogs_.then(Answer::Ok);
    press(0);
    ASSERT_EQ(messages(), 2U);
    EXPECT_EQ(message(0).title, "Are your units correct?");
    EXPECT_EQ(
        message(0).text,
        "Once units are established within a basin, any additional simulations for the basin must use the "
        "same units.  Continue?");
    EXPECT_EQ(message(0).buttons, Buttons::OkCancel);
    EXPECT_EQ(message(1).text, k_parameters_told);
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
    EXPECT_FALSE(window_->isVisible());
}

TEST_F(SimOptionsAcceptTest, CancelOfTheUnitsKeepsTheAddedRowAndTheWindow) {
    session_.basin.basin_units = session_.basin.Units_Code = Units::NotFixed;
    open_short();
    dialogs_.then(Answer::Cancel);
    press(0);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(session_.basin.Units_Code, Units::NotFixed);
    ASSERT_EQ(rows(), 1U);
    EXPECT_EQ(session_.basin.simulations[0].name, "s");
    EXPECT_FALSE(session_.basin.simulations[0].precipitation_threshold.has_value());
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "0");
}

TEST_F(SimOptionsAcceptTest, ASecondAcceptAfterTheUnitsUsesTheAddedRow) {
    session_.basin.basin_units = session_.basin.Units_Code = Units::NotFixed;
    add_physical(1, 3);
    open_short();
    dialogs_.then(Answer::Cancel).then(Answer::Ok);
    press(0);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(rows(), 1U);
}

TEST_F(SimOptionsAcceptTest, ATableThatHasAllItsRowsIsOverwrittenAfterAQuestion) {
    add_physical(1, 2);
    open_short("10/01/1980", "10/02/1980");
    std::vector<ParameterRow> there;
    for (const int zone : {1, 2}) {
        for (const int day : {1, 2}) {
            there.push_back(full_row(static_cast<std::int16_t>(zone), day));
            there.back().an = 9.0F;
        }
    }
    add_parameters("s", there);
    dialogs_.then(Answer::Cancel);
    press(0);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "Replace existing parameter table?");
    EXPECT_EQ(
        last_message().text,
        "you are about to overwrite this simulation's existing parameter table using the values shown!  "
        "Continue!");
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(stored("SELECT count(*) FROM s WHERE An = 9"), "4");
    dialogs_.then(Answer::Ok);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(stored("SELECT count(*) FROM s WHERE An = 9"), "0");
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "4");
}

TEST_F(SimOptionsAcceptTest, AnEditWritesItsRowAndNoTable) {
    add_simulation("other", october(1), october(3));
    add_simulation("s", october(1), october(3));
    make_parameter_table("s");
    add_parameters("s", {full_row(1, 1)});
    open_to_edit();
    box(6)->setText(QStringLiteral("0.9"));
    box(4)->setText(QStringLiteral("22"));
    fill_period("10/02/1980", "10/09/1980");
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    ASSERT_EQ(rows(), 2U);
    EXPECT_EQ(session_.basin.simulations[0].start, october(1));
    EXPECT_EQ(session_.basin.simulations[1].start, october(2));
    EXPECT_EQ(session_.basin.simulations[1].end, october(9));
    EXPECT_EQ(session_.basin.simulations[1].initial_runoff, 22.0F);
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "1");
    EXPECT_EQ(stored("SELECT round(An, 4) FROM s"), "0.45");
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(SimOptionsAcceptTest, AnImportGrowsTheGridAndAsksNothing) {
    session_.prep.working_record = new_simulation_record(session_.basin, "legacy");
    session_.prep.working_record.first_values = full_row(1, 1);
    session_.prep.SimOptions_Mode = SimOptionsMode::Import;
    open();
    fill_period("10/01/1980", "10/03/1980");
    press(0);
    EXPECT_EQ(messages(), 0U);
    ASSERT_EQ(rows(), 1U);
    EXPECT_EQ(session_.basin.simulations[0].name, "legacy");
    EXPECT_EQ(session_.basin.Current_Sim_Name, "legacy");
}

TEST_F(SimOptionsAcceptTest, CancelChangesNothingInTheGrid) {
    Simulation& row = add_simulation("s", october(1), october(3));
    row.initial_runoff = 5.0F;
    make_parameter_table("s");
    add_parameters("s", {full_row(1, 1)});
    open_to_edit();
    box(4)->setText(QStringLiteral("22"));
    fill_period("10/02/1980", "10/09/1980");
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(session_.basin.simulations[0].initial_runoff, 5.0F);
    EXPECT_EQ(session_.basin.simulations[0].start, october(1));
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(SimOptionsAcceptTest, CancelOfANewDefinitionLeavesItsEmptyTable) {
    open_short();
    press(1);
    EXPECT_EQ(rows(), 0U);
    EXPECT_EQ(stored("SELECT count(*) FROM s"), "0");
    EXPECT_EQ(stored("SELECT count(*) FROM sqlite_master WHERE name = 's' AND type = 'table'"), "1");
}

TEST_F(SimOptionsAcceptTest, TheExtentOfTheRecordFollowsTheRowsThatWereAdded) {
    add_physical(5, 6);
    open_short("10/01/1980", "10/03/1980");
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_EQ(session_.prep.record.first, october(1));
    EXPECT_EQ(session_.prep.record.last, october(6));
    EXPECT_EQ(session_.prep.record.count, 10);  // 3 + 2 days of two zones
    EXPECT_EQ(session_.prep.record.zones, 2);
}

TEST_F(SimOptionsAcceptTest, AnEmptiedRunNumberEmptiesTheCell) {
    Simulation& row = add_simulation("s", october(1), october(3));
    row.run_number = 4;
    make_parameter_table("s");
    add_parameters("s", {full_row(1, 1)});
    open_to_edit();
    box(1)->clear();
    press(0);
    EXPECT_FALSE(session_.basin.simulations[0].run_number.has_value());
}

TEST_F(SimOptionsAcceptTest, ALongCommentKeepsItsLines) {
    open_short();
    comments()->setPlainText(QStringLiteral("grün\nµ 'x' \"y\" 100%"));
    dialogs_.then(Answer::No);
    press(0);
    EXPECT_EQ(session_.basin.simulations.at(0).comments, "grün\nµ 'x' \"y\" 100%");
}

}  // namespace
}  // namespace nivora
