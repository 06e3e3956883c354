#include "store/scenario_placeholder.h"

#include "store/table_io.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;

class ScenarioPlaceholder : public ::testing::Test {
protected:
    ScenarioPlaceholder() { BasinDatabase::create_template(path); }

    static std::vector<std::string> references(BasinDatabase& database) {
        std::vector<std::string> found;
        for (const auto& row : read_table<ScenarioIndexRow>(database, template_table(k_scenario_index)))
            found.push_back(row.simulation + "/" + row.scenario + "/" + row.comments.value_or(""));
        return found;
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
};

TEST_F(ScenarioPlaceholder, IsARowAndTheTableOfItsName) {
    BasinDatabase database{path, Access::ReadWrite};
    ensure_scenario_placeholder(database, "wet");
    EXPECT_THAT(references(database), ElementsAre("wet/None/No climate change"));
    EXPECT_EQ(database.table_fields("None").size(), scenario_table("None").fields.size());
    ensure_scenario_placeholder(database, "dry");
    EXPECT_THAT(references(database),
                ElementsAre("wet/None/No climate change", "dry/None/No climate change"));
}

TEST_F(ScenarioPlaceholder, ComesOnceAndNotBesideAScenario) {
    BasinDatabase database{path, Access::ReadWrite};
    ensure_scenario_placeholder(database, "wet");
    ensure_scenario_placeholder(database, "WET");
    EXPECT_EQ(references(database).size(), 1U);
    database.execute("UPDATE ClimateScenarioIndex SET ScenarioFile = 'warm', Comments = NULL");
    ensure_scenario_placeholder(database, "wet");
    EXPECT_THAT(references(database), ElementsAre("wet/warm/"));
}

TEST_F(ScenarioPlaceholder, LeavesTheTableOfASimulationOfItsName) {
    BasinDatabase database{path, Access::ReadWrite};
    database.create_table(parameter_table("None"));
    ensure_scenario_placeholder(database, "None");
    EXPECT_EQ(database.table_fields("None").size(), parameter_table("None").fields.size());
}

}  // namespace
}  // namespace nivora
