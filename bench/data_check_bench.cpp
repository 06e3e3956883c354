// How long a look through the daily variables of a large basin takes, and how much room its findings need:
// good data, and data of which every second day lacks values.

#include "bench/bench_basin.h"
#include "session/data_check_setting.h"
#include "store/database.h"

#include <benchmark/benchmark.h>

namespace nivora {
namespace {

constexpr int k_zones = 16;
constexpr int k_years = 50;

/// The basin, made for a benchmark and removed after it.
class DailyBasin {
public:
    explicit DailyBasin(bool poor) {
        write_bench_basin(path_, k_zones, k_years);
        BasinDatabase database{path_, Access::ReadWrite};
        if (poor)
            database.execute(
                "UPDATE PhysicalData SET Precip = NULL, Tavg = NULL, SCA = NULL WHERE Date % 2 = 0");
        read_basin(database, basin_);
    }
    DailyBasin(const DailyBasin&) = delete;
    DailyBasin& operator=(const DailyBasin&) = delete;
    ~DailyBasin() {
        std::error_code ignored;
        std::filesystem::remove(path_, ignored);
    }

    [[nodiscard]] DataCheck look() const {
        BasinDatabase database{path_, Access::ReadOnly};
        return check_daily_data(database, data_check_setting(basin_));
    }

private:
    std::filesystem::path path_ = std::filesystem::temp_directory_path() / "nivora-bench-check.mdb";
    BasinState basin_;
};

void BM_CheckDailyData(benchmark::State& state) {
    const DailyBasin basin{state.range(0) != 0};
    std::size_t findings = 0;
    for (auto _ : state) findings = basin.look().findings.size();
    state.counters["findings"] = static_cast<double>(findings);
    state.counters["bytes"] = static_cast<double>(findings * sizeof(DataFinding));
    state.SetLabel(state.range(0) != 0 ? "every second day lacks values" : "good data");
}
BENCHMARK(BM_CheckDailyData)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

/// The sentences of the findings that a list shows.
void BM_TellFindings(benchmark::State& state) {
    const DailyBasin basin{true};
    const DataCheck check = basin.look();
    for (auto _ : state) {
        for (std::size_t i = 0; i < k_most_findings; ++i)
            benchmark::DoNotOptimize(finding_text(check.findings.at(i)));
    }
}
BENCHMARK(BM_TellFindings)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora
