// How long the reports of a year take: their text alone, and the batch program as a process.

#include "base/durable_file.h"
#include "bench/bench_basin.h"
#include "bench/bench_program.h"
#include "reports/report_generator.h"
#include "reports/run_figures.h"

#include <benchmark/benchmark.h>

#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr int k_zones = 16;
constexpr double k_now = 46086.5;
constexpr int k_last_step = 6;

/// A basin whose last simulation was run, in a folder of its own, with a climate report beside it.
class ReportedBasin {
public:
    ReportedBasin() {
        fs::create_directories(folder_);
        write_bench_basin(file_, k_zones, 2);
        {
            BasinDatabase database{file_, Access::ReadOnly};
            read_basin(database, basin_);
        }
        basin_.Work_File = basin_.Basin_File = file_;
        select_simulation(basin_, 0);
        ScriptedDialogs dialogs;
        dialogs.then(Answer::Ok);
        choose_simulation(run_);
        completed_ = start_run({basin_, run_, dialogs}, 1).completed;
        std::ofstream climate_report{climate_report_, std::ios::binary};
        for (int line = 0; line < k_zones * 30; ++line)
            climate_report << "Winter - Total Zonal Input [i]\r\n";
    }
    ReportedBasin(const ReportedBasin&) = delete;
    ReportedBasin& operator=(const ReportedBasin&) = delete;
    ~ReportedBasin() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    [[nodiscard]] bool completed() const { return completed_; }
    [[nodiscard]] const fs::path& file() const { return file_; }
    [[nodiscard]] const BasinState& basin() const { return basin_; }
    [[nodiscard]] const RunState& run() const { return run_; }
    [[nodiscard]] const fs::path& climate_report() const { return climate_report_; }
    [[nodiscard]] fs::path in_folder(const char* name) const { return folder_ / name; }

private:
    fs::path folder_ = fs::temp_directory_path() / ("nivora-report-bench-" + std::to_string(getpid()));
    fs::path file_ = folder_ / "basin.mdb";
    fs::path climate_report_ = folder_ / "NVR_DfGN.out";
    BasinState basin_;
    RunState run_;
    bool completed_ = false;
};

/// All nine reports for 16 zones and 366 days, from the open basin into a text file.
void nine_reports(benchmark::State& state) {
    const ReportedBasin basin;
    RunState run = basin.run();
    run.ClimateStep = k_last_step;
    const RunFigures figures = run_figures(run);
    BasinDatabase database{basin.file(), Access::ReadOnly};
    for (auto _ : state) {
        const ReportSources sources{database, basin.basin(), run, k_now};
        const ReportRequest made =
            make_reports(ReportGenerator{sources, figures, basin.climate_report()}, k_all_reports);
        if (!basin.completed() || made.made != k_reports) state.SkipWithError("a report was not made");
        write_whole_file(basin.in_folder("NVRrpts.out"), made.text);
        state.counters["bytes"] = static_cast<double>(made.text.size());
    }
}
BENCHMARK(nine_reports)->UseRealTime()->Unit(benchmark::kMillisecond);

/// `nivora-batch report --reports all`, from its start to its end.
void report_process(benchmark::State& state, const char* file) {
    const ReportedBasin basin;
    const fs::path printed = basin.in_folder("printed.txt");
    for (auto _ : state) {
        const int status = run_program(
            NIVORA_BATCH_PROGRAM,
            {"report", path_text(basin.file()), "--simulation", basin.basin().Current_Sim_Name, "--kind",
             "year-round", "--reports", "all", "--out", path_text(basin.in_folder(file))},
            printed);
        if (status == 0) continue;
        std::ifstream output{printed};
        const std::string text{std::istreambuf_iterator<char>{output}, {}};
        state.SkipWithError(("the program ended with " + std::to_string(status) + ": " + text).c_str());
        return;
    }
}
BENCHMARK_CAPTURE(report_process, text, "NVRrpts.out")->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(report_process, pdf, "reports.pdf")->UseRealTime()->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora
