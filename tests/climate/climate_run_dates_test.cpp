#include "tests/climate/climate_run_fixture.h"

namespace nivora {
namespace {

using ClimateDatesTest = ClimateRunTest;

TEST_F(ClimateDatesTest, ASimulationWithoutAStartOrAnEndIsRefusedBeforeAnythingIsBuilt) {
    for (const char* field : {"SimStartDate", "SimEndDate"}) {
        SCOPED_TRACE(field);
        std::filesystem::remove(file);
        open_six_days();
        change(std::string{"UPDATE SimulationIndex SET "} + field + " = NULL");
        basin = opened_basin(file);
        EXPECT_EQ(step(1), StepOutcome::Refused);
        expect_stop(last_message(), "Please check the start/end dates for this simulation!", k_program_title);
        BasinDatabase database{file, Access::ReadOnly};
        EXPECT_FALSE(database.has_table("SimResults"));
    }
}

TEST_F(ClimateDatesTest, AnInvalidPeriodIsRefusedBeforeAnythingIsBuilt) {
    open_six_days();
    Simulation& simulation = *basin.current_simulation();
    for (const DayCount end : {*simulation.start + 366, *simulation.start}) {
        simulation.end = end;
        EXPECT_EQ(step(1), StepOutcome::Refused);
        expect_stop(last_message(), "Date range error!  366 ", k_program_title);
    }
    BasinDatabase database{file, Access::ReadOnly};
    EXPECT_FALSE(database.has_table("SimResults"));
}

TEST_F(ClimateDatesTest, WithoutASimulationStepOneIsRefused) {
    open_six_days();
    basin.current_row.reset();
    EXPECT_EQ(step(1), StepOutcome::Refused);
    EXPECT_EQ(last_message().message.text, "Please check the start/end dates for this simulation!");
}

TEST_F(ClimateDatesTest, OfTwoRowsOfAScenarioTheLastCountsWhicheverSimulationItNames) {
    open_six_days();
    {
        BasinDatabase database{file, Access::ReadWrite};
        add_rows<ScenarioIndexRow>(
            database, template_table(k_scenario_index),
            std::vector{ScenarioIndexRow{.simulation = "Another",
                                         .scenario = k_scenario,
                                         .winter_end_date = static_cast<double>(SixDays::winter_end() + 2),
                                         .creation_date = std::nullopt,
                                         .comments = "the second"},
                        ScenarioIndexRow{.simulation = "Another",
                                         .scenario = "Colder",
                                         .winter_end_date = static_cast<double>(SixDays::first_day()),
                                         .creation_date = std::nullopt,
                                         .comments = "of no concern"}});
    }
    run_to(1);
    EXPECT_EQ(climate.WinterEndDate, SixDays::winter_end() + 2);
    EXPECT_EQ(run.RunEnd, SixDays::winter_end() + 2);
    EXPECT_EQ(climate.ScenarioComments, "the second");
}

}  // namespace
}  // namespace nivora
