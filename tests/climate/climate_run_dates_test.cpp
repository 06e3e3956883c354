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

TEST_F(ClimateDatesTest, WithoutASimulationStepOneIsRefused) {
    open_six_days();
    basin.current_row.reset();
    EXPECT_EQ(step(1), StepOutcome::Refused);
    EXPECT_EQ(last_message().message.text, "Please check the start/end dates for this simulation!");
}

}  // namespace
}  // namespace nivora
