#include "plots/axes.h"

#include "base/calendar.h"
#include "base/number_text.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <string_view>

namespace nivora {
namespace {

constexpr std::size_t k_most_number_ticks = 2000;

/// The steps that a number axis may have. Intended: the first one is never taken.
constexpr std::array<float, 16> k_steps{0.001F, 0.01F, 0.1F,   0.5F,   1.0F,    5.0F,    10.0F,    20.0F,
                                        50.0F,  100.F, 200.0F, 500.0F, 1000.0F, 5000.0F, 10000.0F, 50000.0F};
constexpr float k_most_steps = 12.0F;

/// A range of days above this has month ticks.
constexpr float k_most_days = 100.0F;
constexpr double k_day_steps = 6.0;

/// Rounds to a Single; a result beyond the largest Single becomes that one, so that no axis is infinite.
float stored(double value) {
    constexpr double k_largest = std::numeric_limits<float>::max();
    return static_cast<float>(std::clamp(value, -k_largest, k_largest));
}

float range(float least, float most) { return stored(as_double(most) - as_double(least)); }

Transform transform_of(const PlotFrame& frame, float xr, float yr) {
    const double width = as_double(xr);
    const double height = as_double(yr);
    return {.ScaleLeft = stored(as_double(frame.x_min) - width / 10.0),
            .ScaleTop = stored(as_double(frame.y_max) + height / 8.0),
            .ScaleWidth = stored(width + 2.0 * (width / 10.0)),
            .ScaleHeight = stored(-(height + height / 5.0))};
}

float number_step(float range) {
    for (std::size_t i = 1; i < k_steps.size(); ++i) {
        if (stored(as_double(range) / as_double(k_steps[i])) <= k_most_steps) return k_steps[i];
    }
    return k_steps.back();
}

std::string number_label(float tick, float step) {
    return format_number(as_double(tick), step < 1.0F ? "##.0#" : "#####0");
}

/// The ticks `origin` + k x `step` from `least` to `most`, k = 0, 1, 2 ...
std::vector<float> number_ticks(float origin, float least, float most, float step) {
    std::vector<float> ticks;
    const double skipped = (as_double(least) - as_double(origin)) / as_double(step);
    // One earlier than needed: rounding may bring a tick up to the minimum.
    double k = std::max(0.0, std::ceil(skipped) - 1.0);
    for (std::size_t tried = 0; tried < k_most_number_ticks + 2; ++tried, k += 1.0) {
        const float tick = stored(as_double(origin) + k * as_double(step));
        if (tick > most || ticks.size() == k_most_number_ticks) break;
        if (tick >= least) ticks.push_back(tick);
    }
    return ticks;
}

void add_y_ticks(PlotAxes& axes, const PlotFrame& frame, float yr) {
    axes.y_step = number_step(yr);
    for (const float y : number_ticks(frame.y_min, frame.y_min, frame.y_max, axes.y_step))
        axes.y_ticks.push_back({.y = y, .label = number_label(y, axes.y_step) + "  "});
}

/// Ticks of an x axis that counts depths: from 0, whatever the frame's minimum is.
void add_number_ticks(PlotAxes& axes, const PlotFrame& frame, float xr) {
    axes.x_step = number_step(xr);
    for (const float x : number_ticks(0.0F, frame.x_min, frame.x_max, axes.x_step))
        axes.x_ticks.push_back({.x = x, .line = true, .label = number_label(x, axes.x_step), .at = x});
}

/// The days of February in a frame.
/// Intended: one number for all years of the frame, by every fourth year, so that 1900 and 2100 have 29 days.
int february_days(DayCount first_day) {
    const CivilDate date = civil_date(first_day);
    const int year = date.year + (date.month > 2 ? 1 : 0);
    return year % 4 == 0 ? 29 : 28;
}

DayCount month_days(int month, int february) {
    constexpr std::array k_days{31, 0, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    return month == 2 ? february : k_days.at(static_cast<std::size_t>(month - 1));
}

/// Month ticks stand at the first day of each month.
/// Intended: none stands at the first day of the frame, a February of another length shifts all ticks after
/// it, and the label of the last month is there even if its tick is beyond the frame.
void add_month_ticks(PlotAxes& axes, const PlotFrame& frame) {
    axes.x_step = 1.0F;
    const DayCount first_day = whole_day(as_double(frame.x_min));
    const int february = february_days(first_day);
    const CivilDate first = civil_date(first_day);
    DayCount tick = first_day - first.day + 1 + month_days(first.month, february);
    const double limit = as_double(frame.x_max) + as_double(axes.x_step) / 2.0;
    double previous = as_double(frame.x_min);
    do {
        const auto x = static_cast<double>(tick);
        axes.x_ticks.push_back({.x = stored(x),
                                .line = x <= limit,
                                .label = month_text(x - 1.0),
                                .at = stored((previous + x) / 2.0)});
        previous = x;
        tick += month_days(civil_date(tick).month, february);
    } while (previous < as_double(frame.x_max) && static_cast<double>(tick) <= k_largest_day);
}

std::string day_label(double day) {
    const CivilDate date = civil_date(whole_day(day));
    return fmt::format("{}/{}/{:02}", date.month, date.day, std::abs(date.year) % 100);
}

/// Day ticks start at the first day of the frame and end before its last one.
void add_day_ticks(PlotAxes& axes, const PlotFrame& frame, float xr) {
    axes.x_step = stored(std::max(std::floor(as_double(xr) / k_day_steps), 1.0));
    const double limit = as_double(frame.x_max) + as_double(axes.x_step) / 2.0;
    double tick = as_double(frame.x_min);
    do {
        const float x = stored(tick);
        axes.x_ticks.push_back({.x = x, .line = tick <= limit, .label = day_label(tick), .at = x});
        tick += as_double(axes.x_step);
    } while (tick < as_double(frame.x_max));
}

void add_x_ticks(PlotAxes& axes, const PlotFrame& frame, float xr) {
    if (axes.x_kind == XAxisKind::Number) return add_number_ticks(axes, frame, xr);
    // A frame that begins beyond all dates has no date ticks.
    if (!(std::abs(as_double(frame.x_min)) <= k_largest_day)) return;
    if (axes.x_kind == XAxisKind::Months) return add_month_ticks(axes, frame);
    add_day_ticks(axes, frame, xr);
}

void add_grid(PlotAxes& axes, GridMode grid) {
    if (grid == GridMode::Vertical || grid == GridMode::Both) {
        for (const XTick& tick : axes.x_ticks) {
            if (tick.line) axes.grid_x.push_back(tick.x);
        }
    }
    if (grid == GridMode::Horizontal || grid == GridMode::Both) {
        for (const YTick& tick : axes.y_ticks) axes.grid_y.push_back(tick.y);
    }
}

/// a / b, or 0 if b is 0: a plot without a range, or a surface without a size.
double quotient(double a, double b) { return b == 0.0 ? 0.0 : a / b; }

}  // namespace

SurfacePoint World::to_surface(double x, double y) const {
    return {quotient(x - as_double(transform_.ScaleLeft), as_double(transform_.ScaleWidth)) * size_.width,
            quotient(y - as_double(transform_.ScaleTop), as_double(transform_.ScaleHeight)) * size_.height};
}

std::pair<double, double> World::to_world(SurfacePoint at) const {
    return {
        as_double(transform_.ScaleLeft) + quotient(at.x, size_.width) * as_double(transform_.ScaleWidth),
        as_double(transform_.ScaleTop) + quotient(at.y, size_.height) * as_double(transform_.ScaleHeight)};
}

double World::across() const { return quotient(std::abs(as_double(transform_.ScaleWidth)), size_.width); }

double World::down() const { return quotient(std::abs(as_double(transform_.ScaleHeight)), size_.height); }

std::string month_text(double day) {
    constexpr std::array<std::string_view, 12> k_months{"Jan", "Feb", "Mar", "Apr", "May", "Jun",
                                                        "Jul", "Aug", "Sep", "Oct", "Nov", "Dec"};
    return std::string{k_months.at(static_cast<std::size_t>(civil_date(whole_day(day)).month - 1))};
}

PlotAxes lay_out_axes(const Plot& plot, GridMode grid) {
    const PlotFrame& frame = plot.frame;
    const float xr = range(frame.x_min, frame.x_max);
    const float yr = range(frame.y_min, frame.y_max);
    PlotAxes axes;
    axes.transform = transform_of(frame, xr, yr > 0.0F ? yr : 1.0F);
    axes.x_kind = has_number_axis(plot.number) ? XAxisKind::Number
                  : xr > k_most_days           ? XAxisKind::Months
                                               : XAxisKind::Days;
    axes.no_data = has_no_data(plot);
    if (axes.no_data) return axes;
    add_x_ticks(axes, frame, xr);
    add_y_ticks(axes, frame, yr);
    add_grid(axes, grid);
    return axes;
}

std::string period_text(const Plot& plot) {
    if (plot.head.period == PeriodLine::None) return {};
    const double end = as_double(plot.frame.x_max);
    const double last = plot.head.period == PeriodLine::ToEnd ? end : end - 1.0;
    return long_date_text(whole_day(as_double(plot.frame.x_min))) + " to " + long_date_text(whole_day(last));
}

std::vector<std::string> right_column(const Plot& plot, double now) {
    const PlotHead& head = plot.head;
    std::vector<std::string> texts;
    if (head.step > 0) texts.push_back(fmt::format("Step {}", head.step));
    if (has_no_data(plot)) return texts;
    texts.push_back(short_date_text(whole_day(now)));
    if (!head.run_kind.empty()) texts.push_back(head.run_kind);
    if (head.update_interval > 0)
        texts.push_back(fmt::format("(Updating every {} days)", head.update_interval));
    if (head.no_snow) texts.emplace_back("(no snow)");
    return texts;
}

}  // namespace nivora
