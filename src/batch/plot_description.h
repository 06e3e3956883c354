// Everything that stands on a plot as JSON, the same on every machine: docs/file-formats.md.
#pragma once

#include "batch/json.h"
#include "plots/axes.h"
#include "plots/plot.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// What a description needs besides the plot.
struct DescriptionOptions {
    GridMode grid = GridMode::Vertical;
    bool data_points = false;
    double now = 0.0;                              ///< date and time on the plot
    int zone_count = 1;                            ///< of the basin
    std::optional<std::vector<std::string>> flow;  ///< lines of the flow file, plots 1 and 18
};

[[nodiscard]] Json describe_plot(const Plot& plot, const DescriptionOptions& options);

/// A plot that is refused.
[[nodiscard]] Json describe_refusal(PlotNumber plot, int step, const PlotRefusal& refusal);

}  // namespace nivora
