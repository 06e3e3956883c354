// A whole climate evaluation of the sample basin, set beside a kept one to the last bit.
//
// NIVORA_RENEW_GOLDEN=1 in the environment writes the kept file anew; the test fails all the same, so that a
// renewal never passes unseen.

#include "base/durable_file.h"
#include "base/number_text.h"
#include "engine/results_store.h"
#include "tests/batch/batch_call.h"

#include <fmt/format.h>

#include <bit>
#include <cstdlib>

namespace nivora {
namespace {

namespace fs = std::filesystem;

/// The run of a call that has to succeed: what it printed.
std::string printed(const std::vector<std::string>& arguments) {
    const BatchResult result = batch(arguments);
    EXPECT_EQ(result.status, 0) << result.err;
    return result.out;
}

/// FNV-1a over the bits of a column; every missing value has the same bits.
template <typename Value>
std::uint64_t checksum(const std::vector<Value>& column) {
    std::uint64_t sum = 0xCBF29CE484222325ULL;
    for (const Value value : column) {
        const auto wide = static_cast<double>(value);
        const auto bits =
            std::bit_cast<std::uint64_t>(is_missing(wide) ? static_cast<double>(k_missing) : wide + 0.0);
        for (unsigned shift = 0; shift < 64; shift += 8)
            sum = (sum ^ ((bits >> shift) & 0xFFU)) * 0x100000001B3ULL;
    }
    return sum;
}

template <typename Value>
std::string shown(Value value) {
    return shortest_text(value + Value{});
}

/// A checksum of each column, the hydrographs day by day, and of each zone and each fifth day what the
/// adjustment made of its cover.
std::string description(const SimResults& t) {
    std::string text;
    const auto fields = sim_results_table().fields;
    std::size_t position = 0;
    SimResults::visit(t, [&](const auto& column) {
        text += fmt::format("{:14}{:016x}\n", fields[position++].name, checksum(column));
    });
    for (std::size_t row = 0; row < t.size(); ++row) {
        if (t.Zone[row] != 1) continue;
        text += fmt::format("{} measured {} present {} changed {}\n", iso_date_text(t.Date[row]),
                            shown(t.ActualQ[row]), shown(t.DailyQPresent[row]), shown(t.DailyQ[row]));
    }
    for (std::size_t row = 0; row < t.size(); ++row) {
        if (civil_date(t.Date[row]).day % 5 != 0) continue;
        text += fmt::format(
            "zone {} {} SCA {} SCAclim {} SCAclimWA {} SCAclimWAMA {} MDCexcl {} MDCexclWA {} "
            "AZMexcl {} AZMexclWA {}\n",
            t.Zone[row], iso_date_text(t.Date[row]), shown(t.SCA[row]), shown(t.SCAclim[row]),
            shown(t.SCAclimWA[row]), shown(t.SCAclimWAMA[row]), shown(t.MDCexcl[row]),
            shown(t.MDCexclWA[row]), shown(t.AZMexcl[row]), shown(t.AZMexclWA[row]));
    }
    return text;
}

/// The report without what depends on the day and the place of the run.
std::string lasting_lines(const std::string& report) {
    std::string text;
    for (std::string line : lines_of(report)) {
        if (!line.empty() && line.back() == '\r') line.pop_back();
        const bool passing =
            line.starts_with("Date:") || line.starts_with("File:") || line.find("Page") != std::string::npos;
        if (!passing) text += line + "\n";
    }
    return text;
}

std::string first_difference(const std::string& kept, const std::string& computed) {
    const std::vector<std::string> a = lines_of(kept);
    const std::vector<std::string> b = lines_of(computed);
    for (std::size_t line = 0; line < std::max(a.size(), b.size()); ++line) {
        const std::string of_kept = line < a.size() ? a[line] : "(no line)";
        const std::string of_computed = line < b.size() ? b[line] : "(no line)";
        if (of_kept != of_computed)
            return fmt::format("line {}:\n  kept     {}\n  computed {}", line + 1, of_kept, of_computed);
    }
    return "none";
}

TEST(GoldenClimate, TheWaterYearTwoDegreesWarmerAndATenthWetterEqualsTheKeptOne) {
    const TemporaryFolder folder;
    const std::string basin = path_text(folder / "sample.mdb");
    const std::string record = std::string{NIVORA_SOURCE_DIR} + "/data/samples/ellervane-1997-98.NVR";
    static_cast<void>(printed(
        {"import", record, basin, "--name", "sample", "--latitude", "46.5", "--initial-runoff", "2.851"}));
    static_cast<void>(printed({"scenario", basin, "--simulation", "sample", "--name", "warm and wet",
                               "--winter-end", "1998-03-31", "--edit",
                               "Average Temperature:1997-10-01:1998-09-30:Add/subtract to each:2:All",
                               "--edit", "Precipitation:1997-10-01:1998-09-30:Multiply each:1.1:All"}));
    std::string computed =
        printed({"climate", basin, "--simulation", "sample", "--scenario", "warm and wet", "--json"});
    computed += lasting_lines(file_bytes(folder / "NVR_DfGN.out"));
    BasinDatabase database{path_from_utf8(basin), Access::ReadOnly};
    computed += description(load_results(database));

    const fs::path kept_file = fs::path{NIVORA_SOURCE_DIR} / "tests/batch/golden/water_year_climate.txt";
    if (std::getenv("NIVORA_RENEW_GOLDEN") != nullptr) {
        write_whole_file(kept_file, computed);
        FAIL() << "renewed " << kept_file;
    }
    const std::string kept = read_whole_file(kept_file, 1U << 24U);
    EXPECT_TRUE(kept == computed) << "first difference, " << first_difference(kept, computed);
}

}  // namespace
}  // namespace nivora
