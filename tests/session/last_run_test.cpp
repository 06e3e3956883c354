// The last simulation run, which the program remembers by its name alone.

#include "reports/report_catalogue.h"
#include "reports/report_choice.h"
#include "tests/session/basin_life_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

/// A saved basin with the simulations "run 1" and "run 2", of which the first was evaluated to the end.
class LastRunTest : public BasinLifeTest {
protected:
    void SetUp() override {
        BasinLifeTest::SetUp();
        file_ = save_new_basin("alder.mdb");
        session_.run.LastRunSimulation = "run 1";
        session_.run.ClimateStep = 6;
    }

    [[nodiscard]] bool is_refused(Report report) const {
        return report_refusal(report, session_.basin, session_.run).has_value();
    }
    [[nodiscard]] std::string caption(Report report) const {
        return ReportChoice(session_.basin, session_.run).caption(report);
    }
    [[nodiscard]] bool may_choose(Report report) const {
        return may_choose_report(report, session_.basin, session_.run);
    }

    /// The simulation of that name counts as the last one run, although no run of this basin was made.
    void expect_counted() {
        EXPECT_EQ(session_.run.LastRunSimulation, "run 1");
        EXPECT_EQ(session_.run.ClimateStep, 6);
        select_simulation(session_.basin, 0);
        ASSERT_EQ(session_.basin.Current_Sim_Name, "run 1");
        EXPECT_FALSE(is_refused(Report::DegreeDays));
        EXPECT_EQ(caption(Report::Runoff), "Simulated Runoff - Present vs. Changed Climate");
        // Results count as out of date until the next run, so that their reports stay off.
        EXPECT_FALSE(may_choose(Report::Melt));
        EXPECT_FALSE(may_choose(Report::DeficitGain));
        mark_results_current(session_.basin);
        EXPECT_TRUE(may_choose(Report::Melt));
        EXPECT_TRUE(may_choose(Report::DeficitGain));
    }

    fs::path file_;
};

TEST_F(LastRunTest, AnOpenedBasinWithASimulationOfTheSameNameCountsItAsTheLastOneRun) {
    const fs::path other = user_ / "birch.mdb";
    fs::copy_file(file_, other);
    dialogs_.then_file(other);
    life_.open();
    ASSERT_EQ(session_.basin.Basin_File, other);
    expect_counted();
}

TEST_F(LastRunTest, ANewBasinWithASimulationOfTheSameNameCountsItAsTheLastOneRun) {
    ASSERT_TRUE(life_.new_basin());
    define_basin(1);
    session_.basin.Input_Changed = false;
    expect_counted();
}

TEST_F(LastRunTest, AnotherNameDoesNotCount) {
    select_simulation(session_.basin, 1);
    ASSERT_EQ(session_.basin.Current_Sim_Name, "run 2");
    EXPECT_TRUE(is_refused(Report::DegreeDays));
    EXPECT_EQ(caption(Report::Runoff), "Measured vs Computed Snowmelt Runoff");
}

}  // namespace
}  // namespace nivora
