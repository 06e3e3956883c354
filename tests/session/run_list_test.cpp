// The list of the last runs: its file, its bounds, and runs side by side.
#include "session/run_list.h"

#include "base/scripted_dialogs.h"
#include "session/listed_runs.h"
#include "session/simulation_list.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Optional;
using testing::SizeIs;
using testing::StartsWith;

ListedRun run_named(const std::string& simulation, const std::string& basin = "/data/alder.mdb") {
    return {.time = 45000.25,
            .basin = basin,
            .simulation = simulation,
            .kind = "Year round Simulation",
            .completed = true,
            .start = 35339,
            .end = 35703,
            .initial_runoff = 2.5F,
            .statistics = {100.5F, 3.25F, 90.25F, 2.75F, 10.2F, 0.9F}};
}

ListedRun full_run() {
    ListedRun run = run_named("a\tb\\n \\ c\nd");
    run.renamed = "later";
    run.scenario = "warm";
    run.completed = false;
    run.units = Units::English;
    run.interval = 9;
    run.no_snow = true;
    run.lag = "0.5 0.5";
    run.statistics = {0.1F, std::nullopt, -3.0e38F, 0.0F, std::nullopt, -12.5F};
    return run;
}

std::vector<std::string> names(const std::vector<ListedRun>& runs) {
    std::vector<std::string> names;
    for (const ListedRun& run : runs) names.push_back(run.simulation);
    return names;
}

TEST(RunListText, IsReadAsItWasWritten) {
    const std::vector<ListedRun> runs{run_named("wet"), full_run()};
    EXPECT_EQ(read_run_list_text(run_list_text(runs)), runs);
    EXPECT_THAT(read_run_list_text(run_list_text({})), Optional(IsEmpty()));
}

TEST(RunListText, ThatLacksAnythingIsNoList) {
    const std::string text = run_list_text({run_named("wet"), full_run()});
    for (std::size_t size = 0; size < text.size(); ++size)
        EXPECT_EQ(read_run_list_text(text.substr(0, size)), std::nullopt) << size;
    const auto changed = [&](const std::string& from, const std::string& to) {
        std::string other = text;
        other.replace(other.find(from), from.size(), to);
        return read_run_list_text(other);
    };
    ASSERT_EQ(changed("35339", "35340")->front().start, 35340);
    EXPECT_EQ(changed("35339", "3533x"), std::nullopt);
    EXPECT_EQ(changed("35339", "9999999"), std::nullopt);
    EXPECT_EQ(changed("100.5", "1e99"), std::nullopt);
    EXPECT_EQ(changed("45000.25", "1e300"), std::nullopt);
    EXPECT_EQ(changed("end 2", "end 3"), std::nullopt);
    EXPECT_EQ(changed("runs 1", "runs 2"), std::nullopt);
    EXPECT_EQ(changed("wet\t", "wet\t\t"), std::nullopt);
    EXPECT_EQ(changed("wet\t", "wet"), std::nullopt);
}

TEST(RunListTest, KeepsItsRunsFromOneStartToTheNext) {
    const TemporaryFolder folder;
    const auto file = folder / "settings" / "runs.list";
    RunList first;
    first.keep_in(file);
    first.add(run_named("wet"));
    first.add(run_named("dry"));
    RunList second;
    second.keep_in(file);
    EXPECT_EQ(second.runs(), first.runs());
    EXPECT_THAT(names(second.runs()), ElementsAre("wet", "dry"));
    EXPECT_THAT(second.fault(), IsEmpty());
}

TEST(RunListTest, WithoutAFileIsKeptInMemory) {
    RunList list;
    list.add(run_named("wet"));
    EXPECT_THAT(list.runs(), SizeIs(1));
    EXPECT_THAT(list.fault(), IsEmpty());
}

TEST(RunListTest, KeepsTheLastRunsOfEachBasin) {
    RunList list;
    list.add(run_named("other", "/data/birch.mdb"));
    for (int number = 1; number <= 203; ++number) list.add(run_named(std::to_string(number)));
    const auto kept = list.runs_of("/data/alder.mdb");
    ASSERT_THAT(kept, SizeIs(200));
    EXPECT_EQ(kept.front().simulation, "4");
    EXPECT_EQ(kept.back().simulation, "203");
    EXPECT_THAT(names(list.runs_of("/data/birch.mdb")), ElementsAre("other"));
}

TEST(RunListTest, KeepsTheLastRunsOfAllBasins) {
    RunList list;
    for (int number = 1; number <= 2001; ++number)
        list.add(run_named("wet", "/data/" + std::to_string(number)));
    ASSERT_THAT(list.runs(), SizeIs(2000));
    EXPECT_EQ(list.runs().front().basin, "/data/2");
}

