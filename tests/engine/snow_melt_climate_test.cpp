#include "engine/snow_melt.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsNan;

class SnowMeltInClimateRuns : public EngineTest {
protected:
    void begin(DayCount first, int days, int zones = 1) {
        start(zones, first, days);
        for (auto* column : {&table.ZoneDD, &table.ZoneDDCC}) fill(*column, 0.0);
        for (auto* column : {&table.Tcrit, &table.TcritCC}) fill(*column, 1.0);
    }

    void go() { snow_melt(); }
};

/// A step, the runoff from day 1's melted new snow, and the rain of day 2.
struct StepCase {
    int step;
    float runoff_melt;
    float rain;
};

class SnowMeltColumns : public SnowMeltInClimateRuns, public ::testing::WithParamInterface<StepCase> {};

TEST_P(SnowMeltColumns, FollowTheStep) {
    begin(date_of(2001, 6, 1), 2);
    run.ClimateStep = GetParam().step;
    // Day 1 is below the critical 5 degrees: snow. Present: 2 x 0.5 = 1 cm melts; changed: 4 x 0.5 = 2 cm.
    set(table.ZoneDD, 1, {2.0, 10.0});
    set(table.ZoneDDCC, 1, {4.0, 10.0});
    fill(table.AN, 0.5);
    fill(table.ANCC, 0.5);
    set(table.Tcrit, 1, {5.0, 5.0});
    set(table.TcritCC, 1, {5.0, 5.0});
    set(table.Precip, 1, {4.0, 4.0});
    set(table.PrecipCC, 1, {8.0, 8.0});
    fill(table.RCA, 1.0);
    fill(table.RCACC, 0.0);
    fill(table.SCA, 0.25);
    fill(table.SCACC, 0.5);
    fill(table.SCAclimWAMA, 0.75);

    go();

    EXPECT_EQ(table.M1S[0], GetParam().runoff_melt);
    EXPECT_EQ(table.Cpr[1], GetParam().rain);
}

INSTANTIATE_TEST_SUITE_P(AllSteps, SnowMeltColumns,
                         ::testing::Values(StepCase{0, 0.75F, 4.0F},   // 1 x (1 - 0.25); 4
                                           StepCase{1, 0.75F, 4.0F},   //
                                           StepCase{2, 1.0F, 4.0F},    // 2 x (1 - 0.5); 8 x (1 - 0.5)
                                           StepCase{3, 0.75F, 4.0F},   //
                                           StepCase{4, 1.5F, 6.0F},    // 2 x (1 - 0.25); 8 x (1 - 0.25)
                                           StepCase{5, 1.5F, 6.0F},    //
                                           StepCase{6, 0.5F, 2.0F}));  // 2 x (1 - 0.75); 8 x (1 - 0.75)

TEST_F(SnowMeltInClimateRuns, Steps1And2AddAllPrecipitationOfTheRunToWinterPrecip) {
    for (const int step : {1, 2}) {
        begin(date_of(2001, 3, 31), 3, 2);  // into April: the sum does not stop at the end of the winter
        run.WinterPrecip = {};
        run.WinterPrecip[1][static_cast<std::size_t>(step)] = 100.0F;
        run.ClimateStep = step;
        set(table.Precip, 1, {1.0, 2.0, 4.0});
        set(table.Precip, 2, {8.0, 16.0, 32.0});
        set(table.PrecipCC, 1, {2.0, 4.0, 8.0});
        set(table.PrecipCC, 2, {16.0, 32.0, 64.0});

        go();

        const float factor = step == 1 ? 1.0F : 2.0F;
        for (std::size_t item = 1; item <= 4; ++item) {
            const bool mine = item == static_cast<std::size_t>(step);
            EXPECT_EQ(run.WinterPrecip[1][item], mine ? 100.0F + 7.0F * factor : 0.0F);
            EXPECT_EQ(run.WinterPrecip[2][item], mine ? 56.0F * factor : 0.0F);
        }
    }
}

TEST_F(SnowMeltInClimateRuns, WinterPrecipIsASingle) {
    begin(date_of(2001, 6, 1), 2);
    run.ClimateStep = 1;
    set(table.Precip, 1, {16777216.0, 1.0});  // the next Single is 2 higher

    go();

    EXPECT_EQ(run.WinterPrecip[1][1], 16777216.0F);
}

