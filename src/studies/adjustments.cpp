#include "studies/adjustments.h"

#include "base/fault.h"
#include "base/single.h"
#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

/// A variable's names, and its column of the results table.
struct VariableInfo {
    StudyVariable variable;
    const char* text;
    const char* field;
    bool physical;
    std::vector<float> SimResults::*single;
    std::vector<double> SimResults::*twofold;  ///< set in the place of `single` for a Double
};

constexpr std::array<VariableInfo, k_study_variables.size()> k_infos{{
    {StudyVariable::AverageTemperature, "Average Temperature", "Tavg", true, &SimResults::TAvg, nullptr},
    {StudyVariable::MaximumTemperature, "Maximum Temperature", "Tmax", true, &SimResults::TMax, nullptr},
    {StudyVariable::MinimumTemperature, "Minimum Temperature", "Tmin", true, &SimResults::Tmin, nullptr},
    {StudyVariable::Precipitation, "Precipitation", "Precip", true, &SimResults::Precip, nullptr},
    {StudyVariable::SnowCoveredArea, "Snow Covered Area", "SCA", true, &SimResults::SCA, nullptr},
    {StudyVariable::CriticalTemperature, "Critical Temperature", "Tcrit", false, &SimResults::Tcrit, nullptr},
    {StudyVariable::LagTime, "Lag Time", "LagTime", false, &SimResults::LagTime, nullptr},
    {StudyVariable::LapseRate, "Temperature Lapse Rate", "LapseRate", false, &SimResults::LR, nullptr},
    {StudyVariable::DegreeDayFactor, "Degree Day Factor", "An", false, &SimResults::AN, nullptr},
    {StudyVariable::SnowCoefficient, "Runoff Coefficient (Snow)", "Cs", false, &SimResults::CS, nullptr},
    {StudyVariable::RainCoefficient, "Runoff Coefficient (Rain)", "Cr", false, &SimResults::CR, nullptr},
    {StudyVariable::RainContributingArea, "Rainfall Contributing Area", "RCA", false, &SimResults::RCA,
     nullptr},
    {StudyVariable::RecessionX, "Recession Coefficient x", "Xcoeff", false, nullptr, &SimResults::Xcoeff},
    {StudyVariable::RecessionY, "Recession Coefficient y", "Ycoeff", false, nullptr, &SimResults::YCoeff},
}};

const VariableInfo& info_of(StudyVariable variable) {
    return *std::find_if(k_infos.begin(), k_infos.end(),
                         [&](const VariableInfo& info) { return info.variable == variable; });
}

float stored_switch(double result) {
    if (is_missing(result)) return k_missing;
    const auto whole = to_integer16(result);
    if (!whole) throw overflow_fault();
    return static_cast<float>(*whole);
}

double stored_double(double result) {
    if (std::isinf(result)) throw overflow_fault();
    return result + 0.0;
}

/// A Single is checked behind the loop, which then can use vector instructions.
template <typename Change>
void change_singles(std::span<float> values, Change&& change) {
    unsigned beyond = 0;
    for (float& value : values) {
        const auto result = static_cast<float>(change(as_double(value)));
        beyond |= static_cast<unsigned>(std::isinf(result));
        value = result + 0.0F;  // as the file would give it back: a zero has no sign there
    }
    if (beyond != 0) throw overflow_fault();
}

template <typename Change>
void change_switches(std::span<float> values, Change&& change) {
    for (float& value : values) value = stored_switch(change(as_double(value)));
}

template <typename Change>
void change_doubles(std::span<double> values, Change&& change) {
    for (double& value : values) value = stored_double(change(value));
}

/// Calls the walk with the arithmetic of the action.
template <typename Walk>
void with_action(const Adjustment& adjustment, Walk&& walk) {
    const double number = adjustment.number;
    switch (adjustment.action) {
        case AdjustAction::Set: return walk([number](double /*value*/) { return number; });
        case AdjustAction::Add: return walk([number](double value) { return value + number; });
        case AdjustAction::Multiply: return walk([number](double value) { return value * number; });
    }
}

