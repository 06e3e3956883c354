// The name of an imported simulation, and what a failed or cancelled import leaves.
#include "tests/prep/scratch_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;

TEST(OfferedName, IsTheFilesNameWithoutItsExtension) {
    EXPECT_EQ(offered_simulation_name("alder.nvr"), "alder");
    EXPECT_EQ(offered_simulation_name("ALDER.NVR"), "ALDER");
    EXPECT_EQ(offered_simulation_name("alder 1996.NVR"), "alder 1996");
    EXPECT_EQ(offered_simulation_name(".nvr"), "");
}

TEST(OfferedName, OnlyTheTwoSpellingsOfTheExtensionAreRemoved) {
    EXPECT_EQ(offered_simulation_name("alder.Nvr"), "alder.Nvr");
    EXPECT_EQ(offered_simulation_name("alder.txt"), "alder.txt");
    EXPECT_EQ(offered_simulation_name("nvr"), "nvr");
    EXPECT_EQ(offered_simulation_name(""), "");
}

TEST(ImportName, TheFilesNameIsOffered) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("mine");
    ASSERT_TRUE(basin.import(LegacyParts{}, dialogs, "alder 1996"));
    ASSERT_EQ(dialogs.inputs().size(), 1U);
    EXPECT_EQ(dialogs.inputs()[0].prompt, "Enter a unique name to associate with this data");
    EXPECT_EQ(dialogs.inputs()[0].title, "Name the Imported Simulation");
    EXPECT_EQ(dialogs.inputs()[0].proposed, "alder 1996");
    EXPECT_TRUE(basin.has_table("mine"));
    EXPECT_FALSE(basin.has_table("alder 1996"));
}

TEST(ImportName, WithoutANameNothingIsImported) {
    for (const auto& answer :
         std::vector<std::optional<std::string>>{std::nullopt, std::string{}, std::string{" \t "}}) {
        const ScratchBasin basin;
        const std::string before = file_bytes(basin.path());
        ScriptedDialogs dialogs;
        dialogs.then_text(answer);
        EXPECT_FALSE(basin.import(LegacyParts{}, dialogs));
        EXPECT_EQ(file_bytes(basin.path()), before);
        EXPECT_THAT(basin.folder().entries(), ElementsAre("basin.mdb"));
    }
}

TEST(ImportName, WithoutANameABasinWithDataKeepsItsZones) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::string before = file_bytes(basin.path());
    LegacyParts parts;
    parts.pairs[0] = "41,1501";
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_text(std::nullopt);
    EXPECT_FALSE(basin.import(parts, dialogs));
    EXPECT_EQ(file_bytes(basin.path()), before);
}

TEST(ImportName, ADuplicateThatIsNotOverwrittenEndsTheImport) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{}, "alder");
    const std::string before = file_bytes(basin.path());
    ScriptedDialogs dialogs;
    dialogs.then_text("ALDER").then(Answer::No);
    EXPECT_FALSE(basin.import(LegacyParts{}, dialogs));
    EXPECT_EQ(dialogs.answers_left(), 0U);
    EXPECT_TRUE(dialogs.complaints().empty());
    EXPECT_EQ(file_bytes(basin.path()), before);
}

TEST(ImportName, AFixedTableIsNeverOverwritten) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::string before = file_bytes(basin.path());
    for (const char* name : {k_basin_description, k_zone_description, k_simulation_index, k_physical_data,
                             k_basin_averages, k_scenario_index}) {
        SCOPED_TRACE(name);
        ScriptedDialogs dialogs;
        dialogs.then_text(name).then(Answer::Yes);
        EXPECT_FALSE(basin.import(LegacyParts{}, dialogs));
        EXPECT_EQ(dialogs.answers_left(), 0U);
        EXPECT_EQ(file_bytes(basin.path()), before);
    }
}

TEST(ImportTwice, TheSameFileUnderTheSameNameGivesTheSameTables) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{}, "alder");
    ScriptedDialogs dialogs;
    dialogs.then_text("alder").then(Answer::Yes).then(Answer::Yes);
    ASSERT_TRUE(basin.import(LegacyParts{}, dialogs));
    EXPECT_TRUE(dialogs.complaints().empty());
    ASSERT_EQ(dialogs.messages().size(), 2U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Duplicate simulation same");
    EXPECT_EQ(basin.zones().size(), 2U);
    EXPECT_EQ(basin.days().size(), 6U);
    EXPECT_EQ(basin.parameters("alder").size(), 6U);
    EXPECT_EQ(basin.months().size(), 24U);
}

TEST(ImportTwice, AnotherNameGivesASecondParameterTable) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{}, "alder");
    ScriptedDialogs dialogs;
    dialogs.then_text("alder 2").then(Answer::Yes);
    ASSERT_TRUE(basin.import(LegacyParts{}, dialogs));
    EXPECT_EQ(basin.days().size(), 6U);
    EXPECT_EQ(basin.parameters("alder").size(), 6U);
    EXPECT_EQ(basin.parameters("alder 2").size(), 6U);
}

TEST(ImportFault, AnErrorOfTheStoreHalfWayIsUndoneToTheLastByte) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{}, "alder");
    // A zone number that its field cannot hold. It is read when existing days are
    // searched, after the header and the name.
    basin.execute("INSERT INTO PhysicalData (Zone, Date) VALUES (-40000, " + std::to_string(day(1996, 4, 1)) +
                  ")");
    const std::string before = file_bytes(basin.path());
    LegacyParts parts;
    parts.pairs[0] = "41,1501";
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_text("second");
    EXPECT_THROW(basin.import(parts, dialogs), StoreError);
    EXPECT_EQ(file_bytes(basin.path()), before);
    EXPECT_THAT(basin.folder().entries(), ElementsAre("basin.mdb"));
}

}  // namespace
}  // namespace nivora
