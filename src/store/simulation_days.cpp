#include "store/simulation_days.h"

#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>
#include <fmt/format.h>

namespace nivora {
namespace {

/// The zones of the record, found one by one through the key of the table, so that the cost of a query
/// depends on the requested days and not on the length of the record. Tables are named with their database,
/// since a simulation may be called zones.
constexpr const char* k_zones_of_record =
    "zones(n) AS (SELECT min(Zone) FROM main.PhysicalData UNION ALL "
    "SELECT (SELECT min(Zone) FROM main.PhysicalData WHERE Zone > zones.n) FROM zones WHERE n IS NOT NULL)";

}  // namespace

/// The joins stay in the order in which they are written, and the plus signs keep the planner from walking
/// the whole period again for each of its days.
std::vector<SimulationDay> read_simulation_days(BasinDatabase& database, const std::string& simulation,
                                                const Period& period) {
    return guarded([&] {
        const std::string parameters = quoted_name(database.stored_name(simulation).value_or(simulation));
        SQLite::Statement query{
            database.sql(),
            fmt::format("WITH RECURSIVE {} SELECT p.Date, p.Zone, Runoff, Tmax, Tmin, Tavg, Precip, SCA, "
                        "NetRadiation, LapseRate, Tcrit, An, LagTime, Cs, Cr, RCA, Xcoeff, Ycoeff "
                        "FROM zones CROSS JOIN main.PhysicalData AS p CROSS JOIN main.{} AS s "
                        "WHERE p.Zone = zones.n AND p.Date >= ?1 AND p.Date <= ?2 "
                        "AND s.Zone = +p.Zone AND s.Date = +p.Date ORDER BY p.Zone, p.Date",
                        k_zones_of_record, parameters)};
        query.bind(1, period.start);
        query.bind(2, period.end);
        return read_rows<SimulationDay>(query);
    });
}

std::optional<ParameterRow> first_parameters(BasinDatabase& database, const std::string& simulation,
                                             const Period& period) {
    const auto table = database.stored_name(simulation);
    if (!table) return std::nullopt;
    return guarded([&]() -> std::optional<ParameterRow> {
        SQLite::Statement query{
            database.sql(), "SELECT " + field_list(parameter_table(*table)) + " FROM " + quoted_name(*table) +
                                " WHERE Date >= ? AND Date <= ? ORDER BY Zone, Date LIMIT 1"};
        query.bind(1, period.start);
        query.bind(2, period.end);
        auto rows = read_rows<ParameterRow>(query);
        if (rows.empty()) return std::nullopt;
        return rows.front();
    });
}

DayDischarge discharge_of_day(BasinDatabase& database, DayCount day) {
    return guarded([&] {
        SQLite::Statement query{
            database.sql(),
            fmt::format("WITH RECURSIVE {} SELECT Runoff FROM zones CROSS JOIN main.PhysicalData AS p "
                        "WHERE p.Zone = zones.n AND p.Date = ? ORDER BY p.Zone",
                        k_zones_of_record)};
        query.bind(1, day);
        DayDischarge discharge;
        while (query.executeStep()) {
            if (discharge.rows++ == 0) read_value(query, 0, discharge.first);
        }
        return discharge;
    });
}

}  // namespace nivora
