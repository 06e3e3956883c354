#include "batch/progress.h"

#include <gtest/gtest.h>

#include <sstream>

namespace nivora {
namespace {

class ProgressTest : public testing::Test {
protected:
    [[nodiscard]] Progress::Clock clock() {
        return [this] { return now; };
    }
    std::chrono::steady_clock::time_point now{};
    std::ostringstream out;
};

TEST_F(ProgressTest, PrintsLinesEveryFiveSecondsWithRateAndTimeLeft) {
    {
        Progress progress{out, false, "runs", 1000, clock()};
        progress.update(1);
        now += std::chrono::seconds{5};
        progress.update(100);
        progress.update(110);
        now += std::chrono::seconds{5};
        progress.update(400);
        now += std::chrono::seconds{1};
        progress.update(1000);
        progress.update(1000);
    }
    EXPECT_EQ(out.str(),
              "100 of 1000 runs, 20 a second, 0:45 left\n"
              "400 of 1000 runs, 40 a second, 0:15 left\n"
              "1000 of 1000 runs, 91 a second\n");
}

TEST_F(ProgressTest, ShortWorkPrintsNoLine) {
    { Progress{out, false, "runs", 10, clock()}.update(10); }
    EXPECT_EQ(out.str(), "");
}

TEST_F(ProgressTest, DrawsABarOnATerminal) {
    {
        Progress progress{out, true, "runs", 7200, clock()};
        now += std::chrono::seconds{1};
        progress.update(1);
        progress.update(2);  // too soon
        now += std::chrono::seconds{1};
        progress.update(3600);
        progress.update(7200);
    }
    EXPECT_EQ(out.str(),
              "\r[..............................]   0 %  1 of 7200 runs, 1 a second, 1:59:59 left\x1b[K"
              "\r[###############...............]  50 %  3600 of 7200 runs, 1800 a second, 0:02 left\x1b[K"
              "\r[##############################] 100 %  7200 of 7200 runs, 3600 a second\x1b[K\n");
}

}  // namespace
}  // namespace nivora