/// Calls the change for each run of rows on end that the adjustment touches.
template <typename Change>
void for_touched_rows(const SimResults& results, const Adjustment& adjustment, Change&& change) {
    const auto touched = [&](std::size_t row) {
        const auto zone = results.Zone[row];
        if (zone < 1 || zone > k_most_zones || !adjustment.zones.at(static_cast<std::size_t>(zone)))
            return false;
        const DayCount date = results.Date[row];
        return !adjustment.days || (date >= adjustment.days->start && date <= adjustment.days->end);
    };
    for (std::size_t first = 0; first < results.size(); ++first) {
        std::size_t behind = first;
        while (behind < results.size() && touched(behind)) ++behind;
        if (behind == first) continue;
        change(first, behind - first);
        first = behind;
    }
}

VariableUse use_of(bool basinwide) { return basinwide ? VariableUse::FirstZone : VariableUse::ByZone; }

}  // namespace

const char* study_variable_text(StudyVariable variable) { return info_of(variable).text; }

const char* study_variable_field(StudyVariable variable) { return info_of(variable).field; }

bool is_physical(StudyVariable variable) { return info_of(variable).physical; }

std::optional<StudyVariable> study_variable(std::string_view text) {
    const std::string_view name = trimmed(text);
    const auto found = std::find_if(k_infos.begin(), k_infos.end(), [&](const VariableInfo& info) {
        return same_name(info.text, name) || same_name(info.field, name);
    });
    return found == k_infos.end() ? std::nullopt : std::optional{found->variable};
}

VariableUse variable_use(StudyVariable variable, const BasinInputs& inputs) {
    switch (variable) {
        case StudyVariable::AverageTemperature:
            return inputs.temperature_max_min ? VariableUse::None : use_of(inputs.temperature_basinwide);
        case StudyVariable::MaximumTemperature:
        case StudyVariable::MinimumTemperature:
            return inputs.temperature_max_min ? VariableUse::FirstZone : VariableUse::None;
        case StudyVariable::Precipitation: return use_of(inputs.precipitation_basinwide);
        case StudyVariable::LapseRate:
            // With temperatures by zone the lapse rate does not enter the degree days.
            return inputs.temperature_basinwide ? use_of(inputs.lapse_rate_basinwide) : VariableUse::None;
        case StudyVariable::CriticalTemperature: return use_of(inputs.critical_temperature_basinwide);
        case StudyVariable::SnowCoefficient:
        case StudyVariable::RainCoefficient: return use_of(inputs.runoff_coefficients_basinwide);
        case StudyVariable::LagTime:
        case StudyVariable::RecessionX:
        case StudyVariable::RecessionY: return VariableUse::FirstZone;
        case StudyVariable::SnowCoveredArea:
        case StudyVariable::DegreeDayFactor:
        case StudyVariable::RainContributingArea: return VariableUse::ByZone;
    }
    return VariableUse::ByZone;
}

StudyColumn study_column(StudyVariable variable) {
    const VariableInfo& info = info_of(variable);
    return {info.single, info.twofold};
}

void adjust_values(std::span<float> values, const Adjustment& adjustment) {
    if (adjustment.variable == StudyVariable::RainContributingArea) {
        with_action(adjustment, [&](auto change) { change_switches(values, change); });
    } else {
        with_action(adjustment, [&](auto change) { change_singles(values, change); });
    }
}

void adjust_values(std::span<double> values, const Adjustment& adjustment) {
    with_action(adjustment, [&](auto change) { change_doubles(values, change); });
}

void adjust(SimResults& results, const Adjustment& adjustment, bool no_snow) {
    if (no_snow && adjustment.variable == StudyVariable::SnowCoveredArea) return;
    const StudyColumn column = study_column(adjustment.variable);
    for_touched_rows(results, adjustment, [&](std::size_t first, std::size_t count) {
        if (column.twofold != nullptr) {
            adjust_values(std::span{results.*column.twofold}.subspan(first, count), adjustment);
        } else {
            adjust_values(std::span{results.*column.single}.subspan(first, count), adjustment);
        }
    });
}

}  // namespace nivora
