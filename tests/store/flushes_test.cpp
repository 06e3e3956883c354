// What is flushed to the disk, and in which order, when basins are opened and saved.

#include "store/basin_copy.h"
#include "store/database.h"
#include "store/monthly_table.h"
#include "store/transactions.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#ifdef __linux__
#include <fmt/format.h>

#include <sys/syscall.h>
#include <unistd.h>

namespace {

/// The file names of what was flushed, with "part" for a part file.
std::vector<std::string>& flushed_names() {
    static std::vector<std::string> names;
    return names;
}

void note_flush(int file) {
    std::error_code unknown;
    const auto path = std::filesystem::read_symlink(fmt::format("/proc/self/fd/{}", file), unknown);
    const std::string name = path.filename().string();
    flushed_names().push_back(name.ends_with(".part") ? "part" : name);
}

}  // namespace

// Take the place of the library's functions in this program, also for the database engine.
extern "C" int fsync(int file) {
    note_flush(file);
    return static_cast<int>(syscall(SYS_fsync, file));
}

extern "C" int fdatasync(int file) {
    note_flush(file);
    return static_cast<int>(syscall(SYS_fdatasync, file));
}

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;

class Flushes : public testing::Test {
protected:
    Flushes() {
        for (const fs::path& path : {user_, work_}) BasinDatabase::create_template(path);
        BasinDatabase{user_, Access::ReadWrite}.execute(
            "INSERT INTO PhysicalData (Zone, Date) VALUES (1, 5)");
        flushed_names().clear();
    }

    TemporaryFolder folder_;
    fs::path user_ = folder_ / "user.mdb";
    fs::path work_ = folder_ / "new.mdb";
    std::string folder_name_ = folder_.path().filename().string();
};

TEST_F(Flushes, AnOpenedBasinIsFlushedWhenItIsComplete) {
    copy_into_work_file(user_, work_);
    EXPECT_THAT(flushed_names(), ElementsAre("part", folder_name_));
}

TEST_F(Flushes, ASavedBasinIsFlushedBeforeItGetsItsName) {
    copy_over_user_file(work_, user_);
    EXPECT_THAT(flushed_names(), ElementsAre("part", folder_name_));
}

TEST_F(Flushes, ABlankBasinHasAllTablesWhenItIsFlushedSoThatItsOpeningChangesNothing) {
    ASSERT_FALSE((BasinDatabase{user_, Access::ReadOnly}.has_table(k_basin_averages)));
    const std::string of_template = file_bytes(user_);
    copy_template(user_, work_);
    EXPECT_THAT(flushed_names(), ElementsAre("part", folder_name_));
    EXPECT_EQ(file_bytes(user_), of_template);
    EXPECT_EQ(folder_.entries().size(), 2U);
    flushed_names().clear();
    BasinDatabase database{work_, Access::ReadWrite};
    EXPECT_TRUE(database.has_table(k_basin_averages));
    HeldTransaction transaction{database};
    Ensure_Monthly_Table(database);
    transaction.commit();
    EXPECT_THAT(flushed_names(), testing::IsEmpty());
}

TEST_F(Flushes, ATemplateWithoutADescriptionIsCopiedAsItIs) {
    BasinDatabase{user_, Access::ReadWrite}.execute("DELETE FROM BasinDescription");
    copy_template(user_, work_);
    BasinDatabase database{work_, Access::ReadWrite};
    EXPECT_FALSE(database.has_table(k_basin_averages));
    EXPECT_THROW(Ensure_Monthly_Table(database), StoreError) << "its opening tells";
}

TEST_F(Flushes, AChangeOfABasinIsFlushed) {
    BasinDatabase{user_, Access::ReadWrite}.execute("INSERT INTO PhysicalData (Zone, Date) VALUES (1, 6)");
    EXPECT_THAT(flushed_names(), testing::Contains("user.mdb"));
}

}  // namespace
}  // namespace nivora
#endif
