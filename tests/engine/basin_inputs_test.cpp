#include "engine/basin_inputs.h"

#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;

class BasinInputsTest : public EngineTest {
protected:
    void SetUp() override { start(2, 36800, 3); }
};

TEST_F(BasinInputsTest, AreTheLeadingNumbersOfTheBoxes) {
    basin.reference_elevation_text = " 1250.5 m";
    basin.basin_area_text = "1728";
    const BasinInputs inputs = basin_inputs(basin);
    EXPECT_EQ(inputs.reference_elevation, 1250.5);
    EXPECT_EQ(inputs.basin_area, 1728.0);
    EXPECT_EQ(inputs.zones, 2U);
    EXPECT_THAT(inputs.areas, ElementsAre(0.0, 864.0, 864.0));
    EXPECT_THAT(inputs.elevations, ElementsAre(0.0, 1000.0, 1500.0));
}

TEST_F(BasinInputsTest, ZonesWithoutARowOrANumberCountAs0) {
    basin.ZoneCount = 3;
    basin.zones[1].area.reset();
    basin.reference_elevation_text = "";
    const BasinInputs inputs = basin_inputs(basin);
    EXPECT_THAT(inputs.areas, ElementsAre(0.0, 864.0, 0.0, 0.0));
    EXPECT_THAT(inputs.elevations, ElementsAre(0.0, 1000.0, 1500.0, 0.0));
    EXPECT_EQ(inputs.reference_elevation, 0.0);
}

TEST_F(BasinInputsTest, OnTheSouthernHemisphereTheMeltSeasonStartsInOctober) {
    EXPECT_EQ(basin_inputs(basin).melt_season_start, 4);
    basin.latitude_text = "-33.5";
    EXPECT_EQ(basin_inputs(basin).melt_season_start, 10);
}

TEST_F(BasinInputsTest, AnOptionThatIsNotGivenIsNotBasinwide) {
    EXPECT_TRUE(basin_inputs(basin).lapse_rate_basinwide);
    basin.simulations[0].lapse_rate.reset();
    EXPECT_FALSE(basin_inputs(basin).lapse_rate_basinwide);
    basin.simulations[0].temperature_values = std::int16_t{1};
    EXPECT_TRUE(basin_inputs(basin).temperature_max_min);
}

TEST_F(BasinInputsTest, WithoutASimulationThereAreItsDefaults) {
    basin.current_row.reset();
    const BasinInputs inputs = basin_inputs(basin);
    EXPECT_EQ(inputs.units, std::nullopt);
    EXPECT_EQ(inputs.start, std::nullopt);
    EXPECT_FALSE(inputs.temperature_basinwide);
}

TEST_F(BasinInputsTest, AMissingThresholdGetsTheDefaultOfTheUnitsAndChangesTheBasin) {
    EXPECT_EQ(settle_precipitation_threshold(basin), 6.0F);
    EXPECT_FALSE(basin.Basin_Changed);

    basin.simulations[0].precipitation_threshold.reset();
    basin.Units_Code = Units::English;
    EXPECT_EQ(settle_precipitation_threshold(basin), 2.36F);
    EXPECT_EQ(basin.simulations[0].precipitation_threshold, 2.36F);
    EXPECT_TRUE(basin.Basin_Changed);
    EXPECT_TRUE(basin.Input_Changed);
}

}  // namespace
}  // namespace nivora
