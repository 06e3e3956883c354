#include "climate/scenario_definitions.h"
#include "tests/climate/scenario_basin.h"
#include "tests/climate/scenario_fixture.h"

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;

/// Values that no window writes but that a damaged file may contain.
class DamagedScenario : public ScenarioTest {};

TEST_F(DamagedScenario, AFactorThatIsNotNeededIsNotRead) {
    for (const char* factor : {"'two'", "1e39", "NULL"}) {
        SCOPED_TRACE(factor);
        const int above_all = 9;
        EXPECT_EQ(apply({edit(1, static_cast<EditAction>(above_all), 4.0F)}), 0);
        file.change(std::string{"UPDATE warm SET EditFactor = "} + factor);
        EXPECT_EQ(Apply_Scenario(database, table, basin, "warm", dialogs), 0);
        EXPECT_THAT(dialogs.messages(), IsEmpty());
    }
}

TEST_F(DamagedScenario, TheLargestNumberOfAZoneIsAZoneThatTheBasinLacks) {
    ASSERT_EQ(apply({edit(1, EditAction::Add, 4.0F)}), 0);
    for (const int variable : {0, 3}) {
        for (const int action :
             {static_cast<int>(EditAction::Add), static_cast<int>(EditAction::Normalize)}) {
            file.change("UPDATE warm SET Zones = 2147483647, VarParm = " + std::to_string(variable) +
                        ", EditAction = " + std::to_string(action));
            const SimResults before = table;
            static_cast<void>(Apply_Scenario(database, table, basin, "warm", dialogs));
            EXPECT_THAT(changed_columns(before, table), IsEmpty());
        }
    }
}

using UnreadableScenario = ScenarioBasinTest;

TEST_F(UnreadableScenario, ComesWithoutRowsAndLeavesTheOthers) {
    ASSERT_TRUE(make("warm"));
    ASSERT_TRUE(make("cold"));
    add_rows<ScenarioRow>(database, scenario_table("warm"), std::vector{scenario_row(1, 1.5F)});
    add_rows<ScenarioRow>(database, scenario_table("cold"), std::vector{scenario_row(1, -1.5F)});
    database.execute("UPDATE warm SET StartDate = 'spring'");
    const auto scenarios = open_scenarios(database, "wet", dialogs);
    ASSERT_EQ(scenarios.size(), 2U);
    EXPECT_THAT(scenarios[0].rows, IsEmpty());
    EXPECT_THAT(scenarios[0].fault, HasSubstr("StartDate"));
    EXPECT_EQ(scenarios[1].rows.size(), 1U);
    EXPECT_EQ(scenarios[1].fault, "");
    const Message told = unreadable_scenario_message(scenarios[0]);
    EXPECT_EQ(told.icon, Icon::Stop);
    EXPECT_THAT(told.text, HasSubstr("'warm'"));
    EXPECT_THAT(told.text, HasSubstr("StartDate"));
    EXPECT_THAT(told.text, HasSubstr("Delete the scenario"));
}

TEST_F(UnreadableScenario, IsATableOfAnotherKindThatTheIndexNames) {
    ASSERT_TRUE(make("warm"));
    database.execute("UPDATE ClimateScenarioIndex SET ScenarioFile = 'BasinDescription'");
    const auto scenarios = open_scenarios(database, "wet", dialogs);
    ASSERT_EQ(scenarios.size(), 1U);
    EXPECT_NE(scenarios[0].fault, "");
    // Deleting it removes the reference but not the basin's table.
    dialogs.then(Answer::Yes);
    EXPECT_TRUE(delete_scenario(database, "wet", "BasinDescription", dialogs));
    EXPECT_TRUE(database.has_table("BasinDescription"));
}

}  // namespace
}  // namespace nivora
