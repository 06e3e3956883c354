#include "reports/report_period.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

class ReportPeriodTest : public testing::Test {
protected:
    ReportPeriodTest() {
        Simulation simulation;
        simulation.name = "wy2001";
        simulation.start = day_count({2000, 10, 1});
        simulation.end = day_count({2001, 9, 30});
        basin_.simulations = {simulation};
        select_simulation(basin_, 0);
        run_.LastRunSimulation = "wy2001";
        run_.RunStart = day_count({2001, 4, 1}).value();
        run_.RunEnd = day_count({2001, 6, 30}).value();
    }

    Simulation& simulation() { return basin_.simulations[0]; }
    [[nodiscard]] std::string cause() const {
        const auto problem = period_problem(basin_, run_);
        return problem ? problem->cause : "none";
    }

    BasinState basin_;
    RunState run_;
};

TEST_F(ReportPeriodTest, IsThatOfTheSimulationForAPlainRun) {
    const ReportPeriod period = report_period(basin_, run_);
    EXPECT_EQ(period.start, simulation().start);
    EXPECT_EQ(period.end, simulation().end);
    EXPECT_EQ(period.covered().days(), 365);
    EXPECT_EQ(cause(), "none");
}

TEST_F(ReportPeriodTest, IsThatOfTheLastClimateStep) {
    run_.ClimateStep = 3;
    EXPECT_EQ(report_period(basin_, run_).start, run_.RunStart);
    EXPECT_EQ(report_period(basin_, run_).end, run_.RunEnd);
    run_.LastRunSimulation = "another";
    EXPECT_EQ(report_period(basin_, run_).start, simulation().start);
}

TEST_F(ReportPeriodTest, AMissingDateStaysMissingAndCoversNoDay) {
    simulation().end.reset();
    EXPECT_EQ(report_period(basin_, run_).start, simulation().start);
    EXPECT_EQ(report_period(basin_, run_).end, std::nullopt);
    EXPECT_EQ(report_period(basin_, run_).covered().days(), 0);
    EXPECT_EQ(ReportPeriod{}.covered().days(), 0);
}

TEST_F(ReportPeriodTest, AProblemNamesTheSimulationAndItsMissingDates) {
    simulation().end.reset();
    EXPECT_EQ(cause(), "the simulation 'wy2001' has no end date");
    simulation().start.reset();
    EXPECT_EQ(cause(), "the simulation 'wy2001' has no start date and no end date");
    simulation().end = day_count({2001, 9, 30});
    EXPECT_EQ(cause(), "the simulation 'wy2001' has no start date");
    EXPECT_EQ(period_problem(basin_, run_)->remedy, "Enter what is missing in the simulation table");
}

TEST_F(ReportPeriodTest, AnEndBeforeTheStartIsAProblemButASingleDayIsNot) {
    simulation().end = *simulation().start - 1;
    EXPECT_EQ(cause(), "the simulation 'wy2001' starts on 10/01/2000 and ends on 09/30/2000");
    EXPECT_EQ(period_problem(basin_, run_)->remedy, "Correct the dates in the simulation table");
    simulation().end = simulation().start;
    EXPECT_EQ(cause(), "none");
}

TEST_F(ReportPeriodTest, WithoutASelectedSimulationThereIsNone) {
    basin_.current_row.reset();
    basin_.Current_Sim_Name = k_no_simulation;
    EXPECT_EQ(report_period(basin_, run_).start, std::nullopt);
    EXPECT_EQ(cause(), "no simulation is selected");
    EXPECT_EQ(period_problem(basin_, run_)->remedy, "Select one in the simulation table");
}

TEST_F(ReportPeriodTest, AClimateStepHasItsDaysAlsoIfADateOfTheSimulationIsGone) {
    run_.ClimateStep = 3;
    simulation().start.reset();
    EXPECT_EQ(cause(), "none");
}

TEST_F(ReportPeriodTest, AProblemNamesTheSimulationOnOneLine) {
    basin_.Current_Sim_Name = "a\nb";
    simulation().end.reset();
    EXPECT_EQ(cause(), "the simulation 'a b' has no end date");
}

}  // namespace
}  // namespace nivora
