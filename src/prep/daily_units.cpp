#include "prep/daily_units.h"

#include "base/text.h"
#include "store/basin_store.h"

#include <array>

namespace nivora {
namespace {

struct UnitOfField {
    const char* field;
    const char* metric;
    const char* english;
};

constexpr const char* k_runoff = "m³/s";
constexpr const char* k_english_runoff = "ft³/s";
constexpr const char* k_fraction = "a fraction, 0 to 1";
constexpr const char* k_no_unit = "no unit";
constexpr const char* k_radiation = "a unit of your own; no equation uses it";
constexpr const char* k_rain_switch = "0 or 1";

constexpr std::array k_units{
    UnitOfField{"Date", "mm/dd/yyyy", "mm/dd/yyyy"},
    UnitOfField{"Runoff", k_runoff, k_english_runoff},
    UnitOfField{"ActualQ", k_runoff, k_english_runoff},
    UnitOfField{"DailyQ", k_runoff, k_english_runoff},
    UnitOfField{"DailyQPresent", k_runoff, k_english_runoff},
    UnitOfField{"TotalMelt", k_runoff, k_english_runoff},
    UnitOfField{"Tmax", "°C", "°F"},
    UnitOfField{"Tmin", "°C", "°F"},
    UnitOfField{"Tavg", "°C", "°F"},
    UnitOfField{"Tcrit", "°C above 0 °C", "°F above 32 °F"},
    UnitOfField{"ZoneDD", "degree days, °C", "degree days, °F"},
    UnitOfField{"Precip", "cm", "inches"},
    UnitOfField{"Cpr", "cm", "inches"},
    UnitOfField{"SumAT", "cm", "inches"},
    UnitOfField{"NewMelt", "cm", "inches"},
    UnitOfField{"M1S", "cm", "inches"},
    UnitOfField{"aT", "cm", "inches"},
    UnitOfField{"SnowOnStore", "cm", "inches"},
    UnitOfField{"ZonalMelt", "cm", "inches"},
    UnitOfField{"MDCincl", "cm", "inches"},
    UnitOfField{"MDCexcl", "cm", "inches"},
    UnitOfField{"MDCexclWA", "cm", "inches"},
    UnitOfField{"MDCexclWAnew", "cm", "inches"},
    UnitOfField{"AZMincl", "cm", "inches"},
    UnitOfField{"AZMexcl", "cm", "inches"},
    UnitOfField{"AZMexclWA", "cm", "inches"},
    UnitOfField{"AZMwork", "cm", "inches"},
    UnitOfField{"MeltOffset", "number of a summer day", "number of a summer day"},
    UnitOfField{"SCA", k_fraction, k_fraction},
    UnitOfField{"SCAclim", k_fraction, k_fraction},
    UnitOfField{"SCAclimWA", k_fraction, k_fraction},
    UnitOfField{"SCAclimWAMA", k_fraction, k_fraction},
    UnitOfField{"NetRadiation", k_radiation, k_radiation},
    UnitOfField{"NetRad", k_radiation, k_radiation},
    UnitOfField{"LapseRate", "°C per 100 m", "°F per 1000 ft"},
    UnitOfField{"LR", "°C per 100 m", "°F per 1000 ft"},
    UnitOfField{"AN", "cm/(°C·day)", "inches/(°F·day)"},
    UnitOfField{"LagTime", "hours", "hours"},
    UnitOfField{"CS", k_fraction, k_fraction},
    UnitOfField{"CR", k_fraction, k_fraction},
    UnitOfField{"RCA", k_rain_switch, k_rain_switch},
    UnitOfField{"Xcoeff", k_no_unit, k_no_unit},
    UnitOfField{"Ycoeff", k_no_unit, k_no_unit},
};

}  // namespace

std::string daily_unit(std::string_view field, int units_code) {
    constexpr std::string_view k_changed_climate = "CC";
    for (const UnitOfField& unit : k_units) {
        const bool changed = field.size() > k_changed_climate.size() && field.ends_with(k_changed_climate) &&
                             same_name(field.substr(0, field.size() - k_changed_climate.size()), unit.field);
        if (changed || same_name(field, unit.field))
            return units_code == k_english ? unit.english : unit.metric;
    }
    return {};
}

}  // namespace nivora
