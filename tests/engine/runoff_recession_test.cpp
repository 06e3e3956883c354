#include "engine/runoff_simulation.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::IsNan;

/// One zone with 100 m³/s of input every day, a lag of 18 hours, and 10 m³/s before the run.
class RunoffRecession : public EngineTest {
protected:
    void SetUp() override { begin(3); }

    void begin(int days_in_run, int zones = 1) {
        start(zones, date_of(2001, 6, 1), days_in_run);
        for (auto* column : {&table.Cpr, &table.M1S, &table.ZoneDD}) fill(*column, 0.0);
        fill_zone(table.Cpr, 1, 1.0);
        fill(table.LagTime, 18.0);
    }

    bool go() { return runoff_simulation(); }
};

TEST_F(RunoffRecession, MixesTheInputWithTheDischargeOfTheDayBefore) {
    fill(table.Xcoeff, 0.5);

    EXPECT_TRUE(go());

    // 100 x 0.5 + 10 x 0.5 = 55; 50 + 27.5; 50 + 38.75.
    EXPECT_THAT(table.DailyQ, ElementsAre(55.0, 77.5, 88.75));
    EXPECT_EQ(run.FinalQ[0], 88.75F);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunoffRecession, FallsWithTheDischargeOfTheDayBefore) {
    fill(table.Xcoeff, 1.0);
    fill(table.YCoeff, 0.5);
    run.InitialRunoff = 4.0F;

    EXPECT_TRUE(go());

    // k = 4^-0.5 = 0.5: 100 x 0.5 + 4 x 0.5 = 52. Then k = 52^-0.5.
    const double share = 1.0 - std::pow(52.0, -0.5);
    EXPECT_EQ(table.DailyQ[0], 52.0);
    EXPECT_EQ(table.DailyQ[1], 100.0 * share + (1.0 - share) * 52.0);
}

TEST_F(RunoffRecession, BuildsOnADoubleDischarge) {
    fill(table.Xcoeff, 0.3);

    EXPECT_TRUE(go());

    const double share = 1.0 - 0.3;
    const double day1 = 100.0 * share + (1.0 - share) * 10.0;
    EXPECT_EQ(table.DailyQ[0], day1);
    EXPECT_EQ(table.DailyQ[1], 100.0 * share + (1.0 - share) * day1);
}

TEST_F(RunoffRecession, TakesCoefficientsFromTheFirstZoneAlone) {
    begin(2, 2);
    simulation().recession = Distribution::ByZone;
    fill_zone(table.Xcoeff, 1, 0.5);
    fill_zone(table.Xcoeff, 2, 0.25);
    fill_zone(table.YCoeff, 2, 0.5);

    EXPECT_TRUE(go());

    EXPECT_THAT(days(table.DailyQ, 1), ElementsAre(55.0, 77.5));
}

TEST_F(RunoffRecession, ACoefficientOf1IsHeldAt0Point99WithOneMessageInTheRun) {
    fill(table.Xcoeff, 1.0);
    dialogs.then(Answer::Ok);

    EXPECT_TRUE(go());

    const double day1 = 100.0 * 0.01 + (1.0 - 0.01) * 10.0;
    const double day2 = 100.0 * 0.01 + (1.0 - 0.01) * day1;
    EXPECT_EQ(table.DailyQ[0], day1);
    EXPECT_EQ(table.DailyQ[1], day2);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text, k_limit_text);
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::OkCancel);
}

TEST_F(RunoffRecession, ACoefficientAbove1IsHeldAt0Point99) {
    fill(table.Xcoeff, 3.0);
    dialogs.then(Answer::Ok);

    EXPECT_TRUE(go());

    EXPECT_EQ(table.DailyQ[0], 100.0 * 0.01 + (1.0 - 0.01) * 10.0);
}

TEST_F(RunoffRecession, ACoefficientJustBelow1IsTakenAsItIs) {
    fill(table.Xcoeff, 0.999);

    EXPECT_TRUE(go());

    const double share = 1.0 - 0.999;
    EXPECT_EQ(table.DailyQ[0], 100.0 * share + (1.0 - share) * 10.0);
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunoffRecession, EachRunShowsTheMessageOnce) {
    fill(table.Xcoeff, 1.0);
    dialogs.then(Answer::Ok).then(Answer::Ok);

    EXPECT_TRUE(go());
    EXPECT_TRUE(go());

    EXPECT_EQ(dialogs.messages().size(), 2U);
}

TEST_F(RunoffRecession, CancelEndsTheStageAtOnceAndKeepsTheDaysBefore) {
    set(table.Xcoeff, 1, {0.5, 1.0, 0.5});
    run.FinalQ[0] = 7.0F;
    dialogs.then(Answer::Cancel);

    EXPECT_FALSE(go());

    EXPECT_EQ(table.DailyQ[0], 55.0);
    EXPECT_TRUE(std::isnan(table.DailyQ[1]));
    EXPECT_TRUE(std::isnan(table.DailyQ[2]));
    EXPECT_THAT(table.ZonalMelt, ElementsAre(0.0F, 0.0F, IsNan()));
    EXPECT_EQ(run.FinalQ[0], 7.0F);
    EXPECT_EQ(table.size(), 3U);
}

TEST_F(RunoffRecession, ADischargeOf0KeepsTheFormerShare) {
    fill(table.Xcoeff, 0.5);
    set(table.YCoeff, 1, {0.0, 0.5, 0.5});
    set(table.ActualQ, 1, {0.0, 10.0, 10.0});
    run.UpdateInterval = 1;

    EXPECT_TRUE(go());

    // Day 2 starts from a measured 0, whose power of -0.5 is undefined: day 1's share of 0.5 stays.
    EXPECT_THAT(table.DailyQ, ElementsAre(55.0, 50.0, ::testing::_));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunoffRecession, ADischargeBelow0KeepsTheFormerShareToo) {
    fill(table.Xcoeff, 0.5);
    set(table.YCoeff, 1, {0.0, 0.5, 0.5});
    set(table.ActualQ, 1, {-4.0, 10.0, 10.0});
    run.UpdateInterval = 1;

    EXPECT_TRUE(go());

    EXPECT_EQ(table.DailyQ[1], 48.0);  // 100 x 0.5 - 4 x 0.5
}

TEST_F(RunoffRecession, ADischargeOf0IsValidWithoutAnExponent) {
    fill(table.Xcoeff, 0.5);
    run.InitialRunoff = 0.0F;

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(50.0, 75.0, 87.5));  // 0^0 is 1
}

TEST_F(RunoffRecession, ADischargeOf0OnDay1MeetsTheLimitSinceTheShareStartsAt0) {
    fill(table.Xcoeff, 0.5);
    fill(table.YCoeff, 0.5);
    run.InitialRunoff = 0.0F;
    dialogs.then(Answer::Ok);

    EXPECT_TRUE(go());

    EXPECT_EQ(table.DailyQ[0], 100.0 * 0.01);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text, k_limit_text);
}

TEST_F(RunoffRecession, AMissingXKeepsThatOfTheDayBefore) {
    set(table.Xcoeff, 1, {0.5, static_cast<double>(k_missing), 0.25});

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(55.0, 77.5, 94.375));  // 75 + 0.25 x 77.5
}

TEST_F(RunoffRecession, AMissingYKeepsThatOfTheDayBefore) {
    begin(2);
    fill(table.Xcoeff, 1.0);
    set(table.YCoeff, 1, {0.5, static_cast<double>(k_missing)});
    fill(table.ActualQ, 16.0);
    run.InitialRunoff = 4.0F;
    run.UpdateInterval = 1;

    EXPECT_TRUE(go());

    // k = 4^-0.5 = 0.5: 50 + 2. Day 2 starts from the measured 16: k = 16^-0.5 = 0.25: 75 + 4.
    EXPECT_THAT(table.DailyQ, ElementsAre(52.0, 79.0));
}

TEST_F(RunoffRecession, AMissingXOnDay1Is0) {
    set(table.Xcoeff, 1, {static_cast<double>(k_missing), 0.5, 0.5});

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(100.0, 100.0, 100.0));
}

TEST_F(RunoffRecession, AShareTooLargeForADoubleKeepsTheFormerOne) {
    set(table.Xcoeff, 1, {0.5, 1e308, 0.5});
    set(table.YCoeff, 1, {0.0, -10.0, 0.0});

    EXPECT_TRUE(go());

    EXPECT_THAT(table.DailyQ, ElementsAre(55.0, 77.5, 88.75));
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(RunoffRecession, ADischargeTooLargeLeavesTheRowWithoutOne) {
    // On day 2 1 - k = 10^300; times an input of 10^10 m³/s it exceeds a Double.
    fill(table.Cpr, 1e8);
    set(table.Xcoeff, 1, {0.5, -1e300, 0.5});

    EXPECT_TRUE(go());

    EXPECT_EQ(table.DailyQ[0], 5000000005.0);  // 10^10 x 0.5 + 10 x 0.5
    EXPECT_TRUE(std::isnan(table.DailyQ[1]));
    EXPECT_EQ(table.DailyQ[2], 5e9 + 0.5 * 5000000005.0);  // the discharge of day 1 still counts
}

TEST_F(RunoffRecession, InitialRunoffIsTheDischargeBeforeDay1) {
    fill(table.Cpr, 0.0);
    fill(table.Xcoeff, 0.5);
    run.InitialRunoff = 0.1F;

    EXPECT_TRUE(go());

    EXPECT_EQ(table.DailyQ[0], 0.5 * static_cast<double>(0.1F));
}

}  // namespace
}  // namespace nivora
