#include "reports/run_figures.h"

#include "engine/results_summary.h"

namespace nivora {
namespace {

constexpr std::size_t k_present_summer = 3;
constexpr std::size_t k_changed_summer = 6;

bool computes_discharge(int step) { return step != 4 && step != 5; }

}  // namespace

RunFigures run_figures(const RunState& run) {
    RunFigures figures;
    figures.initial_runoff = run.InitialRunoff;
    figures.ending_stores = run.EndingStores.at(static_cast<std::size_t>(run.ClimateStep));
    figures.present_stores = run.EndingStores[k_present_summer];
    figures.changed_stores = run.EndingStores[k_changed_summer];
    if (!computes_discharge(run.ClimateStep)) return figures;
    const auto values = statistics_values(run);
    figures.measured_volume = values[0];
    figures.average_measured = values[1];
    figures.computed_volume = values[2];
    figures.average_computed = values[3];
    // Where these two cannot be computed, the run keeps those of an earlier one, which are not this report's.
    if (run.MeasuredVolume != 0.0F) figures.volume_difference = values[4];
    if (!run.former_r2) figures.r2 = values[5];
    return figures;
}

}  // namespace nivora
