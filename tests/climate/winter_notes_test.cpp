#include "climate/winter_notes.h"

#include "tests/climate/winter_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;
using ::testing::HasSubstr;

/// One zone with a summer of five days whose snow is gone on the third.
class WinterNotes : public WinterTest {
protected:
    void SetUp() override {
        summer(1, 5);
        basin.Current_Start = date_of(2000, 10, 1);
        set(table.SCA, 1, {1, 0.5, 0, 0, 0});
        set(table.MDCexcl, 1, {1, 2, 3, 0, 0});
        set(table.SumAT, 1, {1, 2, 3, 4, 5});
    }

    [[nodiscard]] std::vector<NoteKind> kinds() const {
        std::vector<NoteKind> found;
        for (const RunNote& note : run.notes) found.push_back(note.kind);
        return found;
    }
};

TEST_F(WinterNotes, ASummerThatMeltsDayByDayHasNone) {
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.01F, 0, 0}));
}

TEST_F(WinterNotes, ABareDayThatFallsOnTheDayOfTheSnowIsNotedAndTheCoverStaysAsItIs) {
    // The changed summer melts three times as fast: depths 1, 2 and 3 are all reached on the first day, and
    // the first of them counts.
    set(table.SumAT, 1, {3, 6, 9, 12, 15});
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 1, 1, 1, 1}));
    ASSERT_THAT(kinds(), ElementsAre(NoteKind::CoverHeld));
    EXPECT_EQ(run.notes[0].step, 5);
    EXPECT_EQ(run.notes[0].days, 5);
    EXPECT_EQ(
        note_text(run.notes[0], Units::Metric),
        "Step 5: In zone 1, the last day with snow and the first day without snow move to the same day of "
        "the changed climate, 05/01/2001. The first of them counts, so the cover stays at 1 until "
        "05/05/2001, although the snow is gone. Compare CDC with CDCclimWAMA before you use the summer of "
        "this zone.");
}

TEST_F(WinterNotes, SnowThatTheChangedSummerNeverMeltsIsNotHeldByARule) {
    set(table.SumAT, 1, {0, 1, 1, 1, 1});  // the depth of the bare day is never reached
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
}

TEST_F(WinterNotes, SnowThatOutlastsThePresentSummerIsNotHeldByARule) {
    set(table.SCA, 1, {1, 0.75, 0.5, 0.25, 0.25});
    set(table.MDCexcl, 1, {1, 2, 3, 4, 5});
    set(table.SumAT, 1, {3, 6, 9, 12, 15});
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
}

TEST_F(WinterNotes, ALaterDayOfTheCurveThatIsBareEndsItAfterAll) {
    // Snow returns on the third day. Depths 1 and 2 are placed on day 1, 4 on day 2 and the bare 5 on day 3.
    set(table.SCA, 1, {1, 0, 0.5, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 4, 5, 0});
    set(table.SumAT, 1, {3, 4.5, 5, 6, 7});
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.5F, 0.01F, 0, 0}));
}

TEST_F(WinterNotes, ACurveThatWasMovedByADeficitIsNotedAsWell) {
    // The deficit of 1 is covered on the first day, so day 2 comes first: 0.5 at depth 1, bare at depth 2.
    winter(1, 10, 9, 0, 0);
    set(table.SumAT, 1, {3, 6, 9, 12, 15});
    adjust();
    ASSERT_THAT(kinds(), ElementsAre(NoteKind::CoverHeld));
    EXPECT_EQ(run.notes[0].first, date_of(2001, 5, 1));
    EXPECT_EQ(run.notes[0].value, 0.5F);
}

TEST_F(WinterNotes, SnowBehindABareDayThatHasItsOwnDateIsNotHeld) {
    // Snow returns on the third day. Depths 1 and 2 are placed on days 1 and 2, so the bare second day ends
    // the curve. The snow of depth 4 and the bare day of depth 5 share day 3, after that end.
    set(table.SCA, 1, {1, 0, 0.5, 0, 0});
    set(table.MDCexcl, 1, {1, 2, 4, 5, 0});
    set(table.SumAT, 1, {1, 2, 5, 6, 7});
    adjust();
    EXPECT_EQ(days(table.SCAclimWA), (Floats{1, 0.0001F, 0.5F, 0, 0}));
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.01F, 0, 0, 0}));
    EXPECT_THAT(kinds(), ElementsAre());
}

