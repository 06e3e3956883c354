#include "engine/results_summary.h"

namespace nivora {

std::array<std::string, 6> statistics_labels(int units_code) {
    const bool english = units_code == k_english;
    const std::string volume = english ? " (10^6 f³)" : " (10^6 m³)";
    const std::string discharge = english ? " (f³/s): " : " (m³/s): ";
    return {"Measured Runoff Volume" + volume, "Average Measured Runoff" + discharge,
            "Computed Runoff Volume" + volume, "Average Computed Runoff " + discharge,
            "Volume Difference (%): ",         "Coefficient of Determination (R²):"};
}

std::array<float, 6> statistics_values(const RunState& run) {
    return {run.MeasuredVolume, run.AvgMeasuredQ,     run.ComputedVolume,
            run.AvgComputedQ,   run.VolumeDifference, run.CoefficientR2};
}

std::string statistics_caption(const RunState& run) {
    std::string caption = "Statistics, " + run.RunTitle;
    if (run.RunKind < k_melt_season_simulation) {
        caption += " (updating every " + std::to_string(run.UpdateInterval) + " days)";
    }
    if (run.NoSnow) caption += "  {no snow}";
    return caption;
}

}  // namespace nivora
