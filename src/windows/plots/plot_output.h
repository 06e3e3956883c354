// What leaves the plot window: files, the clipboard, paper.
#pragma once

#include "paint/plot_picture.h"
#include "session/file_names.h"

#include <optional>

class QWidget;

namespace nivora {

struct WindowContext;

/// The plot as the window shows it.
struct ShownPlot {
    Plot plot;
    DrawOptions options;   ///< with the places of the panels; neither panel is switched on
    PictureSize size;      ///< of the picture on the screen
    bool summary = false;  ///< whether the window shows the run summary
};

/// Asks for a file and saves the plot in the form of the filter that the user chose: a picture with the
/// legend, the curves as a table, or a flow file. A file is complete or unchanged; an error is shown, and the
/// plot stays.
///
/// @return the form of the file that was written; nothing if none was
std::optional<PlotForm> save_plot(const WindowContext& context, QWidget* window, const ShownPlot& shown);

/// What became of a copy.
enum class PlotCopy {
    Copied,
    NoRoom,  ///< the system has no room for the picture; the clipboard is unchanged
    Refused  ///< the clipboard does not hold the picture: another program keeps it, or has taken it at once
};

/// Puts the picture on the clipboard with the legend, and with the summary if the window shows it.
[[nodiscard]] PlotCopy copy_plot(const ShownPlot& shown);

/// Prints the picture with the legend, and with the summary if the window shows it.
///
/// @return whether it was printed
bool print_plot(const WindowContext& context, QWidget* window, const ShownPlot& shown);

}  // namespace nivora
