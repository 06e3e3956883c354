#include "engine/snow_melt.h"
#include "tests/engine/engine_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::Each;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsNan;

constexpr const char* k_null_text =
    "Null (blank) value in physical database or simulation parameter file.  Aborting!";
constexpr const char* k_null_title = "Missing value(s)";

class SnowMeltFaults : public EngineTest {
protected:
    void SetUp() override { begin(date_of(2001, 6, 1)); }

    void begin(DayCount first, int zones = 1) {
        start(zones, first, 3);
        fill(table.ZoneDD, 2.0);
        fill(table.Tcrit, 1.0);
    }

    void go() { snow_melt(); }

    static std::string missing(const std::string& day, const std::string& fields) {
        return std::string{k_null_text} + "\nIn zone 1 on " + day + " these values are missing: " + fields +
               ".";
    }
    void expect_missing_values(const std::string& day, const std::string& fields) {
        ASSERT_EQ(dialogs.messages().size(), 1U);
        expect_stop(dialogs.messages()[0], missing(day, fields), k_null_title);
    }
};

TEST_F(SnowMeltFaults, MissingDegreeDaysEndTheStageAndKeepTheRowsBefore) {
    begin(date_of(2001, 6, 1), 2);
    table.ZoneDD[at(1, 2)] = k_missing;
    fill(table.NewMelt, 55.0);

    go();

    expect_missing_values("06/02/2001", "ZoneDD");
    EXPECT_THAT(days(table.SumAT, 1), ElementsAre(2.0F, IsNan(), IsNan()));
    EXPECT_THAT(days(table.NewMelt, 1), ElementsAre(0.0F, 55.0F, 55.0F));
    EXPECT_THAT(days(table.SumAT, 2), Each(IsNan()));
}

TEST_F(SnowMeltFaults, AStageThatStoppedIsNotedWithTheZonesAndDaysThatItOmitted) {
    begin(date_of(2001, 6, 1), 3);
    run.ClimateStep = 2;
    table.ZoneDDCC.assign(table.ZoneDDCC.size(), 2.0F);
    table.ZoneDDCC[at(2, 2)] = k_missing;

    go();

    ASSERT_EQ(run.notes.size(), 1U);
    const RunNote& note = run.notes[0];
    EXPECT_EQ(note.kind, NoteKind::SnowMeltStopped);
    EXPECT_THAT(note.zones, ElementsAre(2, 3));
    EXPECT_EQ(note.first, date_of(2001, 6, 2));
    EXPECT_EQ(note.last, date_of(2001, 6, 3));
    EXPECT_EQ(note.days, 2);
    EXPECT_EQ(
        note_text(note, Units::Metric),
        "Step 2: The computation of snow and melt stopped in zone 2 on 06/02/2001. From there on, the days "
        "of zones 2 and 3 have no rain and no melt of new snow: do not use the computed discharge. Repair "
        "the values of that day and of the days after it, and run again.");
    EXPECT_EQ(note_summary(note), "no snow and melt in zones 2 and 3 from 06/02/2001 on");
}

TEST_F(SnowMeltFaults, AStageThatReachesItsEndIsNotNoted) {
    go();
    EXPECT_THAT(run.notes, ::testing::IsEmpty());
}

TEST_F(SnowMeltFaults, AMissingDegreeDayFactorEndsTheStage) {
    table.AN[at(1, 1)] = k_missing;

    go();

    expect_missing_values("06/01/2001", "AN");
    EXPECT_THAT(table.aT, Each(IsNan()));
}

TEST_F(SnowMeltFaults, MissingPrecipitationIsADryDayInAPlainRun) {
    fill(table.Precip, k_missing);
    set(table.ZoneDD, 1, {2.0, 0.0, 2.0});

    go();

    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_THAT(table.Cpr, Each(0.0F));
    EXPECT_THAT(table.SnowOnStore, Each(0.0F));
    EXPECT_THAT(table.SumAT, ElementsAre(2.0F, 2.0F, 4.0F));
}

