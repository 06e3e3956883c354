#include "studies/objective.h"

#include "base/text.h"

#include <algorithm>
#include <array>

namespace nivora {
namespace {

template <typename Number>
std::optional<double> as_number(std::optional<Number> value) {
    if (!value) return std::nullopt;
    return static_cast<double>(*value);
}

std::optional<double> kling_gupta_2009(Series measured, Series computed) {
    const auto parts = kling_gupta(measured, computed);
    return parts ? std::optional{parts->efficiency} : std::nullopt;
}

std::optional<double> kling_gupta_2012(Series measured, Series computed) {
    const auto parts = modified_kling_gupta(measured, computed);
    return parts ? std::optional{parts->efficiency} : std::nullopt;
}

constexpr std::array k_objectives{
    Objective{"R2", "R2", 1.0, [](Series m, Series c) { return as_number(run_determination(m, c)); }},
    Objective{"NSE", "NSE", 1.0, nash_sutcliffe},
    Objective{"NSE of logs", "NSElog", 1.0, logarithmic_nash_sutcliffe},
    Objective{"KGE", "KGE", 1.0, kling_gupta_2009},
    Objective{"modified KGE", "KGEmodified", 1.0, kling_gupta_2012},
    Objective{"RMSE", "RMSE", 0.0,
              [](Series m, Series c) { return std::optional{root_mean_square_error(m, c)}; }},
    Objective{"MAE", "MAE", 0.0, [](Series m, Series c) { return std::optional{mean_absolute_error(m, c)}; }},
    Objective{"volume difference", "VolumeDifference", 0.0,
              [](Series m, Series c) { return as_number(run_volume_difference(m, c)); }}};

}  // namespace

std::span<const Objective> objectives() { return k_objectives; }

const Objective* find_objective(std::string_view name) {
    const auto* found =
        std::find_if(k_objectives.begin(), k_objectives.end(), [&](const Objective& objective) {
            return same_name(objective.name, trimmed(name)) || same_name(objective.key, trimmed(name));
        });
    return found == k_objectives.end() ? nullptr : found;
}

}  // namespace nivora
