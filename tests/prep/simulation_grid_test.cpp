// The rules of the simulation grid.
#include "prep/simulation_grid.h"

#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class SimulationGrid : public PrepTest {
protected:
    /// Two simulations of October 1980 to September 1981; the second is selected.
    SimulationGrid() {
        select("first", day(1980, 10, 1), day(1981, 9, 30));
        select("second", day(1980, 10, 1), day(1981, 9, 30));
    }

    bool edit(int column, std::string_view text) { return edit_simulation_cell(context_, 1, column, text); }
    Simulation& second() { return basin_.simulations[1]; }

    [[nodiscard]] bool changed() const { return basin_.Basin_Changed && basin_.Input_Changed; }
    [[nodiscard]] bool untouched() const { return !basin_.Basin_Changed && !basin_.Input_Changed; }

    /// Whether leaving a cell of the row shows the date message.
    [[nodiscard]] bool refuses_period(std::size_t row, DayCount start, DayCount end) {
        basin_.simulations[row].start = start;
        basin_.simulations[row].end = end;
        const auto in_start = left_simulation_cell_problem(basin_, row, 3);
        const auto in_end = left_simulation_cell_problem(basin_, row, 4);
        EXPECT_EQ(in_start.has_value(), in_end.has_value());
        return in_start.has_value();
    }
};

TEST_F(SimulationGrid, SaysWhyACellCannotTakeAText) {
    const std::vector<std::string> texts{"",        "x",       "4.5",        "4,5",        "7",
                                         "1e39",    "1e400",   "02/31/2006", "02/28/2006", "12/31/1899",
                                         "By Zone", "English", "99999"};
    for (int column = 2; column <= 17; ++column) {
        for (const std::string& text : texts) {
            const bool refused = !simulation_cell_refusal(column, text).empty();
            EXPECT_EQ(refused, !edit(column, text)) << column << " " << text;
        }
    }
    EXPECT_EQ(simulation_cell_refusal(13, "450,5"),
              "a number has a point as its decimal sign and no other separators");
    EXPECT_EQ(simulation_cell_refusal(3, "02/31/2006"), "the calendar has no such day");
    EXPECT_EQ(simulation_cell_refusal(1, "other"),
              "a simulation keeps its name, which is also that of its parameter table");
}

// Dates for a mask.

TEST(DateSize, FillsMonthAndDayInAnyMix) {
    EXPECT_EQ(Date_Size("1/2/1980"), "01/02/1980");
    EXPECT_EQ(Date_Size("10/2/1980"), "10/02/1980");
    EXPECT_EQ(Date_Size("1/12/1980"), "01/12/1980");
    EXPECT_EQ(Date_Size("10/12/1980"), "10/12/1980");
    EXPECT_EQ(Date_Size("1/2/80"), "01/02/80");
}

TEST(DateSize, LeavesWhatHasNoSlash) {
    EXPECT_EQ(Date_Size(""), "");
    EXPECT_EQ(Date_Size("01011980"), "01011980");
}

TEST(DateSize, DoesNotFailOnAnIncompleteDate) {
    EXPECT_EQ(Date_Size("/"), "0/");
    EXPECT_EQ(Date_Size("1/"), "01/");
    EXPECT_EQ(Date_Size("1/2"), "01/02");
}

// Lists.

TEST(SimulationList, ExistsOnlyForColumns5To12) {
    EXPECT_THAT(simulation_list(4), IsEmpty());
    EXPECT_THAT(simulation_list(5), ElementsAre("Metric", "English"));
    EXPECT_THAT(simulation_list(6), ElementsAre("Average", "Max/Min"));
    for (int column = 7; column <= 12; ++column)
        EXPECT_THAT(simulation_list(column), ElementsAre("Basinwide", "By Zone"));
    EXPECT_THAT(simulation_list(13), IsEmpty());
}

// Edits.

TEST_F(SimulationGrid, ANameCannotBeEdited) {
    EXPECT_FALSE(edit(1, "third"));
    EXPECT_EQ(second().name, "second");
    EXPECT_TRUE(untouched());
}