TEST_F(SnowMeltFaults, MissingPrecipitationEndsTheStageInClimateSteps1And2) {
    for (const int step : {1, 2}) {
        begin(date_of(2001, 6, 1));
        run.ClimateStep = step;
        fill(table.ZoneDDCC, 2.0);
        set(table.Precip, 1, {0.5, k_missing, 0.5});
        set(table.PrecipCC, 1, {0.5, k_missing, 0.5});
        const std::size_t before = dialogs.messages().size();

        go();

        ASSERT_EQ(dialogs.messages().size(), before + 1);
        expect_stop(dialogs.messages().back(), missing("06/02/2001", "Precip"), k_null_title);
        EXPECT_THAT(table.SumAT, ElementsAre(2.0F, IsNan(), IsNan()));
        EXPECT_EQ(run.WinterPrecip[1][static_cast<std::size_t>(step)], 0.5F);
    }
}

TEST_F(SnowMeltFaults, MissingPrecipitationPassesInStep3) {
    run.ClimateStep = 3;
    fill(table.Precip, k_missing);

    go();

    EXPECT_TRUE(dialogs.messages().empty());
}

TEST_F(SnowMeltFaults, AMissingCriticalTemperatureMakesAllPrecipitationSnow) {
    fill(table.Tcrit, k_missing);
    set(table.ZoneDD, 1, {0.0, 0.0, 50.0});
    set(table.Precip, 1, {3.0, 0.0, 2.0});

    go();

    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_THAT(table.Cpr, Each(0.0F));
    EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, 3.0F, 5.0F));
}

TEST_F(SnowMeltFaults, AMissingCoverIsNoFaultIfNothingDependsOnIt) {
    fill(table.SCA, k_missing);
    set(table.Precip, 1, {3.0, 0.0, 0.0});  // rain, with the switch at 1

    go();

    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_THAT(table.Cpr, ElementsAre(3.0F, 0.0F, 0.0F));
    EXPECT_THAT(table.MDCincl, Each(0.0F));
}

TEST_F(SnowMeltFaults, AMissingCoverLeavesRainMissingWhereTheSwitchIs0) {
    fill(table.SCA, k_missing);
    fill(table.RCA, 0.0);
    set(table.Precip, 1, {3.0, 0.0, 3.0});

    go();

    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_THAT(table.Cpr, Each(IsNan()));  // 0 x missing is missing too
    EXPECT_THAT(table.M1S, Each(0.0F));
}

TEST_F(SnowMeltFaults, AMissingCoverEndsTheStageWhereNewSnowMeltsInSummer) {
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 2.0, 2.0});
    fill(table.SCA, k_missing);

    go();

    // Day 1 stores the snow without needing the cover; day 2 needs the snow-free share.
    expect_missing_values("06/02/2001", "SCA");
    EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, IsNan(), IsNan()));
}

TEST_F(SnowMeltFaults, AMissingCoverEndsTheStageWhereSnowFallsInWinter) {
    begin(date_of(2001, 1, 10));
    set(table.Precip, 1, {0.0, 3.0, 0.0});
    fill(table.ZoneDD, 0.0);
    fill(table.SCA, k_missing);

    go();

    expect_missing_values("01/11/2001", "SCA");
    EXPECT_THAT(table.SnowOnStore, ElementsAre(0.0F, IsNan(), IsNan()));
}

TEST_F(SnowMeltFaults, AMissingCoverDoesNotKeepTheWintersStoreFromMelting) {
    begin(date_of(2001, 1, 10));
    set(table.Precip, 1, {3.0, 0.0, 0.0});
    set(table.ZoneDD, 1, {0.0, 2.0, 0.0});
    set(table.SCA, 1, {0.0, k_missing, k_missing});

    go();

    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_THAT(table.M1S, ElementsAre(0.0F, 2.0F, 0.0F));
    EXPECT_THAT(table.SnowOnStore, ElementsAre(3.0F, 3.0F, 1.0F));
}

TEST_F(SnowMeltFaults, AnOverflowShowsNumberAndText) {
    set(table.ZoneDD, 1, {2.0, 10.0, 2.0});
    set(table.AN, 1, {1.0, 3e38, 1.0});

    go();

    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_THAT(dialogs.messages()[0].message.text, HasSubstr("6"));
    EXPECT_THAT(dialogs.messages()[0].message.text, HasSubstr("Overflow"));
    EXPECT_EQ(dialogs.messages()[0].message.icon, Icon::Stop);
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::Ok);
    EXPECT_THAT(table.SumAT, ElementsAre(2.0F, IsNan(), IsNan()));
}

}  // namespace
}  // namespace nivora
