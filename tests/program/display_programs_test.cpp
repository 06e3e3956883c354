// Tests that need a display must not be skipped unnoticed on a machine where every test has to run.

#include "tests/program/test_display.h"

#include <gmock/gmock.h>

#include <cstdlib>

namespace nivora {
namespace {

TEST(DisplayProgramsTest, NoneIsMissingWhereEveryTestHasToRun) {
    if (std::getenv("CI") == nullptr) GTEST_SKIP() << "the variable CI is not set: displays may be missing";
    EXPECT_THAT(TestDisplay::missing_programs(), testing::IsEmpty());
}

}  // namespace
}  // namespace nivora