TEST(RunListTest, MovesADamagedFileAsideAndBeginsANewOne) {
    const TemporaryFolder folder;
    folder.write("runs.list", "Nivora list of runs 1\nwhat is this\nend 1\n");
    RunList list;
    list.keep_in(folder / "runs.list");
    EXPECT_THAT(list.runs(), IsEmpty());
    EXPECT_THAT(list.fault(), HasSubstr("It was kept as '" + (folder / "runs.list.damaged").string() + "'"));
    EXPECT_EQ(file_bytes(folder / "runs.list.damaged"), "Nivora list of runs 1\nwhat is this\nend 1\n");
    list.add(run_named("wet"));
    RunList next;
    next.keep_in(folder / "runs.list");
    EXPECT_THAT(names(next.runs()), ElementsAre("wet"));
    EXPECT_THAT(next.fault(), IsEmpty());
}

TEST(RunListTest, LeavesWhatIsNoFile) {
    const TemporaryFolder folder;
    std::filesystem::create_directory(folder / "runs.list");
    RunList list;
    list.keep_in(folder / "runs.list");
    EXPECT_THAT(list.fault(), StartsWith("The list of earlier runs can't be read."));
    list.add(run_named("wet"));
    EXPECT_THAT(list.runs(), SizeIs(1));
    EXPECT_TRUE(std::filesystem::is_directory(folder / "runs.list"));
}

TEST(RunListTest, ThatCantBeWrittenKeepsItsRuns) {
    const TemporaryFolder folder;
    folder.write("file", "");
    RunList list;
    list.keep_in(folder / "file" / "runs.list");
    list.add(run_named("wet"));
    EXPECT_THAT(list.runs(), SizeIs(1));
    EXPECT_THAT(list.fault(), StartsWith("The list of runs can't be written."));
}

TEST(RunListTest, NotesNewNamesOfSimulations) {
    RunList list;
    list.add(run_named("wet"));
    list.add(run_named("wet", "/data/birch.mdb"));
    list.add(run_named("dry"));
    list.rename("/data/alder.mdb", "WET", "moist");
    list.rename("/data/alder.mdb", "moist", "humid");
    EXPECT_EQ(list.runs()[0].simulation, "wet");
    EXPECT_EQ(list.runs()[0].renamed, "humid");
    EXPECT_EQ(list.runs()[1].renamed, "");
    EXPECT_EQ(list.runs()[2].renamed, "");
    list.rename("/data/alder.mdb", "humid", "wet");
    EXPECT_EQ(list.runs()[0].renamed, "") << "it has its own name again";
}

/// A basin with the simulations "wet" and "dry", the first one current.
class ListedRuns : public testing::Test {
protected:
    ListedRuns() {
        basin().New_Basin = false;
        basin().Basin_File = "/data/alder.mdb";
        basin().Units_Code = Units::Metric;
        for (const char* name : {"wet", "dry"}) {
            Simulation simulation;
            simulation.name = name;
            basin().simulations.push_back(simulation);
        }
        select_simulation(basin(), 0);
    }
    BasinState& basin() { return session_.basin; }
    std::string shown(const ListedRun& run) { return listed_simulation(run, basin()); }

    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
};

TEST_F(ListedRuns, TakeSettingsAndStatistics) {
    RunState& run = session_.run;
    basin().results_time = 45000.5;
    run.RunTitle = "Melt Season Forecast";
    run.UpdateInterval = 3;
    run.RunStart = 35339;
    run.RunEnd = 35340;
    run.InitialRunoff = 2.5F;
    run.LagDistribution = {2.0F, 0.25F, 0.75F};
    run.NoSnow = true;
    run.statistics = StatisticsReach::Volumes;
    run.MeasuredVolume = 100.5F;
    run.ComputedVolume = 90.25F;
    list_run(session_, false);
    ASSERT_THAT(session_.runs.runs(), SizeIs(1));
    const ListedRun& listed = session_.runs.runs().front();
    EXPECT_EQ(listed.time, 45000.5);
    EXPECT_EQ(listed.basin, "/data/alder.mdb");
    EXPECT_EQ(listed.simulation, "wet");
    EXPECT_EQ(listed.kind, "Melt Season Forecast");
    EXPECT_EQ(listed.statistics[0], 100.5F);
    EXPECT_EQ(listed.statistics[2], 90.25F);
    EXPECT_EQ(listed.statistics[5], std::nullopt) << "the statistics ended before R²";
    EXPECT_EQ(listed_settings(listed),
              "not completed; updated every 3 days; no snow; time lag 0.25 0.75; initial runoff 2.5");
}

