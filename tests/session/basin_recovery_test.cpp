#include "session/basin_recovery.h"

#include "store/work_file_state.h"
#include "tests/session/basin_recovery_fixture.h"

#include <gmock/gmock.h>

#include <fcntl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace nivora {
namespace {

using testing::HasSubstr;

TEST_F(BasinRecoveryTest, ABasinWithoutUnsavedChangesHasNoState) {
    keep();
    EXPECT_FALSE(has_state());
    save_new_basin("alder.mdb");
    keep();
    EXPECT_FALSE(has_state());
    EXPECT_TRUE(start_again());
    EXPECT_TRUE(next_.basin.New_Basin);
}

TEST_F(BasinRecoveryTest, WhatWasTypedIntoANewBasinComesBack) {
    define_basin(2);
    session_.basin.latitude_text = "12abc";
    keep();
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("Basin: Alder Fork\nFile: none; the basin was never saved\n"));
    EXPECT_THAT(question(), HasSubstr("   2 zones\n   2 simulations\n"));
    EXPECT_EQ(next_.basin.basin_name, "Alder Fork");
    EXPECT_EQ(next_.basin.latitude_text, "12abc");
    EXPECT_EQ(next_.basin.zones.at(1).elevation, 2100.0);
    EXPECT_EQ(next_.basin.simulations.at(1).initial_x, 1.05);
    EXPECT_EQ(next_.basin.basin_units, Units::Metric) << "from the working file";
    EXPECT_TRUE(next_.basin.New_Basin);
    EXPECT_TRUE(next_life_->has_template_name());
    EXPECT_TRUE(next_.basin.Basin_Changed);
    EXPECT_EQ(next_.basin.Current_Sim_Name, "run 1");
    EXPECT_TRUE(next_.shell.run_simulation);
    EXPECT_FALSE(next_.shell.save);
    EXPECT_TRUE(next_.shell.save_as);
}

TEST_F(BasinRecoveryTest, AnOpenBasinComesBackUnderItsFileAndIsSavedThere) {
    const fs::path file = save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    mark_basin_changed(session_.basin);
    keep();
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("File: " + path_text(file) + "\nState of: "));
    EXPECT_THAT(question(), HasSubstr("Different from the file:\n   the boxes of the basin definition\n\n"));
    EXPECT_EQ(next_.basin.Basin_File, file);
    EXPECT_TRUE(next_.shell.save);
    EXPECT_EQ(next_.basin.basin_description, "changed");
    EXPECT_TRUE(has_state()) << "until the recovered basin has its own";
    next_life_->save();
    EXPECT_FALSE(has_state());
    BasinDatabase database{file, Access::ReadOnly};
    EXPECT_EQ(read_basin_description(database).description, "changed");
}

TEST_F(BasinRecoveryTest, ACrashBeforeTheRecoveredBasinIsKeptAsksAgain) {
    define_basin(1);
    keep();
    next_dialogs_.then_choice(k_recover).then_choice(k_recover);
    ASSERT_TRUE(start_again());
    ASSERT_TRUE(start_again());
    EXPECT_EQ(next_.basin.basin_name, "Alder Fork");
    next_life_->keep_recovery();
    next_life_->finish_recovery();
    EXPECT_EQ(read_recovery_file(state_file_).value_or(RecoveryState{}).basin_name, "Alder Fork");
}

TEST_F(BasinRecoveryTest, AClosedQuestionEndsTheProgramAndKeepsEverything) {
    define_basin(1);
    keep();
    const std::string state = file_bytes(state_file_);
    const std::string work = file_bytes(program_ / "new.mdb");
    next_dialogs_.then_choice(std::nullopt);
    EXPECT_FALSE(start_again());
    EXPECT_EQ(file_bytes(state_file_), state);
    EXPECT_EQ(file_bytes(program_ / "new.mdb"), work);
}

TEST_F(BasinRecoveryTest, DiscardAsksASecondTime) {
    define_basin(1);
    keep();
    next_dialogs_.then_choice(k_discard).then(Answer::No).then_choice(k_discard).then(Answer::Yes);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(told().title, "Discard the changes?");
    EXPECT_EQ(told().default_answer, Answer::No);
    EXPECT_FALSE(has_state());
    EXPECT_EQ(next_.basin.basin_name, "<basin name>");
    EXPECT_FALSE(next_.basin.Basin_Changed);
}

TEST_F(BasinRecoveryTest, ACopyHasTheChangesAndTheProgramStartsAsUsual) {
    const fs::path file = save_new_basin("alder.mdb");
    const std::string before = file_bytes(file);
    session_.basin.basin_description = "changed";
    mark_basin_changed(session_.basin);
    keep();
    const fs::path copy = user_ / "copy.mdb";
    next_dialogs_.then_choice(k_copy).then_file(std::nullopt).then_choice(k_copy).then_file(copy);
    ASSERT_TRUE(start_again());
    EXPECT_TRUE(file_bytes(file) == before);
    BasinDatabase database{copy, Access::ReadOnly};
    EXPECT_EQ(read_basin_description(database).description, "changed");
    EXPECT_FALSE(has_state());
    EXPECT_EQ(next_.basin.basin_name, "<basin name>");
    EXPECT_TRUE(next_life_->has_template_name());
    EXPECT_EQ(next_.settings.recent_files.front(), path_text(copy));
}

TEST_F(BasinRecoveryTest, ACopyThatCannotBeSavedAsksAgain) {
    define_basin(0);
    keep();
    next_dialogs_.then_choice(k_copy).then_file(user_ / "copy.mdb").then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(told().text, "You must define at least 1 simulation before saving!");
    EXPECT_EQ(next_.basin.basin_name, "Alder Fork");
}

TEST_F(BasinRecoveryTest, AFileThatChangedMeanwhileIsToldAndASaveAsks) {
    const fs::path file = save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed here";
    mark_basin_changed(session_.basin);
    keep();
    {
        BasinDatabase other{file, Access::ReadWrite};
        BasinDescription row = read_basin_description(other);
        row.name = "changed there";
        write_basin_description(other, row);
    }
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("This file was changed by another program"));
    next_dialogs_.then(Answer::No);
    next_life_->save();
    EXPECT_EQ(told().title, "The file has changed");
    EXPECT_TRUE(has_state());
}

TEST_F(BasinRecoveryTest, AFileThatIsGoneIsTold) {
    const fs::path file = save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    mark_basin_changed(session_.basin);
    keep();
    fs::remove(file);
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("This file is gone, or can't be read."));
    next_life_->save();
    EXPECT_TRUE(fs::exists(file));
}

TEST_F(BasinRecoveryTest, TablesOfTheWorkingFileAreCompared) {
    save_new_basin("alder.mdb");
    add_days();
    mark_input_changed(session_.basin);
    keep();
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("   the table PhysicalData: 3 rows, in the file 0\n"));
}

TEST_F(BasinRecoveryTest, AStateWhoseSaveWasCompleteIsNotAsked) {
    save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    mark_basin_changed(session_.basin);
    keep();
    const std::string state = file_bytes(state_file_);
    life_.save();
    EXPECT_FALSE(has_state());
    std::ofstream{state_file_, std::ios::binary} << state;  // the kill came before it was removed
    ASSERT_TRUE(start_again());
    EXPECT_FALSE(has_state());
    EXPECT_TRUE(next_.basin.New_Basin);
}

TEST_F(BasinRecoveryTest, TheStateGoesWithNewOpenAndTheEnd) {
    const fs::path file = save_new_basin("alder.mdb");
    const auto change = [&] {
        session_.basin.basin_description += "!";
        mark_basin_changed(session_.basin);
        keep();
        ASSERT_TRUE(has_state());
        dialogs_.then(Answer::No);
    };
    change();
    EXPECT_TRUE(life_.new_basin());
    EXPECT_FALSE(has_state());
    change();
    dialogs_.then_file(file);
    life_.open();
    EXPECT_FALSE(has_state());
    change();
    EXPECT_TRUE(life_.may_exit());
    keep();
    EXPECT_TRUE(has_state()) << "the program still runs";
    life_.end();
    EXPECT_FALSE(has_state());
}

TEST_F(BasinRecoveryTest, ADeclinedChangeIsKeptUntilAnotherBasinIsThere) {
    save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    mark_basin_changed(session_.basin);
    keep();
    dialogs_.then(Answer::No).then_file(std::nullopt);
    life_.open();  // ends at its file question
    keep();
    EXPECT_TRUE(has_state());
}

TEST_F(BasinRecoveryTest, AChangeAfterADeclinedOneIsKept) {
    save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    mark_basin_changed(session_.basin);
    dialogs_.then(Answer::No);
    EXPECT_TRUE(life_.may_exit());  // but the window stays open
    session_.basin.basin_description = "changed again";
    mark_basin_changed(session_.basin);
    keep();
    EXPECT_EQ(kept_description(), "changed again");
}

TEST_F(BasinRecoveryTest, AFolderThatCannotBeWrittenChangesNothingElse) {
    fs::create_directory(state_file_);  // no file can take its place
    define_basin(1);
    keep();
    dialogs_.then_file(user_ / "alder.mdb");
    life_.save_as();
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_TRUE(fs::exists(user_ / "alder.mdb"));
}

TEST_F(BasinRecoveryTest, TheWorkingFileIsFlushedWithEachTransaction) {
    BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
    constexpr int k_full = 2;
    EXPECT_GE(database.sql().execAndGet("PRAGMA synchronous").getInt(), k_full);
}

TEST_F(BasinRecoveryTest, ValidResultsStayValidWithTheWorkingFileTheyWereComputedIn) {
    save_new_basin("alder.mdb");
    BasinDatabase(session_.basin.Work_File, Access::ReadWrite).create_table(sim_results_table());
    session_.run.CoefficientR2 = 0.875F;
    mark_basin_changed(session_.basin);
    mark_results_current(session_.basin);
    session_.basin.basin_description = "changed";
    keep();
    next_dialogs_.then_choice(k_recover).then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_TRUE(next_.basin.Output_Valid);
    EXPECT_EQ(next_.run.CoefficientR2, 0.875F);
    add_days();  // a change after the state
    next_.run = {};
    ASSERT_TRUE(start_again());
    EXPECT_FALSE(next_.basin.Output_Valid);
    EXPECT_EQ(next_.run.CoefficientR2, 0.0F);
}

TEST_F(BasinRecoveryTest, ResultsThatWereNotValidAreNotValid) {
    save_new_basin("alder.mdb");
    session_.basin.basin_description = "changed";
    mark_input_changed(session_.basin);
    keep();
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_FALSE(next_.basin.Output_Valid);
    EXPECT_TRUE(next_.basin.Input_Changed);
}

TEST_F(BasinRecoveryTest, ChangesInTheOpenDailyEditorComeBack) {
    save_new_basin("alder.mdb");
    add_days();
    mark_input_changed(session_.basin);
    const auto editor = edit();
    ASSERT_TRUE(editor->set_value(0, 1, 5.5));
    editor->mass_edit(MassEdit::Multiply, 1, 0, 1, 2.0F);  // 5.5 and 1 become 11 and 2
    ASSERT_TRUE(editor->set_value(2, 1, k_missing));
    keep();
    editor->roll_back();  // as the engine does after a kill, without a note of it in the state
    next_dialogs_.then_choice(k_recover).then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("   3 changes in the daily editor, which was open"));
    const auto values = runoff_in(program_ / "new.mdb");
    EXPECT_EQ(values.at(0), 11.0F);
    EXPECT_EQ(values.at(1), 2.0F);
    EXPECT_TRUE(is_missing(values.at(2)));
    EXPECT_TRUE(next_.basin.Input_Changed);
    // A crash before the recovered basin has its own state must not make the mass edit twice.
    ASSERT_TRUE(start_again());
    EXPECT_EQ(runoff_in(program_ / "new.mdb").at(0), 11.0F);
}

TEST_F(BasinRecoveryTest, ChangesThatDoneStoredAreNotMadeTwice) {
    save_new_basin("alder.mdb");
    add_days();
    mark_input_changed(session_.basin);
    const auto editor = edit();
    editor->mass_edit(MassEdit::Add, 1, 0, 2, 1.0F);
    keep();
    editor->commit();  // and the kill comes before the next state
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(runoff_in(program_ / "new.mdb"), (std::vector<float>{2.0F, 2.0F, 2.0F}));
}

TEST_F(BasinRecoveryTest, DoneAndCancelEndTheNotesOfTheEditor) {
    save_new_basin("alder.mdb");
    add_days();
    for (const bool done : {true, false}) {
        const auto editor = edit();
        ASSERT_TRUE(editor->set_value(0, 1, done ? 7.0 : 8.0));
        EXPECT_FALSE(session_.prep.daily_edits.empty());
        if (done) {
            editor->commit();
        } else {
            editor->roll_back();
        }
        EXPECT_TRUE(session_.prep.daily_edits.empty());
    }
}

TEST_F(BasinRecoveryTest, ASimulationThatWasDeletedAfterTheStateIsLeftOut) {
    save_new_basin("alder.mdb");
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.create_table(parameter_table("run 2"));
        database.create_table(parameter_table("run 1"));
    }
    mark_input_changed(session_.basin);
    keep();
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.drop_table("run 2");
    }
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    ASSERT_EQ(next_.basin.simulations.size(), 1U);
    EXPECT_EQ(next_.basin.simulations.front().name, "run 1");
}

