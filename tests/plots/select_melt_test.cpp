#include "tests/plots/melt_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr PlotNumber k_accumulated = PlotNumber::AccumulatedMelt;
constexpr PlotNumber k_components = PlotNumber::RunoffComponents;
constexpr PlotNumber k_changed = PlotNumber::ChangedAccumulatedMelt;

// Plot 15

class AccumulatedMeltPlot : public testing::Test {
protected:
    AccumulatedMeltPlot() { write(); }

    void write() {
        write_columns(basin_, {{&SimResults::ZonalMelt, melt_},
                               {&SimResults::NewMelt, new_melt_},
                               {&SimResults::SCA, cover_},
                               {&SimResults::AZMexclWA, changed_}});
    }

    PlotBasin basin_{1, 5};
    std::vector<float> melt_{0, 2, 3, 0, 4};
    std::vector<float> new_melt_{0, 1, 2, 0, 0};
    std::vector<float> cover_{1, 1, 0.5F, 0, 0};
    std::vector<float> changed_;
};

TEST_F(AccumulatedMeltPlot, HasTwoCurvesToTheFirstDryDay) {
    const Plot plot = basin_.plot(k_accumulated);
    ASSERT_EQ(plot.curves.size(), 2U);
    EXPECT_EQ(plot.curves[0].name, "AZM_incl");
    EXPECT_EQ(plot.curves[1].name, "AZM_excl");
    EXPECT_EQ(plot.curves[0].line, 1);
    EXPECT_EQ(plot.curves[1].line, 2);
    EXPECT_EQ(plot.curves[0].zone, 1);
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(basin_.x(1), basin_.x(2), basin_.x(3), basin_.x(4)));
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0, 2, 5, 5));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(0, 1, 3, 3));
    EXPECT_EQ(plot.y_label, " (cm)");
    EXPECT_EQ(plot.x_label, "");
}

TEST_F(AccumulatedMeltPlot, EndsItsFrameAtTheLastDayAndATwentiethAboveTheWholeMelt) {
    const Plot plot = basin_.plot(k_accumulated);
    EXPECT_EQ(plot.frame.x_min, basin_.x(1));
    EXPECT_EQ(plot.frame.x_max, basin_.x(5));
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 9.45F);  // 9 + 9 / 20
    EXPECT_EQ(plot.frame.legend_rows, 1.0F);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_THAT(*plot.frame.queried, ElementsAre(basin_.x(1), basin_.x(6), 9));
    EXPECT_EQ(plot.head.period, PeriodLine::ToDayBefore);
}

TEST_F(AccumulatedMeltPlot, StartsItsFrameAtTheLeastMelt) {
    melt_ = {1, 2, 3, 0.5F, 4};
    write();
    EXPECT_EQ(basin_.plot(k_accumulated).frame.y_min, 0.5F);
}

TEST_F(AccumulatedMeltPlot, OfASeasonGoesOnAfterADryDay) {
    const Plot plot = basin_.plot(k_accumulated, {}, MeltStop::Season);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0, 2, 5, 5, 9));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(0, 1, 3, 3, 7));
}

TEST_F(AccumulatedMeltPlot, TakesTheMeltOfTheChangedClimateAtStepSix) {
    changed_ = {99, 1, 2.5F, 4, 5};
    melt_ = {99, 2, 3, 1, 4};
    write();
    basin_.take_step(6, 1);
    const Plot plot = basin_.plot(k_accumulated);
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(basin_.x(2), basin_.x(3), basin_.x(4), basin_.x(5)));
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(2, 5, 6, 10));
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(1, 2.5F, 4, 5));
}

TEST_F(AccumulatedMeltPlot, FailsForAMissingValueWithinTheWalk) {
    new_melt_[4] = k_missing;  // behind the dry day
    write();
    EXPECT_EQ(basin_.plot(k_accumulated).curves[0].points.size(), 4U);
    new_melt_[2] = k_missing;
    write();
    EXPECT_EQ(basin_.refusal(k_accumulated).text, unable_text("Zone A (Basinwide)"));
}

TEST(AccumulatedMeltOfAYear, HoldsTheDaysUpToItsEnd) {
    PlotBasin basin{1, 400};
    const auto write = [&](int dry_day) {
        write_columns(basin, {{&SimResults::ZonalMelt, with(constant(basin, 1.0F), dry_day, 0.0F)},
                              {&SimResults::NewMelt, constant(basin, 0.0F)},
                              {&SimResults::SCA, constant(basin, 1.0F)}});
    };
    write(366);
    EXPECT_EQ(basin.plot(k_accumulated).curves[0].points.size(), 366U);
    EXPECT_EQ(basin.refusal(k_accumulated, {}, MeltStop::Season).text, unable_text("Zone A (Basinwide)"));
    write(367);
    EXPECT_EQ(basin.refusal(k_accumulated).text, unable_text("Zone A (Basinwide)"));
}

// Plot 16

class RunoffComponentsPlot : public testing::Test {
protected:
    RunoffComponentsPlot() { write(); }

    void write() {
        write_columns(basin_, {{&SimResults::ZonalMelt, melt_},
                               {&SimResults::NewMelt, new_melt_},
                               {&SimResults::SCA, {0.5F, 1, 0.25F}},
                               {&SimResults::M1S, new_melt_runoff_},
                               {&SimResults::Cpr, rain_},
                               {&SimResults::Precip, precipitation_}});
    }

    PlotBasin basin_{1, 3};
    std::vector<float> melt_{1, 0, 3};
    std::vector<float> new_melt_{2, 0, 4};
    std::vector<float> new_melt_runoff_{1, 0, 3};
    std::vector<float> rain_{0, 5, 0.5F};
    std::vector<float> precipitation_{3, 4, k_missing};
};

TEST_F(RunoffComponentsPlot, StacksInitialSnowNewSnowAndRainOverAllDays) {
    const Plot plot = basin_.plot(k_components);
    ASSERT_EQ(plot.curves.size(), 3U);
    EXPECT_EQ(plot.curves[0].name, "Initial Snow");
    EXPECT_EQ(plot.curves[1].name, "New Snow");
    EXPECT_EQ(plot.curves[2].name, "P(rain)");
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(plot.curves[i].line, static_cast<int>(i) + 1);
        EXPECT_EQ(plot.curves[i].mode, CurveMode::Own);
        EXPECT_THAT(xs_of(plot.curves[i]), ElementsAre(basin_.x(1), basin_.x(2), basin_.x(3)));
    }
    // The dry second day ends nothing.
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(1, 1, 4));
    // New snow on snow 1, 1, 2 and on the ground 1, 1, 4, on top of the initial snow.
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(3, 3, 10));
    // Rain 0, 5, 5.5 on top of both.
    EXPECT_THAT(ys_of(plot.curves[2]), ElementsAre(3, 8, 15.5F));
}

TEST_F(RunoffComponentsPlot, ReachesFromZeroToTheWholeRunoff) {
    const Plot plot = basin_.plot(k_components);
    EXPECT_EQ(plot.frame.x_min, basin_.x(1));
    EXPECT_EQ(plot.frame.x_max, basin_.x(4));
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 15.5F);
    EXPECT_EQ(plot.frame.legend_rows, 2.0F);
    ASSERT_TRUE(plot.frame.queried);
    // The precipitation that is missing is left out of its sum.
    EXPECT_THAT(*plot.frame.queried, ElementsAre(basin_.x(1), basin_.x(4), 7));
    EXPECT_EQ(plot.y_label, " (cm)");
}

TEST_F(RunoffComponentsPlot, FillsEachBandFromItsMiddleAtTheLastDay) {
    const Plot plot = basin_.plot(k_components);
    ASSERT_EQ(plot.bands.size(), 3U);
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(plot.bands[i].band, static_cast<int>(i) + 1);
        EXPECT_EQ(plot.bands[i].line, static_cast<int>(i) + 1);
        EXPECT_TRUE(plot.bands[i].filled);
    }
    EXPECT_EQ(plot.bands[0].seed_y, 2.0F);
    EXPECT_EQ(plot.bands[1].seed_y, 7.0F);    // of 4 and 10
    EXPECT_EQ(plot.bands[2].seed_y, 12.75F);  // of 10 and 15.5
}

TEST_F(RunoffComponentsPlot, DoesNotFillABandWithoutHeight) {
    new_melt_ = new_melt_runoff_ = {0, 0, 0};
    write();
    const Plot plot = basin_.plot(k_components);
    EXPECT_TRUE(plot.bands[0].filled);
    EXPECT_FALSE(plot.bands[1].filled);
    EXPECT_EQ(plot.bands[1].seed_y, -1.0F);
    EXPECT_TRUE(plot.bands[2].filled);
    EXPECT_EQ(plot.bands[2].seed_y, 6.75F);  // of 4 and 9.5
}

TEST_F(RunoffComponentsPlot, OfADryYearHasNoBandAndNoRange) {
    melt_ = new_melt_ = new_melt_runoff_ = rain_ = {0, 0, 0};
    write();
    const Plot plot = basin_.plot(k_components);
    for (const PlotBand& band : plot.bands) EXPECT_FALSE(band.filled);
    EXPECT_TRUE(has_no_data(plot));
}

TEST_F(RunoffComponentsPlot, RoundsEachOfItsSums) {
    melt_ = {16777216, 1, 1};
    new_melt_ = new_melt_runoff_ = {0, 0, 0};
    rain_ = {0, 1, 0};
    write();
    const Plot plot = basin_.plot(k_components);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(16777216, 16777216, 16777216));
    EXPECT_THAT(ys_of(plot.curves[2]), ElementsAre(16777216, 16777216, 16777216));
}

TEST_F(RunoffComponentsPlot, FailsForAMissingValue) {
    for (auto* values : {&melt_, &new_melt_, &new_melt_runoff_, &rain_}) {
        const std::vector<float> before = *values;
        values->back() = k_missing;
        write();
        EXPECT_EQ(basin_.refusal(k_components).text, unable_text("Zone A (Basinwide)"));
        *values = before;
    }
    precipitation_ = {k_missing, k_missing, k_missing};
    write();
    EXPECT_EQ(basin_.refusal(k_components).text, unable_text("Zone A (Basinwide)"));
}

TEST_F(RunoffComponentsPlot, NeedsTheMeltOfTheChangedClimateAtStepSix) {
    const auto write_changed = [&](const std::vector<float>& changed) {
        write_columns(basin_, {{&SimResults::ZonalMelt, melt_},
                               {&SimResults::NewMelt, new_melt_},
                               {&SimResults::SCA, {0.5F, 1, 0.25F}},
                               {&SimResults::M1S, new_melt_runoff_},
                               {&SimResults::Cpr, rain_},
                               {&SimResults::Precip, precipitation_},
                               {&SimResults::AZMexclWA, changed}});
    };
    basin_.take_step(6, 1);
    write_changed({k_missing, 1, 1});
    EXPECT_EQ(basin_.plot(k_components).curves[0].points.size(), 2U);
    write_changed({1, k_missing, 1});
    EXPECT_EQ(basin_.refusal(k_components).kind, PlotRefusal::Kind::Unable);
}

TEST(RunoffComponentsOfAYear, HoldAllItsDays) {
    const auto write = [](PlotBasin& basin) {
        const std::vector<float> ones = constant(basin, 1.0F);
        // A dry day does not make the plot shorter.
        write_columns(basin, {{&SimResults::ZonalMelt, with(ones, 2, 0.0F)},
                              {&SimResults::NewMelt, ones},
                              {&SimResults::SCA, ones},
                              {&SimResults::M1S, ones},
                              {&SimResults::Cpr, ones},
                              {&SimResults::Precip, ones}});
    };
    PlotBasin year{1, 366};
    write(year);
    EXPECT_EQ(year.plot(k_components).curves[2].points.size(), 366U);
    PlotBasin longer{1, 367};
    write(longer);
    EXPECT_EQ(longer.refusal(k_components).text, unable_text("Zone A (Basinwide)"));
}

// Plot 21, at step 6: the first two days of the basin are its winter.

class ChangedMeltPlot : public testing::Test {
protected:
    ChangedMeltPlot() {
        basin_.take_step(6, 2);
        write();
    }

    void write() {
        write_columns(basin_, {{&SimResults::SCA, cover_},
                               {&SimResults::MDCexcl, depth_},
                               {&SimResults::SCAclim, {9, 9, 1, 1, 1}},
                               {&SimResults::MDCexclWA, {9, 9, 1, 3, 7}},
                               {&SimResults::MDCexclWAnew, dated_}});
    }

    PlotBasin basin_{1, 5};
    std::vector<float> cover_{9, 9, 1, 0.5F, 0.25F};
    std::vector<float> depth_{9, 9, 1, 3, 7};
    std::vector<float> dated_{9, 9, 2, 4, 8};
};

