#include "plots/draw_panels.h"

#include "plots/curve_walk.h"
#include "plots/draw_head.h"
#include "plots/panel_places.h"

#include <algorithm>
#include <array>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {
namespace {

constexpr double k_panel_font = 8.0;
constexpr double k_smallest_panel_font = 5.0;
/// A row is this many times as high as a line of its font.
constexpr double k_row = 1.2;
/// Space above the first and below the last row, in lines.
constexpr double k_margin = 1.0 / 3.0;

/// A sample is half as long as the longest text, within these limits: short ones don't show the dashes.
constexpr double k_shortest_sample = 40.0;
constexpr double k_longest_sample = 60.0;
constexpr double k_sample_height = 0.7;

constexpr Pen k_panel_outline{0xA0A0A0, 0, 1};
constexpr Fill k_panel_fill{k_white, k_solid_fill};

/// Font and columns of a panel: a sample or a caption, then a text.
struct PanelLayout {
    PlotFont font;
    double line_height = 0.0;
    double margin = 0.0;        ///< left, right and between the columns
    double first_column = 0.0;  ///< width of the samples or of the captions
    SurfaceSize size = {};

    [[nodiscard]] double row_centre(double top, std::size_t row) const {
        return top + k_margin * line_height + (static_cast<double>(row) + 0.5) * k_row * line_height;
    }
};

double panel_height(double line_height, std::size_t rows) {
    return (static_cast<double>(rows) * k_row + 2.0 * k_margin) * line_height;
}

/// The font of a panel, smaller where its rows would be higher than the surface.
PanelLayout panel_layout(const Surface& surface, std::size_t rows) {
    PanelLayout layout{.font = fitted_font(surface, {k_panel_font, false})};
    const auto measure = [&] { return surface.text_size("X", layout.font); };
    while (layout.font.size > k_smallest_panel_font &&
           panel_height(measure().height, rows) > surface.size().height)
        layout.font.size -= 0.5;
    layout.line_height = measure().height;
    layout.margin = measure().width;
    layout.size.height = panel_height(layout.line_height, rows);
    return layout;
}

template <typename Row, typename Text>
double widest(const Surface& surface, const std::vector<Row>& rows, const PlotFont& font, Text&& text) {
    double width = 0.0;
    for (const Row& row : rows) width = std::max(width, surface.text_size(text(row), font).width);
    return width;
}

void set_columns(PanelLayout& layout, double first, double second) {
    layout.first_column = first;
    layout.size.width = first + second + 3.0 * layout.margin;
}

PanelLayout legend_layout(const Surface& surface, const Plot& plot) {
    PanelLayout layout = panel_layout(surface, plot.legend.size());
    const double text = widest(surface, plot.legend, layout.font,
                               [](const LegendRow& row) -> std::string_view { return row.text; });
    set_columns(layout, std::clamp(text / 2.0, k_shortest_sample, k_longest_sample), text);
    return layout;
}

PanelLayout summary_layout(const Surface& surface, const Plot& plot) {
    PanelLayout layout = panel_layout(surface, plot.summary.size());
    const double caption = widest(surface, plot.summary, layout.font,
                                  [](const RunSummaryRow& row) -> std::string_view { return row.caption; });
    const double value = widest(surface, plot.summary, layout.font,
                                [](const RunSummaryRow& row) -> std::string_view { return row.value; });
    set_columns(layout, caption, value);
    return layout;
}

bool has_legend(const Plot& plot) { return !has_no_data(plot) && !plot.legend.empty(); }

bool has_summary(const Plot& plot) { return !has_no_data(plot) && !plot.summary.empty(); }

std::vector<SurfaceRectangle> head_boxes(const Surface& surface, const Plot& plot, double now) {
    std::vector<SurfaceRectangle> boxes;
    for (const PlacedText& text : head_texts(surface, plot, now)) boxes.push_back(text.box);
    return boxes;
}

SurfaceRectangle at_place(const Surface& surface, SurfacePoint place, SurfaceSize size) {
    return moved_inside({place.x, place.y, size.width, size.height}, surface.size());
}

Colour row_colour(const LineTable& lines, int line) {
    return line == 0 ? k_black : lines.at(static_cast<std::size_t>(line - 1)).colour;
}

/// Whether a row stands for an area: a bar, or a band of plot 16 unless a zoom shows the lines alone.
bool is_area(const Plot& plot, const LegendRow& row) {
    return row.sample && (!row.curve || !plot.bands.empty());
}

void paint_sample(Surface& surface, const Plot& plot, const LegendRow& row, const LineTable& lines,
                  const SurfaceRectangle& place) {
    if (is_area(plot, row)) {
        const LineAttribute& line = lines.at(static_cast<std::size_t>(row.line - 1));
        surface.rectangle(place, Pen{line.colour, 0, 1}, Fill{line.colour, line.fill});
    } else if (row.sample) {
        const double y = place.top + place.height / 2.0;
        const std::array ends{SurfacePoint{place.left, y}, SurfacePoint{place.left + place.width, y}};
        surface.line(ends, curve_pen(plot, plot.curves.at(*row.curve), lines));
    }
}

/// The 6 of "10 m³" in millions, raised into the two blanks that the caption has after "10".
void paint_exponent(Surface& surface, std::string_view caption, const PlotFont& font, SurfacePoint top_left,
                    Colour colour) {
    const std::size_t blanks = caption.find("10  ");
    if (blanks == std::string_view::npos) return;
    const SurfaceSize before = surface.text_size(caption.substr(0, blanks + 2), font);
    const PlotFont small{font.size * 0.7, font.bold};
    surface.text({top_left.x + before.width, top_left.y - before.height * 0.1}, "6", small, colour);
}

}  // namespace

