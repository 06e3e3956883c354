#include "tests/climate/climate_run_fixture.h"

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;

using Floats = std::vector<float>;

constexpr std::size_t k_first_zone = 1;
constexpr std::size_t k_second_zone = 2;

/// The six days worked out by hand, step by step. With the lag of 6 hours half of a day's input leaves on the
/// same day and half on the next, but all of the first day's input leaves on the first day. Each day
/// Q = lagged input / 2 + Q of the day before / 2.
class ClimateStepsTest : public ClimateRunTest {
protected:
    void SetUp() override { open_six_days(); }

    [[nodiscard]] std::vector<double> computed(int first, int last) {
        const SimResults table = results();
        return days_of(table, table.DailyQ, 1, first, last);
    }
    [[nodiscard]] std::vector<double> present(int first, int last) {
        const SimResults table = results();
        return days_of(table, table.DailyQPresent, 1, first, last);
    }
};

TEST_F(ClimateStepsTest, StepOneRunsTheWinterOfThePresentClimateFromTheSimulationsRunoff) {
    run_to(1);
    EXPECT_EQ(run.ClimateStep, 1);
    EXPECT_EQ(run.RunStart, SixDays::first_day());
    EXPECT_EQ(run.RunEnd, SixDays::first_day() + 1);
    EXPECT_EQ(run.InitialRunoff, 10.0F);
    // No degrees, no input: 10 / 2 = 5, 5 / 2 = 2.5.
    EXPECT_THAT(computed(1, 2), ElementsAre(5.0, 2.5));
    EXPECT_EQ(run.FinalQ[1], 2.5F);
    EXPECT_EQ(run.WinterPrecip[k_first_zone][1], 4.0F);
    EXPECT_EQ(run.WinterPrecip[k_second_zone][1], 4.0F);
    EXPECT_THAT(run.ClimateSums[k_first_zone][1], Each(0.0F));
    const SimResults table = results();
    EXPECT_EQ(table.size(), 12U);
    EXPECT_THAT(days_of(table, table.TAvgCC, 2, 1, 6), ElementsAre(1, 1, 3, 3, 3, 3));
    EXPECT_THAT(days_of(table, table.DailyQ, 1, 3, 6), Each(testing::IsNan()));
}

TEST_F(ClimateStepsTest, StepTwoRunsTheSameWinterUnderTheChangedClimate) {
    run_to(2);
    EXPECT_EQ(run.ClimateStep, 2);
    EXPECT_EQ(run.RunStart, SixDays::first_day());
    EXPECT_EQ(run.RunEnd, SixDays::first_day() + 1);
    EXPECT_EQ(run.InitialRunoff, 10.0F);
    // 1 degree x 0.5 x cover 1 = 0.5 cm in each zone, together 100 m³/s on both days. Lagged: 100,
    // 50 + 50 = 100. Discharge: 50 + 10 / 2 = 55; 50 + 55 / 2 = 77.5.
    EXPECT_THAT(computed(1, 2), ElementsAre(55.0, 77.5));
    EXPECT_EQ(run.FinalQ[2], 77.5F);
    EXPECT_EQ(run.FinalQ[1], 2.5F);
    // The snow of day 1 falls on full cover, so none of it is stored as new snow. i' = 0.5 + 0.5 = 1.
    EXPECT_EQ(run.WinterPrecip[k_first_zone][2], 4.0F);
    EXPECT_THAT(run.ClimateSums[k_second_zone][2], ElementsAre(0, 1, 1, 0, 0));
    EXPECT_EQ(run.MeltSeasonStart, SixDays::winter_end());
}

TEST_F(ClimateStepsTest, StepThreeRunsTheSummerOfThePresentClimateFromTheEndOfItsWinter) {
    run_to(3);
    EXPECT_EQ(run.ClimateStep, 3);
    EXPECT_EQ(run.RunStart, date_of(2001, 4, 1));
    EXPECT_EQ(run.RunEnd, date_of(2001, 4, 4));
    EXPECT_EQ(run.InitialRunoff, 2.5F);
    const SimResults table = results();
    // 2 degrees x 0.5 = 1 cm in each zone, together 200 m³/s times the cover: 175, 125, 75, 25.
    // Lagged: 175, 150, 100, 50.
    // Discharge: 87.5 + 1.25; 75 + 44.375; 50 + 59.6875; 25 + 54.84375.
    EXPECT_THAT(present(3, 6), ElementsAre(88.75, 119.375, 109.6875, 79.84375));
    EXPECT_EQ(run.FinalQ[3], 79.84375F);
    EXPECT_THAT(present(1, 2), Each(0.0));  // the value that a new table starts with
    EXPECT_THAT(days_of(table, table.DailyQ, 1, 1, 2), ElementsAre(55.0, 77.5));
    EXPECT_THAT(days_of(table, table.MDCincl, 2, 3, 6), ElementsAre(1, 2, 3, 4));
    EXPECT_THAT(days_of(table, table.MDCexcl, 2, 3, 6), ElementsAre(1, 2, 3, 4));
    // Zonal melt: 0.875 + 0.625 + 0.375 + 0.125 = 2.
    EXPECT_THAT(run.ClimateSums[k_first_zone][3], ElementsAre(0, 2, 2, 0, 0));
}

