// The codes in a scenario's rows, the rules of the grid that edits them, and the winter end date.
#include "climate/scenario_definitions.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::Optional;

constexpr int k_variable_column = 1;
constexpr int k_action_column = 4;
constexpr int k_zones_column = 6;

DayCount day_of(int year, int month, int day) { return day_count({year, month, day}).value(); }

/// A row with a variable and optionally an action.
ScenarioRow row_of(std::optional<int> variable, std::optional<int> action = std::nullopt) {
    ScenarioRow row;
    row.variable = variable;
    row.action = action;
    row.factor = 1.5F;
    return row;
}

TEST(ScenarioCodes, TheFirstThreeVariablesAndTheActionsHaveTheirTexts) {
    EXPECT_STREQ(scenario_variable_text(0), "M/M Temperature");
    EXPECT_STREQ(scenario_variable_text(1), "Average Temperature");
    EXPECT_STREQ(scenario_variable_text(2), "Precipitation");
    EXPECT_STREQ(edit_action_text(0), "Add/subtract to each");
    EXPECT_STREQ(edit_action_text(1), "Multiply each");
    EXPECT_STREQ(edit_action_text(2), "Shift backward");
    EXPECT_STREQ(edit_action_text(3), "Shift forward");
    EXPECT_STREQ(edit_action_text(4), "Normalize");
}

TEST(ScenarioCodes, ZonesAreLettersAfterAll) {
    EXPECT_EQ(scenario_zone_text(0), "All");
    EXPECT_EQ(scenario_zone_text(1), "A");
    EXPECT_EQ(scenario_zone_text(16), "P");
}

TEST(ScenarioCodes, CodesThatStandForNothingHaveNoText) {
    for (const int code : {-1, 12, 1000}) EXPECT_STREQ(scenario_variable_text(code), "") << code;
    for (const int code : {-1, 5, 1000}) EXPECT_STREQ(edit_action_text(code), "") << code;
    for (const int code : {-1, 17, 1000}) EXPECT_EQ(scenario_zone_text(code), "") << code;
}

TEST(ScenarioCodes, EachTextIsItsOwnAndReadsBackInAnyCase) {
    for (int code = 0; code <= k_last_scenario_variable; ++code) {
        const std::string text = scenario_variable_text(code);
        EXPECT_NE(text, "");
        EXPECT_EQ(text.find(':'), std::string::npos) << "a colon divides the parts of an edit";
        EXPECT_THAT(scenario_variable_code(text), Optional(code));
        EXPECT_THAT(scenario_variable_code(std::to_string(code)), Optional(code));
    }
    for (int code = 0; code <= 4; ++code) {
        EXPECT_THAT(edit_action_code(edit_action_text(code)), Optional(code));
        EXPECT_THAT(edit_action_code(std::to_string(code)), Optional(code));
    }
    for (int code = 0; code <= 16; ++code) {
        EXPECT_THAT(scenario_zone_code(scenario_zone_text(code)), Optional(code));
        EXPECT_THAT(scenario_zone_code(std::to_string(code)), Optional(code));
    }
    EXPECT_THAT(scenario_variable_code(" pRECIPITATION "), Optional(2));
    EXPECT_THAT(edit_action_code("normalize"), Optional(4));
    EXPECT_THAT(scenario_zone_code("all"), Optional(0));
    EXPECT_THAT(scenario_zone_code("b"), Optional(2));
}

TEST(ScenarioCodes, OtherTextsAndNumbersAreNotCodes) {
    for (const char* text : {"", " ", "12", "-1", "1.0", "2 x", "99999999999", "Temperature", "+1"})
        EXPECT_EQ(scenario_variable_code(text), std::nullopt) << text;
    for (const char* text : {"", "5", "-1", "Shift", "Add"})
        EXPECT_EQ(edit_action_code(text), std::nullopt) << text;
    for (const char* text : {"", "17", "-1", "Q", "AA", "Zone A"})
        EXPECT_EQ(scenario_zone_code(text), std::nullopt) << text;
}

TEST(ScenarioActionList, OffersNormalizingForAverageTemperatureAndPrecipitationAlone) {
    for (const int variable : {1, 2})
        EXPECT_THAT(edit_action_list(variable), ElementsAre("Add/subtract to each", "Multiply each",
                                                            "Shift backward", "Shift forward", "Normalize"));
    for (const std::optional<int> variable :
         {std::optional<int>{}, std::optional{0}, std::optional{3}, std::optional{11}, std::optional{99}})
        EXPECT_THAT(edit_action_list(variable),
                    ElementsAre("Add/subtract to each", "Multiply each", "Shift backward", "Shift forward"));
}

TEST(ScenarioVariable, OfWhichThereIsNoNormalBlanksTheActionNormalize) {
    for (const std::optional<int> variable :
         {std::optional<int>{}, std::optional{0}, std::optional{3}, std::optional{11}}) {
        ScenarioRow row = row_of(1, 4);
        const RowChange change = set_scenario_code(row, k_variable_column, variable);
        EXPECT_EQ(row.variable, variable);
        EXPECT_EQ(row.action, std::nullopt);
        EXPECT_EQ(row.factor, 1.5F);
        EXPECT_FALSE(change.beep);
        EXPECT_TRUE(change.kept);
    }
}

TEST(ScenarioVariable, WithANormalKeepsTheActionNormalize) {
    ScenarioRow row = row_of(1, 4);
    set_scenario_code(row, k_variable_column, 2);
    EXPECT_THAT(row.action, Optional(4));
    set_scenario_code(row, k_variable_column, 1);
    EXPECT_THAT(row.action, Optional(4));
}

TEST(ScenarioVariable, LeavesAnyOtherActionAsItIs) {
    for (const int action : {0, 1, 2, 3}) {
        ScenarioRow row = row_of(5, action);
        set_scenario_code(row, k_variable_column, 0);
        EXPECT_THAT(row.action, Optional(action));
    }
}

TEST(ScenarioAction, ShiftForwardGoesBackToAddingBelowVariable4) {
    for (const int variable : {0, 1, 2, 3}) {
        ScenarioRow row = row_of(variable, 1);
        const RowChange change = set_scenario_code(row, k_action_column, 3);
        EXPECT_THAT(row.action, Optional(0)) << variable;
        EXPECT_TRUE(change.beep);
        EXPECT_FALSE(change.kept);
    }
    for (const int variable : {4, 5, 11}) {
        ScenarioRow row = row_of(variable, 1);
        const RowChange change = set_scenario_code(row, k_action_column, 3);
        EXPECT_THAT(row.action, Optional(3)) << variable;
        EXPECT_FALSE(change.beep);
        EXPECT_TRUE(change.kept);
    }
}

TEST(ScenarioAction, ShiftBackwardHasNoTest) {
    for (const int variable : {0, 1, 2, 3, 4}) {
        ScenarioRow row = row_of(variable);
        const RowChange change = set_scenario_code(row, k_action_column, 2);
        EXPECT_THAT(row.action, Optional(2));
        EXPECT_FALSE(change.beep);
        EXPECT_TRUE(change.kept);
    }
}

TEST(ScenarioAction, NormalizeBeepsButStaysForAllButTheAverageTemperature) {
    for (const int variable : {0, 2, 3, 11}) {
        ScenarioRow row = row_of(variable);
        const RowChange change = set_scenario_code(row, k_action_column, 4);
        EXPECT_THAT(row.action, Optional(4)) << variable;
        EXPECT_TRUE(change.beep);
        EXPECT_TRUE(change.kept);
    }
    ScenarioRow row = row_of(1);
    EXPECT_FALSE(set_scenario_code(row, k_action_column, 4).beep);
    EXPECT_THAT(row.action, Optional(4));
}

TEST(ScenarioAction, OfARowWithoutAVariableIsKeptWithoutABeep) {
    for (const int action : {0, 1, 2, 3, 4}) {
        ScenarioRow row = row_of(std::nullopt);
        const RowChange change = set_scenario_code(row, k_action_column, action);
        EXPECT_THAT(row.action, Optional(action));
        EXPECT_FALSE(change.beep);
        EXPECT_TRUE(change.kept);
    }
}

