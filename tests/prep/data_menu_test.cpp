// What the Data menu checks and asks before it opens a view of daily data.
#include "prep/data_menu.h"

#include "prep/daily_editor.h"
#include "prep/simulation_grid.h"
#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class DataMenu : public PrepTest {
protected:
    /// The simulation "wet" of two days, with all its rows in both tables.
    DataMenu() {
        make_parameter_table("wet");
        select("wet", october(1), october(2));
        add_parameters("wet", {parameter_day(1, october(1), 0.5F), parameter_day(1, october(2)),
                               parameter_day(2, october(1)), parameter_day(2, october(2))});
        add_physical({{.zone = 1, .date = october(1), .runoff = 1.5F},
                      {.zone = 1, .date = october(2)},
                      {.zone = 2, .date = october(1)},
                      {.zone = 2, .date = october(2)}});
        prep_.record = {.first = october(1), .last = october(2), .zones = 2, .count = 4};
        prep_.Edit_Locked = true;
    }

    DataOutcome choose(DataEntry entry) { return mnuDataOpt_Click(context_, database_, entry); }

    ParameterRow first_values() const {
        ParameterRow row;
        row.tcrit = row.lag_hours = row.lapse_rate = row.an = row.cs = row.cr = 4.0F;
        row.rca = std::int16_t{1};
        row.xcoeff = row.ycoeff = 4.0;
        return row;
    }
};

constexpr const char* k_incomplete =
    "This simulation, wet, is missing data.  Add the additional daily records?";

TEST_F(DataMenu, TheDefinitionOpensInTheModeOfAnEdit) {
    EXPECT_EQ(choose(DataEntry::SimulationDefinition), DataOutcome::ShowDefinition);
    EXPECT_EQ(prep_.SimOptions_Mode, SimOptionsMode::Edit);
    EXPECT_EQ(prep_.working_record.definition.name, "wet");
    EXPECT_FALSE(prep_.Edit_Locked);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenu, TheScenariosAreShownOnceTheRowsAreThere) {
    EXPECT_EQ(choose(DataEntry::Scenarios), DataOutcome::ShowScenarios);
    EXPECT_EQ(prep_.window_title, "") << "no view is prepared";
}

TEST_F(DataMenu, ParametersPrepareTheViewOfTheSimulationsTable) {
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.Data_View, DataView::Parameters);
    EXPECT_EQ(prep_.query.table, "wet");
    EXPECT_THAT(prep_.query.fields, ElementsAre("Date", "LapseRate", "Tcrit", "AN", "LagTime", "CS", "Cr",
                                                "RCA", "Xcoeff", "Ycoeff"));
    EXPECT_EQ(prep_.query.period, (Period{october(1), october(2)}));
    EXPECT_EQ(prep_.window_title, "Edit simulation parameters");
    EXPECT_EQ(prep_.caption_prefix, "Parameter table for simulation ");
    EXPECT_FALSE(prep_.Edit_Locked);
}

TEST_F(DataMenu, VariablesOfASimulationPrepareTheViewOfItsPeriod) {
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.Data_View, DataView::PhysicalData);
    EXPECT_EQ(prep_.query.table, "PhysicalData");
    EXPECT_THAT(prep_.query.fields,
                ElementsAre("Date", "Runoff", "Tmax", "Tmin", "Tavg", "SCA", "Precip", "NetRadiation"));
    EXPECT_EQ(prep_.query.period, (Period{october(1), october(2)}));
    EXPECT_EQ(prep_.window_title, "Edit basin variables");
    EXPECT_EQ(prep_.caption_prefix, "Basin variables for simulation ");
}

TEST_F(DataMenu, VariablesOfAllAreNotBoundToAPeriod) {
    basin_.Current_Sim_Name = "<All>";
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.query.period, std::nullopt);
}

TEST_F(DataMenu, ResultsPrepareTheViewOfAllTheirFieldsButTheZone) {
    database_.create_table(sim_results_table());
    EXPECT_EQ(choose(DataEntry::Results), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.Data_View, DataView::Results);
    EXPECT_EQ(prep_.query.table, "SimResults");
    ASSERT_EQ(prep_.query.fields.size(), 56U);
    EXPECT_EQ(prep_.query.fields.front(), "Date");
    EXPECT_EQ(prep_.query.fields.at(1), "ActualQ");
    EXPECT_EQ(prep_.query.fields.back(), "AZMwork");
    EXPECT_EQ(prep_.window_title, "Simulation results");
    EXPECT_EQ(prep_.caption_prefix, "Calculated value table for simulation ");
}

