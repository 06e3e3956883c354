// The program is killed, and started again.

#include "base/durable_file.h"
#include "tests/program/running_nivora.h"

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>

#include <csignal>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* k_question = "Recover unsaved changes?";

class RecoveryTest : public ProgramTest {
protected:
    void SetUp() override {
        ProgramTest::SetUp();
        if (!IsSkipped()) folders_.without_welcome();
    }

    /// Types a name for the new basin, waits until it is kept, and kills the program.
    void type_and_kill(const std::string& name) {
        const auto program = start(folders_);
        const auto box = await(*program, k_main_title, "text", "Name:");
        ASSERT_TRUE(box);
        press(*program, k_main_title, {"ctrl+a"});
        display().type(name);
        ASSERT_TRUE(wait_until([&] { return box->text() == name; })) << "typed: " << box->text();
        ASSERT_TRUE(wait_until([&] { return state().find("\nname " + name + "\n") != std::string::npos; },
                               Seconds{10.0}))
            << "not kept: " << state();
        program->send(SIGKILL);
        EXPECT_EQ(program->status(), 128 + SIGKILL);
    }

    [[nodiscard]] std::string state() const {
        const fs::path file = folders_.program() / "recovery.state";
        return fs::exists(file) ? file_bytes(file) : std::string{};
    }

    void expect_name(StartedProgram& program, const std::string& name) {
        const auto box = await(program, k_main_title, "text", "Name:");
        ASSERT_TRUE(box);
        EXPECT_TRUE(wait_until([&] { return box->text() == name; }, Seconds{5.0})) << box->text();
    }

    UserFolders folders_;
};

TEST_F(RecoveryTest, WhatWasTypedBeforeAKillComesBack) {
    ASSERT_NO_FATAL_FAILURE(type_and_kill("Larch Brook"));
    const auto next = start(folders_);
    EXPECT_THAT(message_text(*next, k_question), HasSubstr("Basin: Larch Brook"));
    click(*next, k_question, "push button", "Recover");
    ASSERT_NO_FATAL_FAILURE(expect_name(*next, "Larch Brook"));
    EXPECT_THAT(state(), HasSubstr("\nname Larch Brook\n"));
    // Exit asks about the changes, which are not saved; No gives them up, and no state is left.
    open_menu(*next, "alt+f", "Exit");
    display().press({"x"});
    click(*next, "Save Data?", "push button", "No");
    EXPECT_EQ(next->status(), 0) << next->printed();
    EXPECT_EQ(state(), "");
}

TEST_F(RecoveryTest, AChangeInTheOpenDailyEditorComesBack) {
    const fs::path file = folders_.sample();
    const std::string before = file_bytes(file);
    {
        const auto program = start(folders_);
        ASSERT_TRUE(await_window(*program, k_main_title));
        open_menu(*program, "alt+f", "Open");
        display().press({"o"});
        const auto box = await(*program, "Open a NVR database", "text", "File name:");
        ASSERT_TRUE(box);
        press(*program, "Open a NVR database", {"ctrl+a"});
        display().type(path_text(file));
        ASSERT_TRUE(wait_until([&] { return box->text() == path_text(file); })) << box->text();
        display().press({"Return"});
        ASSERT_TRUE(await(*program, k_main_title, "label", path_text(file)));
        open_menu(*program, "alt+t", "Variables");
        display().press({"v"});
        ASSERT_TRUE(await(*program, k_main_title, "menu item", "Period of record"));
        display().press({"p"});
        click(*program, "Nivora", "push button", "Yes");  // the sample has a gap, which is filled
        const std::string title = "Edit basin variables";
        ASSERT_TRUE(await_window(*program, title));
        // The first cell of a value is one to the right of the first date.
        press(*program, title, {"Right"});
        display().type("7.25");
        display().press({"Return"});
        ASSERT_TRUE(wait_until([&] { return state().find(" 7.25\n") != std::string::npos; }, Seconds{10.0}))
            << "not kept: " << state() << all_windows(*program);
        // Enter has gone down a day; this cell is not left.
        display().type("8.5");
        ASSERT_TRUE(wait_until([&] { return state().find(" 8.5\n") != std::string::npos; }, Seconds{10.0}))
            << "not kept: " << state() << all_windows(*program);
        program->send(SIGKILL);
        EXPECT_EQ(program->status(), 128 + SIGKILL);
    }
    const auto next = start(folders_);
    EXPECT_THAT(message_text(*next, k_question), HasSubstr("2 changes in the daily editor, which was open"));
    click(*next, k_question, "push button", "Recover");
    ASSERT_TRUE(await(*next, k_main_title, "label", path_text(file)));
    SQLite::Database work{path_text(folders_.program() / "new.mdb"), SQLite::OPEN_READONLY};
    EXPECT_EQ(
        work.execAndGet("SELECT Runoff FROM PhysicalData WHERE Zone = 1 ORDER BY Date LIMIT 1").getDouble(),
        7.25);
    EXPECT_EQ(work.execAndGet("SELECT Runoff FROM PhysicalData WHERE Zone = 1 ORDER BY Date LIMIT 1 OFFSET 1")
                  .getDouble(),
              8.5);
    EXPECT_TRUE(file_bytes(file) == before) << "the user's file changes only by a save";
}

TEST_F(RecoveryTest, EscapeAtTheQuestionEndsTheProgramAndKeepsTheChanges) {
    ASSERT_NO_FATAL_FAILURE(type_and_kill("Larch Brook"));
    const std::string before = state();
    const auto next = start(folders_);
    ASSERT_TRUE(await_window(*next, k_question));
    press(*next, k_question, {"Escape"});
    EXPECT_EQ(next->status(), 0) << next->printed();
    EXPECT_EQ(state(), before);
}

TEST_F(RecoveryTest, AKilledQuestionIsAskedAgainAndDiscardStartsAfresh) {
    ASSERT_NO_FATAL_FAILURE(type_and_kill("Larch Brook"));
    {
        const auto killed = start(folders_);
        ASSERT_TRUE(await_window(*killed, k_question));
        killed->send(SIGKILL);
        EXPECT_EQ(killed->status(), 128 + SIGKILL);
    }
    const auto next = start(folders_);
    click(*next, k_question, "push button", "Discard");
    click(*next, "Discard the changes?", "push button", "Yes");
    ASSERT_NO_FATAL_FAILURE(expect_name(*next, "<basin name>"));
    EXPECT_EQ(state(), "");
}

TEST_F(RecoveryTest, ASecondCopyLeavesTheStateOfTheFirst) {
    const auto first = start(folders_);
    const auto box = await(*first, k_main_title, "text", "Name:");
    ASSERT_TRUE(box);
    press(*first, k_main_title, {"ctrl+a"});
    display().type("Larch");
    ASSERT_TRUE(wait_until([&] { return !state().empty(); }, Seconds{10.0}));
    const auto second = start(folders_);
    ASSERT_TRUE(await_window(*second, "Duplicate instances of Nivora not allowed!"));
    EXPECT_FALSE(reader().window(second->number(), k_question));
    second->send(SIGKILL);
    EXPECT_EQ(second->status(), 128 + SIGKILL);
    EXPECT_THAT(state(), HasSubstr("\nname Larch"));
    EXPECT_TRUE(first->runs());
}

}  // namespace
}  // namespace nivora
