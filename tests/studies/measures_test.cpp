#include "studies/measures.h"

#include "studies/compared_days.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/random_trials.h"

#include <gmock/gmock.h>

#include <bit>

namespace nivora {
namespace {

using testing::ElementsAre;
using Values = std::vector<double>;

const Values k_measured{1.0, 2.0, 3.0, 4.0};
const Values k_computed{1.0, 3.0, 3.0, 5.0};

std::vector<DayCount> days_from(DayCount first, std::size_t count) {
    std::vector<DayCount> dates(count);
    for (std::size_t day = 0; day < count; ++day) dates[day] = first + static_cast<DayCount>(day);
    return dates;
}

TEST(Measures, TheEfficiencyIsOneMinusErrorsOverVariance) {
    // mean 2.5; squares from it 2.25 + 0.25 + 0.25 + 2.25 = 5; squares of errors 0 + 1 + 0 + 1 = 2; 1 - 2/5
    EXPECT_DOUBLE_EQ(nash_sutcliffe(k_measured, k_computed).value(), 0.6);
    EXPECT_EQ(run_determination(k_measured, k_computed), 0.6F);
    EXPECT_DOUBLE_EQ(nash_sutcliffe(k_measured, k_measured).value(), 1.0);
    EXPECT_DOUBLE_EQ(nash_sutcliffe(k_measured, Values(4, 2.5)).value(), 0.0);  // the mean itself
}

TEST(Measures, AConstantMeasuredDischargeHasNoEfficiency) {
    const Values constant(4, 0.1);  // 0.1 is not exact, so that the squares from its mean need not be 0
    EXPECT_EQ(run_determination(Values(4, 2.0), k_computed), std::nullopt);
    EXPECT_EQ(nash_sutcliffe(constant, k_computed), std::nullopt);
    EXPECT_EQ(logarithmic_nash_sutcliffe(constant, k_computed), std::nullopt);
    EXPECT_FALSE(kling_gupta(constant, k_computed));
    EXPECT_FALSE(modified_kling_gupta(constant, k_computed));
    EXPECT_FALSE(kling_gupta(k_measured, constant));
    EXPECT_FALSE(modified_kling_gupta(k_measured, constant));
}

TEST(Measures, ASumBeyondASingleGivesNoR2) {
    EXPECT_EQ(run_determination(Values{0.0, 3e38}, Values{0.0, 0.0}), std::nullopt);
    EXPECT_DOUBLE_EQ(nash_sutcliffe(Values{0.0, 3e38}, Values{0.0, 0.0}).value(), -1.0);
}

TEST(Measures, AHundredthOfTheMeanGoesUnderTheLogarithm) {
    // The mean is 1, so 0.01 is added: ln 0.01 and ln 2.01 measured, ln 0.1 and ln 2.01 computed. The error
    // is ln 10; two values at a distance of d = ln 201 have squares of d²/2 from their mean.
    const Values measured{0.0, 2.0};
    EXPECT_DOUBLE_EQ(logarithm_offset(measured), 0.01);
    const double expected = 1.0 - std::pow(std::log(10.0), 2.0) / (std::pow(std::log(201.0), 2.0) / 2.0);
    EXPECT_NEAR(logarithmic_nash_sutcliffe(measured, Values{0.09, 2.0}).value(), expected, 1e-12);
}

TEST(Measures, NoLogarithmWhereTheOffsetDoesNotLiftADischargeAboveZero) {
    EXPECT_TRUE(logarithmic_nash_sutcliffe(Values{0.0, 2.0}, Values{-0.009, 2.0}));
    EXPECT_FALSE(logarithmic_nash_sutcliffe(Values{0.0, 2.0}, Values{-0.01, 2.0}));
    EXPECT_FALSE(logarithmic_nash_sutcliffe(Values{0.0, 0.0}, Values{1.0, 2.0}));
}

TEST(Measures, TheKlingGuptaEfficiencyHasThreeParts) {
    // computed: mean 3, squares from it 8; products -1.5 x -2 + 1.5 x 2 = 6
    const double r = 6.0 / std::sqrt(5.0 * 8.0);
    const double alpha = std::sqrt(8.0 / 5.0);
    const double beta = 3.0 / 2.5;
    const auto kge = kling_gupta(k_measured, k_computed).value();
    EXPECT_DOUBLE_EQ(kge.correlation, r);
    EXPECT_DOUBLE_EQ(kge.variability, alpha);
    EXPECT_DOUBLE_EQ(kge.bias, beta);
    EXPECT_NEAR(kge.efficiency, 0.664126, 5e-7);  // 1 - sqrt(0.0513167² + 0.2649111² + 0.2²)
    const auto modified = modified_kling_gupta(k_measured, k_computed).value();
    EXPECT_DOUBLE_EQ(modified.correlation, r);
    EXPECT_DOUBLE_EQ(modified.variability, alpha / beta);  // 1.0540926
    EXPECT_DOUBLE_EQ(modified.bias, beta);
    EXPECT_NEAR(modified.efficiency, 0.786554, 5e-7);  // 1 - sqrt(0.0513167² + 0.0540926² + 0.2²)
}

TEST(Measures, ATwofoldDischargeShowsInTheModifiedFormAsBiasAlone) {
    const auto twofold = modified_kling_gupta(k_measured, Values{2.0, 4.0, 6.0, 8.0}).value();
    EXPECT_DOUBLE_EQ(twofold.correlation, 1.0);
    EXPECT_DOUBLE_EQ(twofold.variability, 1.0);
    EXPECT_DOUBLE_EQ(twofold.bias, 2.0);
    EXPECT_DOUBLE_EQ(twofold.efficiency, 0.0);
    EXPECT_DOUBLE_EQ(kling_gupta(k_measured, Values{2.0, 4.0, 6.0, 8.0}).value().variability, 2.0);
}

TEST(Measures, AMeanOfZeroGivesNoKlingGuptaEfficiency) {
    EXPECT_FALSE(kling_gupta(Values{-1.0, 1.0}, Values{1.0, 2.0}));
    EXPECT_TRUE(kling_gupta(Values{1.0, 2.0}, Values{-1.0, 1.0}));
    EXPECT_FALSE(modified_kling_gupta(Values{1.0, 2.0}, Values{-1.0, 1.0}));
}

TEST(Measures, ErrorsHaveTheUnitOfTheDischarge) {
    EXPECT_DOUBLE_EQ(root_mean_square_error(k_measured, k_computed), std::sqrt(0.5));  // 2 / 4
    EXPECT_DOUBLE_EQ(mean_absolute_error(k_measured, k_computed), 0.5);                // 2 / 4
    EXPECT_DOUBLE_EQ(mean_absolute_error(Values{3.0}, Values{1.0}), 2.0);
}

TEST(Measures, TheVolumeDifferenceIsNegativeWhereTheModelComputesTooMuch) {
    // 10 and 12 m³/s days: 0.864 and 1.0368 million m³; (0.864 - 1.0368) / 0.864 = -20 %
    EXPECT_FLOAT_EQ(run_volume_difference(k_measured, k_computed).value(), -20.0F);
    EXPECT_EQ(run_volume_difference(Values{0.0, 0.0}, Values{1.0, 2.0}), std::nullopt);
    EXPECT_EQ(run_volume_difference(Values{3e38, 3e38}, Values{1.0, 2.0}), std::nullopt);
}

TEST(Measures, TheBiasOfAMonthIsPositiveWhereTheModelComputesTooMuch) {
    const auto dates = days_from(date_of(2001, 1, 31), 4);  // one day of January, three of February
    const auto months = bias_by_month(dates, k_measured, k_computed);
    EXPECT_EQ(months[1].days, 1);
    EXPECT_DOUBLE_EQ(months[1].bias, 0.0);
    EXPECT_EQ(months[2].days, 3);
    EXPECT_DOUBLE_EQ(months[2].measured, 3.0);
    EXPECT_DOUBLE_EQ(months[2].computed, 11.0 / 3.0);
    EXPECT_NEAR(months[2].bias, 2.0 / 3.0, 1e-15);
    EXPECT_NEAR(months[2].percent, 200.0 / 9.0, 1e-12);  // 2 / 9
    EXPECT_EQ(months[3].days, 0);
    EXPECT_TRUE(is_missing(months[3].bias));
    EXPECT_TRUE(is_missing(bias_by_month(days_from(1, 1), Values{0.0}, Values{1.0})[12].percent));
}

TEST(Measures, TheHighestDayIsTheFirstOfEqualOnes) {
    const auto dates = days_from(1000, 5);
    const auto highest = highest_day(dates, Values{1.0, 4.0, 2.0, 4.0, 1.0}, Values{1.0, 1.0, 1.0, 3.0, 3.0});
    EXPECT_EQ(highest.measured_date, 1001);
    EXPECT_EQ(highest.computed_date, 1003);
    EXPECT_DOUBLE_EQ(highest.size_error, -25.0);
    EXPECT_EQ(highest.days_late, 2);
    EXPECT_TRUE(is_missing(highest_day(dates, Values(5, 0.0), Values(5, 1.0)).size_error));
}

TEST(Measures, LowFlowsAreTheLowestThreeTenthsOfTheDays) {
    const Values ten{10.0, 1.0, 9.0, 2.0, 8.0, 3.0, 7.0, 4.0, 6.0, 5.0};
    Values computed = ten;
    computed[1] = 2.5;  // + 1.5 of 1 + 2 + 3
    computed[0] = 99.0;
    const LowFlow low = low_flow(ten, computed);
    EXPECT_DOUBLE_EQ(low.limit, 3.0);
    EXPECT_EQ(low.days, 3);
    EXPECT_DOUBLE_EQ(low.volume_error, 25.0);
    EXPECT_EQ(low_flow(k_measured, k_computed).days, 2);  // 0.3 x 4 = 1.2, rounded up
    EXPECT_EQ(low_flow(Values{5.0}, Values{5.0}).days, 1);
}

TEST(Measures, EqualLowFlowsCountTogether) {
    const LowFlow low = low_flow(Values{2.0, 2.0, 2.0, 2.0, 5.0, 6.0, 7.0, 8.0, 9.0, 10.0}, Values(10, 1.0));
    EXPECT_EQ(low.days, 4);
    EXPECT_DOUBLE_EQ(low.volume_error, -50.0);
    EXPECT_TRUE(is_missing(low_flow(Values{0.0, 5.0, 6.0}, Values(3, 1.0)).volume_error));
}

TEST(Measures, TheCentreOfMassIsTheMeanDateWeightedByDischarge) {
    const auto dates = days_from(1000, 4);
    EXPECT_DOUBLE_EQ(centre_of_mass(dates, Values(4, 3.0)).value(), 1001.5);
    EXPECT_DOUBLE_EQ(centre_of_mass(dates, Values{1.0, 0.0, 0.0, 3.0}).value(), 1002.25);  // 9 / 4
    EXPECT_EQ(centre_of_mass(dates, Values(4, 0.0)), std::nullopt);
}

TEST(ComparedDays, LeavesOutAndCountsDaysThatLackAValue) {
    const double missing = as_double(k_missing);
    const DailyDischarge series{.dates = {100, 101, 102, 104, 105},
                                .measured = {1.0, missing, missing, 4.0, 5.0},
                                .computed = {1.5, 2.5, missing, missing, 5.5}};
    const ComparedDays days = compared_days(series, {100, 105}, all_months());
    EXPECT_THAT(days.dates, ElementsAre(100, 105));
    EXPECT_THAT(days.measured, ElementsAre(1.0, 5.0));
    EXPECT_THAT(days.computed, ElementsAre(1.5, 5.5));
    EXPECT_EQ(days.missing.asked, 6);
    EXPECT_EQ(days.missing.measured, 3);  // 101, 102 and 103, of which there is no row
    EXPECT_EQ(days.missing.computed, 3);  // 102, 103 and 104
    EXPECT_EQ(days.missing.left_out, 4);
}

TEST(ComparedDays, TakesDaysOfThePeriodAndTheMonthsAlone) {
    const auto dates = days_from(date_of(2001, 3, 30), 4);
    const DailyDischarge series{.dates = dates, .measured = k_measured, .computed = k_computed};
    MonthSet april{};
    april[4] = true;
    const ComparedDays days = compared_days(series, {dates[0], dates[2]}, april);
    EXPECT_THAT(days.measured, ElementsAre(3.0));
    EXPECT_EQ(days.missing.asked, 1);
}

/// The statistics of a run on the same series.
class MeasuresOfARun : public RandomTrials<EngineTest> {};

TEST_F(MeasuresOfARun, R2AndVolumeDifferenceAreThoseOfTheRunToTheBit) {
    try_often(200, [&] {
        const int count = whole_between(2, 60);
        start(1, date_of(2001, 3, 1), count);
        Values measured;
        for (std::size_t row = 0; row < table.size(); ++row) {
            table.ActualQ[row] = static_cast<float>(between(0.0, 90.0));
            table.DailyQ[row] = between(0.0, 90.0);
            measured.push_back(as_double(table.ActualQ[row]));
        }
        ASSERT_EQ(run_statistics(), StatisticsReach::All);
        const float r2 = run_determination(measured, table.DailyQ).value();
        const float dv = run_volume_difference(measured, table.DailyQ).value();
        EXPECT_EQ(std::bit_cast<std::uint32_t>(r2), std::bit_cast<std::uint32_t>(run.CoefficientR2));
        EXPECT_EQ(std::bit_cast<std::uint32_t>(dv), std::bit_cast<std::uint32_t>(run.VolumeDifference));
    });
}

}  // namespace
}  // namespace nivora
