#include "plots/draw_plot.h"

#include "plots/draw_data.h"
#include "plots/draw_frame.h"
#include "plots/draw_head.h"
#include "plots/draw_panels.h"

namespace nivora {
namespace {

/// Clears the surface; false if there is no room for anything on it.
bool clear(Surface& surface) {
    const SurfaceSize size = surface.size();
    if (!(size.width > 0.0) || !(size.height > 0.0)) return false;
    surface.rectangle({0.0, 0.0, size.width, size.height}, std::nullopt, Fill{k_white, k_solid_fill});
    return true;
}

}  // namespace

void draw(Surface& surface, const Plot& plot, const DrawOptions& options) {
    if (!clear(surface)) return;
    const std::vector<PlacedText> head = head_texts(surface, plot, options.now);
    for (const PlacedText& text : head) draw_text(surface, text);
    const PlotAxes axes = lay_out_axes(plot, options.grid);
    if (axes.no_data) return;
    const World world{axes.transform, surface.size()};
    draw_fills(surface, plot, world, options.lines);
    draw_frame(surface, plot, axes, head);
    draw_curves(surface, plot, axes, world, options);
    if (options.legend) paint_legend(surface, plot, options);
    if (options.summary) paint_summary(surface, plot, options);
}

void draw_refusal(Surface& surface, const PlotRefusal& refusal) {
    if (!clear(surface)) return;
    for (const PlacedText& text : refusal_texts(surface, refusal)) draw_text(surface, text);
}

}  // namespace nivora