TEST_F(ClimateStepsTest, StepFourSetsTheRunoffBackToTheEndOfThePresentWinter) {
    run_to(3);
    run.InitialRunoff = 99.0F;
    run_to(4, 4);
    EXPECT_EQ(run.InitialRunoff, 2.5F);  // from step 1; step 2 ended at 77.5, step 3 at 79.84375
}

TEST_F(ClimateStepsTest, StepFourTakesInputsAndMeltOfTheChangedSummerAndNoDischarge) {
    run_to(3);
    const std::vector<double> discharge = computed(1, 6);
    run_to(4, 4);
    EXPECT_EQ(run.ClimateStep, 4);
    EXPECT_EQ(run.RunStart, date_of(2001, 4, 1));
    EXPECT_EQ(run.RunEnd, date_of(2001, 4, 4));
    EXPECT_EQ(run.InitialRunoff, 2.5F);
    const SimResults table = results();
    EXPECT_THAT(days_of(table, table.ZoneDDCC, 2, 3, 6), Each(3.0F));
    EXPECT_THAT(days_of(table, table.SumAT, 1, 3, 6), ElementsAre(1.5F, 3.0F, 4.5F, 6.0F));
    EXPECT_THAT(days_of(table, table.NewMelt, 1, 3, 6), Each(0.0F));
    EXPECT_THAT(days_of(table, table.MDCexcl, 1, 3, 6), ElementsAre(1, 2, 3, 4));
    EXPECT_EQ(testing::PrintToString(computed(1, 6)), testing::PrintToString(discharge));
    EXPECT_THAT(present(3, 6), ElementsAre(88.75, 119.375, 109.6875, 79.84375));
}

TEST_F(ClimateStepsTest, StepFiveMovesTheDepletionCurveAndWritesItsReport) {
    run_to(5);
    EXPECT_EQ(run.ClimateStep, 5);
    const SimResults table = results();
    // Change = (0 - 1) + (4 - 4) = -1, g = (4 - 1) / (4 - 0) = 0.75. The accumulated melt of the
    // present summer, 0.875, 1.5, ..., covers the deficit on its 2nd day: the curve starts with
    // its 3rd day, and its depths count from 2.
    EXPECT_THAT(days_of(table, table.SCAclim, 1, 3, 6), ElementsAre(0.375F, 0.125F, 0.0F, 0.0F));
    EXPECT_THAT(days_of(table, table.MDCexclWA, 1, 3, 6), ElementsAre(1, 2, 0, 0));
    // Degree days of the changed climate: 1.5, 3, 4.5, 6. They reach depth 1 on the 1st day and 2 on the 2nd.
    EXPECT_THAT(days_of(table, table.MeltOffset, 2, 3, 6), ElementsAre(1, 2, 2, 2));
    EXPECT_THAT(days_of(table, table.SCAclimWA, 2, 3, 6), ElementsAre(0.375F, 0.125F, 0.0F, 0.0F));
    EXPECT_THAT(days_of(table, table.SCAclimWAMA, 2, 3, 6), ElementsAre(0.375F, 0.125F, 0.125F, 0.125F));
    ASSERT_EQ(dialogs.inputs().size(), 2U);
    EXPECT_EQ(dialogs.inputs()[1].title, "Winter Change for Zone: 2");
    const std::string text = read_whole_file(report, 1U << 20U);
    EXPECT_NE(text.find("Climate Scenario: Warmer"), std::string::npos);
    EXPECT_NE(text.find("Date:             11/5/2001"), std::string::npos);
}

