// Plots on surfaces that have no room for all of their texts at the usual places.
#include "plots/draw_plot.h"
#include "tests/plots/plot_values.h"
#include "tests/support/recording_surface.h"

#include <gmock/gmock.h>

#include <cctype>

namespace nivora {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::SizeIs;

TEST(SmallPlot, PutsTheHeadOfALowSurfaceAboveTheFrame) {
    const auto texts = [](double height) {
        Plot plot = plot_of(PlotNumber::PotentialMelt, frame_of(37165.0F, 37265.0F, 0.0F, 40.0F));
        plot.head.title = "Melt";
        plot.head.subtitle = "sample";
        plot.head.scenario_line = "Dry";
        RecordingSurface surface{{700.0, height}};
        draw(surface, plot, {});
        return surface.calls("text");
    };
    // The title has 6 points and is 8 high, the others have 5 and are 6.67 high.
    // On 232 points the frame begins at 24.17, and a point above it the third line ends: it begins at 16.5.
    // From 3 on that is 0.9205 of 14.67, the height of the two lines above it. 3 + 0.9205 x 8 = 10.36
    EXPECT_THAT(texts(232.0), Contains("text 340.4,3.0 6.0 bold #000000 \"Melt\""));
    EXPECT_THAT(texts(232.0), Contains("text 338.0,10.4 5.0 bold #000000 \"sample\""));
    EXPECT_THAT(texts(232.0), Contains("text 344.0,16.5 5.0 #000000 \"Dry\""));
    // On 218 these are 22.71 and 15.04. Lines have at least 0.85 of their height: 15.04 - 0.85 x 14.67 = 2.58
    EXPECT_THAT(texts(218.0), Contains("text 340.4,2.6 6.0 bold #000000 \"Melt\""));
    EXPECT_THAT(texts(218.0), Contains("text 344.0,15.0 5.0 #000000 \"Dry\""));
    // No less than 1 is above the title.
    EXPECT_THAT(texts(150.0), Contains("text 340.4,1.0 6.0 bold #000000 \"Melt\""));
}

TEST(SmallPlot, LeavesOutTheNameOfAMonthThatHasNoRoom) {
    const auto month_labels = [](float x_min, double width) {
        Plot plot = plot_of(PlotNumber::SnowCover, frame_of(x_min, 37530.0F, 0.0F, 1.0F));
        plot.y_label = "";
        RecordingSurface surface{{width, 420.0}};
        draw(surface, plot, {});
        std::vector<std::string> names;
        for (const std::string& text : surface.calls("text")) {
            const std::string name = text.substr(text.find('"'));
            if (name.size() == 5 && std::isalpha(static_cast<unsigned char>(name[1])) != 0)
                names.push_back(name);
        }
        return names;
    };
    const auto year = ElementsAre("\"Oct\"", "\"Nov\"", "\"Dec\"", "\"Jan\"", "\"Feb\"", "\"Mar\"", "\"Apr\"",
                                  "\"May\"", "\"Jun\"", "\"Jul\"", "\"Aug\"", "\"Sep\"");
    // 366 days from September 30. The middle of September's only day is 15.5 days before that of October:
    // 42 points on 1200, where a label is 18 wide.
    EXPECT_THAT(month_labels(37164.0F, 1200.0), SizeIs(13));
    EXPECT_EQ(month_labels(37164.0F, 1200.0).front(), "\"Sep\"");
    // On 350 points these are 12.4 for labels of 12, and the whole months are 24 apart.
    EXPECT_THAT(month_labels(37164.0F, 350.0), year);
    EXPECT_THAT(month_labels(37165.0F, 350.0), year);  // begins with a whole month
}

}  // namespace
}  // namespace nivora
