#include "prep/legacy_import.h"

#include "base/single.h"
#include "base/text.h"
#include "prep/simulation_names.h"
#include "store/basin_store.h"
#include "store/daily_table.h"
#include "store/monthly_table.h"
#include "store/table_io.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace nivora {
namespace {

constexpr std::size_t k_longest_basin_name = 50;

std::vector<Zone> zone_rows(const LegacyFile& file) {
    std::vector<Zone> zones;
    for (const LegacyZone& legacy : file.zones) {
        Zone zone;
        zone.id = zone_letter(static_cast<int>(zones.size()) + 1);
        zone.area = legacy.area;
        zone.elevation = legacy.elevation;
        for (Aspect& aspect : zone.aspects) aspect = {1.0, legacy.elevation};
        zones.push_back(std::move(zone));
    }
    return zones;
}

void write_zones(BasinDatabase& database, const LegacyFile& file) {
    clear_table(database, k_zone_description);
    const std::vector<Zone> zones = zone_rows(file);
    add_rows<Zone>(database, template_table(k_zone_description), zones);
}

/// Sets the units of the file, or shows that the basin has others.
bool units_agree(BasinDescription& basin, const LegacyFile& file, Dialogs& dialogs) {
    const Units units = file.english ? Units::English : Units::Metric;
    const Units present_units = basin.units.value_or(Units::NotFixed);
    if (present_units == Units::NotFixed) {
        basin.units = units;
        return true;
    }
    if (present_units == units) return true;
    dialogs.message({.text = "You cannot mix English & Metric units in the same basin database.  "
                             "Please create a new database",
                     .title = "Import failed.  Simulation units inconsistent with basin."});
    return false;
}

bool is_unnamed(const BasinDescription& basin) {
    return trimmed(basin.name.value_or("")).empty() || basin.name == k_unnamed_basin;
}

/// A basin without a name gets name and reference elevation from the file, if the file has them. A basin with
/// a name but without zones is not finished either, and gets the elevation if it has none.
void fill_header(BasinDescription& basin, const LegacyFile& file) {
    const bool unnamed = is_unnamed(basin);
    const std::string name{first_characters(trimmed(file.basin_name), k_longest_basin_name)};
    if (unnamed && !name.empty()) basin.name = name;
    const bool takes_elevation = unnamed || (!basin.zones && !basin.reference_elevation);
    if (takes_elevation && file.reference_elevation) basin.reference_elevation = file.reference_elevation;
}

/// Whether the zones agree with everything that the file says of them.
bool same_zones(BasinDatabase& database, const LegacyFile& file) {
    const auto zones = read_table<Zone>(database, template_table(k_zone_description));
    return std::equal(zones.begin(), zones.end(), file.zones.begin(), file.zones.end(),
                      [](const Zone& zone, const LegacyZone& legacy) {
                          return zone.area == legacy.area && zone.elevation == legacy.elevation;
                      });
}

/// Makes the header and the zones agree with the file; false if that is not possible or the user cancelled.
bool prepare_basin(BasinDatabase& database, const LegacyFile& file, Dialogs& dialogs) {
    BasinDescription basin = read_basin_description(database);
    if (!units_agree(basin, file, dialogs)) return false;
    if (basin.zones && static_cast<std::size_t>(*basin.zones) != file.zones.size()) {
        dialogs.stop("Zones in import file don't match basin");
        return false;
    }
    const bool without_zones = !basin.zones;
    fill_header(basin, file);
    basin.zones = static_cast<std::int16_t>(file.zones.size());
    write_basin_description(database, basin);
    if (without_zones) write_zones(database, file);
    if (without_zones || same_zones(database, file)) return true;
    const Answer answer =
        dialogs.message({.text = "A definition of the zones in this basin already exists.  Overwrite?",
                         .title = "Importing a .NVR file",
                         .buttons = Buttons::YesNoCancel});
    if (answer == Answer::Cancel) return false;
    if (answer == Answer::Yes) write_zones(database, file);
    return true;
}

Period period_of(const LegacyFile& file) { return {file.start, file.end}; }

int last_zone(const LegacyFile& file) { return static_cast<int>(file.zones.size()); }

/// The zones and days of the period that have a row already.
std::set<std::pair<int, DayCount>> present_days(BasinDatabase& database, const LegacyFile& file) {
    std::set<std::pair<int, DayCount>> days;
    for (const StoredDay& day : days_of_zones(database, k_physical_data, period_of(file), last_zone(file)))
        days.emplace(day.zone, day.date);
    return days;
}

PhysicalRow physical_row(const LegacyFile& file, std::size_t zone, DayCount date) {
    const auto value = [&](LegacySection section) { return file.value(section, zone, date); };
    return {.zone = static_cast<std::int16_t>(zone + 1),
            .date = date,
            .runoff = value(LegacySection::Runoff),
            .tmax = value(LegacySection::Tmax),
            .tmin = value(LegacySection::Tmin),
            .tavg = value(LegacySection::Tavg),
            .precip = value(LegacySection::Precip),
            .sca = value(LegacySection::SCA),
            .net_radiation = 0.0F};
}

ParameterRow parameter_row(const LegacyFile& file, std::size_t zone, DayCount date) {
    const auto value = [&](LegacySection section) { return file.value(section, zone, date); };
    const bool later = file.change_day && date >= *file.change_day;
    return {.zone = static_cast<std::int16_t>(zone + 1),
            .date = date,
            .tcrit = value(LegacySection::Tcrit),
            .lag_hours = value(LegacySection::LagTime),
            .lapse_rate = value(LegacySection::LapseRate),
            .an = value(LegacySection::An),
            .cs = value(LegacySection::Cs),
            .cr = value(LegacySection::Cr),
            .rca = to_integer16(as_double(value(LegacySection::RCA))),
            .xcoeff = later ? file.x_later : file.x,
            .ycoeff = later ? file.y_later : file.y};
}

/// Adds the daily variables of the period. Asks before it replaces existing rows; after a No it adds only the
/// days without a row.
void write_variables(BasinDatabase& database, const LegacyFile& file, Dialogs& dialogs) {
    auto kept = present_days(database, file);
    if (!kept.empty()) {
        const Answer answer = dialogs.message(
            {.text =
                 "Physical variable data for simulation time period are present in the database.  Overwrite?",
             .title = "Import file contains days already present in the database!",
             .buttons = Buttons::YesNo});
        if (answer == Answer::Yes) {
            delete_days_of_zones(database, k_physical_data, period_of(file), last_zone(file));
            kept.clear();
        }
    }
    std::vector<PhysicalRow> rows;
    for (std::size_t zone = 0; zone < file.zones.size(); ++zone) {
        for (DayCount date = file.start; date <= file.end; ++date) {
            const PhysicalRow row = physical_row(file, zone, date);
            if (!kept.contains({row.zone, row.date})) rows.push_back(row);
        }
    }
    add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
}

void write_parameters(BasinDatabase& database, const LegacyFile& file, const std::string& name) {
    std::vector<ParameterRow> rows;
    for (std::size_t zone = 0; zone < file.zones.size(); ++zone) {
        for (DayCount date = file.start; date <= file.end; ++date)
            rows.push_back(parameter_row(file, zone, date));
    }
    add_rows<ParameterRow>(database, parameter_table(name), rows);
}

SimulationRecord simulation_record(const LegacyFile& file, const std::string& name) {
    SimulationRecord record;
    Simulation& definition = record.definition;
    definition.name = name;
    definition.start = file.start;
    definition.end = file.end;
    definition.units = file.english ? Units::English : Units::Metric;
    definition.temperature_values = std::int16_t{0};
    for (auto* option :
         {&definition.temperature, &definition.precipitation, &definition.lapse_rate,
          &definition.runoff_coefficients, &definition.critical_temperature, &definition.recession}) {
        *option = Distribution::Basinwide;
    }
    if (file.rain_threshold) definition.precipitation_threshold = static_cast<float>(*file.rain_threshold);
    record.first_values = parameter_row(file, 0, file.start);
    record.first_values.xcoeff = file.x;
    record.first_values.ycoeff = file.y;
    definition.initial_x = file.x;
    definition.initial_y = file.y;
    return record;
}

}  // namespace

std::string offered_simulation_name(const std::string& file_name) {
    constexpr std::size_t k_ending = 4;
    if (file_name.size() < k_ending) return file_name;
    const std::string ending = file_name.substr(file_name.size() - k_ending);
    return ending == ".nvr" || ending == ".NVR" ? file_name.substr(0, file_name.size() - k_ending)
                                                : file_name;
}

std::optional<SimulationRecord> import_legacy(BasinDatabase& database, const LegacyFile& file,
                                              const std::string& offered_name, Dialogs& dialogs) {
    if (!prepare_basin(database, file, dialogs)) return std::nullopt;
    const auto name = Add_Simulation_Name(database, dialogs, offered_name);
    if (!name) return std::nullopt;
    write_variables(database, file, dialogs);
    write_parameters(database, file, *name);
    Ensure_Monthly_Table(database);
    return simulation_record(file, *name);
}

}  // namespace nivora
