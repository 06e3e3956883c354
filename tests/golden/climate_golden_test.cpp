// A complete climate evaluation of the sample basin, compared bit by bit with a stored one.

#include "engine/results_store.h"
#include "tests/batch/batch_call.h"
#include "tests/support/golden.h"

#include <fmt/format.h>

namespace nivora {
namespace {

template <typename Value>
std::string shown(Value value) {
    return shortest_text(value + Value{});
}

/// A checksum of each column, the hydrographs day by day, and for each
/// zone on every fifth day the adjusted cover.
std::string description(const SimResults& t) {
    std::string text = column_checksums(t);
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

/// The report without the lines that depend on the date and the folder of the run.
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

TEST(GoldenClimate, TheWaterYearTwoDegreesWarmerAndATenthWetterEqualsTheStoredOne) {
    const TemporaryFolder folder;
    const std::string basin = path_text(folder / "sample.mdb");
    const std::string record = std::string{NIVORA_SOURCE_DIR} + "/data/samples/ellervane-1997-98.NVR";
    printed({"import", record, basin, "--name", "sample", "--latitude", "46.5", "--initial-runoff", "2.851"});
    printed({"scenario", basin, "--simulation", "sample", "--name", "warm and wet", "--winter-end",
             "1998-03-31", "--edit", "Average Temperature:1997-10-01:1998-09-30:Add/subtract to each:2:All",
             "--edit", "Precipitation:1997-10-01:1998-09-30:Multiply each:1.1:All"});
    std::string computed =
        printed({"climate", basin, "--simulation", "sample", "--scenario", "warm and wet", "--json"});
    computed += lasting_lines(file_bytes(folder / "NVR_DfGN.out"));
    BasinDatabase database{path_from_utf8(basin), Access::ReadOnly};
    computed += description(load_results(database));

    expect_golden("water_year_climate.txt", computed);
}

}  // namespace
}  // namespace nivora
