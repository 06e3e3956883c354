// What a choice of the Run menu leaves in the state of the run.

#include "engine/run_driver.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>

#include <bit>
#include <sstream>

namespace nivora {
namespace {

using ::testing::ElementsAre;

/// The state as text; numbers as bits, since many are missing and a missing one equals nothing.
class StateText {
public:
    explicit StateText(const RunState& run) {
        add(run.RunKind, run.RunTitle, run.UpdateInterval, run.RunStart, run.RunEnd, run.ClimateStep);
        add(run.InitialRunoff, run.NoSnow, run.ScenarioName, run.LagDistribution, run.LastRunSimulation);
        add(run.MonthDays, run.LapseUnit, run.SnowStore, run.MeltSeasonStart, run.FinalQ, run.EndingStores);
        add(run.AvgMeasuredQ, run.MeasuredVolume, run.AvgComputedQ, run.ComputedVolume);
        add(run.VolumeDifference, run.CoefficientR2, run.former_r2, static_cast<int>(run.statistics));
        for (const RunNote& note : run.notes) add(note_summary(note));
        add(run.ClimateSums, run.WinterPrecip, run.results_enabled);
        for (const ZoneTotals& zone : run.zone_totals) {
            add(zone.first_day.value_or(0), zone.last_day.value_or(0), zone.precipitation, zone.rain);
            add(zone.zonal_melt, zone.new_snow_melt);
        }
    }
    [[nodiscard]] std::string text() const { return text_.str(); }

private:
    template <typename... Values>
    void add(const Values&... values) {
        (write(values), ...);
        text_ << '\n';
    }
    void write(const std::string& value) { text_ << '"' << value << "\" "; }
    void write(float value) { text_ << std::bit_cast<std::uint32_t>(value) << ' '; }
    template <typename Value>
    void write(const Value& value) {
        if constexpr (std::is_arithmetic_v<Value>) {
            text_ << value << ' ';
        } else {
            for (const auto& element : value) write(element);
        }
    }

    std::ostringstream text_;
};

std::string state_text(const RunState& run) { return StateText{run}.text(); }

/// Another program begins to read the file when a box with this title opens, so that nobody can write until
/// this ends.
class ReaderDuringQuestion : public ScriptedDialogs {
public:
    ReaderDuringQuestion(std::filesystem::path file, std::string title)
        : file_(std::move(file)), title_(std::move(title)) {}

    Answer message(const Message& message) override {
        if (message.title == title_) read();
        return ScriptedDialogs::message(message);
    }

private:
    void read() {
        reader_ = std::make_unique<SQLite::Database>(file_.string(), SQLite::OPEN_READONLY);
        reader_->exec("BEGIN");
        static_cast<void>(reader_->execAndGet("SELECT count(*) FROM SimResults"));
    }

    std::filesystem::path file_;
    std::string title_;
    std::unique_ptr<SQLite::Database> reader_;
};

/// A basin with the results of a forecast, updated every three days, that lack a day.
class RunChoices : public ::testing::Test {
protected:
    static constexpr RunChoice k_season_simulation{.forecast = false, .index = 0};
    static constexpr RunChoice k_season_forecast{.forecast = true, .index = 0};
    static constexpr RunChoice k_year_forecast{.forecast = true, .index = 1};

    RunChoices() {
        SmallBasin content{1, k_first, 5};
        content.parameters.erase(content.parameters.begin() + 2);
        content.write(path);
        basin = opened_basin(path);
        dialogs.then_text("3");
        EXPECT_TRUE(choose_and_start(k_year_forecast).completed);
        EXPECT_EQ(run.notes.size(), 1U);
        former = state_text(run);
        former_rows = rows_in_file();
        basin.Basin_Changed = false;
    }

    RunContext context() { return {basin, run, dialogs}; }
    RunOutcome choose_and_start(const RunChoice& choice) { return choose_and_start(context(), choice); }
    static RunOutcome choose_and_start(RunContext on, const RunChoice& choice) {
        return choose_and_run(on, choice, [&] { return start_run(on, choice.index); });
    }
    Simulation& simulation() { return *basin.current_simulation(); }