TEST_F(ClimateStepsTest, StepSixRunsTheSummerOfTheChangedClimateFromTheEndOfTheChangedWinter) {
    run_to(6);
    EXPECT_EQ(run.ClimateStep, 6);
    EXPECT_EQ(run.RunStart, date_of(2001, 4, 1));
    EXPECT_EQ(run.RunEnd, date_of(2001, 4, 4));
    EXPECT_EQ(run.InitialRunoff, 77.5F);
    // 1.5 cm x 200 m³/s x cover of step 5 = 112.5, 37.5, 37.5, 37.5. Lagged: 112.5, 75, 37.5, 37.5.
    // Discharge: 56.25 + 38.75; 37.5 + 47.5; 18.75 + 42.5; 18.75 + 30.625.
    EXPECT_THAT(computed(1, 6), ElementsAre(55.0, 77.5, 95.0, 85.0, 61.25, 49.375));
    EXPECT_THAT(present(3, 6), ElementsAre(88.75, 119.375, 109.6875, 79.84375));
    EXPECT_EQ(climate.SummerStartDate, date_of(2001, 4, 1));
    EXPECT_EQ(run.FinalQ[6], 49.375F);
}

TEST_F(ClimateStepsTest, StepSixEndsWithTheAccumulatedMeltOfBothClimates) {
    run_to(6);
    const SimResults table = results();
    for (const int zone : {1, 2}) {
        // Daily rises of 1, weighted by the cover: 0.875, 0.625, 0.375, 0.125.
        EXPECT_THAT(days_of(table, table.AZMincl, zone, 3, 6), ElementsAre(0.875F, 1.5F, 1.875F, 2.0F));
        EXPECT_THAT(days_of(table, table.AZMexcl, zone, 3, 6), ElementsAre(0.875F, 1.5F, 1.875F, 2.0F));
        // Daily rises of 1, 1, -2, 0, weighted by 0.375, 0.125, 0, 0.
        EXPECT_THAT(days_of(table, table.AZMwork, zone, 3, 6), ElementsAre(0.375F, 0.5F, 0.5F, 0.5F));
        // Depths 1 and 2 are on the present curve's 1st and 2nd day. The
        // depth 0 ends it, and the last value is held.
        EXPECT_THAT(days_of(table, table.AZMexclWA, zone, 3, 6), ElementsAre(0.375F, 0.5F, 0.5F, 0.5F));
        EXPECT_THAT(days_of(table, table.AZMincl, zone, 1, 2), Each(testing::IsNan()));
    }
}

TEST_F(ClimateRunTest, NewSnowLeftAtTheEndOfBothSummersStaysKnownToTheLastStep) {
    SixDays snow_at_the_end;
    for (PhysicalRow& row : snow_at_the_end.physical) {
        if (row.date == SixDays::first_day() + SixDays::k_days - 1) row.precip = 5.0F;
    }
    for (ParameterRow& row : snow_at_the_end.parameters) row.tcrit = 4.0F;
    run.EndingStores.fill({7.0F});
    open(snow_at_the_end, static_cast<double>(SixDays::winter_end()));
    run_to(6);
    // The last day's 5 cm minus its melt: 2 x 0.5 in the present climate, 3 x 0.5 in the changed one.
    EXPECT_THAT(run.EndingStores[3], ElementsAre(4.0F, 4.0F));
    EXPECT_THAT(run.EndingStores[6], ElementsAre(3.5F, 3.5F));
    // The winter's snow fell on full cover; step 5 computes no snow; there was no plain run.
    EXPECT_THAT(run.EndingStores[1], ElementsAre(0.0F, 0.0F));
    EXPECT_THAT(run.EndingStores[5], testing::IsEmpty());
    EXPECT_THAT(run.EndingStores[0], testing::IsEmpty());
}

TEST_F(ClimateStepsTest, ASimulationWithoutAnInitialRunoffStartsAtZero) {
    SixDays small;
    small.simulation.initial_runoff.reset();
    std::filesystem::remove(file);
    open(small, static_cast<double>(SixDays::winter_end()));
    run.InitialRunoff = 99.0F;
    dialogs.then(Answer::Ok);  // 0 compared with the measured 9
    EXPECT_EQ(take(1), StepOutcome::Done);
    EXPECT_EQ(run.InitialRunoff, 0.0F);
    EXPECT_THAT(computed(1, 2), ElementsAre(0.0, 0.0));
    EXPECT_EQ(run.FinalQ[1], 0.0F);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(last_message().message.title, "Warning, possible data problem");
}

