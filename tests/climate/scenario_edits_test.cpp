// Additions and multiplications of a scenario, and the faults that end its application.
#include "tests/climate/scenario_fixture.h"

#include <cmath>
#include <functional>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

using ScenarioAddition = ScenarioTest;
using ScenarioMultiplication = ScenarioTest;
using ScenarioFaults = ScenarioTest;

/// Gives each value of each column except zone and date a number of its own: 100 times the column's position,
/// plus the row, plus 0.5 if the column belongs to the changed climate.
void number_columns(SimResults& table) {
    const auto fields = sim_results_table().fields;
    std::size_t position = 0;
    SimResults::visit(table, [&](auto& column) {
        using Value = typename std::remove_reference_t<decltype(column)>::value_type;
        const std::string& name = fields[position].name;
        const bool changed_climate = name.size() > 2 && name.substr(name.size() - 2) == "CC";
        if constexpr (std::is_floating_point_v<Value>) {
            for (std::size_t row = 0; row < column.size(); ++row)
                column[row] = static_cast<Value>(100.0 * static_cast<double>(position) +
                                                 static_cast<double>(row) + (changed_climate ? 0.5 : 0.0));
        }
        ++position;
    });
}

TEST_F(ScenarioAddition, WorksOnTheColumnOfItsCode) {
    const std::vector<std::vector<std::string>> expected{
        {"TMaxCC", "TminCC"}, {"TAvgCC"}, {"PrecipCC"}, {"TMaxCC"}, {"TAvgCC"},
        {"PrecipCC"},         {"TMaxCC"}, {"TAvgCC"},   {"CSCC"},   {"CRCC"}};
    for (const EditAction action : {EditAction::Add, EditAction::Multiply}) {
        for (int code = 0; code < 10; ++code) {
            SCOPED_TRACE(testing::Message()
                         << edit_action_text(static_cast<int>(action)) << ", code " << code);
            number_columns(table);
            const SimResults before = table;
            EXPECT_EQ(apply({edit(code, action, 2.0F)}), 0);
            EXPECT_EQ(changed_columns(before, table), expected[static_cast<std::size_t>(code)]);
        }
    }
}

TEST_F(ScenarioAddition, TakesThePresentColumnOfItsCodeAsSource) {
    // Column positions from 0, in row 0: TMax 3, Tmin 5, TAvg 7, Precip 9, CS 24, CR 26. Each expected value
    // is 100 times the position, plus the 2 that is added.
    const std::vector<std::pair<int, float>> expected{{1, 702.0F}, {2, 902.0F},  {3, 302.0F},
                                                      {4, 702.0F}, {5, 902.0F},  {6, 302.0F},
                                                      {7, 702.0F}, {8, 2402.0F}, {9, 2602.0F}};
    const std::vector<std::vector<float> SimResults::*> targets{
        &SimResults::TAvgCC, &SimResults::PrecipCC, &SimResults::TMaxCC,
        &SimResults::TAvgCC, &SimResults::PrecipCC, &SimResults::TMaxCC,
        &SimResults::TAvgCC, &SimResults::CSCC,     &SimResults::CRCC};
    for (std::size_t i = 0; i < expected.size(); ++i) {
        SCOPED_TRACE(expected[i].first);
        number_columns(table);
        EXPECT_EQ(apply({edit(expected[i].first, EditAction::Add, 2.0F)}), 0);
        EXPECT_EQ((table.*targets[i])[0], expected[i].second);
    }
}

TEST_F(ScenarioAddition, HasNothingToWorkOnFromCode10To13) {
    for (const EditAction action : {EditAction::Add, EditAction::Multiply}) {
        for (int code = 10; code <= 13; ++code) {
            SCOPED_TRACE(code);
            number_columns(table);
            const SimResults before = table;
            EXPECT_EQ(apply({edit(code, action, 2.0F)}), 1);
            EXPECT_THAT(changed_columns(before, table), IsEmpty());
            EXPECT_EQ(last_message().message.title, k_definition_error);
            EXPECT_EQ(last_message().message.icon, Icon::Stop);
        }
    }
    EXPECT_EQ(last_message().message.text, "Row 1: 'Multiply each' can't be applied to '13'.");
}

