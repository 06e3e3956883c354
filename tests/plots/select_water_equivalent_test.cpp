#include "tests/plots/melt_rows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr PlotNumber k_plot = PlotNumber::WaterEquivalent;

/// A column that is 0 on all days but some.
using Days = std::map<int, float>;

/// A year from October 2001 in the north: days 1 to 182 are its winter.
class WaterEquivalentPlot : public testing::Test {
protected:
    static constexpr int k_winter_days = 182;

    void write() {
        write_columns(basin_, {{&SimResults::Precip, column(precipitation_)},
                               {&SimResults::PrecipCC, column(changed_precipitation_)},
                               {&SimResults::Cpr, column(rain_)},
                               {&SimResults::M1S, column(new_melt_runoff_)},
                               {&SimResults::ZonalMelt, column(melt_)},
                               {&SimResults::NewMelt, column(new_melt_)},
                               {&SimResults::SCA, std::vector<float>(days(), 0.5F)},
                               {&SimResults::AZMexclWA, column(changed_melt_)}});
    }
    [[nodiscard]] Plot plot() {
        write();
        return basin_.plot(k_plot);
    }
    [[nodiscard]] std::string refusal() {
        write();
        return basin_.refusal(k_plot).text;
    }

    PlotBasin basin_{1, 365};
    Days precipitation_{{1, 10.0F}, {182, 20.0F}, {183, 99.0F}};
    Days changed_precipitation_;
    Days rain_{{182, 4.0F}, {183, 99.0F}};
    Days new_melt_runoff_{{100, 2.0F}, {183, 99.0F}};
    Days melt_{{50, 6.0F}, {184, 5.0F}, {185, 3.0F}};
    Days new_melt_{{184, 2.0F}};
    Days changed_melt_;

private:
    [[nodiscard]] std::size_t days() const { return static_cast<std::size_t>(basin_.days()); }
    [[nodiscard]] std::vector<float> column(const Days& values) const {
        std::vector<float> all(days(), 0.0F);
        for (const auto& [day, value] : values) all.at(static_cast<std::size_t>(day - 1)) = value;
        return all;
    }
};

void expect_bar(const PlotBar& bar, const std::string& name, int line, float top, float bottom) {
    EXPECT_EQ(bar.name, name);
    EXPECT_EQ(bar.line, line) << name;
    EXPECT_EQ(bar.top, top) << name;
    EXPECT_EQ(bar.bottom, bottom) << name;
}

TEST_F(WaterEquivalentPlot, StacksWhatCameDownInWinter) {
    const Plot plot = this->plot();
    EXPECT_EQ(plot.bars_total, 30.0F);
    ASSERT_EQ(plot.bars.size(), 4U);
    expect_bar(plot.bars[0], "Rain", 1, 30.0F, 26.0F);
    expect_bar(plot.bars[1], "New snow, M*(1-S}", 2, 26.0F, 24.0F);
    expect_bar(plot.bars[2], "Zonal melt, M*S", 3, 24.0F, 18.0F);
    expect_bar(plot.bars[3], "Snow Cover", 4, 18.0F, 0.0F);
    for (const PlotBar& bar : plot.bars) {
        EXPECT_EQ(bar.x1, basin_.x(1)) << bar.name;
        EXPECT_EQ(bar.x2, basin_.x(k_winter_days)) << bar.name;
    }
}

TEST_F(WaterEquivalentPlot, CurveFallsFromTheMeltOfTheSummerToNothing) {
    const Plot plot = this->plot();
    ASSERT_EQ(plot.curves.size(), 1U);
    const PlotCurve& curve = plot.curves[0];
    EXPECT_EQ(curve.name, "AZMexcl (");
    EXPECT_EQ(curve.line, 5);
    EXPECT_EQ(curve.mode, CurveMode::Fifth);
    EXPECT_EQ(curve.zone, 1);
    // Accumulated without new snow: 0, 5 - 2 * 0.5, 8 - 1, and the dry day.
    EXPECT_EQ(plot.melt_total, 7.0F);
    EXPECT_THAT(xs_of(curve), ElementsAre(basin_.x(183), basin_.x(184), basin_.x(185)));
    EXPECT_THAT(ys_of(curve), ElementsAre(7, 3, 0));
}

TEST_F(WaterEquivalentPlot, ShowsTheWholeSimulationUpToTheLargerOfBoth) {
    const Plot plot = this->plot();
    EXPECT_EQ(plot.frame.x_min, basin_.x(1));
    EXPECT_EQ(plot.frame.x_max, basin_.x(365));
    EXPECT_EQ(plot.frame.y_min, 0.0F);
    EXPECT_EQ(plot.frame.y_max, 30.0F);
    EXPECT_EQ(plot.frame.legend_rows, 2.0F);
    EXPECT_FALSE(plot.frame.queried);
    EXPECT_EQ(plot.y_label, " (cm)");
    EXPECT_EQ(plot.head.period, PeriodLine::ToEnd);
    melt_[185] = 50.0F;
    EXPECT_EQ(this->plot().frame.y_max, 54.0F);  // 55 - 1
}

TEST_F(WaterEquivalentPlot, CurveEndsWhereNextToNothingIsLeft) {
    new_melt_.clear();
    melt_ = {{184, 3.984375F}, {185, 0.0078125F}, {186, 0.0078125F}};
    // Of 4: 1/64 is above a hundredth, 1/128 is not.
    EXPECT_THAT(ys_of(plot().curves[0]), ElementsAre(4, 0.015625F, 0.0078125F));
}

TEST_F(WaterEquivalentPlot, CurveNeverEndsAtItsFirstPoint) {
    new_melt_.clear();
    melt_ = {{183, 4.0F}};
    const Plot plot = this->plot();
    EXPECT_EQ(plot.melt_total, 4.0F);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0, 0));
}

TEST_F(WaterEquivalentPlot, OfASummerWithoutMeltStaysOnTheAxis) {
    melt_ = {{50, 6.0F}};
    new_melt_.clear();
    const Plot plot = this->plot();
    EXPECT_EQ(plot.melt_total, 0.0F);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(0, 0));
    EXPECT_EQ(plot.frame.y_max, 30.0F);
}

TEST_F(WaterEquivalentPlot, OfASeasonGoesOnAfterADryDay) {
    melt_[187] = 2.0F;
    write();
    EXPECT_EQ(basin_.plot(k_plot).melt_total, 7.0F);
    const Plot plot = basin_.plot(k_plot, {}, MeltStop::Season);
    EXPECT_EQ(plot.melt_total, 9.0F);
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(9, 5, 2, 2, 0));
}

TEST_F(WaterEquivalentPlot, BarsMayFallBelowTheAxis) {
    rain_[182] = 31.0F;
    const Plot plot = this->plot();
    EXPECT_EQ(plot.bars[0].bottom, -1.0F);
    expect_bar(plot.bars[3], "Snow Cover", 4, -9.0F, 0.0F);
}

TEST_F(WaterEquivalentPlot, SumsInDoubleAndRoundsOnce) {
    precipitation_ = {{1, 16777216.0F}, {2, 1.0F}, {3, 1.0F}};
    EXPECT_EQ(plot().bars_total, 16777218.0F);
}

TEST_F(WaterEquivalentPlot, TakesTheChangedClimateAtStepSix) {
    basin_.take_step(6, 3);
    precipitation_ = {{1, 99.0F}};
    changed_precipitation_ = {{1, 8.0F}, {3, 4.0F}, {4, 99.0F}};
    rain_ = {{3, 2.0F}};
    new_melt_runoff_ = {{2, 1.0F}};
    melt_ = {{1, 3.0F}, {4, 1.0F}, {5, 1.0F}};
    changed_melt_ = {{4, 2.0F}, {5, 3.0F}, {6, 5.0F}};
    const Plot plot = this->plot();
    EXPECT_EQ(plot.bars_total, 12.0F);
    expect_bar(plot.bars[0], "Rain", 1, 12.0F, 10.0F);
    expect_bar(plot.bars[1], "New snow, M*(1-S}", 2, 10.0F, 9.0F);
    expect_bar(plot.bars[2], "Zonal melt, M*S", 3, 9.0F, 6.0F);
    EXPECT_EQ(plot.bars[3].x2, basin_.x(3));
    EXPECT_EQ(plot.curves[0].name, "AZMexclWA (");
    EXPECT_EQ(plot.melt_total, 5.0F);
    EXPECT_THAT(xs_of(plot.curves[0]), ElementsAre(basin_.x(4), basin_.x(5), basin_.x(6)));
    EXPECT_THAT(ys_of(plot.curves[0]), ElementsAre(3, 2, 0));
    EXPECT_EQ(plot.frame.x_min, basin_.x(1));
    EXPECT_EQ(plot.frame.x_max, basin_.x(365));
    EXPECT_EQ(plot.frame.y_max, 12.0F);
}

TEST_F(WaterEquivalentPlot, OfTheSouthEndsItsWinterInSeptember) {
    basin_.basin.latitude_text = "-33.5";
    // October 2001 is the first month of the southern melt season.
    EXPECT_EQ(refusal(), unable_text("Zone A (Basinwide)"));
    PlotBasin south{1, 365, {2002, 4, 1}};
    south.basin.latitude_text = "-33.5";
    write_columns(south, {{&SimResults::Precip, constant(south, 1.0F)},
                          {&SimResults::Cpr, constant(south, 0.0F)},
                          {&SimResults::M1S, constant(south, 0.0F)},
                          {&SimResults::ZonalMelt, constant(south, 0.0F)},
                          {&SimResults::NewMelt, constant(south, 0.0F)},
                          {&SimResults::SCA, constant(south, 0.0F)}});
    const Plot plot = south.plot(k_plot);
    EXPECT_EQ(plot.bars[0].x2, south.x(183));  // 2002-09-30
    EXPECT_EQ(plot.bars_total, 183.0F);
    EXPECT_EQ(plot.curves[0].points.front().x, south.x(184));
}

TEST(WaterEquivalentOfASummer, FailsWithoutAWinter) {
    PlotBasin basin{1, 365, {2002, 4, 1}};
    basin.write_results([](SimResults&, std::size_t, int, int) {});
    EXPECT_EQ(basin.refusal(k_plot).text, unable_text("Zone A (Basinwide)"));
}

TEST_F(WaterEquivalentPlot, FailsForAMissingValue) {
    for (auto* values : {&precipitation_, &rain_, &new_melt_runoff_, &melt_}) {
        const Days before = *values;
        (*values)[7] = k_missing;
        EXPECT_EQ(refusal(), unable_text("Zone A (Basinwide)"));
        *values = before;
    }
    new_melt_[184] = k_missing;
    EXPECT_EQ(refusal(), unable_text("Zone A (Basinwide)"));
}

TEST_F(WaterEquivalentPlot, DoesNotNeedWhatItDoesNotAdd) {
    precipitation_[300] = k_missing;  // in summer
    new_melt_[7] = k_missing;         // in winter
    new_melt_[300] = k_missing;       // behind the dry day
    EXPECT_EQ(plot().bars_total, 30.0F);
}

TEST_F(WaterEquivalentPlot, FailsIfASeasonHasNoRows) {
    write();
    basin_.file.change("DELETE FROM SimResults WHERE Date > " + std::to_string(basin_.day(k_winter_days)));
    EXPECT_EQ(basin_.refusal(k_plot).text, unable_text("Zone A (Basinwide)"));
    write();
    basin_.file.change("DELETE FROM SimResults WHERE Date <= " + std::to_string(basin_.day(k_winter_days)));
    EXPECT_EQ(basin_.refusal(k_plot).text, unable_text("Zone A (Basinwide)"));
}

TEST_F(WaterEquivalentPlot, HasNoLimitOfAYear) {
    PlotBasin longer{1, 730};
    write_columns(longer, {{&SimResults::Precip, constant(longer, 1.0F)},
                           {&SimResults::Cpr, constant(longer, 0.0F)},
                           {&SimResults::M1S, constant(longer, 0.0F)},
                           {&SimResults::ZonalMelt, constant(longer, 1.0F)},
                           {&SimResults::NewMelt, constant(longer, 0.0F)},
                           {&SimResults::SCA, constant(longer, 1.0F)}});
    EXPECT_EQ(longer.plot(k_plot).curves[0].points.size(), 548U);  // 730 - 182
}

}  // namespace
}  // namespace nivora
