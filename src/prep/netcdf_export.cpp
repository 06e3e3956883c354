#include "prep/netcdf_export.h"

#include "base/durable_file.h"
#include "base/program_module.h"
#include "base/text.h"
#include "base/version.h"
#include "prep/daily_units.h"
#include "store/basin_store.h"
#include "store/daily_columns.h"
#include "store/daily_table.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <limits>
#include <string_view>

namespace nivora {
namespace {

/// What other programs should know of a field. The standard name is given only where the definition of that
/// name is exactly what the field holds.
struct FieldMeaning {
    const char* field;
    const char* long_name;
    const char* standard_name = nullptr;
    const char* cell_methods = nullptr;
    bool whole_basin = false;  ///< its values stand in the first zone
};

constexpr const char* k_discharge = "water_volume_transport_in_river_channel";
constexpr const char* k_air = "air_temperature";
constexpr const char* k_precipitation = "lwe_thickness_of_precipitation_amount";
constexpr const char* k_snow_share = "surface_snow_area_fraction";

constexpr std::array k_meanings{
    FieldMeaning{"Runoff", "measured discharge of the basin", k_discharge, "date: mean"},
    FieldMeaning{"ActualQ", "measured discharge of the basin", k_discharge, "date: mean"},
    FieldMeaning{"DailyQ", "computed discharge of the basin", k_discharge, "date: mean", true},
    FieldMeaning{"DailyQPresent", "computed discharge of the basin, present climate", k_discharge,
                 "date: mean", true},
    FieldMeaning{"TotalMelt", "water input of the basin on the day before", nullptr, nullptr, true},
    FieldMeaning{"Tmax", "highest air temperature of the day", k_air, "date: maximum"},
    FieldMeaning{"Tmin", "lowest air temperature of the day", k_air, "date: minimum"},
    FieldMeaning{"Tavg", "mean air temperature of the day", k_air, "date: mean"},
    FieldMeaning{"Precip", "precipitation", k_precipitation, "date: sum"},
    FieldMeaning{"SCA", "snow covered area", k_snow_share},
    FieldMeaning{"NetRadiation", "net radiation, in a unit of the user's own"},
    FieldMeaning{"NetRad", "net radiation, in a unit of the user's own"},
    FieldMeaning{"ZoneDD", "degree days of the zone"},
    FieldMeaning{"LapseRate", "temperature lapse rate"},
    FieldMeaning{"LR", "temperature lapse rate"},
    FieldMeaning{"Tcrit", "critical temperature, above the degree-day base"},
    FieldMeaning{"AN", "degree-day factor"},
    FieldMeaning{"CS", "runoff coefficient of snow"},
    FieldMeaning{"CR", "runoff coefficient of rain"},
    FieldMeaning{"LagTime", "time lag"},
    FieldMeaning{"RCA", "rainfall contributing area"},
    FieldMeaning{"Xcoeff", "recession coefficient x"},
    FieldMeaning{"YCoeff", "recession coefficient y"},
};

/// A unit as the library of units that CF names reads it; empty where there is none. Hours are "h": a text
/// such as "hours" would be taken for a time by some readers.
std::string cf_unit(std::string_view unit) {
    constexpr std::array<std::pair<std::string_view, const char*>, 19> k_units{{
        {"cm", "cm"},
        {"inches", "inch"},
        {"m", "m"},
        {"ft", "ft"},
        {"km²", "km2"},
        {"mi²", "mi2"},
        {"m³/s", "m3 s-1"},
        {"ft³/s", "ft3 s-1"},
        {"°C", "degC"},
        {"°F", "degF"},
        {"°C above 0 °C", "degC"},
        {"°F above 32 °F", "degF"},
        {"degree days, °C", "degC day"},
        {"degree days, °F", "degF day"},
        {"°C per 100 m", "degC/(100 m)"},
        {"°F per 1000 ft", "degF/(1000 ft)"},
        {"cm/(°C·day)", "cm/(degC day)"},
        {"inches/(°F·day)", "inch/(degF day)"},
        {"hours", "h"},
    }};
    const auto found =
        std::find_if(k_units.begin(), k_units.end(), [&](const auto& one) { return one.first == unit; });
    if (found != k_units.end()) return found->second;
    const bool pure = unit.starts_with("a fraction") || unit == "no unit" || unit == "0 or 1" ||
                      unit.starts_with("number of");
    return pure ? "1" : "";
}

TextAttributes attributes_of(const std::string& field, Units units) {
    constexpr std::string_view k_changed = "CC";
    TextAttributes attributes;
    const std::string unit = cf_unit(daily_unit(field, units));
    if (!unit.empty()) attributes.emplace_back("units", unit);
    const auto find = [](std::string_view name) {
        return std::find_if(k_meanings.begin(), k_meanings.end(),
                            [&](const FieldMeaning& one) { return same_name(name, one.field); });
    };
    auto meaning = find(field);
    const bool changed = meaning == k_meanings.end() && field.ends_with(k_changed);
    if (changed) meaning = find(std::string_view{field}.substr(0, field.size() - k_changed.size()));
    if (meaning == k_meanings.end()) {
        attributes.emplace_back("long_name", field);
        return attributes;
    }
    attributes.emplace_back("long_name",
                            std::string{meaning->long_name} + (changed ? ", changed climate" : ""));
    if (meaning->standard_name != nullptr) attributes.emplace_back("standard_name", meaning->standard_name);
    if (meaning->cell_methods != nullptr) attributes.emplace_back("cell_methods", meaning->cell_methods);
    if (meaning->whole_basin) attributes.emplace_back("comment", "stands in the first zone");
    return attributes;
}

NetcdfType type_of(FieldType type) {
    switch (type) {
        case FieldType::Integer: return NetcdfType::Short;
        case FieldType::Long: return NetcdfType::Int;
        case FieldType::Single: return NetcdfType::Float;
        default: return NetcdfType::Double;
    }
}

/// The fields with values, without the key. @throws StoreError for a table without zones and days
std::vector<Field> value_fields(BasinDatabase& database, const std::string& table) {
    std::vector<Field> fields = database.table_fields(table);
    const auto has = [&](std::string_view name) {
        return std::any_of(fields.begin(), fields.end(),
                           [&](const Field& one) { return same_name(one.name, name); });
    };
    if (!has("Zone") || !has("Date")) {
        throw StoreError(
            StoreFault::Value,
            fmt::format("The table '{}' has no zones and days, which a NetCDF file is made of. Export "
                        "it with --csv.",
                        table));
    }
    std::erase_if(fields, [](const Field& one) {
        return same_name(one.name, "Zone") || same_name(one.name, "Date") || one.type == FieldType::Text ||
               one.type == FieldType::Date;
    });
    return fields;
}

TextAttributes file_attributes(const BasinState& basin, const std::string& table,
                               const NetcdfOrigin& origin) {
    TextAttributes attributes{{"Conventions", "CF-1.8"},
                              {"featureType", "timeSeries"},
                              {"title", fmt::format("{}: {}", basin.basin_name, table)},
                              {"source", fmt::format("Nivora {}", k_version)},
                              {"version", k_version},
                              {"basin", basin.basin_name},
                              {"table", table}};
    if (origin.simulation) attributes.emplace_back("simulation", *origin.simulation);
    if (origin.run) attributes.emplace_back("run", *origin.run);
    return attributes;
}

void add_zones(const BasinState& basin, NetcdfTable& made) {
    const UnitWords& words = unit_words(basin.basin_units);
    constexpr double k_unknown = std::numeric_limits<double>::quiet_NaN();
    for (int zone = 1; zone <= basin.ZoneCount; ++zone) {
        const auto place = static_cast<std::size_t>(zone - 1);
        const Zone known = place < basin.zones.size() ? basin.zones[place] : Zone{};
        made.zones.push_back(zone_letter(zone));
        made.areas.push_back(known.area.value_or(k_unknown));
        made.elevations.push_back(known.elevation.value_or(k_unknown));
    }
    made.area_attributes = {{"units", cf_unit(words.area)}, {"long_name", "area of the zone"}};
    made.elevation_attributes = {{"units", cf_unit(words.elevation)},
                                 {"long_name", "mean elevation of the zone"},
                                 {"standard_name", "surface_altitude"}};
}

}  // namespace

NetcdfTable netcdf_table(BasinDatabase& database, const std::string& table, const NetcdfOrigin& origin) {
    const std::vector<Field> fields = value_fields(database, table);
    BasinState basin;
    read_basin(database, basin);
    NetcdfTable made{.attributes = file_attributes(basin, table, origin)};
    add_zones(basin, made);
    const RecordExtent extent = scan_daily_table(database, table);
    // A table without rows has no first day; its period is empty.
    const DayCount last = extent.count > 0 ? extent.last : extent.first - 1;
    for (DayCount day = extent.first; day <= last; ++day) made.dates.push_back(day);
    std::vector<std::string_view> names;
    names.reserve(fields.size());
    for (const Field& field : fields) names.push_back(field.name);
    const DailyColumns columns =
        read_daily_columns(database, table, names, basin.ZoneCount, extent.first, last);
    made.fields.reserve(fields.size());
    for (std::size_t i = 0; i < fields.size(); ++i) {
        NetcdfField field{.name = fields[i].name,
                          .type = type_of(fields[i].type),
                          .attributes = attributes_of(fields[i].name, basin.basin_units)};
        field.values.reserve(made.dates.size() * static_cast<std::size_t>(columns.zones()));
        for (int zone = 1; zone <= columns.zones(); ++zone) {
            const auto column = columns.column(zone, i);
            field.values.insert(field.values.end(), column.begin(), column.end());
        }
        made.fields.push_back(std::move(field));
    }
    return made;
}

const NetcdfMethods& netcdf_methods() {
    using MethodsOfModule = const NetcdfMethods* (*)();
    static const NetcdfMethods& methods = *reinterpret_cast<MethodsOfModule>(
        module_function("nivora-netcdf.so", "nivora_netcdf_methods", "are no NetCDF files"))();
    return methods;
}

std::string netcdf_bytes(const NetcdfTable& table) {
    std::string bytes;
    std::string problem;
    netcdf_methods().write(table, bytes, problem);
    if (!problem.empty()) throw FileError{fmt::format("The NetCDF file can't be made: {}.", problem)};
    return bytes;
}

}  // namespace nivora