TEST_F(ClimateStepsTest, StatisticsOfEachStep) {
    run_to(6);
    const auto& steps = climate.statistics;
    // Winter. Measured (9 + 11) x 0.0864; computed 7.5 x 0.0864. R²: (2 - (16 + 72.25)) / 2.
    ASSERT_TRUE(steps[1]);
    EXPECT_FLOAT_EQ(steps[1]->measured_volume, 1.728F);
    EXPECT_EQ(steps[1]->average_measured, 10.0F);
    EXPECT_FLOAT_EQ(steps[1]->computed_volume, 0.648F);
    EXPECT_EQ(steps[1]->average_computed, 3.75F);
    EXPECT_FLOAT_EQ(steps[1]->volume_difference.value(), 62.5F);
    EXPECT_EQ(steps[1]->r2.value(), -43.125F);
    // Computed 132.5 x 0.0864. R²: (2 - (46² + 66.5²)) / 2.
    ASSERT_TRUE(steps[2]);
    EXPECT_FLOAT_EQ(steps[2]->measured_volume, 1.728F);
    EXPECT_FLOAT_EQ(steps[2]->computed_volume, 11.448F);
    EXPECT_EQ(steps[2]->average_computed, 66.25F);
    EXPECT_FLOAT_EQ(steps[2]->volume_difference.value(), -562.5F);
    EXPECT_EQ(steps[2]->r2.value(), -3268.125F);
    // Measured 40 x 0.0864; computed 397.65625 x 0.0864. R²:
    // (4 - (79.75² + 108.375² + 100.6875² + 68.84375²)) / 4.
    ASSERT_TRUE(steps[3]);
    EXPECT_FLOAT_EQ(steps[3]->measured_volume, 3.456F);
    EXPECT_FLOAT_EQ(steps[3]->computed_volume, 34.3575F);
    EXPECT_EQ(steps[3]->average_computed, 99.4140625F);
    EXPECT_FLOAT_EQ(steps[3]->volume_difference.value(), -894.140625F);
    EXPECT_NEAR(steps[3]->r2.value(), -8244.659F, 0.002F);
    EXPECT_FALSE(steps[4]);
    EXPECT_FALSE(steps[5]);
    // The measured discharge of step 6 is the computed one of step 3. Computed: 290.625 x 0.0864.
    ASSERT_TRUE(steps[6]);
    EXPECT_EQ(steps[6]->measured_volume, steps[3]->computed_volume);
    EXPECT_EQ(steps[6]->average_measured, 99.4140625F);
    EXPECT_FLOAT_EQ(steps[6]->computed_volume, 25.11F);
    EXPECT_EQ(steps[6]->average_computed, 72.65625F);
    EXPECT_FALSE(steps[6]->volume_difference);
    EXPECT_FALSE(steps[6]->r2);
}

TEST_F(ClimateStepsTest, AFaultOfTheStatisticsLeavesTheVolumes) {
    SixDays small;
    small.physical[1].runoff = k_missing;
    std::filesystem::remove(file);
    open(small, static_cast<double>(SixDays::winter_end()));
    EXPECT_EQ(step(1), StepOutcome::Done);
    EXPECT_EQ(dialogs.messages().size(), 1U);
    ASSERT_TRUE(climate.statistics[1]);
    EXPECT_FLOAT_EQ(climate.statistics[1]->measured_volume, 0.7776F);  // 9 x 0.0864
    EXPECT_EQ(climate.statistics[1]->average_measured, 9.0F);
    EXPECT_FLOAT_EQ(climate.statistics[1]->computed_volume, 0.648F);
    EXPECT_FALSE(climate.statistics[1]->volume_difference);
    EXPECT_FALSE(climate.statistics[1]->r2);
}

TEST_F(ClimateStepsTest, WithoutAnyMeasuredDischargeAStepHasNoStatistics) {
    SixDays small;
    for (PhysicalRow& row : small.physical) row.runoff = k_missing;
    std::filesystem::remove(file);
    open(small, static_cast<double>(SixDays::winter_end()));
    EXPECT_EQ(step(1), StepOutcome::Done);
    EXPECT_FALSE(climate.statistics[1]);
}

