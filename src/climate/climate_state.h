// The values that a climate evaluation keeps from step to step.
#pragma once

#include "base/calendar.h"

#include <array>
#include <optional>
#include <string>

namespace nivora {

inline constexpr int k_climate_steps = 6;

/// Rows and columns of the seasonal summary.
enum class SummaryRow { Measured, Computed, ClimateAffected };
enum class SummarySeason { Winter, Summer, Year };

/// The six statistics of a step, as the statistics grid shows them; empty where a step has none.
struct StepStatistics {
    float measured_volume = 0.0F;  ///< 10^6 m³ or 10^6 ft³
    float average_measured = 0.0F;
    float computed_volume = 0.0F;
    float average_computed = 0.0F;
    std::optional<float> volume_difference;  ///< percent; not in step 6
    std::optional<float> r2;                 ///< not in step 6
};

/// The values of an evaluation from its first step until Done or Abort.
struct ClimateState {
    std::string scenario;          ///< the chosen scenario; step 1 may use results edited by hand instead
    DayCount WinterEndDate = 0;    ///< last day of the winter
    bool reuse_results = false;    ///< use the climate changes in the results
    std::string ScenarioComments;  ///< for the printed scenario
    DayCount SummerStartDate = 0;  ///< copied in step 6; used by plots
    int steps_done = 0;            ///< 0 to 6
    std::array<std::optional<StepStatistics>, k_climate_steps + 1> statistics;  ///< by step, 1, 2, 3 and 6

    /// A cell of the seasonal summary; the year is the sum of the known seasons. Empty before its step.
    [[nodiscard]] std::optional<float> summary(SummaryRow row, SummarySeason season) const;
};

}  // namespace nivora