TEST_F(ScenarioAddition, OfMaximumAndMinimumLeavesTheAverage) {
    set(table.TMax, 1, {10, 11, 12, 13, 14, 15});
    set(table.Tmin, 1, {-5, -4, -3, -2, -1, 0});
    set(table.TAvgCC, 1, {2, 3, 4, 5, 6, 7});
    EXPECT_EQ(apply({edit(0, EditAction::Add, -2.5F)}), 0);
    EXPECT_THAT(days(table.TMaxCC), ElementsAre(7.5F, 8.5F, 9.5F, 10.5F, 11.5F, 12.5F));
    EXPECT_THAT(days(table.TminCC), ElementsAre(-7.5F, -6.5F, -5.5F, -4.5F, -3.5F, -2.5F));
    EXPECT_THAT(days(table.TAvgCC), ElementsAre(2.0F, 3.0F, 4.0F, 5.0F, 6.0F, 7.0F));
}

TEST_F(ScenarioAddition, HoldsFromTheStartDateToTheEndDate) {
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 2, 4)}), 0);
    for (const int zone : {1, 2})
        EXPECT_THAT(days(table.TAvgCC, zone), ElementsAre(0.0F, 4.0F, 4.0F, 4.0F, 0.0F, 0.0F));
}

TEST_F(ScenarioAddition, OfOneDayChangesThatDay) {
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 6, 6)}), 0);
    EXPECT_THAT(days(table.TAvgCC), ElementsAre(0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 4.0F));
}

TEST_F(ScenarioAddition, ToOneZoneLeavesTheOthers) {
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 1, 6, 2)}), 0);
    EXPECT_THAT(days(table.TAvgCC, 1), testing::Each(0.0F));
    EXPECT_THAT(days(table.TAvgCC, 2), testing::Each(4.0F));
}

TEST_F(ScenarioAddition, ToAllZonesEndsAtTheZonesOfTheBasin) {
    basin.ZoneCount = 1;
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F)}), 0);
    EXPECT_THAT(days(table.TAvgCC, 1), testing::Each(4.0F));
    EXPECT_THAT(days(table.TAvgCC, 2), testing::Each(0.0F));
}

TEST_F(ScenarioAddition, ToAZoneThatTheBasinLacksSilentlyChangesNothing) {
    for (const int zone : {3, -1, 40000}) {
        const SimResults before = table;
        EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 1, 6, zone)}), 0);
        EXPECT_EQ(apply({edit(1, EditAction::Multiply, 4.0F, 1, 6, zone)}), 0);
        EXPECT_THAT(changed_columns(before, table), IsEmpty());
    }
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioAddition, OverReversedOrDistantDatesSilentlyChangesNothing) {
    const SimResults before = table;
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 4, 3), edit(1, EditAction::Add, 4.0F, -9, 0),
                     edit(1, EditAction::Add, 4.0F, 7, 99)}),
              0);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioAddition, IsReplacedByALaterRowOnTheSameDays) {
    // Day 1 has only the first row, days 2 to 4 the second, days 5 and 6 none: the factors never add up.
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 1, 3), edit(1, EditAction::Add, 1.0F, 2, 4)}), 0);
    EXPECT_THAT(days(table.TAvgCC), ElementsAre(4.0F, 1.0F, 1.0F, 1.0F, 0.0F, 0.0F));
}

TEST_F(ScenarioAddition, TakesAPrecipitationBelowZero) {
    set(table.Precip, 1, {0, 5, 0, 1, 0, 2});
    EXPECT_EQ(apply({edit(2, EditAction::Add, -2.0F)}), 0);
    EXPECT_THAT(days(table.PrecipCC), ElementsAre(-2.0F, 3.0F, -2.0F, -1.0F, -2.0F, 0.0F));
}

TEST_F(ScenarioAddition, LeavesAMissingValueMissing) {
    set(table.TAvg, 1, {1, 2, 3, 4, 5, 6});
    set(table.TAvgCC, 1, {1, 2, 3, 4, 5, 6});
    table.TAvg[at(1, 2)] = k_missing;
    EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 1, 3)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 5.0F);
    EXPECT_TRUE(std::isnan(table.TAvgCC[at(1, 2)]));
    EXPECT_EQ(table.TAvgCC[at(1, 3)], 7.0F);
}

