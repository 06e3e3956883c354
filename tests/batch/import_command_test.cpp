// The import command: what it stores of a legacy file and of its options.
#include "tests/batch/batch_call.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::DoubleEq;
using testing::ElementsAre;
using testing::FloatEq;
using testing::HasSubstr;
using testing::Optional;
using testing::SizeIs;

TEST(ImportCommand, CreatesTheBasinFile) {
    const BatchFolder batch_folder;
    const BatchResult result = batch_folder.import();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(result.out, HasSubstr("Imported 'alder'"));
    EXPECT_THAT(result.out, HasSubstr("2 zones, 3 days from 1996-04-01 to 1996-04-03"));
    EXPECT_THAT(batch_folder.names(), ElementsAre("alder.NVR", "basin.mdb"));
    EXPECT_THAT(batch_folder.header().name, Optional(std::string{"Alder Brook"}));
    EXPECT_THAT(batch_folder.rows<PhysicalRow>(template_table(k_physical_data)), SizeIs(6));
    EXPECT_THAT(batch_folder.rows<ParameterRow>(parameter_table("alder")), SizeIs(6));
    EXPECT_THAT(batch_folder.rows<MonthlyRow>(basin_averages_table()), SizeIs(24));
}

TEST(ImportCommand, ANewSimulationHasThePlaceholderOfItsScenarios) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--name", "alder"}).status, 0);
    const std::vector<std::string> lines = lines_of(batch_folder.exported("ClimateScenarioIndex"));
    ASSERT_EQ(lines.size(), 2U);
    EXPECT_EQ(lines[1], "alder,None,,,No climate change");
    // Repeating the import finds it there.
    ASSERT_EQ(batch_folder.import({"--name", "alder"}).status, 0);
    EXPECT_EQ(lines_of(batch_folder.exported("ClimateScenarioIndex")).size(), 2U);
}

TEST(ImportCommand, LeavesTheLegacyFileAlone) {
    const BatchFolder batch_folder;
    const std::string before = file_bytes(batch_folder.file());
    ASSERT_EQ(batch_folder.import().status, 0);
    EXPECT_EQ(file_bytes(batch_folder.file()), before);
}

TEST(ImportCommand, WithoutOptionsTheSimulationIsBasinwideAndAverage) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::vector<Simulation> simulations = batch_folder.simulations();
    ASSERT_EQ(simulations.size(), 1U);
    const Simulation& simulation = simulations[0];
    EXPECT_EQ(simulation.name, "alder");
    EXPECT_THAT(simulation.start, Optional(day(1996, 4, 1)));
    EXPECT_THAT(simulation.end, Optional(day(1996, 4, 3)));
    EXPECT_EQ(simulation.text(5), "Metric");
    EXPECT_EQ(simulation.text(6), "Average");
    for (int column = 7; column <= 12; ++column) EXPECT_EQ(simulation.text(column), "Basinwide");
    EXPECT_EQ(simulation.initial_runoff, std::nullopt);
    EXPECT_THAT(simulation.precipitation_threshold, Optional(FloatEq(5.0F)));
}

// The two grid columns of x and y are not stored in the file; the parameter table has them.
TEST(ImportCommand, TheIndexKeepsNeitherXNorY) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    const std::vector<Simulation> simulations = batch_folder.simulations();
    ASSERT_EQ(simulations.size(), 1U);
    EXPECT_EQ(simulations[0].initial_x, std::nullopt);
    EXPECT_EQ(simulations[0].initial_y, std::nullopt);
}

TEST(ImportCommand, TheNameOptionNamesTheSimulation) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--name", " wet \"year\" 1996 "}).status, 0);
    ASSERT_EQ(batch_folder.simulations().size(), 1U);
    EXPECT_EQ(batch_folder.simulations()[0].name, "wet \"year\" 1996");
    EXPECT_TRUE(batch_folder.has_table("wet \"year\" 1996"));
}

