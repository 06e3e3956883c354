#include "plots/band_picture.h"

#include "plots/axes.h"
#include "plots/draw_data.h"
#include "plots/draw_frame.h"
#include "plots/draw_head.h"
#include "plots/placed_text.h"
#include "plots/plot.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <utility>

namespace nivora {
namespace {

constexpr Colour k_outer_colour = 0xDCDCDC;
constexpr Colour k_inner_colour = 0xA8A8A8;
constexpr Pen k_median_pen{.colour = k_black, .style = 1, .width = 1};
constexpr Pen k_measured_pen{.colour = k_black, .style = 0, .width = 2};
constexpr PlotFont k_title_font{.size = 12.0, .bold = true};
constexpr PlotFont k_text_font{.size = 9.0, .bold = false};
constexpr PlotFont k_name_font{.size = 8.5, .bold = true};
constexpr std::size_t k_median = 2;
constexpr double k_line_gap = 2.0;
constexpr double k_swatch_width = 26.0;
constexpr double k_swatch_gap = 5.0;
constexpr double k_entry_gap = 18.0;
/// Half the width of a band of a single day, in days.
constexpr double k_half_day = 0.4;

/// A part of another surface, which has its own edges.
class Panel : public Surface {
public:
    Panel(Surface& whole, const SurfaceRectangle& box) : whole_(whole), box_(box) {}

    [[nodiscard]] SurfaceSize size() const override { return {box_.width, box_.height}; }
    [[nodiscard]] SurfaceSize text_size(std::string_view text, const PlotFont& font) const override {
        return whole_.text_size(text, font);
    }
    void line(std::span<const SurfacePoint> points, const Pen& pen) override {
        whole_.line(moved(points), pen);
    }
    void text(SurfacePoint top_left, std::string_view text, const PlotFont& font, Colour colour) override {
        whole_.text(moved(top_left), text, font, colour);
    }
    void rectangle(const SurfaceRectangle& rectangle, const std::optional<Pen>& outline,
                   const std::optional<Fill>& fill) override {
        const SurfacePoint corner = moved(SurfacePoint{rectangle.left, rectangle.top});
        whole_.rectangle({corner.x, corner.y, rectangle.width, rectangle.height}, outline, fill);
    }
    void circle(SurfacePoint centre, double radius, const Pen& pen) override {
        whole_.circle(moved(centre), radius, pen);
    }
    void dot(SurfacePoint at, Colour colour) override { whole_.dot(moved(at), colour); }
    void fill_band(std::span<const SurfacePoint> outline, const Fill& fill) override {
        whole_.fill_band(moved(outline), fill);
    }

private:
    [[nodiscard]] SurfacePoint moved(SurfacePoint at) const { return {at.x + box_.left, at.y + box_.top}; }
    [[nodiscard]] std::vector<SurfacePoint> moved(std::span<const SurfacePoint> points) const {
        std::vector<SurfacePoint> result;
        result.reserve(points.size());
        for (const SurfacePoint& point : points) result.push_back(moved(point));
        return result;
    }

    Surface& whole_;
    SurfaceRectangle box_;
};

/// A name as one line: it comes from the user's file and may hold anything.
std::string one_line(std::string text) {
    for (char& letter : text) {
        const auto code = static_cast<unsigned char>(letter);
        if (code < 0x20 || code == 0x7F) letter = ' ';
    }
    return text;
}

bool has_band(const BandQuantiles& quantiles) {
    return std::all_of(quantiles.begin(), quantiles.end(), [](double each) { return std::isfinite(each); });
}

/// Days one after the other that have a value: from the first up to, not including, the last.
struct Piece {
    std::size_t first = 0;
    std::size_t end = 0;

