#include "plots/draw_frame.h"

#include "base/calendar.h"
#include "base/text.h"
#include "plots/draw_head.h"

#include <algorithm>
#include <array>

namespace nivora {
namespace {

constexpr PlotFont k_axis_font{7.5, true};
constexpr Pen k_frame_pen{k_black, 0, 1};
constexpr Pen k_grid_pen{k_black, 2, 1};
/// Dark yellow, the only colour of the frame besides black.
constexpr Pen k_y_tick_pen{0x008080, 0, 1};

/// The space between a tick of the y axis and the digits of its label.
constexpr double k_digit_gap = 2.0;
/// The mean space between two labels of the x axis, and the least one: months have not all the same length.
constexpr double k_label_gap = 4.0;
constexpr double k_least_label_gap = 2.0;
/// The least space between two grid lines.
constexpr double k_grid_gap = 6.0;

/// What the parts of the frame share.
struct Frame {
    Surface& surface;
    World world;
    SurfacePoint top_left;
    SurfacePoint bottom_right;
    double line_height = 0.0;
    double tick = 0.0;  ///< length of the ticks of the x axis
    PlotFont font;

    void line(SurfacePoint from, SurfacePoint to, const Pen& pen) const {
        const std::array ends{from, to};
        surface.line(ends, pen);
    }
};

Frame frame_on(Surface& surface, const Plot& plot, const PlotAxes& axes) {
    const World world{axes.transform, surface.size()};
    const PlotFont font = fitted_font(surface, k_axis_font);
    const double line_height = surface.text_size("0", font).height;
    return {.surface = surface,
            .world = world,
            .top_left = world.to_surface(as_double(plot.frame.x_min), as_double(plot.frame.y_max)),
            .bottom_right = world.to_surface(as_double(plot.frame.x_max), as_double(plot.frame.y_min)),
            .line_height = line_height,
            .tick = line_height / 4.0,
            .font = font};
}

double x_on(const Frame& frame, float x) { return frame.world.to_surface(as_double(x), 0.0).x; }

double y_on(const Frame& frame, float y) { return frame.world.to_surface(0.0, as_double(y)).y; }

void draw_axis_lines(const Frame& frame) {
    const SurfacePoint corner{frame.top_left.x, frame.bottom_right.y};
    frame.line(frame.top_left, corner, k_frame_pen);
    frame.line(corner, frame.bottom_right, k_frame_pen);
}

/// Labels of the x axis that are drawn together: every so many of them, from one on.
struct LabelRow {
    std::size_t first = 0;
    std::size_t stride = 1;
};

/// Months stand in their order every 1, 2, 3, 4, 6, 12, 24 ...
constexpr std::size_t next_stride(std::size_t stride) {
    if (stride < 4) return stride + 1;
    return stride == 4 ? 6 : 2 * stride;
}

/// The least stride at which labels at the mean distance of these stay apart.
std::size_t mean_stride(const Frame& frame, const std::vector<XTick>& ticks) {
    if (ticks.size() < 2) return 1;
    double widest = 0.0;
    for (std::size_t i = 0; i < std::min<std::size_t>(ticks.size(), 24); ++i)
        widest = std::max(widest, frame.surface.text_size(ticks[i].label, frame.font).width);
    const double distance = (x_on(frame, ticks.back().at) - x_on(frame, ticks.front().at)) /
                            static_cast<double>(ticks.size() - 1);
    std::size_t stride = 1;
    while (static_cast<double>(stride) * distance < widest + k_label_gap && stride < ticks.size())
        stride = next_stride(stride);
    return stride;
}

/// Half the width of a label of the x axis.
/// Intended: that of a month is half the width of another month's name, the one of the day of its tick
/// counted on from the first day of the frame, so that the names stand up to two points beside the middle.
double half_width(const Frame& frame, const Plot& plot, const PlotAxes& axes, const XTick& tick) {
    const std::string& measured = axes.x_kind == XAxisKind::Months
                                      ? month_text(as_double(tick.x) + as_double(plot.frame.x_min))
                                      : tick.label;
    return frame.surface.text_size(measured, frame.font).width / 2.0;
}

std::vector<PlacedText> placed_labels(const Frame& frame, const Plot& plot, const PlotAxes& axes,
                                      const LabelRow& row) {
    std::vector<PlacedText> labels;
    for (std::size_t i = row.first; i < axes.x_ticks.size(); i += row.stride) {
        const XTick& tick = axes.x_ticks[i];
        const SurfacePoint at{x_on(frame, tick.at) - half_width(frame, plot, axes, tick),
                              frame.bottom_right.y + frame.tick};
        labels.push_back(place_text(frame.surface, tick.label, frame.font, at));
    }
    return labels;
}

bool stand_apart(const std::vector<PlacedText>& labels) {
    const auto touch = [](const PlacedText& a, const PlacedText& b) {
        return b.box.left < a.box.left + a.box.width + k_least_label_gap;
    };
    return std::adjacent_find(labels.begin(), labels.end(), touch) == labels.end();
}

/// Whether the first label names a month of which the frame shows the end alone.
bool begins_within_month(const Plot& plot, const PlotAxes& axes) {
    return axes.x_kind == XAxisKind::Months && axes.x_ticks.size() > 1 &&
           civil_date(whole_day(as_double(plot.frame.x_min))).day > 1;
}

/// As many labels as stand apart. Where a frame begins within a month, that month's name gives way first: the
/// months after it are whole ones.
LabelRow label_row(const Frame& frame, const Plot& plot, const PlotAxes& axes) {
    const auto fits = [&](const LabelRow& row) { return stand_apart(placed_labels(frame, plot, axes, row)); };
    LabelRow row{.first = 0, .stride = mean_stride(frame, axes.x_ticks)};
    for (; row.stride < axes.x_ticks.size(); row.stride = next_stride(row.stride)) {
        if (fits(row)) return row;
        const LabelRow whole_months{.first = 1, .stride = row.stride};
        if (begins_within_month(plot, axes) && fits(whole_months)) return whole_months;
    }
    return row;
}

/// One grid line in this number is drawn, so that the months of many years don't make a grey area.
std::size_t grid_stride(const Frame& frame, const PlotAxes& axes, const LabelRow& labels) {
    if (axes.grid_x.size() < 2) return 1;
    const double distance = (x_on(frame, axes.grid_x.back()) - x_on(frame, axes.grid_x.front())) /
                            static_cast<double>(axes.grid_x.size() - 1);
    return distance >= k_grid_gap ? 1 : labels.stride;
}

void draw_grid(const Frame& frame, const PlotAxes& axes, const LabelRow& labels) {
    const std::size_t stride = grid_stride(frame, axes, labels);
    for (std::size_t i = 0; i < axes.grid_x.size(); i += stride) {
        const double x = x_on(frame, axes.grid_x[i]);
        frame.line({x, frame.bottom_right.y}, {x, frame.top_left.y}, k_grid_pen);
    }
    double free_below = frame.bottom_right.y;
    for (const float value : axes.grid_y) {
        const double y = y_on(frame, value);
        if (y > free_below) continue;
        frame.line({frame.top_left.x, y}, {frame.bottom_right.x, y}, k_grid_pen);
        free_below = y - k_grid_gap;
    }
}

void draw_x_axis(const Frame& frame, const Plot& plot, const PlotAxes& axes, const LabelRow& labels) {
    const double axis = frame.bottom_right.y;
    for (const XTick& tick : axes.x_ticks) {
        const double x = x_on(frame, tick.x);
        if (tick.line) frame.line({x, axis}, {x, axis + frame.tick}, k_frame_pen);
    }
    for (const PlacedText& label : placed_labels(frame, plot, axes, labels)) draw_text(frame.surface, label);
}

/// The left edge of a label of the y axis: its blanks end at the axis, its digits before the tick.
double y_label_left(const Frame& frame, const std::string& label, double tick_end) {
    const double whole = frame.surface.text_size(label, frame.font).width;
    const double digits = frame.surface.text_size(right_trimmed(label), frame.font).width;
    return std::min(frame.top_left.x - whole, tick_end - k_digit_gap - digits);
}

void draw_y_axis(const Frame& frame, const PlotAxes& axes) {
    const double axis = frame.top_left.x;
    const double tick_end = axis - (frame.bottom_right.x - axis) / 150.0;
    double free_below = frame.surface.size().height;  // Labels of thousands of ticks don't overlap.
    for (const YTick& tick : axes.y_ticks) {
        const double y = y_on(frame, tick.y);
        frame.line({axis, y}, {tick_end, y}, k_y_tick_pen);
        const double top = y - frame.line_height / 2.0;
        if (top + frame.line_height > free_below) continue;
        const SurfacePoint at{y_label_left(frame, tick.label, tick_end), top};
        draw_text(frame.surface, place_text(frame.surface, tick.label, frame.font, at));
        free_below = top;
    }
}

/// The label above the y axis; on a low surface right of the texts that stand there, or below a long one.
void draw_y_title(const Frame& frame, const Plot& plot, const std::vector<PlacedText>& head) {
    const double half = frame.surface.text_size(plot.y_label, frame.font).width / 2.0;
    PlacedText label = place_text(frame.surface, plot.y_label, frame.font,
                                  {frame.top_left.x - half, frame.top_left.y - 1.4 * frame.line_height});
    for (const PlacedText& text : head) {
        if (!overlap(text.box, label.box)) continue;
        const double right_of_it = text.box.left + text.box.width + k_label_gap;
        if (right_of_it + label.box.width <= frame.bottom_right.x) {
            label.box.left = right_of_it;
        } else {
            label.box.top = text.box.top + text.box.height;
        }
    }
    draw_text(frame.surface, label);
}

void draw_x_title(const Frame& frame, const Plot& plot) {
    if (plot.x_label.empty()) return;
    const double right = frame.bottom_right.x + (frame.bottom_right.x - frame.top_left.x) / 10.0;
    const SurfacePoint at{right, frame.bottom_right.y - frame.line_height / 2.0};
    draw_text(frame.surface, place_text(frame.surface, plot.x_label, frame.font, at));
}

}  // namespace

void draw_frame(Surface& surface, const Plot& plot, const PlotAxes& axes,
                const std::vector<PlacedText>& head) {
    const Frame frame = frame_on(surface, plot, axes);
    const LabelRow labels = label_row(frame, plot, axes);
    draw_grid(frame, axes, labels);
    draw_axis_lines(frame);
    draw_x_axis(frame, plot, axes, labels);
    draw_y_axis(frame, axes);
    draw_y_title(frame, plot, head);
    draw_x_title(frame, plot);
}

}  // namespace nivora
