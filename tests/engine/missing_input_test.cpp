#include "engine/missing_input.h"

#include "engine/run_driver.h"
#include "tests/engine/engine_fixture.h"

namespace nivora {
namespace {

class MissingInputTest : public EngineTest {
protected:
    void SetUp() override { start(2, k_first, 3); }

    /// Runs the stages. @return "zone day field" of the missing variable, the days counted from 1
    std::string found() {
        StatisticsReach statistics = StatisticsReach::Nothing;
        const bool reached_end = Run_Model(table, {basin, run, dialogs}, statistics);
        const auto missing = missing_input(table, basin_inputs(basin), run, reached_end);
        if (!missing) return "nothing";
        return std::to_string(missing->zone) + " " + std::to_string(missing->day - run.RunStart + 1) + " " +
               missing->field;
    }
};

TEST_F(MissingInputTest, ARunThatLacksNothingHasNone) {
    EXPECT_EQ(found(), "nothing");
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(MissingInputTest, FindsTheStationsValueThatStoppedTheZoneInputs) {
    table.TAvg[at(1, 2)] = k_missing;
    table.TAvg[at(1, 3)] = k_missing;
    EXPECT_EQ(found(), "1 2 Tavg");
    EXPECT_EQ(dialogs.messages().size(), 1U);
}

TEST_F(MissingInputTest, FindsPrecipitationAndExtremes) {
    table.Precip[at(1, 3)] = k_missing;
    EXPECT_EQ(found(), "1 3 Precip");
    start(2, k_first, 3);
    simulation().temperature_values = std::int16_t{1};
    table.Tmin[at(1, 1)] = k_missing;
    EXPECT_EQ(found(), "1 1 Tmin");
}

TEST_F(MissingInputTest, FindsTheCoverThatStoppedSnowAndMelt) {
    start(2, date_of(2001, 1, 1), 3);
    fill(table.Precip, 1.0);  // snow, of which the part beside the winter's cover is stored
    fill(table.TAvg, -5.0);
    fill(table.Tcrit, 1.0);
    table.SCA[at(2, 2)] = k_missing;
    EXPECT_EQ(found(), "2 2 SCA");
}

TEST_F(MissingInputTest, FindsTheTemperatureOfAZoneThatHasItsOwn) {
    simulation().temperature = Distribution::ByZone;
    table.TAvg[at(2, 3)] = k_missing;
    EXPECT_EQ(found(), "2 3 Tavg");
}

TEST_F(MissingInputTest, AMissingParameterIsNone) {
    table.LR[at(1, 2)] = k_missing;
    table.Precip[at(1, 2)] = k_missing;  // the lapse rate is needed before
    EXPECT_EQ(found(), "nothing");
    start(2, k_first, 3);
    table.AN[at(1, 2)] = k_missing;  // stops the snow and melt stage
    EXPECT_EQ(found(), "nothing");
    start(2, k_first, 3);
    table.Xcoeff[at(1, 2)] = k_missing;
    EXPECT_EQ(found(), "nothing");
    EXPECT_EQ(dialogs.messages().size(), 3U) << "each stopped a stage";
}

}  // namespace
}  // namespace nivora