    [[nodiscard]] bool is_single() const { return end - first == 1; }
};

template <typename HasValue>
std::vector<Piece> pieces_of(const std::vector<DayCount>& dates, const HasValue& has_value) {
    std::vector<Piece> pieces;
    bool open = false;
    for (std::size_t day = 0; day < dates.size(); ++day) {
        const bool follows = open && dates[day] == dates[day - 1] + 1;
        const bool has = has_value(day);
        if (has && follows) pieces.back().end = day + 1;
        if (has && !follows) pieces.push_back({day, day + 1});
        open = has;
    }
    return pieces;
}

/// The range of y of all panels, which holds 0.
std::pair<double, double> flow_range(const BandPicture& picture) {
    double least = 0.0;
    double most = 0.0;
    const auto take = [&](double value) {
        if (!std::isfinite(value)) return;
        least = std::min(least, value);
        most = std::max(most, value);
    };
    for (const BandSeries& series : picture.series) {
        for (const double value : series.measured) take(value);
        for (const BandQuantiles& quantiles : series.quantiles) {
            take(quantiles.front());
            take(quantiles.back());
        }
    }
    if (!(most > least)) return {0.0, 1.0};
    // The ticks begin at the lower end.
    const double round = 0.5 * std::pow(10.0, std::floor(std::log10(most - least)));
    return {std::floor(least / round) * round, most + (most - least) / 50.0};
}

/// The frame of a panel as that of a plot over days.
Plot frame_plot(const BandPicture& picture, const BandSeries& series, std::pair<double, double> range) {
    Plot plot;
    plot.number = PlotNumber::Runoff;
    plot.y_label = picture.y_label;
    const double first = series.dates.empty() ? 0.0 : static_cast<double>(series.dates.front());
    const double last = series.dates.empty() ? 0.0 : static_cast<double>(series.dates.back());
    plot.frame = {.x_min = static_cast<float>(first),
                  .x_max = static_cast<float>(std::max(last, first + 1.0)),
                  .y_min = static_cast<float>(range.first),
                  .y_max = static_cast<float>(range.second)};
    return plot;
}

/// The days of a series in their panel.
class Days {
public:
    Days(Surface& panel, const World& world, const PlotFrame& frame, const BandSeries& series)
        : panel_(panel), world_(world), box_(frame_rectangle(world, frame)), series_(series) {}

    void fill(std::size_t low, std::size_t high, Colour colour) const {
        for (const Piece& piece : band_pieces()) {
            std::vector<SurfacePoint> outline;
            outline.reserve(4 * (piece.end - piece.first));
            for (std::size_t day = piece.first; day < piece.end; ++day) add(outline, piece, day, high, false);
            for (std::size_t day = piece.end; day-- > piece.first;) add(outline, piece, day, low, true);
            outline = clipped(std::move(outline), box_);
            if (outline.size() > 2) panel_.fill_band(outline, Fill{.colour = colour});
        }
    }

    void median() const {
        for (const Piece& piece : band_pieces())
            curve(piece, k_median_pen, [&](std::size_t day) { return series_.quantiles[day][k_median]; });
    }

    void measured() const {
        const auto pieces =
            pieces_of(series_.dates, [&](std::size_t day) { return std::isfinite(series_.measured[day]); });
        for (const Piece& piece : pieces)
            curve(piece, k_measured_pen, [&](std::size_t day) { return series_.measured[day]; });
    }

private:
    [[nodiscard]] std::vector<Piece> band_pieces() const {
        return pieces_of(series_.dates, [&](std::size_t day) { return has_band(series_.quantiles[day]); });
    }
    [[nodiscard]] SurfacePoint place(std::size_t day, double beside, double value) const {
        return world_.to_surface(static_cast<double>(series_.dates[day]) + beside, value);
    }
    /// A single day has some width, since it would have no area otherwise.
    void add(std::vector<SurfacePoint>& outline, const Piece& piece, std::size_t day, std::size_t quantile,
             bool backward) const {
        const double value = series_.quantiles[day][quantile];
        if (!piece.is_single()) {
            outline.push_back(place(day, 0.0, value));
            return;
        }
        outline.push_back(place(day, backward ? k_half_day : -k_half_day, value));
        outline.push_back(place(day, backward ? -k_half_day : k_half_day, value));
    }
    template <typename ValueOf>
    void curve(const Piece& piece, const Pen& pen, const ValueOf& value_of) const {
        std::vector<SurfacePoint> points;
        points.reserve(piece.end - piece.first);
        for (std::size_t day = piece.first; day < piece.end; ++day)
            points.push_back(place(day, 0.0, value_of(day)));
        if (points.size() > 1) {
            panel_.line(points, pen);
            return;
        }
        // A dot has the size of one point whatever the pen is, so that a day alone gets a short stroke.
        const SurfacePoint at = points.front();
        panel_.line(std::array{SurfacePoint{at.x - 1.0, at.y}, SurfacePoint{at.x + 1.0, at.y}},
                    Pen{.colour = pen.colour, .style = 0, .width = pen.width});
    }

