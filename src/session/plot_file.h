// Saves a plot as a file: asks for its name and form, and writes it.
#pragma once

#include "plots/plot.h"
#include "session/file_names.h"
#include "session/session.h"

#include <functional>
#include <optional>
#include <string>

namespace nivora {

/// Makes the content of a picture file; empty if the system has no room for it.
using PaintPlot = std::function<std::string(PlotForm form)>;

/// Asks for a file and writes the plot in the chosen form. The basin's file is open only while a flow file is
/// read from it. A file is complete or unchanged; what went wrong is shown.
///
/// @param plot  as it is viewed: a text holds the points of a zoom, a flow file always the whole period
/// @param now   date and time in the head of a text
/// @param paint called for the forms of pictures
/// @return the form of the file that was written; nothing if none was
std::optional<PlotForm> save_plot_file(Session& session, const Plot& plot, double now,
                                       const PaintPlot& paint);

}  // namespace nivora