SurfaceRectangle legend_rectangle(const Surface& surface, const Plot& plot, const DrawOptions& options) {
    if (!has_legend(plot)) return {};
    const SurfaceSize size = legend_layout(surface, plot).size;
    if (options.legend_place) return at_place(surface, *options.legend_place, size);
    using Column = PanelSpot::Column;
    using Row = PanelSpot::Row;
    constexpr std::array k_spots{
        PanelSpot{Column::Right, Row::Top},     PanelSpot{Column::Middle, Row::Top},
        PanelSpot{Column::Left, Row::Top},      PanelSpot{Column::Right, Row::Middle},
        PanelSpot{Column::Left, Row::Middle},   PanelSpot{Column::Right, Row::Bottom},
        PanelSpot{Column::Middle, Row::Bottom}, PanelSpot{Column::Left, Row::Bottom}};
    return panel_place(surface, plot, size, k_spots, head_boxes(surface, plot, options.now));
}

SurfaceRectangle summary_rectangle(const Surface& surface, const Plot& plot, const DrawOptions& options) {
    if (!has_summary(plot)) return {};
    const SurfaceSize size = summary_layout(surface, plot).size;
    if (options.summary_place) return at_place(surface, *options.summary_place, size);
    std::vector<SurfaceRectangle> taken = head_boxes(surface, plot, options.now);
    if (has_legend(plot)) taken.push_back(legend_rectangle(surface, plot, options));
    using Column = PanelSpot::Column;
    using Row = PanelSpot::Row;
    constexpr std::array k_spots{
        PanelSpot{Column::Left, Row::Top},     PanelSpot{Column::Middle, Row::Top},
        PanelSpot{Column::Right, Row::Top},    PanelSpot{Column::Left, Row::Middle},
        PanelSpot{Column::Right, Row::Middle}, PanelSpot{Column::Middle, Row::Middle},
        PanelSpot{Column::Left, Row::Bottom},  PanelSpot{Column::Right, Row::Bottom}};
    return panel_place(surface, plot, size, k_spots, taken);
}

std::vector<SurfaceRectangle> legend_text_boxes(const Surface& surface, const Plot& plot,
                                                const DrawOptions& options) {
    if (!has_legend(plot)) return {};
    const PanelLayout layout = legend_layout(surface, plot);
    const SurfaceRectangle panel = legend_rectangle(surface, plot, options);
    std::vector<SurfaceRectangle> boxes;
    for (std::size_t i = 0; i < plot.legend.size(); ++i) {
        boxes.push_back({panel.left + 2.0 * layout.margin + layout.first_column,
                         layout.row_centre(panel.top, i) - layout.line_height / 2.0,
                         surface.text_size(plot.legend[i].text, layout.font).width, layout.line_height});
    }
    return boxes;
}

void paint_legend(Surface& surface, const Plot& plot, const DrawOptions& options) {
    if (!has_legend(plot)) return;
    const PanelLayout layout = legend_layout(surface, plot);
    const SurfaceRectangle panel = legend_rectangle(surface, plot, options);
    const std::vector<SurfaceRectangle> texts = legend_text_boxes(surface, plot, options);
    surface.rectangle(panel, k_panel_outline, k_panel_fill);
    for (std::size_t i = 0; i < plot.legend.size(); ++i) {
        const LegendRow& row = plot.legend[i];
        const double centre = layout.row_centre(panel.top, i);
        const double height = k_sample_height * layout.line_height;
        paint_sample(surface, plot, row, options.lines,
                     {panel.left + layout.margin, centre - height / 2.0, layout.first_column, height});
        surface.text({texts[i].left, texts[i].top}, row.text, layout.font,
                     row_colour(options.lines, row.line));
    }
}

std::vector<SummaryRowBoxes> summary_row_boxes(const Surface& surface, const Plot& plot,
                                               const DrawOptions& options) {
    if (!has_summary(plot)) return {};
    const PanelLayout layout = summary_layout(surface, plot);
    const SurfaceRectangle panel = summary_rectangle(surface, plot, options);
    const double left = panel.left + layout.margin;
    std::vector<SummaryRowBoxes> rows;
    for (std::size_t i = 0; i < plot.summary.size(); ++i) {
        const double top = layout.row_centre(panel.top, i) - layout.line_height / 2.0;
        const auto box_of = [&](std::string_view text, double begin) {
            return SurfaceRectangle{begin, top, surface.text_size(text, layout.font).width,
                                    layout.line_height};
        };
        const RunSummaryRow& row = plot.summary[i];
        rows.push_back({.caption = box_of(row.caption, left),
                        .value = box_of(row.value, left + layout.first_column + layout.margin)});
    }
    return rows;
}

void paint_summary(Surface& surface, const Plot& plot, const DrawOptions& options) {
    if (!has_summary(plot)) return;
    const PanelLayout layout = summary_layout(surface, plot);
    const std::vector<SummaryRowBoxes> boxes = summary_row_boxes(surface, plot, options);
    surface.rectangle(summary_rectangle(surface, plot, options), k_panel_outline, k_panel_fill);
    for (std::size_t i = 0; i < plot.summary.size(); ++i) {
        const RunSummaryRow& row = plot.summary[i];
        const SurfaceRectangle& caption = boxes[i].caption;
        const SurfaceRectangle& value = boxes[i].value;
        const Colour colour = row_colour(options.lines, row.line);
        surface.text({caption.left, caption.top}, row.caption, layout.font, colour);
        if (row.millions)
            paint_exponent(surface, row.caption, layout.font, {caption.left, caption.top}, colour);
        if (!row.value.empty()) surface.text({value.left, value.top}, row.value, layout.font, colour);
    }
}

}  // namespace nivora
