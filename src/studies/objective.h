// The measures that a study can make best.
#pragma once

#include "studies/measures.h"

#include <optional>
#include <span>
#include <string_view>

namespace nivora {

/// A measure, and what a search makes small for it.
struct Objective {
    const char* name;  ///< as the user gives it, such as "KGE"
    const char* key;   ///< the measure's key in a table of measures, such as "KGE"
    double best;       ///< of the measure
    /// Nothing where the series have no such measure.
    std::optional<double> (*value)(Series measured, Series computed);

    /// How far a value lies from the best one, 0 or more.
    [[nodiscard]] double cost(double reached) const {
        return reached < best ? best - reached : reached - best;
    }
};

/// All objectives, in the order of the table of measures.
[[nodiscard]] std::span<const Objective> objectives();
/// By name or key, in upper or lower case; null for any other text.
[[nodiscard]] const Objective* find_objective(std::string_view name);

}  // namespace nivora
