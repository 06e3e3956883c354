// A basin whose run can be worked by hand.
#pragma once

#include "tests/batch/batch_call.h"

#include <array>

namespace nivora {

/// One zone at the height of the station, without snow, rain or warmth, so that nothing flows in and each
/// day's discharge is k times that of the day before, k = x. Measured on 1 to 3 April 1996: 10, 8 and 6.
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

/// The basin above, imported with an initial runoff of 10 and a latitude.
class RunBasin : public BatchFolder {
public:
    explicit RunBasin(const LegacyParts& parts = receding_parts(), const std::string& initial_runoff = "10")
        : BatchFolder(parts) {
        const BatchResult result = import({"--initial-runoff", initial_runoff, "--latitude", "46.5"});
        EXPECT_EQ(result.status, 0) << result.err;
    }

    /// The run's JSON, whatever its exit status.
    [[nodiscard]] nlohmann::json json(std::vector<std::string> more = {}) const {
        more.push_back("--json");
        return nlohmann::json::parse(run(more).out);
    }

    /// The computed discharge in the file, day by day.
    [[nodiscard]] std::vector<double> computed() const {
        BasinDatabase database{basin(), Access::ReadOnly};
        SQLite::Statement query{database.sql(), "SELECT DailyQ FROM SimResults WHERE Zone = 1 ORDER BY Date"};
        std::vector<double> values;
        while (query.executeStep()) values.push_back(query.getColumn(0).getDouble());
        return values;
    }
};

}  // namespace nivora
