// Copies of simulations and new names for them, by command.
#include "tests/batch/run_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::Not;

/// The simulation "alder" of a whole year with the scenario "warmer".
class SimulationNameCommandTest : public YearBasinTest {
protected:
    [[nodiscard]] BatchResult simulations(const std::vector<std::string>& more) const {
        std::vector<std::string> arguments{"simulations", file()};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }
    void expect_refused(const std::vector<std::string>& more, int status, const std::string& said) const {
        const std::string before = basin.bytes();
        const BatchResult result = simulations(more);
        EXPECT_EQ(result.status, status);
        EXPECT_EQ(result.out, "");
        EXPECT_THAT(result.err, HasSubstr(said));
        EXPECT_TRUE(basin.bytes() == before);
    }
    [[nodiscard]] std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const Simulation& simulation : basin.simulations()) names.push_back(simulation.name);
        return names;
    }
};

TEST_F(SimulationNameCommandTest, ACopyRunsLikeTheSimulation) {
    const BatchResult result = simulations({"--duplicate", "alder", "--as", "birch"});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out,
              "Copied 'alder' to 'birch', with the scenarios 'warmer (birch)' in " + file() + ".\n");
    EXPECT_EQ(result.err, "");
    EXPECT_THAT(names(), ElementsAre("alder", "birch"));
    EXPECT_EQ(basin.exported("birch"), basin.exported("alder"));
    EXPECT_EQ(basin.run().status, 0);
    const std::string results = basin.exported("SimResults");
    EXPECT_EQ(batch({"run", file(), "--simulation", "birch"}).status, 0);
    EXPECT_EQ(basin.exported("SimResults"), results);
    EXPECT_EQ(climate({}, "birch", "warmer (birch)").status, 0);
    EXPECT_THAT(printed({"check", file()}), HasSubstr("is sound"));
}

TEST_F(SimulationNameCommandTest, ARenamedSimulationKeepsItsScenarios) {
    const BatchResult result = simulations({"--rename", "ALDER", "--as", " birch "});
    EXPECT_EQ(result.status, 0) << result.err;
    EXPECT_EQ(result.out, "Renamed 'alder' to 'birch' in " + file() + ".\n");
    EXPECT_THAT(names(), ElementsAre("birch"));
    EXPECT_FALSE(basin.has_table("alder"));
    EXPECT_EQ(climate({}, "birch", "warmer").status, 0);
    EXPECT_THAT(printed({"check", file()}), HasSubstr("is sound"));
    EXPECT_EQ(simulations({"--duplicate", "birch", "--as", "alder"}).status, 0) << "the name is free";
}

TEST_F(SimulationNameCommandTest, ARefusedNameChangesNothing) {
    for (const char* command : {"--duplicate", "--rename"}) {
        expect_refused({command, "alder", "--as", "warmer"}, 1,
                       "This name is already in use in this database, please re-enter");
        expect_refused({command, "alder", "--as", "SimResults"}, 1,
                       "This name is reserved for system use, please re-enter");
        expect_refused({command, "alder", "--as", "a!b"}, 1, "Invalid character(s) in name, please re-enter");
        expect_refused({command, "elder", "--as", "birch"}, 1, "The basin has no simulation 'elder'");
    }
    expect_refused({"--rename", "alder", "--as", "alder"}, 1,
                   "No simulation was renamed: The basin is unchanged.");
    expect_refused({"--duplicate", "alder", "--as", " "}, 1,
                   "No simulation was copied: The basin is unchanged.");
}

TEST_F(SimulationNameCommandTest, BothNamesAreNeeded) {
    expect_refused({"--duplicate", "alder"}, 2, "--as");
    expect_refused({"--as", "birch"}, 2, "--duplicate or --rename");
    expect_refused({"--duplicate", "alder", "--rename", "alder", "--as", "birch"}, 2, "excludes");
    expect_refused({"--rename", "alder", "--as", "birch", "--json"}, 2, "excludes");
}

}  // namespace
}  // namespace nivora
