// The folder of the working file: which one, who may use it, and what is put into it.

#include "session/work_folder.h"

#include "base/durable_file.h"
#include "tests/support/full_disk.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;

FolderFacts copied_folder(int write_error) {
    return {.program_folder = "/media/stick/nivora",
            .write_error = write_error,
            .data_home = "/home/ann/data",
            .home = "/home/ann"};
}

FolderFacts installed_folder() {
    return {.program_folder = "/usr/lib/nivora", .installed = true, .home = "/home/ann"};
}

TEST(WorkFolderTest, AProgramThatCanWriteBesideItselfWorksThere) {
    const WorkFolder chosen = choose_work_folder(copied_folder(0));
    EXPECT_EQ(chosen.path, "/media/stick/nivora");
    EXPECT_FALSE(chosen.is_own);
    EXPECT_EQ(chosen.error, 0);
}

TEST(WorkFolderTest, WhereWritingIsForbiddenTheUsersDataFolderIsTaken) {
    for (const int error : {EACCES, EPERM, EROFS}) {
        const WorkFolder chosen = choose_work_folder(copied_folder(error));
        EXPECT_EQ(chosen.path, "/home/ann/data/nivora") << error;
        EXPECT_TRUE(chosen.is_own) << error;
    }
}

TEST(WorkFolderTest, AFullOrBrokenProgramFolderIsNoReasonToWorkElsewhere) {
    for (const int error : {ENOSPC, EDQUOT, EIO, EISDIR, EMFILE}) {
        const WorkFolder chosen = choose_work_folder(copied_folder(error));
        EXPECT_TRUE(chosen.path.empty()) << error;
        EXPECT_EQ(chosen.error, error);
    }
}

TEST(WorkFolderTest, AnInstalledProgramNeverWorksBesideItselfEvenWhereItCould) {
    const WorkFolder chosen = choose_work_folder(installed_folder());
    EXPECT_EQ(chosen.path, "/home/ann/.local/share/nivora");
    EXPECT_TRUE(chosen.is_own);
}

TEST(WorkFolderTest, ARelativeDataHomeCountsAsNotGiven) {
    FolderFacts facts = installed_folder();
    facts.data_home = "data";
    EXPECT_EQ(choose_work_folder(facts).path, "/home/ann/.local/share/nivora");
}

TEST(WorkFolderTest, WithoutAHomeThereIsNoFolderAndAnErrorSaysSo) {
    FolderFacts facts = installed_folder();
    facts.home.reset();
    EXPECT_TRUE(choose_work_folder(facts).path.empty());
    EXPECT_EQ(choose_work_folder(facts).error, ENOENT);
    facts.home = "relative";
    EXPECT_TRUE(choose_work_folder(facts).path.empty());
    FolderFacts copied = copied_folder(EROFS);
    copied.home.reset();
    copied.data_home.reset();
    EXPECT_EQ(choose_work_folder(copied).error, EROFS);
}

class FolderFactsTest : public testing::Test {
protected:
    FolderFactsTest() {
        for (const char* name : {"program", "home", "registered"}) fs::create_directory(folder_ / name);
    }
    [[nodiscard]] UserPlaces places(unsigned user) const {
        return {.user = user,
                .data_home = (folder_ / "home/share").string(),
                .home = (folder_ / "home").string(),
                .registered_home = (folder_ / "registered").string()};
    }

    TemporaryFolder folder_;
};

TEST_F(FolderFactsTest, TheTestFileIsGoneAfterwards) {
    const FolderFacts facts = folder_facts(folder_ / "program", places(::geteuid()));
    EXPECT_EQ(facts.write_error, 0);
    EXPECT_FALSE(facts.installed);
    EXPECT_TRUE(fs::is_empty(folder_ / "program"));
}

TEST_F(FolderFactsTest, NoTestFileIsMadeInAFolderOfAPackage) {
    folder_.write(fs::path{"program"} / k_installed_mark, "");
    fs::create_directory(folder_ / "program/test");  // would make the test fail
    const FolderFacts facts = folder_facts(folder_ / "program", places(::geteuid()));
    EXPECT_TRUE(facts.installed);
    EXPECT_EQ(facts.write_error, 0);
}

TEST_F(FolderFactsTest, TheErrorOfTheTestIsTheSystems) {
    fs::create_directory(folder_ / "program/test");
    EXPECT_EQ(folder_facts(folder_ / "program", places(::geteuid())).write_error, EISDIR);
    EXPECT_EQ(folder_facts(folder_ / "nowhere", places(::geteuid())).write_error, ENOENT);
}

TEST_F(FolderFactsTest, AnAdministratorWithTheEnvironmentOfAnotherUserGetsTheOwnHome) {
    // The folders belong to the user of the test; where that is the administrator they are given away.
    constexpr uid_t k_somebody = 4321;
    if (::geteuid() == 0) {
        ASSERT_EQ(::chown((folder_ / "home").c_str(), k_somebody, k_somebody), 0);
    }
    const FolderFacts facts = folder_facts(folder_ / "program", places(0));
    EXPECT_FALSE(facts.data_home);
    EXPECT_EQ(facts.home, folder_ / "registered");
}

