// What a run reads of a simulation: its daily variables and parameters, and the discharge before it.
#pragma once

#include "base/calendar.h"
#include "base/single.h"
#include "store/daily_table.h"
#include "store/database.h"
#include "store/rows.h"

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The variables and parameters of one zone and day. Missing values are NaN. Units as in `PhysicalRow` and
/// `ParameterRow`.
struct SimulationDay {
    DayCount date = 0;
    std::int16_t zone = 0;
    float runoff = k_missing;
    float tmax = k_missing;
    float tmin = k_missing;
    float tavg = k_missing;
    float precip = k_missing;
    float sca = k_missing;
    float net_radiation = k_missing;
    float lapse_rate = k_missing;
    float tcrit = k_missing;
    float an = k_missing;
    float lag = k_missing;  ///< hours
    float cs = k_missing;
    float cr = k_missing;
    float rca = k_missing;
    double x = k_missing;
    double y = k_missing;

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.date), field(row.zone), field(row.runoff), field(row.tmax), field(row.tmin),
            field(row.tavg);
        field(row.precip), field(row.sca), field(row.net_radiation), field(row.lapse_rate), field(row.tcrit);
        field(row.an), field(row.lag), field(row.cs), field(row.cr), field(row.rca), field(row.x),
            field(row.y);
    }
};

/// The days of a period that have a row in `PhysicalData` and in the parameter table of the simulation, all
/// days of zone 1 first. The time that it takes depends on the length of the period, not on that of the
/// record. A row of the last day whose date has a time part is not in the period.
/// @throws StoreError, also if a table is missing
[[nodiscard]] std::vector<SimulationDay> read_simulation_days(BasinDatabase& database,
                                                              const std::string& simulation,
                                                              const Period& period);

/// The first row of a simulation's parameter table in a period, by zone and then by day; nothing if there is
/// none, or no such table. A row of the last day whose date has a time part is not in the period.
/// @throws StoreError
[[nodiscard]] std::optional<ParameterRow> first_parameters(BasinDatabase& database,
                                                           const std::string& simulation,
                                                           const Period& period);

/// The discharge that `PhysicalData` has for a day.
struct DayDischarge {
    int rows = 0;             ///< of the day, in all zones
    float first = k_missing;  ///< that of the first zone, m³/s or ft³/s; NaN if it is missing
};

/// @throws StoreError
[[nodiscard]] DayDischarge discharge_of_day(BasinDatabase& database, DayCount day);

}  // namespace nivora
