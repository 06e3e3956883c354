#include "engine/basin_inputs.h"

#include "base/number_text.h"
#include "engine/snow_melt.h"
#include "store/basin_marks.h"

namespace nivora {
namespace {

constexpr std::int16_t k_max_min = 1;  // of the temperature values of a simulation
constexpr float k_threshold_cm = 6.0F;
constexpr float k_threshold_inches = 2.36F;

void take_zones(BasinInputs& inputs, const BasinState& basin) {
    inputs.zones = static_cast<std::size_t>(basin.ZoneCount);
    inputs.areas.assign(inputs.zones + 1, 0.0);
    inputs.elevations.assign(inputs.zones + 1, 0.0);
    for (std::size_t zone = 1; zone <= inputs.zones && zone <= basin.zones.size(); ++zone) {
        inputs.areas[zone] = basin.zones[zone - 1].area.value_or(0.0);
        inputs.elevations[zone] = basin.zones[zone - 1].elevation.value_or(0.0);
    }
}

void take_simulation(BasinInputs& inputs, const Simulation& simulation) {
    inputs.units = simulation.units;
    inputs.start = simulation.start;
    inputs.end = simulation.end;
    inputs.temperature_max_min = simulation.temperature_values == k_max_min;
    inputs.temperature_basinwide = simulation.temperature == Distribution::Basinwide;
    inputs.precipitation_basinwide = simulation.precipitation == Distribution::Basinwide;
    inputs.lapse_rate_basinwide = simulation.lapse_rate == Distribution::Basinwide;
    inputs.critical_temperature_basinwide = simulation.critical_temperature == Distribution::Basinwide;
    inputs.runoff_coefficients_basinwide = simulation.runoff_coefficients == Distribution::Basinwide;
    inputs.precipitation_threshold = simulation.precipitation_threshold;
}

}  // namespace

BasinInputs basin_inputs(const BasinState& basin) {
    BasinInputs inputs;
    take_zones(inputs, basin);
    inputs.reference_elevation = leading_number(basin.reference_elevation_text);
    inputs.basin_area = leading_number(basin.basin_area_text);
    inputs.melt_season_start = melt_season_start_month(basin.latitude_text);
    if (const Simulation* simulation = basin.current_simulation()) take_simulation(inputs, *simulation);
    return inputs;
}

float settle_precipitation_threshold(BasinState& basin) {
    Simulation* simulation = basin.current_simulation();
    if (simulation != nullptr && simulation->precipitation_threshold)
        return *simulation->precipitation_threshold;
    const float threshold = basin.Units_Code == Units::English ? k_threshold_inches : k_threshold_cm;
    if (simulation != nullptr) simulation->precipitation_threshold = threshold;
    mark_input_changed(basin);
    return threshold;
}

}  // namespace nivora
