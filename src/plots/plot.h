// A plot as a value: what stands on it, whatever it is drawn on. Everything that changes its view (zoom,
// typed maxima) makes another value; drawing replays it.
#pragma once

#include "base/calendar.h"
#include "base/single.h"
#include "plots/plot_number.h"

#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace nivora {

/// A point of a curve: x a day count or a depth of melt, y in the unit of the y axis; NaN if y is missing.
struct PlotPoint {
    float x = 0.0F;
    float y = k_missing;
};

/// How the style of a curve is found.
enum class CurveMode {
    Own = 0,     ///< style and width of its line; a filled band of plot 16 is outlined with dashes
    Solid = 1,   ///< style 0, width 1
    Dotted = 3,  ///< style 2, width 1
    Fifth = 23   ///< colour and width of line 5, style 0
};

/// A curve of a pass. Curves are drawn in their order.
struct PlotCurve {
    std::string name;     ///< without a suffix: "Zone A", "AZMexcl ("
    std::string heading;  ///< the name in the text export, with the suffix of the legend
    int zone = 0;         ///< from 1; 0 if the curve is the basin's
    int pass = 1;         ///< 1, or 2 for the second series of plots 3 and 19
    int line = 1;         ///< row of the line table, from 1
    CurveMode mode = CurveMode::Own;
    std::vector<PlotPoint> points;
};

/// The values of `PlotBounds`.
struct PlotFrame {
    float x_min = 0.0F;
    float x_max = 0.0F;
    float y_min = 0.0F;
    float y_max = 0.0F;
    float legend_rows = 2.0F;  ///< 1 or 2
    /// x minimum, x maximum and y maximum as the bounds query gave them; nothing in plot 23.
    std::optional<std::array<float, 3>> queried = {};
};

/// Area between a curve of plot 16 and the one below it.
struct PlotBand {
    int band = 1;          ///< 1 to 3, from the bottom; the first stands on the x axis
    int line = 1;          ///< row of the line table, from 1
    bool filled = false;   ///< whether it has a height at the last point
    float seed_y = -1.0F;  ///< its middle at the last point; -1 if it is not filled
};

/// A bar of plot 23, not clipped at the frame.
struct PlotBar {
    std::string name;
    int line = 1;  ///< row of the line table, from 1
    float x1 = 0.0F;
    float x2 = 0.0F;
    float bottom = 0.0F;
    float top = 0.0F;
};

struct LegendRow {
    std::string text;
    int line = 1;        ///< row of the line table, from 1; 0 for the text colour
    bool sample = true;  ///< false for "Total", which has no line
    /// The curve that the sample shows; nothing for a bar and "Total".
    std::optional<std::size_t> curve = {};
};

/// Which days the text in the top left corner names.
enum class PeriodLine {
    None,
    ToDayBefore,  ///< to the day before the end of the frame
    ToEnd         ///< to the end of the frame
};

/// The texts around the frame.
struct PlotHead {
    std::string title;     ///< `PlotLabels` 0
    std::string subtitle;  ///< `PlotLabels` 1: file and simulation
    PeriodLine period = PeriodLine::None;
    std::string zone_label;         ///< as drawn; empty in plots 1 and 18
    std::string export_zone_label;  ///< the same in the text export, "Basinwide" in plots 1 and 18
    std::string basin_name;
    std::string scenario_line;  ///< simulation, at climate steps with the scenario
    int step = 0;               ///< climate step
    std::string run_kind;       ///< drawn in plots 1 and 18; otherwise empty
    int update_interval = 0;    ///< days; 0 without updating, and where the run kind is not drawn
    bool no_snow = false;       ///< whether "(no snow)" is drawn
};

/// A caption of the run summary with its value, and the line whose colour both have; 0 for the text colour.
struct RunSummaryRow {
    std::string caption;
    std::string value;
    int line = 0;
    bool millions = false;  ///< a 6 stands as exponent behind the "10" of the caption
};

struct Plot {
    PlotNumber number = PlotNumber::Runoff;
    std::optional<int> zone;  ///< from 1; zone count + 1 for all; nothing if the plot has no zone list
    PlotHead head;
    std::string y_label;  ///< `YAxisLabel`
    std::string x_label;  ///< `XAxisLabel`; empty if the x axis counts days
    PlotFrame frame;
    std::vector<PlotCurve> curves;
    std::vector<PlotBand> bands;  ///< plot 16, not zoomed
    std::vector<PlotBar> bars;    ///< plot 23, the uppermost first
    float bars_total = 0.0F;      ///< plot 23: the water equivalent of the zone, top of the bars
    float melt_total = 0.0F;      ///< plot 23: the whole accumulated melt, from which the curve falls
    std::vector<LegendRow> legend;
    std::vector<RunSummaryRow> summary;  ///< plots 1 and 18
    bool zoomed = false;
};

/// Whether the frame has no range in x or y: then only the head is drawn.
[[nodiscard]] inline bool has_no_data(const Plot& plot) {
    return !(plot.frame.x_max > plot.frame.x_min) || !(plot.frame.y_max > plot.frame.y_min);
}

/// Why there is no plot.
struct PlotRefusal {
    enum class Kind {
        ClimateStep,  ///< no plots during steps 4 and 5
        NotOffered,   ///< the plot list does not offer it now
        Unable,       ///< its data can't be plotted; the text is shown on the surface
        Zoom          ///< no points in the rectangle
    };
    Kind kind = Kind::Unable;
    std::string text;
};

}  // namespace nivora