/// A winter with a cover of three quarters, snow on its first day and rain on its second. The scenario adds a
/// degree and doubles the precipitation.
class WinterTotalsTest : public ClimateRunTest {
protected:
    void SetUp() override {
        SixDays small;
        for (std::size_t row = 0; row < small.physical.size(); ++row) {
            const DayCount day = small.physical[row].date - SixDays::first_day() + 1;
            if (day > SixDays::k_winter_days) continue;
            small.physical[row].sca = 0.75F;
            if (day == 2) {
                small.physical[row].precip = 2.0F;
                small.parameters[row].tcrit = 0.5F;
            }
        }
        ScenarioRow twice_the_precipitation = small.plus_one;
        twice_the_precipitation.variable = 2;
        twice_the_precipitation.action = 1;
        twice_the_precipitation.factor = 2.0F;
        open(small, static_cast<double>(SixDays::winter_end()), {small.plus_one, twice_the_precipitation});
    }

    void expect_totals_of_the_winter() {
        for (const std::size_t zone : {0U, 1U}) {
            SCOPED_TRACE(zone);
            const ZoneTotals& totals = run.zone_totals[zone];
            EXPECT_EQ(totals.first_day, SixDays::first_day());
            EXPECT_EQ(totals.last_day, SixDays::winter_end());
            EXPECT_EQ(totals.precipitation, 6.0F);  // 4 + 2, the present climate
            EXPECT_EQ(totals.rain, 4.0F);           // twice the 2 of day 2
            // 1 degree x 0.5 = 0.5 cm a day, times the cover of 0.75: 0.375 + 0.375.
            EXPECT_EQ(totals.zonal_melt, 0.75F);
            // A quarter of day 1's 8 cm is stored as new snow: 2 cm, of which 0.5 cm melt each day.
            EXPECT_EQ(totals.new_snow_melt, 1.0F);
        }
    }
};

TEST_F(WinterTotalsTest, ArePreparedByStepTwoFromTheChangedWinter) {
    run_to(1);
    EXPECT_FALSE(run.zone_totals[0].last_day);
    run_to(2, 2);
    EXPECT_EQ(run.WinterPrecip[k_first_zone][2], 12.0F);
    expect_totals_of_the_winter();
}

TEST_F(WinterTotalsTest, StayThroughTheStepsOfTheSummer) {
    run_to(6);
    expect_totals_of_the_winter();
}

/// Winter, summer and year of a summary row; nullopt for an empty cell.
using Cells = std::vector<std::optional<float>>;

Cells cells(const ClimateState& climate, SummaryRow row) {
    return {climate.summary(row, SummarySeason::Winter), climate.summary(row, SummarySeason::Summer),
            climate.summary(row, SummarySeason::Year)};
}

TEST_F(ClimateStepsTest, SummaryCellsFillWithTheirStepsAndTheYearIsWhatThereIs) {
    const std::optional<float> none;
    for (const SummaryRow row : {SummaryRow::Measured, SummaryRow::Computed, SummaryRow::ClimateAffected})
        EXPECT_EQ(cells(climate, row), (Cells{none, none, none}));
    run_to(1);
    const float measured = climate.statistics[1]->measured_volume;
    EXPECT_EQ(cells(climate, SummaryRow::Measured), (Cells{measured, none, measured}));
    EXPECT_EQ(cells(climate, SummaryRow::ClimateAffected), (Cells{none, none, none}));
    run_to(2, 2);
    const float changed = climate.statistics[2]->computed_volume;
    EXPECT_EQ(cells(climate, SummaryRow::Measured), (Cells{measured, none, measured}));
    EXPECT_EQ(cells(climate, SummaryRow::ClimateAffected), (Cells{changed, none, changed}));
    run_to(5, 3);
    EXPECT_EQ(cells(climate, SummaryRow::ClimateAffected), (Cells{changed, none, changed}));
    run_to(6, 6);
    const auto expect_row = [&](SummaryRow row, float winter, float summer) {
        const Cells filled = cells(climate, row);
        EXPECT_FLOAT_EQ(filled[0].value(), winter);
        EXPECT_FLOAT_EQ(filled[1].value(), summer);
        EXPECT_FLOAT_EQ(filled[2].value(), winter + summer);
    };
    // Sums in m³/s for a day, times 0.0864: measured 20 and 40, computed 7.5
    // and 397.65625, changed 132.5 and 290.625.
    expect_row(SummaryRow::Measured, 1.728F, 3.456F);
    expect_row(SummaryRow::Computed, 0.648F, 34.3575F);
    expect_row(SummaryRow::ClimateAffected, 11.448F, 25.11F);
}

}  // namespace
}  // namespace nivora
