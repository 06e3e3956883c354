// The model and a run with its file beside what no program could leave out: a loop over the same arithmetic
// without checks, and the engine's own calls for the same rows. They take turns.

#include "bench/bench_basin.h"
#include "bench/bench_program.h"
#include "bench/own_calls.h"
#include "bench/turns.h"
#include "engine/results_store.h"
#include "engine/run_driver.h"
#include "store/table_io.h"

#include <fmt/format.h>

#include <unistd.h>

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <vector>

namespace {

using namespace nivora;
namespace fs = std::filesystem;

constexpr int k_zones = 16;
constexpr int k_days = 366;
constexpr int k_turns = 15;

/// Degree days, rain, new snow, melt and input of each zone and day, and the recession of the basin, over the
/// same columns as the model, in plain Singles: no rounding rules, no options, no checks.
double raw_loop(SimResults& t, std::vector<double>& input) {
    const auto days = static_cast<int>(input.size());
    std::fill(input.begin(), input.end(), 0.0);
    for (int zone = 0; zone < k_zones; ++zone) {
        const float lapse_steps = 6.0F - 1.2F * static_cast<float>(zone + 1);
        const double area = (31.0 + zone) * 0.115;
        float store = 0.0F;
        float sum = 0.0F;
        for (int day = 0; day < days; ++day) {
            const auto row = static_cast<std::size_t>(zone * days + day);
            const auto first = static_cast<std::size_t>(day);
            const float degree_days = std::max(0.0F, t.TAvg[first] + lapse_steps * t.LR[first]);
            const bool rains = degree_days >= t.Tcrit[first];
            const float rain = rains ? t.Precip[first] : 0.0F;
            store += rains ? 0.0F : t.Precip[first];
            const float potential = degree_days * t.AN[row];
            const float new_melt = std::min(potential, store);
            store -= new_melt;
            sum += potential;
            t.ZoneDD[row] = degree_days;
            t.Cpr[row] = rain;
            t.aT[row] = potential;
            t.SumAT[row] = sum;
            t.SnowOnStore[row] = store;
            t.NewMelt[row] = new_melt;
            t.M1S[row] = new_melt * (1.0F - t.SCA[row]);
            t.ZonalMelt[row] = potential * t.SCA[row];
            t.MDCincl[row] = sum;
            t.MDCexcl[row] = sum - new_melt;
            input[first] += area * static_cast<double>(t.CR[first] * (t.M1S[row] + rain) +
                                                       t.CS[first] * t.ZonalMelt[row]);
        }
    }
    double q = 5.0;
    for (std::size_t day = 1; day < input.size(); ++day) {
        const double k = t.Xcoeff[day] * std::pow(q, -t.YCoeff[day]);
        q = q * k + 0.5 * (input[day] + input[day - 1]) * (1.0 - k);
        t.DailyQ[day] = q;
    }
    return q;
}

/// @param times how often the stages run in a turn
void compare_engine(int days, int times) {
    BasinState basin = bench_basin(k_zones, days);
    RunState run = bench_run(days);
    SimResults results = bench_results(k_zones, days);
    SimResults raw = results;
    std::vector<double> input(static_cast<std::size_t>(days));
    ScriptedDialogs dialogs;
    volatile double kept = 0.0;
    const Turns turns = take_turns(
        2 * k_turns,
        [&] {
            return seconds_of([&] {
                for (int i = 0; i < times; ++i) run_stages(results, basin, run, dialogs);
            });
        },
        [&] {
            return seconds_of([&] {
                for (int i = 0; i < times; ++i) kept = kept + raw_loop(raw, input);
            });
        });
    tell_turns(fmt::format("model, 16 x {} ({} times), beside a plain loop", days, times), turns,
               std::nullopt);
}

/// Opens the basin, runs its last year and stores the results, as the command `run` does.
void run_once(const fs::path& file) {
    BasinState basin;
    RunState run;
    ScriptedDialogs dialogs;
    {
        BasinDatabase database{file, Access::ReadOnly};
        read_basin(database, basin);
    }
    basin.Work_File = file;
    select_simulation(basin, 0);
    basin.current_simulation()->initial_runoff = 5.0F;
    dialogs.then(Answer::Ok);
    choose_simulation(run);
    if (!start_run({basin, run, dialogs}, 1).completed) fmt::print("the run did not complete\n");
}

/// How often a call flushes a file or a folder.
template <typename Work>
int flushes_of(Work work) {
    const int before = flushes_of_this_process();
    work();
    return flushes_of_this_process() - before;
}

/// A run of the last year in a basin of so many years, in the process and by the batch program.
void compare_runs(const fs::path& folder, int years) {
    const fs::path ours = folder / "ours.mdb";
    const fs::path theirs = folder / "theirs.mdb";
    fs::remove(ours);
    fs::remove(theirs);
    write_bench_basin(ours, k_zones, years);
    fs::copy_file(ours, theirs);
    run_once(ours);
    const std::vector<double> results = stored_results(ours);
    replace_results_by_own_calls(theirs, results);  // both tables exist from here on
    const int flushed_by_ours = flushes_of([&] { run_once(ours); });
    const int flushed_by_floor = flushes_of([&] { replace_results_by_own_calls(theirs, results); });
    fmt::print("flushes of a run in a file of {} years: ours {}, floor {}\n", years, flushed_by_ours,
               flushed_by_floor);
    const auto floor = [&] { return seconds_of([&] { replace_results_by_own_calls(theirs, results); }); };
    tell_turns(fmt::format("run, 16 x 366 of {} years, beside the engine's own calls", years),
               take_turns(
                   k_turns, [&] { return seconds_of([&] { run_once(ours); }); }, floor),
               1.15);
    const auto program = [&] {
        const int status =
            run_program(NIVORA_BATCH_PROGRAM, {"run", ours.string(), "--simulation", "last year"},
                        folder / "printed.txt");
        if (status != 0) fmt::print("nivora-batch run ended with {}\n", status);
    };
    tell_turns(fmt::format("nivora-batch run, 16 x 366 of {} years, beside them", years),
               take_turns(
                   k_turns, [&] { return seconds_of(program); }, floor),
               1.3);
}

}  // namespace

int main() {
    const fs::path folder = fs::temp_directory_path() / fmt::format("nivora-floor-bench-{}", getpid());
    fs::create_directories(folder);
    fmt::print("{:58} {:>25}   {:>25}   {:>5}\n", "ms", "least: ours floor ratio", "median: ours floor ratio",
               "goal");
    // As many zone-days each, so that the lines compare a year with ten and with a hundred.
    for (const int years : {1, 10, 100}) compare_engine(k_days * years, 100 / years);
    for (const int years : {1, 50}) compare_runs(folder, years);
    std::error_code ignored;
    fs::remove_all(folder, ignored);
    return 0;
}
