// How long a PDF of all nine reports for 16 zones and 366 days takes: making the
// reports, laying them out and writing the file.

#include "bench/bench_basin.h"
#include "engine/results_store.h"
#include "paint/paint_pages.h"
#include "reports/report_generator.h"
#include "reports/report_pages.h"
#include "store/table_io.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <unistd.h>

#include <QGuiApplication>
#include <filesystem>
#include <fstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr int k_zones = 16;
constexpr int k_days = 366;

/// A basin file with the results of a climate evaluation, and its report.
class EvaluatedBasin {
public:
    EvaluatedBasin() : basin_(bench_basin(k_zones, k_days)), run_(bench_run(k_days)) {
        fs::create_directories(folder_);
        write_bench_basin(folder_ / "basin.mdb", k_zones, 2);
        BasinDatabase database{folder_ / "basin.mdb", Access::ReadWrite};
        basin_.Basin_File = folder_ / "basin.mdb";
        basin_.basin_name = "Benchmark basin (made up)";
        basin_.simulations = read_table<Simulation>(database, template_table(k_simulation_index));
        select_simulation(basin_, 0);
        basin_.Output_Valid = true;
        run_.LastRunSimulation = basin_.simulations[0].name;
        run_.ClimateStep = 6;
        run_.RunTitle = "Year round Simulation";
        store_results(database);
        write_climate_report();
    }
    EvaluatedBasin(const EvaluatedBasin&) = delete;
    EvaluatedBasin& operator=(const EvaluatedBasin&) = delete;
    ~EvaluatedBasin() {
        std::error_code ignored;
        fs::remove_all(folder_, ignored);
    }

    [[nodiscard]] std::string reports() const {
        BasinDatabase database{folder_ / "basin.mdb", Access::ReadOnly};
        const ReportSources sources{database, basin_, run_, 46000.5};
        const RunFigures figures;
        const ReportRequest made =
            make_reports(ReportGenerator{sources, figures, folder_ / "NVR_DfGN.out"}, k_all_reports);
        return made.made == k_reports ? made.text : std::string{};
    }
    [[nodiscard]] fs::path pdf() const { return folder_ / "reports.pdf"; }

private:
    void store_results(BasinDatabase& database) {
        SimResults results = bench_results(k_zones, k_days);
        const DayCount shift = basin_.simulations[0].start.value() - run_.RunStart;
        for (DayCount& date : results.Date) date += shift;
        run_.RunStart += shift;
        run_.RunEnd += shift;
        ResultsReplacement replacement{database};
        replacement.commit(results);
    }
    void write_climate_report() const {
        std::ofstream file{folder_ / "NVR_DfGN.out", std::ios::binary};
        for (int line = 1; line <= 400; ++line)
            file << "Winter - Total Zonal Input [i], line " << line << "\r\n";
    }

    fs::path folder_ = fs::temp_directory_path() / fmt::format("nivora-pdf-bench-{}", getpid());
    BasinState basin_;
    RunState run_;
};

std::optional<Message> write_pages(const EvaluatedBasin& basin, const std::string& text) {
    return write_pdf(basin.pdf(), {}, [&](const PagedDevice& device) -> std::variant<PrintedJob, Message> {
        return lay_out_report(device, {.text = text, .name = "Reports"});
    });
}

void reports_as_pdf(benchmark::State& state) {
    const EvaluatedBasin basin;
    for (auto _ : state) {
        const std::string text = basin.reports();
        if (text.empty() || write_pages(basin, text)) state.SkipWithError("the reports were not written");
    }
}

void pages_of_many_lines(benchmark::State& state) {
    const EvaluatedBasin basin;
    std::string text;
    for (int line = 1; line <= 50'000; ++line)
        text += fmt::format("{:>8}  a line of a very long report\r\n", line);
    for (auto _ : state) {
        if (write_pages(basin, text)) state.SkipWithError("the report was not written");
    }
}

BENCHMARK(reports_as_pdf)->Unit(benchmark::kMillisecond);
BENCHMARK(pages_of_many_lines)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora

int main(int argc, char** argv) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
