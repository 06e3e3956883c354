#include "batch/plot_options.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

TEST(PlotOptions, AZoneIsALetterOrAll) {
    EXPECT_EQ(read_zone("A").value().zone, 1);
    EXPECT_EQ(read_zone("p").value().zone, 16);
    EXPECT_FALSE(read_zone("P").value().all);
    EXPECT_TRUE(read_zone("All").value().all);
    for (const char* text : {"", "Q", "1", "AA", "al", "all "}) EXPECT_FALSE(read_zone(text)) << text;
}

TEST(PlotOptions, ASizeIsTwoNumbersOfPixels) {
    EXPECT_EQ(read_size("1600x900").value().width, 1600);
    EXPECT_EQ(read_size("1600x900").value().height, 900);
    EXPECT_EQ(read_size("1x20000").value().height, 20000);
    for (const char* text :
         {"", "x", "1600", "0x1", "1x0", "-1x5", "1x20001", "1.5x2", "1x2x3", "1X2", " 1x2"})
        EXPECT_FALSE(read_size(text)) << text;
}

TEST(PlotOptions, AZoomIsTwoPlacesOnTheXAxisAndTwoOnTheYAxis) {
    const AskedZoom zoom = read_zoom("1996-04-01,35158.5,-1,2e1").value();
    EXPECT_EQ(read_plot_day(zoom.x1), 35156.0);
    EXPECT_EQ(read_plot_day(zoom.x2), 35158.5);
    EXPECT_EQ(zoom.y1, -1.0);
    EXPECT_EQ(zoom.y2, 20.0);
    for (const char* text : {"", ",,,", "1,2,3", "1,2,3,4,", "1,2,3,4,5", "a,2,3,4", "1,2,1996-04-01,4",
                             "1,2,3,1e39", "1996-4-1,2,3,4"})
        EXPECT_FALSE(read_zoom(text)) << text;
}

}  // namespace
}  // namespace nivora
