#include "prep/stated_units.h"

#include "base/text.h"
#include "prep/daily_units.h"

#include <array>
#include <span>

namespace nivora {
namespace {

enum class Quantity { None, Depth, Discharge, Temperature, Difference, Fraction, Time, LapseRate, Factor };

/// A unit by its names, the first of which is shown, and how a value becomes one of the Metric unit of its
/// quantity: (value + shift) * multiply / divide.
struct Unit {
    Quantity quantity = Quantity::None;
    std::array<std::string_view, 4> names = {};
    double shift = 0.0;
    double multiply = 1.0;
    double divide = 1.0;
};

// Exact by definition: 1 in = 2.54 cm, 1 ft = 0.3048 m, 1 °F = 1/1.8 °C, 0 °C = 273.15 K.
constexpr double k_cm_an_inch = 2.54;
constexpr double k_m_a_foot = 0.3048;
constexpr double k_degrees_f_a_degree_c = 1.8;
constexpr double k_cubic_feet = k_m_a_foot * k_m_a_foot * k_m_a_foot;

constexpr std::array k_units_of_quantities{
    Unit{Quantity::Depth, {"cm"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Depth, {"mm"}, 0.0, 1.0, 10.0},
    Unit{Quantity::Depth, {"m"}, 0.0, 100.0, 1.0},
    Unit{Quantity::Depth, {"in", "inch", "inches"}, 0.0, k_cm_an_inch, 1.0},
    Unit{Quantity::Discharge, {"m³/s", "m3/s", "cms"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Discharge, {"l/s"}, 0.0, 1.0, 1000.0},
    Unit{Quantity::Discharge, {"ft³/s", "ft3/s", "cfs"}, 0.0, k_cubic_feet, 1.0},
    Unit{Quantity::Temperature, {"°c", "c", "degc"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Temperature, {"°f", "f", "degf"}, -32.0, 1.0, k_degrees_f_a_degree_c},
    Unit{Quantity::Temperature, {"k"}, -273.15, 1.0, 1.0},
    Unit{Quantity::Difference, {"°c", "c", "degc"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Difference, {"°f", "f", "degf"}, 0.0, 1.0, k_degrees_f_a_degree_c},
    Unit{Quantity::Fraction, {"fraction"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Fraction, {"%", "percent"}, 0.0, 1.0, 100.0},
    Unit{Quantity::Time, {"hours", "hour", "h"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Time, {"days", "day", "d"}, 0.0, 24.0, 1.0},
    Unit{Quantity::LapseRate, {"°c/100m", "c/100m"}, 0.0, 1.0, 1.0},
    Unit{Quantity::LapseRate, {"°c/km", "c/km"}, 0.0, 1.0, 10.0},
    // A °F per 1000 ft is 1/1.8 °C per 304.8 m.
    Unit{Quantity::LapseRate, {"°f/1000ft", "f/1000ft"}, 0.0, 1.0, k_degrees_f_a_degree_c* k_m_a_foot * 10.0},
    Unit{Quantity::Factor, {"cm/°c/day", "cm/c/day", "cm/(°c·day)"}, 0.0, 1.0, 1.0},
    Unit{Quantity::Factor, {"mm/°c/day", "mm/c/day", "mm/(°c·day)"}, 0.0, 1.0, 10.0},
    // An inch per °F is 2.54 cm per 1/1.8 °C.
    Unit{Quantity::Factor,
         {"in/°f/day", "in/f/day", "inches/(°f·day)"},
         0.0,
         k_cm_an_inch* k_degrees_f_a_degree_c,
         1.0},
};

struct FieldQuantity {
    const char* field;
    Quantity quantity;
};

constexpr std::array k_fields{
    FieldQuantity{"Runoff", Quantity::Discharge},    FieldQuantity{"Tmax", Quantity::Temperature},
    FieldQuantity{"Tmin", Quantity::Temperature},    FieldQuantity{"Tavg", Quantity::Temperature},
    FieldQuantity{"Precip", Quantity::Depth},        FieldQuantity{"SCA", Quantity::Fraction},
    FieldQuantity{"Tcrit", Quantity::Difference},    FieldQuantity{"LagTime", Quantity::Time},
    FieldQuantity{"LapseRate", Quantity::LapseRate}, FieldQuantity{"An", Quantity::Factor},
    FieldQuantity{"Cs", Quantity::Fraction},         FieldQuantity{"Cr", Quantity::Fraction},
    FieldQuantity{"TMaxN", Quantity::Temperature},   FieldQuantity{"TMinN", Quantity::Temperature},
    FieldQuantity{"TAvgN", Quantity::Temperature},   FieldQuantity{"PrecipN", Quantity::Depth},
};

Quantity quantity_of(std::string_view field) {
    for (const FieldQuantity& known : k_fields) {
        if (same_name(known.field, field)) return known.quantity;
    }
    return Quantity::None;
}

/// A unit in the form in which units are compared: folded, without blanks.
std::string plain_unit(std::string_view unit) {
    std::string plain;
    for (const char character : folded_name(unit)) {
        if (character != ' ' && character != '\t') plain += character;
    }
    return plain;
}

const Unit* find_unit(Quantity quantity, std::string_view unit) {
    const std::string wanted = plain_unit(unit);
    for (const Unit& known : k_units_of_quantities) {
        if (known.quantity != quantity) continue;
        for (const std::string_view name : known.names) {
            if (!name.empty() && plain_unit(name) == wanted) return &known;
        }
    }
    return nullptr;
}

/// The unit of a quantity in a basin.
std::string_view own_unit(Quantity quantity, Units units) {
    const bool english = units == Units::English;
    switch (quantity) {
        case Quantity::Depth: return english ? "in" : "cm";
        case Quantity::Discharge: return english ? "ft3/s" : "m3/s";
        case Quantity::Temperature:
        case Quantity::Difference: return english ? "f" : "c";
        case Quantity::Fraction: return "fraction";
        case Quantity::Time: return "hours";
        case Quantity::LapseRate: return english ? "f/1000ft" : "c/100m";
        case Quantity::Factor: return english ? "in/f/day" : "cm/c/day";
        case Quantity::None: break;
    }
    return {};
}

}  // namespace

bool UnitConversion::is_identity() const {
    return before == 0.0 && multiply == 1.0 && divide == 1.0 && after == 0.0;
}

std::optional<UnitConversion> unit_conversion(std::string_view field, std::string_view unit,
                                              Units basin_units) {
    const std::string own = daily_unit(field, basin_units);
    if (!own.empty() && plain_unit(own) == plain_unit(unit)) return UnitConversion{};
    const Quantity quantity = quantity_of(field);
    const Unit* const from = find_unit(quantity, unit);
    const Unit* const into = find_unit(quantity, own_unit(quantity, basin_units));
    if (from == nullptr || into == nullptr) return std::nullopt;
    if (from == into) return UnitConversion{};
    return UnitConversion{.before = from->shift,
                          .multiply = from->multiply * into->divide,
                          .divide = from->divide * into->multiply,
                          .after = 0.0 - into->shift};
}

std::string units_of_field(std::string_view field) {
    std::string list;
    const Quantity quantity = quantity_of(field);
    if (quantity == Quantity::None) return list;
    for (const Unit& known : k_units_of_quantities) {
        if (known.quantity != quantity) continue;
        // Names are kept as they compare; a unit of temperature is written with a capital letter.
        std::string name{known.names.front()};
        if (const std::size_t degree = name.find("°"); degree != std::string::npos)
            name[degree + std::string_view{"°"}.size()] -= 'a' - 'A';
        if (name == "k") name = "K";
        list += (list.empty() ? "" : ", ") + name;
    }
    return list;
}

}  // namespace nivora