TEST_F(DataMenu, MissingResultsEndTheCommandSilently) {
    EXPECT_EQ(choose(DataEntry::Results), DataOutcome::Stopped);
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(prep_.Data_View, DataView::PhysicalData);
}

TEST_F(DataMenu, WithoutASimulationsTableAnEntryEndsSilently) {
    Delete_Simulation(context_, database_, 0);
    for (const DataEntry entry :
         {DataEntry::SimulationDefinition, DataEntry::Scenarios, DataEntry::Parameters, DataEntry::Results}) {
        EXPECT_EQ(choose(entry), DataOutcome::Stopped);
    }
    EXPECT_EQ(messages(), 0U);
}

// Rows that are missing.

TEST_F(DataMenu, MissingParametersAreAskedAboutBeforeEveryEntry) {
    database_.execute("DELETE FROM wet WHERE Zone = 2");
    for (const DataEntry entry :
         {DataEntry::SimulationDefinition, DataEntry::Scenarios, DataEntry::Parameters, DataEntry::Results}) {
        dialogs_.then(Answer::No);
        EXPECT_EQ(choose(entry), DataOutcome::Stopped);
        EXPECT_EQ(last_message().text, k_incomplete);
        EXPECT_EQ(last_message().title, "Incomplete parameter table");
        EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    }
    EXPECT_TRUE(prep_.Edit_Locked) << "a No stops before all else";
}

TEST_F(DataMenu, MissingVariablesHaveTheirOwnQuestion) {
    database_.execute("DELETE FROM PhysicalData");
    dialogs_.then(Answer::No);
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::Stopped);
    EXPECT_EQ(last_message().text,
              "This simulation, wet, requires daily variables not found in the basin's physical database.\n"
              "Add the additional daily records?");
    EXPECT_EQ(last_message().title, "Incomplete physical database");
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
}

TEST_F(DataMenu, TheRowsOfTheWholeTableAreCountedNotThoseOfThePeriod) {
    basin_.simulations[0].start = october(20);
    basin_.simulations[0].end = october(21);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenu, MissingParametersAreAddedAfterTheirViewWasOpened) {
    choose(DataEntry::Parameters);
    database_.execute("DELETE FROM wet");
    prep_.working_record.first_values = first_values();
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT DISTINCT An FROM wet"), ElementsAre("4.0"));
}

TEST_F(DataMenu, MissingParametersAreNotAddedInTheModeOfTheVariables) {
    database_.execute("DELETE FROM wet");
    prep_.working_record.first_values = first_values();
    dialogs_.then(Answer::Yes);
    // The mode is still that of the daily variables, and these are complete.
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_THAT(days("wet"), IsEmpty());
    EXPECT_EQ(days("PhysicalData").size(), 4U);
}

TEST_F(DataMenu, MissingParametersGoIntoTheTableOfTheSimulationNotOfTheLastView) {
    choose(DataEntry::Parameters);
    make_parameter_table("dry");
    select("dry", october(5), october(6));
    prep_.working_record.first_values = first_values();
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_EQ(dialogs_.messages()[0].message.text,
              "This simulation, dry, is missing data.  Add the additional daily records?");
    EXPECT_THAT(last_message().text, testing::StartsWith("The parameter table for this simulation"));
    EXPECT_THAT(days("dry"), ElementsAre("1 5", "1 6", "2 5", "2 6"));
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT An FROM wet"), ElementsAre("0.5", "-", "-", "-")) << "no value was overwritten";
}

TEST_F(DataMenu, AfterViewingTheResultsTheDaysGoIntoTheSimulationsTableAndTheResultsStay) {
    database_.create_table(sim_results_table());
    ASSERT_EQ(choose(DataEntry::Results), DataOutcome::ShowEditor);
    make_parameter_table("dry");
    select("dry", october(5), october(5));
    // The mode is still that of the results: it has its own question and adds days without values.
    dialogs_.then(Answer::Yes).then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::SimulationDefinition), DataOutcome::ShowDefinition);
    EXPECT_EQ(last_message().text, " message 2");
    EXPECT_THAT(days("SimResults"), IsEmpty());
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT Zone, An FROM dry"), ElementsAre("1 -", "2 -"));
}

