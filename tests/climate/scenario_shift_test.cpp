// Shifts of a scenario: values from a later or an earlier day move to the
// start date, and so on to the zone's last day.
#include "tests/climate/scenario_fixture.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

class ScenarioShift : public ScenarioTest {
protected:
    void SetUp() override {
        ScenarioTest::SetUp();
        set(table.PrecipCC, 1, {1, 2, 3, 4, 5, 6});
        set(table.PrecipCC, 2, {11, 12, 13, 14, 15, 16});
    }
};

TEST_F(ScenarioShift, WorksOnTheColumnOfItsCode) {
    const std::vector<std::string> expected{"PrecipCC", "TMaxCC", "TcritCC", "LagTimeCC", "LRCC",
                                            "ANCC",     "CSCC",   "CRCC",    "RCACC",     "NetRadCC"};
    for (int code = 2; code <= 11; ++code) {
        SCOPED_TRACE(code);
        const auto fields = sim_results_table().fields;
        std::size_t position = 0;
        SimResults::visit(table, [&](auto& column) {
            const auto base = static_cast<float>(100 * position);
            if (position++ < 2) return;
            for (std::size_t row = 0; row < column.size(); ++row)
                column[row] = static_cast<typename std::remove_reference_t<decltype(column)>::value_type>(
                    base + static_cast<float>(row));
        });
        const SimResults before = table;
        EXPECT_EQ(apply({edit(code, EditAction::ShiftBackward, 1.0F)}), 0);
        EXPECT_THAT(changed_columns(before, table),
                    ElementsAre(expected[static_cast<std::size_t>(code - 2)]));
    }
}

TEST_F(ScenarioShift, HasNothingToWorkOnAtTheFirstTwoAndTheLastTwoCodes) {
    for (const EditAction action : {EditAction::ShiftBackward, EditAction::ShiftForward}) {
        for (const int code : {0, 1, 12, 13}) {
            SCOPED_TRACE(code);
            const SimResults before = table;
            EXPECT_EQ(apply({edit(code, action, 1.0F)}), 1);
            EXPECT_THAT(changed_columns(before, table), IsEmpty());
            EXPECT_EQ(last_message().message.title, k_definition_error);
        }
    }
    EXPECT_EQ(apply({edit(0, EditAction::ShiftForward, 1.0F)}), 1);
    expect_stop(last_message(), "Row 1: 'Shift forward' can't be applied to 'M/M Temperature'.",
                k_definition_error);
}

TEST_F(ScenarioShift, ByAPositiveNumberBringsLaterValuesAndRepeatsTheLast) {
    EXPECT_EQ(apply({edit(2, EditAction::ShiftBackward, 2.0F)}), 0);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(3.0F, 4.0F, 5.0F, 6.0F, 6.0F, 6.0F));
    EXPECT_THAT(days(table.PrecipCC, 2), ElementsAre(13.0F, 14.0F, 15.0F, 16.0F, 16.0F, 16.0F));
}

TEST_F(ScenarioShift, ByFiveDaysFillsTheLastFiveWithTheLastValue) {
    EXPECT_EQ(apply({edit(2, EditAction::ShiftBackward, 5.0F)}), 0);
    EXPECT_THAT(days(table.PrecipCC, 1), testing::Each(6.0F));
}

TEST_F(ScenarioShift, ByANegativeNumberRepeatsWhatItHasJustWritten) {
    // From day 3 on, with day 1 as the source: day 3 = 1, day 4 = 2. Then day 5 reads day 3, which is now 1,
    // and day 6 reads day 4, which is now 2.
    EXPECT_EQ(apply({edit(2, EditAction::ShiftBackward, -2.0F, 3)}), 0);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(1.0F, 2.0F, 1.0F, 2.0F, 1.0F, 2.0F));
}

TEST_F(ScenarioShift, ForwardIsTheSameAsBackward) {
    for (const float factor : {2.0F, -2.0F}) {
        SimResults start_table = table;
        EXPECT_EQ(apply({edit(2, EditAction::ShiftBackward, factor, 3)}), 0);
        const SimResults backward = table;
        table = start_table;
        EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, factor, 3)}), 0);
        EXPECT_THAT(changed_columns(backward, table), IsEmpty());
        table = start_table;
    }
}

TEST_F(ScenarioShift, RunsPastItsEndDateToTheZonesLastDay) {
    for (const int last_day : {2, -100}) {
        set(table.PrecipCC, 1, {1, 2, 3, 4, 5, 6});
        EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F, 2, last_day, 1)}), 0);
        EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(1.0F, 3.0F, 4.0F, 5.0F, 6.0F, 6.0F));
    }
}

TEST_F(ScenarioShift, OfOneZoneLeavesTheNext) {
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 3.0F, 1, 6, 1)}), 0);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(4.0F, 5.0F, 6.0F, 6.0F, 6.0F, 6.0F));
    EXPECT_THAT(days(table.PrecipCC, 2), ElementsAre(11.0F, 12.0F, 13.0F, 14.0F, 15.0F, 16.0F));
}

TEST_F(ScenarioShift, ByNoDayChangesNothing) {
    const SimResults before = table;
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 0.0F)}), 0);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
}

