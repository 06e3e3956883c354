#include "session/definition_rules.h"

namespace nivora {

namespace {

template <typename Basin>
auto& box_text(Basin& basin, BasinBox box) {
    switch (box) {
        case BasinBox::Zones: return basin.zones_text;
        case BasinBox::ReferenceElevation: return basin.reference_elevation_text;
        case BasinBox::Latitude: return basin.latitude_text;
        case BasinBox::Description: return basin.basin_description;
        case BasinBox::Longitude: return basin.longitude_text;
        case BasinBox::Name: break;
    }
    return basin.basin_name;
}

}  // namespace

std::string& basin_box_text(BasinState& basin, BasinBox box) { return box_text(basin, box); }

const std::string& basin_box_text(const BasinState& basin, BasinBox box) { return box_text(basin, box); }

Units shown_units(const BasinState& basin, std::optional<Units> chosen) {
    return basin.basin_units != Units::NotFixed ? basin.basin_units : chosen.value_or(Units::Metric);
}

AfterEnter after_enter(BasinBox box, bool units_open, bool zones_open) {
    using Place = AfterEnter::Place;
    switch (box) {
        case BasinBox::Name:
            if (units_open) return {.place = Place::UnitsList};
            return {.box = zones_open ? BasinBox::Zones : BasinBox::ReferenceElevation};
        case BasinBox::Zones: return {.box = BasinBox::ReferenceElevation};
        case BasinBox::ReferenceElevation: return {.box = BasinBox::Latitude};
        case BasinBox::Latitude: return {.box = BasinBox::Longitude};
        case BasinBox::Longitude: return {.box = BasinBox::Description};
        case BasinBox::Description: break;
    }
    return {.place = Place::ZoneGrid};
}

std::optional<UnusualZones> UnusualZoneQuestion::open_for(const BasinState& basin) const {
    auto zones = unusual_zones(basin);
    if (zones && zones->question.text == confirmed_) zones.reset();
    return zones;
}

}  // namespace nivora
