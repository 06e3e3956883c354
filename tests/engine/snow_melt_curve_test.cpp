#include "engine/snow_melt.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

#include <cmath>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;

/// Six summer days with a degree-day factor of 1: each day's melt depth is its degree days.
class DepletionCurves : public EngineTest {
protected:
    void SetUp() override { begin(1); }

    void begin(int zones) {
        start(zones, date_of(2001, 6, 1), 6);
        for (int z = 1; z <= zones; ++z) {
            set(table.ZoneDD, z, {1.0, 2.0, 3.0, 4.0, 5.0, 6.0});  // sums 1, 3, 6, 10, 15, 21
        }
        fill(table.Tcrit, 100.0);  // all precipitation is snow
    }

    void go() { snow_melt(); }
};

TEST_F(DepletionCurves, StartAtTheSumOfTheDayBeforeTheFirstCover) {
    set(table.SCA, 1, {0.0, 0.5, 0.25, 0.125, 0.125, 0.125});

    go();

    // The base is day 1's sum, 1: 3 - 1, 6 - 1, 10 - 1, 15 - 1, 21 - 1.
    EXPECT_THAT(table.MDCincl, ElementsAre(0.0F, 2.0F, 5.0F, 9.0F, 14.0F, 20.0F));
    EXPECT_THAT(table.MDCexcl, ElementsAre(0.0F, 2.0F, 5.0F, 9.0F, 14.0F, 20.0F));
}

TEST_F(DepletionCurves, StartAt0WhereTheFirstDayHasCover) {
    fill(table.SCA, 0.5);

    go();

    EXPECT_THAT(table.MDCincl, ElementsAre(1.0F, 3.0F, 6.0F, 10.0F, 15.0F, 21.0F));
}

