#include "plots/melt_curves.h"

#include <utility>

namespace nivora {

float required_value(const DailyRows& rows, std::size_t field, std::size_t row) {
    return to_single(rows.fields[field][row]);
}

float day_of(const DailyRows& rows, std::size_t row) {
    return to_single(static_cast<double>(rows.date[row]));
}

std::vector<MeltDay> melt_days(const DailyRows& rows) {
    const auto value = [&](std::size_t field, std::size_t row) {
        return to_single_field(rows.fields[field][row]);
    };
    std::vector<MeltDay> days;
    days.reserve(rows.size());
    for (std::size_t row = 0; row < rows.size(); ++row) {
        days.push_back({.date = rows.date[row],
                        .zonal_melt = value(0, row),
                        .new_melt = value(1, row),
                        .cover = value(2, row),
                        .changed_melt = value(3, row)});
    }
    return days;
}

void add_zone_curve(PlotBuild& build, std::string name, std::vector<PlotPoint> points) {
    PlotCurve& curve = build.plot.curves.emplace_back();
    curve.name = std::move(name);
    curve.zone = build.first_zone;
    curve.line = static_cast<int>(build.plot.curves.size());
    curve.points = std::move(points);
}

void label_depletion(PlotBuild& build) {
    build.plot.y_label = std::string{"S"};
    build.plot.x_label = depth_label(build.sources.basin.Units_Code);
}

void check_year_points(std::size_t points) {
    if (points > k_year_points) throw BuildFault("a curve has too many points");
}

}  // namespace nivora
