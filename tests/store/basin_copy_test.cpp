#include "store/basin_copy.h"

#include "base/durable_file.h"
#include "store/database.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>

#ifndef _WIN32
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#endif

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// A basin file that can be recognised by its name and its number of rows.
fs::path make_basin(const fs::path& path, const std::string& name, int days) {
    BasinDatabase::create_template(path);
    BasinDatabase database{path, Access::ReadWrite};
    BasinDescription header = read_basin_description(database);
    header.name = name;
    std::vector<PhysicalRow> rows;
    for (int day = 0; day < days; ++day) {
        rows.push_back({.zone = 1, .date = 30000 + day, .runoff = static_cast<float>(day)});
    }
    atomically_if(database, [&] {
        write_basin_description(database, header);
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
        return true;
    });
    return path;
}

std::string basin_name(const fs::path& path) {
    BasinDatabase database{path, Access::ReadOnly};
    return read_basin_description(database).name.value_or("");
}

std::vector<std::string> sorted_entries(const TemporaryFolder& folder) {
    auto names = folder.entries();
    std::sort(names.begin(), names.end());
    return names;
}

class BasinCopyTest : public testing::Test {
protected:
    TemporaryFolder folder_;
    fs::path user_ = folder_ / "user.mdb";
    fs::path work_ = folder_ / "new.mdb";
};

TEST_F(BasinCopyTest, OpeningBringsTheUsersRowsIntoTheWorkingFile) {
    make_basin(user_, "Alder", 400);
    make_basin(work_, "old work", 1);
    const std::string before = file_bytes(user_);
    copy_into_work_file(user_, work_);
    EXPECT_EQ(basin_name(work_), "Alder");
    EXPECT_TRUE(file_bytes(user_) == before);
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "user.mdb"}));
}

TEST_F(BasinCopyTest, ARefusedFileLeavesTheWorkingFileAsItWas) {
    make_basin(work_, "work", 1);
    const std::string before = file_bytes(work_);
    folder_.write("user.mdb", "no basin at all");
    EXPECT_THROW(copy_into_work_file(user_, work_), StoreError);
    EXPECT_TRUE(file_bytes(work_) == before);
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "user.mdb"}));
}

TEST_F(BasinCopyTest, ATruncatedFileIsRefusedAndUnchanged) {
    make_basin(user_, "Alder", 4000);
    make_basin(work_, "work", 1);
    const std::string whole = file_bytes(user_);
    folder_.write("user.mdb", whole.substr(0, whole.size() / 2));
    EXPECT_THROW(copy_into_work_file(user_, work_), StoreError);
    EXPECT_TRUE(file_bytes(user_) == whole.substr(0, whole.size() / 2));
    EXPECT_EQ(basin_name(work_), "work");
}

TEST_F(BasinCopyTest, SavingReplacesTheUsersFileWithTheWorkingFile) {
    make_basin(user_, "old", 10);
    make_basin(work_, "new", 20);
    copy_over_user_file(work_, user_);
    EXPECT_TRUE(file_bytes(user_) == file_bytes(work_));
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "user.mdb"}));
}

TEST_F(BasinCopyTest, SavingCreatesAMissingFile) {
    make_basin(work_, "new", 20);
    copy_over_user_file(work_, user_);
    EXPECT_EQ(basin_name(user_), "new");
}

TEST_F(BasinCopyTest, SavingKeepsTheModeOfTheFile) {
    make_basin(user_, "old", 1);
    make_basin(work_, "new", 1);
    const auto mode = fs::perms::owner_read | fs::perms::owner_write | fs::perms::group_read;
    fs::permissions(user_, mode);
    copy_over_user_file(work_, user_);
    EXPECT_EQ(fs::status(user_).permissions(), mode);
}

TEST_F(BasinCopyTest, SavingThroughALinkKeepsTheLink) {
    make_basin(user_, "old", 1);
    make_basin(work_, "new", 1);
    const fs::path link = folder_ / "link.mdb";
    fs::create_symlink(user_, link);
    copy_over_user_file(work_, link);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(basin_name(user_), "new");
}

