#include "prep/netcdf_export.h"

#include "prep/table_load.h"
#include "store/table_io.h"

#include <gmock/gmock.h>

#include <unistd.h>

#include <cmath>
#include <filesystem>
#include <optional>
#include <stdexcept>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

std::string attribute(const TextAttributes& attributes, const std::string& name) {
    for (const auto& [key, text] : attributes)
        if (key == name) return text;
    return "none";
}

const NetcdfField& field(const NetcdfTable& table, const std::string& name) {
    for (const NetcdfField& one : table.fields)
        if (one.name == name) return one;
    throw std::out_of_range(name);
}

/// A basin of two zones with three days, of which one lacks a row, and one a value.
class NetcdfExportTest : public testing::Test {
protected:
    NetcdfExportTest() {
        std::filesystem::remove(file_);
        BasinDatabase::create_template(file_);
        database_.emplace(file_, Access::ReadWrite);
        BasinDescription basin = read_basin_description(*database_);
        basin.name = "Alder";
        basin.zones = 2;
        basin.units = Units::Metric;
        write_basin_description(*database_, basin);
        const std::string csv =
            "Zone,Date,Runoff,Tavg,Precip\nA,1997-10-01,4.5,-1.5,0.1\nA,1997-10-03,4.25,,0\nB,1997-10-03,,2,"
            "0.5\n";
        const auto source = bytes_of_text(csv);
        const LoadResult loaded = load_table(*database_, source, {.table = "PhysicalData"}, true);
        EXPECT_EQ(loaded.refused, 0);
    }
    ~NetcdfExportTest() override {
        database_.reset();
        std::error_code ignored;
        std::filesystem::remove(file_, ignored);
    }

    std::filesystem::path file_ =
        std::filesystem::temp_directory_path() / ("nivora-netcdf-" + std::to_string(::getpid()) + ".mdb");
    std::optional<BasinDatabase> database_;
};

TEST_F(NetcdfExportTest, AFieldIsZoneByDateWithMissingDays) {
    const NetcdfTable table = netcdf_table(*database_, "PhysicalData", {});
    EXPECT_THAT(table.zones, ElementsAre("A", "B"));
    EXPECT_THAT(table.dates, ElementsAre(35704, 35705, 35706));
    const auto& tavg = field(table, "Tavg").values;
    ASSERT_EQ(tavg.size(), 6U);
    EXPECT_EQ(tavg[0], -1.5);
    EXPECT_EQ(tavg[5], 2.0);
    for (const std::size_t missing : {1U, 2U, 3U, 4U}) EXPECT_TRUE(std::isnan(tavg[missing])) << missing;
    EXPECT_EQ(field(table, "Precip").values[0], static_cast<double>(0.1F));
    EXPECT_EQ(field(table, "Precip").type, NetcdfType::Float);
    EXPECT_EQ(table.fields.size(), 7U);
}

TEST_F(NetcdfExportTest, UnitsAndNamesAreThoseOfTheConventions) {
    const NetcdfTable table = netcdf_table(*database_, "PhysicalData", {});
    EXPECT_EQ(attribute(field(table, "Precip").attributes, "units"), "cm");
    EXPECT_EQ(attribute(field(table, "Runoff").attributes, "units"), "m3 s-1");
    EXPECT_EQ(attribute(field(table, "SCA").attributes, "units"), "1");
    EXPECT_EQ(attribute(field(table, "Tmax").attributes, "cell_methods"), "date: maximum");
    EXPECT_EQ(attribute(field(table, "Tavg").attributes, "standard_name"), "air_temperature");
    EXPECT_EQ(attribute(field(table, "NetRadiation").attributes, "units"), "none");
    EXPECT_EQ(attribute(field(table, "NetRadiation").attributes, "standard_name"), "none");
    EXPECT_EQ(attribute(table.area_attributes, "units"), "km2");
}

TEST_F(NetcdfExportTest, TheFileTellsWhatItIs) {
    NetcdfTable table = netcdf_table(*database_, "PhysicalData", {});
    EXPECT_EQ(attribute(table.attributes, "Conventions"), "CF-1.8");
    EXPECT_EQ(attribute(table.attributes, "title"), "Alder: PhysicalData");
    EXPECT_EQ(attribute(table.attributes, "simulation"), "none");
    table = netcdf_table(*database_, "PhysicalData", {.simulation = "wy1998", .run = "Year round Forecast"});
    EXPECT_EQ(attribute(table.attributes, "simulation"), "wy1998");
    EXPECT_EQ(attribute(table.attributes, "run"), "Year round Forecast");
}

TEST_F(NetcdfExportTest, AFieldOfTheChangedClimateIsToldAsSuch) {
    database_->create_table(sim_results_table());
    const NetcdfTable table = netcdf_table(*database_, "SimResults", {});
    EXPECT_TRUE(table.dates.empty());
    EXPECT_EQ(attribute(field(table, "TAvgCC").attributes, "long_name"),
              "mean air temperature of the day, changed climate");
    EXPECT_EQ(attribute(field(table, "TAvgCC").attributes, "units"), "degC");
    EXPECT_EQ(attribute(field(table, "DailyQ").attributes, "comment"), "stands in the first zone");
    EXPECT_EQ(field(table, "DailyQ").type, NetcdfType::Double);
}

TEST_F(NetcdfExportTest, ATableWithoutDaysIsRefused) {
    try {
        static_cast<void>(netcdf_table(*database_, "ZoneDescription", {}));
        FAIL();
    } catch (const StoreError& error) {
        EXPECT_THAT(error.what(), HasSubstr("The table 'ZoneDescription' has no zones and days"));
    }
}

}  // namespace
}  // namespace nivora