    Surface& panel_;
    const World& world_;
    SurfaceRectangle box_;
    const BandSeries& series_;
};

std::string series_name(const BandPicture& picture, const BandSeries& series) {
    const std::string name = picture.series.size() > 1 ? one_line(series.name) + ": " : std::string{};
    if (series.dates.empty()) return name;
    return name + long_date_text(series.dates.front()) + " to " + long_date_text(series.dates.back());
}

void draw_panel(Surface& panel, const BandPicture& picture, const BandSeries& series,
                std::pair<double, double> range) {
    const Plot plot = frame_plot(picture, series, range);
    const PlotAxes axes = lay_out_axes(plot, GridMode::None);
    if (axes.no_data) return;
    const World world{axes.transform, panel.size()};
    const Days days{panel, world, plot.frame, series};
    days.fill(0, 4, k_outer_colour);
    days.fill(1, 3, k_inner_colour);
    days.median();
    days.measured();
    const PlotFont font = fitted_font(panel, k_name_font);
    const double right = k_frame_right * panel.size().width;
    // The label of the y axis stands left of the middle.
    const std::string name = shortened(panel, series_name(picture, series), font, 0.7 * panel.size().width);
    const SurfaceSize extent = panel.text_size(name, font);
    const PlacedText placed =
        place_text(panel, name, font,
                   {right - extent.width, k_frame_top * panel.size().height - extent.height - k_line_gap});
    draw_text(panel, placed);
    draw_frame(panel, plot, axes, {placed});
}

/// An entry of the legend. @return where it ends
double draw_entry(Surface& surface, std::size_t entry, const std::string& text, const PlotFont& font,
                  SurfacePoint at) {
    const SurfaceSize extent = surface.text_size(text, font);
    const double middle = at.y + extent.height / 2.0;
    const double end = at.x + k_swatch_width;
    const SurfaceRectangle box{at.x, at.y + 2.0, k_swatch_width, std::max(2.0, extent.height - 4.0)};
    const std::array stroke{SurfacePoint{at.x, middle}, SurfacePoint{end, middle}};
    switch (entry) {
        case 0: surface.rectangle(box, std::nullopt, Fill{.colour = k_outer_colour}); break;
        case 1: surface.rectangle(box, std::nullopt, Fill{.colour = k_inner_colour}); break;
        case 2: surface.line(stroke, k_median_pen); break;
        default: surface.line(stroke, k_measured_pen);
    }
    surface.text({end + k_swatch_gap, at.y}, text, font, k_black);
    return end + k_swatch_gap + extent.width + k_entry_gap;
}

/// Title, subtitle, remark and legend. @return where the panels begin
double draw_band_head(Surface& surface, const BandPicture& picture) {
    const double left = std::max(k_text_edge, k_frame_left * surface.size().width);
    const double width = surface.size().width - left - k_text_edge;
    double top = k_text_edge;
    const auto add = [&](const std::string& text, const PlotFont& wanted) {
        if (text.empty()) return;
        const PlotFont font = shrunk_font(surface, text, fitted_font(surface, wanted), width);
        const std::string line = shortened(surface, one_line(text), font, width);
        surface.text({left, top}, line, font, k_black);
        top += surface.text_size(line, font).height + k_line_gap;
    };
    add(picture.title, k_title_font);
    add(picture.subtitle, k_text_font);
    add(picture.remark, k_text_font);
    const PlotFont font = fitted_font(surface, k_text_font);
    const double height = surface.text_size("0", font).height;
    double x = left;
    for (std::size_t entry = 0; entry < picture.legend.size(); ++entry) {
        const std::string& text = picture.legend.at(entry);
        const double needed = k_swatch_width + k_swatch_gap + surface.text_size(text, font).width;
        if (x > left && x + needed > left + width) {
            x = left;
            top += height + k_line_gap;
        }
        x = draw_entry(surface, entry, text, font, {x, top});
    }
    return top + height + k_line_gap;
}

/// Where the panels begin, so that the room that each keeps above its frame takes up the head.
double panels_top(const Surface& surface, double head_end, double panels) {
    const double name = surface.text_size("0", fitted_font(surface, k_name_font)).height + 2.0 * k_line_gap;
    const double share = k_frame_top / panels;
    return std::max(0.0, (head_end + name - share * surface.size().height) / (1.0 - share));
}

}  // namespace

void draw_bands(Surface& surface, const BandPicture& picture) {
    const SurfaceSize size = surface.size();
    if (!(size.width > 0.0) || !(size.height > 0.0)) return;
    surface.rectangle({0.0, 0.0, size.width, size.height}, std::nullopt, Fill{.colour = k_white});
    const auto panels = static_cast<double>(picture.series.size());
    const double top = panels_top(surface, draw_band_head(surface, picture), panels);
    const double height = (size.height - top) / panels;
    if (!(height > 0.0)) return;
    const auto range = flow_range(picture);
    for (std::size_t index = 0; index < picture.series.size(); ++index) {
        Panel panel{surface, {0.0, top + height * static_cast<double>(index), size.width, height}};
        draw_panel(panel, picture, picture.series[index], range);
    }
}

}  // namespace nivora
