// Complete runs of the sample basin, compared bit by bit with stored ones.

#include "engine/results_store.h"
#include "tests/batch/batch_call.h"
#include "tests/support/golden.h"

namespace nivora {
namespace {

struct GoldenCase {
    const char* name;
    const char* record;  // file in data/samples, without its extension
    const char* initial_runoff;
    std::vector<std::string> import_options;
    std::vector<std::string> run_options;
};

void PrintTo(const GoldenCase& golden, std::ostream* out) { *out << golden.name; }

std::string shown(float value) { return shortest_text(value + 0.0F); }
std::string shown(double value) { return shortest_text(value + 0.0); }
std::string shown(std::int16_t value) { return std::to_string(value); }
std::string shown(DayCount value) { return iso_date_text(value); }

/// Columns with their checksums, then the hydrographs day by day, then all values of the 15th of each month.
std::string description(const SimResults& results) {
    std::string text = column_checksums(results);
    for (std::size_t row = 0; row < results.size(); ++row) {
        if (results.Zone[row] != 1) continue;
        text += fmt::format("{} measured {} input {} computed {}\n", iso_date_text(results.Date[row]),
                            shown(results.ActualQ[row]), shown(results.TotalMelt[row]),
                            shown(results.DailyQ[row]));
    }
    for (std::size_t row = 0; row < results.size(); ++row) {
        if (civil_date(results.Date[row]).day != 15) continue;
        std::string line;
        SimResults::visit(
            results, [&](const auto& column) { line += (line.empty() ? "" : ",") + shown(column[row]); });
        text += line + "\n";
    }
    return text;
}

class GoldenRun : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenRun, EqualsTheStoredOneToTheLastBit) {
    const GoldenCase& golden = GetParam();
    const TemporaryFolder folder;
    const std::string basin = path_text(folder.path() / "sample.mdb");
    std::vector<std::string> import{
        "import",
        std::string{NIVORA_SOURCE_DIR} + "/data/samples/" + golden.record + ".NVR",
        basin,
        "--name",
        "sample",
        "--latitude",
        "46.5",
        "--initial-runoff",
        golden.initial_runoff};
    import.insert(import.end(), golden.import_options.begin(), golden.import_options.end());
    printed(import);
    std::vector<std::string> run{"run", basin, "--simulation", "sample", "--json"};
    run.insert(run.end(), golden.run_options.begin(), golden.run_options.end());
    std::string computed = printed(run);
    BasinDatabase database{path_from_utf8(basin), Access::ReadOnly};
    computed += description(load_results(database));

    expect_golden(std::string{golden.name} + ".txt", computed);
}

std::vector<GoldenCase> golden_cases() {
    constexpr const char* k_leap = "ellervane-1996";
    constexpr const char* k_water_year = "ellervane-1997-98";
    const std::vector<std::string> year_round{"--kind", "year-round"};
    const std::vector<std::string> all_by_zone{
        "--by-zone", "temperature,precipitation,lapse-rate,coefficients,tcrit,recession"};
    return {
        {"calendar_year", k_leap, "1.978", {}, year_round},
        {"calendar_year_forecast", k_leap, "1.978", {}, {"--kind", "melt-season", "--forecast", "7"}},
        {"calendar_year_no_snow", k_leap, "1.978", {}, {"--kind", "year-round", "--no-snow"}},
        {"calendar_year_custom_lag",
         k_leap,
         "1.978",
         {},
         {"--kind", "year-round", "--lag-shares", "0.5,0.3,0.2"}},
        {"calendar_year_by_zone", k_leap, "1.978", all_by_zone, year_round},
        {"calendar_year_max_min", k_leap, "1.978", {"--temperature", "max-min"}, year_round},
        {"calendar_year_default_threshold", k_leap, "1.978", {"--rain-threshold", "blank"}, year_round},
        {"water_year", k_water_year, "2.851", {}, year_round},
        {"water_year_forecast", k_water_year, "2.851", {}, {"--kind", "year-round", "--forecast", "3"}},
        {"water_year_no_snow", k_water_year, "2.851", {}, {"--kind", "year-round", "--no-snow"}},
        {"water_year_custom_lag",
         k_water_year,
         "2.851",
         {},
         {"--kind", "year-round", "--lag-shares", "0.2,0.5,0.2,0.1"}},
        {"water_year_by_zone", k_water_year, "2.851", all_by_zone, year_round},
        {"water_year_low_threshold", k_water_year, "2.851", {"--rain-threshold", "2.5"}, year_round},
    };
}

INSTANTIATE_TEST_SUITE_P(Sample, GoldenRun, testing::ValuesIn(golden_cases()),
                         [](const auto& test) { return test.param.name; });

}  // namespace
}  // namespace nivora