    std::vector<double> rows_in_file() {
        BasinDatabase database{path, Access::ReadOnly};
        return load_results(database).DailyQ;
    }

    /// Chooses a run that comes to nothing: the state, the marks and the table are those of the forecast.
    void expect_nothing_changed(const RunChoice& choice) { expect_nothing_changed(context(), choice); }
    void expect_nothing_changed(RunContext on, const RunChoice& choice) {
        const RunOutcome outcome = choose_and_start(on, choice);
        EXPECT_FALSE(outcome.results_rebuilt);
        EXPECT_FALSE(outcome.completed);
        EXPECT_EQ(outcome.statistics, StatisticsReach::Nothing);
        EXPECT_EQ(state_text(run), former);
        EXPECT_TRUE(basin.Output_Valid);
        EXPECT_FALSE(basin.Basin_Changed);
        EXPECT_EQ(rows_in_file(), former_rows);
    }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }

    TemporaryFolder folder;
    std::filesystem::path path = folder / "basin.mdb";
    BasinState basin;
    RunState run;
    ScriptedDialogs dialogs;
    std::string former;
    std::vector<double> former_rows;
};

TEST_F(RunChoices, ACompletedRunChangesTheState) {
    EXPECT_TRUE(choose_and_start(k_season_simulation).completed);
    EXPECT_EQ(run.RunKind, k_melt_season_simulation);
    EXPECT_EQ(run.RunTitle, "Melt Season Simulation");
    EXPECT_EQ(run.UpdateInterval, 0);
    EXPECT_NE(state_text(run), former);
}

TEST_F(RunChoices, AForecastWithoutAnIntervalLeavesTheState) {
    for (const std::optional<std::string>& answer : {std::optional<std::string>{}, {""}, {"0"}, {"10"}}) {
        SCOPED_TRACE(answer.value_or("cancelled"));
        dialogs.then_text(answer);
        expect_nothing_changed(k_season_forecast);
        EXPECT_EQ(dialogs.messages().back().message.title, "Invalid forecast frequency!");
    }
}

TEST_F(RunChoices, AMissingDateLeavesTheState) {
    simulation().end.reset();
    expect_nothing_changed(k_season_simulation);
    dialogs.then_text("4");
    expect_nothing_changed(k_season_forecast);
}

TEST_F(RunChoices, APeriodThatIsTooLongLeavesTheState) {
    simulation().end = *simulation().start + 366;
    expect_nothing_changed(k_season_simulation);
}

TEST_F(RunChoices, AnInitialRunoffBelowZeroLeavesTheState) {
    simulation().initial_runoff = -1.0F;
    expect_nothing_changed(k_season_simulation);
    dialogs.then_text("4");
    expect_nothing_changed(k_season_forecast);
}

TEST_F(RunChoices, APeriodWithoutDataLeavesTheState) {
    // February of the period has 29 days, which the run has noticed by then.
    simulation().start = date_of(2004, 1, 1);
    simulation().end = date_of(2004, 3, 1);
    expect_nothing_changed(k_season_simulation);
    EXPECT_EQ(run.MonthDays[2], 28);
}

TEST_F(RunChoices, AFileThatCannotBeOpenedLeavesTheState) {
    basin.Work_File = folder / "missing.mdb";
    expect_nothing_changed(k_season_simulation);
    EXPECT_EQ(dialogs.messages().front().message.text, "Can't open database.");
}

TEST_F(RunChoices, ATableThatCannotBeReplacedLeavesTheState) {
    simulation().initial_runoff = 20.0F;
    // Another program is about to write; reading is still possible.
    SQLite::Database other{path.string(), SQLite::OPEN_READWRITE};
    other.exec("BEGIN IMMEDIATE");
    expect_nothing_changed(k_season_simulation);
    EXPECT_THAT(dialogs.messages().front().message.text,
                ::testing::StartsWith("Conflict while accessing the 'SimResults' table."));
}

TEST_F(RunChoices, ATableThatCannotBeStoredAfterNoToTheLatitudeLeavesTheState) {
    basin.latitude_text.clear();
    ReaderDuringQuestion blocked{path, "Missing latitude"};
    blocked.then(Answer::No);
    expect_nothing_changed({basin, run, blocked}, k_season_simulation);
    ASSERT_EQ(blocked.messages().size(), 2U);
    EXPECT_THAT(blocked.messages().back().message.text,
                ::testing::StartsWith("Conflict while accessing the 'SimResults' table."));
}

TEST_F(RunChoices, ATableThatCannotBeStoredAfterTheWholeRunLeavesTheState) {
    basin.latitude_text.clear();
    ReaderDuringQuestion blocked{path, "Missing latitude"};
    blocked.then(Answer::Yes);
    expect_nothing_changed({basin, run, blocked}, k_season_simulation);
}

TEST_F(RunChoices, AFaultBeforeTheRunLeavesTheState) {
    const auto fault = [&]() -> RunOutcome {
        run.RunStart = 1;
        throw StoreError(StoreFault::Busy, "in use");
    };
    EXPECT_THROW(choose_and_run(context(), k_season_simulation, fault), StoreError);
    EXPECT_EQ(state_text(run), former);
}

// The old table is gone then, so that the state is that of the new one, which is not valid.

TEST_F(RunChoices, NoToTheLatitudeLeavesTheStateOfTheTableThatWasBuilt) {
    basin.latitude_text.clear();
    dialogs.then(Answer::No);

    const RunOutcome outcome = choose_and_start(k_season_simulation);

    EXPECT_TRUE(outcome.results_rebuilt);
    EXPECT_FALSE(outcome.completed);
    EXPECT_EQ(run.RunKind, k_melt_season_simulation);
    EXPECT_EQ(run.LastRunSimulation, "");
    EXPECT_EQ(run.statistics, StatisticsReach::Nothing);
    EXPECT_TRUE(run.notes.empty());
    EXPECT_FALSE(basin.Output_Valid);
    EXPECT_TRUE(basin.Basin_Changed);
}

TEST_F(RunChoices, CancelAtTheInitialRunoffLeavesTheStateOfTheEmptyTable) {
    simulation().initial_runoff = 100.0F;
    dialogs.then(Answer::Cancel);

    EXPECT_TRUE(choose_and_start(k_season_simulation).results_rebuilt);

    EXPECT_TRUE(rows_in_file().empty());
    EXPECT_EQ(run.InitialRunoff, 100.0F);
    EXPECT_EQ(run.LastRunSimulation, "");
    EXPECT_FALSE(run.results_enabled);
    EXPECT_FALSE(basin.Output_Valid);
}

TEST_F(RunChoices, ARunInMemoryLeavesItsFiguresAndOnlyReadsTheFile) {
    simulation().initial_runoff = 9.0F;
    RunState stored = run;
    ASSERT_TRUE(choose_and_start({basin, stored, dialogs}, k_season_simulation).completed);
    ASSERT_NE(state_text(stored), former);
    basin.Basin_Changed = false;
    basin.Input_Changed = true;
    BasinDatabase{path, Access::ReadWrite}.drop_table(k_sim_results);

    BasinDatabase database{path, Access::ReadOnly};
    run.RunKind = k_run_kind_simulation_chosen;
    run.UpdateInterval = 0;
    EXPECT_TRUE(run_without_storing(database, context(), 0));

    EXPECT_EQ(state_text(run), state_text(stored));
    EXPECT_FALSE(database.has_table(k_sim_results));
    EXPECT_FALSE(basin.Basin_Changed);
    EXPECT_TRUE(basin.Input_Changed);
}

TEST_F(RunChoices, ARunInMemoryEndsWhereARunDoes) {
    BasinDatabase database{path, Access::ReadOnly};
    simulation().initial_runoff = 100.0F;
    dialogs.then(Answer::Cancel);
    EXPECT_FALSE(run_without_storing(database, context(), 0));
    simulation().initial_runoff = -1.0F;
    EXPECT_FALSE(run_without_storing(database, context(), 0));
    simulation().initial_runoff = 10.0F;
    simulation().start = date_of(2004, 1, 1);
    simulation().end = date_of(2004, 3, 1);
    EXPECT_FALSE(run_without_storing(database, context(), 0));
    EXPECT_EQ(rows_in_file(), former_rows);
}

}  // namespace
}  // namespace nivora