TEST_F(BasinCopyTest, AFileThatIsMarkedReadOnlyIsNotReplaced) {
    make_basin(user_, "old", 1);
    make_basin(work_, "new", 1);
    fs::permissions(user_, fs::perms::owner_read | fs::perms::group_read);
    EXPECT_THROW(copy_over_user_file(work_, user_), FileError);
    EXPECT_EQ(basin_name(user_), "old");
}

TEST_F(BasinCopyTest, AMissingFolderIsAFileError) {
    make_basin(work_, "new", 1);
    EXPECT_THROW(copy_over_user_file(work_, folder_ / "nowhere" / "user.mdb"), FileError);
}

#ifndef _WIN32
/// The error text of `work` when no file may grow beyond `size`, as on a full disk. The limit cannot be
/// raised again, so a child process sets it and writes the text to the file `told`.
std::string told_beyond(std::uintmax_t size, const fs::path& told, const std::function<void()>& work) {
    const pid_t child = fork();
    if (child == 0) {
        std::ofstream text{told};
        std::signal(SIGXFSZ, SIG_IGN);
        const rlimit limit{size, size};
        setrlimit(RLIMIT_FSIZE, &limit);
        try {
            work();
        } catch (const FileError& error) {
            text << error.what();
        } catch (const StoreError& error) {
            text << "StoreError: " << error.what();
        }
        text.close();
        _exit(0);
    }
    int status = 0;
    waitpid(child, &status, 0);
    const std::string content = file_bytes(told);
    fs::remove(told);
    return content;
}

TEST_F(BasinCopyTest, AFullDiskAtOpeningBlamesTheWorkingFile) {
    make_basin(user_, "Alder", 4000);
    make_basin(work_, "work", 1);
    const std::string before = file_bytes(work_);
    EXPECT_EQ(
        told_beyond(fs::file_size(user_) / 2, folder_ / "told", [&] { copy_into_work_file(user_, work_); }),
        "The file '" + path_text(work_) + "' can't be written: the disk may be full.");
    EXPECT_TRUE(file_bytes(work_) == before);
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "user.mdb"}));
}

TEST_F(BasinCopyTest, AFullDiskAtSavingNamesTheUsersFile) {
    make_basin(user_, "old", 1);
    make_basin(work_, "work", 4000);
    EXPECT_EQ(
        told_beyond(fs::file_size(work_) / 2, folder_ / "told", [&] { copy_over_user_file(work_, user_); }),
        "The file '" + path_text(user_) + "' can't be written: the disk may be full.");
    EXPECT_EQ(basin_name(user_), "old");
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "user.mdb"}));
}
#endif

TEST_F(BasinCopyTest, ASaveIntoAMissingFolderNamesTheUsersFile) {
    make_basin(work_, "work", 1);
    const fs::path file = folder_ / "none" / "user.mdb";
    try {
        copy_over_user_file(work_, file);
        FAIL() << "the folder is missing";
    } catch (const FileError& error) {
        EXPECT_EQ(std::string{error.what()},
                  "The file '" + path_text(file) +
                      "' can't be written: its folder can't be written to, or does not exist.");
    }
}

TEST_F(BasinCopyTest, ASaveThatIsRefusedClearsTheLeftoversOfAKilledOneToo) {
    make_basin(user_, "user", 1);
    make_basin(work_, "work", 1);
    folder_.write("user.mdb.999999999-1.part", "killed");
    fs::permissions(user_, fs::perms::owner_read);
    EXPECT_THROW(copy_over_user_file(work_, user_), FileError);
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "user.mdb"}));
}

TEST_F(BasinCopyTest, LeftoversOfADeadWriterAreClearedAndOthersStay) {
    make_basin(work_, "new", 1);
    make_basin(user_, "old", 1);
    folder_.write("user.mdb.999999999-1.part", "half");
    folder_.write("user.mdb.999999999-1.part-journal", "half");
    folder_.write("user.mdb.part", "a user's own file");
    folder_.write("user.mdb.x-1.part", "another user's own file");
    copy_over_user_file(work_, user_);
    EXPECT_EQ(sorted_entries(folder_),
              (std::vector<std::string>{"new.mdb", "user.mdb", "user.mdb.part", "user.mdb.x-1.part"}));
}

