// The description of a plot, key by key, on numbers worked by hand.

#include "tests/batch/plot_call.h"
#include "tests/support/comma_locale.h"

namespace nivora {
namespace {

using Value = nlohmann::json;

constexpr double k_first = 35156.0;  // 1996-04-01

class PlotDescriptionTest : public PlotCommandTest {
protected:
    PlotDescriptionTest() { EXPECT_EQ(basin.run({"--kind", "year-round"}).status, 0); }
};

TEST_F(PlotDescriptionTest, TheHydrographIsToldInFull) {
    const Value json = described("1", {"--kind", "year-round"});
    EXPECT_EQ(json["form"], "nivora plot description 1");
    EXPECT_EQ(json["step"], 0);
    EXPECT_EQ(json["zone"], nullptr);
    EXPECT_EQ(json["no_data"], false);
    // y from 0 to the largest discharge; the frame ends a day after the last one.
    EXPECT_EQ(json["bounds"], Value({k_first, k_first + 3.0, 0.0, 10.0, 1.0, k_first, k_first + 3.0, 10.0}));
    EXPECT_EQ(json["title"], "Runoff (Measured vs Computed)");
    EXPECT_EQ(json["subtitle"], basin.basin() + " (alder)");
    EXPECT_EQ(json["period"], "04/01/1996 to 04/03/1996");
    EXPECT_EQ(json["zone_label"], "");
    EXPECT_EQ(json["scenario_line"], "alder");
    EXPECT_EQ(json["right_column"], Value({"3/5/2026", "Year round Simulation"}));
    EXPECT_EQ(json["radius"], nullptr);
    EXPECT_EQ(json["bars"], Value::array());
    EXPECT_EQ(json["fills"], Value::array());
    EXPECT_EQ(json["legend"], Value({"Measured Runoff", "Computed Runoff"}));
    EXPECT_EQ(json["slurp"], Value({"1996 04 01 9", "1996 04 02 8.1", "1996 04 03 7.29"}));
    EXPECT_EQ(json["summary"].size(), 6U);
    EXPECT_EQ(json["summary"][1], Value({"Average Measured Runoff  (m³/s)", "8."}));
    EXPECT_EQ(json["summary"][3], Value({"Avg Computed Q   (m³/s)", "8.13"}));
    EXPECT_EQ(json["summary"][4], Value({"Volume Difference (%)", "-1.625"}));
    EXPECT_EQ(json["text_export"].size(), 19U);
    EXPECT_EQ(json["text_export"][18], "4/3/1996   7.29");
}

TEST_F(PlotDescriptionTest, CurvesAreStrokesOfSingles) {
    const Value curve = described("1")["curves"][1];
    EXPECT_EQ(curve["name"], "Computed Runoff");
    EXPECT_EQ(curve["pass"], 1);
    EXPECT_EQ(curve["line"], 2);
    EXPECT_EQ(curve["style"], 1);
    EXPECT_EQ(curve["width"], 1);
    EXPECT_EQ(curve["points"], 3);
    EXPECT_EQ(curve["dots"], Value::array());
    EXPECT_EQ(curve["circles"], Value::array());
    ASSERT_EQ(curve["lines"].size(), 1U);
    ASSERT_EQ(curve["lines"][0].size(), 3U);
    EXPECT_EQ(curve["lines"][0][1][0], k_first + 1.0);
    EXPECT_EQ(curve["lines"][0][1][1].get<float>(), 8.1F);
}

TEST_F(PlotDescriptionTest, AxesHaveTheirTicks) {
    const Value json = described("1");
    EXPECT_EQ(json["x_axis"]["kind"], "days");
    EXPECT_EQ(json["x_axis"]["step"], 1.0);
    EXPECT_EQ(json["x_axis"]["label"], nullptr);
    EXPECT_EQ(json["x_axis"]["ticks"][1],
              Value({{"x", k_first + 1.0}, {"line", true}, {"label", "4/2/96"}, {"at", k_first + 1.0}}));
    EXPECT_EQ(json["y_axis"]["step"], 1.0);
    EXPECT_EQ(json["y_axis"]["label"], " (m³/s)");
    EXPECT_EQ(json["y_axis"]["ticks"].size(), 11U);
    EXPECT_EQ(json["y_axis"]["ticks"][10], Value({{"y", 10.0}, {"label", "10  "}}));
    const Value transform = json["transform"];
    EXPECT_EQ(transform["ScaleLeft"].get<float>(), static_cast<float>(k_first - 0.3));
    EXPECT_EQ(transform["ScaleTop"], 11.25);
    EXPECT_EQ(transform["ScaleWidth"].get<float>(), 3.6F);
    EXPECT_EQ(transform["ScaleHeight"], -12.0);
}

TEST_F(PlotDescriptionTest, GridLinesGoByTheirMode) {
    const auto lines = [this](const char* mode) {
        const Value grid = described("1", {"--grid-mode", mode})["grid"];
        return std::pair{grid["x"].size(), grid["y"].size()};
    };
    EXPECT_EQ(lines("0"), std::pair(std::size_t{3}, std::size_t{0}));
    EXPECT_EQ(lines("1"), std::pair(std::size_t{0}, std::size_t{11}));
    EXPECT_EQ(lines("2"), std::pair(std::size_t{3}, std::size_t{11}));
    EXPECT_EQ(lines("3"), std::pair(std::size_t{0}, std::size_t{0}));
    EXPECT_EQ(described("1")["grid"]["x"].size(), 3U);
}

TEST_F(PlotDescriptionTest, DataPointsHaveCirclesAndARadius) {
    const Value json = described("1", {"--data-points"});
    EXPECT_EQ(json["radius"].get<float>(), static_cast<float>(as_double(3.6F) / 200.0 * 0.5));
    EXPECT_EQ(json["curves"][0]["circles"].size(), 3U);
}

TEST_F(PlotDescriptionTest, AZoomIsTheFrameAndTheTypedMaximaWait) {
    const Value json =
        described("1", {"--zoom", "1996-04-02,35158,-5,8.5", "--xmax", "1996-05-01", "--ymax", "50"});
    EXPECT_EQ(json["bounds"],
              Value({k_first + 1.0, k_first + 2.0, 0.0, 8.5, 1.0, k_first, k_first + 3.0, 10.0}));
    EXPECT_EQ(json["text_export"].size(), 17U);  // the two days of the zoom
    EXPECT_EQ(json["slurp"].size(), 3U);
}

TEST_F(PlotDescriptionTest, MaximaReachTheFrameAndTheExport) {
    const Value json = described("1", {"--xmax", "1996-04-02", "--ymax", "9.5"});
    EXPECT_EQ(json["bounds"], Value({k_first, k_first + 1.0, 0.0, 9.5, 1.0, k_first, k_first + 3.0, 10.0}));
    EXPECT_EQ(json["text_export"].size(), 17U);
    const Value far = described("1", {"--xmax", "1996-05-01"});
    EXPECT_EQ(far["bounds"][1], k_first + 30.0);
}

TEST_F(PlotDescriptionTest, AZoomWithoutPointsIsRefused) {
    const Value json = refused("1", {"--zoom", "35156,35158,100,200"});
    EXPECT_EQ(json["refused"], "zoom");
    EXPECT_EQ(json["text"], "No points in the zoom area");
}

TEST_F(PlotDescriptionTest, AZoomMayBeginWithAMinus) {
    EXPECT_EQ(described("1", {"--zoom=-1,40000,-1,40"})["bounds"][0], -1.0);
}

TEST_F(PlotDescriptionTest, AForecastTellsItsInterval) {
    EXPECT_EQ(described("1", {"--forecast", "7"})["right_column"],
              Value({"3/5/2026", "Melt Season Forecast", "(Updating every 7 days)"}));
}

TEST_F(PlotDescriptionTest, WithoutARangeThereIsTheHeadAlone) {
    const Value json = described("5");  // no rain on any day
    EXPECT_EQ(json["no_data"], true);
    EXPECT_EQ(json["x_axis"], nullptr);
    EXPECT_EQ(json["y_axis"], nullptr);
    EXPECT_EQ(json["grid"], Value({{"x", Value::array()}, {"y", Value::array()}}));
    for (const char* key : {"curves", "legend", "bars", "fills"}) EXPECT_EQ(json[key], Value::array()) << key;
    EXPECT_EQ(json["radius"], nullptr);
    EXPECT_EQ(json["right_column"], Value::array());
    EXPECT_EQ(json["slurp"], nullptr);
    EXPECT_GT(json["text_export"].size(), 9U);
    EXPECT_EQ(json["transform"]["ScaleHeight"].get<float>(), static_cast<float>(-(1.0 + 1.0 / 5.0)));
}

TEST_F(PlotDescriptionTest, IsTheSameWhereNumbersHaveACommaElsewhere) {
    const auto text = [this] { return plot("1", {"--describe", "--zoom", "1996-04-01,35158.5,0,9.5"}).out; };
    const std::string plain = text();
    {
        const CommaLocale language;
        EXPECT_EQ(text(), plain);
    }
    ProcessLocale locale;
    if (!locale.set_decimal_comma()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    EXPECT_EQ(text(), plain);
}

}  // namespace
}  // namespace nivora
