// How many runs of a study a second makes: two free ranges, the discharge alone, and one measure; and how
// long the six steps of a climate evaluation take in memory.

#include "bench/bench_basin.h"
#include "search/study_problem.h"
#include "store/basin_store.h"
#include "studies/response.h"
#include "studies/study_pool.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <memory>
#include <string>
#include <variant>

namespace nivora {
namespace {

constexpr int k_zones = 16;
constexpr int k_days = 366;
constexpr std::size_t k_runs = 2000;

std::shared_ptr<const StudyBasin> study_basin() {
    auto study = std::make_shared<StudyBasin>();
    study->basin = bench_basin(k_zones, k_days);
    study->run = bench_run(k_days);
    study->inputs = basin_inputs(study->basin);
    study->table = bench_results(k_zones, k_days);
    study->rows = run_rows(study->table, study->run.RunStart, study->run.RunEnd);
    for (std::uint32_t row = 0; row < k_days; ++row) {
        study->flow_rows.push_back(row);
        study->measured.dates.push_back(study->table.Date[row]);
        study->measured.measured.push_back(5.0 + as_double(study->table.ActualQ[row]) + row % 7);
    }
    return study;
}

StudyProblem study_problem() {
    StudyCase one{.name = "bench", .basin = study_basin(), .ranges = {}, .fit = {}, .check = {}};
    one.fit = Period{one.basin->run.RunStart, one.basin->run.RunEnd};
    for (const char* text :
         {"Degree Day Factors:multiply:0.7..1.4:All", "Critical Temperature:add:-1..1:All"})
        one.ranges.push_back(std::get<FreeRange>(read_free_range(text, one.basin->inputs)));
    return {{one}, {find_objective("KGE")}};
}

/// @param state the number of threads
void study_runs(benchmark::State& state) {
    const StudyProblem problem = study_problem();
    StudyPool pool{static_cast<unsigned>(state.range(0))};
    std::vector<StudyWorker> workers;
    for (unsigned thread = 0; thread < pool.threads(); ++thread) workers.emplace_back(problem);
    std::vector<double> values(k_runs);
    for (auto _ : state) {
        pool.work(k_runs, [&](unsigned thread, std::size_t index) {
            const double share = static_cast<double>(index) / static_cast<double>(k_runs);
            const std::vector<double> point{share, 1.0 - share};
            if (!workers[thread].run(problem.numbers_at(point))) return;
            values[index] = workers[thread].values(problem.fit_days()).front().value_or(0.0);
        });
        benchmark::DoNotOptimize(values.data());
    }
    state.counters["runs"] = benchmark::Counter(
        static_cast<double>(k_runs) * static_cast<double>(state.iterations()), benchmark::Counter::kIsRate);
}

/// A basin as a study reads it from a file; nothing if it cannot run.
std::shared_ptr<const StudyBasin> read_study(int zones) {
    const std::filesystem::path file =
        std::filesystem::temp_directory_path() / ("nivora-study-bench-" + std::to_string(getpid()));
    write_bench_basin(file, zones, 2);
    std::shared_ptr<const StudyBasin> study;
    {
        BasinDatabase database{file, Access::ReadOnly};
        BasinState basin;
        basin.Basin_File = file;
        basin.Work_File = file;
        read_basin(database, basin);
        select_simulation(basin, 0);
        RunRequest request;
        request.RunKind = k_year_round_simulation;
        const auto read = read_study_basin(database, basin, request);
        if (const auto* found = std::get_if<std::shared_ptr<const StudyBasin>>(&read)) study = *found;
    }
    std::filesystem::remove(file);
    return study;
}

/// One changed climate after the other, as a response evaluates them on one thread.
void climate_steps_in_memory(benchmark::State& state) {
    const auto study = read_study(static_cast<int>(state.range(0)));
    if (!study) {
        state.SkipWithError("the basin can't be read");
        return;
    }
    const DayCount winter_end = study->run.RunStart + k_days / 2;
    if (const std::string problem = winter_end_problem(*study, winter_end); !problem.empty()) {
        state.SkipWithError(problem.c_str());
        return;
    }
    ResponseEvaluator evaluator{study, winter_end};
    float degrees = 0.0F;
    for (auto _ : state) {
        degrees = degrees < 4.0F ? degrees + 0.25F : 0.25F;
        const ClimateResponse response = evaluator.evaluate({degrees, 1.1F});
        if (response.done) continue;
        state.SkipWithError(response.problem.c_str());
        return;
    }
}

BENCHMARK(climate_steps_in_memory)->Arg(1)->Arg(9)->ArgName("zones")->Unit(benchmark::kMicrosecond);
BENCHMARK(study_runs)->Arg(1)->Arg(2)->ArgName("threads")->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora
