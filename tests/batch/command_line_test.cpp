// The command line itself: help, version, wrong usage, and the commands that list and create basins.
#include "tests/batch/run_basin.h"
#include "tests/support/comma_locale.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(CommandLine, HelpAndVersionSucceed) {
    const BatchResult help = batch({"--help"});
    EXPECT_EQ(help.status, 0);
    for (const char* command : {"import", "simulations", "run", "export", "report", "template", "--refuse"})
        EXPECT_THAT(help.out, HasSubstr(command));
    EXPECT_EQ(help.err, "");
    const BatchResult version = batch({"--version"});
    EXPECT_EQ(version.status, 0);
    EXPECT_EQ(version.out, "Nivora 1.10\n");
    for (const char* command : {"import", "simulations", "run", "evaluate", "export", "report", "template"})
        EXPECT_EQ(batch({command, "--help"}).status, 0);
}

TEST(CommandLine, VersionWithVerboseTellsWhatTheProgramIsMadeOf) {
    for (const std::vector<std::string>& order : {std::vector<std::string>{"--version", "--verbose"},
                                                  std::vector<std::string>{"--verbose", "--version"}}) {
        const BatchResult details = batch(order);
        EXPECT_EQ(details.status, 0);
        EXPECT_THAT(details.out, testing::AllOf(testing::StartsWith("Nivora 1.10\n"), HasSubstr("Compiler:"),
                                                HasSubstr("SQLite")));
    }
}

TEST(CommandLine, WrongUsageHasAStatusOfItsOwnAndAMessage) {
    const RunBasin basin;
    const std::string file = basin.file();
    const std::string mdb = basin.basin();
    const std::string before = basin.bytes();
    const std::vector<std::vector<std::string>> calls{
        {},
        {"melt"},
        {"--melt"},
        {"import"},
        {"import", file},
        {"import", file, mdb, "third"},
        {"import", file, mdb, "--by-zone", "weather"},
        {"import", file, mdb, "--by-zone", "tcrit,weather"},
        {"import", file, mdb, "--by-zone"},
        {"import", file, mdb, "--temperature", "warm"},
        {"import", file, mdb, "--initial-runoff", "much"},
        {"import", file, mdb, "--initial-runoff", ""},
        {"import", file, mdb, "--initial-runoff", "1e39"},
        {"import", file, mdb, "--initial-runoff", "1,5"},
        {"import", file, mdb, "--rain-threshold", "none"},
        {"import", file, mdb, "--latitude", "46.5N"},
        {"import", file, mdb, "--latitude", "nan"},
        {"import", file, mdb, "--kind", "year-round"},
        {"run"},
        {"run", mdb},
        {"run", "--simulation", "alder"},
        {"run", mdb, "--simulation", "alder", "--kind", "daily"},
        {"run", mdb, "--simulation", "alder", "--lag-shares", "half,half"},
        {"run", mdb, "--simulation", "alder", "--lag-shares", "-0.5,1.5"},
        {"run", mdb, "--simulation", "alder", "--no-snow"},
        {"export", mdb},
        {"export", mdb, "alder"},
        {"export", mdb, "--csv", "x.csv"},
        {"simulations"},
        {"simulations", mdb, "--csv", "x.csv"},
        {"template"},
    };
    for (const auto& call : calls) {
        std::string shown;
        for (const std::string& argument : call) shown += " " + argument;
        SCOPED_TRACE(shown);
        const BatchResult result = batch(call);
        EXPECT_EQ(result.status, 2);
        EXPECT_NE(result.err, "");
        EXPECT_EQ(result.out, "");
    }
    EXPECT_TRUE(basin.bytes() == before);
    EXPECT_THAT(basin.names(), ElementsAre("alder.NVR", "basin.mdb"));
}

TEST(CommandLine, RefuseMayComeBeforeOrAfterTheCommand) {
    const RunBasin basin;
    EXPECT_EQ(batch({"--refuse", "import", basin.file(), basin.basin()}).status, 1);
    EXPECT_EQ(batch({"import", basin.file(), basin.basin(), "--refuse"}).status, 1);
    EXPECT_EQ(batch({"import", basin.file(), basin.basin()}).status, 0);
}

TEST(CommandLine, NumbersHaveAPointInEveryLocale) {
    const RunBasin plain;
    const RunBasin comma;
    ASSERT_EQ(plain.import({"--initial-runoff", "1234.5", "--latitude", "46.5"}).status, 0);
    const BatchResult run = plain.run();
    const BatchResult json = plain.run({"--json"});
    const BatchResult list = batch({"simulations", plain.basin()});
    const std::string table = plain.exported("SimResults");

    const CommaLocale locale;
    std::ostringstream shown;
    shown << 1234.5;
    ASSERT_EQ(shown.str(), "1.234,5");
    ASSERT_EQ(comma.import({"--initial-runoff", "1234.5", "--latitude", "46.5"}).status, 0);
    EXPECT_EQ(comma.run().out, run.out);
    EXPECT_EQ(comma.run().err, run.err);
    EXPECT_EQ(comma.run({"--json"}).out, json.out);
    EXPECT_EQ(batch({"simulations", comma.basin()}).out, list.out);
    EXPECT_EQ(comma.exported("SimResults"), table);
}

