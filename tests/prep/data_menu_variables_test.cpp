// The daily variables of the whole record and of a simulation.
#include "prep/daily_editor.h"
#include "prep/data_menu.h"
#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int k_record = 0;
constexpr int k_simulation = 1;

class DataMenuVariables : public PrepTest {
protected:
    /// A record of two days; the simulation needs the second of them and the day after it.
    DataMenuVariables() {
        select("wet", october(2), october(3));
        add_physical({{.zone = 1, .date = october(1), .runoff = 1.5F},
                      {.zone = 1, .date = october(2), .runoff = 2.5F},
                      {.zone = 2, .date = october(1)},
                      {.zone = 2, .date = october(2)}});
        prep_.record = {.first = october(1), .last = october(2), .zones = 2, .count = 4};
        prep_.Data_View = DataView::Parameters;
    }

    DataOutcome choose(int index) { return mnuDataOptVar_Click(context_, database_, index); }
};

TEST_F(DataMenuVariables, TheRecordIsShownWithoutAPeriod) {
    prep_.Edit_Locked = true;
    EXPECT_EQ(choose(k_record), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.Data_View, DataView::PhysicalData);
    EXPECT_EQ(prep_.query.table, "PhysicalData");
    EXPECT_EQ(prep_.query.fields, daily_fields(DataView::PhysicalData));
    EXPECT_EQ(prep_.query.period, std::nullopt);
    EXPECT_EQ(prep_.window_title, "Edit basin variables");
    EXPECT_EQ(prep_.caption_prefix, "Basin variables for simulation ");
    EXPECT_FALSE(prep_.Edit_Locked);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenuVariables, TheSimulationsDaysAreShownWithItsPeriod) {
    basin_.Current_Start = october(1);
    basin_.Current_End = october(2);
    EXPECT_EQ(choose(k_simulation), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.query.period, (Period{october(1), october(2)}));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenuVariables, MissingDaysAreAskedAbout) {
    dialogs_.then(Answer::No);
    EXPECT_EQ(choose(k_simulation), DataOutcome::Stopped);
    EXPECT_EQ(last_message().text, "The physical data table is missing days.  Add?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_EQ(days("PhysicalData").size(), 4U);
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_FALSE(basin_.Input_Changed);
    EXPECT_EQ(prep_.Data_View, DataView::PhysicalData) << "the mode is left behind all the same";
}

TEST_F(DataMenuVariables, MissingDaysAreAddedWithZeros) {
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(k_simulation), DataOutcome::ShowEditor);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "1 2", "2 1", "2 2", "1 3", "2 3"));
    EXPECT_THAT(
        rows("SELECT Runoff, Tmax, Tmin, Tavg, Precip, SCA, NetRadiation FROM PhysicalData WHERE Date = " +
             std::to_string(october(3))),
        ElementsAre("0.0 0.0 0.0 0.0 0.0 0.0 0.0", "0.0 0.0 0.0 0.0 0.0 0.0 0.0"));
    EXPECT_EQ(prep_.record.last, october(3));
    EXPECT_EQ(prep_.record.count, 6);
}

TEST_F(DataMenuVariables, DaysThatAreAddedAreAChangeOfTheBasin) {
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(k_simulation), DataOutcome::ShowEditor);
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_TRUE(basin_.Input_Changed);
}

TEST_F(DataMenuVariables, TheRecordIsAskedAboutOverThePeriodThatWasFoundLast) {
    database_.execute("DELETE FROM PhysicalData WHERE Zone = 2 AND Date = " + std::to_string(october(1)));
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(k_record), DataOutcome::ShowEditor);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "1 2", "2 2", "2 1"));
}

TEST_F(DataMenuVariables, MoreRowsThanDaysAreAskedAboutToo) {
    add_physical({{.zone = 2, .date = october(2), .runoff = 9.0F}});
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(k_record), DataOutcome::ShowEditor);
    EXPECT_EQ(days("PhysicalData").size(), 5U) << "no day was missing";
    EXPECT_FALSE(basin_.Basin_Changed) << "nothing was added";
}

TEST_F(DataMenuVariables, AnEmptyRecordIsAskedAboutAndHasNoDaysToAdd) {
    database_.execute("DELETE FROM PhysicalData");
    prep_.record = {};
    dialogs_.then(Answer::Yes).then(Answer::No);
    EXPECT_EQ(choose(k_record), DataOutcome::ShowEditor);
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
    EXPECT_EQ(choose(k_record), DataOutcome::Stopped);
}

TEST_F(DataMenuVariables, AnEmptyRecordGetsTheDaysOfTheSimulation) {
    database_.execute("DELETE FROM PhysicalData");
    prep_.record = {};
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(k_simulation), DataOutcome::ShowEditor);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 2", "1 3", "2 2", "2 3"));
}

TEST_F(DataMenuVariables, WithoutACurrentSimulationNothingIsShown) {
    basin_.Current_End.reset();
    EXPECT_EQ(choose(k_simulation), DataOutcome::Stopped);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenuVariables, WhatTheStoreRefusesIsShown) {
    database_.drop_table(k_physical_data);
    EXPECT_EQ(choose(k_record), DataOutcome::Stopped);
    ASSERT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text, testing::HasSubstr("PhysicalData"));
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

}  // namespace
}  // namespace nivora