TEST_F(ChangedMeltPlot, AccumulatesThreeCurvesFromTheStartOfTheSummer) {
    const Plot plot = basin_.plot(k_changed);
    ASSERT_EQ(plot.curves.size(), 3U);
    EXPECT_EQ(plot.curves[0].name, "AZMincl");
    EXPECT_EQ(plot.curves[1].name, "AZMexcl");
    EXPECT_EQ(plot.curves[2].name, "AZMexclWA");
    for (std::size_t i = 0; i < 3; ++i) {
        EXPECT_EQ(plot.curves[i].line, static_cast<int>(i) + 1);
        EXPECT_THAT(xs_of(plot.curves[i]), ElementsAre(basin_.x(3), basin_.x(4), basin_.x(5)));
    }
    // MDCexcl: 1 * 1; + 0.5 * 2; + 0.25 * 4
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(1, 2, 3));
    // MDCexclWA reaches its own depths on the same days; the cover after the winter change is 1.
    EXPECT_THAT(ys_of(plot.curves[1]), ElementsAre(1, 3, 7));
    // MDCexclWAnew under the present cover: 1 * 2; + 0.5 * 2; + 0.25 * 4
    EXPECT_THAT(ys_of(plot.curves[2]), ElementsAre(2, 3, 4));
}

TEST_F(ChangedMeltPlot, HasTheFrameOfTheCoverRaisedToTheHighestEnd) {
    const Plot plot = basin_.plot(k_changed);
    EXPECT_EQ(plot.frame.x_min, basin_.x(3));
    EXPECT_EQ(plot.frame.x_max, basin_.x(6));
    EXPECT_EQ(plot.frame.y_min, 0.25F);
    EXPECT_EQ(plot.frame.y_max, 7.0F);
    EXPECT_EQ(plot.frame.legend_rows, 2.0F);
    ASSERT_TRUE(plot.frame.queried);
    EXPECT_THAT(*plot.frame.queried, ElementsAre(basin_.x(3), basin_.x(6), 1));
    EXPECT_EQ(plot.y_label, " (cm)");
}

TEST_F(ChangedMeltPlot, OfLittleMeltKeepsTheLargestCoverAsMaximum) {
    write_columns(basin_, {{&SimResults::SCA, cover_},
                           {&SimResults::MDCexcl, constant(basin_, 0.125F)},
                           {&SimResults::SCAclim, constant(basin_, 1.0F)},
                           {&SimResults::MDCexclWA, constant(basin_, 0.125F)},
                           {&SimResults::MDCexclWAnew, constant(basin_, 0.125F)}});
    EXPECT_EQ(basin_.plot(k_changed).frame.y_max, 1.0F);
}

TEST_F(ChangedMeltPlot, LeavesTheFileAsItIs) {
    const std::string all =
        "SELECT group_concat(coalesce(AZMexcl, 'n') || coalesce(AZMexclWA, 'n') || "
        "coalesce(AZMwork, 'n')) FROM SimResults";
    const auto before = basin_.file.column(all);
    (void)basin_.plot(k_changed);
    EXPECT_EQ(basin_.file.column(all), before);
}

TEST_F(ChangedMeltPlot, FailsForAMissingValue) {
    for (auto* values : {&cover_, &depth_, &dated_}) {
        const std::vector<float> before = *values;
        (*values)[3] = k_missing;
        write();
        EXPECT_EQ(basin_.refusal(k_changed).text, unable_text("Zone A (Basinwide)"));
        *values = before;
    }
}

TEST_F(ChangedMeltPlot, WithoutRowsFails) {
    basin_.store_results({});
    EXPECT_EQ(basin_.refusal(k_changed).text, unable_text("Zone A (Basinwide)"));
}

TEST(MeltPlots, OfOtherTablesFail) {
    for (const PlotNumber plot : {k_accumulated, k_components}) {
        PlotBasin basin;
        BasinDatabase database = basin.file.open();
        if (database.has_table(k_sim_results)) database.drop_table(k_sim_results);
        EXPECT_EQ(basin.refusal(plot).text, unable_text("Zone A (Basinwide)")) << number_of(plot);
        basin.file.change("CREATE TABLE SimResults (Zone INTEGER, Date REAL)");
        EXPECT_EQ(basin.refusal(plot).text, unable_text("Zone A (Basinwide)")) << number_of(plot);
    }
}

}  // namespace
}  // namespace nivora
