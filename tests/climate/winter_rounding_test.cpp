// Where step 5 rounds its intermediate results: numbers for which a Single and a Double differ.
#include "climate/winter_adjustment.h"
#include "climate/winter_change.h"
#include "tests/climate/winter_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using ::testing::HasSubstr;

/// Singles are 1 apart from 2^23 to 2^24 = 16,777,216, and 2 apart from there to 2^25. A tie rounds to the
/// even one: above 2^24 to a multiple of 4.
///
/// One zone under full cover, with a summer so warm that each depth is reached on the first day.
class WinterRounding : public WinterTest {
protected:
    void warm_summer(int days_of_summer) {
        summer(1, days_of_summer);
        fill_zone(table.SCA, 1, 1);
        fill_zone(table.SumAT, 1, 1e9);
    }
};

TEST_F(WinterRounding, TheDifferenceOfTheInputsIsASingleOfItsOwn) {
    // i - i' = 16,777,217 rounds to 16,777,216, and so does its sum with 1, 16,777,217. Without the first
    // rounding the sum would be 16,777,218.
    EXPECT_EQ(winter_change({.P = 0, .P_changed = 1, .input = 16777216, .input_changed = -1}), 16777216.0F);
}

TEST_F(WinterRounding, TheDifferenceOfThePrecipitationsIsNotRounded) {
    // P' - P = 16,777,217, plus 1 is 16,777,218. As a Single of its own the difference would be 16,777,216,
    // and plus 1, 16,777,217, it would round to 16,777,216 again.
    EXPECT_EQ(winter_change({.P = -1, .P_changed = 16777216, .input = 1, .input_changed = 0}), 16777218.0F);
}

TEST_F(WinterRounding, TheBoxProposesTheChangeThatTheSinglesGive) {
    warm_summer(3);
    winter(1, 16777216, 0, 16777216, -1);  // 16,777,217 rounds to 16,777,216; minus 16,777,216 is 0, not 1
    adjust();
    EXPECT_EQ(dialogs.inputs().at(0).proposed, "0");
}

TEST_F(WinterRounding, TheAccumulatedMeltIsRoundedOnEachDay) {
    warm_summer(5);
    winter(1, 16777218, 0, 0, 0);  // deficit 16,777,218
    set(table.SCA, 1, {1, 0.5, 0.5, 1, 1});
    set(table.MDCexcl, 1, {16777216, 16777218, 16777220, 16777224, 16777226});
    adjust();
    // 16,777,216; + 0.5 * 2 = 16,777,217 rounds back to it, twice; + 4 = 16,777,220 covers the deficit.
    // Unrounded, day 3 would have 16,777,218 and cover it.
    EXPECT_THAT(report, HasSubstr("accumulated zonal melt on 5/4/2001, a shift of  4  days"));
}

TEST_F(WinterRounding, TheRiseOfTheCurveIsASingleOfItsOwn) {
    warm_summer(4);
    winter(1, 12582911, 0, 0, 0);  // deficit 12,582,911
    set(table.SCA, 1, {0, 0.75, 1, 1});
    set(table.MDCexcl, 1, {0.5, 16777215, 16777216, 16777217});
    adjust();
    // Day 2: 16,777,214.5 rounds to 16,777,214, and 0.75 of that, 12,582,910.5, to 12,582,910. Day
    // 3 adds 1 and covers the deficit. Unrounded, 0.75 of 16,777,214.5 is 12,582,910.875, which
    // rounds to 12,582,911 and covers it on day 2.
    EXPECT_THAT(report, HasSubstr("accumulated zonal melt on 5/3/2001, a shift of  3  days"));
}

TEST_F(WinterRounding, AGainWithinASingleOfOneIsNoDeficit) {
    warm_summer(3);
    // 16,777,215.75 / 16,777,216 = 1 - 2^-26. Below 1 Singles are 2^-24 apart, so the gain rounds to 1.
    winter(1, 16777216, 16777216, 0, 0.25);
    set(table.SCA, 1, {1, 0.75, 0.5});
    set(table.MDCexcl, 1, {1, 2, 3});
    adjust();
    // The curve stays on its dates. A deficit would move the 0.75 of day 2 to day 1.
    EXPECT_EQ(days(table.SCAclim), (Floats{1, 0.75F, 0}));
}

