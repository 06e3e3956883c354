// Where windows open on the desktop, and which position is saved.

#include "session/window_place.h"

#include <gtest/gtest.h>

#include <limits>

namespace nivora {

void PrintTo(const Placement& place, std::ostream* out) {
    *out << place.left << ", " << place.top << " " << place.width << " x " << place.height;
}

namespace {

const std::vector<ScreenArea> k_screen{{0, 0, 1024, 768}};

WindowPlace kept(int left, int top) { return {.top = top, .left = left, .height = {}, .width = {}}; }

/// Frames of different window managers: thin, with wide borders, of a tablet, none.
class FrameTest : public testing::TestWithParam<FrameWidths> {};

TEST_P(FrameTest, AWindowInsideTheScreenGoesWhereItsFrameWas) {
    const Placement place = place_window(kept(100, 50), {400, 300}, GetParam(), k_screen);
    EXPECT_EQ(place, (Placement{100, 50, 400, 300}));
}

TEST_P(FrameTest, ASavedCornerOfZeroIsValid) {
    EXPECT_EQ(place_window(kept(0, 0), {400, 300}, GetParam(), k_screen), (Placement{0, 0, 400, 300}));
}

TEST_P(FrameTest, TheFrameIsOnTheScreenWhateverPositionWasSaved) {
    constexpr int k_huge = std::numeric_limits<int>::max();
    constexpr int k_least = std::numeric_limits<int>::min();
    const FrameWidths& frame = GetParam();
    for (const int left : {k_least, -3000, -1, 0, 500, 1023, 5000, k_huge}) {
        for (const int top : {k_least, -20, 0, 700, 9000, k_huge}) {
            const Placement place = place_window(kept(left, top), {400, 300}, frame, k_screen);
            EXPECT_GE(place.left, 0) << left;
            EXPECT_GE(place.top, 0) << top;
            EXPECT_LE(place.left + frame.left + place.width + frame.right, 1024) << left;
            EXPECT_LE(place.top + frame.top + place.height + frame.bottom, 768) << top;
        }
    }
}

TEST_P(FrameTest, AHundredOpeningsDoNotMoveAWindow) {
    const FrameWidths& frame = GetParam();
    // Some window managers take the requested corner as that of the frame, others as that of the content.
    for (const bool of_content : {false, true}) {
        WindowPlace place = kept(300, 200);
        for (int opening = 0; opening < 100; ++opening) {
            const Placement asked = place_window(place, {400, 300}, frame, k_screen);
            const int left = asked.left + (of_content ? frame.left : 0);
            const int top = asked.top + (of_content ? frame.top : 0);
            place = place_to_keep(left, top, {asked.width, asked.height}, asked, frame);
        }
        EXPECT_EQ(place.left, 300) << of_content;
        EXPECT_EQ(place.top, 200) << of_content;
    }
}

TEST_P(FrameTest, AWindowWithoutSavedPositionIsCentredWithItsFrame) {
    const FrameWidths& frame = GetParam();
    const Placement place = place_window({}, {400, 300}, frame, k_screen);
    const int right_of_it = 1024 - (place.left + frame.left + 400 + frame.right);
    const int below_it = 768 - (place.top + frame.top + 300 + frame.bottom);
    EXPECT_LE(std::abs(right_of_it - place.left), 1);
    EXPECT_LE(std::abs(below_it - place.top), 1);
}

TEST_P(FrameTest, AWindowLargerThanTheScreenGetsTheWholeScreenMinusItsFrame) {
    const FrameWidths& frame = GetParam();
    const Placement place = place_window(kept(-30, 700), {1400, 900}, frame, k_screen);
    EXPECT_EQ(place, (Placement{0, 0, 1024 - frame.left - frame.right, 768 - frame.top - frame.bottom}));
}

INSTANTIATE_TEST_SUITE_P(Frames, FrameTest,
                         testing::Values(FrameWidths{}, FrameWidths{1, 20, 1, 5}, FrameWidths{8, 31, 8, 8},
                                         FrameWidths{0, 46, 0, 0}));

TEST(WindowPlace, AValidSavedSizeIsRestoredAndAnInvalidOneIsNot) {
    const auto size_of = [](int width, int height) {
        const Placement place =
            place_window({.top = 0, .left = 0, .height = height, .width = width}, {400, 300}, {}, k_screen);
        return std::pair{place.width, place.height};
    };
    EXPECT_EQ(size_of(640, 480), (std::pair{640, 480}));
    EXPECT_EQ(size_of(0, -5), (std::pair{400, 300}));
    EXPECT_EQ(size_of(2147483647, 2147483647), (std::pair{1024, 768}));
}

TEST(WindowPlace, AWindowOfASecondScreenStaysThere) {
    const std::vector<ScreenArea> screens{{0, 0, 1024, 768}, {-1280, 0, 1280, 1024}};
    EXPECT_EQ(place_window(kept(-900, 100), {400, 300}, {1, 20, 1, 5}, screens),
              (Placement{-900, 100, 400, 300}));
}

TEST(WindowPlace, AWindowOfAMissingScreenMovesToTheFirst) {
    // 1024 - (400 + 2) = 622
    EXPECT_EQ(place_window(kept(1800, 100), {400, 300}, {1, 20, 1, 5}, k_screen),
              (Placement{622, 100, 400, 300}));
}

TEST(WindowPlace, AWindowThatTheUserMovedIsSavedAtItsNewPosition) {
    const WindowPlace place = place_to_keep(310, 221, {420, 330}, {300, 200, 400, 300}, {1, 20, 1, 5});
    EXPECT_EQ(place.left, 310);
    EXPECT_EQ(place.top, 221);
    EXPECT_EQ(place.width, 420);
    EXPECT_EQ(place.height, 330);
}

}  // namespace
}  // namespace nivora