TEST_F(ScenarioMultiplication, OfPrecipitationScalesEachDay) {
    set(table.Precip, 1, {0, 5, 0, 1, 0.5, 2});
    EXPECT_EQ(apply({edit(2, EditAction::Multiply, 1.5F)}), 0);
    EXPECT_THAT(days(table.PrecipCC), ElementsAre(0.0F, 7.5F, 0.0F, 1.5F, 0.75F, 3.0F));
}

TEST_F(ScenarioMultiplication, TakesSevenDigitsOfItsFactor) {
    // The Single nearest to 1.23456789 is 1.2345678806. Its text has seven
    // digits, 1.234568; times 10^7 that is 12345680.
    fill(table.TAvg, 1.0e7);
    EXPECT_EQ(apply({edit(1, EditAction::Multiply, 1.23456789F)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 12345680.0F);
}

TEST_F(ScenarioMultiplication, TakesTheTextOfItsFactorAsADouble) {
    // 9 x 0.1 = 0.9; the nearest Single is 0.89999998. The Single nearest to 0.1 is 0.1000000015; 9 times
    // that, 0.9000000134, would be nearer to the next Single, 0.90000004.
    fill(table.TAvg, 9.0);
    EXPECT_EQ(apply({edit(1, EditAction::Multiply, 0.1F)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 0.9F);
}

TEST_F(ScenarioMultiplication, ReadsFactorsWithAPowerOfTen) {
    fill(table.TAvg, 3.0);
    EXPECT_EQ(
        apply({edit(1, EditAction::Multiply, 2.0e9F, 1, 1), edit(1, EditAction::Multiply, -2.0e-6F, 2, 2)}),
        0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 6.0e9F);
    EXPECT_EQ(table.TAvgCC[at(1, 2)], -6.0e-6F);
}

TEST_F(ScenarioMultiplication, BeyondASingleLeavesNoRowOfItsStatement) {
    // 2 x 3e38 exceeds the largest Single, 3.4028e38. The row before it stays applied.
    fill(table.TAvg, 1.0);
    table.TAvg[at(2, 6)] = 3.0e38F;
    EXPECT_EQ(apply({edit(1, EditAction::Add, 1.0F, 1, 1), edit(1, EditAction::Multiply, 2.0F, 1, 6)}), 1);
    EXPECT_THAT(days(table.TAvgCC), ElementsAre(2.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F));
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(last_message(), "Overflow", k_definition_error);
}

TEST_F(ScenarioMultiplication, BeyondASingleInTheMinimumLeavesTheMaximumToo) {
    fill(table.TMax, 1.0);
    table.Tmin[at(1, 4)] = -3.0e38F;
    const SimResults before = table;
    EXPECT_EQ(apply({edit(0, EditAction::Multiply, 2.0F)}), 1);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
    expect_stop(last_message(), "Overflow", k_definition_error);
}

TEST_F(ScenarioFaults, AnActionCodeAbove4IsSkippedAndNeedsNoFactor) {
    for (const int action : {5, 99, 40000}) {
        ScenarioRow row = edit(1, EditAction::Add, k_missing);
        row.action = action;
        const SimResults before = table;
        EXPECT_EQ(apply({row}), 0);
        EXPECT_THAT(changed_columns(before, table), IsEmpty());
    }
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioFaults, ANegativeActionCodeIsSkipped) {
    ScenarioRow row = edit(1, EditAction::Add, 4.0F);
    row.action = -1;
    const SimResults before = table;
    EXPECT_EQ(apply({row}), 0);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioFaults, ABlankInARowIsAMissingValue) {
    const std::vector<std::function<void(ScenarioRow&)>> blanks{
        [](ScenarioRow& row) { row.variable.reset(); },   [](ScenarioRow& row) { row.start.reset(); },
        [](ScenarioRow& row) { row.end.reset(); },        [](ScenarioRow& row) { row.action.reset(); },
        [](ScenarioRow& row) { row.factor = k_missing; }, [](ScenarioRow& row) { row.zones.reset(); }};
    const std::vector<std::string> columns{"Variable/Parameter", "Start Date",  "End Date",
                                           "Edit Action",        "Edit Factor", "Zones"};
    for (std::size_t at = 0; at < blanks.size(); ++at) {
        const auto& blank = blanks[at];
        fill(table.TAvgCC, 0.0);
        ScenarioRow row = edit(1, EditAction::Add, 9.0F);
        blank(row);
        EXPECT_EQ(apply({edit(1, EditAction::Add, 4.0F, 1, 2), row, edit(1, EditAction::Add, 5.0F)}), 1);
        // The first row stays; the third is never reached.
        EXPECT_THAT(days(table.TAvgCC), ElementsAre(4.0F, 4.0F, 0.0F, 0.0F, 0.0F, 0.0F));
        expect_stop(last_message(), missing_in_row(2, "has no " + columns[at]), k_missing_title);
    }
    EXPECT_EQ(dialogs.messages().size(), blanks.size());
}

TEST_F(ScenarioFaults, AVariableCodeOutsideTheTableIsOne) {
    for (const int code : {14, -1, 40000}) {
        for (const EditAction action : {EditAction::Add, EditAction::Multiply, EditAction::ShiftForward}) {
            const SimResults before = table;
            EXPECT_EQ(apply({edit(code, action, 1.0F)}), 1);
            EXPECT_THAT(changed_columns(before, table), IsEmpty());
            expect_stop(last_message(),
                        "Row 1: there is no variable or parameter with code " + std::to_string(code) + ".",
                        k_definition_error);
        }
    }
}

TEST_F(ScenarioFaults, ATextInARowFaultsThereAndLeavesTheRowsBefore) {
    ASSERT_EQ(apply({edit(1, EditAction::Add, 4.0F)}), 0);
    fill(table.TAvgCC, 0.0);
    file.change("INSERT INTO warm VALUES (1, 'soon', 99999, 0, 1, 0)");
    EXPECT_EQ(Apply_Scenario(database, table, basin, "warm", dialogs), 1);
    EXPECT_THAT(days(table.TAvgCC), testing::Each(4.0F));
    EXPECT_EQ(last_message().message.title, k_definition_error);
    EXPECT_THAT(last_message().message.text, HasSubstr("StartDate"));
}

TEST_F(ScenarioFaults, AFactorBeyondASingleInTheFileIsOne) {
    ASSERT_EQ(apply({edit(1, EditAction::Add, 4.0F)}), 0);
    file.change("UPDATE warm SET EditFactor = 1e39");
    const SimResults before = table;
    EXPECT_EQ(Apply_Scenario(database, table, basin, "warm", dialogs), 1);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
    EXPECT_EQ(last_message().message.title, k_definition_error);
    EXPECT_THAT(last_message().message.text, HasSubstr("EditFactor"));
}

TEST_F(ScenarioFaults, AScenarioWithoutRowsIsRefused) {
    EXPECT_EQ(apply({}), 1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(last_message(), "The selected CC scenario, 'warm', contains no climate change specifications",
                "The current scenario is empty");
}

TEST_F(ScenarioFaults, AScenarioWithoutATableIsRefused) {
    EXPECT_EQ(Apply_Scenario(database, table, basin, "lost", dialogs), 1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(last_message(), "The basin file has no table 'lost'.", k_definition_error);
}

TEST_F(ScenarioFaults, NamesAreFoundInAnyCaseAndWithQuotes) {
    const std::string name = "it's \"warm\"";
    database.create_table(scenario_table(name));
    EXPECT_EQ(Apply_Scenario(database, table, basin, "IT'S \"Warm\"", dialogs), 1);
    EXPECT_EQ(last_message().message.text,
              "The selected CC scenario, 'IT'S \"Warm\"', contains no climate change specifications");
    add_rows<ScenarioRow>(database, scenario_table(name), std::vector{edit(1, EditAction::Add, 4.0F)});
    EXPECT_EQ(Apply_Scenario(database, table, basin, name, dialogs), 0);
    EXPECT_EQ(table.TAvgCC[0], 4.0F);
}

TEST_F(ScenarioFaults, RowsAreTakenInStoredOrder) {
    // The second row starts earlier and has a smaller code, but is still applied second.
    EXPECT_EQ(apply({edit(4, EditAction::Add, 4.0F, 3, 3), edit(1, EditAction::Add, 1.0F, 1, 6)}), 0);
    EXPECT_THAT(days(table.TAvgCC), testing::Each(1.0F));
}

}  // namespace
}  // namespace nivora
