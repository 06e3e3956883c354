#include "session/basin_rows.h"

#include "base/number_text.h"
#include "base/text.h"
#include "store/table_io.h"

namespace nivora {
namespace {

std::optional<double> box_number(const std::string& text) {
    if (trimmed(text).empty()) return std::nullopt;
    return leading_number(text);
}

std::optional<std::string> box_text(const std::string& text) {
    if (text.empty()) return std::nullopt;
    return text;
}

}  // namespace

void store_boxes(BasinDatabase& database, const BasinState& basin) {
    BasinDescription row = read_basin_description(database);
    row.name = box_text(basin.basin_name);
    row.description = box_text(basin.basin_description);
    row.zones.reset();
    if (const auto zones = box_number(basin.zones_text)) row.zones = to_integer16(*zones);
    row.reference_elevation = box_number(basin.reference_elevation_text);
    row.latitude = box_number(basin.latitude_text);
    row.longitude = box_number(basin.longitude_text);
    write_basin_description(database, row);
}

void store_zones(BasinDatabase& database, const BasinState& basin) {
    std::vector<Zone> zones = basin.zones;
    zones.resize(static_cast<std::size_t>(basin.ZoneCount));
    for (Zone& zone : zones) {
        for (auto* number : {&zone.area, &zone.elevation}) *number = number->value_or(0.0);
        for (Aspect& aspect : zone.aspects)
            aspect = {.share = aspect.share.value_or(0.0), .elevation = aspect.elevation.value_or(0.0)};
    }
    clear_table(database, k_zone_description);
    add_rows<Zone>(database, template_table(k_zone_description), zones);
}

void store_simulations(BasinDatabase& database, const BasinState& basin) {
    std::vector<Simulation> simulations = basin.simulations;
    for (Simulation& simulation : simulations) {
        simulation.initial_x.reset();
        simulation.initial_y.reset();
    }
    clear_table(database, k_simulation_index);
    add_rows<Simulation>(database, template_table(k_simulation_index), simulations);
}

void store_definition(BasinDatabase& database, const BasinState& basin) {
    if (basin.zones.empty()) {
        // A number of zones that nobody has confirmed yet fixes nothing.
        BasinState without_zones = basin;
        without_zones.zones_text.clear();
        return store_boxes(database, without_zones);
    }
    store_boxes(database, basin);
    store_zones(database, basin);
}

void read_definition(BasinDatabase& database, BasinState& basin) {
    BasinState read = basin;
    read_basin(database, read);
    read.simulations = basin.simulations;
    read.current_row = basin.current_row;
    read.Current_Sim_Name = basin.Current_Sim_Name;
    if (const Simulation* current = read.current_simulation(); current != nullptr && current->units)
        read.Units_Code = *current->units;
    basin = std::move(read);
}

}  // namespace nivora
