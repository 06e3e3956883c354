// Whole runs of the sample basin, set beside kept ones to the last bit.
//
// NIVORA_RENEW_GOLDEN=1 in the environment writes the kept files anew; the tests that do so fail all the
// same, so that a renewal never passes unseen.

#include "base/durable_file.h"
#include "base/number_text.h"
#include "batch/command_line.h"
#include "engine/results_store.h"
#include "store/schema.h"
#include "tests/support/temporary_folder.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <bit>
#include <cstdlib>
#include <fstream>
#include <sstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;

struct GoldenCase {
    const char* name;
    const char* record;  // of data/samples, without its ending
    const char* initial_runoff;
    std::vector<std::string> import_options;
    std::vector<std::string> run_options;
};

void PrintTo(const GoldenCase& golden, std::ostream* out) { *out << golden.name; }

std::string batch(std::vector<std::string> arguments, int expected_status) {
    arguments.insert(arguments.begin(), "nivora-batch");
    std::vector<const char*> argv;
    for (const std::string& argument : arguments) argv.push_back(argument.c_str());
    std::ostringstream out;
    std::ostringstream err;
    const int status = run_command_line(static_cast<int>(argv.size()), argv.data(), out, err);
    EXPECT_EQ(status, expected_status) << err.str();
    return out.str();
}

/// FNV-1a over the bits of a column.
template <typename Value>
std::uint64_t checksum(const std::vector<Value>& column) {
    std::uint64_t sum = 0xCBF29CE484222325ULL;
    for (const Value value : column) {
        // Every missing value has the same bits here, whatever made it.
        const double wide = is_missing(static_cast<double>(value)) ? static_cast<double>(k_missing)
                                                                   : static_cast<double>(value) + 0.0;
        auto bits = std::bit_cast<std::uint64_t>(wide);
        for (int byte = 0; byte < 8; ++byte, bits >>= 8U) sum = (sum ^ (bits & 0xFFU)) * 0x100000001B3ULL;
    }
    return sum;
}

std::string shown(float value) { return shortest_text(value + 0.0F); }
std::string shown(double value) { return shortest_text(value + 0.0); }
std::string shown(std::int16_t value) { return std::to_string(value); }
std::string shown(DayCount value) { return iso_date_text(value); }

/// Columns with their checksums, then the hydrographs day by day, then all values of the 15th of each month.
std::string description(const SimResults& results) {
    std::string text;
    const auto fields = sim_results_table().fields;
    std::size_t position = 0;
    SimResults::visit(results, [&](const auto& column) {
        text += fmt::format("{:14}{:016x}\n", fields[position++].name, checksum(column));
    });
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

std::string first_difference(const std::string& kept, const std::string& computed) {
    std::istringstream a{kept};
    std::istringstream b{computed};
    std::string line_a;
    std::string line_b;
    for (int number = 1;; ++number) {
        const bool more_a = static_cast<bool>(std::getline(a, line_a));
        const bool more_b = static_cast<bool>(std::getline(b, line_b));
        if (!more_a && !more_b) return "none";
        if (more_a != more_b || line_a != line_b) {
            return fmt::format("line {}:\n  kept     {}\n  computed {}", number,
                               more_a ? line_a : "(no line)", more_b ? line_b : "(no line)");
        }
    }
}

class GoldenRun : public testing::TestWithParam<GoldenCase> {};

TEST_P(GoldenRun, EqualsTheKeptOneToTheLastBit) {
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
    batch(import, 0);
    std::vector<std::string> run{"run", basin, "--simulation", "sample", "--json"};
    run.insert(run.end(), golden.run_options.begin(), golden.run_options.end());
    std::string computed = batch(run, 0);
    BasinDatabase database{path_from_utf8(basin), Access::ReadOnly};
    computed += description(load_results(database));

    const fs::path kept_file =
        fs::path{NIVORA_SOURCE_DIR} / "tests/batch/golden" / (std::string{golden.name} + ".txt");
    if (std::getenv("NIVORA_RENEW_GOLDEN") != nullptr) {
        write_whole_file(kept_file, computed);
        FAIL() << "renewed " << kept_file;
    }
    const std::string kept = read_whole_file(kept_file, 1U << 24U);
    EXPECT_TRUE(kept == computed) << "first difference, " << first_difference(kept, computed);
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
