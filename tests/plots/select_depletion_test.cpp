#include "tests/plots/melt_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr PlotNumber k_over_melt = PlotNumber::DepletionOverMelt;
constexpr PlotNumber k_cutoff = PlotNumber::DepletionCutoff;
constexpr PlotNumber k_comparison = PlotNumber::DepletionComparison;

/// Expects the texts and the frame that the three plots have alike.
void expect_depletion_plot(const Plot& plot) {
    EXPECT_EQ(plot.y_label, "S");
    EXPECT_EQ(plot.x_label, " (cm)");
    EXPECT_EQ(plot.frame.x_min, 0.0F);
    EXPECT_EQ(plot.frame.legend_rows, 1.0F);
    ASSERT_EQ(plot.curves.size(), 2U);
    for (std::size_t i = 0; i < 2; ++i) {
        EXPECT_EQ(plot.curves[i].line, static_cast<int>(i) + 1);
        EXPECT_EQ(plot.curves[i].pass, 1);
        EXPECT_EQ(plot.curves[i].mode, CurveMode::Own);
        EXPECT_EQ(plot.curves[i].zone, 1);
    }
}

// Plot 14

TEST(DepletionOverMelt, EndsOnTheFirstDayWithoutSnowAfterSnow) {
    PlotBasin basin{1, 6};
    write_columns(basin, {{&SimResults::SumAT, {1, 3, 6, 10, 15, 21}},
                          {&SimResults::SCA, {0, 0.5F, 0.25F, 0, 0.75F, 0}},
                          {&SimResults::NewMelt, {0.5F, 0.5F, 1, 0.5F, 9, 9}}});
    const Plot plot = basin.plot(k_over_melt);
    expect_depletion_plot(plot);
    EXPECT_EQ(plot.curves[0].name, "MDC_incl");
    EXPECT_EQ(plot.curves[1].name, "MDC_excl");
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(1, 3, 6, 10));
    // 1 - 0.5, 3 - 1, 6 - 2, 10 - 2.5
    EXPECT_THAT(xs_of(plot.curves[1]), ElementsAre(0.5F, 2, 4, 7.5F));
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0, 0.5F, 0.25F, 0));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(0, 0.5F, 0.25F, 0));
    EXPECT_EQ(plot.frame.x_max, 10.0F);
    // The y axis reaches over all rows, those behind the end of the curves too.
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 0.75F);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_THAT(*plot.frame.queried, ElementsAre(1, 22, 0.75F));
}

TEST(DepletionOverMelt, OfAZoneWithoutSnowTakesAllDays) {
    PlotBasin basin{1, 3};
    write_columns(
        basin,
        {{&SimResults::SumAT, {1, 2, 4}}, {&SimResults::SCA, {0, 0, 0}}, {&SimResults::NewMelt, {0, 0, 0}}});
    const Plot plot = basin.plot(k_over_melt);
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(1, 2, 4));
    EXPECT_EQ(plot.frame.x_max, 4.0F);
    EXPECT_TRUE(has_no_data(plot));
}

TEST(DepletionOverMelt, WithSnowToTheEndTakesAllDays) {
    PlotBasin basin{1, 3};
    write_columns(basin, {{&SimResults::SumAT, {1, 2, 4}},
                          {&SimResults::SCA, {1, 0.5F, 0.25F}},
                          {&SimResults::NewMelt, {0, 0, 0}}});
    const Plot plot = basin.plot(k_over_melt);
    EXPECT_EQ(plot.curves[0].points.size(), 3U);
    EXPECT_EQ(plot.frame.y_min, 0.25F);
    EXPECT_EQ(plot.frame.y_max, 1.0F);
}

TEST(DepletionOverMelt, RoundsTheSumOfNewMeltOnEachDay) {
    PlotBasin basin{1, 3};
    write_columns(basin, {{&SimResults::SumAT, {16777218, 16777218, 16777218}},
                          {&SimResults::SCA, {1, 1, 1}},
                          {&SimResults::NewMelt, {16777216, 1, 1}}});
    EXPECT_THAT(xs_of(basin.plot(k_over_melt).curves[1]), ElementsAre(2, 2, 2));
}

TEST(DepletionOverMelt, ShowsTheZoneThatWasPicked) {
    PlotBasin basin{2, 2};
    basin.write_results([](SimResults& results, std::size_t row, int zone, int day) {
        results.SumAT[row] = static_cast<float>(10 * zone + day);
        results.SCA[row] = 1.0F;
        results.NewMelt[row] = 0.0F;
    });
    const Plot plot = basin.plot(k_over_melt, 2);
    EXPECT_EQ(plot.curves[0].zone, 2);
    EXPECT_EQ(plot.curves[0].line, 1);
    EXPECT_EQ(plot.curves[1].line, 2);
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(21, 22));
    EXPECT_EQ(basin.refusal(k_over_melt, 3).kind, PlotRefusal::Kind::NotOffered);
}

