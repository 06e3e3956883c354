#include "store/transactions.h"
#include "tests/session/basin_life_fixture.h"
#include "tests/support/full_disk.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

TEST_F(BasinLifeTest, AStartWorksOnACopyOfTheTemplate) {
    EXPECT_TRUE(fs::exists(program_ / "new.mdb"));
    EXPECT_EQ(session_.basin.Basin_File, program_ / "null.mdb");
    EXPECT_TRUE(session_.basin.New_Basin);
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_EQ(session_.basin.basin_name, "<basin name>");
    EXPECT_EQ(session_.basin.Units_Code, Units::NotFixed);
    EXPECT_TRUE(session_.shell.units_list_shown);
    EXPECT_FALSE(session_.shell.save);
    EXPECT_TRUE(session_.shell.save_as);
    EXPECT_TRUE(session_.settings.recent_files.empty());
}

TEST_F(BasinLifeTest, SaveAsWithoutAZoneCountIsRefused) {
    life_.save_as();
    EXPECT_EQ(last_message().title, "Missing data");
    EXPECT_EQ(last_message().text,
              "A basin database cannot be created until the number of zones has been specified");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(BasinLifeTest, ABasinWithoutASimulationCannotBeSaved) {
    define_basin(0);
    life_.save_as();
    EXPECT_EQ(last_message().text, "You must define at least 1 simulation before saving!");
    EXPECT_EQ(last_message().title, "Error during save");
}

TEST_F(BasinLifeTest, SaveAsWritesTheBasinAndNamesIt) {
    const fs::path file = save_new_basin("alder.mdb");
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_FALSE(session_.basin.New_Basin);
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_TRUE(session_.shell.save);
    EXPECT_TRUE(session_.shell.run_simulation);
    EXPECT_TRUE(session_.shell.run_forecast);
    EXPECT_TRUE(session_.shell.run_climate);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "run 1");
    EXPECT_EQ(session_.basin.basin_area_text, "42.75");
    EXPECT_EQ(session_.basin.reference_elevation_text, "2107.35");
}

TEST_F(BasinLifeTest, SaveAsPutsTheNewNameOnTheRecentList) {
    const fs::path first = save_new_basin("alder.mdb");
    EXPECT_EQ(session_.settings.recent_files, (std::vector<std::string>{path_text(first)}));
    const fs::path second = user_ / "birch.mdb";
    dialogs_.then_file(second);
    life_.save_as();
    EXPECT_EQ(session_.settings.recent_files,
              (std::vector<std::string>{path_text(second), path_text(first)}));
}

TEST_F(BasinLifeTest, ASavedBasinLosesTheXAndYCells) {
    const fs::path file = save_new_basin("alder.mdb");
    BasinDatabase database{file, Access::ReadOnly};
    const auto rows = read_table<Simulation>(database, template_table(k_simulation_index));
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].name, "run 2");
    EXPECT_FALSE(rows[0].initial_x.has_value());
    EXPECT_FALSE(rows[0].initial_y.has_value());
    EXPECT_EQ(rows[0].comments, "kept");
    EXPECT_FALSE(session_.basin.simulations[0].initial_x.has_value());
}

TEST_F(BasinLifeTest, ACancelledSaveAsChangesNothing) {
    define_basin(1);
    dialogs_.then_file(std::nullopt);
    life_.save_as();
    EXPECT_TRUE(life_.has_template_name());
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(BasinLifeTest, SaveKeepsTheSelectionAndTheValidityOfResults) {
    const fs::path file = save_new_basin("alder.mdb");
    select_simulation(session_.basin, 1);
    session_.basin.Output_Valid = true;
    session_.basin.basin_description = "snow and larch";
    session_.basin.Basin_Changed = true;
    life_.save();
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "run 2");
    EXPECT_FALSE(session_.basin.Basin_Changed);
    BasinDatabase database{file, Access::ReadOnly};
    EXPECT_EQ(read_basin_description(database).description, "snow and larch");
}

TEST_F(BasinLifeTest, ASaveThatFailsIsReportedAndKeepsTheChangesMarked) {
    const fs::path file = save_new_basin("alder.mdb");
    const std::string before = file_bytes(file);
    fs::permissions(file, fs::perms::owner_read);
    session_.basin.Basin_Changed = true;
    life_.save();
    EXPECT_EQ(last_message().title, "The basin was not saved");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(file_bytes(file) == before);
}

TEST_F(BasinLifeTest, OpeningReadsTheFileAndPutsItOnTheRecentList) {
    const fs::path file = save_new_basin("alder.mdb");
    life_.new_basin();
    dialogs_.then_file(file);
    life_.open();
    EXPECT_EQ(session_.basin.basin_name, "Alder Fork");
    EXPECT_EQ(session_.basin.latitude_text, "-41.5");
    EXPECT_EQ(session_.basin.ZoneCount, 2);
    EXPECT_FALSE(session_.basin.New_Basin);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_TRUE(session_.shell.save);
    EXPECT_TRUE(session_.shell.zones_fixed_shown);
    EXPECT_FALSE(session_.shell.zones_box_shown);
    EXPECT_FALSE(session_.shell.units_list_shown);
    EXPECT_TRUE(session_.shell.delete_simulation);
    EXPECT_TRUE(session_.shell.reports);
    EXPECT_EQ(session_.settings.recent_files, (std::vector<std::string>{path_text(file)}));
}

TEST_F(BasinLifeTest, OpeningAReservedNameIsRefused) {
    dialogs_.then_file("/data/new.mdb.old/alder.mdb");
    life_.open();
    EXPECT_EQ(last_message().text, "/data/new.mdb.old/alder.mdb is a reserved file name used by Nivora!");
    EXPECT_EQ(last_message().title, "Invalid file name");
    EXPECT_TRUE(life_.has_template_name());
}

TEST_F(BasinLifeTest, ADamagedFileEndsInAMessageAndANewBasinAndStaysUnchanged) {
    save_new_basin("alder.mdb");
    const fs::path damaged = user_.write("damaged.mdb", "SQLite format 3, or so it says");
    const std::string before = file_bytes(damaged);
    dialogs_.then_file(damaged);
    life_.open();
    EXPECT_EQ(last_message().title, "Error encountered while reading this basin database");
    EXPECT_EQ(last_message().text,
              "The file you have selected, " + path_text(damaged) + ", has an unrecognized format");
    EXPECT_TRUE(life_.has_template_name());
    EXPECT_TRUE(session_.basin.New_Basin);
    EXPECT_EQ(session_.basin.basin_name, "<basin name>");
    EXPECT_TRUE(session_.basin.simulations.empty());
    EXPECT_TRUE(file_bytes(damaged) == before);
}

TEST_F(BasinLifeTest, ARecentFileThatWasDeletedIsReported) {
    session_.settings.recent_files = {"/gone/alder.mdb"};
    life_.open_recent(1);
    EXPECT_EQ(last_message().title, "File not found");
    EXPECT_EQ(last_message().text,
              "The file selected from the recent files list, '/gone/alder.mdb' has been moved or deleted.");
}

TEST_F(BasinLifeTest, ARecentFileOpensAgain) {
    const fs::path file = save_new_basin("alder.mdb");
    life_.save();
    life_.new_basin();
    life_.open_recent(1);
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_EQ(session_.basin.simulations.size(), 2U);
}

TEST_F(BasinLifeTest, NewEmptiesEverythingAndDisablesWhatNeedsASimulation) {
    save_new_basin("alder.mdb");
    session_.basin.Output_Valid = true;
    life_.new_basin();
    EXPECT_TRUE(session_.basin.New_Basin);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_TRUE(session_.basin.simulations.empty());
    EXPECT_TRUE(session_.basin.zones.empty());
    EXPECT_FALSE(session_.shell.save);
    EXPECT_FALSE(session_.shell.save_as);
    EXPECT_FALSE(session_.shell.run_simulation);
    EXPECT_FALSE(session_.shell.run_forecast);
    EXPECT_FALSE(session_.shell.run_climate);
    EXPECT_FALSE(session_.shell.graphics);
    EXPECT_FALSE(session_.shell.reports);
    EXPECT_FALSE(session_.shell.delete_simulation);
    EXPECT_FALSE(session_.shell.edit_simulation);
}

TEST_F(BasinLifeTest, NewKeepsNoSnowModeAndTheCustomLag) {
    session_.run.NoSnow = true;
    session_.run.LagDistribution[0] = 2.0F;
    life_.new_basin();
    EXPECT_TRUE(session_.run.NoSnow);
    EXPECT_EQ(session_.run.LagDistribution[0], 2.0F);
    EXPECT_FALSE(session_.shell.melt_season);
}

TEST_F(BasinLifeTest, TheSaveQuestionOfAnUnnamedBasinAsksToCreateOne) {
    define_basin(1);
    dialogs_.then(Answer::Cancel);
    life_.new_basin();
    EXPECT_EQ(last_message().title, "Save Data?");
    EXPECT_EQ(last_message().text, "Create database containing these data?");
    EXPECT_EQ(last_message().buttons, Buttons::YesNoCancel);
    EXPECT_EQ(session_.basin.basin_name, "Alder Fork");
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(BasinLifeTest, TheSaveQuestionOfANamedBasinNamesTheFile) {
    const fs::path file = save_new_basin("alder.mdb");
    session_.basin.Basin_Changed = true;
    dialogs_.then(Answer::No);
    life_.new_basin();
    EXPECT_EQ(last_message().text, "Save changes to " + path_text(file));
    EXPECT_TRUE(life_.has_template_name());
}

TEST_F(BasinLifeTest, YesSavesUnderTheKnownNameAndContinues) {
    const fs::path file = save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    session_.basin.Basin_Changed = true;
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(life_.may_exit());
    EXPECT_FALSE(session_.basin.Basin_Changed);
    BasinDatabase database{file, Access::ReadOnly};
    EXPECT_EQ(read_basin_description(database).description, "changed");
}

TEST_F(BasinLifeTest, YesOnAnUnnamedBasinAsksForAName) {
    define_basin(1);
    const fs::path file = user_ / "first.mdb";
    dialogs_.then(Answer::Yes).then_file(file);
    EXPECT_TRUE(life_.may_exit());
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(BasinLifeTest, YesWithoutANameStopsTheCaller) {
    define_basin(1);
    dialogs_.then(Answer::Yes).then_file(std::nullopt);
    EXPECT_FALSE(life_.may_exit());
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(BasinLifeTest, YesWithoutASimulationStopsTheCallerAndTheProgramStaysOpen) {
    define_basin(0);
    dialogs_.then(Answer::Yes).then_file(user_ / "first.mdb");
    EXPECT_FALSE(life_.may_exit());
    EXPECT_EQ(last_message().text, "You must define at least 1 simulation before saving!");
    EXPECT_FALSE(fs::exists(user_ / "first.mdb"));
}

TEST_F(BasinLifeTest, NothingIsAskedIfNothingChanged) {
    EXPECT_TRUE(life_.may_exit());
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(BasinLifeTest, AStartWithoutATemplateUsesTheWorkingFileOfTheLastStart) {
    fs::remove(program_ / "null.mdb");
    BasinDatabase database{program_ / "new.mdb", Access::ReadWrite};
    BasinDescription header = read_basin_description(database);
    header.name = "left over";
    write_basin_description(database, header);
    atomically_if(database, [&] {
        add_rows<Simulation>(database, template_table(k_simulation_index),
                             std::vector<Simulation>{simulation_named("old")});
        return true;
    });
    life_.start();
    EXPECT_EQ(session_.basin.basin_name, "left over");
    EXPECT_EQ(session_.basin.Current_Sim_Name, "--");
    EXPECT_FALSE(session_.shell.save);
    EXPECT_TRUE(session_.shell.save_as);
    EXPECT_FALSE(session_.shell.variables_of_record);
    EXPECT_FALSE(session_.shell.variables_of_simulation);
    EXPECT_FALSE(session_.shell.parameters);
    EXPECT_FALSE(session_.shell.scenario_definition);
}

TEST_F(BasinLifeTest, AFirstStartOnAFullDiskEndsWithTheReasonAndTheNextOneWorks) {
    fs::remove(program_ / "new.mdb");
    {
        const FullDisk disk{100};
        EXPECT_FALSE(life_.start());
    }
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(dialogs_.messages()[0].message.title, "Nivora cannot run");
    EXPECT_THAT(dialogs_.messages()[0].message.text,
                testing::AllOf(testing::HasSubstr("new.mdb"), testing::HasSubstr("the disk may be full")));
    EXPECT_FALSE(fs::exists(program_ / "new.mdb"));
    EXPECT_TRUE(life_.start());
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_TRUE(fs::exists(program_ / "new.mdb"));
}

TEST_F(BasinLifeTest, AnImportAndSaveAsCloseThePlotsAndASaveDoesNot) {
    int closed = 0;
    desktop_.close_plots = [&] { ++closed; };
    save_new_basin("alder.mdb");
    EXPECT_EQ(closed, 1) << "under a new name";
    life_.save();
    EXPECT_EQ(closed, 1);
    life_.imported();
    EXPECT_EQ(closed, 2);
}

TEST_F(BasinLifeTest, NamesWithQuotesAndOtherScriptsSurviveASave) {
    define_basin(1);
    session_.basin.basin_name = "Ötztal \"Ache\" – Река";
    session_.basin.simulations[0].name = "l'année 水";
    const fs::path file = user_ / path_from_utf8("Ötztal #1 100% – Река.mdb");
    dialogs_.then_file(file).then_file(file);
    life_.save_as();
    life_.new_basin();
    life_.open();
    EXPECT_EQ(session_.basin.basin_name, "Ötztal \"Ache\" – Река");
    EXPECT_EQ(session_.basin.Current_Sim_Name, "l'année 水");
}

}  // namespace
}  // namespace nivora
