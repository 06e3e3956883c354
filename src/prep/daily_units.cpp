#include "prep/daily_units.h"

#include "base/text.h"

#include <array>

namespace nivora {
namespace {

/// The unit of a field: a word of the system of units, or a text that is the same in both.
struct UnitOfField {
    const char* field;
    const char* UnitWords::*word;
    const char* text;
};

constexpr UnitOfField in_words(const char* field, const char* UnitWords::*word) {
    return {field, word, nullptr};
}
constexpr UnitOfField as_text(const char* field, const char* text) { return {field, nullptr, text}; }

constexpr const char* k_fraction = "a fraction, 0 to 1";
constexpr const char* k_no_unit = "no unit";
constexpr const char* k_radiation = "a unit of your own; no equation uses it";

constexpr std::array k_units{
    as_text("Date", "mm/dd/yyyy"),
    in_words("Runoff", &UnitWords::discharge),
    in_words("ActualQ", &UnitWords::discharge),
    in_words("DailyQ", &UnitWords::discharge),
    in_words("DailyQPresent", &UnitWords::discharge),
    in_words("TotalMelt", &UnitWords::discharge),
    in_words("Tmax", &UnitWords::temperature),
    in_words("Tmin", &UnitWords::temperature),
    in_words("Tavg", &UnitWords::temperature),
    in_words("Tcrit", &UnitWords::temperature_above_base),
    in_words("ZoneDD", &UnitWords::degree_days),
    in_words("Precip", &UnitWords::depth_word),
    in_words("Cpr", &UnitWords::depth_word),
    in_words("SumAT", &UnitWords::depth_word),
    in_words("NewMelt", &UnitWords::depth_word),
    in_words("M1S", &UnitWords::depth_word),
    in_words("aT", &UnitWords::depth_word),
    in_words("SnowOnStore", &UnitWords::depth_word),
    in_words("ZonalMelt", &UnitWords::depth_word),
    in_words("MDCincl", &UnitWords::depth_word),
    in_words("MDCexcl", &UnitWords::depth_word),
    in_words("MDCexclWA", &UnitWords::depth_word),
    in_words("MDCexclWAnew", &UnitWords::depth_word),
    in_words("AZMincl", &UnitWords::depth_word),
    in_words("AZMexcl", &UnitWords::depth_word),
    in_words("AZMexclWA", &UnitWords::depth_word),
    in_words("AZMwork", &UnitWords::depth_word),
    as_text("MeltOffset", "number of a summer day"),
    as_text("SCA", k_fraction),
    as_text("SCAclim", k_fraction),
    as_text("SCAclimWA", k_fraction),
    as_text("SCAclimWAMA", k_fraction),
    as_text("NetRadiation", k_radiation),
    as_text("NetRad", k_radiation),
    in_words("LapseRate", &UnitWords::lapse_rate),
    in_words("LR", &UnitWords::lapse_rate),
    in_words("AN", &UnitWords::degree_day_factor),
    as_text("LagTime", "hours"),
    as_text("CS", k_fraction),
    as_text("CR", k_fraction),
    as_text("RCA", "0 or 1"),
    as_text("Xcoeff", k_no_unit),
    as_text("Ycoeff", k_no_unit),
};

}  // namespace

std::string daily_unit(std::string_view field, Units units) {
    constexpr std::string_view k_changed_climate = "CC";
    for (const UnitOfField& unit : k_units) {
        const bool changed = field.size() > k_changed_climate.size() && field.ends_with(k_changed_climate) &&
                             same_name(field.substr(0, field.size() - k_changed_climate.size()), unit.field);
        if (changed || same_name(field, unit.field))
            return unit.text != nullptr ? unit.text : unit_words(units).*unit.word;
    }
    return {};
}

}  // namespace nivora
