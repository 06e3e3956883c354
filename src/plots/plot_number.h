// The plots by number, which is their position in the plot list.
#pragma once

namespace nivora {

/// Position 17 of the list is a row of dashes.
enum class PlotNumber {
    Runoff = 1,
    SnowCover,
    Temperatures,
    DegreeDays,
    Precipitation,
    CriticalTemperature,
    LagTime,
    LapseRate,
    DegreeDayFactors,
    SnowCoefficients,
    RainCoefficients,
    RainArea,
    PotentialMelt,
    DepletionOverMelt,
    AccumulatedMelt,
    RunoffComponents,
    Dashes,
    RunoffComparison,
    CoverComparison,
    DepletionCutoff,
    ChangedAccumulatedMelt,
    DepletionComparison,
    WaterEquivalent
};

inline constexpr int k_last_plot = 23;

/// The number of a plot, 1 to 23.
[[nodiscard]] constexpr int number_of(PlotNumber plot) { return static_cast<int>(plot); }

/// Whether the x axis counts depths of melt instead of days: plots 14, 20 and 22.
[[nodiscard]] constexpr bool has_number_axis(PlotNumber plot) {
    return plot == PlotNumber::DepletionOverMelt || plot == PlotNumber::DepletionCutoff ||
           plot == PlotNumber::DepletionComparison;
}

/// Whether a plot shows two hydrographs of the basin: plots 1 and 18.
[[nodiscard]] constexpr bool shows_runoff(PlotNumber plot) {
    return plot == PlotNumber::Runoff || plot == PlotNumber::RunoffComparison;
}

}  // namespace nivora
