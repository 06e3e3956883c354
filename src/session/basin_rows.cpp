#include "session/basin_rows.h"

#include "base/number_text.h"
#include "base/text.h"
#include "session/main_window_rules.h"
#include "store/table_io.h"

#include <array>
#include <cmath>

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

using Part = UnstorableField::Part;

std::string complaint(const std::string& field) {
    return field + " holds a number that is too large to be stored. Enter it anew and save again.";
}

std::optional<UnstorableField> unstorable_box(const BasinState& basin) {
    const auto of = [](BasinBox box, std::string caption) {
        caption.pop_back();  // the colon
        return UnstorableField{{Part::Box, 0, static_cast<int>(box)}, complaint("The box '" + caption + "'")};
    };
    const auto infinite = [](const std::string& text) { return std::isinf(box_number(text).value_or(0.0)); };
    if (infinite(basin.reference_elevation_text))
        return of(BasinBox::ReferenceElevation, reference_elevation_label(basin.basin_units));
    if (infinite(basin.latitude_text)) return of(BasinBox::Latitude, "Latitude (dec):");
    if (infinite(basin.longitude_text)) return of(BasinBox::Longitude, "Longitude (dec):");
    return std::nullopt;
}

std::optional<UnstorableField> unstorable_zone(const BasinState& basin) {
    constexpr int k_area_column = 2;  // the other values follow in the order of the columns
    for (std::size_t row = 0; row < basin.zones.size(); ++row) {
        const Zone& zone = basin.zones[row];
        std::vector<std::optional<double>> cells{zone.area, zone.elevation};
        for (const Aspect& aspect : zone.aspects) cells.insert(cells.end(), {aspect.share, aspect.elevation});
        for (std::size_t cell = 0; cell < cells.size(); ++cell) {
            if (!std::isinf(cells[cell].value_or(0.0))) continue;
            const int column = static_cast<int>(cell) + k_area_column;
            return UnstorableField{
                {Part::Zones, row, column},
                complaint("The cell '" + std::string{trimmed(zone_header(column, basin.basin_units))} +
                          "' of zone " + std::to_string(row + 1))};
        }
    }
    return std::nullopt;
}

std::optional<UnstorableField> unstorable_simulation(const BasinState& basin) {
    constexpr int k_runoff_column = 13;
    constexpr int k_threshold_column = 14;
    for (std::size_t row = 0; row < basin.simulations.size(); ++row) {
        const Simulation& simulation = basin.simulations[row];
        for (const int column : {k_runoff_column, k_threshold_column}) {
            if (!std::isinf(simulation.value(column).value_or(0.0))) continue;
            return UnstorableField{{Part::Simulations, row, column},
                                   complaint("The cell '" + simulation_header(column, basin.Units_Code) +
                                             "' of the simulation '" + simulation.name + "'")};
        }
    }
    return std::nullopt;
}

}  // namespace

std::optional<UnstorableField> unstorable_field(const BasinState& basin) {
    if (auto field = unstorable_box(basin)) return field;
    if (auto field = unstorable_zone(basin)) return field;
    return unstorable_simulation(basin);
}

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
        // A number of zones that was not confirmed is not stored.
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
