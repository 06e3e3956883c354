#include "plots/legend.h"

#include "base/number_text.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace nivora {
namespace {

constexpr std::string_view k_none = " (none) ";
constexpr std::string_view k_value = "##.##";

/// What stands after the number of a value: the unit of the axis that counts depths.
std::string value_tail(const Plot& plot) {
    if (plot.number == PlotNumber::ChangedAccumulatedMelt) return ")";
    const bool depth_on_x = has_number_axis(plot.number);
    const std::string& label = depth_on_x ? plot.x_label : plot.y_label;
    // The labels begin with " (", which stands before the number here.
    return " " + label.substr(std::min<std::size_t>(label.size(), 2)) + (depth_on_x ? " at S=0)" : " ");
}

/// " (12.5 cm) ", or " (none) " for a number without a digit.
std::string value_text(const Plot& plot, double value, std::string_view pattern = k_value) {
    if (is_missing(value)) return std::string{k_none};
    std::string text = " (" + format_number(value, pattern) + value_tail(plot);
    const bool empty = text.find("(. ") != std::string::npos || text.find("(.)") != std::string::npos;
    return empty ? std::string{k_none} : text;
}

/// The last y of a curve that is not missing.
double last_value(const PlotCurve& curve) {
    const auto last = std::find_if(curve.points.rbegin(), curve.points.rend(),
                                   [](const PlotPoint& point) { return !is_missing(point.y); });
    return as_double(last == curve.points.rend() ? k_missing : last->y);
}

/// The x of the last point at which the cover is 0.
double melt_without_cover(const PlotCurve& curve) {
    const auto last = std::find_if(curve.points.rbegin(), curve.points.rend(),
                                   [](const PlotPoint& point) { return point.y == 0.0F; });
    return as_double(last == curve.points.rend() ? k_missing : last->x);
}

/// The height of a curve of plot 16 above the one below it, at its end.
double last_height(const Plot& plot, std::size_t curve) {
    const double below = curve == 0 ? 0.0 : last_value(plot.curves[curve - 1]);
    return last_value(plot.curves[curve]) - below;
}

std::string suffix(const Plot& plot, std::size_t curve) {
    switch (plot.number) {
        case PlotNumber::PotentialMelt:
        case PlotNumber::AccumulatedMelt:
        case PlotNumber::ChangedAccumulatedMelt: return value_text(plot, last_value(plot.curves[curve]));
        case PlotNumber::DepletionOverMelt:
        case PlotNumber::DepletionCutoff:
        case PlotNumber::DepletionComparison: return value_text(plot, melt_without_cover(plot.curves[curve]));
        case PlotNumber::RunoffComponents: return value_text(plot, last_height(plot, curve));
        case PlotNumber::CoverComparison: return " (before/after---)";
        case PlotNumber::WaterEquivalent: return value_text(plot, as_double(plot.melt_total));
        default: return {};
    }
}

/// A suffix replaces what the name says from its first " (" on; a name without a suffix stays whole.
std::string suffixed(const std::string& name, const std::string& suffix) {
    return suffix.empty() ? name : name.substr(0, name.find(" (")) + suffix;
}

/// The curve of the first pass that has the name of a curve of the second: both are of the same zone.
bool has_twin(const Plot& plot, const PlotCurve& curve) {
    return std::any_of(plot.curves.begin(), plot.curves.end(), [&](const PlotCurve& other) {
        return other.pass != curve.pass && other.name == curve.name;
    });
}

/// The two series of a zone in plot 3 share a row of the legend, but not a heading.
std::string heading(const Plot& plot, const PlotCurve& curve, const std::string& row_text) {
    if (plot.number != PlotNumber::Temperatures || !has_twin(plot, curve)) return row_text;
    return curve.name + (curve.pass == 1 ? ", Maximum Daily T" : ", Minimum Daily T") + plot.y_label;
}

void name_bars(Plot& plot) {
    const auto add = [&](const std::string& name, double value, int line, bool sample) {
        plot.legend.push_back(
            {.text = suffixed(name, value_text(plot, value)), .line = line, .sample = sample});
    };
    add("Total", as_double(plot.bars_total), 0, false);
    for (const PlotBar& bar : plot.bars)
        add(bar.name, as_double(bar.top) - as_double(bar.bottom), bar.line, true);
}

/// The last row of plot 16, in the colour of the line after its curves.
void name_components_total(Plot& plot) {
    plot.legend.push_back({.text = "Total" + value_text(plot, last_value(plot.curves.back()), "#.##"),
                           .line = static_cast<int>(plot.curves.size()) + 1,
                           .sample = false});
}

}  // namespace

void name_curves(Plot& plot) {
    plot.legend.clear();
    if (plot.number == PlotNumber::WaterEquivalent) name_bars(plot);
    for (std::size_t i = 0; i < plot.curves.size(); ++i) {
        const std::string text = suffixed(plot.curves[i].name, suffix(plot, i));
        plot.curves[i].heading = heading(plot, plot.curves[i], text);
        if (plot.curves[i].pass == 1 || !has_twin(plot, plot.curves[i]))
            plot.legend.push_back({.text = text, .line = plot.curves[i].line, .sample = true, .curve = i});
    }
    if (plot.number == PlotNumber::RunoffComponents && !plot.curves.empty()) name_components_total(plot);
}

}  // namespace nivora
