#include "plots/plot_words.h"

#include "base/number_text.h"
#include "base/text.h"
#include "plots/plot_boxes.h"

#include <fmt/format.h>

#include <cmath>

namespace nivora {
namespace {

std::string name_of(const PlotCurve& curve) {
    return std::string{trimmed(curve.heading.empty() ? curve.name : curve.heading)};
}

std::string place(const Plot& plot, const PlotPoint& point) {
    return fmt::format("{} at {}", single_text(point.y), trimmed(x_text(plot, as_double(point.x))));
}

std::string curve_words(const Plot& plot, const PlotCurve& curve) {
    const PlotPoint* lowest = nullptr;
    const PlotPoint* highest = nullptr;
    for (const PlotPoint& point : curve.points) {
        if (std::isnan(point.y) || point.x < plot.frame.x_min || point.x > plot.frame.x_max) continue;
        if (lowest == nullptr || point.y < lowest->y) lowest = &point;
        if (highest == nullptr || point.y > highest->y) highest = &point;
    }
    if (lowest == nullptr) return fmt::format(" {}: no values.", name_of(curve));
    return fmt::format(" {}: lowest {}, highest {}.", name_of(curve), place(plot, *lowest),
                       place(plot, *highest));
}

std::string axis_words(const Plot& plot) {
    const std::string x_label{trimmed(plot.x_label)};
    return fmt::format(" {} from {} to {}. {} from {} to {}.", x_label.empty() ? "Days" : x_label,
                       trimmed(x_text(plot, as_double(plot.frame.x_min))),
                       trimmed(x_text(plot, as_double(plot.frame.x_max))), trimmed(plot.y_label),
                       single_text(plot.frame.y_min), single_text(plot.frame.y_max));
}

}  // namespace

std::string plot_words(const Plot& plot) {
    std::string words = plot.head.title + ".";
    if (!plot.head.zone_label.empty()) words += fmt::format(" {}.", trimmed(plot.head.zone_label));
    if (has_no_data(plot)) return words + " There is nothing to show.";
    words += axis_words(plot);
    for (const PlotCurve& curve : plot.curves) words += curve_words(plot, curve);
    for (const PlotBar& bar : plot.bars)
        words += fmt::format(" {}: {}.", trimmed(bar.name), single_text(bar.top - bar.bottom));
    if (plot.zoomed) words += " A part of the plot is shown.";
    return words;
}

}  // namespace nivora
