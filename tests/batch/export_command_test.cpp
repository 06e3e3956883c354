// The export command: tables as CSV, and the targets that it refuses.
#include "tests/batch/batch_call.h"

#include <gmock/gmock.h>

#include <cstring>
#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

template <typename Number>
bool same_bits(Number a, Number b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

TEST(Export, WritesAHeaderLineAndALineForEachRow) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    EXPECT_EQ(batch_folder.exported("PhysicalData"),
              "Zone,Date,Runoff,Tmax,Tmin,Tavg,Precip,SCA,NetRadiation\n"
              "1,1996-04-01,10,12,4,8,0.5,0.4,0\n"
              "1,1996-04-02,10,12,4,8,0.5,0.4,0\n"
              "1,1996-04-03,10,12,4,8,0.5,0.4,0\n"
              "2,1996-04-01,10,6,-2,2,0.7,0.9,0\n"
              "2,1996-04-02,10,6,-2,2,0.7,0.9,0\n"
              "2,1996-04-03,10,6,-2,2,0.7,0.9,0\n");
}

TEST(Export, AParameterTableIsFoundByTheSimulationsName) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--name", "a \"wet\" year"}).status, 0);
    const std::vector<std::string> lines = lines_of(batch_folder.exported("a \"wet\" year"));
    ASSERT_EQ(lines.size(), 7U);
    EXPECT_EQ(lines[0], "Zone,Date,Tcrit,LagTime,LapseRate,An,Cs,Cr,RCA,Xcoeff,Ycoeff");
    EXPECT_EQ(lines[1], "1,1996-04-01,1,18,0.65,0.4,0.9,0.7,1,0.9,0.05");
    EXPECT_EQ(lines[6], "2,1996-04-03,1.5,12,0.6,0.5,0.8,0.6,0,0.9,0.05");
}

TEST(Export, TablesAreFoundInAnyCase) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    EXPECT_EQ(batch_folder.exported("PHYSICALDATA"), batch_folder.exported("PhysicalData"));
}

TEST(Export, AMissingValueIsEmpty) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.execute("UPDATE PhysicalData SET Runoff = NULL, NetRadiation = NULL WHERE rowid = 2");
    EXPECT_EQ(lines_of(batch_folder.exported("PhysicalData")).at(2), "1,1996-04-02,,12,4,8,0.5,0.4,");
}

TEST(Export, ATableWithoutRowsIsItsHeaderLine) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    EXPECT_EQ(batch_folder.exported("ClimateScenarioIndex"),
              "SimulationFile,ScenarioFile,WinterEndDate,CreationDate,Comments\n");
}

TEST(Export, TextsAreQuotedWhereNecessary) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    batch_folder.execute(
        "INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile, Comments) VALUES "
        "('plain', 'with, comma', 'with \"quotes\"'), ('', NULL, 'two' || char(10) || 'lines'), "
        "(' blank', 'blank ', 'Gr' || char(252) || 'nbach')");
    EXPECT_EQ(batch_folder.exported("ClimateScenarioIndex"),
              "SimulationFile,ScenarioFile,WinterEndDate,CreationDate,Comments\n"
              "plain,\"with, comma\",,,\"with \"\"quotes\"\"\"\n"
              "\"\",,,,\"two\nlines\"\n"
              "\" blank\",\"blank \",,,Gr\xc3\xbcnbach\n");
}

TEST(Export, ADateWithATimePartShowsTheTime) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    batch_folder.execute(
        "INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile, WinterEndDate) "
        "VALUES ('a', 'b', " +
        std::to_string(day(1996, 3, 31)) + ".5)");
    EXPECT_EQ(lines_of(batch_folder.exported("ClimateScenarioIndex")).at(1), "a,b,1996-03-31T12:00:00,,");
}

TEST(Export, SinglesReadBackToTheSameBits) {
    const std::vector<float> values{0.1F,
                                    1.0F / 3.0F,
                                    16777217.0F,
                                    3.4028235e38F,
                                    std::numeric_limits<float>::min(),
                                    std::numeric_limits<float>::denorm_min(),
                                    -123456.789F,
                                    7.0e-10F};
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    std::vector<PhysicalRow> rows;
    for (const float value : values) rows.push_back({.zone = 1, .date = 35000, .runoff = value});
    {
        BasinDatabase database{batch_folder.basin(), Access::ReadWrite};
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }
    const std::vector<std::string> lines = lines_of(batch_folder.exported("PhysicalData"));
    ASSERT_EQ(lines.size(), values.size() + 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        const std::size_t at = std::string_view{"1,1995-10-28,"}.size();
        EXPECT_TRUE(same_bits(std::strtof(lines[i + 1].c_str() + at, nullptr), values[i])) << lines[i + 1];
    }
    // 0.1 is the shortest text of the Single nearest to 0.1, whose exact value is 0.100000001490116...
    EXPECT_THAT(lines[1], StartsWith("1,1995-10-28,0.1,"));
}

TEST(Export, DoublesReadBackToTheSameBits) {
    const std::vector<double> values{0.1,    1.0 / 3.0, 0.30000000000000004, 1.7976931348623157e308,
                                     5e-324, -1e22};
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    {
        BasinDatabase database{batch_folder.basin(), Access::ReadWrite};
        std::vector<Zone> zones;
        for (const double value : values) {
            Zone& zone = zones.emplace_back();
            zone.id = "A";
            zone.area = value;
        }
        add_rows<Zone>(database, template_table(k_zone_description), zones);
    }
    const std::vector<std::string> lines = lines_of(batch_folder.exported("ZoneDescription"));
    ASSERT_EQ(lines.size(), values.size() + 1);
    for (std::size_t i = 0; i < values.size(); ++i) {
        EXPECT_TRUE(same_bits(std::strtod(lines[i + 1].c_str() + 2, nullptr), values[i])) << lines[i + 1];
    }
    EXPECT_THAT(lines[1], StartsWith("A,0.1,"));
}

TEST(Export, ReplacesAnOlderCsv) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.folder().write("table.csv", std::string(100000, 'x'));
    EXPECT_THAT(batch_folder.exported("BasinDescription"), StartsWith("BasinName,"));
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb", "table.csv"));
}

TEST(Export, LeavesTheBasinAsItIs) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::string before = batch_folder.bytes();
    static_cast<void>(batch_folder.exported("PhysicalData"));
    EXPECT_TRUE(batch_folder.bytes() == before);
}

TEST(Export, AMissingTableIsReportedAndWritesNothing) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    for (const char* table :
         {"SimResults", "nosuch", "", "sqlite_schema", "PhysicalData.key", "x\"; DROP TABLE alder"}) {
        SCOPED_TRACE(table);
        const BatchResult result =
            batch({"export", batch_folder.basin(), table, "--csv", batch_folder.path("table.csv")});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(result.err,
                  std::string{"Export failed: The basin file has no table '"} + table + "'. [OK]\n");
        EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb"));
    }
}

TEST(Export, AMissingTableLeavesAnOlderCsv) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.folder().write("table.csv", "older");
    EXPECT_EQ(
        batch({"export", batch_folder.basin(), "nosuch", "--csv", batch_folder.path("table.csv")}).status, 1);
    EXPECT_EQ(file_bytes(batch_folder.path("table.csv")), "older");
}

TEST(Export, ATargetThatCannotBeWrittenIsReported) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    std::filesystem::create_directory(batch_folder.path("folder"));
    for (const std::string& target :
         {std::string{"folder"}, std::string{"none/table.csv"}, std::string(300, 'n') + ".csv"}) {
        SCOPED_TRACE(target);
        const BatchResult result =
            batch({"export", batch_folder.basin(), "alder", "--csv", batch_folder.path(target)});
        EXPECT_EQ(result.status, 1);
        EXPECT_EQ(lines_of(result.err).size(), 1U);
        EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb", "folder"));
    }
}

TEST(Export, TheBasinItselfIsNotATarget) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::string before = batch_folder.bytes();
    for (const std::string& target : {batch_folder.basin(), batch_folder.path("./basin.mdb")}) {
        const BatchResult result = batch({"export", batch_folder.basin(), "alder", "--csv", target});
        EXPECT_EQ(result.status, 1);
        EXPECT_THAT(result.err, StartsWith("Export failed: "));
        EXPECT_TRUE(batch_folder.bytes() == before);
    }
}

// A CSV file replaces its target by name: a device or a pipe would be gone for every other program.
TEST(Export, AnythingButARegularFileIsNotATarget) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::string pipe = batch_folder.path("pipe.csv");
    if (std::system(("mkfifo '" + pipe + "'").c_str()) != 0) GTEST_SKIP() << "no named pipes here";
    const BatchResult result = batch({"export", batch_folder.basin(), "alder", "--csv", pipe});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, StartsWith("Export failed: "));
    EXPECT_TRUE(std::filesystem::is_fifo(pipe));
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb", "pipe.csv"));
}

TEST(Export, ATargetThatIsALinkIsWrittenWhereTheLinkPoints) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.folder().write("real.csv", "older");
    std::error_code refused;
    std::filesystem::create_symlink(batch_folder.path("real.csv"), batch_folder.path("link.csv"), refused);
    if (refused) GTEST_SKIP() << "no links here: " << refused.message();
    EXPECT_EQ(batch({"export", batch_folder.basin(), "alder", "--csv", batch_folder.path("link.csv")}).status,
              0);
    EXPECT_TRUE(std::filesystem::is_symlink(batch_folder.path("link.csv")));
    EXPECT_THAT(file_bytes(batch_folder.path("real.csv")), StartsWith("Zone,Date,"));
}

TEST(Export, ABasinThatCannotBeReadIsReported) {
    const BatchFolder batch_folder;
    const BatchResult missing =
        batch({"export", batch_folder.basin(), "alder", "--csv", batch_folder.path("t.csv")});
    EXPECT_EQ(missing.status, 1);
    EXPECT_THAT(missing.err, HasSubstr("basin.mdb' does not exist."));
    const BatchResult text =
        batch({"export", batch_folder.file(), "alder", "--csv", batch_folder.path("t.csv")});
    EXPECT_EQ(text.status, 1);
    EXPECT_THAT(text.err, HasSubstr("alder.NVR' is not a Nivora basin file"));
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR"));
}

TEST(Export, AValueThatItsFieldCannotHoldIsReportedAndWritesNothing) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    batch_folder.execute("UPDATE PhysicalData SET Tmax = 'warm' WHERE rowid = 3");
    const BatchResult result =
        batch({"export", batch_folder.basin(), "PhysicalData", "--csv", batch_folder.path("t.csv")});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("'Tmax'"));
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

}  // namespace
}  // namespace nivora
