#include "tests/climate/climate_run_fixture.h"

#include <SQLiteCpp/Database.h>

namespace nivora {
namespace {

/// Steps while another program holds the basin file.
class ClimateStoreTest : public ClimateRunTest {
protected:
    static constexpr const char* k_conflict =
        "Conflict while accessing the 'SimResults' table.  Make sure you close the 'Simulation Results' "
        "window before proceeding";

    /// Another program with a write transaction: nobody else can start one.
    class Writer {
    public:
        explicit Writer(const std::filesystem::path& file) : sql_(path_text(file), SQLite::OPEN_READWRITE) {
            sql_.exec("BEGIN IMMEDIATE");
        }

    private:
        SQLite::Database sql_;
    };

    /// Another program with a read transaction: others can start to write but not commit.
    class Reader {
    public:
        explicit Reader(const std::filesystem::path& file) : sql_(path_text(file), SQLite::OPEN_READONLY) {
            sql_.exec("BEGIN");
            static_cast<void>(sql_.execAndGet("SELECT count(*) FROM SimulationIndex"));
        }

    private:
        SQLite::Database sql_;
    };

    /// A finished evaluation whose window was closed, and a new one about to start.
    void open_after_an_evaluation() {
        open_six_days();
        run_to(6);
        end_climate(context(), false);
        begin_climate(context());
        climate.scenario = k_scenario;
        basin.Input_Changed = false;
        basin.Basin_Changed = false;
        basin.Output_Valid = false;
    }

    /// The step was started, but its results did not reach the file.
    void expect_started_and_suspended() {
        ASSERT_EQ(dialogs.messages().size(), 2U);
        expect_stop(dialogs.messages()[0], k_conflict, k_program_title);
        EXPECT_TRUE(basin.Input_Changed);
        EXPECT_TRUE(basin.Basin_Changed);
        EXPECT_FALSE(basin.Output_Valid);
        EXPECT_FALSE(run.results_enabled);
        EXPECT_EQ(run.LastRunSimulation, "");
        EXPECT_EQ(climate.steps_done, 0);
        EXPECT_EQ(run.ClimateStep, 1);
    }
};

TEST_F(ClimateStoreTest, AStepOneWhoseTableCannotBeMadeRunsOnTheOldOneAndIsSuspended) {
    open_after_an_evaluation();
    change("DROP TABLE Warmer");  // not reported: building the table fails before the scenario is applied
    const SimResults before = results();
    {
        const Writer other{file};
        suspended(1);
    }
    expect_started_and_suspended();
    EXPECT_EQ(run.FinalQ[1], 2.5F);
    EXPECT_TRUE(climate.statistics[1]);
    EXPECT_EQ(differing_columns(before, results()), std::vector<std::string>{});
}

TEST_F(ClimateStoreTest, AStepOneWhoseTableCannotBeStoredIsSuspendedAndCanBeRepeated) {
    open_after_an_evaluation();
    const SimResults before = results();
    {
        const Reader other{file};
        suspended(1);
    }
    expect_started_and_suspended();
    EXPECT_EQ(differing_columns(before, results()), std::vector<std::string>{});
    run_to(1);
    EXPECT_EQ(climate.steps_done, 1);
    const SimResults table = results();
    EXPECT_THAT(table.AZMwork, testing::Each(testing::IsNan()));  // a new table
}

TEST_F(ClimateStoreTest, ALaterStepWhoseTableCannotBeStoredIsSuspendedAndCanBeRepeated) {
    open_six_days();
    run_to(1);
    const SimResults before = results();
    {
        const Writer other{file};
        suspended(2);
    }
    ASSERT_EQ(dialogs.messages().size(), 2U);
    expect_stop(dialogs.messages()[0], k_conflict, k_program_title);
    EXPECT_EQ(climate.steps_done, 1);
    EXPECT_FALSE(run.results_enabled);
    EXPECT_EQ(run.LastRunSimulation, "");
    EXPECT_EQ(differing_columns(before, results()), std::vector<std::string>{});
    run_to(2, 2);
    EXPECT_EQ(run.FinalQ[2], 77.5F);
}

}  // namespace
}  // namespace nivora
