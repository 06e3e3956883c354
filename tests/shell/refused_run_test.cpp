// What the main window shows of the last run after a run that was refused or cancelled.

#include "session/report_file.h"
#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

/// The sample basin after a melt season forecast that was updated every three days.
class RefusedRunTest : public MainWindowTest {
protected:
    void SetUp() override {
        open_sample();
        dialogs_.then_text("3");
        let_pass("Results");
        choose("mnuRunForVar(0)");
        ASSERT_TRUE(session_.basin.Output_Valid);
        basin_before_ = session_.basin;
        summary_before_ = summary();
        ASSERT_THAT(summary_before_, testing::HasSubstr("Forecast (updated with actual Q every 3 days)"));
    }

    /// The input summary with the statistics of the run.
    std::string summary() {
        constexpr double k_moment = 46086.5;
        const auto made =
            write_report_file(session_, program_.path(), std::array{Report::InputSummary}, k_moment);
        EXPECT_FALSE(made.problem);
        return made.file ? made.file->text : "";
    }

    /// Chooses a command that starts no run; the message that it ends with has this beginning.
    void expect_refused(const char* command, const char* text) {
        const std::size_t messages = dialogs_.messages().size();
        choose(command);
        ASSERT_GT(dialogs_.messages().size(), messages) << command;
        EXPECT_THAT(last_message().text, testing::StartsWith(text)) << command;
    }

    /// With the basin as it was before its value was spoiled, the report is that of the forecast.
    void expect_report_as_before() {
        session_.basin = basin_before_;
        EXPECT_EQ(summary(), summary_before_);
        EXPECT_TRUE(enabled("mnuDataOpt(7)"));
    }

    void expect_each_refused(const char* text) {
        for (const char* command : {"mnuRunSimVar(1)", "mnuRunSimVar(0)"}) expect_refused(command, text);
    }

    BasinState basin_before_;
    std::string summary_before_;
};

TEST_F(RefusedRunTest, ACancelledForecastLeavesTheReport) {
    dialogs_.then_text(std::nullopt);
    expect_refused("mnuRunForVar(1)", "Updating interval for forecasting must be 1-9 (days).");
    expect_report_as_before();
}

TEST_F(RefusedRunTest, AForecastWithAnIntervalOfTenLeavesTheReport) {
    dialogs_.then_text("10");
    expect_refused("mnuRunForVar(1)", "Updating interval for forecasting must be 1-9 (days).");
    expect_report_as_before();
}

TEST_F(RefusedRunTest, AZoneWithoutAnAreaIsToldBeforeTheForecastAsksAndLeavesTheReport) {
    session_.basin.zones[1].area = 0.0;
    const std::size_t inputs = dialogs_.inputs().size();
    expect_each_refused("Zone area must be greater than zero!");
    expect_refused("mnuRunForVar(1)", "Zone area must be greater than zero!");
    EXPECT_EQ(dialogs_.inputs().size(), inputs);
    expect_report_as_before();
}

TEST_F(RefusedRunTest, AMissingDateLeavesTheReport) {
    session_.basin.current_simulation()->end.reset();
    expect_each_refused("Please check the start/end dates for this simulation!");
    dialogs_.then_text("4");
    expect_refused("mnuRunForVar(1)", "Please check the start/end dates for this simulation!");
    expect_report_as_before();
}

TEST_F(RefusedRunTest, AnInitialRunoffBelowZeroLeavesTheReport) {
    session_.basin.current_simulation()->initial_runoff = -1.0F;
    expect_each_refused("The initial runoff of the simulation 'ellervane-");
    expect_report_as_before();
}

TEST_F(RefusedRunTest, AFileThatCannotBeOpenedLeavesTheReport) {
    session_.basin.Work_File = user_ / "missing.mdb";
    expect_each_refused("The current database is missing variables and/or parameters needed to run");
    expect_report_as_before();
}

}  // namespace
}  // namespace nivora
