// How long a record of 50 years, 16 zones and seven fields takes from a CSV file into a basin.

#include "prep/table_load.h"

#include "base/calendar.h"
#include "store/table_io.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>

#include <unistd.h>

#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>
#include <system_error>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr int k_zones = 16;
constexpr int k_years = 50;
constexpr DayCount k_days = 365 * k_years + k_years / 4;

/// The file as `export` writes it, zone by zone.
std::string long_file() {
    std::string text = "Zone,Date,Runoff,Tmax,Tmin,Tavg,Precip,SCA,NetRadiation\n";
    const DayCount first = *day_count({1950, 10, 1});
    for (int zone = 1; zone <= k_zones; ++zone) {
        for (DayCount day = 0; day < k_days; ++day) {
            const double x = static_cast<double>((day * 7919 + zone * 104729) % 1000);
            text += fmt::format("{},{},{:.3f},{:.2f},{:.2f},{:.2f},{:.3f},{},{:.1f}\n", zone,
                                iso_date_text(first + day), x / 7.0, x / 31.0 - 10.0, x / 31.0 - 20.0,
                                x / 31.0 - 15.0, x / 900.0, x / 1000.0, x / 3.0);
        }
    }
    return text;
}

/// A blank basin of 16 zones in a file that is removed at the end.
class LoadedBasin {
public:
    LoadedBasin() {
        fs::remove(file_);
        BasinDatabase::create_template(file_);
        database_.emplace(file_, Access::ReadWrite);
        BasinDescription basin = read_basin_description(*database_);
        basin.zones = k_zones;
        basin.units = Units::Metric;
        write_basin_description(*database_, basin);
    }
    LoadedBasin(const LoadedBasin&) = delete;
    LoadedBasin& operator=(const LoadedBasin&) = delete;
    ~LoadedBasin() {
        database_.reset();
        std::error_code ignored;
        fs::remove(file_, ignored);
    }

    [[nodiscard]] BasinDatabase& database() { return *database_; }

private:
    fs::path file_ = fs::temp_directory_path() / fmt::format("nivora-load-bench-{}.mdb", ::getpid());
    std::optional<BasinDatabase> database_;
};

/// Refuses a result that is not the whole file.
void finish_round(benchmark::State& state, const LoadResult& result, std::int64_t expected) {
    if (result.refused != 0 || expected != k_zones * k_days) state.SkipWithError("rows are missing");
}

void load_into_blank_basin(benchmark::State& state) {
    const std::string text = long_file();
    for (auto _ : state) {
        state.PauseTiming();
        {
            LoadedBasin basin;
            state.ResumeTiming();
            const LoadResult result =
                load_table(basin.database(), bytes_of_text(text), {.table = k_physical_data}, true);
            state.PauseTiming();
            finish_round(state, result, result.added);
        }
        state.ResumeTiming();
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(load_into_blank_basin)->Unit(benchmark::kMillisecond);

void load_what_is_there(benchmark::State& state) {
    const std::string text = long_file();
    LoadedBasin basin;
    static_cast<void>(load_table(basin.database(), bytes_of_text(text), {.table = k_physical_data}, true));
    for (auto _ : state) {
        const LoadResult result =
            load_table(basin.database(), bytes_of_text(text), {.table = k_physical_data}, true);
        finish_round(state, result, result.equal);
    }
    state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(text.size()));
}
BENCHMARK(load_what_is_there)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace nivora
