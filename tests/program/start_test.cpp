// The start of the program: what prevents it, what it tolerates, and that only one copy runs.

#include "base/durable_file.h"
#include "tests/program/running_nivora.h"

#include <SQLiteCpp/Database.h>
#include <gmock/gmock.h>

#include <csignal>
#include <fstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* k_duplicate_title = "Duplicate instances of Nivora not allowed!";
constexpr const char* k_format_title = "Error encountered while reading this basin database";

class StartTest : public ProgramTest {
protected:
    /// Ends the program as its user does.
    void leave(StartedProgram& program) {
        open_menu(program, "alt+f", "Exit");
        display().press({"x"});
        EXPECT_EQ(program.status(), 0) << program.printed();
    }
};

TEST_F(StartTest, ACleanUserGetsTheWelcomeWindow) {
    const UserFolders folders;
    const auto program = start(folders);
    ASSERT_TRUE(await_window(*program, k_welcome_title));
    EXPECT_FALSE(fs::exists(folders.program() / "new.mdb")) << "the file work comes after the welcome";
    click(*program, k_welcome_title, "push button", "Start");
    ASSERT_TRUE(await_window(*program, k_main_title));
    leave(*program);
}

TEST_F(StartTest, ExitOnTheWelcomeWindowEndsTheStart) {
    const UserFolders folders;
    const auto program = start(folders);
    click(*program, k_welcome_title, "push button", "Exit program");
    EXPECT_EQ(program->status(), 0);
    EXPECT_FALSE(fs::exists(folders.program() / "new.mdb"));
}

TEST_F(StartTest, AWelcomeWindowThatIsTurnedOffDoesNotReturn) {
    const UserFolders folders;
    const auto first = start(folders);
    click(*first, k_welcome_title, "check box", "Check here to skip this introduction in the future");
    click(*first, k_welcome_title, "push button", "Start");
    ASSERT_TRUE(await_window(*first, k_main_title));
    leave(*first);
    const auto second = start(folders);
    ASSERT_TRUE(wait_until([&] { return !reader().windows(second->number()).empty(); }));
    EXPECT_EQ(reader().windows(second->number()).front().name(), k_main_title);
    leave(*second);
}

TEST_F(StartTest, AFolderInWhichNoFileCanBeMadeEndsTheStart) {
    const UserFolders folders;
    // The test file can't be created where a folder has its name. This holds for the administrator as well,
    // whom no permission stops. EISDIR is error 21.
    fs::create_directory(folders.program() / "test");
    const auto program = start(folders);
    const std::string title = "Tarnlog-7 cannot run, insufficient permission level (Error code  21)";
    EXPECT_THAT(
        message_text(*program, title),
        HasSubstr(
            "You must have 'Modify' permission on the Tarnlog-7 startup subdirectory in order to run the "
            "program.  Contact the administrator of you computer to modify your permissions."));
    leave_message(*program, title, "OK");
    EXPECT_TRUE(program->status().has_value());
    EXPECT_FALSE(fs::exists(folders.program() / "new.mdb"));
    EXPECT_TRUE(fs::is_directory(folders.program() / "test"));
}

TEST_F(StartTest, ASecondCopyIsRefusedAndTheFirstOneContinues) {
    const UserFolders folders;
    folders.without_welcome();
    const auto first = start(folders);
    ASSERT_TRUE(await_window(*first, k_main_title));
    const auto written = fs::last_write_time(folders.program() / "new.mdb");
    const auto second = start(folders);
    EXPECT_THAT(message_text(*second, k_duplicate_title), HasSubstr("Nivora already running!"));
    EXPECT_FALSE(reader().window(second->number(), k_main_title));
    leave_message(*second, k_duplicate_title, "OK");
    EXPECT_TRUE(second->status().has_value());
    EXPECT_EQ(fs::last_write_time(folders.program() / "new.mdb"), written);
    leave(*first);
}

TEST_F(StartTest, OfTwoCopiesStartedAtTheSameMomentExactlyOneStays) {
    const UserFolders folders;
    folders.without_welcome();
    for (int round = 0; round < 4; ++round) {
        const auto one = start(folders);
        const auto other = start(folders);
        int stay = 0;
        int go = 0;
        for (StartedProgram* program : {one.get(), other.get()}) {
            ASSERT_TRUE(wait_until([&] { return !reader().windows(program->number()).empty(); }))
                << program->printed();
            const auto windows = reader().windows(program->number());
            if (windows.front().name() == k_main_title) ++stay;
            if (windows.front().name() == k_duplicate_title) ++go;
        }
        EXPECT_EQ(stay, 1) << "in round " << round;
        EXPECT_EQ(go, 1) << "in round " << round;
    }
}

TEST_F(StartTest, ALockThatAKilledProgramLeftDoesNotPreventTheNextStart) {
    const UserFolders folders;
    folders.without_welcome();
    for (int round = 0; round < 2; ++round) {
        const auto killed = start(folders);
        ASSERT_TRUE(await_window(*killed, k_main_title));
        killed->send(SIGKILL);
        EXPECT_EQ(killed->status(), 128 + SIGKILL);
    }
    const auto next = start(folders);
    ASSERT_TRUE(await_window(*next, k_main_title));
    leave(*next);
}

/// What may be left as the lock after a power failure, or by a machine that had another name.
class LeftLockTest : public StartTest, public testing::WithParamInterface<const char*> {};

TEST_P(LeftLockTest, ALockThatNobodyHoldsDoesNotPreventAStart) {
    const UserFolders folders;
    folders.without_welcome();
    std::ofstream{folders.program() / "nivora.lock"} << GetParam();
    const auto program = start(folders);
    ASSERT_TRUE(await_window(*program, k_main_title));
    leave(*program);
}

INSTANTIATE_TEST_SUITE_P(Locks, LeftLockTest,
                         testing::Values("", "\n\n\n", "nonsense",
                                         "999999999\nnivora\nthis-machine-had-another-name\n",
                                         "1\nnivora\nlocalhost\n"),
                         [](const auto& tested) { return "Lock" + std::to_string(tested.index); });

TEST_F(StartTest, AMissingTemplateLeavesTheBasinOfTheLastStart) {
    const UserFolders folders;
    folders.without_welcome();
    fs::copy_file(folders.program() / "null.mdb", folders.program() / "new.mdb");
    {
        SQLite::Database basin{path_text(folders.program() / "new.mdb"), SQLite::OPEN_READWRITE};
        basin.exec("UPDATE BasinDescription SET BasinName = 'left over'");
    }
    fs::remove(folders.program() / "null.mdb");
    const auto program = start(folders);
    const auto name = await(*program, k_main_title, "text", "Name:");
    ASSERT_TRUE(name);
    EXPECT_TRUE(wait_until([&] { return name->text() == "left over"; }, Seconds{5.0})) << name->text();
    leave(*program);
}

/// Makes the files of a program folder unusable. The start then shows one box, and after it the main window.
struct UnfitFiles {
    const char* name;
    void (*make)(const fs::path& program_folder);
};

void write(const fs::path& file, const std::string& content) {
    std::ofstream{file, std::ios::binary | std::ios::trunc} << content;
}

class UnfitFilesTest : public StartTest, public testing::WithParamInterface<UnfitFiles> {};

TEST_P(UnfitFilesTest, AreReportedInABoxAndTheProgramStays) {
    const UserFolders folders;
    folders.without_welcome();
    GetParam().make(folders.program());
    const auto program = start(folders);
    EXPECT_THAT(message_text(*program, k_format_title),
                HasSubstr("The file you have selected, " + path_text(folders.program() / "null.mdb") +
                          ", has an unrecognized format"));
    leave_message(*program, k_format_title, "OK");
    ASSERT_TRUE(await_window(*program, k_main_title));
    leave(*program);
}

INSTANTIATE_TEST_SUITE_P(
    Files, UnfitFilesTest,
    testing::Values(UnfitFiles{"NoTemplateAndNoWorkingFile",
                               [](const fs::path& folder) { fs::remove(folder / "null.mdb"); }},
                    UnfitFiles{
                        "TemplateIsNoDatabaseAndThereIsNoWorkingFile",
                        [](const fs::path& folder) { write(folder / "null.mdb", "This is no database."); }},
                    UnfitFiles{"TemplateAndWorkingFileAreNoDatabases",
                               [](const fs::path& folder) {
                                   write(folder / "null.mdb", "");
                                   write(folder / "new.mdb", "This is no database either.");
                               }},
                    UnfitFiles{"TemplateIsAnotherApplicationsDatabase",
                               [](const fs::path& folder) {
                                   fs::remove(folder / "null.mdb");
                                   SQLite::Database other{path_text(folder / "null.mdb"),
                                                          SQLite::OPEN_READWRITE | SQLite::OPEN_CREATE};
                                   other.exec("CREATE TABLE Recipes (Name TEXT)");
                               }},
                    UnfitFiles{"WorkingFileIsAFolder",
                               [](const fs::path& folder) {
                                   fs::create_directory(folder / "new.mdb");
                                   write(folder / "new.mdb" / "of the user", "stays");
                               }}),
    [](const auto& tested) { return std::string{tested.param.name}; });

TEST_F(StartTest, ABrokenWorkingFileIsReplacedByTheTemplate) {
    const UserFolders folders;
    folders.without_welcome();
    write(folders.program() / "new.mdb", "This is no database.");
    write(folders.program() / "new.mdb-journal", "nor is this a journal");
    const auto program = start(folders);
    const auto name = await(*program, k_main_title, "text", "Name:");
    ASSERT_TRUE(name);
    EXPECT_TRUE(wait_until([&] { return name->text() == "<basin name>"; }, Seconds{5.0})) << name->text();
    leave(*program);
}

}  // namespace
}  // namespace nivora