TEST(ScenarioAction, MayBeEmptied) {
    ScenarioRow row = row_of(1, 3);
    set_scenario_code(row, k_action_column, std::nullopt);
    EXPECT_EQ(row.action, std::nullopt);
}

TEST(ScenarioZones, AreTakenAsTheyAre) {
    ScenarioRow row = row_of(1, 4);
    EXPECT_FALSE(set_scenario_code(row, k_zones_column, 2).beep);
    EXPECT_THAT(row.zones, Optional(2));
    set_scenario_code(row, k_zones_column, std::nullopt);
    EXPECT_EQ(row.zones, std::nullopt);
    EXPECT_THAT(row.action, Optional(4));
}

TEST(ScenarioRowLeft, WithNormalizeSetsItsFactorTo0AndKeepsTheAction) {
    ScenarioRow row = row_of(1, 4);
    EXPECT_TRUE(leave_scenario_row(row));
    EXPECT_EQ(row.factor, 0.0F);
    EXPECT_THAT(row.action, Optional(4));
    EXPECT_FALSE(leave_scenario_row(row));
    row.factor = k_missing;
    EXPECT_TRUE(leave_scenario_row(row));
    EXPECT_EQ(row.factor, 0.0F);
}

TEST(ScenarioRowLeft, WithAnyOtherActionKeepsItsFactor) {
    for (const std::optional<int> action : {std::optional<int>{}, std::optional{0}, std::optional{1},
                                            std::optional{2}, std::optional{3}, std::optional{5}}) {
        ScenarioRow row = row_of(1, action);
        EXPECT_FALSE(leave_scenario_row(row));
        EXPECT_EQ(row.factor, 1.5F);
    }
}

TEST(DefaultWinterEnd, OfThreeDaysIsTheFirst) {
    // (3 - 1) / 2 - 1 = 0
    EXPECT_EQ(default_winter_end(day_of(1996, 4, 1), day_of(1996, 4, 3)),
              static_cast<double>(day_of(1996, 4, 1)));
}

TEST(DefaultWinterEnd, MayHoldHalfADay) {
    // 1 to 4 April: 3 / 2 - 1 = 0.5
    EXPECT_EQ(default_winter_end(day_of(1996, 4, 1), day_of(1996, 4, 4)),
              static_cast<double>(day_of(1996, 4, 1)) + 0.5);
}

TEST(DefaultWinterEnd, OfAHydrologicalYearLiesADayBeforeItsMiddle) {
    // 1 October 1995 to 30 September 1996 are 365 days apart: 365 / 2 - 1 = 181.5 days after the start.
    // October to February have 31 + 30 + 31 + 31 + 29 = 152 days, so 181 days lead to 30 March.
    EXPECT_EQ(default_winter_end(day_of(1995, 10, 1), day_of(1996, 9, 30)),
              static_cast<double>(day_of(1996, 3, 30)) + 0.5);
}

class WinterEnd : public testing::Test {
protected:
    WinterEnd() {
        basin.Current_Start = day_of(1995, 10, 1);
        basin.Current_End = day_of(1996, 9, 30);
    }

    [[nodiscard]] std::string problem(std::string_view text) const {
        const auto message = winter_end_problem(basin, text);
        return message ? message->text : "";
    }

    BasinState basin;
};

TEST_F(WinterEnd, MayBeAnyDayOfTheSimulation) {
    for (const char* text :
         {"10/01/1995", "09/30/1996", "9/30/1996", "02/29/1996", "1996-03-31", " 04/01/1996 "})
        EXPECT_EQ(problem(text), "") << text;
}

TEST_F(WinterEnd, OutsideTheSimulationIsInvalid) {
    for (const char* text : {"09/30/1995", "10/01/1996", "01/01/2300"})
        EXPECT_EQ(problem(text), "Invalid winter end date!") << text;
    basin.Current_End.reset();
    EXPECT_EQ(problem("04/01/1996"), "Invalid winter end date!");
}

TEST_F(WinterEnd, MustBeADate) {
    for (const char* text :
         {"", "  /  /    ", "02/30/1996", "13/01/1996", "soon", "04/01/", "1996", "04/01/19960"})
        EXPECT_EQ(problem(text), "Invalid date value!") << text;
}

}  // namespace
}  // namespace nivora
