#include "base/program_lock.h"

#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(ProgramLockTest, ASecondHolderIsRefusedWhileTheFirstOneHolds) {
    const TemporaryFolder folder;
    const ProgramLock first{folder / "lock"};
    EXPECT_TRUE(first.is_held());
    const ProgramLock second{folder / "lock"};
    EXPECT_FALSE(second.is_held());
}

TEST(ProgramLockTest, AReleasedLockIsFree) {
    const TemporaryFolder folder;
    { const ProgramLock first{folder / "lock"}; }
    EXPECT_TRUE(ProgramLock{folder / "lock"}.is_held());
}

TEST(ProgramLockTest, ARefusedHolderDoesNotAffectTheFirstOne) {
    const TemporaryFolder folder;
    const ProgramLock first{folder / "lock"};
    EXPECT_FALSE(ProgramLock{folder / "lock"}.is_held());
    EXPECT_FALSE(ProgramLock{folder / "lock"}.is_held());
}

TEST(ProgramLockTest, TheContentOfTheFileDoesNotMatter) {
    const TemporaryFolder folder;
    EXPECT_TRUE(ProgramLock{folder.write("lock", "4711\nnivora\nanother machine\n")}.is_held());
}

TEST(ProgramLockTest, AFolderWithoutLocksLetsTheProgramRun) {
    const TemporaryFolder folder;
    EXPECT_TRUE(ProgramLock{folder / "no such folder" / "lock"}.is_held());
}

}  // namespace
}  // namespace nivora