TEST_F(SimulationGrid, AChangedCellMarksBasinAndInputAsChanged) {
    EXPECT_TRUE(edit(2, "7"));
    EXPECT_THAT(second().run_number, Optional(std::int16_t{7}));
    EXPECT_TRUE(changed());
}

TEST_F(SimulationGrid, ACellThatKeepsItsValueMarksNothing) {
    EXPECT_TRUE(edit(3, "10/1/1980"));
    EXPECT_TRUE(edit(5, "Metric"));
    EXPECT_TRUE(edit(17, ""));
    EXPECT_TRUE(untouched());
}

TEST_F(SimulationGrid, ARunNumberIsAWholeNumberOf16Bits) {
    EXPECT_TRUE(edit(2, "32767"));
    for (const char* text : {"32768", "1.5", "x", "1,5", "1 000"}) {
        EXPECT_FALSE(edit(2, text)) << text;
        EXPECT_THAT(second().run_number, Optional(std::int16_t{32767}));
    }
    EXPECT_TRUE(edit(2, " "));
    EXPECT_EQ(second().run_number, std::nullopt);
}

TEST_F(SimulationGrid, ADateIsReadInAnyMixOfDigits) {
    EXPECT_TRUE(edit(3, "2/29/1996"));
    EXPECT_THAT(second().start, Optional(day(1996, 2, 29)));
}

TEST_F(SimulationGrid, DatesEndWithTheRangeOfTheMask) {
    EXPECT_TRUE(edit(3, "01/01/1900"));
    EXPECT_TRUE(edit(4, "12/31/2300"));
    for (const char* text : {"12/31/1899", "01/01/2301", "2/29/1981", "13/1/1981", "soon", "1980"}) {
        EXPECT_FALSE(edit(3, text)) << text;
        EXPECT_FALSE(edit(4, text)) << text;
    }
    EXPECT_THAT(second().start, Optional(day(1900, 1, 1)));
    EXPECT_THAT(second().end, Optional(day(2300, 12, 31)));
}

TEST_F(SimulationGrid, AnEmptiedStartIsTheFirstDayOf1980) {
    EXPECT_TRUE(edit(3, ""));
    EXPECT_THAT(second().start, Optional(day(1980, 1, 1)));
    EXPECT_THAT(basin_.Current_Start, Optional(day(1980, 1, 1)));
    EXPECT_TRUE(changed());
}

TEST_F(SimulationGrid, AnEmptiedEndIsTheLastDayOf1980) {
    EXPECT_TRUE(edit(4, ""));
    EXPECT_THAT(second().end, Optional(day(1980, 12, 31)));
    EXPECT_THAT(basin_.Current_End, Optional(day(1980, 12, 31)));
}

TEST_F(SimulationGrid, TheCurrentSimulationsDatesFollowItsRow) {
    EXPECT_TRUE(edit(3, "11/01/1980"));
    EXPECT_TRUE(edit(4, "08/31/1981"));
    EXPECT_THAT(basin_.Current_Start, Optional(day(1980, 11, 1)));
    EXPECT_THAT(basin_.Current_End, Optional(day(1981, 8, 31)));
}

TEST_F(SimulationGrid, AnotherRowsDatesLeaveTheCurrentSimulationAlone) {
    EXPECT_TRUE(edit_simulation_cell(context_, 0, 3, "11/01/1980"));
    EXPECT_THAT(basin_.Current_Start, Optional(day(1980, 10, 1)));
}

TEST_F(SimulationGrid, UnitsOfARowBecomeThoseOfTheBasin) {
    EXPECT_TRUE(edit(5, "English"));
    EXPECT_THAT(second().units, Optional(Units::English));
    EXPECT_EQ(basin_.Units_Code, Units::English);
    EXPECT_TRUE(edit(5, "0"));
    EXPECT_EQ(basin_.Units_Code, Units::Metric);
    EXPECT_TRUE(edit(5, "1"));
    EXPECT_EQ(basin_.Units_Code, Units::English);
    EXPECT_TRUE(edit(5, ""));
    EXPECT_EQ(second().units, std::nullopt);
    EXPECT_EQ(basin_.Units_Code, Units::Metric) << "an emptied cell stands for Metric";
}

