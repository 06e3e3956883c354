// The statistics of results that stand in a file.

#include "batch/reported_state.h"
#include "engine/run_driver.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

/// A basin with one zone that was run, and the state of the run.
class ReportedStatistics : public testing::Test {
protected:
    void run_on(const SmallBasin& content) {
        content.write(path);
        BasinState basin = opened_basin(path);
        choose_simulation(run);
        ASSERT_TRUE(start_run({basin, run, dialogs}, 1).completed);
        ASSERT_EQ(run.statistics, StatisticsReach::All);
    }

    /// The statistics of the table in the file over the period of the run.
    [[nodiscard]] RunState taken() const {
        BasinDatabase database{path, Access::ReadOnly};
        RunState state;
        state.RunStart = run.RunStart;
        state.RunEnd = run.RunEnd;
        take_statistics(database, state);
        return state;
    }

    void expect_those_of_the_run(const RunState& state) const {
        EXPECT_EQ(state.statistics, StatisticsReach::All);
        EXPECT_EQ(state.AvgMeasuredQ, run.AvgMeasuredQ);
        EXPECT_EQ(state.MeasuredVolume, run.MeasuredVolume);
        EXPECT_EQ(state.AvgComputedQ, run.AvgComputedQ);
        EXPECT_EQ(state.ComputedVolume, run.ComputedVolume);
        EXPECT_EQ(state.VolumeDifference, run.VolumeDifference);
        EXPECT_EQ(state.CoefficientR2, run.CoefficientR2);
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    RunState run;
    ScriptedDialogs dialogs;
};

TEST_F(ReportedStatistics, AreThoseOfTheRun) {
    SmallBasin content{2, k_first, 3};
    content.physical[1].runoff = 7.0F;
    run_on(content);
    expect_those_of_the_run(taken());
}

TEST_F(ReportedStatistics, ASecondRowOfADayCountsWithItsOwnDischargeAsInTheRun) {
    SmallBasin content{1, k_first, 3};
    content.physical[1].runoff = 7.0F;
    PhysicalRow again = content.physical[1];
    again.runoff = 1.0F;
    content.physical.push_back(again);
    run_on(content);
    // Rows of 10, 7, 1 and 10, not of 10, 1, 1 and 10.
    ASSERT_EQ(run.AvgMeasuredQ, 7.0F);
    expect_those_of_the_run(taken());
}

TEST_F(ReportedStatistics, ADayWithoutARowCountsNowhere) {
    SmallBasin content{1, k_first, 3};
    content.physical[2].runoff = 4.0F;
    content.physical.erase(content.physical.begin() + 1);
    run_on(content);
    ASSERT_EQ(run.AvgMeasuredQ, 7.0F);
    expect_those_of_the_run(taken());
}

TEST_F(ReportedStatistics, OtherZonesAndDaysOutsideThePeriodDoNotCount) {
    SmallBasin content{2, k_first, 3};
    content.physical[1].runoff = 7.0F;
    run_on(content);
    const std::string first = std::to_string(k_first);
    BasinDatabase{path, Access::ReadWrite}.execute(
        "INSERT INTO SimResults (Zone, Date, ActualQ, DailyQ) VALUES (1, " + first + " - 1, 90, 90), (1, " +
        first + " + 3, 90, 90), (2, " + first + ", 90, 90)");
    expect_those_of_the_run(taken());
}

}  // namespace
}  // namespace nivora
