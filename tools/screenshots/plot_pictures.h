// Pictures of the plot window.
#pragma once

#include <QWidget>
#include <functional>
#include <string>

namespace nivora {

/// Draws a widget into a picture file.
using Draw = std::function<void(QWidget& widget, const std::string& name)>;

/// Draws every plot that the window offers now, for the zone that it shows first, as "plot-<prefix>01.png"
/// ...
void draw_offered_plots(QWidget& window, const std::string& prefix, const Draw& draw);
/// Draws a zoom by the mouse, the panels at other places, data points and grid lines, a label with a value.
void draw_plot_work(QWidget& window, const Draw& draw);

}  // namespace nivora
