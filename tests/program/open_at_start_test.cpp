// A file named at the start, a second start with one, and a program whose folder is not its own to write to.

#include "session/work_folder.h"
#include "tests/program/running_nivora.h"

#include <gmock/gmock.h>

#include <sys/stat.h>

#include <csignal>
#include <fstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;

constexpr const char* k_duplicate_title = "Duplicate instances of Nivora not allowed!";
constexpr const char* k_not_opened = "The basin was not opened";
constexpr const char* k_sample_name = "Ellervane at Corben Bridge";

class OpenAtStartTest : public ProgramTest {
protected:
    OpenAtStartTest() { folders_.without_welcome(); }

    std::unique_ptr<StartedProgram> start_with(const std::vector<std::string>& arguments,
                                               const std::string& log = "nivora.log") {
        Environment environment = display().environment();
        for (const auto& [name, value] : folders_.environment()) environment[name] = value;
        environment["XDG_RUNTIME_DIR"] = "";
        std::vector<std::string> command{(folders_.program() / "nivora").string()};
        command.insert(command.end(), arguments.begin(), arguments.end());
        return std::make_unique<StartedProgram>(command, environment, folders_.home() / log);
    }
    void expect_basin(StartedProgram& program, const std::string& name) {
        const auto box = await(program, k_main_title, "text", "Name:");
        ASSERT_TRUE(box);
        EXPECT_TRUE(wait_until([&] { return box->text() == name; })) << box->text() << all_windows(program);
    }
    void leave(StartedProgram& program) {
        open_menu(program, "alt+f", "Exit");
        display().press({"x"});
        EXPECT_EQ(program.status(), 0) << program.printed();
    }
    /// The start says why a file was not opened, and the program stays with its fresh basin.
    void expect_refused(const std::string& named, const std::string& reason) {
        const auto program = start_with({named});
        EXPECT_THAT(message_text(*program, k_not_opened), HasSubstr(reason));
        leave_message(*program, k_not_opened, "OK");
        expect_basin(*program, "<basin name>");
        leave(*program);
    }

    UserFolders folders_;
};

TEST_F(OpenAtStartTest, ANamedFileIsOpen) {
    const auto program = start_with({folders_.sample("alder basin.mdb").string()});
    expect_basin(*program, k_sample_name);
    leave(*program);
}

TEST_F(OpenAtStartTest, WhatIsNoBasinFileIsRefusedByName) {
    const fs::path documents = folders_.documents();
    const fs::path pipe = documents / "pipe.mdb";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string nowhere = (documents / "nowhere.mdb").string();
    expect_refused(nowhere, "The file '" + nowhere + "' does not exist. It was not opened.");
    expect_refused(documents.string(), "is a folder. Name the basin file in it.");
    expect_refused(pipe.string(), "is not a regular file.");
    expect_refused("/" + std::string(4095, 'x'), "can't be found: File name too long.");
}

TEST_F(OpenAtStartTest, ASecondStartHandsItsFileToTheFirst) {
    const fs::path file = folders_.sample();
    const auto first = start_with({});
    expect_basin(*first, "<basin name>");
    const auto second = start_with({file.string()}, "second.log");
    EXPECT_EQ(second->status(), 0) << second->printed();
    expect_basin(*first, k_sample_name);
    const auto third = start_with({}, "third.log");
    EXPECT_THAT(message_text(*third, k_duplicate_title), HasSubstr("Nivora already running!"));
    leave_message(*third, k_duplicate_title, "OK");
    EXPECT_EQ(third->status(), 1);
    leave(*first);
}

TEST_F(OpenAtStartTest, UnsavedWorkIsAskedAboutBeforeAHandedFileIsOpened) {
    const fs::path file = folders_.sample();
    const auto first = start_with({});
    expect_basin(*first, "<basin name>");
    press(*first, k_main_title, {"ctrl+a"});
    display().type("my work");
    expect_basin(*first, "my work");
    {
        const auto second = start_with({file.string()}, "second.log");
        EXPECT_EQ(second->status(), 0) << second->printed();
    }
    EXPECT_THAT(message_text(*first, "Save Data?"), HasSubstr("Create database containing these data?"));
    {
        const auto third = start_with({file.string()}, "third.log");
        EXPECT_THAT(message_text(*third, k_not_opened), HasSubstr("a window of it waits for an answer"));
        leave_message(*third, k_not_opened, "OK");
        EXPECT_EQ(third->status(), 1);
    }
    leave_message(*first, "Save Data?", "Cancel");
    expect_basin(*first, "my work");
}

TEST_F(OpenAtStartTest, AfterAKilledProgramAFileIsOpenedByTheNextOne) {
    const fs::path file = folders_.sample();
    const auto killed = start_with({});
    expect_basin(*killed, "<basin name>");
    killed->send(SIGKILL);
    ASSERT_EQ(killed->status(), 128 + SIGKILL);
    const auto next = start_with({file.string()}, "next.log");
    expect_basin(*next, k_sample_name);
    leave(*next);
    EXPECT_FALSE(fs::exists(folders_.program() / "nivora.socket"));
}

TEST_F(OpenAtStartTest, AnInstalledProgramWorksInTheUsersFolderAndLeavesItsOwnAlone) {
    std::ofstream{folders_.program() / k_installed_mark} << "of a package\n";
    std::vector<std::string> before;
    for (const auto& entry : fs::directory_iterator{folders_.program()}) before.push_back(entry.path());
    const fs::path own = folders_.home() / "data" / "nivora";
    const auto program = start_with({folders_.sample().string()});
    expect_basin(*program, k_sample_name);
    for (const char* name : {"null.mdb", "new.mdb", "nivora.lock"})
        EXPECT_TRUE(fs::exists(own / name)) << name;
    leave(*program);
    std::vector<std::string> after;
    for (const auto& entry : fs::directory_iterator{folders_.program()}) after.push_back(entry.path());
    EXPECT_THAT(after, testing::UnorderedElementsAreArray(before));
}

TEST_F(OpenAtStartTest, AnInstalledProgramWithoutAUsableHomeSaysWhy) {
    std::ofstream{folders_.program() / k_installed_mark} << "of a package\n";
    std::ofstream{folders_.home() / "data"} << "a file where the folder would be";
    const auto program = start_with({});
    EXPECT_THAT(message_text(*program, "Nivora cannot run"),
                HasSubstr("in which Nivora keeps its working file, can't be used: "));
    leave_message(*program, "Nivora cannot run", "OK");
    EXPECT_EQ(program->status(), 1);
}

TEST_F(OpenAtStartTest, AWrongCommandLineIsToldWithoutAWindow) {
    const auto program = start_with({"a.mdb", "b.mdb"});
    EXPECT_EQ(program->status(), 2);
    EXPECT_THAT(program->printed(), HasSubstr("One file can be opened at a time."));
}

}  // namespace
}  // namespace nivora
