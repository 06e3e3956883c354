#include "plots/plot_export.h"

#include "base/number_text.h"
#include "plots/plot_build.h"
#include "reports/page_head.h"
#include "reports/report_period.h"
#include "store/daily_rows.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>

namespace nivora {
namespace {

constexpr std::size_t k_second_column = 15;
constexpr std::size_t k_third_column = 28;

using Lines = std::vector<std::string>;

/// Fills a line with blanks, so that what follows stands at a column, counted from 1. A longer line stays.
void tab(std::string& line, std::size_t column) {
    if (line.size() < column - 1) line.resize(column - 1, ' ');
}

std::string date_of(const PlotPoint& point) { return short_date_text(whole_day(as_double(point.x))); }

/// Whether a point stands in the text: a zoom and typed maxima cut by x alone.
bool is_exported(const PlotPoint& point, const PlotFrame& frame) {
    return point.x >= frame.x_min && point.x <= frame.x_max && !is_missing(point.y);
}

std::string row_text(PlotNumber plot, const PlotPoint& point) {
    if (!has_number_axis(plot)) return date_of(point) + "  " + spaced_single_text(point.y);
    std::string line = spaced_single_text(point.x);
    tab(line, k_second_column);
    return line + spaced_single_text(point.y);
}

void add_curve(Lines& lines, const Plot& plot, std::size_t curve) {
    lines.emplace_back();
    lines.push_back(fmt::format("Line#{}: {}", curve + 1, plot.curves[curve].heading));
    for (const PlotPoint& point : plot.curves[curve].points) {
        if (is_exported(point, plot.frame)) lines.push_back(row_text(plot.number, point));
    }
}

/// The covers of a zone in present and changed climate side by side; both curves have the same days.
void add_covers(Lines& lines, const Plot& plot, const PlotCurve& present, const PlotCurve& changed) {
    lines.emplace_back();
    lines.push_back(fmt::format("Zone#{}    SCApresent    SCAchanged", present.zone));
    const std::size_t days = std::min(present.points.size(), changed.points.size());
    for (std::size_t day = 0; day < days; ++day) {
        const PlotPoint& cover = present.points[day];
        if (!is_exported(cover, plot.frame) || !is_exported(changed.points[day], plot.frame)) continue;
        std::string line = date_of(cover);
        tab(line, k_second_column);
        line += spaced_single_text(cover.y);
        tab(line, k_third_column);
        lines.push_back(line + spaced_single_text(changed.points[day].y));
    }
}

void add_cover_comparison(Lines& lines, const Plot& plot) {
    for (const PlotCurve& present : plot.curves) {
        if (present.pass != 1) continue;
        for (const PlotCurve& changed : plot.curves) {
            if (changed.pass == 2 && changed.zone == present.zone) add_covers(lines, plot, present, changed);
        }
    }
}

Lines head_lines(const Plot& plot, double now) {
    return {"Program    : Hollin Flow Model for Windows (Nivora)",
            std::string{"Version    : "} + k_report_version,
            "VersionDate: 3/30/2005",
            "Data Source: " + plot.head.subtitle,
            "Run Date   : " + short_date_text(whole_day(now)) + " " + time_text(now),
            "",
            "Basin      : " + plot.head.basin_name,
            "Zone       : " + plot.head.export_zone_label,
            "Plot Name  : " + plot.head.title};
}

/// m³/s per unit of a basin's discharge. Intended: four digits, not the exact quotient.
double cubic_metres(Units units) { return units == Units::English ? as_double(0.02832F) : 1.0; }

}  // namespace

std::vector<std::string> export_plot_text(const Plot& plot, double now) {
    Lines lines = head_lines(plot, now);
    if (plot.number == PlotNumber::CoverComparison) {
        add_cover_comparison(lines, plot);
        return lines;
    }
    for (std::size_t curve = 0; curve < plot.curves.size(); ++curve) add_curve(lines, plot, curve);
    return lines;
}

std::vector<std::string> export_slurp_file(BasinDatabase& database, const BasinState& basin,
                                           const RunState& run) {
    constexpr std::array<std::string_view, 1> k_fields{"DailyQ"};
    // The basin's discharge stands in the rows of zone 1.
    const DailyRows rows =
        read_daily_rows(database, k_sim_results, k_fields, 1, 1, report_period(basin, run).covered());
    const double factor = cubic_metres(basin.Units_Code);
    Lines lines;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const double discharge = rows.fields[0][row];
        if (is_missing(discharge)) continue;
        const CivilDate date = civil_date(rows.date[row]);
        lines.push_back(fmt::format("{:04} {:02} {:02} {}", date.year, date.month, date.day,
                                    double_text(round_half_even(discharge * factor, 2))));
    }
    return lines;
}

bool has_shown_discharge(BasinDatabase& database, const BasinState& basin, const RunState& run,
                         const Plot& plot) {
    constexpr std::array<std::string_view, 2> k_fields{"DailyQ", "DailyQPresent"};
    constexpr int k_summer_of_present_climate = 3;
    const bool same_run = is_last_run(basin, run) && plot.head.step == reported_climate_step(basin, run) &&
                          plot.y_label == runoff_label(basin.Units_Code);
    if (!same_run || plot.curves.size() != 2) return false;
    const DailyRows rows =
        read_daily_rows(database, k_sim_results, k_fields, 1, 1, report_period(basin, run).covered());
    const bool present = plot.number == PlotNumber::Runoff && plot.head.step == k_summer_of_present_climate;
    const std::vector<double>& discharge = rows.fields[present ? 1 : 0];
    const std::vector<PlotPoint>& shown = plot.curves[1].points;
    if (shown.size() != rows.size()) return false;
    for (std::size_t row = 0; row < rows.size(); ++row) {
        const double value = is_missing(discharge[row]) ? 0.0 : discharge[row];
        if (shown[row].x != static_cast<float>(rows.date[row]) || shown[row].y != static_cast<float>(value))
            return false;
    }
    return true;
}

}  // namespace nivora