TEST_F(DataMenu, DaysThatAreAddedAreAChangeOfTheBasin) {
    choose(DataEntry::Parameters);
    database_.execute("DELETE FROM wet WHERE Zone = 2");
    prep_.working_record.first_values = first_values();
    dialogs_.then(Answer::No);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::Stopped);
    EXPECT_FALSE(basin_.Basin_Changed);
    EXPECT_FALSE(basin_.Input_Changed);
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_TRUE(basin_.Input_Changed);
}

TEST_F(DataMenu, VariablesThatAreAddedAreAChangeOfTheBasin) {
    database_.execute("DELETE FROM PhysicalData WHERE Zone = 2");
    dialogs_.then(Answer::Yes).then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_TRUE(basin_.Input_Changed);
}

TEST_F(DataMenu, TheDefinitionOfASimulationWithoutATableOpensWithoutAQuestion) {
    database_.drop_table("wet");
    EXPECT_EQ(choose(DataEntry::SimulationDefinition), DataOutcome::ShowDefinition);
    EXPECT_EQ(prep_.SimOptions_Mode, SimOptionsMode::Edit);
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::Stopped) << "there is nothing to look at";
}

TEST_F(DataMenu, AMissingFirstValueEndsTheCommandSilently) {
    choose(DataEntry::Parameters);
    database_.execute("DELETE FROM wet");
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::Stopped);
    ASSERT_EQ(messages(), 2U);
    EXPECT_THAT(last_message().text, testing::StartsWith("The parameter table for this simulation"));
}

TEST_F(DataMenu, MissingVariablesAreAddedEmptyWithASecondQuestion) {
    database_.execute("DELETE FROM PhysicalData WHERE Zone = 2");
    dialogs_.then(Answer::Yes).then(Answer::Yes);
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT Tavg FROM PhysicalData WHERE Zone = 2"), ElementsAre("-", "-"));
}

TEST_F(DataMenu, ANoToTheSecondQuestionStillOpensTheView) {
    database_.execute("DELETE FROM PhysicalData WHERE Zone = 2");
    dialogs_.then(Answer::Yes).then(Answer::No);
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_EQ(days("PhysicalData").size(), 2U);
}

// The period.

TEST_F(DataMenu, ARowWithoutDatesIsCheckedOverTheDaysOfTheTable) {
    basin_.simulations[0].start.reset();
    basin_.simulations[0].end.reset();
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_EQ(prep_.query.period, (Period{october(1), october(2)}));
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenu, WithoutDatesAndRowsAnEntryEndsSilently) {
    basin_.simulations[0].start.reset();
    database_.execute("DELETE FROM wet");
    EXPECT_EQ(choose(DataEntry::SimulationDefinition), DataOutcome::Stopped);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenu, ParametersNeedTheDatesOfTheirRow) {
    basin_.simulations[0].end.reset();
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::Stopped);
    EXPECT_EQ(last_message().text, "Please check the start/end dates for this simulation!");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(DataMenu, ParametersNeedASelectedRow) {
    basin_.current_row.reset();
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::Stopped);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DataMenu, ParametersGiveTheCurrentSimulationItsDates) {
    basin_.Current_Start = october(9);
    basin_.Current_End = october(9);
    EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::ShowEditor);
    EXPECT_THAT(basin_.Current_Start, Optional(october(1)));
    EXPECT_THAT(basin_.Current_End, Optional(october(2)));
}

TEST_F(DataMenu, ParametersOfAWrongPeriodAreRefusedBeforeAnyQuestion) {
    database_.execute("DELETE FROM wet WHERE Zone = 2");
    // October 1, 1980 to October 2, 1981 are 367 days.
    for (const DayCount end : {*day_count({1981, 10, 2}), october(1), october(0)}) {
        basin_.simulations[0].end = end;
        EXPECT_EQ(choose(DataEntry::Parameters), DataOutcome::Stopped);
        EXPECT_EQ(last_message().text, "Date range error!  366 ");
        EXPECT_EQ(last_message().icon, Icon::Stop);
    }
}

TEST_F(DataMenu, OtherEntriesTakeAnyPeriod) {
    basin_.simulations[0].end = october(1);
    EXPECT_EQ(choose(DataEntry::SimulationDefinition), DataOutcome::ShowDefinition);
    EXPECT_EQ(choose(DataEntry::Variables), DataOutcome::ShowEditor);
    EXPECT_EQ(messages(), 0U);
}

}  // namespace
}  // namespace nivora
