// What may not cost unsaved changes: a save that is killed or fails, a copy onto the wrong file, and files
// that can't be removed or looked up.

#include "prep/monthly_averages.h"
#include "store/work_file_state.h"
#include "tests/session/basin_recovery_fixture.h"
#include "tests/support/page_damage.h"

#include <gmock/gmock.h>

#include <sys/wait.h>
#include <unistd.h>

#include <fstream>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Not;

class RecoveryFaultsTest : public BasinRecoveryTest {
protected:
    void describe(const std::string& text) {
        session_.basin.basin_description = text;
        mark_basin_changed(session_.basin);
    }

    [[nodiscard]] static std::string description_in(const fs::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        return read_basin_description(database).description.value_or("none");
    }
};

TEST_F(RecoveryFaultsTest, ASaveKeepsWhatItWritesBeforeItWrites) {
    const fs::path file = save_new_basin("alder.mdb");
    describe("older");
    keep();
    // A kill between the write and the removal of the state must find no older state beside the saved file.
    describe("newer");
    fs::permissions(file, fs::perms::owner_read);
    life_.save();
    fs::permissions(file, fs::perms::owner_all);
    EXPECT_EQ(last_message().title, "The basin was not saved");
    EXPECT_EQ(kept_description(), "newer");
}

TEST_F(RecoveryFaultsTest, AKillAfterASaveHasWrittenAsksNothing) {
    const fs::path file = save_new_basin("alder.mdb");
    describe("saved");
    keep();
    const std::string state = file_bytes(state_file_);
    life_.save();
    std::ofstream{state_file_, std::ios::binary} << state;
    ASSERT_TRUE(start_again());
    EXPECT_TRUE(next_dialogs_.choices().empty());
    EXPECT_EQ(description_in(file), "saved");
    EXPECT_FALSE(has_state());
}

TEST_F(RecoveryFaultsTest, ACopyOntoAFileOfTheProgramIsRefusedByEveryName) {
    define_basin(1);
    describe("changed");
    keep();
    fs::create_symlink(program_ / "new.mdb", user_ / "link.mdb");
    fs::create_hard_link(program_ / "null.mdb", user_ / "second name.mdb");
    const std::string state = file_bytes(state_file_);
    const std::string blank = file_bytes(program_ / "null.mdb");
    next_dialogs_.then_choice(k_copy);
    for (const fs::path& file : {state_file_, user_ / "link.mdb", user_ / "second name.mdb"})
        next_dialogs_.then_file(file).then(Answer::Yes);
    next_dialogs_.then_file(program_ / "nivora.lock").then_file(std::nullopt).then_choice(std::nullopt);
    EXPECT_FALSE(start_again());
    EXPECT_EQ(told().text, "This database file name, " + path_text(program_ / "nivora.lock") +
                               ", is reserved for system use.  Please choose another.");
    EXPECT_EQ(file_bytes(state_file_), state);
    EXPECT_TRUE(file_bytes(program_ / "null.mdb") == blank);
    EXPECT_FALSE(fs::exists(program_ / "nivora.lock"));
}

TEST_F(RecoveryFaultsTest, ACopyOntoTheUsersFileAsksIfAnotherProgramChangedIt) {
    const fs::path file = save_new_basin("alder.mdb");
    describe("changed here");
    keep();
    {
        BasinDatabase other{file, Access::ReadWrite};
        other.execute("UPDATE BasinDescription SET BasinDescription = 'changed elsewhere'");
    }
    next_dialogs_.then_choice(k_copy).then_file(file).then(Answer::Yes).then(Answer::No);
    next_dialogs_.then_choice(std::nullopt);
    EXPECT_FALSE(start_again());
    EXPECT_EQ(told().title, "The file has changed");
    EXPECT_EQ(description_in(file), "changed elsewhere");
    next_dialogs_.then_choice(k_copy).then_file(file).then(Answer::Yes).then(Answer::Yes);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(description_in(file), "changed here");
}

TEST_F(RecoveryFaultsTest, ACopyOntoTheUnchangedFileOfTheUserIsASave) {
    const fs::path file = save_new_basin("alder.mdb");
    describe("changed");
    keep();
    next_dialogs_.then_choice(k_copy).then_file(file).then(Answer::Yes);
    ASSERT_TRUE(start_again());
    EXPECT_EQ(description_in(file), "changed");
    EXPECT_FALSE(has_state());
}

TEST_F(RecoveryFaultsTest, NoBasinIsOpenedOrMadeBesideAStateThatCannotBeRemoved) {
    const fs::path other = save_new_basin("other.mdb");
    const fs::path file = save_new_basin("alder.mdb");
    const std::string work = file_bytes(program_ / "new.mdb");
    describe("changed");
    keep();
    fs::remove(state_file_);
    fs::create_directory(state_file_);  // which no removal of a file removes
    std::ofstream{state_file_ / "inside"} << "x";
    dialogs_.then(Answer::No).then_file(other).then(Answer::No);
    life_.open();
    EXPECT_EQ(last_message().title, "The basin was not opened");
    EXPECT_THAT(last_message().text, HasSubstr(path_text(state_file_) + "' can't be removed"));
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_FALSE(life_.new_basin());
    EXPECT_EQ(last_message().title, "No new basin was created");
    EXPECT_TRUE(file_bytes(program_ / "new.mdb") == work);
}

TEST_F(RecoveryFaultsTest, AFileOfTheProgramIsNotOpened) {
    define_basin(1);
    keep();
    const std::string state = file_bytes(state_file_);
    dialogs_.then(Answer::No).then_file(state_file_);
    life_.open();
    EXPECT_EQ(last_message().text, path_text(state_file_) + " is a reserved file name used by Nivora!");
    EXPECT_EQ(file_bytes(state_file_), state);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(RecoveryFaultsTest, ResultsThatARecoveryLeftOutDoNotCountAfterASecondCrash) {
    save_new_basin("alder.mdb");
    const fs::path work = session_.basin.Work_File;
    {
        BasinDatabase database{work, Access::ReadWrite};
        database.create_table(sim_results_table());
        database.execute("INSERT INTO SimResults (Zone, Date) VALUES (1, 36000)");
    }
    damage_first_page(work, "SimResults", std::string(64, '\x7f'));
    mark_basin_changed(session_.basin);
    mark_results_current(session_.basin);
    describe("changed");
    keep();
    next_dialogs_.then_choice(k_recover).then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_FALSE(BasinDatabase(work, Access::ReadOnly).has_table("SimResults"));
    EXPECT_FALSE(next_.basin.Output_Valid);
    // The counter of the new working file may be any number, also that of the state.
    const auto counter = read_recovery_file(state_file_)->change_counter.value();
    std::string bytes;
    for (const unsigned shift : {24U, 16U, 8U, 0U}) bytes += static_cast<char>(counter >> shift & 0xFFU);
    constexpr std::size_t k_counter_at = 24;
    put_bytes(work, k_counter_at, bytes);
    ASSERT_EQ(change_counter(work), counter);
    ASSERT_TRUE(start_again());
    EXPECT_FALSE(next_.basin.Output_Valid);
}

TEST_F(RecoveryFaultsTest, AStateThatCannotBeLookedUpIsNotTakenForNone) {
    EXPECT_THROW(static_cast<void>(read_recovery_file(program_ / std::string(5000, 'x'))), RecoveryError);
}

TEST_F(RecoveryFaultsTest, AJournalIsMovedAsideWithItsWorkingFile) {
    define_basin(1);
    keep();
    std::ofstream{state_file_} << "broken";
    const std::string work = file_bytes(program_ / "new.mdb");
    std::ofstream{program_ / "new.mdb-journal"} << "of a killed program";
    ASSERT_TRUE(start_again());
    const auto aside = files("recovery ");
    ASSERT_EQ(aside.size(), 3U);
    EXPECT_EQ(file_bytes(program_ / aside[0]), work);
    EXPECT_EQ(file_bytes(program_ / aside[1]), "of a killed program");
    EXPECT_EQ(files("new.mdb").size(), 1U);
}

TEST_F(RecoveryFaultsTest, OddNamesAreShownShortAndOnOneLine) {
    define_basin(1);
    session_.basin.basin_name = std::string(4096, 'x');
    keep();
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_LT(question().size(), 1500U);
    EXPECT_EQ(next_.basin.basin_name, std::string(4096, 'x'));
    next_.basin.basin_name = "a \"quote\"\nFile: /nowhere.mdb\r\t\x01 b\xff";
    next_life_->keep_recovery();
    next_life_->finish_recovery();
    const std::string name = next_.basin.basin_name;
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("Basin: a \"quote\" File: /nowhere.mdb"));
    EXPECT_THAT(question(), Not(HasSubstr("\nFile: /nowhere")));
    EXPECT_EQ(next_.basin.basin_name, name) << "the basin keeps its name";
}

