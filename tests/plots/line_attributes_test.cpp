#include "plots/line_attributes.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(PlotLines, TheFifthLineIsPurpleAndDashDotDot) {
    // 128 + 0 x 256 + 128 x 65536 = 8388736
    EXPECT_EQ(default_lines()[4], (LineAttribute{4, 8388736, 1, 0}));
}

TEST(PlotLines, TheTenthLineIsADarkOlive) {
    // 90 + 90 x 256 = 23130
    EXPECT_EQ(default_lines()[9], (LineAttribute{4, 23130, 1, 0}));
}

TEST(PlotLines, AllLinesStartOnePixelWideAndSolidlyFilled) {
    for (const LineAttribute& line : default_lines()) {
        EXPECT_EQ(line.width, 1);
        EXPECT_EQ(line.fill, 0);
    }
}

}  // namespace
}  // namespace nivora