TEST(ImportCommand, EachInputMayBeGivenByZone) {
    const std::vector<std::pair<std::string, int>> words{{"temperature", 7}, {"precipitation", 8},
                                                         {"lapse-rate", 9},  {"coefficients", 10},
                                                         {"tcrit", 11},      {"recession", 12}};
    for (const auto& [word, by_zone_column] : words) {
        SCOPED_TRACE(word);
        const BatchFolder batch_folder;
        ASSERT_EQ(batch_folder.import({"--by-zone", word}).status, 0);
        const Simulation simulation = batch_folder.simulations().at(0);
        for (int column = 7; column <= 12; ++column) {
            EXPECT_EQ(simulation.text(column), column == by_zone_column ? "By Zone" : "Basinwide");
        }
    }
}

TEST(ImportCommand, SeveralInputsByZoneAreJoinedByCommas) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder
                  .import({"--by-zone", "temperature,precipitation,lapse-rate,coefficients,tcrit,recession"})
                  .status,
              0);
    const Simulation simulation = batch_folder.simulations().at(0);
    for (int column = 7; column <= 12; ++column) EXPECT_EQ(simulation.text(column), "By Zone");
}

TEST(ImportCommand, OptionsMayStandBeforeTheFiles) {
    const BatchFolder batch_folder;
    const BatchResult result = batch({"import", "--by-zone", "tcrit,recession", batch_folder.file(),
                                      batch_folder.basin(), "--name", "wet", "--latitude", "-33.5"});
    ASSERT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(batch_folder.simulations().at(0).text(11), "By Zone");
    EXPECT_EQ(batch_folder.simulations().at(0).text(12), "By Zone");
}

TEST(ImportCommand, MaxMinTemperaturesAreAnOption) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--temperature", "max-min"}).status, 0);
    EXPECT_EQ(batch_folder.simulations().at(0).text(6), "Max/Min");
    const BatchFolder other;
    ASSERT_EQ(other.import({"--temperature", "average"}).status, 0);
    EXPECT_EQ(other.simulations().at(0).text(6), "Average");
}

TEST(ImportCommand, InitialRunoffAndLatitudeAreStoredInTheirFields) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--initial-runoff", "1.978", "--latitude", "-46.5"}).status, 0);
    EXPECT_THAT(batch_folder.simulations().at(0).initial_runoff, Optional(FloatEq(1.978F)));
    EXPECT_THAT(batch_folder.header().latitude, Optional(DoubleEq(-46.5)));
}

TEST(ImportCommand, TheRainThresholdOptionOverridesTheFiles) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--rain-threshold", "3.5"}).status, 0);
    EXPECT_THAT(batch_folder.simulations().at(0).precipitation_threshold, Optional(FloatEq(3.5F)));
}

TEST(ImportCommand, ABlankRainThresholdLeavesTheCellEmpty) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--rain-threshold", "blank"}).status, 0);
    EXPECT_EQ(batch_folder.simulations().at(0).precipitation_threshold, std::nullopt);
}

TEST(ImportCommand, AFileWithoutAThresholdOfItsOwnGivesTheDefault) {
    LegacyParts parts;
    parts.version = "Version 2.0";
    parts.threshold.reset();
    parts.extra.reset();
    parts.units = "1";
    const BatchFolder batch_folder{parts};
    ASSERT_EQ(batch_folder.import().status, 0);
    EXPECT_THAT(batch_folder.simulations().at(0).precipitation_threshold, Optional(FloatEq(2.36F)));
    EXPECT_EQ(batch_folder.simulations().at(0).text(5), "English");
}

TEST(ImportCommand, ASecondYearGoesIntoTheSameBasin) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--name", "first", "--initial-runoff", "7"}).status, 0);
    LegacyParts parts;
    parts.year = "1997";
    parts.pairs[0] = "41,1500";
    batch_folder.write(parts);
    const BatchResult result = batch_folder.import({"--name", "second", "--initial-runoff", "8"});
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err,
              "Importing a .NVR file: A definition of the zones in this basin already exists.  Overwrite? "
              "[Yes]\n");
    const std::vector<Simulation> simulations = batch_folder.simulations();
    ASSERT_EQ(simulations.size(), 2U);
    EXPECT_EQ(simulations[0].name, "first");
    EXPECT_THAT(simulations[0].initial_runoff, Optional(FloatEq(7.0F)));
    EXPECT_EQ(simulations[1].name, "second");
    EXPECT_THAT(simulations[1].start, Optional(day(1997, 4, 1)));
    EXPECT_THAT(batch_folder.rows<PhysicalRow>(template_table(k_physical_data)), SizeIs(12));
}