TEST_F(WinterRounding, AGainIsRoundedBeforeItStretches) {
    warm_summer(3);
    winter(1, 3, 4, 0, 0);
    fill_zone(table.MDCexcl, 1, 12582914);
    adjust();
    // 4/3 as a Single is 11,184,811 / 2^23. 12,582,914 times that is 16,777,219.17, which rounds up to
    // 16,777,220. 12,582,914 times 4/3 is 16,777,218.67, which would round down to 16,777,218.
    EXPECT_EQ(days(table.MDCexclWA), (Floats{16777220, 16777220, 0}));
}

TEST_F(WinterRounding, AStretchedDepthIsRoundedBeforeNewMeltIsAdded) {
    warm_summer(3);
    winter(1, 10, 15, 0, 0);  // gain 1.5
    fill_zone(table.MDCexcl, 1, 11184811);
    set(table.NewMelt, 1, {1, 0, 0});
    adjust();
    // 16,777,216.5 rounds to 16,777,216; plus 1 is 16,777,217, which rounds back to 16,777,216. Unrounded,
    // 16,777,217.5 would round to 16,777,218.
    EXPECT_EQ(days(table.MDCexclWA), (Floats{16777216, 16777216, 0}));
    EXPECT_EQ(days(table.MDCexclWAnew)[0], 16777216.0F);
}

TEST_F(WinterRounding, AMovedDepthIsRoundedBeforeNewMeltIsAdded) {
    warm_summer(3);
    winter(1, 10, 9.75, 0, 0);  // deficit 0.25, covered by the 0.5 that melts on day 1
    set(table.MDCexcl, 1, {0.5, 16777215, 16777215});
    set(table.NewMelt, 1, {0.5, 0, 0});
    adjust();
    // 16,777,215 - 0.5 rounds to 16,777,214; plus 0.5 it rounds back to 16,777,214. Unrounded,
    // 16,777,214.5 + 0.5 would be 16,777,215.
    EXPECT_EQ(days(table.MDCexclWA), (Floats{16777214, 16777214, 0}));
    EXPECT_EQ(days(table.MDCexclWAnew)[0], 16777214.0F);
}

TEST_F(WinterRounding, TheSumOfNewMeltIsRoundedOnEachDay) {
    warm_summer(3);
    set(table.NewMelt, 1, {16777216, 1, 1});
    adjust();
    // On depths of 0: 16,777,217 rounds back to 16,777,216, twice. Unrounded, day 3 would have 16,777,218.
    EXPECT_EQ(days(table.MDCexclWAnew), (Floats{16777216, 16777216, 16777216}));
}

TEST_F(WinterRounding, ADepthIsComparedWithTheDegreeDaysAsASingle) {
    warm_summer(3);
    set(table.MDCexcl, 1, {16777216, 16777218, 16777220});
    set(table.NewMelt, 1, {1, 0, 0});
    set(table.SumAT, 1, {16777216, 16777220, 16777224});
    adjust();
    // Day 1: 16,777,217 rounds to 16,777,216, which day 1 reaches; unrounded it would be day 2. Day 2:
    // 16,777,219 rounds to 16,777,220, which day 2 reaches. The last day has 0 + 1 and stays there.
    EXPECT_EQ(days(table.MDCexclWAnew), (Floats{16777216, 16777220, 1}));
    EXPECT_EQ(days(table.MeltOffset), (Floats{1, 2, 2}));
}

TEST_F(WinterRounding, TheRestOfACurveStartsFromASingle) {
    constexpr double k_thin = 1.0 / (1 << 26);
    warm_summer(4);
    winter(1, 10, 20, 0, 0);  // gain 2
    set(table.SCA, 1, {0.5, k_thin, 0, -0.5});
    set(table.MDCexcl, 1, {1, 0, 0, 0});  // stretched to 2, reached on day 2
    set(table.SumAT, 1, {1, 2, 3, 4});
    fill_zone(table.SCAclim, 1, 9);
    adjust();
    EXPECT_EQ(days(table.SCAclimWA), (Floats{0, 0.5F, 0, 0}));
    // 0.5 - 2^-26 is half way between 0.5 and the next smaller Single, 0.5 - 2^-25, and rounds to 0.5. With
    // the -0.5 of the last day the rest is 0, not -2^-26.
    EXPECT_EQ(days(table.SCAclim), (Floats{0.5F, static_cast<float>(k_thin), 0, 0}));
}

}  // namespace
}  // namespace nivora
