// What a study may change: a variable of a simulation within a range.
#pragma once

#include "studies/adjustments.h"

#include <string>
#include <string_view>
#include <variant>

namespace nivora {

/// A variable that is changed by any number of a range, on some days of some zones.
struct FreeRange {
    std::string text = {};  ///< as the user gave it
    StudyVariable variable = StudyVariable::DegreeDayFactor;
    AdjustAction action = AdjustAction::Multiply;
    double low = 1.0;
    double high = 1.0;  ///< not below `low`
    ZoneSet zones = {};
    std::optional<Period> days = {};  ///< all days if not set

    [[nodiscard]] Adjustment at(double number) const { return {variable, action, number, zones, days}; }
};

/// Reads VARIABLE:ACTION:LOW..HIGH:ZONES[:FIRST..LAST]. The variable is a text of the scenario grid or the
/// name of a field, in singular or plural; the action is set, add or multiply; zones are All, or letters or
/// numbers with commas between them; the days are yyyy-mm-dd. Low and high may be equal.
///
/// @param inputs of the simulation: its zones and options
/// @return the range, or what is wrong with the text, in one sentence without its end
[[nodiscard]] std::variant<FreeRange, std::string> read_free_range(std::string_view text,
                                                                   const BasinInputs& inputs);

}  // namespace nivora