TEST(ImportCommand, TheSameImportTwiceIsOneSimulationWithTheLaterOptions) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--initial-runoff", "7"}).status, 0);
    const BatchResult result = batch_folder.import({"--initial-runoff", "8"});
    EXPECT_EQ(result.status, 0);
    const std::vector<std::string> reported = lines_of(result.err);
    ASSERT_EQ(reported.size(), 2U) << "the zones are those of the basin";
    EXPECT_EQ(reported[0],
              "Duplicate simulation same: The current database already contains a simulation named 'alder '. "
              " Overwrite? [Yes]");
    EXPECT_EQ(reported[1],
              "Import file contains days already present in the database!: Physical variable data for "
              "simulation time period are present in the database.  Overwrite? [Yes]");
    const std::vector<Simulation> simulations = batch_folder.simulations();
    ASSERT_EQ(simulations.size(), 1U);
    EXPECT_THAT(simulations[0].initial_runoff, Optional(FloatEq(8.0F)));
    EXPECT_THAT(batch_folder.rows<PhysicalRow>(template_table(k_physical_data)), SizeIs(6));
}

TEST(ImportCommand, ANameInAnotherCaseOfAnyScriptOverwritesItsSimulation) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--name", "весна öst"}).status, 0);
    ASSERT_EQ(batch_folder.import({"--name", "second"}).status, 0);
    ASSERT_EQ(batch_folder.import({"--name", "ВЕСНА ÖST", "--initial-runoff", "8"}).status, 0);
    const std::vector<Simulation> simulations = batch_folder.simulations();
    ASSERT_EQ(simulations.size(), 2U);
    EXPECT_EQ(simulations[0].name, "ВЕСНА ÖST");
    EXPECT_THAT(simulations[0].initial_runoff, Optional(FloatEq(8.0F)));
    EXPECT_THAT(batch_folder.rows<ParameterRow>(parameter_table("весна öst")), SizeIs(6));
}

TEST(ImportCommand, WithoutALatitudeThatOfTheBasinStays) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import({"--latitude", "46.5"}).status, 0);
    ASSERT_EQ(batch_folder.import().status, 0);
    EXPECT_THAT(batch_folder.header().latitude, Optional(DoubleEq(46.5)));
}

TEST(ImportCommand, ATemplateIsABasinToImportInto) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch({"template", batch_folder.basin()}).status, 0);
    const BatchResult result = batch_folder.import();
    EXPECT_EQ(result.status, 0);
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(batch_folder.header().name, Optional(std::string{"Alder Brook"}));
}

TEST(ImportCommand, FileNamesMayHoldBlanksQuotesAndLettersOfEveryScript) {
    const BatchFolder batch_folder;
    const std::string name = "Gr\xc3\xbcnbach 'up' \xe5\xb1\xb1";
    batch_folder.folder().write(path_from_utf8(name + ".NVR"), LegacyParts{}.text());
    const std::string basin = batch_folder.path(name + ".mdb");
    const BatchResult result = batch({"import", batch_folder.path(name + ".NVR"), basin});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_THAT(result.out, HasSubstr("Imported '" + name + "'"));
    EXPECT_TRUE(std::filesystem::exists(path_from_utf8(basin)));
}

TEST(ImportCommand, AnImportIntoALinkWritesTheBasinThatItPointsTo) {
    const BatchFolder batch_folder;
    ASSERT_EQ(batch_folder.import().status, 0);
    std::error_code refused;
    std::filesystem::create_symlink(batch_folder.basin(), batch_folder.path("link.mdb"), refused);
    if (refused) GTEST_SKIP() << "no links here: " << refused.message();
    ASSERT_EQ(
        batch({"import", batch_folder.file(), batch_folder.path("link.mdb"), "--name", "second"}).status, 0);
    EXPECT_TRUE(std::filesystem::is_symlink(batch_folder.path("link.mdb")));
    EXPECT_EQ(batch_folder.simulations().size(), 2U);
}

}  // namespace
}  // namespace nivora