#ifndef _WIN32
/// Leaves a file with the journal of a change whose program was killed half way.
void interrupt_change(const fs::path& path) {
    const pid_t child = fork();
    if (child == 0) {
        BasinDatabase database{path, Access::ReadWrite};
        database.execute("PRAGMA cache_size = 1");
        database.execute("PRAGMA cache_spill = 1");
        database.execute("BEGIN IMMEDIATE");
        database.execute("UPDATE PhysicalData SET Runoff = -1");
        kill(getpid(), SIGKILL);
    }
    int status = 0;
    waitpid(child, &status, 0);
    ASSERT_TRUE(WIFSIGNALED(status));
}

double smallest_runoff(const fs::path& path) {
    BasinDatabase database{path, Access::ReadWrite};
    return database.sql().execAndGet("SELECT min(Runoff) FROM PhysicalData").getDouble();
}

TEST_F(BasinCopyTest, AnUnfinishedChangeOfAnotherProgramDoesNotReachTheWorkingFile) {
    make_basin(user_, "Alder", 20000);
    make_basin(work_, "work", 1);
    interrupt_change(user_);
    ASSERT_TRUE(fs::exists(folder_ / "user.mdb-journal"));
    const std::string before = file_bytes(user_);
    copy_into_work_file(user_, work_);
    EXPECT_EQ(smallest_runoff(work_), 0.0);
    EXPECT_TRUE(file_bytes(user_) == before);
}

TEST_F(BasinCopyTest, AJournalBesideTheTargetIsNeverPlayedBackIntoTheNewFile) {
    make_basin(user_, "old", 20000);
    make_basin(work_, "new", 30);
    interrupt_change(user_);
    copy_over_user_file(work_, user_);
    EXPECT_FALSE(fs::exists(folder_ / "user.mdb-journal"));
    EXPECT_EQ(basin_name(user_), "new");
    EXPECT_TRUE(file_bytes(user_) == file_bytes(work_));
}

/// Repeats the work in a child process and kills it after a delay, which the caller varies.
template <typename Work>
void kill_during(Work work, int microseconds) {
    const pid_t child = fork();
    if (child == 0) {
        for (;;) work();
    }
    usleep(static_cast<useconds_t>(microseconds));
    kill(child, SIGKILL);
    int status = 0;
    waitpid(child, &status, 0);
}

TEST_F(BasinCopyTest, ASaveThatIsKilledAtAnyPointLeavesTheOldFileOrTheNewOne) {
    const fs::path one = make_basin(folder_ / "one.mdb", "one", 4000);
    const fs::path two = make_basin(folder_ / "two.mdb", "two", 6000);
    copy_over_user_file(one, user_);
    const std::string bytes_one = file_bytes(one);
    const std::string bytes_two = file_bytes(two);
    for (int attempt = 0; attempt < 60; ++attempt) {
        kill_during(
            [&] {
                copy_over_user_file(two, user_);
                copy_over_user_file(one, user_);
            },
            500 + attempt * 137);
        const std::string found = file_bytes(user_);
        ASSERT_TRUE(found == bytes_one || found == bytes_two) << "after kill " << attempt;
    }
    clear_leftovers(user_);
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"one.mdb", "two.mdb", "user.mdb"}));
}

TEST_F(BasinCopyTest, AnOpenThatIsKilledAtAnyPointLeavesACompleteWorkingFile) {
    const fs::path one = make_basin(folder_ / "one.mdb", "one", 4000);
    const fs::path two = make_basin(folder_ / "two.mdb", "two", 6000);
    copy_into_work_file(one, work_);
    const std::string bytes_one = file_bytes(one);
    for (int attempt = 0; attempt < 60; ++attempt) {
        kill_during(
            [&] {
                copy_into_work_file(two, work_);
                copy_into_work_file(one, work_);
            },
            500 + attempt * 171);
        const std::string name = basin_name(work_);
        ASSERT_TRUE(name == "one" || name == "two") << "after kill " << attempt;
        ASSERT_TRUE(file_bytes(one) == bytes_one);
    }
    clear_leftovers(work_);
    EXPECT_EQ(sorted_entries(folder_), (std::vector<std::string>{"new.mdb", "one.mdb", "two.mdb"}));
}
#endif

}  // namespace
}  // namespace nivora