TEST_F(BasinRecoveryTest, ADamagedStateIsToldAndMovedAsideWithItsWorkingFile) {
    define_basin(1);
    keep();
    const std::string state = file_bytes(state_file_);
    const std::string work = file_bytes(program_ / "new.mdb");
    std::ofstream{state_file_, std::ios::binary} << state.substr(0, state.size() / 2);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(told().title, "The changes can't be recovered");
    EXPECT_THAT(told().text, HasSubstr(path_text(state_file_) + " is not complete."));
    EXPECT_FALSE(has_state());
    const auto aside = files("recovery ");
    ASSERT_EQ(aside.size(), 2U);
    EXPECT_EQ(file_bytes(program_ / aside[0]), work);
    EXPECT_EQ(file_bytes(program_ / aside[1]), state.substr(0, state.size() / 2));
    EXPECT_EQ(next_.basin.basin_name, "<basin name>");
}

TEST_F(BasinRecoveryTest, ADamagedWorkingFileIsToldAndMovedAside) {
    define_basin(1);
    keep();
    fs::resize_file(program_ / "new.mdb", fs::file_size(program_ / "new.mdb") / 2);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(told().title, "The changes can't be recovered");
    EXPECT_EQ(files("recovery ").size(), 2U);
    EXPECT_EQ(files("new.mdb").size(), 1U);
}

TEST_F(BasinRecoveryTest, AWorkingFileThatAnotherProgramHoldsIsLeftForTheNextStart) {
    define_basin(1);
    keep();
    {
        BasinDatabase other{program_ / "new.mdb", Access::ReadWrite};
        other.execute("BEGIN EXCLUSIVE");
        EXPECT_FALSE(start_again());
    }
    EXPECT_EQ(told().title, "The basin was not recovered");
    EXPECT_TRUE(has_state());
    EXPECT_TRUE(files("recovery ").empty());
}

TEST_F(BasinRecoveryTest, AFolderInThePlaceOfTheStateIsMovedAside) {
    fs::create_directory(state_file_);  // reads as no state
    std::ofstream{state_file_ / "of the user"} << "stays";
    ASSERT_TRUE(start_again());
    EXPECT_EQ(told().title, "The changes can't be recovered");
    EXPECT_EQ(files("recovery ").size(), 2U);
}

TEST_F(BasinRecoveryTest, TwoStatesThatAreMovedAsideHaveNamesOfTheirOwn) {
    for (int i = 0; i < 2; ++i) {
        std::ofstream{state_file_} << "broken";
        ASSERT_TRUE(start_again());
    }
    EXPECT_EQ(files("recovery ").size(), 4U);
}

TEST(ChangeCounterTest, ChangesWithEachTransactionThatIsCommitted) {
    const TemporaryFolder folder;
    const fs::path file = folder / "basin.mdb";
    EXPECT_FALSE(change_counter(file));
    BasinDatabase::create_template(file);
    const auto before = change_counter(file);
    ASSERT_TRUE(before);
    BasinDatabase database{file, Access::ReadWrite};
    database.execute("BEGIN");
    database.execute("UPDATE BasinDescription SET BasinName = 'x'");
    EXPECT_EQ(change_counter(file), before);
    database.execute("ROLLBACK");
    EXPECT_EQ(change_counter(file), before);
    database.execute("UPDATE BasinDescription SET BasinName = 'x'");
    EXPECT_NE(change_counter(file), before);
}

TEST(ChangeCounterTest, KeepsTheLocksOfAnOpenTransaction) {
    const TemporaryFolder folder;
    const fs::path file = folder / "basin.mdb";
    BasinDatabase::create_template(file);
    BasinDatabase database{file, Access::ReadWrite};
    database.execute("BEGIN IMMEDIATE");
    ASSERT_TRUE(change_counter(file));
    // Locks are those of a process, so another one looks.
    const pid_t other = fork();
    if (other == 0) {
        constexpr off_t k_reserved_byte = 0x40000001;  // where the engine keeps the lock of a writer
        const int handle = open(file.c_str(), O_RDWR);
        struct flock lock = {};
        lock.l_type = F_WRLCK;
        lock.l_whence = SEEK_SET;
        lock.l_start = k_reserved_byte;
        lock.l_len = 1;
        _exit(fcntl(handle, F_GETLK, &lock) == 0 && lock.l_type != F_UNLCK ? 0 : 1);
    }
    int status = 0;
    waitpid(other, &status, 0);
    EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << "another program could write";
}

}  // namespace
}  // namespace nivora
