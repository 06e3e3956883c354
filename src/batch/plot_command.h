// The command that draws, writes and describes plots.
#pragma once

#include "batch/reported_state.h"
#include "plots/axes.h"
#include "plots/picture_form.h"
#include "plots/select_plot.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>
#include <optional>
#include <string>

namespace nivora {

/// The zone of --zone: a letter, or all zones.
struct AskedZone {
    int zone = 1;  ///< from 1; not used for all
    bool all = false;
};

/// A drag over the plot, as --zoom gives it: x of two corners and y of two corners.
struct AskedZoom {
    std::string x1;
    std::string x2;
    double y1 = 0.0;
    double y2 = 0.0;
};

struct PlotCommand {
    std::filesystem::path basin;
    std::string simulation;
    PlotNumber plot = PlotNumber::Runoff;
    ReportedRun run;
    MeltStop melt_stop = MeltStop::FirstDryDay;
    std::optional<AskedZone> zone;
    std::optional<AskedZoom> zoom;
    std::optional<std::string> x_max;  ///< a date, or a number
    std::optional<float> y_max;
    GridMode grid = GridMode::Vertical;
    bool data_points = false;
    std::optional<double> now;  ///< date and time on the plot
    PictureSize size;
    std::optional<std::filesystem::path> out;    ///< the picture
    std::optional<std::filesystem::path> text;   ///< the curves as a table
    std::optional<std::filesystem::path> slurp;  ///< the flow file
    bool describe = false;
    bool list = false;
    bool json = false;  ///< the list as JSON
    std::chrono::milliseconds wait{};
};

/// Draws the plot, writes its data and describes it as JSON, or lists the plots.
///
/// @return the exit status; 2 if the options name what the basin or the plot does not have
int plot_command(const PlotCommand& command, BatchDialogs& dialogs, std::ostream& out);

}  // namespace nivora