TEST_F(ListedRuns, OfABasinWithoutAFileHaveNone) {
    basin().New_Basin = true;
    list_run(session_, true);
    EXPECT_EQ(session_.runs.runs().front().basin, "");
    EXPECT_EQ(listed_texts(session_.runs.runs().front(), basin()).back(), "(not saved)");
}

TEST_F(ListedRuns, TakeTheDischargesOfAnEvaluation) {
    session_.climate.scenario = "warm";
    session_.climate.statistics[6] = StepStatistics{.measured_volume = 100.0F,
                                                    .average_measured = 3.0F,
                                                    .computed_volume = 80.0F,
                                                    .average_computed = 2.0F,
                                                    .volume_difference = std::nullopt,
                                                    .r2 = std::nullopt};
    list_evaluation(session_);
    const ListedRun& listed = session_.runs.runs().front();
    EXPECT_EQ(listed.kind, "Climate Change");
    EXPECT_EQ(listed.scenario, "warm");
    EXPECT_THAT(listed.statistics, ElementsAre(Optional(100.0F), Optional(3.0F), Optional(80.0F),
                                               Optional(2.0F), std::nullopt, std::nullopt));
}

TEST_F(ListedRuns, TellWhatBecameOfTheirSimulation) {
    ListedRun run = run_named("wet");
    EXPECT_EQ(shown(run), "wet");
    run.renamed = "moist";
    EXPECT_EQ(shown(run), "wet") << "the new name was not saved";
    run.simulation = "gone";
    EXPECT_EQ(shown(run), "gone (no longer in the basin)");
    run.renamed = "dry";
    EXPECT_EQ(shown(run), "gone (now dry)");
    run.basin = "/data/birch.mdb";
    EXPECT_EQ(shown(run), "gone (later dry)");
    run.renamed = "";
    EXPECT_EQ(shown(run), "gone");
}

TEST_F(ListedRuns, HaveATextForEachHeader) {
    EXPECT_THAT(
        listed_texts(run_named("wet"), basin()),
        ElementsAre("03/15/2023 6:00:00 AM", "wet", "Year round Simulation", "", "10/01/1996", "09/30/1997",
                    "100.5", "90.25", "10.2", "0.9", "initial runoff 2.5", "Metric", "/data/alder.mdb"));
    EXPECT_EQ(listed_headers().size(), listed_texts(run_named("wet"), basin()).size());
}

TEST_F(ListedRuns, CompareInNumbers) {
    const ListedRun first = run_named("wet");
    ListedRun second = run_named("dry");
    second.statistics[2] = 95.5F;
    second.statistics[5] = std::nullopt;
    second.initial_runoff = 2.0F;
    const auto items = compare_runs(first, second, basin());
    const auto item = [&](const std::string& name) {
        const auto found = std::find_if(items.begin(), items.end(),
                                        [&](const ComparedItem& each) { return each.name == name; });
        return found == items.end() ? ComparedItem{} : *found;
    };
    EXPECT_EQ(item("Simulation"), (ComparedItem{"Simulation", "wet", "dry", "", true}));
    EXPECT_FALSE(item("Start").differs);
    // 95.5 - 90.25, exact in Singles
    EXPECT_EQ(item("Computed Runoff Volume (10^6 m³)"),
              (ComparedItem{"Computed Runoff Volume (10^6 m³)", "90.25", "95.5", "5.25", true}));
    EXPECT_EQ(item("Measured Runoff Volume (10^6 m³)").difference, "0");
    EXPECT_FALSE(item("Measured Runoff Volume (10^6 m³)").differs);
    EXPECT_EQ(item("Initial Runoff").difference, "-0.5");
    EXPECT_EQ(item("Coefficient of Determination (R²)"),
              (ComparedItem{"Coefficient of Determination (R²)", "0.9", "", "", true}));
}

TEST_F(ListedRuns, InOtherUnitsHaveNoDifferenceOfVolumes) {
    ListedRun second = run_named("wet");
    second.units = Units::English;
    second.statistics[4] = 11.2F;
    const auto items = compare_runs(run_named("wet"), second, basin());
    EXPECT_EQ(items[5].name, "Measured Runoff Volume");
    EXPECT_EQ(items[5].difference, "");
    EXPECT_EQ(items[9].name, "Volume Difference (%)");
    EXPECT_EQ(items[9].difference, "1");
}

}  // namespace
}  // namespace nivora
