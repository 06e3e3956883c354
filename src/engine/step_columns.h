// The columns of the results table that a run or a climate step works on.
#pragma once

#include "engine/sim_results.h"

namespace nivora {

/// The columns of a step: inputs, cover and results of the present or of the changed climate, and the columns
/// that every step uses. A plain run is step 0. Units are those of `SimResults`.
struct StepColumns {
    Column maximum_temperature;
    Column minimum_temperature;
    FieldColumn average_temperature;
    FieldColumn precipitation;
    FieldColumn degree_days;
    FieldColumn lapse_rate;
    FieldColumn critical_temperature;
    Column degree_day_factor;
    FieldColumn snow_coefficient;
    FieldColumn rain_coefficient;
    Column lag_hours;
    Column rain_switch;
    DoubleColumn recession_x;
    DoubleColumn recession_y;
    Column cover;

    FieldColumn sum_at;
    FieldColumn at;
    FieldColumn rain;  ///< after the rule of the contributing area
    FieldColumn snow_on_store;
    FieldColumn new_melt;
    FieldColumn runoff_melt;  ///< melt of new snow that reaches the runoff
    FieldColumn curve_including;
    FieldColumn curve_excluding;
    FieldColumn zonal_melt;
    FieldColumn total_melt;

    Column measured;
    /// In step 6 the computed discharge of the present climate, which replaces the measured discharge; empty
    /// in the other steps.
    DoubleColumn measured_present;
    DoubleFieldColumn computed;
};

/// Whether a climate step uses the columns of the changed climate: every step except 1 and 3 does.
[[nodiscard]] constexpr bool uses_changed_climate(int climate_step) {
    return climate_step >= 2 && climate_step != 3;
}

[[nodiscard]] StepColumns step_columns(SimResults& results, int climate_step);

}  // namespace nivora
