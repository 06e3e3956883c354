#include "reports/report_choice.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class ReportChoiceTest : public testing::Test {
protected:
    ReportChoiceTest() {
        basin_.Current_Sim_Name = "wy2001";
        basin_.Output_Valid = true;
        run_.LastRunSimulation = "wy2001";
    }

    [[nodiscard]] ReportChoice choice() const { return {basin_, run_}; }
    /// The numbers of the reports that may be ticked.
    [[nodiscard]] std::vector<int> enabled() const {
        std::vector<int> numbers;
        for (const Report report : k_all_reports) {
            if (choice().is_enabled(report)) numbers.push_back(static_cast<int>(report));
        }
        return numbers;
    }
    static std::vector<int> numbers(const std::vector<Report>& reports) {
        std::vector<int> numbers;
        for (const Report report : reports) numbers.push_back(static_cast<int>(report));
        return numbers;
    }

    BasinState basin_;
    RunState run_;
};

TEST_F(ReportChoiceTest, NothingIsTickedAtFirst) {
    EXPECT_THAT(choice().ticked(), IsEmpty());
    EXPECT_FALSE(choice().is_any_ticked());
    EXPECT_STREQ(choice().all_caption(), "&All");
}

TEST_F(ReportChoiceTest, OnlyTheFirstFiveAreEnabledWithoutARun) {
    run_.LastRunSimulation.clear();
    basin_.Output_Valid = false;
    EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_THAT(numbers(choosable_reports(basin_, run_)), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ReportChoiceTest, ComputedValuesNeedTheLastRunOfThisSimulationWithoutAChangeSince) {
    EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
    basin_.Input_Changed = true;
    EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4));
    basin_.Input_Changed = false;
    basin_.Current_Sim_Name = "another";
    EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ReportChoiceTest, TheDeficitAndGainReportNeedsTheLastClimateStep) {
    for (int step = 0; step < 6; ++step) {
        run_.ClimateStep = step;
        EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7)) << step;
    }
    run_.ClimateStep = 6;
    EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7, 8));
    basin_.Input_Changed = true;
    EXPECT_THAT(enabled(), ElementsAre(0, 1, 2, 3, 4));
}

TEST_F(ReportChoiceTest, TheRunoffIsNamedAfterBothClimatesOnlyBehindTheLastStep) {
    EXPECT_EQ(choice().caption(Report::Runoff), "Measured vs Computed Snowmelt Runoff");
    run_.ClimateStep = 6;
    EXPECT_EQ(choice().caption(Report::Runoff), "Simulated Runoff - Present vs. Changed Climate");
    basin_.Current_Sim_Name = "another";
    EXPECT_EQ(choice().caption(Report::Runoff), "Measured vs Computed Snowmelt Runoff");
}

TEST_F(ReportChoiceTest, AllTicksTheEnabledReportsAndThenClearsThem) {
    basin_.Input_Changed = true;
    ReportChoice all = choice();
    all.tick_or_clear_all();
    EXPECT_THAT(numbers(all.ticked()), ElementsAre(0, 1, 2, 3, 4));
    EXPECT_STREQ(all.all_caption(), "&Reset");
    all.tick_or_clear_all();
    EXPECT_THAT(all.ticked(), IsEmpty());
    EXPECT_STREQ(all.all_caption(), "&All");
}

TEST_F(ReportChoiceTest, ResetStaysWhereBoxesAreClearedOneByOne) {
    basin_.Input_Changed = true;
    ReportChoice all = choice();
    all.tick_or_clear_all();
    for (const Report report : all.ticked()) all.tick(report, false);
    EXPECT_FALSE(all.is_any_ticked());
    EXPECT_STREQ(all.all_caption(), "&Reset");
    all.tick_or_clear_all();
    EXPECT_FALSE(all.is_any_ticked());
    EXPECT_STREQ(all.all_caption(), "&All");
}

TEST_F(ReportChoiceTest, AllTicksAlsoWhatWasTickedByHand) {
    ReportChoice all = choice();
    all.tick(Report::Melt, true);
    EXPECT_TRUE(all.is_any_ticked());
    EXPECT_STREQ(all.all_caption(), "&All");
    all.tick_or_clear_all();
    EXPECT_THAT(numbers(all.ticked()), ElementsAre(0, 1, 2, 3, 4, 5, 6, 7));
}

TEST_F(ReportChoiceTest, AReportThatIsNotEnabledCannotBeTicked) {
    ReportChoice some = choice();
    some.tick(Report::DeficitGain, true);
    EXPECT_FALSE(some.is_any_ticked());
}

TEST_F(ReportChoiceTest, OneReportHasItsOwnTitleAndSeveralACommonOne) {
    const std::vector<Report> one{Report::Melt};
    const std::vector<Report> two{Report::Temperatures, Report::Melt};
    EXPECT_EQ(display_title(one, 0), "Melt Depth (M·S), Melt/New Snow (M·(1-S)), Contributing Rain (Cpr)");
    EXPECT_EQ(display_title(two, 0), "Multiple NVR Reports");
    const std::vector<Report> runoff{Report::Runoff};
    EXPECT_EQ(display_title(runoff, 6), "Simulated Runoff - Present vs. Changed Climate");
}

TEST_F(ReportChoiceTest, TheButtonPrintsOrViews) {
    EXPECT_STREQ(produce_caption(ReportDestination::Printer), "&Print");
    EXPECT_STREQ(produce_caption(ReportDestination::Viewer), "&View");
}

TEST_F(ReportChoiceTest, EachReportThatMayBeOffSaysWhatItNeeds) {
    for (const Report report : k_all_reports)
        EXPECT_EQ(report_condition(report).empty(), report <= Report::DegreeDays) << static_cast<int>(report);
    EXPECT_NE(report_condition(Report::DeficitGain), report_condition(Report::Melt));
}

}  // namespace
}  // namespace nivora
