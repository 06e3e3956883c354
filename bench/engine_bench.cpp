// How long the stages of a run take in memory, and a whole run with its file.

#include "bench/bench_basin.h"
#include "engine/flow_run.h"
#include "engine/run_statistics.h"
#include "engine/runoff_custom_lag.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace nivora {
namespace {

/// The number of zones and days of a benchmark, and everything that the stages need.
struct Case {
    explicit Case(const benchmark::State& state)
        : zones(static_cast<int>(state.range(0))),
          days(static_cast<int>(state.range(1))),
          basin(bench_basin(zones, days)),
          run(bench_run(days)),
          inputs(basin_inputs(basin)),
          results(bench_results(zones, days)),
          rows(run_rows(results, run.RunStart, run.RunEnd)) {}

    int zones;
    int days;
    BasinState basin;
    RunState run;
    BasinInputs inputs;
    SimResults results;
    RunRows rows;
    ScriptedDialogs dialogs;
};

void per_zone_day(benchmark::State& state, const Case& basin) {
    const double rows = static_cast<double>(basin.zones) * basin.days;
    state.counters["per_zone_day"] =
        benchmark::Counter(rows * static_cast<double>(state.iterations()),
                           benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
}

void all_stages(benchmark::State& state) {
    Case basin{state};
    for (auto _ : state) run_stages(basin.results, basin.basin, basin.run, basin.dialogs);
    per_zone_day(state, basin);
}

void zone_inputs(benchmark::State& state) {
    Case basin{state};
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Zone_Inputs(basin.results, basin.rows, basin.inputs, basin.run, basin.dialogs));
    }
    per_zone_day(state, basin);
}

void snow_melt(benchmark::State& state) {
    Case basin{state};
    run_stages(basin.results, basin.basin, basin.run, basin.dialogs);
    for (auto _ : state) Snow_Melt(basin.results, basin.rows, basin.inputs, basin.run, basin.dialogs);
    per_zone_day(state, basin);
}

void runoff(benchmark::State& state) {
    Case basin{state};
    run_stages(basin.results, basin.basin, basin.run, basin.dialogs);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Runoff_Simulation(basin.results, basin.rows, basin.inputs, basin.run, basin.dialogs));
    }
    per_zone_day(state, basin);
}

void runoff_custom_lag(benchmark::State& state) {
    Case basin{state};
    basin.run.LagDistribution = {3.0F, 0.5F, 0.3F, 0.2F};
    run_stages(basin.results, basin.basin, basin.run, basin.dialogs);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            Runoff_Custom_Lag(basin.results, basin.rows, basin.inputs, basin.run, basin.dialogs));
    }
    per_zone_day(state, basin);
}

/// The discharge alone, as studies compute it.
void flow_alone(benchmark::State& state) {
    Case basin{state};
    FlowRun flow{basin.inputs, basin.run, static_cast<std::size_t>(basin.days)};
    const FlowColumns columns = flow_columns(basin.results);
    for (auto _ : state) {
        if (!flow.compute(columns)) state.SkipWithError("the inputs are not plain");
        benchmark::DoNotOptimize(flow.computed().data());
    }
    per_zone_day(state, basin);
}

void statistics(benchmark::State& state) {
    Case basin{state};
    run_stages(basin.results, basin.basin, basin.run, basin.dialogs);
    for (auto _ : state) {
        benchmark::DoNotOptimize(Run_Statistics(basin.results, basin.rows, basin.run, basin.dialogs));
    }
    per_zone_day(state, basin);
}

/// A basin file, written once for all repetitions.
std::filesystem::path basin_file(int zones, int years) {
    auto path = std::filesystem::temp_directory_path() /
                ("nivora-bench-" + std::to_string(zones) + "-" + std::to_string(years) + ".mdb");
    write_bench_basin(path, zones, years);
    return path;
}

/// Opens the basin, runs its last year and stores the results, as the command `run` does.
void run_with_file(benchmark::State& state) {
    const auto path = basin_file(static_cast<int>(state.range(0)), static_cast<int>(state.range(1)));
    for (auto _ : state) {
        BasinState basin;
        RunState run;
        ScriptedDialogs dialogs;
        {
            BasinDatabase database{path, Access::ReadOnly};
            read_basin(database, basin);
        }
        basin.Work_File = path;
        select_simulation(basin, 0);
        // Not the discharge of the day before the run, so the run asks about it.
        basin.current_simulation()->initial_runoff = 5.0F;
        dialogs.then(Answer::Ok);
        choose_simulation(run);
        if (!start_run({basin, run, dialogs}, 1).completed) state.SkipWithError("the run did not complete");
    }
    std::filesystem::remove(path);
}

void shapes(benchmark::internal::Benchmark* benchmark) {
    benchmark->Args({16, 366})->ArgNames({"zones", "days"});
}

void scaling(benchmark::internal::Benchmark* benchmark) {
    for (const int zones : {1, 4, 16}) {
        for (const int factor : {1, 10, 100}) benchmark->Args({zones, 366 * factor});
    }
    benchmark->ArgNames({"zones", "days"});
}

BENCHMARK(all_stages)->Apply(scaling);
BENCHMARK(zone_inputs)->Apply(shapes);
BENCHMARK(snow_melt)->Apply(shapes);
BENCHMARK(runoff)->Apply(shapes);
BENCHMARK(runoff_custom_lag)->Apply(shapes);
BENCHMARK(flow_alone)->Apply(scaling);
BENCHMARK(statistics)->Apply(shapes);
BENCHMARK(run_with_file)
    ->Args({16, 1})
    ->Args({16, 50})
    ->ArgNames({"zones", "years"})
    ->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora
