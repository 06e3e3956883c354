#include "plots/contour_picture.h"

#include "base/calendar.h"
#include "base/number_text.h"
#include "plots/axes.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <map>
#include <span>
#include <tuple>
#include <utility>

namespace nivora {
namespace {

constexpr double k_left = 90.0;
constexpr double k_right = 30.0;
constexpr double k_top = 70.0;
constexpr double k_bottom = 74.0;
constexpr double k_tick = 6.0;
constexpr int k_wanted_levels = 10;
constexpr int k_wanted_ticks = 8;
constexpr Colour k_grid_colour = 0xD8D8D8;
const PlotFont k_title_font{.size = 12.0, .bold = true};
const PlotFont k_text_font{.size = 10.0, .bold = false};

/// A side of a cell of four points: from a point to the next one across, or up.
struct Side {
    std::size_t x = 0;
    std::size_t y = 0;
    bool up = false;

    bool operator==(const Side&) const = default;
    bool operator<(const Side& other) const {
        return std::tie(x, y, up) < std::tie(other.x, other.y, other.up);
    }
};
using Segment = std::pair<Side, Side>;

double value_at(const ContourPicture& picture, std::size_t x, std::size_t y) {
    return picture.values[y * picture.x.places.size() + x];
}

/// A point that has the value counts as above it, so that every line has two ends.
bool above(double value, double level) { return value >= level; }

SurfacePoint crossing(const ContourPicture& picture, const Side& side, double level) {
    const std::size_t next_x = side.x + (side.up ? 0 : 1);
    const std::size_t next_y = side.y + (side.up ? 1 : 0);
    const double from = value_at(picture, side.x, side.y);
    const double to = value_at(picture, next_x, next_y);
    const double share = (level - from) / (to - from);
    const auto between = [share](double a, double b) { return a + share * (b - a); };
    return {between(picture.x.places[side.x], picture.x.places[next_x]),
            between(picture.y.places[side.y], picture.y.places[next_y])};
}

/// The pieces of the line in the cell whose lower left point this is.
void add_segments(const ContourPicture& picture, std::size_t x, std::size_t y, double level,
                  std::vector<Segment>& segments) {
    const std::array<double, 4> corners{value_at(picture, x, y), value_at(picture, x + 1, y),
                                        value_at(picture, x + 1, y + 1), value_at(picture, x, y + 1)};
    if (std::any_of(corners.begin(), corners.end(), [](double value) { return !std::isfinite(value); }))
        return;
    // Around the cell: below, right, above, left.
    const std::array<Side, 4> sides{Side{x, y, false}, Side{x + 1, y, true}, Side{x, y + 1, false},
                                    Side{x, y, true}};
    std::vector<Side> crossed;
    for (std::size_t side = 0; side < sides.size(); ++side) {
        if (above(corners[side], level) != above(corners[(side + 1) % 4], level))
            crossed.push_back(sides[side]);
    }
    if (crossed.size() == 2) segments.emplace_back(crossed[0], crossed[1]);
    if (crossed.size() != 4) return;
    const double middle = (corners[0] + corners[1] + corners[2] + corners[3]) / 4.0;
    // With the middle on the side of the first corner, the lines cut off the second and the fourth.
    const bool first = above(middle, level) == above(corners[0], level);
    segments.emplace_back(sides[0], sides[first ? 1 : 3]);
    segments.emplace_back(sides[2], sides[first ? 3 : 1]);
}

/// Segments joined to lines, the open ones first.
std::vector<std::vector<Side>> joined(const std::vector<Segment>& segments) {
    std::map<Side, std::vector<std::size_t>> at;
    for (std::size_t i = 0; i < segments.size(); ++i) {
        at[segments[i].first].push_back(i);
        at[segments[i].second].push_back(i);
    }
    std::vector<bool> used(segments.size(), false);
    std::vector<std::vector<Side>> lines;
    const auto walk = [&](std::size_t begin, Side from) {
        std::vector<Side> line{from};
        for (std::size_t segment = begin; segment < segments.size();) {
            used[segment] = true;
            const auto& [one, other] = segments[segment];
            line.push_back(one == line.back() ? other : one);
            const auto& here = at[line.back()];
            const auto next =
                std::find_if(here.begin(), here.end(), [&](std::size_t each) { return !used[each]; });
            segment = next == here.end() ? segments.size() : *next;
        }
        lines.push_back(std::move(line));
    };
    for (const auto& [side, touching] : at) {
        if (touching.size() == 1 && !used[touching.front()]) walk(touching.front(), side);
    }
    for (std::size_t i = 0; i < segments.size(); ++i) {
        if (!used[i]) walk(i, segments[i].first);
    }
    return lines;
}

/// The step, 1, 2 or 5 times a power of ten, with about this many steps in a range.
double round_step(double range, int wanted) {
    const double rough = range / wanted;
    const double power = std::pow(10.0, std::floor(std::log10(rough)));
    for (const double step : {1.0, 2.0, 5.0}) {
        if (rough <= step * power) return step * power;
    }
    return 10.0 * power;
}

double day_step(double range, int wanted) {
    for (const double step : {1.0, 2.0, 5.0, 10.0, 20.0, 50.0}) {
        if (range / step <= wanted) return step;
    }
    return 100.0;
}

/// Multiples of a step from the least to the greatest value.
std::vector<double> multiples(double least, double greatest, double step) {
    // A Single such as 1.3 is a little less than the number that it stands for.
    constexpr double k_hair = 1.0e-6;
    std::vector<double> values;
    const double first = std::ceil(least / step - k_hair);
    const double last = std::floor(greatest / step + k_hair);
    values.reserve(static_cast<std::size_t>(std::max(0.0, last - first + 1.0)));
    for (double count = first; count <= last; ++count) values.push_back(count * step);
    return values;
}

std::string label_of(double value, ContourValues kind) {
    if (kind == ContourValues::Days) {
        const CivilDate date = civil_date(whole_day(value));
        return fmt::format("{} {}", month_text(value), date.day);
    }
    // A sum of steps has no digits that its step lacks.
    return seven_digit_text(std::abs(value) < 1.0e-9 ? 0.0 : std::round(value * 1.0e6) / 1.0e6);
}

struct Range {
    double low = 0.0;
    double high = 1.0;
};

Range range_of(std::span<const double> values) {
    Range range{std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};
    for (const double value : values) {
        if (!std::isfinite(value)) continue;
        range.low = std::min(range.low, value);
        range.high = std::max(range.high, value);
    }
    return range;
}

/// The drawing of one picture.
class Drawer {
public:
    Drawer(Surface& surface, const ContourPicture& picture, Range x, Range y)
        : surface_(surface),
          picture_(picture),
          x_(x),
          y_(y),
          box_{k_left, k_top, surface.size().width - k_left - k_right,
               surface.size().height - k_top - k_bottom} {}

