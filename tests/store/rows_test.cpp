#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// Writes rows into a table, which is created if necessary, and returns what is read back.
template <typename Row>
std::vector<Row> round_trip(const BasinFile& file, const TableSchema& table, const std::vector<Row>& rows) {
    {
        BasinDatabase database = file.open();
        if (!database.has_table(table.name)) database.create_table(table);
        add_rows<Row>(database, table, rows);
    }
    BasinDatabase database = file.open(Access::ReadOnly);
    return read_table<Row>(database, table);
}

/// The fields of the table's first row as stored in the file, separated by blanks.
std::string first_row(const BasinFile& file, const std::string& table,
                      const std::vector<std::string>& fields) {
    std::string text;
    for (const std::string& field : fields) {
        if (!text.empty()) text += ' ';
        text += file.column("SELECT " + quoted_name(field) + " FROM " + quoted_name(table) +
                            " ORDER BY rowid LIMIT 1")
                    .at(0);
    }
    return text;
}

Zone zone_with(const char* id) {
    Zone zone;
    zone.id = id;
    return zone;
}

ParameterRow parameters_of_zone(std::int16_t zone) {
    ParameterRow row;
    row.zone = zone;
    return row;
}

/// Expects all members of a row after its first `skipped` ones to be missing.
template <typename Row>
void expect_missing(const Row& row, int skipped) {
    int position = 0;
    Row::visit(row, [&](const auto& member) {
        if (position++ < skipped) return;
        using Member = std::decay_t<decltype(member)>;
        if constexpr (std::is_floating_point_v<Member>) {
            EXPECT_TRUE(std::isnan(member)) << position;
        } else if constexpr (requires { member.has_value(); }) {
            EXPECT_FALSE(member.has_value()) << position;
        } else {
            ADD_FAILURE() << "the member " << position << " has no missing form";
        }
    });
}

TEST(BasinDescriptionRow, ReplacesTheFormerOne) {
    const BasinFile file;
    {
        BasinDatabase database = file.open();
        write_basin_description(database, {.name = "Ellervane",
                                           .description = "North side",
                                           .zones = 3,
                                           .units = Units::English,
                                           .reference_elevation = 1250.5,
                                           .latitude = -46.25,
                                           .longitude = 7.75});
    }
    EXPECT_EQ(
        first_row(file, "BasinDescription",
                  {"BasinName", "BasinDescription", "Zones", "Units", "RefElev", "Latitude", "Longitude"}),
        "Ellervane North side 3 1 1250.5 -46.25 7.75");
    EXPECT_THAT(file.column("SELECT count(*) FROM BasinDescription"), ElementsAre("1"));
    BasinDatabase database = file.open(Access::ReadOnly);
    const BasinDescription basin = read_basin_description(database);
    EXPECT_EQ(basin.name, "Ellervane");
    EXPECT_EQ(basin.description, "North side");
    EXPECT_EQ(basin.zones, 3);
    EXPECT_EQ(basin.units, Units::English);
    EXPECT_EQ(basin.reference_elevation, 1250.5);
    EXPECT_EQ(basin.latitude, -46.25);
    EXPECT_EQ(basin.longitude, 7.75);
}

TEST(BasinDescriptionRow, KeepsBlankBoxesBlank) {
    const BasinFile file;
    BasinDatabase database = file.open();
    write_basin_description(database, {});
    expect_missing(read_basin_description(database), 0);
}

TEST(ZoneRow, HasItsAspectsFromTheFifthFieldOn) {
    const BasinFile file;
    const Zone zone{.id = "A",
                    .area = 12.5,
                    .elevation = 1800.0,
                    .notes = "steep",
                    .aspects = {{{.share = 10.0, .elevation = 1810.0},
                                 {.share = 20.0, .elevation = 1820.0},
                                 {.share = 30.0, .elevation = 1830.0},
                                 {.share = 40.0, .elevation = 1840.0}}}};
    const auto rows = round_trip<Zone>(file, template_table(k_zone_description), {zone});
    std::vector<std::string> fields;
    for (const Field& field : template_table(k_zone_description).fields) fields.push_back(field.name);
    EXPECT_EQ(first_row(file, "ZoneDescription", fields),
              "A 12.5 1800.0 steep 10.0 1810.0 20.0 1820.0 30.0 1830.0 40.0 1840.0");
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].id, "A");
    EXPECT_EQ(rows[0].area, 12.5);
    EXPECT_EQ(rows[0].elevation, 1800.0);
    EXPECT_EQ(rows[0].notes, "steep");
    EXPECT_EQ(rows[0].aspects[2].share, 30.0);
    EXPECT_EQ(rows[0].aspects[3].elevation, 1840.0);
}

TEST(ZoneRow, KeepsMissingValuesMissing) {
    const BasinFile file;
    const auto rows = round_trip<Zone>(file, template_table(k_zone_description), {zone_with("A")});
    ASSERT_EQ(rows.size(), 1U);
    expect_missing(rows[0], 1);
}

TEST(SimulationRow, StoresInitialRunoffAndThresholdUnderTheNamesOfTheirNeighbours) {
    const BasinFile file;
    const Simulation simulation{.name = "Spring",
                                .run_number = 4,
                                .start = 35156,
                                .end = 35338,
                                .units = Units::English,
                                .temperature_values = 1,
                                .temperature = Distribution::ByZone,
                                .precipitation = Distribution::Basinwide,
                                .lapse_rate = Distribution::ByZone,
                                .runoff_coefficients = Distribution::Basinwide,
                                .critical_temperature = Distribution::ByZone,
                                .recession = Distribution::ByZone,
                                .initial_runoff = 12.5F,
                                .precipitation_threshold = 0.75F,
                                .initial_x = 0.884,
                                .initial_y = 0.0677,
                                .comments = "none"};
    const auto rows = round_trip<Simulation>(file, template_table(k_simulation_index), {simulation});
    EXPECT_EQ(first_row(file, "SimulationIndex",
                        {"SimName", "SimRunNumber", "SimStartDate", "SimEndDate", "SimUnits", "SimTempType",
                         "SimTemp_Distribution", "SimP_Distribution", "SimLR_Distribution",
                         "SimCoeff_Distribution", "SimTcrit_Distribution"}),
              "Spring 4 35156 35338 1 1 1 0 1 0 1");
    EXPECT_EQ(first_row(file, "SimulationIndex",
                        {"SimInitialRunoff", "SimPrecipThreshold", "SimX", "SimY", "SimAlt1X"}),
              "1 12.5 0.75 0.884 0.0677");
    ASSERT_EQ(rows.size(), 1U);
    for (int column = 1; column <= 17; ++column) {
        EXPECT_EQ(rows[0].text(column), simulation.text(column)) << column;
        EXPECT_EQ(rows[0].value(column), simulation.value(column)) << column;
    }
    EXPECT_EQ(rows[0].initial_runoff, 12.5F);
    EXPECT_EQ(rows[0].comments, "none");
}

TEST(SimulationRow, KeepsEmptyCellsEmpty) {
    const BasinFile file;
    Simulation named;
    named.name = "Spring";
    const auto rows = round_trip<Simulation>(file, template_table(k_simulation_index), {named});
    ASSERT_EQ(rows.size(), 1U);
    EXPECT_EQ(rows[0].name, "Spring");
    expect_missing(rows[0], 1);
}

TEST(PhysicalDataRow, GoesInAndOut) {
    const BasinFile file;
    const PhysicalRow row{.zone = 2,
                          .date = 36526,
                          .runoff = 10.5F,
                          .tmax = 4.25F,
                          .tmin = -3.5F,
                          .tavg = 0.375F,
                          .precip = 1.25F,
                          .sca = 0.5F,
                          .net_radiation = 99.0F};
    const auto rows = round_trip<PhysicalRow>(file, template_table(k_physical_data), {row, {}});
    EXPECT_EQ(first_row(file, "PhysicalData",
                        {"Zone", "Date", "Runoff", "Tmax", "Tmin", "Tavg", "Precip", "SCA", "NetRadiation"}),
              "2 36526 10.5 4.25 -3.5 0.375 1.25 0.5 99.0");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].zone, 2);
    EXPECT_EQ(rows[0].date, 36526);
    EXPECT_EQ(rows[0].runoff, 10.5F);
    EXPECT_EQ(rows[0].tmax, 4.25F);
    EXPECT_EQ(rows[0].tmin, -3.5F);
    EXPECT_EQ(rows[0].tavg, 0.375F);
    EXPECT_EQ(rows[0].precip, 1.25F);
    EXPECT_EQ(rows[0].sca, 0.5F);
    EXPECT_EQ(rows[0].net_radiation, 99.0F);
    expect_missing(rows[1], 2);
}

TEST(ParameterTableRow, GoesInAndOut) {
    const BasinFile file;
    const ParameterRow row{.zone = 3,
                           .date = 36526,
                           .tcrit = 0.75F,
                           .lag_hours = 18.0F,
                           .lapse_rate = 0.65F,
                           .an = 0.45F,
                           .cs = 0.8F,
                           .cr = 0.7F,
                           .rca = 1,
                           .xcoeff = 0.884,
                           .ycoeff = 0.0677};
    const auto rows = round_trip<ParameterRow>(file, parameter_table("Spring"), {row, {}});
    EXPECT_EQ(first_row(file, "Spring", {"Zone", "Date", "Tcrit", "LagTime", "RCA", "Xcoeff", "Ycoeff"}),
              "3 36526 0.75 18.0 1 0.884 0.0677");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].zone, 3);
    EXPECT_EQ(rows[0].date, 36526);
    EXPECT_EQ(rows[0].tcrit, 0.75F);
    EXPECT_EQ(rows[0].lag_hours, 18.0F);
    EXPECT_EQ(rows[0].lapse_rate, 0.65F);
    EXPECT_EQ(rows[0].an, 0.45F);
    EXPECT_EQ(rows[0].cs, 0.8F);
    EXPECT_EQ(rows[0].cr, 0.7F);
    EXPECT_EQ(rows[0].rca, 1);
    EXPECT_EQ(rows[0].xcoeff, 0.884);
    EXPECT_EQ(rows[0].ycoeff, 0.0677);
    expect_missing(rows[1], 2);
}

TEST(MonthlyAveragesRow, GoesInAndOut) {
    const BasinFile file;
    const MonthlyRow row{
        .zone = 1, .month = "Feb", .tmax = 4.5F, .tmin = -6.5F, .tavg = -1.0F, .precip = 8.25F};
    const auto rows = round_trip<MonthlyRow>(file, basin_averages_table(), {row, {}});
    EXPECT_EQ(first_row(file, "BasinAverages", {"Zone", "Month", "TMaxN", "TMinN", "TAvgN", "PrecipN"}),
              "1 Feb 4.5 -6.5 -1.0 8.25");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].zone, 1);
    EXPECT_EQ(rows[0].month, "Feb");
    EXPECT_EQ(rows[0].tmax, 4.5F);
    EXPECT_EQ(rows[0].tmin, -6.5F);
    EXPECT_EQ(rows[0].tavg, -1.0F);
    EXPECT_EQ(rows[0].precip, 8.25F);
    expect_missing(rows[1], 2);
}

TEST(ScenarioIndexTableRow, IsReadBackAsWrittenWithTheHalfDayOfItsDefault) {
    const BasinFile file;
    const ScenarioIndexRow row{.simulation = "Spring",
                               .scenario = "Warm +2\u00B0",
                               .winter_end_date = 35156.5,
                               .creation_date = 36526.25,
                               .comments = "x"};
    const auto rows = round_trip<ScenarioIndexRow>(file, template_table(k_scenario_index), {row, {}});
    EXPECT_EQ(first_row(file, "ClimateScenarioIndex",
                        {"SimulationFile", "ScenarioFile", "WinterEndDate", "CreationDate", "Comments"}),
              "Spring Warm +2\u00B0 35156.5 36526.25 x");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].simulation, "Spring");
    EXPECT_EQ(rows[0].scenario, "Warm +2\u00B0");
    EXPECT_EQ(rows[0].winter_end_date, 35156.5);
    EXPECT_EQ(rows[0].creation_date, 36526.25);
    EXPECT_EQ(rows[0].comments, "x");
    expect_missing(rows[1], 2);
}

TEST(ScenarioTableRow, GoesInAndOut) {
    const BasinFile file;
    const ScenarioRow row{
        .variable = 70000, .start = 35156, .end = 35338, .action = 2, .factor = 1.1F, .zones = 0};
    const auto rows = round_trip<ScenarioRow>(file, scenario_table("Warm"), {row, {}});
    EXPECT_EQ(first_row(file, "Warm", {"VarParm", "StartDate", "EndDate", "EditAction", "Zones"}),
              "70000 35156 35338 2 0");
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[0].variable, 70000);
    EXPECT_EQ(rows[0].start, 35156);
    EXPECT_EQ(rows[0].end, 35338);
    EXPECT_EQ(rows[0].action, 2);
    EXPECT_EQ(rows[0].factor, 1.1F);
    EXPECT_EQ(rows[0].zones, 0);
    expect_missing(rows[1], 0);
}

TEST(Rows, StayInTheOrderInWhichTheyWereStored) {
    const BasinFile file;
    const std::vector<PhysicalRow> rows{
        {.zone = 2, .date = 10}, {.zone = 1, .date = 20}, {.zone = 1, .date = 5}};
    const auto read = round_trip<PhysicalRow>(file, template_table(k_physical_data), rows);
    ASSERT_EQ(read.size(), 3U);
    EXPECT_EQ(read[0].date, 10);
    EXPECT_EQ(read[1].date, 20);
    EXPECT_EQ(read[2].date, 5);
}

TEST(Rows, AreAddedAfterTheExistingOnes) {
    const BasinFile file;
    const TableSchema table = template_table(k_zone_description);
    round_trip<Zone>(file, table, {zone_with("A")});
    const auto rows = round_trip<Zone>(file, table, {zone_with("B"), zone_with("C")});
    ASSERT_EQ(rows.size(), 3U);
    EXPECT_EQ(rows[0].id + rows[1].id + rows[2].id, "ABC");
    EXPECT_EQ(round_trip<Zone>(file, table, {}).size(), 3U);
}

TEST(Rows, AreFoundUnderATableNameInAnyCase) {
    const BasinFile file;
    round_trip<ParameterRow>(file, parameter_table("\u00D6tztal"), {parameters_of_zone(7)});
    const auto rows = round_trip<ParameterRow>(file, parameter_table("\u00F6TZTAL"), {parameters_of_zone(8)});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].zone, 8);
}

TEST(Rows, WithAnInfiniteNumberAreRefused) {
    const BasinFile file;
    BasinDatabase database = file.open();
    const std::vector<PhysicalRow> rows{{.zone = 1, .tmax = std::numeric_limits<float>::infinity()}};
    EXPECT_EQ(refused([&] { add_rows<PhysicalRow>(database, template_table(k_physical_data), rows); }),
              StoreFault::Value);
    EXPECT_THAT(read_table<PhysicalRow>(database, template_table(k_physical_data)), IsEmpty());
}

TEST(Rows, WithAValueThatDoesNotFitAreRefusedOnReading) {
    const BasinFile file;
    file.change("INSERT INTO PhysicalData (Zone, Date) VALUES (40000, 36526)");
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_EQ(refusal_text([&] {
                  static_cast<void>(read_table<PhysicalRow>(database, template_table(k_physical_data)));
              }),
              "The field 'Zone' holds a number that is out of range.");
}

TEST(ClearTable, RemovesAllRowsAndKeepsTheTable) {
    const BasinFile file;
    round_trip<Zone>(file, template_table(k_zone_description), {zone_with("A"), zone_with("B")});
    BasinDatabase database = file.open();
    clear_table(database, "ZONEDESCRIPTION");
    EXPECT_THAT(read_table<Zone>(database, template_table(k_zone_description)), IsEmpty());
}

}  // namespace
}  // namespace nivora
