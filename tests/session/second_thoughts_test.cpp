// The File menu with a user who changes their mind half way, and with a disk that fails.

#include "store/transactions.h"
#include "tests/session/basin_life_fixture.h"
#include "tests/support/other_program.h"
#include "tests/support/page_damage.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

class SecondThoughts : public BasinLifeTest {
protected:
    /// A saved basin with a run's results and a change that is not saved.
    fs::path changed_basin() {
        const fs::path file = save_new_basin("alder.mdb");
        session_.basin.basin_description = "typed";
        session_.basin.Basin_Changed = true;
        session_.basin.Input_Changed = true;
        desktop_.left_basins = 0;
        return file;
    }

    void expect_still_asked() {
        EXPECT_TRUE(session_.basin.Basin_Changed);
        EXPECT_TRUE(session_.basin.Input_Changed);
        dialogs_.then(Answer::Cancel);
        EXPECT_FALSE(life_.may_exit());
        EXPECT_EQ(last_message().title, "Save Data?");
        EXPECT_EQ(session_.basin.basin_description, "typed");
    }

    [[nodiscard]] static std::string description_in(const fs::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        return read_basin_description(database).description.value_or("");
    }

    /// Another program writes to a basin file.
    static void change_elsewhere(const fs::path& file) {
        BasinDatabase database{file, Access::ReadWrite};
        BasinDescription header = read_basin_description(database);
        header.description = "from elsewhere";
        atomically_if(database, [&] {
            write_basin_description(database, header);
            return true;
        });
    }
};

// No to the question about saving, and then no other basin after all.

TEST_F(SecondThoughts, NoAndThenNoFileToOpenAsksAgainAtExit) {
    changed_basin();
    dialogs_.then(Answer::No).then_file(std::nullopt);
    life_.open();
    expect_still_asked();
}

TEST_F(SecondThoughts, NoAndThenAReservedNameAsksAgainAtExit) {
    changed_basin();
    dialogs_.then(Answer::No).then_file(user_ / "new.mdb");
    life_.open();
    expect_still_asked();
}

TEST_F(SecondThoughts, NoAndThenAMissingRecentFileAsksAgainAtExit) {
    changed_basin();
    session_.settings.recent_files = {"/gone/birch.mdb"};
    dialogs_.then(Answer::No);
    life_.open_recent(1);
    EXPECT_EQ(last_message().title, "File not found");
    expect_still_asked();
}

TEST_F(SecondThoughts, YesAndThenNoFileToOpenLeavesNothingUnsaved) {
    const fs::path file = changed_basin();
    dialogs_.then(Answer::Yes).then_file(std::nullopt);
    life_.open();
    EXPECT_EQ(description_in(file), "typed");
    EXPECT_TRUE(life_.may_exit());
}

TEST_F(SecondThoughts, TheChangesOfAnEarlierNoAreNotRestoredLater) {
    const fs::path file = changed_basin();
    dialogs_.then(Answer::No).then_file(file);
    life_.open();
    dialogs_.then_file(std::nullopt);
    life_.open();
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

// A recent file that no longer exists.

TEST_F(SecondThoughts, AMissingRecentFileLeavesTheBasinItsName) {
    const fs::path file = changed_basin();
    session_.settings.recent_files = {path_text(user_ / "gone.mdb")};
    dialogs_.then(Answer::No);
    life_.open_recent(1);
    EXPECT_EQ(session_.basin.Basin_File, file);
    life_.save();
    EXPECT_EQ(description_in(file), "typed");
    EXPECT_FALSE(fs::exists(user_ / "gone.mdb"));
}

// The first save.

TEST_F(SecondThoughts, AFirstSaveThroughTheQuestionNamesTheBasinEvenIfNothingElseIsOpened) {
    define_basin(1);
    const fs::path file = user_ / "first.mdb";
    dialogs_.then(Answer::Yes).then_file(file).then_file(std::nullopt);
    life_.open();
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_FALSE(session_.basin.New_Basin);
    EXPECT_TRUE(session_.shell.save);
    EXPECT_EQ(session_.settings.recent_files, (std::vector<std::string>{path_text(file)}));
    session_.basin.basin_description = "later";
    life_.save();
    EXPECT_EQ(description_in(file), "later");
}

TEST_F(SecondThoughts, TheChosenRecentFileIsOpenedThoughAFirstSaveChangesTheList) {
    const fs::path old = save_new_basin("old.mdb");
    life_.new_basin();
    define_basin(1);
    session_.settings.recent_files = {path_text(old)};
    dialogs_.then(Answer::Yes).then_file(user_ / "first.mdb");
    life_.open_recent(1);
    EXPECT_TRUE(fs::exists(user_ / "first.mdb"));
    EXPECT_EQ(session_.basin.Basin_File, old);
}

TEST_F(SecondThoughts, AFirstSaveThatFailsLeavesTheBasinWithoutAName) {
    define_basin(1);
    dialogs_.then(Answer::Yes).then_file(user_ / "no such folder" / "first.mdb");
    EXPECT_FALSE(life_.new_basin());
    EXPECT_EQ(last_message().title, "The basin was not saved");
    EXPECT_TRUE(life_.has_template_name());
    EXPECT_TRUE(session_.basin.New_Basin);
    EXPECT_FALSE(session_.shell.save);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_EQ(session_.basin.basin_name, "Alder Fork");
    EXPECT_TRUE(session_.settings.recent_files.empty());
}

// A copy that fails.

TEST_F(SecondThoughts, ACopyThatFailsAtTheQuestionCountsAsCancel) {
    const fs::path file = changed_basin();
    fs::permissions(file, fs::perms::owner_read);
    dialogs_.then(Answer::Yes);
    EXPECT_FALSE(life_.may_exit());
    EXPECT_EQ(last_message().title, "The basin was not saved");
    dialogs_.then(Answer::Yes);
    EXPECT_FALSE(life_.new_basin());
    dialogs_.then(Answer::Yes);
    life_.open();
    EXPECT_TRUE(dialogs_.files().size() == 1) << "no file to open was asked for";
    EXPECT_EQ(session_.basin.Basin_File, file);
    fs::permissions(file, fs::perms::owner_all);
    expect_still_asked();
}

TEST_F(SecondThoughts, TheMessageOfAFailedSaveNamesOnlyTheUsersFile) {
    const fs::path file = changed_basin();
    fs::permissions(file, fs::perms::owner_read);
    life_.save();
    EXPECT_NE(last_message().text.find(path_text(file) + "'"), std::string::npos) << last_message().text;
    EXPECT_EQ(last_message().text.find(".part"), std::string::npos) << last_message().text;
}

TEST_F(SecondThoughts, ASaveIntoAMissingFolderNamesOnlyTheUsersFile) {
    define_basin(1);
    const fs::path file = user_ / "gone" / "first.mdb";
    dialogs_.then_file(file);
    life_.save_as();
    EXPECT_NE(last_message().text.find(path_text(file) + "'"), std::string::npos) << last_message().text;
    EXPECT_EQ(last_message().text.find(".part"), std::string::npos) << last_message().text;
}

// A missing or damaged template.

TEST_F(SecondThoughts, NewCreatesAMissingTemplate) {
    save_new_basin("alder.mdb");
    fs::remove(program_ / "null.mdb");
    EXPECT_TRUE(life_.new_basin());
    EXPECT_EQ(session_.basin.basin_name, "<basin name>");
    EXPECT_TRUE(fs::exists(program_ / "null.mdb"));
    BasinDatabase work{program_ / "new.mdb", Access::ReadOnly};
    EXPECT_EQ(read_basin_description(work).name, "<basin name>");
    EXPECT_EQ(work.sql().execAndGet("SELECT count(*) FROM SimulationIndex").getInt(), 0);
}

TEST_F(SecondThoughts, NewStopsAtADamagedTemplateAndKeepsTheOpenBasin) {
    const fs::path file = changed_basin();
    program_.write("null.mdb", "no template");
    dialogs_.then(Answer::No);
    EXPECT_FALSE(life_.new_basin());
    EXPECT_EQ(last_message().title, "No new basin was created");
    EXPECT_NE(last_message().text.find(path_text(program_ / "null.mdb")), std::string::npos);
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_EQ(session_.basin.simulations.size(), 2U);
    EXPECT_EQ(desktop_.left_basins, 0);
    expect_still_asked();
}

// The results of a basin that is closed.

TEST_F(SecondThoughts, NewAndOpenCloseTheResultsAndSaveDoesNot) {
    const fs::path file = changed_basin();
    life_.save();
    EXPECT_EQ(desktop_.left_basins, 0);
    dialogs_.then_file(std::nullopt);
    life_.open();
    EXPECT_EQ(desktop_.left_basins, 0) << "nothing was opened";
    dialogs_.then_file(file);
    life_.open();
    EXPECT_EQ(desktop_.left_basins, 1);
    life_.new_basin();
    EXPECT_EQ(desktop_.left_basins, 2);
}

// A file that another program changed.

TEST_F(SecondThoughts, SaveAsksBeforeItReplacesWhatAnotherProgramWrote) {
    const fs::path file = changed_basin();
    change_elsewhere(file);
    dialogs_.then(Answer::No);
    life_.save();
    EXPECT_EQ(last_message().title, "The file has changed");
    EXPECT_NE(last_message().text.find(path_text(file)), std::string::npos);
    EXPECT_EQ(last_message().default_answer, Answer::No);
    EXPECT_EQ(description_in(file), "from elsewhere");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    dialogs_.then(Answer::Yes);
    life_.save();
    EXPECT_EQ(description_in(file), "typed");
    const std::size_t messages = dialogs_.messages().size();
    life_.save();
    EXPECT_EQ(dialogs_.messages().size(), messages) << "its own save is no change of another program";
}

TEST_F(SecondThoughts, TheQuestionAsksTheSameAndNoCountsAsCancel) {
    const fs::path file = changed_basin();
    change_elsewhere(file);
    dialogs_.then(Answer::Yes).then(Answer::No);
    EXPECT_FALSE(life_.may_exit());
    EXPECT_EQ(last_message().title, "The file has changed");
    EXPECT_EQ(description_in(file), "from elsewhere");
    expect_still_asked();
}

TEST_F(SecondThoughts, AFileIsComparedWithItsStateAtOpening) {
    const fs::path file = changed_basin();
    dialogs_.then(Answer::No).then_file(file);
    life_.open();
    life_.save();
    EXPECT_EQ(last_message().title, "Save Data?") << "nobody has changed it";
    change_elsewhere(file);
    dialogs_.then(Answer::No);
    life_.save();
    EXPECT_EQ(last_message().title, "The file has changed");
}

TEST_F(SecondThoughts, AChangeThatKeepsSizeAndTimeIsSeen) {
    const fs::path file = changed_basin();
    const auto size = fs::file_size(file);
    const auto time = fs::last_write_time(file);
    change_elsewhere(file);
    fs::last_write_time(file, time);
    ASSERT_EQ(fs::file_size(file), size);
    dialogs_.then(Answer::No);
    life_.save();
    EXPECT_EQ(last_message().title, "The file has changed");
}

TEST_F(SecondThoughts, AFileThatWasOnlyTouchedOrPutBackIsNotAskedAbout) {
    const fs::path file = changed_basin();
    fs::copy_file(file, user_ / "backup.mdb");
    fs::remove(file);
    fs::rename(user_ / "backup.mdb", file);
    fs::last_write_time(file, fs::file_time_type::clock::now());
    life_.save();
    EXPECT_EQ(description_in(file), "typed");
}

// The messages of Open.

TEST_F(SecondThoughts, AFileOfANewerVersionIsNamedAsSuchInASecondSentence) {
    const fs::path file = save_new_basin("alder.mdb");
    const fs::path newer = user_ / "newer.mdb";
    fs::copy_file(file, newer);
    SQLite::Database{path_text(newer), SQLite::OPEN_READWRITE}.exec("PRAGMA user_version = 9999");
    dialogs_.then_file(newer);
    life_.open();
    const std::string first =
        "The file you have selected, " + path_text(newer) + ", has an unrecognized format. ";
    EXPECT_EQ(last_message().text.substr(0, first.size()), first);
    EXPECT_NE(last_message().text.find("was written by a newer version of Nivora"), std::string::npos);
}

TEST_F(SecondThoughts, ADamagedIndexIsReportedWithItsTableAndTheCommandThatSalvagesTheRest) {
    const fs::path file = save_new_basin("alder.mdb");
    BasinDatabase{file, Access::ReadWrite}.execute("INSERT INTO PhysicalData (Zone, Date) VALUES (1, 36000)");
    empty_index(file, "PhysicalData.key");
    const std::string before = file_bytes(file);
    dialogs_.then_file(file);
    life_.open();
    EXPECT_EQ(last_message().title, "Error encountered while reading this basin database");
    EXPECT_THAT(last_message().text,
                testing::StartsWith("The file you have selected, " + path_text(file) +
                                    ", has an unrecognized format. The file '" + path_text(file) +
                                    "' is damaged in the table 'PhysicalData': "));
    EXPECT_THAT(last_message().text,
                testing::HasSubstr("nivora-batch salvage \"" + path_text(file) + "\" NEW.mdb"));
    EXPECT_TRUE(life_.has_template_name());
    EXPECT_TRUE(file_bytes(file) == before);
}

TEST_F(SecondThoughts, ABasinWithDamagedResultsCanBeOpened) {
    const fs::path file = save_new_basin("alder.mdb");
    {
        BasinDatabase database{file, Access::ReadWrite};
        database.create_table(sim_results_table());
        database.execute("INSERT INTO SimResults (Zone, Date) VALUES (1, 36000)");
    }
    damage_first_page(file, "SimResults", std::string(64, '\x7f'));
    dialogs_.then_file(file);
    life_.open();
    EXPECT_EQ(last_message().title, "The results are damaged");
    EXPECT_THAT(last_message().text, testing::HasSubstr(path_text(file)));
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_EQ(session_.basin.basin_name, "Alder Fork");
    EXPECT_FALSE(BasinDatabase(program_ / "new.mdb", Access::ReadOnly).has_table("SimResults"));
}

TEST_F(SecondThoughts, ADamagedWorkingFileOfTheLastStartIsReportedIfThereIsNoTemplate) {
    save_new_basin("alder.mdb");
    fs::remove(program_ / "null.mdb");
    misname_field(program_ / "new.mdb", "\"Tavg\" FLOAT", "\"Tawg\"");
    life_.start();
    EXPECT_EQ(last_message().title, "Error encountered while reading this basin database");
    EXPECT_THAT(last_message().text, testing::HasSubstr("is called 'Tawg'"));
}

#ifndef _WIN32
// A save into a file that another program is writing.

TEST_F(SecondThoughts, ASaveIntoAFileThatAnotherProgramHoldsIsRefusedAndLosesNothing) {
    const fs::path file = changed_basin();
    OtherProgram other{[&](const std::function<void()>& hold) {
        BasinDatabase database{file, Access::ReadWrite};
        database.lock_exclusively();
        hold();
    }};
    life_.save();
    EXPECT_EQ(last_message().title, "The basin was not saved");
    EXPECT_THAT(last_message().text, testing::HasSubstr("save again, or save under another name"));
    expect_still_asked();
    dialogs_.then(Answer::Yes);
    EXPECT_FALSE(life_.may_exit()) << "a save that fails counts as Cancel";
    expect_still_asked();
    other.finish();
    life_.save();
    EXPECT_EQ(description_in(file), "typed");
}

TEST_F(SecondThoughts, SaveAsOverAFileThatAnotherProgramHoldsKeepsTheBasinUnderItsOwnName) {
    const fs::path file = changed_basin();
    const fs::path taken = user_ / "taken.mdb";
    fs::copy_file(file, taken);
    const OtherProgram other{[&](const std::function<void()>& hold) {
        BasinDatabase database{taken, Access::ReadWrite};
        database.execute("BEGIN IMMEDIATE");
        hold();
    }};
    dialogs_.then_file(taken).then(Answer::Yes);
    life_.save_as();
    EXPECT_EQ(last_message().title, "The basin was not saved");
    EXPECT_EQ(session_.basin.Basin_File, file);
    expect_still_asked();
}
#endif

TEST_F(SecondThoughts, AProgramFolderThatCannotBeWrittenIsNamedAndNotTheUsersFile) {
    const fs::path file = changed_basin();
    fs::remove(program_ / "new.mdb");
    fs::create_directories(program_ / "new.mdb" / "in the way");
    dialogs_.then(Answer::No).then_file(file);
    life_.open();
    EXPECT_EQ(last_message().title, "The basin was not opened");
    EXPECT_NE(last_message().text.find("The file '" + path_text(program_ / "new.mdb") + "'"),
              std::string::npos)
        << last_message().text;
    EXPECT_EQ(last_message().text.find(".part"), std::string::npos) << last_message().text;
    expect_still_asked();
}

}  // namespace
}  // namespace nivora