TEST_F(ScenarioShift, OnTheLastDayChangesThatDay) {
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, -4.0F, 6)}), 0);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F, 5.0F, 2.0F));
}

TEST_F(ScenarioShift, MovesWhatAnEarlierRowHasEdited) {
    // Row 1 makes day 3 0 + 9. Row 2 moves day 3 to day 2, and days 4 to 6 one day earlier.
    EXPECT_EQ(
        apply({edit(2, EditAction::Add, 9.0F, 3, 3, 1), edit(2, EditAction::ShiftForward, 1.0F, 2, 6, 1)}),
        0);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(1.0F, 9.0F, 4.0F, 5.0F, 6.0F, 6.0F));
}

TEST_F(ScenarioShift, MovesAMissingValueToo) {
    table.PrecipCC[at(1, 3)] = k_missing;
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F, 1, 6, 1)}), 0);
    EXPECT_EQ(table.PrecipCC[at(1, 1)], 2.0F);
    EXPECT_TRUE(std::isnan(table.PrecipCC[at(1, 2)]));
    EXPECT_EQ(table.PrecipCC[at(1, 3)], 4.0F);
}

TEST_F(ScenarioShift, StepsByRecordsWhereADayIsMissing) {
    // Zone 1 has the days 1, 2, 4, 5, 6: the value of day 4 moves to day 2, the record before it.
    remove_row(at(1, 3));
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F, 1, 6, 1)}), 0);
    const std::vector<float> zone_1(table.PrecipCC.begin(), table.PrecipCC.begin() + 5);
    EXPECT_THAT(zone_1, ElementsAre(2.0F, 4.0F, 5.0F, 6.0F, 6.0F));
}

TEST_F(ScenarioShift, TakesTheDaysInTheirOrderHoweverTheyAreStored) {
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 2.0F)}), 0);
    EXPECT_THAT(table.PrecipCC, ElementsAre(16.0F, 16.0F, 16.0F, 15.0F, 14.0F, 13.0F,  //
                                            6.0F, 6.0F, 6.0F, 5.0F, 4.0F, 3.0F));
}

TEST_F(ScenarioShift, FaultsWhereTheSourceDateIsNotFound) {
    // A day before the period, a day after it, half a day, and a day outside the calendar.
    for (const float factor : {-1.0F, 6.0F, 0.5F, 1.0e30F}) {
        SCOPED_TRACE(factor);
        const SimResults before = table;
        EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, factor)}), 1);
        EXPECT_THAT(changed_columns(before, table), IsEmpty());
        EXPECT_EQ(last_message().message.title, k_definition_error);
        EXPECT_EQ(last_message().message.icon, Icon::Stop);
    }
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, -1.0F)}), 1);
    EXPECT_EQ(last_message().message.text,
              "Row 1: the simulation has no 1996-03-31 in zone 1 to shift from or to.");
}

TEST_F(ScenarioShift, FaultsWhereTheStartDateIsNotFound) {
    const SimResults before = table;
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F, 0)}), 1);
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, -1.0F, 7)}), 1);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(last_message().message.text,
              "Row 1: the simulation has no 1996-04-07 in zone 1 to shift from or to.");
}

TEST_F(ScenarioShift, KeepsTheFinishedZonesIfALaterOneFaults) {
    remove_row(at(2, 1));
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F)}), 1);
    const std::vector<float> zone_1(table.PrecipCC.begin(), table.PrecipCC.begin() + 6);
    const std::vector<float> zone_2(table.PrecipCC.begin() + 6, table.PrecipCC.end());
    EXPECT_THAT(zone_1, ElementsAre(2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 6.0F));
    EXPECT_THAT(zone_2, ElementsAre(12.0F, 13.0F, 14.0F, 15.0F, 16.0F));
    EXPECT_THAT(last_message().message.text, HasSubstr("1996-04-01 in zone 2"));
}

TEST_F(ScenarioShift, OfAllZonesEndsWithTheLastZoneOfTheBasin) {
    basin.ZoneCount = 1;
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F)}), 0);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 6.0F));
    EXPECT_THAT(days(table.PrecipCC, 2), ElementsAre(11.0F, 12.0F, 13.0F, 14.0F, 15.0F, 16.0F));
    basin.ZoneCount = 3;
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F)}), 1);
    EXPECT_THAT(days(table.PrecipCC, 1), ElementsAre(3.0F, 4.0F, 5.0F, 6.0F, 6.0F, 6.0F));
    EXPECT_THAT(days(table.PrecipCC, 2), ElementsAre(12.0F, 13.0F, 14.0F, 15.0F, 16.0F, 16.0F));
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(last_message().message.text,
              "Row 1: the simulation has no 1996-04-01 in zone 3 to shift from or to.");
}

TEST_F(ScenarioShift, OfAZoneThatTheBasinLacksFaults) {
    EXPECT_EQ(apply({edit(2, EditAction::ShiftForward, 1.0F, 1, 6, 3)}), 1);
    EXPECT_EQ(last_message().message.title, k_definition_error);
}

}  // namespace
}  // namespace nivora
