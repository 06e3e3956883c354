// How long a user waits for a climate evaluation: the batch program as a process, from
// start to end, with nine zones and a year.

#include "bench/bench_basin.h"
#include "bench/bench_program.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <array>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr const char* k_scenario = "Warmer";
constexpr int k_days = 366;

/// A basin file with a scenario that edits every day, in a folder of its own.
class ScenarioBasin {
public:
    explicit ScenarioBasin(int zones) {
        fs::create_directories(folder_);
        write_bench_basin(prepared_, zones, 2);
        BasinDatabase database{prepared_, Access::ReadWrite};
        const auto simulations = read_table<Simulation>(database, template_table(k_simulation_index));
        simulation_ = simulations.front().name;
        const DayCount first = simulations.front().start.value();
        const ScenarioIndexRow index{.simulation = simulation_,
                                     .scenario = k_scenario,
                                     .winter_end_date = static_cast<double>(first + k_days / 2),
                                     .creation_date = std::nullopt,
                                     .comments = std::nullopt};
        atomically_if(database, [&] {
            add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index), std::span{&index, 1});
            database.create_table(scenario_table(k_scenario));
            add_rows<ScenarioRow>(database, scenario_table(k_scenario),
                                  std::array{row(1, 0, 2.0F, first), row(2, 1, 1.1F, first)});
            return true;
        });
    }
    ScenarioBasin(const ScenarioBasin&) = delete;
    ScenarioBasin& operator=(const ScenarioBasin&) = delete;
    ~ScenarioBasin() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    /// A copy in which nothing was evaluated yet.
    [[nodiscard]] fs::path fresh() const {
        fs::copy_file(prepared_, folder_ / "basin.mdb", fs::copy_options::overwrite_existing);
        return folder_ / "basin.mdb";
    }
    [[nodiscard]] const std::string& simulation() const { return simulation_; }
    [[nodiscard]] fs::path printed() const { return folder_ / "printed.txt"; }

private:
    static ScenarioRow row(int variable, int action, float factor, DayCount first) {
        ScenarioRow row;
        row.variable = variable;
        row.start = first;
        row.end = first + k_days - 1;
        row.action = action;
        row.factor = factor;
        row.zones = 0;
        return row;
    }

    fs::path folder_ = fs::temp_directory_path() / ("nivora-climate-bench-" + std::to_string(getpid()));
    fs::path prepared_ = folder_ / "prepared.mdb";
    std::string simulation_;
};

void climate_process(benchmark::State& state) {
    const ScenarioBasin basin{static_cast<int>(state.range(0))};
    for (auto _ : state) {
        state.PauseTiming();
        const std::string file = basin.fresh().string();
        state.ResumeTiming();
        const int status = run_program(
            NIVORA_BATCH_PROGRAM,
            {"climate", file, "--simulation", basin.simulation(), "--scenario", k_scenario}, basin.printed());
        if (status == 0) continue;
        std::ifstream printed{basin.printed()};
        const std::string text{std::istreambuf_iterator<char>{printed}, {}};
        state.SkipWithError(("the program ended with " + std::to_string(status) + ": " + text).c_str());
        return;
    }
}
BENCHMARK(climate_process)->Arg(1)->Arg(9)->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora
