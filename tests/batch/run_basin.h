// A basin whose run can be worked out by hand.
#pragma once

#include "tests/batch/batch_call.h"
#include "tests/support/page_damage.h"

#include <array>

namespace nivora {

/// One zone at the elevation of the station without snow, rain or warmth: nothing flows in, and each day's
/// discharge is k = x times that of the day before. Measured on 1 to 3 April 1996: 10, 8 and 6.
[[nodiscard]] inline LegacyParts receding_parts() {
    LegacyParts parts;
    parts.zones = "1";
    parts.pairs[0] = "100,1500";
    parts.reference_elevation = "1500";
    parts.x = "0.9";
    parts.y = "0";
    parts.section(LegacySection::Runoff) = "91*0,10,8,6/";  // 1 April is day 92 of a leap year
    for (const LegacySection section : {LegacySection::Tmax, LegacySection::Tmin, LegacySection::Tavg,
                                        LegacySection::Precip, LegacySection::SCA}) {
        parts.section(section) = "/";
    }
    return parts;
}

/// The basin above, imported with an initial runoff of 10 and with a latitude.
class RunBasin : public BatchFolder {
public:
    explicit RunBasin(const LegacyParts& parts = receding_parts(), const std::string& initial_runoff = "10")
        : BatchFolder(parts) {
        const BatchResult result = import({"--initial-runoff", initial_runoff, "--latitude", "46.5"});
        EXPECT_EQ(result.status, 0) << result.err;
    }

    /// The JSON output of the run, whatever its exit status.
    [[nodiscard]] nlohmann::json json(std::vector<std::string> more = {}) const {
        more.push_back("--json");
        return nlohmann::json::parse(run(more).out);
    }

    /// The computed discharge stored in the file, day by day.
    [[nodiscard]] std::vector<double> computed() const {
        BasinDatabase database{basin(), Access::ReadOnly};
        SQLite::Statement query{database.sql(), "SELECT DailyQ FROM SimResults WHERE Zone = 1 ORDER BY Date"};
        std::vector<double> values;
        while (query.executeStep()) values.push_back(query.getColumn(0).getDouble());
        return values;
    }
};

/// The legacy file above over a whole year of one zone, with snow on the ground that melts.
[[nodiscard]] inline LegacyParts whole_year_parts() {
    LegacyParts parts = receding_parts();
    parts.start = "0101";
    parts.end = "1231";
    parts.sections = {"366*10/", "366*12/",   "366*4/",   "366*8/",   "366*0.5/", "366*0.4/", "366*1/",
                      "366*18/", "366*0.65/", "366*0.4/", "366*0.9/", "366*0.7/", "366*1/"};
    return parts;
}

/// That basin with a scenario "warmer", which adds 2 degrees to every day, and ways to change its file.
class YearBasinTest : public testing::Test {
protected:
    YearBasinTest() {
        EXPECT_EQ(batch({"scenario", file(), "--simulation", "alder", "--name", "warmer", "--edit",
                         "1:1996-01-01:1996-12-31:0:2:0"})
                      .status,
                  0);
    }

    [[nodiscard]] std::string file() const { return basin.basin(); }
    [[nodiscard]] std::string salvaged() const { return basin.path("salvaged.mdb"); }
    /// Evaluates the scenario, or another one.
    [[nodiscard]] BatchResult climate(const std::vector<std::string>& more = {},
                                      const std::string& simulation = "alder",
                                      const std::string& scenario = "warmer") const {
        std::vector<std::string> arguments{"climate",  file(),       "--simulation",
                                           simulation, "--scenario", scenario};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return batch(arguments);
    }
    [[nodiscard]] BatchResult export_table(const std::string& table, const std::string& csv) const {
        return batch({"export", file(), table, "--csv", basin.path(csv)});
    }
    [[nodiscard]] BatchResult salvage() const {
        std::filesystem::remove(salvaged());
        return batch({"salvage", file(), salvaged()});
    }
    /// Overwrites bytes of the file, as a failing disk does.
    void put(std::size_t at, const std::string& bytes) const { put_bytes(file(), at, bytes); }

    RunBasin basin{whole_year_parts()};
};

}  // namespace nivora