TEST_F(WinterNotes, ACoverIsHeldAlthoughALaterSnowMovesToTheNextZone) {
    summer(2, 5);
    set(table.SCA, 1, {1, 0.5, 0, 0.3, 0});
    set(table.MDCexcl, 1, {1, 2, 3, 20, 0});
    // Depths 1, 2 and 3 are reached on day 1. Depth 20 is never reached and moves to day 1 of zone 2, where
    // that zone's own first value replaces it.
    set(table.SumAT, 1, {3, 6, 9, 12, 15});
    set(table.SCA, 2, {1, 0.5, 0, 0, 0});
    set(table.MDCexcl, 2, {1, 2, 3, 0, 0});
    set(table.SumAT, 2, {1, 2, 3, 4, 5});
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA, 1), (Floats{1, 1, 1, 1, 1}));
    EXPECT_EQ(days(table.SCAclimWAMA, 2), (Floats{1, 0.5F, 0.01F, 0, 0}));
    ASSERT_THAT(kinds(), ElementsAre(NoteKind::CoverHeld));
    EXPECT_THAT(run.notes[0].zones, ElementsAre(1));
    EXPECT_EQ(run.notes[0].first, date_of(2001, 5, 1));
    EXPECT_EQ(run.notes[0].value, 1.0F);
}

TEST_F(WinterNotes, AHeldCoverThatIsJoinedToSnowOfTheLastDayIsNotedWithThatSnow) {
    // New snow falls on the last day. All depths are reached on day 1; day 2 gets the cover of the last day.
    set(table.SCA, 1, {1, 0.5, 0, 0, 0.2});
    set(table.MDCexcl, 1, {1, 2, 3, 3, 3});
    set(table.SumAT, 1, {3, 6, 9, 12, 15});
    adjust();
    EXPECT_EQ(days(table.SCAclimWAMA), (Floats{1, 0.2F, 0.2F, 0.2F, 0.2F}));
    ASSERT_THAT(kinds(), ElementsAre(NoteKind::CoverHeld));
    EXPECT_EQ(run.notes[0].value, 0.2F);
    EXPECT_THAT(note_text(run.notes[0], Units::Metric),
                HasSubstr("so the cover stays at 0.2 until 05/05/2001"));
}

TEST_F(WinterNotes, AWinterThatLosesMoreThanFellIsNotedWithItsStore) {
    winter(1, 10, 12, 30, 40);  // g = (12 - 40) / (10 - 30) = 1.4: a surplus in a warmer climate
    adjust();
    // The apparent surplus stretches the curve; its only remaining day is held.
    EXPECT_EQ(days(table.MDCexclWA), (Floats{1.4F, 0, 0, 0, 0}));
    ASSERT_THAT(kinds(), ElementsAre(NoteKind::NoWinterStore, NoteKind::CoverHeld));
    EXPECT_EQ(
        note_text(run.notes[0], Units::Metric),
        "Step 5: In zone 1, more water left the snow in the winter from 10/01/2000 to 04/30/2001 than fell, "
        "under the present climate (P - i = -20 cm): it is snow from before the start of the simulation, or "
        "the melt is too strong, or too little snow fell, for the snow cover given. The "
        "gain of the zone and the cover that step 5 computes from it are meaningless. Start the simulation "
        "before the first snowfall, and compare CDC with CDCclimWAMA.");
    EXPECT_THAT(note_text(run.notes[0], Units::English), HasSubstr("(P - i = -20 in)"));
    EXPECT_EQ(note_summary(run.notes[0]), "no winter store in zone 1");
}

TEST_F(WinterNotes, AWinterThatStoresNothingIsNotedEvenWithinRounding) {
    for (const double input : {10.0, 9.9995, 10.0005}) {
        SCOPED_TRACE(input);
        run.notes.clear();
        winter(1, 10, 12, input, 10);
        adjust();
        ASSERT_THAT(kinds(), ElementsAre(NoteKind::NoWinterStore));
        EXPECT_THAT(note_text(run.notes[0], Units::Metric),
                    HasSubstr("is left in the snow under the present climate (P - i = 0)"));
    }
    run.notes.clear();
    winter(1, 10, 10, 9.99, 9.99);
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
}

TEST_F(WinterNotes, AZoneWithoutSnowInTheSummerIsNotNoted) {
    fill(table.SCA, 0.0);
    winter(1, 10, 12, 30, 40);
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
}

TEST_F(WinterNotes, AChangedWinterThatLosesMoreThanFellIsSimplyWithoutSnow) {
    winter(1, 10, 10, 2, 30);
    adjust();
    EXPECT_THAT(kinds(), ElementsAre());
}

}  // namespace
}  // namespace nivora
