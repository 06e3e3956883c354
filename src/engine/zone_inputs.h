// First stage of a run: the inputs of each zone and its degree days.
// Equations and rules: docs/model.md, section 2.
#pragma once

#include "base/dialogs.h"
#include "engine/basin_inputs.h"
#include "engine/run_state.h"
#include "engine/sim_results.h"

#include <optional>
#include <vector>

namespace nivora {

/// The constants of a unit system that the zone inputs need.
struct UnitSystem {
    float lapse_unit = 100.0F;  ///< m or ft that a lapse rate refers to
    float degree_base = 0.0F;   ///< the degree-day base, °C or °F
};

/// @param units of a simulation; every value except English counts as Metric
[[nodiscard]] UnitSystem unit_system(std::optional<Units> units);

/// Elevation differences in the unit that lapse rates refer to, by zone; index 0 is not used.
/// @throws Fault 6 where a difference lies beyond a Single
[[nodiscard]] std::vector<float> lapse_steps(const BasinInputs& inputs, const UnitSystem& units);

/// Degree days of a zone on one day: the mean temperature of the station
/// extrapolated to the zone's mean elevation.
///
/// @param station_temperature  daily mean at the reference elevation, °C (Metric) or °F (English)
/// @param elevation_difference reference minus zone elevation, m or ft; positive below the station
/// @param lapse_rate           °C per 100 m or °F per 1000 ft, positive where it gets colder upward
/// @return degrees above the degree-day base (0 °C, 32 °F), rounded to 5 decimals, never below 0; nothing if
///         an input is missing, which the caller reports as missing data of that zone and day
/// @throws Fault 6 where the result lies beyond a Single
[[nodiscard]] std::optional<float> zone_degree_days(const UnitSystem& units, float station_temperature,
                                                    float elevation_difference, float lapse_rate);

/// Walks the rows of the period by day and zone. Zone 1's row of a day carries the value of the whole basin;
/// an option "Basinwide" overwrites the other zones with it. Writes mean temperature, precipitation, lapse
/// rate, critical temperature, runoff coefficients and degree days of the present or the changed climate, by
/// the climate step.
///
/// @return false after a fault, which was shown; the rows before the faulty one keep their new values
[[nodiscard]] bool Zone_Inputs(SimResults& results, const RunRows& rows, const BasinInputs& inputs,
                               RunState& run, Dialogs& dialogs);

}  // namespace nivora
