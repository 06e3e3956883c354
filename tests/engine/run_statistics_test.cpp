#include "engine/run_statistics.h"

#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace nivora {
namespace {

constexpr const char* k_title = "Run statistics failed, probably caused by missing/invalid data";

class RunStatistics : public EngineTest {
protected:
    void SetUp() override { begin({500, 625, 750, 600, 650}, {450, 500, 550, 475, 525}); }

    void begin(std::initializer_list<double> measured, std::initializer_list<double> computed) {
        start(2, date_of(2001, 6, 1), static_cast<int>(measured.size()));
        set(table.ActualQ, 1, measured);
        set(table.DailyQ, 1, computed);
        fill_zone(table.ActualQ, 2, 1e6);
        fill_zone(table.DailyQ, 2, 1e6);
    }

    StatisticsReach reach() { return run_statistics(); }
    bool go() { return reach() == StatisticsReach::All; }

    void keep_former_values() {
        run.AvgMeasuredQ = run.MeasuredVolume = run.AvgComputedQ = run.ComputedVolume = 77.0F;
        run.VolumeDifference = run.CoefficientR2 = 77.0F;
    }
};

TEST_F(RunStatistics, OfFiveDaysByHand) {
    EXPECT_TRUE(go());

    EXPECT_EQ(run.AvgMeasuredQ, 625.0F);
    EXPECT_EQ(run.MeasuredVolume, 270.0F);  // 3125 x 86,400 / 10^6
    EXPECT_EQ(run.AvgComputedQ, 500.0F);
    EXPECT_EQ(run.ComputedVolume, 216.0F);   // 2500 x 86,400 / 10^6
    EXPECT_EQ(run.VolumeDifference, 20.0F);  // (270 - 216) / 270 x 100
    // Squares about the mean: 125² + 0 + 125² + 25² + 25² = 32,500. Squares of the differences:
    // 50² + 125² + 200² + 125² + 125² = 89,375. R² = (32,500 - 89,375) / 32,500 = -1.75.
    EXPECT_EQ(run.CoefficientR2, -1.75F);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunStatistics, OfAGoodRunByHand) {
    begin({10, 20, 30}, {11, 19, 33});

    EXPECT_TRUE(go());

    // 60 x 86,400 / 10^6 = 5.184; 63 x 86,400 / 10^6 = 5.4432.
    // R² = 1 - (1 + 1 + 9) / (100 + 0 + 100) = 0.945.
    EXPECT_EQ(run.MeasuredVolume, 5.184F);
    EXPECT_EQ(run.ComputedVolume, 5.4432F);
    EXPECT_EQ(run.CoefficientR2, 0.945F);
    EXPECT_FALSE(run.former_r2);
    // From the volumes as Singles: -0.2592000961 / 5.1840000153 x 100 = -5.0000018, not exactly -5.
    EXPECT_EQ(run.VolumeDifference, -5.0000018F);
    EXPECT_NE(-5.0000018F, -5.0F);
}

TEST_F(RunStatistics, APerfectRunHasAnR2Of1AndNoDifference) {
    begin({10, 20, 30}, {10, 20, 30});

    EXPECT_TRUE(go());

    EXPECT_EQ(run.CoefficientR2, 1.0F);
    EXPECT_EQ(run.VolumeDifference, 0.0F);
}

TEST_F(RunStatistics, VolumesAreSinglesInEachStep) {
    begin({791.58F}, {0.0});

    EXPECT_TRUE(go());

    // 791.58 x 86,400 = 68,392,513.5, as a Single 68,392,512; / 10^6 the nearest Single is 68.3925095. With
    // Doubles it would be 68.3925135, whose nearest Single is 68.3925171.
    EXPECT_EQ(run.MeasuredVolume, 68.3925095F);
    EXPECT_NE(68.3925095F, 68.3925171F);
}

TEST_F(RunStatistics, AveragesAreComputedInDoubles) {
    // 16,777,218 / 3 = 5,592,406. A sum in Singles would lose both 1s and give 5,592,405.5.
    begin({16777216, 1, 1}, {1, 1, 16777216});

    EXPECT_TRUE(go());

    EXPECT_EQ(run.AvgMeasuredQ, 5592406.0F);
    EXPECT_EQ(run.AvgComputedQ, 5592406.0F);
}

TEST_F(RunStatistics, TheSumsOfSquaresAreSingles) {
    // Squares about the mean of 5000: 2^24 + 2^24 + 1 + 1; in Singles both 1s are lost: 2^25. Squares of the
    // differences: 2^26 + 2^24 + 2^24 + 0 = 3 x 2^25. R² = (1 - 3) / 1 = -2.
    begin({904, 9096, 5001, 4999}, {904 + 8192, 9096 + 4096, 5001 + 4096, 4999});

    EXPECT_TRUE(go());

    EXPECT_EQ(run.AvgMeasuredQ, 5000.0F);
    EXPECT_EQ(run.CoefficientR2, -2.0F);
}

TEST_F(RunStatistics, AConstantMeasuredDischargeKeepsTheFormerR2) {
    begin({10, 10, 10}, {11, 12, 13});
    run.CoefficientR2 = 0.5F;

    EXPECT_TRUE(go());

    EXPECT_EQ(run.CoefficientR2, 0.5F);
    EXPECT_TRUE(run.former_r2);
    // 30 and 36 give the volumes 2.592 and 3.1104: -20 % up to rounding to Singles.
    EXPECT_NEAR(run.VolumeDifference, -20.0F, 0.00001F);
}

TEST_F(RunStatistics, AMeasuredVolumeOf0KeepsTheFormerDifference) {
    begin({-10, 10}, {5, 5});
    run.VolumeDifference = 12.5F;

    EXPECT_TRUE(go());

    EXPECT_EQ(run.MeasuredVolume, 0.0F);
    EXPECT_EQ(run.VolumeDifference, 12.5F);
    EXPECT_EQ(run.CoefficientR2, -0.25F);  // (200 - (225 + 25)) / 200
}

TEST_F(RunStatistics, ARunOfOneDayHasVolumesAndNoR2OfItsOwn) {
    begin({3125}, {2500});
    run.CoefficientR2 = 0.75F;

    EXPECT_TRUE(go());

    EXPECT_EQ(run.AvgMeasuredQ, 3125.0F);
    EXPECT_EQ(run.MeasuredVolume, 270.0F);
    EXPECT_EQ(run.VolumeDifference, 20.0F);
    EXPECT_EQ(run.CoefficientR2, 0.75F);
}

TEST_F(RunStatistics, OnlyThePeriodCounts) {
    run.RunStart += 1;
    run.RunEnd -= 1;

    EXPECT_TRUE(go());

    EXPECT_EQ(run.AvgComputedQ, static_cast<float>(1525.0 / 3.0));  // 500, 550, 475
}

TEST_F(RunStatistics, StoredOrderOfTheRowsDoesNotMatter) {
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });

    EXPECT_TRUE(go());

    EXPECT_EQ(run.CoefficientR2, -1.75F);
    EXPECT_EQ(run.VolumeDifference, 20.0F);
}

TEST_F(RunStatistics, SumsRunInTheOrderOfTheDates) {
    // In Doubles 2^53 + 1 is 2^53, minus 2^53 is 0. Summed from the last day on it would be 1.
    begin({9007199254740992.0, 1, -9007199254740992.0}, {1, 1, 1});
    SimResults::visit(table, [](auto& column) { std::reverse(column.begin(), column.end()); });

    (void)go();

    EXPECT_EQ(run.AvgMeasuredQ, 0.0F);
    EXPECT_EQ(run.MeasuredVolume, 0.0F);
}

TEST_F(RunStatistics, AMissingMeasuredValueIsAFaultThatKeepsTheVolumesOfTheOthers) {
    table.ActualQ[at(1, 2)] = k_missing;
    keep_former_values();

    EXPECT_EQ(reach(), StatisticsReach::Volumes);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0], "Invalid use of Null", k_title);
    EXPECT_EQ(run.AvgMeasuredQ, 625.0F);    // 2500 / 4
    EXPECT_EQ(run.MeasuredVolume, 216.0F);  // 2500 x 86,400 / 10^6
    EXPECT_EQ(run.AvgComputedQ, 500.0F);
    EXPECT_EQ(run.ComputedVolume, 216.0F);
    EXPECT_EQ(run.CoefficientR2, 77.0F);
    EXPECT_EQ(run.VolumeDifference, 77.0F);
}

TEST_F(RunStatistics, AMissingComputedValueIsAFaultToo) {
    table.DailyQ[at(1, 5)] = static_cast<double>(k_missing);
    keep_former_values();

    EXPECT_EQ(reach(), StatisticsReach::Volumes);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0], "Invalid use of Null", k_title);
    EXPECT_EQ(run.AvgComputedQ, 493.75F);  // 1975 / 4
    EXPECT_EQ(run.CoefficientR2, 77.0F);
}

TEST_F(RunStatistics, WithoutAnyMeasuredValueNothingIsComputed) {
    fill_zone(table.ActualQ, 1, k_missing);
    keep_former_values();

    EXPECT_EQ(reach(), StatisticsReach::Nothing);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0], "Invalid use of Null", k_title);
    EXPECT_EQ(run.AvgMeasuredQ, 77.0F);
    EXPECT_EQ(run.MeasuredVolume, 77.0F);
    EXPECT_EQ(run.AvgComputedQ, 77.0F);
}

TEST_F(RunStatistics, WithoutAnyComputedValueTheMeasuredHalfIsComputed) {
    fill_zone(table.DailyQ, 1, static_cast<double>(k_missing));
    keep_former_values();

    EXPECT_EQ(reach(), StatisticsReach::Nothing);

    EXPECT_EQ(run.AvgMeasuredQ, 625.0F);
    EXPECT_EQ(run.MeasuredVolume, 270.0F);
    EXPECT_EQ(run.AvgComputedQ, 77.0F);
    EXPECT_EQ(run.ComputedVolume, 77.0F);
}

TEST_F(RunStatistics, ASumThatExceedsASingleIsAFault) {
    begin({3e38, 3e38}, {1, 1});
    keep_former_values();

    EXPECT_EQ(reach(), StatisticsReach::Nothing);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0], "Overflow", k_title);
    EXPECT_EQ(run.AvgMeasuredQ, 3e38F);
    EXPECT_EQ(run.MeasuredVolume, 77.0F);
}

TEST_F(RunStatistics, APeriodWithoutRowsIsAFault) {
    run.RunStart += 100;
    run.RunEnd += 100;

    EXPECT_EQ(reach(), StatisticsReach::Nothing);

    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(dialogs.messages()[0], "No current record.", k_title);
}

class StatisticsByStep : public RunStatistics, public ::testing::WithParamInterface<int> {};

TEST_P(StatisticsByStep, Steps3And6UseTheDischargeOfThePresentClimate) {
    begin({100, 300}, {200, 400});
    set(table.DailyQPresent, 1, {500, 700});
    run.ClimateStep = GetParam();

    EXPECT_TRUE(go());

    EXPECT_EQ(run.AvgMeasuredQ, GetParam() == 6 ? 600.0F : 200.0F);
    EXPECT_EQ(run.AvgComputedQ, GetParam() == 3 ? 600.0F : 300.0F);
    // The sum of squares about the mean is 2 x 100². The daily
    // differences are 100; in step 3 400, in step 6 300.
    const float r2 = GetParam() == 3 ? -15.0F : GetParam() == 6 ? -8.0F : 0.0F;
    EXPECT_EQ(run.CoefficientR2, r2);
}

INSTANTIATE_TEST_SUITE_P(AllSteps, StatisticsByStep, ::testing::Range(0, 7));

}  // namespace
}  // namespace nivora