TEST(Simulations, AreListedWithPeriodAndOptions) {
    const BatchFolder batch_folder;
    ASSERT_EQ(
        batch_folder.import({"--name", "wet", "--by-zone", "tcrit,precipitation", "--initial-runoff", "2.5"})
            .status,
        0);
    const BatchResult result = batch({"simulations", batch_folder.basin()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    for (const char* part : {"wet\n", "1996-04-01 to 1996-04-03", "Metric", "Average",
                             "by zone: precipitation, tcrit", "initial runoff 2.5", "rain threshold 5"}) {
        EXPECT_THAT(result.out, HasSubstr(part));
    }
}

TEST(Simulations, JsonNamesEveryOption) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder
                  .import({"--name", "a \"wet\" year", "--by-zone", "recession", "--temperature", "max-min",
                           "--rain-threshold", "blank", "--initial-runoff", "1.978"})
                  .status,
              0);
    const BatchResult result = batch({"simulations", batch_folder.basin(), "--json"});
    EXPECT_EQ(result.status, 0);
    const auto list = nlohmann::json::parse(result.out);
    ASSERT_EQ(list.size(), 1U);
    EXPECT_EQ(list[0]["Name"], "a \"wet\" year");
    EXPECT_EQ(list[0]["StartDate"], "1996-04-01");
    EXPECT_EQ(list[0]["EndDate"], "1996-04-03");
    EXPECT_EQ(list[0]["Units"], "Metric");
    EXPECT_EQ(list[0]["TemperatureValues"], "Max/Min");
    EXPECT_EQ(list[0]["TemperatureDistribution"], "Basinwide");
    EXPECT_EQ(list[0]["RecessionCoefficientDistribution"], "By Zone");
    EXPECT_TRUE(list[0]["PrecipitationThreshold"].is_null());
    EXPECT_TRUE(list[0]["RunNumber"].is_null());
    EXPECT_THAT(result.out, HasSubstr("\"InitialRunoff\": 1.978"));
}

TEST(Simulations, AreNoneInABlankBasin) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    EXPECT_EQ(batch({"simulations", batch_folder.basin()}).out, "");
    EXPECT_EQ(nlohmann::json::parse(batch({"simulations", batch_folder.basin(), "--json"}).out),
              nlohmann::json::array());
}

TEST(Simulations, OfAFileThatIsNotABasinAreRefused) {
    const BatchFolder batch_folder;
    const BatchResult result = batch({"simulations", batch_folder.file(), "--json"});
    EXPECT_EQ(result.status, 1);
    EXPECT_EQ(result.out, "");
    EXPECT_THAT(result.err, HasSubstr("is not a Nivora basin file"));
}

TEST(Simulations, ListingLeavesTheBasinAsItIs) {
    const RunBasin basin;
    const std::string before = basin.bytes();
    ASSERT_EQ(batch({"simulations", basin.basin()}).status, 0);
    EXPECT_TRUE(basin.bytes() == before);
}

TEST(Template, HoldsTheTablesOfABlankBasin) {
    const BatchFolder batch_folder;
    const BatchResult result = batch({"template", batch_folder.basin()});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    BasinDatabase database{batch_folder.basin(), Access::ReadOnly};
    EXPECT_THAT(database.table_names(), ElementsAre("BasinDescription", "ZoneDescription", "SimulationIndex",
                                                    "PhysicalData", "ClimateScenarioIndex"));
    const BasinDescription header = read_basin_description(database);
    EXPECT_EQ(header.name, "<basin name>");
    EXPECT_EQ(header.units, Units::NotFixed);
    EXPECT_EQ(header.zones, std::nullopt);
}

TEST(Template, NeverReplacesAFile) {
    const BatchFolder batch_folder;
    const std::string before = file_bytes(batch_folder.file());
    const BatchResult result = batch({"template", batch_folder.file()});
    EXPECT_EQ(result.status, 1);
    EXPECT_THAT(result.err, HasSubstr("already exists and was not changed."));
    EXPECT_EQ(file_bytes(batch_folder.file()), before);
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR"));
}

TEST(Template, IntoAMissingFolderIsRefused) {
    const BatchFolder batch_folder;
    for (const std::string& name : {std::string{"none/blank.mdb"}, std::string(300, 'n')}) {
        const BatchResult result = batch({"template", batch_folder.path(name)});
        EXPECT_EQ(result.status, 1);
        EXPECT_NE(result.err, "");
        EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR"));
    }
}

}  // namespace
}  // namespace nivora