TEST_F(SimulationGrid, ListsTakeTheirItemsAndTheirNumbersOnly) {
    EXPECT_TRUE(edit(6, "max/min"));
    EXPECT_THAT(second().temperature_values, Optional(std::int16_t{1}));
    for (int column = 7; column <= 12; ++column) {
        EXPECT_TRUE(edit(column, "By Zone"));
        EXPECT_EQ(second().value(column), 1.0);
        EXPECT_TRUE(edit(column, "0"));
        EXPECT_EQ(second().value(column), 0.0);
        for (const char* text : {"2", "-1", "0.5", "Zone", "Metric"}) {
            EXPECT_FALSE(edit(column, text)) << column << " " << text;
        }
        EXPECT_TRUE(edit(column, ""));
        EXPECT_EQ(second().value(column), std::nullopt);
    }
}

TEST_F(SimulationGrid, NumbersAreReadWithAPointAndWithoutOtherText) {
    for (const int column : {13, 14, 15, 16}) {
        EXPECT_TRUE(edit(column, " 2.5 "));
        for (const char* text : {"2,5", "1,000.5", "2.5 cm", "abc", "1e400"}) {
            EXPECT_FALSE(edit(column, text)) << column << " " << text;
        }
        EXPECT_EQ(second().value(column), 2.5);
        EXPECT_TRUE(edit(column, ""));
        EXPECT_EQ(second().value(column), std::nullopt);
    }
}

TEST_F(SimulationGrid, RunoffAndThresholdAreSinglesTheCoefficientsAreNot) {
    EXPECT_TRUE(edit(13, "0.1"));
    EXPECT_EQ(second().initial_runoff, 0.1F);
    EXPECT_FALSE(edit(13, "4e38")) << "the largest Single is about 3.4e38";
    EXPECT_FALSE(edit(14, "4e38"));
    EXPECT_TRUE(edit(15, "4e38"));
    EXPECT_TRUE(edit(16, "0.025"));
    EXPECT_EQ(second().initial_y, 0.025);
}

TEST_F(SimulationGrid, CommentsKeepTheirText) {
    EXPECT_TRUE(edit(17, " 100% 'quoted' "));
    EXPECT_EQ(second().comments, " 100% 'quoted' ");
}

TEST_F(SimulationGrid, NoOtherColumnCanBeEdited) {
    EXPECT_FALSE(edit(0, "1"));
    EXPECT_FALSE(edit(18, "1"));
    EXPECT_TRUE(untouched());
}

// Leaving a cell.

TEST_F(SimulationGrid, APeriodOf366DaysPassesAnd367AreRefused) {
    // 10/01/1980 to 10/01/1981 are 366 days, both ends included; one
    // day more is 367. Leap days do not matter.
    EXPECT_FALSE(refuses_period(1, day(1980, 10, 1), day(1981, 10, 1)));
    EXPECT_TRUE(refuses_period(1, day(1980, 10, 1), day(1981, 10, 2)));
    EXPECT_FALSE(refuses_period(1, day(1996, 1, 1), day(1996, 12, 31)));
    EXPECT_TRUE(refuses_period(1, day(1996, 1, 1), day(1997, 1, 1)));
}

TEST_F(SimulationGrid, TheEndOfAPeriodMustBeAfterItsStart) {
    EXPECT_TRUE(refuses_period(1, day(1981, 1, 1), day(1981, 1, 1)));
    EXPECT_TRUE(refuses_period(1, day(1981, 1, 2), day(1981, 1, 1)));
    EXPECT_FALSE(refuses_period(1, day(1981, 1, 1), day(1981, 1, 2)));
}

