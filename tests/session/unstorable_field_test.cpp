// The message of a save about a box or a cell whose value no file can hold.
#include "session/basin_rows.h"
#include "tests/session/basin_life_fixture.h"

#include <gmock/gmock.h>

#include <limits>

namespace nivora {
namespace {

constexpr double k_infinite = std::numeric_limits<double>::infinity();
const std::string k_title = "Missing/invalid simulation data\n";
const std::string k_too_large =
    " holds a number that is too large to be stored. Enter it anew and save again.";

class UnstorableFieldTest : public BasinLifeTest {
protected:
    void SetUp() override {
        BasinLifeTest::SetUp();
        define_basin(2);
    }
    void expect_refused(const std::string& field) {
        EXPECT_FALSE(life_.Save_Grids(session_.basin.Work_File));
        EXPECT_EQ(last_message().text, k_title + field + k_too_large);
    }
};

TEST_F(UnstorableFieldTest, ABasinThatCanBeStoredHasNoSuchField) {
    EXPECT_FALSE(unstorable_field(session_.basin).has_value());
    EXPECT_TRUE(life_.Save_Grids(session_.basin.Work_File));
}

TEST_F(UnstorableFieldTest, ACellOfTheSimulationsIsNamedWithItsSimulationAndColumn) {
    session_.basin.simulations[1].precipitation_threshold = std::numeric_limits<float>::infinity();
    expect_refused("The cell 'Precipitation Threshold' of the simulation 'run 2'");
    session_.basin.simulations[1].initial_runoff = -std::numeric_limits<float>::infinity();
    expect_refused("The cell 'Initial Runoff (CMS)' of the simulation 'run 2'");
    ASSERT_TRUE(desktop_.shown.has_value());
    EXPECT_EQ(desktop_.shown->part, UnstorableField::Part::Simulations);
    EXPECT_EQ(desktop_.shown->row, 1U);
    EXPECT_EQ(desktop_.shown->column, 13);
}

TEST_F(UnstorableFieldTest, ACellOfTheZonesIsNamedWithItsZoneAndColumn) {
    session_.basin.zones[1].aspects[3].elevation = k_infinite;
    expect_refused("The cell 'Avg Elevation, SW Aspect (m)' of zone 2");
    EXPECT_EQ(desktop_.shown->column, 11);
    session_.basin.zones[0].area = k_infinite;
    expect_refused("The cell 'Zone Area (km²)' of zone 1");
    EXPECT_EQ(desktop_.shown->part, UnstorableField::Part::Zones);
    EXPECT_EQ(desktop_.shown->row, 0U);
    EXPECT_EQ(desktop_.shown->column, 2);
}

TEST_F(UnstorableFieldTest, ABoxIsNamedByItsCaption) {
    const std::string digits(400, '9');
    session_.basin.longitude_text = digits;
    expect_refused("The box 'Longitude (dec)'");
    EXPECT_EQ(desktop_.shown->column, static_cast<int>(BasinBox::Longitude));
    session_.basin.latitude_text = digits;
    expect_refused("The box 'Latitude (dec)'");
    session_.basin.reference_elevation_text = digits;
    expect_refused("The box 'Reference Elevation (m)'");
    EXPECT_EQ(desktop_.shown->part, UnstorableField::Part::Box);
}

TEST_F(UnstorableFieldTest, AWorkingFileThatCannotBeWrittenHasItsOwnReason) {
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.drop_table("ZoneDescription");
    }
    EXPECT_FALSE(life_.Save_Grids(session_.basin.Work_File));
    EXPECT_THAT(last_message().text,
                testing::AllOf(testing::StartsWith(k_title), testing::HasSubstr("ZoneDescription")));
    EXPECT_FALSE(desktop_.shown.has_value());
}

}  // namespace
}  // namespace nivora