TEST_F(FolderFactsTest, AnyOtherUserKeepsTheEnvironmentsPlaces) {
    const FolderFacts facts = folder_facts(folder_ / "program", places(4321));
    EXPECT_EQ(facts.data_home, folder_ / "home/share");
    EXPECT_EQ(facts.home, folder_ / "home");
}

TEST_F(FolderFactsTest, WithoutAHomeInTheEnvironmentTheSystemsListIsAsked) {
    UserPlaces without = places(::geteuid());
    without.home.reset();
    without.data_home = "";
    const FolderFacts facts = folder_facts(folder_ / "program", without);
    EXPECT_FALSE(facts.data_home);
    EXPECT_EQ(facts.home, folder_ / "registered");
}

class OwnFolderTest : public testing::Test {
protected:
    OwnFolderTest() {
        fs::create_directory(folder_ / "program");
        ship("template of this version");
    }
    void ship(const std::string& content) const { folder_.write("program/null.mdb", content); }
    void prepare() const { prepare_own_folder(own(), folder_ / "program"); }
    [[nodiscard]] fs::path own() const { return folder_ / "home/.local/share/nivora"; }
    [[nodiscard]] std::string made_template() const { return read_whole_file(own() / "null.mdb", 1000); }
    [[nodiscard]] std::string refusal() const {
        try {
            prepare();
        } catch (const FileError& error) {
            return error.what();
        }
        return "no refusal";
    }
    [[nodiscard]] static unsigned mode(const fs::path& path) {
        struct stat found = {};
        return ::stat(path.c_str(), &found) == 0 ? found.st_mode & 0777U : 0U;
    }

    TemporaryFolder folder_;
};

TEST_F(OwnFolderTest, IsMadeForItsUserAloneWithTheTemplateInIt) {
    prepare();
    EXPECT_EQ(made_template(), "template of this version");
    EXPECT_EQ(mode(own()), 0700U);
    EXPECT_EQ(mode(folder_ / "home/.local"), 0700U);
}

TEST_F(OwnFolderTest, AnUpdateReplacesTheTemplateAndNothingElse) {
    prepare();
    folder_.write("home/.local/share/nivora/recovery.state", "unsaved work");
    ship("template of the next version");
    prepare();
    EXPECT_EQ(made_template(), "template of the next version");
    EXPECT_EQ(read_whole_file(own() / "recovery.state", 100), "unsaved work");
    ship("template of this version");
    prepare();
    EXPECT_EQ(made_template(), "template of this version") << "the older package was installed again";
}

TEST_F(OwnFolderTest, AnEqualTemplateIsNotWrittenAgain) {
    prepare();
    const auto written = fs::last_write_time(own() / "null.mdb") - std::chrono::hours{1};
    fs::last_write_time(own() / "null.mdb", written);
    prepare();
    EXPECT_EQ(fs::last_write_time(own() / "null.mdb"), written);
}

TEST_F(OwnFolderTest, AMissingShippedTemplateIsLeftToTheStart) {
    fs::remove(folder_ / "program/null.mdb");
    prepare();
    EXPECT_TRUE(fs::is_empty(own()));
}

TEST_F(OwnFolderTest, AFolderThatOthersMayWriteToIsClosedToThem) {
    fs::create_directories(own());
    fs::permissions(own(), fs::perms::all);
    prepare();
    EXPECT_EQ(mode(own()), 0700U);
}

TEST_F(OwnFolderTest, AFolderOfAnotherUserIsRefused) {
    if (::geteuid() != 0) GTEST_SKIP() << "only the administrator can give a folder away";
    fs::create_directories(own());
    ASSERT_EQ(::chown(own().c_str(), 4321, 4321), 0);
    EXPECT_THAT(refusal(), HasSubstr("it belongs to another user"));
}

TEST_F(OwnFolderTest, AFileInItsPlaceIsRefusedByName) {
    fs::create_directories(own().parent_path());
    folder_.write("home/.local/share/nivora", "a file");
    EXPECT_EQ(refusal(), "The folder '" + own().string() +
                             "', in which Nivora keeps its working file, can't be used: it is not a folder.");
}

TEST_F(OwnFolderTest, AFileAmongTheFoldersAboveIsRefused) {
    fs::create_directory(folder_ / "home");
    folder_.write("home/.local", "a file");
    EXPECT_THAT(refusal(), HasSubstr("Not a directory"));
}

TEST_F(OwnFolderTest, AFullDiskAtTheFirstStartLeavesNoHalfTemplate) {
    ship(std::string(100'000, 'x'));
    {
        const FullDisk full{50'000};
        EXPECT_NE(refusal(), "no refusal");
    }
    EXPECT_TRUE(fs::is_empty(own()));
    prepare();
    EXPECT_EQ(fs::file_size(own() / "null.mdb"), 100'000U);
}

}  // namespace
}  // namespace nivora
