// Changes of a basin's daily inputs for one evaluation of a study, in the words of a scenario's edits.
#pragma once

#include "base/calendar.h"
#include "engine/basin_inputs.h"
#include "engine/sim_results.h"
#include "store/basin_store.h"
#include "store/daily_table.h"
#include "store/schema.h"

#include <array>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace nivora {

/// A daily input that a study may change.
enum class StudyVariable {
    AverageTemperature,
    MaximumTemperature,
    MinimumTemperature,
    Precipitation,
    SnowCoveredArea,
    CriticalTemperature,
    LagTime,
    LapseRate,
    DegreeDayFactor,
    SnowCoefficient,
    RainCoefficient,
    RainContributingArea,
    RecessionX,
    RecessionY
};

inline constexpr std::array k_study_variables{StudyVariable::AverageTemperature,
                                              StudyVariable::MaximumTemperature,
                                              StudyVariable::MinimumTemperature,
                                              StudyVariable::Precipitation,
                                              StudyVariable::SnowCoveredArea,
                                              StudyVariable::CriticalTemperature,
                                              StudyVariable::LagTime,
                                              StudyVariable::LapseRate,
                                              StudyVariable::DegreeDayFactor,
                                              StudyVariable::SnowCoefficient,
                                              StudyVariable::RainCoefficient,
                                              StudyVariable::RainContributingArea,
                                              StudyVariable::RecessionX,
                                              StudyVariable::RecessionY};

/// "Degree Day Factor": the scenario grid's words where it has the variable.
[[nodiscard]] const char* study_variable_text(StudyVariable variable);
/// "An": the field of `PhysicalData` or of a parameter table.
[[nodiscard]] const char* study_variable_field(StudyVariable variable);
/// Whether the field belongs to `PhysicalData`; the others belong to the parameter table.
[[nodiscard]] bool is_physical(StudyVariable variable);
/// The variable of a text or of a field's name, in upper or lower case; nothing for any other text.
[[nodiscard]] std::optional<StudyVariable> study_variable(std::string_view text);

/// How the model uses a variable of a simulation.
enum class VariableUse {
    None,       ///< not at all, such as the maximum temperature of a simulation with average temperatures
    FirstZone,  ///< zone 1's values alone hold for the whole basin
    ByZone
};
[[nodiscard]] VariableUse variable_use(StudyVariable variable, const BasinInputs& inputs);

enum class AdjustAction { Set, Add, Multiply };

/// Zones by number, index 1 to 16; index 0 is not used.
using ZoneSet = std::array<bool, k_most_zones + 1>;

/// A change of one variable on some days of some zones, as the mass edits of the daily editor make it: a
/// missing value stays missing, except where a value is set.
struct Adjustment {
    StudyVariable variable = StudyVariable::DegreeDayFactor;
    AdjustAction action = AdjustAction::Multiply;
    double number = 1.0;
    ZoneSet zones = {};
    std::optional<Period> days = {};  ///< all days if not set
};

/// A variable's column of the results table: one of the two is set.
struct StudyColumn {
    std::vector<float> SimResults::*single;
    std::vector<double> SimResults::*twofold;
};
[[nodiscard]] StudyColumn study_column(StudyVariable variable);

/// Changes values of the adjustment's variable, whatever their zones and days are; a Single is rounded, the
/// switch of the contributing area to a whole number, ties to even.
///
/// @throws Fault 6 where a value is beyond what its field can hold; the values are partly changed
void adjust_values(std::span<float> values, const Adjustment& adjustment);
void adjust_values(std::span<double> values, const Adjustment& adjustment);

/// Changes the columns of the present climate, row by row; a Single is rounded, the switch of the
/// contributing area to a whole number, ties to even.
///
/// @param no_snow whether the run disregards the snow cover, which then stays 0
/// @throws Fault 6 where a value is beyond what its field can hold; the column is partly changed
void adjust(SimResults& results, const Adjustment& adjustment, bool no_snow);

}  // namespace nivora