TEST_F(SnowMeltInClimateRuns, TheStoreAtTheEndOfEachZoneIsKeptInSteps3And5) {
    for (int step = 0; step <= 6; ++step) {
        SCOPED_TRACE(step);
        begin(date_of(2001, 6, 1), 2, 2);
        run.WinterPrecip = {};
        for (auto& zone : run.WinterPrecip) zone[3] = zone[4] = 100.0F;
        run.ClimateStep = step;
        for (auto* column : {&table.Precip, &table.PrecipCC}) {
            set(*column, 1, {1.0, 2.0});
            set(*column, 2, {4.0, 8.0});
        }

        go();

        EXPECT_EQ(run.WinterPrecip[1][3], step == 3 ? 3.0F : 100.0F);
        EXPECT_EQ(run.WinterPrecip[2][3], step == 3 ? 12.0F : 100.0F);
        EXPECT_EQ(run.WinterPrecip[1][4], step == 5 ? 3.0F : 100.0F);
        EXPECT_EQ(run.WinterPrecip[2][4], step == 5 ? 12.0F : 100.0F);
    }
}

TEST_F(SnowMeltInClimateRuns, TheTenthZoneStopsSteps1And2AtItsFirstRow) {
    for (const int step : {1, 2}) {
        begin(date_of(2001, 6, 1), 2, 10);
        run.WinterPrecip = {};
        run.ClimateStep = step;
        fill(table.Precip, 1.0);
        fill(table.PrecipCC, 1.0);
        const std::size_t before = dialogs.messages().size();

        go();

        ASSERT_EQ(dialogs.messages().size(), before + 1);
        EXPECT_EQ(dialogs.messages().back().message.icon, Icon::Stop);
        EXPECT_THAT(dialogs.messages().back().message.text, HasSubstr("9"));
        EXPECT_THAT(dialogs.messages().back().message.text, HasSubstr("Subscript out of range"));
        EXPECT_EQ(run.WinterPrecip[9][static_cast<std::size_t>(step)], 2.0F);
        EXPECT_THAT(days(table.SumAT, 9), Each(0.0F));
        EXPECT_THAT(days(table.SumAT, 10), Each(IsNan()));
    }
}

TEST_F(SnowMeltInClimateRuns, TheTenthZoneStopsSteps3And5AfterItsLastRow) {
    for (const int step : {3, 5}) {
        begin(date_of(2001, 6, 1), 2, 11);
        run.ClimateStep = step;
        fill(table.Precip, 1.0);
        fill(table.PrecipCC, 1.0);
        const std::size_t before = dialogs.messages().size();

        go();

        ASSERT_EQ(dialogs.messages().size(), before + 1);
        EXPECT_THAT(dialogs.messages().back().message.text, HasSubstr("Subscript out of range"));
        EXPECT_EQ(run.WinterPrecip[9][step == 3 ? 3 : 4], 2.0F);
        EXPECT_THAT(days(table.SnowOnStore, 10), ElementsAre(1.0F, 2.0F));
        EXPECT_THAT(days(table.SnowOnStore, 11), Each(IsNan()));
    }
}

TEST_F(SnowMeltInClimateRuns, ATenthZoneThatIsTheLastOneIsWrittenBeforeStep3Stops) {
    begin(date_of(2001, 6, 1), 2, 10);
    run.ClimateStep = 3;
    fill(table.Precip, 1.0);

    go();

    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_THAT(dialogs.messages()[0].message.text, HasSubstr("Subscript out of range"));
    EXPECT_THAT(days(table.SnowOnStore, 10), ElementsAre(1.0F, 2.0F));
}

TEST_F(SnowMeltInClimateRuns, SixteenZonesAreValidInAPlainRunAndInSteps4And6) {
    for (const int step : {0, 4, 6}) {
        begin(date_of(2001, 6, 1), 2, 16);
        run.ClimateStep = step;

        go();

        EXPECT_TRUE(dialogs.messages().empty());
        EXPECT_THAT(table.SumAT, Each(0.0F));
    }
}

}  // namespace
}  // namespace nivora