TEST_F(RecoveryFaultsTest, AShortenedNameEndsBetweenCharacters) {
    define_basin(1);
    std::string name = "x";
    for (int i = 0; i < 300; ++i) name += "é";
    session_.basin.basin_name = name;
    keep();
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(question(), HasSubstr("é…é"));
}

TEST_F(RecoveryFaultsTest, ABasinOfAVanishedFolderOrAnEndlessNameComesBack) {
    for (const fs::path& gone : {fs::path{"/net/gone/alder.mdb"}, user_ / (std::string(4000, 'y') + ".mdb"),
                                 user_ / "a\n\xff.mdb"}) {
        if (session_.basin.zones.empty()) define_basin(1);
        session_.basin.New_Basin = false;
        session_.basin.Basin_File = gone;
        describe("changed");
        keep();
        next_dialogs_.then_choice(k_recover);
        ASSERT_TRUE(start_again());
        EXPECT_THAT(question(), HasSubstr("This file is gone, or can't be read."));
        EXPECT_EQ(next_.basin.Basin_File, gone);
        EXPECT_EQ(next_.basin.basin_description, "changed");
    }
}

TEST_F(RecoveryFaultsTest, ChangesOfTheOpenMonthlyAveragesComeBack) {
    save_new_basin("alder.mdb");
    MonthlyAverages months{session_.basin.Work_File, 2, &session_.prep.daily_edits};
    months.set_value(2, 3, 1, -1.5F);
    months.set_value(1, 12, 3, k_missing);
    months.note_typed(1, 1, 0, 7.25F);
    keep();
    // A kill takes the transaction back; a copy of the working file stands for what it leaves.
    fs::copy_file(program_ / "new.mdb", user_ / "left.mdb");
    fs::rename(user_ / "left.mdb", program_ / "new.mdb");
    next_dialogs_.then_choice(k_recover).then_choice(k_recover);
    ASSERT_TRUE(start_again());
    EXPECT_THAT(
        question(),
        HasSubstr("   3 changes in the monthly averages, which were open; Recover keeps them as Accept "
                  "does\n"));
    EXPECT_TRUE(next_.basin.Input_Changed);
    ASSERT_TRUE(start_again()) << "a second crash";
    BasinDatabase work{program_ / "new.mdb", Access::ReadOnly};
    EXPECT_EQ(read_stored_year(work, 2).at(2).values.at(1), -1.5F);
    EXPECT_TRUE(is_missing(read_stored_year(work, 1).at(11).values.at(3)));
    EXPECT_EQ(read_stored_year(work, 1).at(0).values.at(0), 7.25F);
}

TEST_F(RecoveryFaultsTest, AcceptAndCancelEndTheNotesOfTheMonthlyAverages) {
    save_new_basin("alder.mdb");
    for (const bool accepted : {true, false}) {
        {
            MonthlyAverages months{session_.basin.Work_File, 2, &session_.prep.daily_edits};
            months.set_value(1, 1, 0, accepted ? 1.0F : 2.0F);
            months.note_typed(1, 1, 1, 3.0F);
            EXPECT_FALSE(session_.prep.daily_edits.empty());
            if (accepted) months.commit();
        }
        EXPECT_TRUE(session_.prep.daily_edits.empty());
    }
}

TEST_F(RecoveryFaultsTest, RecalculatedMonthlyAveragesComeBack) {
    save_new_basin("alder.mdb");
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        // Day 35003 is in October 1995.
        add_rows<PhysicalRow>(
            database, template_table(k_physical_data),
            std::vector<PhysicalRow>{{.zone = 1, .date = 35003, .tmax = 4.5F, .precip = 2.0F}});
    }
    MonthlyAverages months{session_.basin.Work_File, 2, &session_.prep.daily_edits};
    ASSERT_TRUE(months.recalculate());
    keep();
    fs::copy_file(program_ / "new.mdb", user_ / "left.mdb");
    fs::rename(user_ / "left.mdb", program_ / "new.mdb");
    next_dialogs_.then_choice(k_recover);
    ASSERT_TRUE(start_again());
    BasinDatabase work{program_ / "new.mdb", Access::ReadOnly};
    const int month = civil_date(35003).month;
    const MonthValues values = read_stored_year(work, 1).at(static_cast<std::size_t>(month) - 1).values;
    EXPECT_EQ(values[0], 4.5F);
    EXPECT_TRUE(is_missing(values[1]));
    EXPECT_EQ(values[3], 2.0F);
}

TEST_F(RecoveryFaultsTest, AValueThatIsBeingTypedIsKeptUntilItIsStoredOrLeft) {
    save_new_basin("alder.mdb");
    add_days();
    const auto editor = edit();
    bool typing = true;
    session_.prep.note_typed = [&] { editor->note_typed(1, 1, typing ? std::optional{9.5} : std::nullopt); };
    keep();
    const auto typed = read_recovery_file(state_file_);
    ASSERT_TRUE(typed) << "an otherwise unchanged basin has a state, too";
    EXPECT_EQ(typed->daily_edits, "v Runoff 2 9.5\n");
    typing = false;
    keep();
    EXPECT_FALSE(has_state());
}

TEST_F(RecoveryFaultsTest, AValueThatNoFieldCanHoldIsNotKeptWhileItIsTyped) {
    save_new_basin("alder.mdb");
    add_days();
    const auto editor = edit();
    editor->note_typed(1, 1, 1e300);
    EXPECT_TRUE(session_.prep.daily_edits.empty());
}

TEST_F(RecoveryFaultsTest, TheCellThatIsBeingTypedInIsKeptAndTheBasinStaysAsItIs) {
    save_new_basin("alder.mdb");
    desktop_.put_typed_cell = [](BasinState& copy) {
        copy.zones.at(0).area = 99.5;
        mark_input_changed(copy);
    };
    keep();
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_EQ(session_.basin.zones.at(0).area, 12.5);
    const auto state = read_recovery_file(state_file_);
    ASSERT_TRUE(state);
    EXPECT_EQ(state->zones.at(0).area, 99.5);
    EXPECT_TRUE(state->Input_Changed);
}

TEST_F(RecoveryFaultsTest, AHalfWrittenStateOfAKilledProgramIsRemovedAtTheNextStart) {
    const pid_t killed = fork();
    if (killed == 0) _exit(0);
    waitpid(killed, nullptr, 0);
    fs::path part = state_file_;
    part += "." + std::to_string(killed) + "-1.part";
    std::ofstream{part} << "half";
    ASSERT_TRUE(start_again());
    EXPECT_FALSE(fs::exists(part));
}

}  // namespace
}  // namespace nivora