TEST(DepletionOverMelt, FailsForAMissingValue) {
    for (auto SimResults::*column : {&SimResults::SumAT, &SimResults::SCA, &SimResults::NewMelt}) {
        PlotBasin basin{1, 3};
        basin.write_results([&](SimResults& results, std::size_t row, int, int day) {
            results.SumAT[row] = static_cast<float>(day);
            results.SCA[row] = 1.0F;
            results.NewMelt[row] = 0.0F;
            if (day == 2) (results.*column)[row] = k_missing;
        });
        EXPECT_EQ(basin.refusal(k_over_melt).text, unable_text("Zone A (Basinwide)"));
    }
}

TEST(DepletionOverMelt, DoesNotReadMeltBehindItsEnd) {
    PlotBasin basin{1, 4};
    write_columns(
        basin,
        {{&SimResults::SumAT, {1, 2, 4}}, {&SimResults::SCA, {1, 0, 0, 0}}, {&SimResults::NewMelt, {0, 0}}});
    EXPECT_THAT(xs_of(basin.plot(k_over_melt).curves[0]), ElementsAre(1, 2));
}

/// Results of a zone whose cover is 0 on one day alone; 0 for a cover that never is.
void write_long_season(PlotBasin& basin, int bare_day) {
    const std::vector<float> depth = constant(basin, 1.0F);
    const std::vector<float> cover =
        bare_day > 0 ? with(constant(basin, 0.5F), bare_day, 0.0F) : constant(basin, 0.5F);
    write_columns(basin, {{&SimResults::SumAT, depth},
                          {&SimResults::NewMelt, constant(basin, 0.0F)},
                          {&SimResults::SCA, cover},
                          {&SimResults::SCAclim, cover},
                          {&SimResults::MDCexcl, depth},
                          {&SimResults::MDCexclWA, depth},
                          {&SimResults::MDCexclWAnew, depth}});
}

TEST(DepletionPlots, HoldTheDaysOfAYear) {
    for (const PlotNumber plot : {k_over_melt, k_cutoff, k_comparison}) {
        PlotBasin basin{1, 401};
        if (plot != k_over_melt) basin.take_step(6, 1);
        const int first = plot == k_over_melt ? 1 : 2;
        write_long_season(basin, first + 365);
        EXPECT_EQ(basin.plot(plot).curves[0].points.size(), 366U) << number_of(plot);
        // The next day is one too many, also if the curve ends on it.
        write_long_season(basin, first + 366);
        EXPECT_EQ(basin.refusal(plot).text, unable_text("Zone A (Basinwide)")) << number_of(plot);
        write_long_season(basin, 0);
        EXPECT_EQ(basin.refusal(plot).kind, PlotRefusal::Kind::Unable) << number_of(plot);
    }
}

TEST(DepletionPlots, OfAPeriodWithoutRowsFail) {
    for (const PlotNumber plot : {k_over_melt, k_cutoff, k_comparison}) {
        PlotBasin basin{1, 3};
        if (plot != k_over_melt) basin.take_step(6, 1);
        basin.store_results({});
        EXPECT_EQ(basin.refusal(plot).text, unable_text("Zone A (Basinwide)")) << number_of(plot);
    }
}

// Plots 20 and 22, at step 6: the first day of the basin is its winter.

class DepletionComparisonTest : public testing::Test {
protected:
    DepletionComparisonTest() { basin_.take_step(6, 1); }

    [[nodiscard]] Plot plot(PlotNumber number, const std::vector<MeltColumn>& columns) {
        write_columns(basin_, columns);
        return basin_.plot(number);
    }

    PlotBasin basin_{1, 6};
    std::vector<float> cover_{9, 0, 0.5F, 0, 0.25F, 0.125F};
    std::vector<float> changed_cover_{9, 0.75F, 0.5F, 0.25F, 0, 0.125F};
    std::vector<float> depth_{99, 9, 2, 5, 7, 8};
    std::vector<float> adjusted_{99, 9, 1, 3, 4, 6};
    std::vector<float> dated_{99, 9, 2, 4, 6, 7};

    [[nodiscard]] std::vector<MeltColumn> columns() const {
        return {{&SimResults::SCA, cover_},
                {&SimResults::SCAclim, changed_cover_},
                {&SimResults::MDCexcl, depth_},
                {&SimResults::MDCexclWA, adjusted_},
                {&SimResults::MDCexclWAnew, dated_}};
    }
};

