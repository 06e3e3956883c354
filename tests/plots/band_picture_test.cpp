#include "plots/band_picture.h"

#include "tests/support/recording_surface.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <iterator>
#include <limits>
#include <string>
#include <vector>

namespace nivora {
namespace {

using testing::Contains;
using testing::HasSubstr;
using testing::SizeIs;

constexpr double k_no_flow = std::numeric_limits<double>::quiet_NaN();
constexpr BandQuantiles k_no_band{k_no_flow, k_no_flow, k_no_flow, k_no_flow, k_no_flow};

/// Ten days from 1 May 2001 with the same band, 1 to 5, and a measured discharge of 3.
BandSeries ten_days() {
    BandSeries series{.name = "spring", .dates = {}, .measured = {}, .quantiles = {}};
    for (DayCount day = 0; day < 10; ++day) {
        series.dates.push_back(day_count({2001, 5, 1}).value() + day);
        series.measured.push_back(3.0);
        series.quantiles.push_back({1.0, 2.0, 3.0, 4.0, 5.0});
    }
    return series;
}

class BandPictureTest : public testing::Test {
protected:
    BandPicture picture{.title = "Bands",
                        .subtitle = "Alder, simulation spring",
                        .remark = "9 of 10 days",
                        .y_label = "Discharge, m³/s",
                        .legend = {"outer", "inner", "middle", "measured"},
                        .series = {ten_days()}};

    [[nodiscard]] std::vector<std::string> drawn(SurfaceSize size = SurfaceSize{1200, 800}) const {
        RecordingSurface surface{size};
        draw_bands(surface, picture);
        return surface.calls();
    }
    [[nodiscard]] std::vector<std::string> drawn(const std::string& word) const {
        RecordingSurface surface{{1200, 800}};
        draw_bands(surface, picture);
        return surface.calls(word);
    }
    /// The calls that have these words.
    [[nodiscard]] static std::vector<std::string> with(const std::vector<std::string>& calls,
                                                       const std::string& words) {
        std::vector<std::string> found;
        std::copy_if(calls.begin(), calls.end(), std::back_inserter(found),
                     [&](const std::string& call) { return call.find(words) != std::string::npos; });
        return found;
    }
    /// Pieces of the measured discharge; the line of the legend does not count.
    [[nodiscard]] std::size_t measured_lines() const { return with(drawn("line"), "width 2").size() - 1; }
};

TEST_F(BandPictureTest, TellsEverythingInItsHead) {
    const auto texts = drawn("text");
    for (const char* text : {"Bands", "Alder, simulation spring", "9 of 10 days", "outer", "inner", "middle",
                             "measured", "Discharge, m³/s", "05/01/2001 to 05/10/2001"})
        EXPECT_THAT(texts, Contains(HasSubstr(text)));
}

TEST_F(BandPictureTest, TheOuterBandLiesBelowTheInnerOneAndTheMeasuredDischargeOverAll) {
    const std::vector<std::string> calls = drawn();
    const std::vector<std::string> data = drawn("band");
    ASSERT_THAT(data, SizeIs(2));
    // The outer one goes from 1 to 5, the inner one from 2 to 4, so that it has another grey.
    EXPECT_THAT(data[0], HasSubstr("#DCDCDC"));
    EXPECT_THAT(data[1], HasSubstr("#A8A8A8"));
    const auto at = [&](const std::string& call) { return std::find(calls.begin(), calls.end(), call); };
    const auto measured = std::find_if(at(data[1]), calls.end(), [](const std::string& call) {
        return call.find("width 2") != std::string::npos;
    });
    EXPECT_LT(at(data[0]), at(data[1]));
    EXPECT_NE(measured, calls.end());
}

TEST_F(BandPictureTest, AMissingMeasuredDayIsAGap) {
    EXPECT_EQ(measured_lines(), 1U);
    picture.series[0].measured[4] = k_no_flow;
    EXPECT_EQ(measured_lines(), 2U);
    // The day between two gaps is a short stroke of its own.
    picture.series[0].measured[6] = k_no_flow;
    EXPECT_EQ(measured_lines(), 3U);
    std::fill(picture.series[0].measured.begin(), picture.series[0].measured.end(), k_no_flow);
    EXPECT_EQ(measured_lines(), 0U);
}

TEST_F(BandPictureTest, ADayWithoutRunsAndADayThatIsNotThereAreGapsOfTheBands) {
    const auto bands = [&] { return drawn("band").size(); };
    EXPECT_EQ(bands(), 2U);
    picture.series[0].quantiles[3] = k_no_band;
    EXPECT_EQ(bands(), 4U);
    picture.series[0].dates.back() += 30;  // a day alone still has a band
    EXPECT_EQ(bands(), 6U);
    EXPECT_EQ(measured_lines(), 2U);
}

TEST_F(BandPictureTest, EverySimulationHasAPanelWithItsNameAndTheSameScale) {
    picture.series.push_back(ten_days());
    picture.series[1].name = "autumn";
    picture.series[1].measured[2] = 57.0;
    const auto texts = drawn("text");
    EXPECT_THAT(texts, Contains(HasSubstr("spring: 05/01/2001")));
    EXPECT_THAT(texts, Contains(HasSubstr("autumn: 05/01/2001")));
    EXPECT_THAT(with(texts, "\"55"), SizeIs(2));
    EXPECT_THAT(with(texts, "Discharge, m³/s"), SizeIs(2));
}

TEST_F(BandPictureTest, NamesOfUsersStayOneLineWithinThePicture) {
    std::string name(400, 'W');
    name += "\n\x01<b>&\t";
    picture.subtitle = name;
    picture.series[0].name = name;
    picture.series.push_back(picture.series[0]);
    for (const std::string& call : drawn(SurfaceSize{600, 400})) {
        EXPECT_EQ(call.find('\n'), std::string::npos) << call;
        EXPECT_EQ(call.find('\x01'), std::string::npos) << call;
        EXPECT_LT(call.size(), 500U) << call;
    }
}

TEST_F(BandPictureTest, APictureWithoutDaysOrRoomIsDrawnAsFarAsItGoes) {
    picture.series[0] = {.name = "none", .dates = {}, .measured = {}, .quantiles = {}};
    EXPECT_THAT(drawn("text"), Contains(HasSubstr("Bands")));
    picture.series[0] = ten_days();
    for (const SurfaceSize size : {SurfaceSize{1, 1}, SurfaceSize{20, 700}, SurfaceSize{900, 30}})
        EXPECT_NO_THROW(static_cast<void>(drawn(size)));
    EXPECT_THAT(drawn(SurfaceSize{0, 100}), SizeIs(0));
}

TEST_F(BandPictureTest, ADischargeBelowZeroIsWithinTheFrame) {
    for (BandQuantiles& day : picture.series[0].quantiles) day[0] = -12.0;
    EXPECT_THAT(drawn("text"), Contains(HasSubstr("\"-10")));
}

}  // namespace
}  // namespace nivora
