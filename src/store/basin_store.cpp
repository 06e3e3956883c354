#include "store/basin_store.h"

#include "base/number_text.h"
#include "base/text.h"
#include "store/table_io.h"

namespace nivora {
namespace {

template <typename Number>
std::string box_text(const std::optional<Number>& number) {
    return number ? double_text(static_cast<double>(*number)) : std::string{};
}

void check_header(const BasinDescription& header) {
    if (header.zones && (*header.zones < 1 || *header.zones > k_most_zones)) {
        throw StoreError(StoreFault::Value, "The number of zones in the basin file is not from 1 to 16.");
    }
    if (header.units && !is_known(*header.units)) {
        throw StoreError(StoreFault::Value, "The units in the basin file are neither Metric nor English.");
    }
}

}  // namespace

Simulation* BasinState::current_simulation() {
    return current_row && *current_row < simulations.size() ? &simulations[*current_row] : nullptr;
}

const Simulation* BasinState::current_simulation() const {
    return current_row && *current_row < simulations.size() ? &simulations[*current_row] : nullptr;
}

std::string basin_area_text(const std::vector<Zone>& zones) {
    if (zones.empty()) return k_no_area;
    double area = 0.0;
    for (const Zone& zone : zones) area += zone.area.value_or(0.0);
    return seven_digit_text(area);
}

void read_basin(BasinDatabase& database, BasinState& basin) {
    const BasinDescription header = read_basin_description(database);
    check_header(header);
    // Everything is read before the open basin changes, so that a refused file leaves it unchanged.
    auto zones = read_table<Zone>(database, template_table(k_zone_description));
    auto simulations = read_table<Simulation>(database, template_table(k_simulation_index));
    basin.basin_name = header.name.value_or("");
    basin.basin_description = header.description.value_or("");
    basin.zones_text = box_text(header.zones);
    basin.reference_elevation_text = box_text(header.reference_elevation);
    basin.latitude_text = box_text(header.latitude);
    basin.longitude_text = box_text(header.longitude);
    basin.basin_units = header.units.value_or(Units::NotFixed);
    basin.Units_Code = basin.basin_units;
    basin.ZoneCount = header.zones.value_or(1);
    // The grid has a row for each of the basin's zones, whatever rows the table holds.
    if (header.zones) zones.resize(static_cast<std::size_t>(*header.zones));
    basin.zones = std::move(zones);
    basin.simulations = std::move(simulations);
    basin.basin_area_text = basin_area_text(basin.zones);
    basin.current_row.reset();
    basin.Current_Sim_Name = k_no_simulation;
}

void select_simulation(BasinState& basin, std::size_t row) {
    basin.current_row = row;
    const Simulation& simulation = basin.simulations.at(row);
    if (simulation.start) basin.Current_Start = simulation.start;
    if (simulation.end) basin.Current_End = simulation.end;
    if (simulation.units) basin.Units_Code = *simulation.units;
    basin.Current_Sim_Name = simulation.name;
}

bool has_area(const BasinState& basin) { return basin.basin_area_text != k_no_area; }

std::optional<std::size_t> find_simulation(const BasinState& basin, std::string_view name) {
    const std::string wanted = folded_name(name);
    for (std::size_t row = 0; row < basin.simulations.size(); ++row) {
        if (folded_name(basin.simulations[row].name) == wanted) return row;
    }
    return std::nullopt;
}

}  // namespace nivora
