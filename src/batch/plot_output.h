// The files of the plot command: a picture, the curves as text, the flow file.
#pragma once

#include "batch/plot_command.h"
#include "plots/draw_plot.h"

#include <string>
#include <vector>

namespace nivora {

/// What the files are made from.
struct PlotResult {
    Plot plot;
    double now = 0.0;               ///< date and time on the plot
    std::vector<std::string> flow;  ///< lines of the flow file, if it is asked for
};

/// Refuses outputs that would replace a basin. @throws FileError
void refuse_plot_outputs(const PlotCommand& command);

/// Whether two of the outputs have the same name.
[[nodiscard]] bool has_same_outputs(const PlotCommand& command);

/// Writes those files that are asked for, each whole or not at all. They take their places once all of them
/// are whole. @throws FileError
void write_plot_files(const PlotCommand& command, const PlotResult& result);

}  // namespace nivora
