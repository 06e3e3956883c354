// A plot on paper: its place on a page, and its print. Everything here needs a QGuiApplication, for its
// fonts.
#pragma once

#include "paint/paint_pages.h"
#include "plots/draw_plot.h"

#include <filesystem>
#include <optional>
#include <vector>

namespace nivora {

/// A plot as a window shows it.
struct PlotPrint {
    const Plot& plot;
    DrawOptions options;  ///< with the panels that are painted, and their places
    SurfaceSize size;     ///< of the surface in the window
};

/// The options with the panels painted into the picture, at the places that they have in a window of this
/// size. Without them each surface would choose its own.
///
/// @param summary whether the run summary is painted, too
[[nodiscard]] DrawOptions with_panels(const Plot& plot, DrawOptions options, SurfaceSize size, bool summary);

/// The message that the margins leave less than an inch of a page in one direction; nothing if there is room.
[[nodiscard]] std::optional<Message> plot_page_refusal(const PageMetrics& page);

/// The question whether a plot that is larger than the room between the margins is to be compressed; nothing
/// if it fits.
[[nodiscard]] std::optional<Message> plot_overflow_question(const PageMetrics& page, SurfaceSize size);

/// Where and how a plot stands on a page.
struct PlotPlace {
    double left = 0.0;  ///< twips from the edges of the paper
    double top = 0.0;
    double scale = 1.0;        ///< of a point of the surface on paper; 1 for 1/96 inch
    SurfaceSize surface = {};  ///< on which the plot is drawn, in its points
};

/// At the upper left corner between the margins. A plot that is too large fills the whole room: its surface
/// takes the shape of that room, so that letters and lines become smaller without being distorted.
[[nodiscard]] PlotPlace plot_place(const PageMetrics& page, SurfaceSize size);

/// Paints a plot on a page of a device that was set up. @return false if the device refuses
[[nodiscard]] bool paint_plot(PaintedDevice& device, const PlotPrint& print);

/// Writes a PDF file of one page, whole or not at all.
///
/// @param never files that must not be replaced, whatever name or link leads to them
/// @return the error; nothing if the file was written
[[nodiscard]] std::optional<Message> write_plot_pdf(const std::filesystem::path& file, const PageSetup& setup,
                                                    const PlotPrint& print,
                                                    const std::vector<std::filesystem::path>& never = {});

}  // namespace nivora