    [[nodiscard]] SurfacePoint place(SurfacePoint at) const {
        return {box_.left + (at.x - x_.low) / (x_.high - x_.low) * box_.width,
                box_.top + box_.height - (at.y - y_.low) / (y_.high - y_.low) * box_.height};
    }

    void frame(const std::string& x_name, const std::string& y_name, ContourValues y_kind) {
        surface_.rectangle({0.0, 0.0, surface_.size().width, surface_.size().height}, std::nullopt,
                           Fill{.colour = k_white});
        surface_.text({k_left, 16.0}, picture_.title, k_title_font, k_black);
        surface_.text({k_left, 40.0}, picture_.subtitle, k_text_font, k_black);
        for (const double x : multiples(x_.low, x_.high, round_step(x_.high - x_.low, k_wanted_ticks)))
            x_tick(x);
        const double y_step = y_kind == ContourValues::Days ? day_step(y_.high - y_.low, k_wanted_ticks)
                                                            : round_step(y_.high - y_.low, k_wanted_ticks);
        for (const double y : multiples(y_.low, y_.high, y_step)) y_tick(y, y_kind);
        surface_.rectangle(box_, Pen{}, std::nullopt);
        const SurfaceSize name = surface_.text_size(x_name, k_text_font);
        surface_.text({box_.left + (box_.width - name.width) / 2.0, surface_.size().height - 30.0}, x_name,
                      k_text_font, k_black);
        // Above its axis, since texts are not turned.
        const SurfaceSize above = surface_.text_size(y_name, k_text_font);
        surface_.text({box_.left + box_.width - above.width, box_.top - above.height - 6.0}, y_name,
                      k_text_font, k_black);
    }

    void curve(const std::vector<SurfacePoint>& points, const Pen& pen) {
        std::vector<SurfacePoint> placed;
        placed.reserve(points.size());
        for (const SurfacePoint& point : points) placed.push_back(place(point));
        if (placed.size() > 1) surface_.line(placed, pen);
    }