TEST_F(DepletionCurves, TheFirstDayWithoutCoverIsTheLastOfTheCurve) {
    set(table.SCA, 1, {0.0, 0.5, 0.25, 0.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.MDCincl, ElementsAre(0.0F, 2.0F, 5.0F, 9.0F, 0.0F, 0.0F));
    EXPECT_THAT(table.MDCexcl, ElementsAre(0.0F, 2.0F, 5.0F, 9.0F, 0.0F, 0.0F));
}

TEST_F(DepletionCurves, ACoverThatReturnsAfterTheEndCountsFromMinus2) {
    set(table.SCA, 1, {0.5, 0.0, 0.0, 0.25, 0.5, 0.0});

    go();

    // The curve ended on day 2. Day 4: 10 + 2; day 5: 15 + 2. Day 6 has no
    // cover, and the curve does not end again.
    EXPECT_THAT(table.MDCincl, ElementsAre(1.0F, 3.0F, 0.0F, 12.0F, 17.0F, 0.0F));
    EXPECT_THAT(table.MDCexcl, ElementsAre(1.0F, 3.0F, 0.0F, 12.0F, 17.0F, 0.0F));
}

TEST_F(DepletionCurves, AZoneThatNeverHasCoverLeavesThemAt0) {
    go();

    EXPECT_THAT(table.MDCincl, Each(0.0F));
    EXPECT_THAT(table.MDCexcl, Each(0.0F));
}

TEST_F(DepletionCurves, TheMeltOfNewSnowIsLeftOutOfOneOfThem) {
    fill(table.SCA, 0.5);
    set(table.Precip, 1, {0.0, 1.0, 0.0, 4.5, 0.0, 0.0});

    go();

    // New snow melts 1 on day 2 (of 2 possible), 4 on day 4 and the
    // remaining 0.5 on day 5: sums 1, 1, 5, 5.5.
    EXPECT_THAT(table.NewMelt, ElementsAre(0.0F, 1.0F, 0.0F, 4.0F, 0.5F, 0.0F));
    EXPECT_THAT(table.MDCincl, ElementsAre(1.0F, 3.0F, 6.0F, 10.0F, 15.0F, 21.0F));
    EXPECT_THAT(table.MDCexcl, ElementsAre(1.0F, 2.0F, 5.0F, 5.0F, 9.5F, 15.5F));
}

TEST_F(DepletionCurves, NewSnowThatMeltedBeforeTheCoverDoesNotCount) {
    set(table.SCA, 1, {0.0, 0.0, 0.5, 0.5, 0.5, 0.5});
    set(table.Precip, 1, {1.0, 2.0, 0.5, 0.0, 0.0, 0.0});

    go();

    // The base is 3. Only the 0.5 of day 3 is left out.
    EXPECT_THAT(table.NewMelt, ElementsAre(1.0F, 2.0F, 0.5F, 0.0F, 0.0F, 0.0F));
    EXPECT_THAT(table.MDCincl, ElementsAre(0.0F, 0.0F, 3.0F, 7.0F, 12.0F, 18.0F));
    EXPECT_THAT(table.MDCexcl, ElementsAre(0.0F, 0.0F, 2.5F, 6.5F, 11.5F, 17.5F));
}

TEST_F(DepletionCurves, NewSnowBetweenTheEndAndANewCoverDoesNotCountButEarlierNewSnowDoes) {
    set(table.SCA, 1, {0.5, 0.0, 0.0, 0.0, 0.5, 0.5});
    set(table.Precip, 1, {0.5, 0.0, 1.0, 0.0, 0.0, 0.0});

    go();

    // The 0.5 of day 1 is left out, the 1 of day 3 is not. Day 5: 15 - 0.5 + 2; day 6: 21 - 0.5 + 2.
    EXPECT_THAT(table.MDCexcl, ElementsAre(0.5F, 2.5F, 0.0F, 0.0F, 16.5F, 22.5F));
}

TEST_F(DepletionCurves, AllMeltFromNewSnowLeaves0) {
    fill(table.SCA, 0.5);
    set(table.Precip, 1, {50.0, 0.0, 0.0, 0.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.MDCincl, ElementsAre(1.0F, 3.0F, 6.0F, 10.0F, 15.0F, 21.0F));
    EXPECT_THAT(table.MDCexcl, Each(0.0F));
}

TEST_F(DepletionCurves, AValueBelow0Point0001IsSetTo0InOneOfThem) {
    // The Single 0.0001 is 0.0000999999975, below the limit; the next one is 0.00010000000475.
    const auto first_day = [&](float degree_days) {
        begin(1);
        fill(table.SCA, 0.5);
        table.ZoneDD[0] = degree_days;
        go();
        EXPECT_EQ(table.MDCincl[0], degree_days);
        return table.MDCexcl[0];
    };

    EXPECT_EQ(first_day(0.00005F), 0.0F);
    EXPECT_EQ(first_day(0.0001F), 0.0F);
    const float next = std::nextafter(0.0001F, 1.0F);
    EXPECT_EQ(first_day(next), next);
    EXPECT_EQ(first_day(0.0002F), 0.0002F);
}

TEST_F(DepletionCurves, EachZoneHasItsOwn) {
    begin(2);
    set(table.SCA, 1, {0.5, 0.0, 0.0, 0.0, 0.0, 0.0});
    set(table.SCA, 2, {0.0, 0.0, 0.5, 0.0, 0.0, 0.0});

    go();

    EXPECT_THAT(days(table.MDCincl, 1), ElementsAre(1.0F, 3.0F, 0.0F, 0.0F, 0.0F, 0.0F));
    EXPECT_THAT(days(table.MDCincl, 2), ElementsAre(0.0F, 0.0F, 3.0F, 7.0F, 0.0F, 0.0F));
}

TEST_F(DepletionCurves, AMissingCoverNeitherRunsNorEndsACurve) {
    set(table.SCA, 1, {0.5, k_missing, 0.5, 0.0, 0.0, 0.0});

    go();

    EXPECT_THAT(table.MDCincl, ElementsAre(1.0F, 0.0F, 6.0F, 10.0F, 0.0F, 0.0F));
    EXPECT_TRUE(dialogs.messages().empty());
}

class DepletionCurvesByStep : public DepletionCurves, public ::testing::WithParamInterface<int> {};

TEST_P(DepletionCurvesByStep, ArePartOfPlainRunsAndStep3Alone) {
    run.ClimateStep = GetParam();
    fill(table.ZoneDDCC, 1.0);
    for (auto* cover : {&table.SCA, &table.SCACC, &table.SCAclimWAMA}) fill(*cover, 0.5);
    fill(table.MDCincl, 77.0);
    fill(table.MDCexcl, 77.0);

    go();

    if (GetParam() == 0 || GetParam() == 3) {
        EXPECT_THAT(table.MDCincl, ElementsAre(1.0F, 3.0F, 6.0F, 10.0F, 15.0F, 21.0F));
        EXPECT_THAT(table.MDCexcl, ElementsAre(1.0F, 3.0F, 6.0F, 10.0F, 15.0F, 21.0F));
    } else {
        EXPECT_THAT(table.MDCincl, Each(77.0F));
        EXPECT_THAT(table.MDCexcl, Each(77.0F));
    }
}

INSTANTIATE_TEST_SUITE_P(AllSteps, DepletionCurvesByStep, ::testing::Range(0, 7));

}  // namespace
}  // namespace nivora
