// What a user finds after the program was killed in the middle of a command of the File menu.

#include "tests/program/killed_command.h"

#include <gtest/gtest.h>

#include <array>

namespace nivora {
namespace {

constexpr std::uintmax_t k_file_bytes = 300'000;
constexpr std::int64_t k_points = 12;

class KilledCommandTest : public testing::TestWithParam<FileCommand> {
protected:
    /// Checks what a kill left, and counts whether the user's file was old or new.
    void check(std::int64_t point) {
        std::string why;
        const Found found = ground_.look(GetParam(), why);
        ASSERT_NE(found, Found::Broken) << command_name(GetParam()) << " killed at " << point << ": " << why;
        ++(found == Found::Old ? old_ : new_);
        if (GetParam() == FileCommand::Open) {
            EXPECT_TRUE(ground_.working_file_is_whole(why)) << "killed at " << point << ": " << why;
        }
        EXPECT_EQ(ground_.leftovers_after_next_start(), "") << "after a kill at " << point;
    }

    KillGround ground_{k_file_bytes};
    int old_ = 0;
    int new_ = 0;
};

TEST_P(KilledCommandTest, AKillBetweenAnyTwoCallsOfTheSystemLeavesTheUsersFileWhole) {
    const FileCommand command = GetParam();
    const std::int64_t calls = ground_.calls_of(command);
    if (calls == 0) GTEST_SKIP() << "this machine does not let a program follow another one's calls";
    ASSERT_GT(calls, k_points) << "a command that does so little is none";
    for (std::int64_t i = 0; i < k_points; ++i) {
        const std::int64_t point = i * (calls - 1) / (k_points - 1);
        ground_.prepare(command);
        const KilledRun run = ground_.kill_during(command, KillPoint::SystemCall, point);
        // The number of calls differs by one or two from run to run,
        // so the last point may come after the end.
        ASSERT_TRUE(!run.finished || i + 1 == k_points)
            << "the kill before call " << point << " of " << calls << " came too late";
        ASSERT_NO_FATAL_FAILURE(check(point));
    }
    // The first points come before the file is replaced, and the last one after it.
    EXPECT_GT(old_, 0);
    if (command != FileCommand::Open) {
        EXPECT_GT(new_, 0);
    }
}

TEST_P(KilledCommandTest, AKillAtAnyMomentLeavesTheUsersFileWhole) {
    const FileCommand command = GetParam();
    const std::int64_t microseconds = ground_.microseconds_of(command);
    for (std::int64_t i = 0; i < k_points; ++i) {
        const std::int64_t point = i * microseconds / k_points;
        ground_.prepare(command);
        ground_.kill_during(command, KillPoint::Moment, point);
        ASSERT_NO_FATAL_FAILURE(check(point));
    }
}

INSTANTIATE_TEST_SUITE_P(FileMenu, KilledCommandTest,
                         testing::Values(FileCommand::Save, FileCommand::SaveAs, FileCommand::Open),
                         [](const auto& tested) {
                             std::string name = command_name(tested.param);
                             std::erase(name, ' ');
                             return name;
                         });

}  // namespace
}  // namespace nivora