TEST_F(DepletionComparisonTest, EachCurveOfTheCutoffEndsWhereItsCoverFirstFallsToZero) {
    const Plot plot = this->plot(k_cutoff, columns());
    expect_depletion_plot(plot);
    EXPECT_EQ(plot.curves[0].name, "MDC_excl");
    EXPECT_EQ(plot.curves[1].name, "MDC_excl_WA");
    // The first day stands at 0, whatever its depth, and its cover of 0 ends nothing.
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(0, 2, 5));
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0, 0.5F, 0));
    EXPECT_THAT(xs_of(plot.curves[1]), ElementsAre(0, 1, 3, 4));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(0.75F, 0.5F, 0.25F, 0));
}

TEST_F(DepletionComparisonTest, FrameOfTheCutoffReachesTheLargerEndAndTheLargerCover) {
    const Plot plot = this->plot(k_cutoff, columns());
    EXPECT_EQ(plot.frame.x_max, 5.0F);
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 0.75F);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_THAT(*plot.frame.queried, ElementsAre(2, 10, 0.5F));
}

TEST_F(DepletionComparisonTest, ACoverThatNeverFallsToZeroTakesAllDaysAndTheirLastDepth) {
    cover_ = constant(basin_, 0.5F);
    const Plot plot = this->plot(k_cutoff, columns());
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(0, 2, 5, 7, 8));
    EXPECT_EQ(plot.curves[1].points.size(), 4U);
    EXPECT_EQ(plot.frame.x_max, 8.0F);
    EXPECT_EQ(plot.frame.y_min, 0.5F);
}

TEST_F(DepletionComparisonTest, ASingleDayIsAPointWithoutARange) {
    basin_.take_step(6, 5);
    const Plot plot = this->plot(k_cutoff, columns());
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(0));
    EXPECT_TRUE(has_no_data(plot));
}

TEST_F(DepletionComparisonTest, BothCurvesTakeTheCoverAfterTheWinterChangeAndHoldTheirDepth) {
    adjusted_ = {99, 9, 4, 3, 6, 7};
    dated_ = {99, 9, 5, 6, 2, 9};
    const Plot plot = this->plot(k_comparison, columns());
    expect_depletion_plot(plot);
    EXPECT_EQ(plot.curves[0].name, "MDC_excl_WA");
    EXPECT_EQ(plot.curves[1].name, "MDC_exclWA_CLIM");
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(0, 4, 4, 6));
    EXPECT_THAT(xs_of(plot.curves[1]), ElementsAre(0, 5, 6, 6));
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0.75F, 0.5F, 0.25F, 0));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(0.75F, 0.5F, 0.25F, 0));
    EXPECT_EQ(plot.frame.x_max, 6.0F);
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 0.75F);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_THAT(*plot.frame.queried, ElementsAre(2, 10, 0.5F));
}

TEST_F(DepletionComparisonTest, ADepthThatFallsIsHeldAgainstTheHeldOne) {
    adjusted_ = {99, 9, 5, 3, 4, 6};
    changed_cover_ = constant(basin_, 0.5F);
    const Plot plot = this->plot(k_comparison, columns());
    // 3 and then 4 are both below the 5 that is held.
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(0, 5, 5, 5, 6));
    EXPECT_EQ(plot.frame.x_max, 7.0F);
}

TEST_F(DepletionComparisonTest, TheCutoffDoesNotHoldADepthThatFalls) {
    adjusted_ = {99, 9, 5, 3, 4, 6};
    EXPECT_THAT(xs_of(plot(k_cutoff, columns()).curves[1]), ElementsAre(0, 5, 3, 4));
}

TEST_F(DepletionComparisonTest, AMissingValueFailsTheCutoffUntilBothCurvesHaveEnded) {
    depth_[4] = k_missing;  // the present curve has ended on the day before
    write_columns(basin_, columns());
    EXPECT_EQ(basin_.refusal(k_cutoff).text, unable_text("Zone A (Basinwide)"));
    // The other plot takes the present depth for the bounds alone.
    EXPECT_EQ(basin_.plot(k_comparison).curves[0].points.size(), 4U);
    depth_[4] = 7.0F;
    depth_[5] = k_missing;
    EXPECT_EQ(plot(k_cutoff, columns()).curves[1].points.size(), 4U);
}

TEST_F(DepletionComparisonTest, TheDepthsOfTheFirstDayAreNotRead) {
    depth_[1] = adjusted_[1] = dated_[1] = k_missing;
    write_columns(basin_, columns());
    EXPECT_THAT(xs_of(basin_.plot(k_cutoff).curves[0]), ElementsAre(0, 2, 5));
    EXPECT_THAT(xs_of(basin_.plot(k_comparison).curves[1]), ElementsAre(0, 2, 4, 6));
}

TEST_F(DepletionComparisonTest, BoundsWithoutAnyValueFail) {
    depth_ = constant(basin_, k_missing);
    write_columns(basin_, columns());
    EXPECT_EQ(basin_.refusal(k_comparison).text, unable_text("Zone A (Basinwide)"));
}

}  // namespace
}  // namespace nivora
