// The rows of the basin file's tables as plain structs, and which member is which field.
#pragma once

#include "base/calendar.h"
#include "base/single.h"
#include "base/units.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>

namespace nivora {

/// How a quantity of a simulation is given: once for the basin, or for each zone.
enum class Distribution : std::int16_t { Basinwide = 0, ByZone = 1 };

/// The basin header, one row. A member without a value is a blank box.
struct BasinDescription {
    std::optional<std::string> name;
    std::optional<std::string> description;
    std::optional<std::int16_t> zones;  ///< 1 to 16
    std::optional<Units> units;
    std::optional<double> reference_elevation;  ///< m or ft
    std::optional<double> latitude;             ///< decimal degrees, negative in the south
    std::optional<double> longitude;            ///< decimal degrees

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.name), field(row.description), field(row.zones), field(row.units);
        field(row.reference_elevation), field(row.latitude), field(row.longitude);
    }
};

/// The part of a zone that faces in one direction.
struct Aspect {
    std::optional<double> share;      ///< percent of the zone's area
    std::optional<double> elevation;  ///< mean elevation, m or ft

    bool operator==(const Aspect&) const = default;
};

/// One elevation zone, a row of the zone grid.
struct Zone {
    std::string id;                        ///< "A" for zone 1, "B" for zone 2 ...
    std::optional<double> area = {};       ///< km² or mi²
    std::optional<double> elevation = {};  ///< hypsometric mean elevation, m or ft
    std::optional<std::string> notes = {};
    std::array<Aspect, 4> aspects = {};  ///< north-east, south-east, north-west, south-west

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.id), field(row.area), field(row.elevation), field(row.notes);
        for (auto& aspect : row.aspects) field(aspect.share), field(aspect.elevation);
    }

    bool operator==(const Zone&) const = default;
};

/// The letter of a zone from 1 to 16, which is its identification: "A" for zone 1.
[[nodiscard]] inline std::string zone_letter(int zone) {
    return std::string(1, static_cast<char>('A' + zone - 1));
}

/// One simulation definition, a row of the simulation grid. A member without a value is an empty cell.
///
/// The model reads a simulation by column number, 1 to 17;
/// only `text` and `value` map these numbers to members.
struct Simulation {
    std::string name;
    std::optional<std::int16_t> run_number;
    std::optional<DayCount> start;
    std::optional<DayCount> end;
    std::optional<Units> units;
    std::optional<std::int16_t> temperature_values;  ///< 0 Average, 1 Max/Min
    std::optional<Distribution> temperature;
    std::optional<Distribution> precipitation;
    std::optional<Distribution> lapse_rate;
    std::optional<Distribution> runoff_coefficients;
    std::optional<Distribution> critical_temperature;
    std::optional<Distribution> recession;
    std::optional<float> initial_runoff;           ///< m³/s or ft³/s
    std::optional<float> precipitation_threshold;  ///< cm or inches
    std::optional<double> initial_x;               ///< first value for the parameter table
    std::optional<double> initial_y;               ///< first value for the parameter table
    std::optional<std::string> comments;

    /// The text that the cell of a column shows, empty for an empty cell.
    [[nodiscard]] std::string text(int column) const;
    /// The number in the cell of a column; nothing for an empty cell and for a column of text.
    [[nodiscard]] std::optional<double> value(int column) const;

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.name), field(row.run_number), field(row.start), field(row.end), field(row.units);
        field(row.temperature_values), field(row.temperature), field(row.precipitation),
            field(row.lapse_rate);
        field(row.runoff_coefficients), field(row.critical_temperature), field(row.recession);
        field(row.initial_runoff), field(row.precipitation_threshold), field(row.initial_x),
            field(row.initial_y);
        field(row.comments);
    }

    bool operator==(const Simulation&) const = default;
};

/// Observed variables of one zone and day. Missing values are NaN.
struct PhysicalRow {
    std::int16_t zone = 0;
    DayCount date = 0;
    float runoff = k_missing;         ///< measured discharge of the basin, m³/s or ft³/s
    float tmax = k_missing;           ///< °C or °F
    float tmin = k_missing;           ///< °C or °F
    float tavg = k_missing;           ///< °C or °F
    float precip = k_missing;         ///< cm or inches
    float sca = k_missing;            ///< snow covered fraction, 0 to 1
    float net_radiation = k_missing;  ///< carried along, used by no equation

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.zone), field(row.date), field(row.runoff), field(row.tmax), field(row.tmin),
            field(row.tavg);
        field(row.precip), field(row.sca), field(row.net_radiation);
    }
};

/// Model parameters of one zone and day. Missing values are NaN, or nothing for the switch.
struct ParameterRow {
    std::int16_t zone = 0;
    DayCount date = 0;
    float tcrit = k_missing;       ///< °C or °F above the degree-day base
    float lag_hours = k_missing;   ///< hours
    float lapse_rate = k_missing;  ///< °C per 100 m or °F per 1000 ft
    float an = k_missing;          ///< degree-day factor, cm or inches per degree day
    float cs = k_missing;          ///< runoff coefficient for snowmelt
    float cr = k_missing;          ///< runoff coefficient for rain
    std::optional<std::int16_t>
        rca;                    ///< 0: rain counts on the snow-free part alone; otherwise on the whole zone
    double xcoeff = k_missing;  ///< recession coefficient x
    double ycoeff = k_missing;  ///< recession coefficient y

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.zone), field(row.date), field(row.tcrit), field(row.lag_hours), field(row.lapse_rate);
        field(row.an), field(row.cs), field(row.cr), field(row.rca), field(row.xcoeff), field(row.ycoeff);
    }
};

/// Long-term normals of one zone and calendar month.
struct MonthlyRow {
    std::int16_t zone = 0;
    std::string month;  ///< "Jan" to "Dec"
    float tmax = k_missing;
    float tmin = k_missing;
    float tavg = k_missing;
    float precip = k_missing;

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.zone), field(row.month), field(row.tmax), field(row.tmin), field(row.tavg),
            field(row.precip);
    }
};

/// One climate scenario of a simulation.
struct ScenarioIndexRow {
    std::string simulation;
    std::string scenario;                   ///< the name of the scenario's table, or "None"
    std::optional<double> winter_end_date;  ///< day count; the default may hold half a day
    std::optional<double> creation_date;
    std::optional<std::string> comments;

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.simulation), field(row.scenario), field(row.winter_end_date), field(row.creation_date);
        field(row.comments);
    }
};

/// One edit row of a climate scenario, by code numbers.
struct ScenarioRow {
    std::optional<std::int32_t> variable;
    std::optional<DayCount> start;
    std::optional<DayCount> end;
    std::optional<std::int32_t> action;
    float factor = k_missing;
    std::optional<std::int32_t> zones;  ///< 0 all, 1 zone A ...

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.variable), field(row.start), field(row.end), field(row.action), field(row.factor);
        field(row.zones);
    }
};

}  // namespace nivora