    /// Names a line on the line, where there is room.
    void name(const ContourLine& line, const std::string& text) {
        constexpr double k_margin = 3.0;
        const SurfaceSize size = surface_.text_size(text, k_text_font);
        std::vector<SurfacePoint> placed;
        placed.reserve(line.points.size());
        for (const SurfacePoint& point : line.points) placed.push_back(place(point));
        double length = 0.0;
        for (std::size_t i = 1; i < placed.size(); ++i)
            length += std::hypot(placed[i].x - placed[i - 1].x, placed[i].y - placed[i - 1].y);
        if (length < 1.5 * size.width) return;
        for (const double share : {0.5, 0.35, 0.65, 0.2, 0.8}) {
            const SurfacePoint middle = along(placed, share * length);
            const SurfaceRectangle room{middle.x - size.width / 2.0 - k_margin, middle.y - size.height / 2.0,
                                        size.width + 2.0 * k_margin, size.height};
            if (!is_free(room)) continue;
            named_.push_back(room);
            surface_.rectangle(room, std::nullopt, Fill{.colour = k_white});
            surface_.text({room.left + k_margin, room.top}, text, k_text_font, k_black);
            return;
        }
    }

    void circle(SurfacePoint at) {
        if (at.x < x_.low || at.x > x_.high || at.y < y_.low || at.y > y_.high) return;
        surface_.circle(place(at), 5.0, Pen{.colour = k_black, .style = 0, .width = 2});
    }

    /// Below the picture, at its left.
    void remark(const std::string& text) {
        surface_.text({k_left, surface_.size().height - 20.0}, text, PlotFont{.size = 8.0}, k_black);
    }

private:
    void x_tick(double value) {
        const SurfacePoint at = place({value, y_.low});
        surface_.line(std::array{at, SurfacePoint{at.x, box_.top}}, Pen{.colour = k_grid_colour});
        surface_.line(std::array{at, SurfacePoint{at.x, at.y + k_tick}}, Pen{});
        const std::string label = label_of(value, ContourValues::Numbers);
        const SurfaceSize size = surface_.text_size(label, k_text_font);
        surface_.text({at.x - size.width / 2.0, at.y + k_tick + 2.0}, label, k_text_font, k_black);
    }
    void y_tick(double value, ContourValues kind) {
        const SurfacePoint at = place({x_.low, value});
        surface_.line(std::array{at, SurfacePoint{box_.left + box_.width, at.y}},
                      Pen{.colour = k_grid_colour});
        surface_.line(std::array{at, SurfacePoint{at.x - k_tick, at.y}}, Pen{});
        const std::string label = label_of(value, kind);
        const SurfaceSize size = surface_.text_size(label, k_text_font);
        surface_.text({at.x - k_tick - 4.0 - size.width, at.y - size.height / 2.0}, label, k_text_font,
                      k_black);
    }
    static SurfacePoint along(const std::vector<SurfacePoint>& points, double length) {
        for (std::size_t i = 1; i < points.size(); ++i) {
            const double dx = points[i].x - points[i - 1].x;
            const double dy = points[i].y - points[i - 1].y;
            const double piece = std::hypot(dx, dy);
            if (piece >= length && piece > 0.0)
                return {points[i - 1].x + dx * length / piece, points[i - 1].y + dy * length / piece};
            length -= piece;
        }
        return points.back();
    }
    [[nodiscard]] bool is_free(const SurfaceRectangle& room) const {
        const bool inside = room.left > box_.left && room.left + room.width < box_.left + box_.width &&
                            room.top > box_.top && room.top + room.height < box_.top + box_.height;
        return inside && std::none_of(named_.begin(), named_.end(), [&](const SurfaceRectangle& other) {
                   return room.left < other.left + other.width && other.left < room.left + room.width &&
                          room.top < other.top + other.height && other.top < room.top + room.height;
               });
    }

    Surface& surface_;
    const ContourPicture& picture_;
    Range x_;
    Range y_;
    SurfaceRectangle box_;
    std::vector<SurfaceRectangle> named_;
};

/// @param drawn whether a line has the marked value
std::string marked_remark(const ContourPicture& picture, bool drawn) {
    std::string text;
    if (picture.marked_value) {
        const std::string value = label_of(*picture.marked_value, picture.kind);
        text = drawn ? fmt::format("thick line: {}, {}", picture.marked_name, value)
                     : fmt::format("{}: {}, which no line has", picture.marked_name, value);
    }
    if (picture.marked_point) text += (text.empty() ? "" : "; ") + std::string{"circle: no change"};
    return text;
}

void draw_grid(Surface& surface, const ContourPicture& picture) {
    const auto& x = picture.x.places;
    const auto& y = picture.y.places;
    Drawer drawer{surface, picture, {x.front(), x.back()}, {y.front(), y.back()}};
    drawer.frame(picture.x.name, picture.y.name, ContourValues::Numbers);
    const Range values = range_of(picture.values);
    std::vector<ContourLine> lines;
    for (const double level : contour_levels(values.low, values.high, picture.kind)) {
        for (ContourLine& line : contour_lines(picture, level)) lines.push_back(std::move(line));
    }
    for (const ContourLine& line : lines) drawer.curve(line.points, Pen{});
    const auto marked =
        picture.marked_value ? contour_lines(picture, *picture.marked_value) : std::vector<ContourLine>{};
    for (const ContourLine& line : marked)
        drawer.curve(line.points, Pen{.colour = k_black, .style = 0, .width = 3});
    for (const ContourLine& line : lines) drawer.name(line, label_of(line.value, picture.kind));
    if (picture.marked_point) drawer.circle(*picture.marked_point);
    drawer.remark(marked_remark(picture, !marked.empty()));
}

/// A curve over the one axis that changes.
void draw_curve(Surface& surface, const ContourPicture& picture) {
    const bool over_x = picture.x.places.size() > 1;
    const ContourAxis& axis = over_x ? picture.x : picture.y;
    Range values = range_of(picture.values);
    if (picture.marked_value) {
        values.low = std::min(values.low, *picture.marked_value);
        values.high = std::max(values.high, *picture.marked_value);
    }
    const double room = values.high > values.low ? 0.05 * (values.high - values.low) : 1.0;
    Drawer drawer{
        surface, picture, {axis.places.front(), axis.places.back()}, {values.low - room, values.high + room}};
    drawer.frame(axis.name, picture.title, picture.kind);
    std::vector<SurfacePoint> piece;
    for (std::size_t i = 0; i <= axis.places.size(); ++i) {
        if (i < axis.places.size() && std::isfinite(picture.values[i])) {
            piece.push_back({axis.places[i], picture.values[i]});
            continue;
        }
        drawer.curve(piece, Pen{.colour = k_black, .style = 0, .width = 2});
        piece.clear();
    }
    if (picture.marked_value) {
        drawer.curve(
            {{axis.places.front(), *picture.marked_value}, {axis.places.back(), *picture.marked_value}},
            Pen{.colour = k_black, .style = 1, .width = 1});
        drawer.remark(fmt::format("dashed line: {}, {}", picture.marked_name,
                                  label_of(*picture.marked_value, picture.kind)));
    }
}

}  // namespace

bool can_be_drawn(const ContourPicture& picture) {
    const auto finite = std::count_if(picture.values.begin(), picture.values.end(),
                                      [](double value) { return std::isfinite(value); });
    return finite > 0 && (picture.x.places.size() > 1 || picture.y.places.size() > 1);
}

std::vector<double> contour_levels(double least, double greatest, ContourValues kind) {
    if (!(least < greatest)) return {};
    const double range = greatest - least;
    const double step =
        kind == ContourValues::Days ? day_step(range, k_wanted_levels) : round_step(range, k_wanted_levels);
    return multiples(least, greatest, step);
}

std::vector<ContourLine> contour_lines(const ContourPicture& picture, double value) {
    std::vector<Segment> segments;
    for (std::size_t y = 0; y + 1 < picture.y.places.size(); ++y) {
        for (std::size_t x = 0; x + 1 < picture.x.places.size(); ++x)
            add_segments(picture, x, y, value, segments);
    }
    std::vector<ContourLine> lines;
    for (const std::vector<Side>& sides : joined(segments)) {
        ContourLine line{.value = value, .points = {}};
        line.points.reserve(sides.size());
        for (const Side& side : sides) line.points.push_back(crossing(picture, side, value));
        lines.push_back(std::move(line));
    }
    return lines;
}

void draw_contours(Surface& surface, const ContourPicture& picture) {
    const bool grid = picture.x.places.size() > 1 && picture.y.places.size() > 1;
    grid ? draw_grid(surface, picture) : draw_curve(surface, picture);
}

}  // namespace nivora