TEST_F(SimulationGrid, ThePeriodOfTheFirstRowIsNotChecked) {
    EXPECT_FALSE(refuses_period(0, day(1980, 10, 1), day(1999, 10, 2)));
    EXPECT_FALSE(refuses_period(0, day(1981, 1, 1), day(1981, 1, 1)));
}

TEST_F(SimulationGrid, APeriodIsCheckedInItsTwoColumnsOnly) {
    second().end = second().start;
    for (int column = 1; column <= 17; ++column) {
        EXPECT_EQ(left_simulation_cell_problem(basin_, 1, column).has_value(), column == 3 || column == 4);
    }
}

TEST_F(SimulationGrid, ACellWithoutADateIsNotAWrongPeriod) {
    second().end.reset();
    EXPECT_EQ(left_simulation_cell_problem(basin_, 1, 3), std::nullopt);
}

TEST_F(SimulationGrid, TheMessageAboutAWrongPeriodHasItsTwoBlanks) {
    second().end = second().start;
    const Message message = left_simulation_cell_problem(basin_, 1, 4).value();
    EXPECT_EQ(message.text, "Date range error!  ");
    EXPECT_EQ(message.title, k_program_title);
    EXPECT_EQ(message.icon, Icon::Stop);
    EXPECT_EQ(message.buttons, Buttons::Ok);
}

TEST_F(SimulationGrid, AWrongDateIsReplacedByTheOneBefore) {
    EXPECT_TRUE(edit(3, "11/15/1980"));
    EXPECT_TRUE(edit(3, "10/01/1995"));
    ASSERT_TRUE(left_simulation_cell_problem(basin_, 1, 3).has_value());
    repair_simulation_cell(basin_, 1, 3);
    EXPECT_THAT(second().start, Optional(day(1980, 11, 15)));
    EXPECT_TRUE(edit(4, "12/31/1999"));
    ASSERT_TRUE(left_simulation_cell_problem(basin_, 1, 4).has_value());
    repair_simulation_cell(basin_, 1, 4);
    EXPECT_THAT(second().end, Optional(day(1981, 9, 30)));
}

TEST_F(SimulationGrid, MaxMinTemperaturesByZoneAreRefusedInColumn7) {
    EXPECT_TRUE(edit(6, "Max/Min"));
    EXPECT_TRUE(edit(7, "By Zone"));
    const Message message = left_simulation_cell_problem(basin_, 1, 7).value();
    EXPECT_EQ(message.text, "Max/min temperatures cannot currently be entered for each zone");
    EXPECT_EQ(message.title, "Max/min temperature problem");
    repair_simulation_cell(basin_, 1, 7);
    EXPECT_EQ(second().temperature, Distribution::Basinwide);
    EXPECT_EQ(left_simulation_cell_problem(basin_, 1, 7), std::nullopt);
}

TEST_F(SimulationGrid, MaxMinChosenLaterGoesUnseenUntilColumn7IsLeft) {
    EXPECT_TRUE(edit(7, "By Zone"));
    EXPECT_TRUE(edit(6, "Max/Min"));
    EXPECT_EQ(left_simulation_cell_problem(basin_, 1, 6), std::nullopt);
    EXPECT_TRUE(left_simulation_cell_problem(basin_, 1, 7).has_value());
}

TEST_F(SimulationGrid, OtherOptionsOfTemperatureByZonePass) {
    EXPECT_TRUE(edit(7, "By Zone"));
    EXPECT_EQ(left_simulation_cell_problem(basin_, 1, 7), std::nullopt) << "no kind is chosen";
    EXPECT_TRUE(edit(6, "Average"));
    EXPECT_EQ(left_simulation_cell_problem(basin_, 1, 7), std::nullopt);
    EXPECT_TRUE(edit(6, "Max/Min"));
    EXPECT_TRUE(edit(8, "By Zone"));
    EXPECT_EQ(left_simulation_cell_problem(basin_, 1, 8), std::nullopt);
}

}  // namespace
}  // namespace nivora
