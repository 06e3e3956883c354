// What the plots of melt share: the values of their rows and the curves of the picked zone. Used by the
// selection alone.
#pragma once

#include "plots/accumulated_melt.h"
#include "plots/plot_build.h"

#include <string>
#include <vector>

namespace nivora {

/// A value of a row. @throws Fault if it is missing
[[nodiscard]] float required_value(const DailyRows& rows, std::size_t field, std::size_t row);

/// A day of a row as a coordinate.
[[nodiscard]] float day_of(const DailyRows& rows, std::size_t row);

/// The days of rows whose first four fields are `ZonalMelt`, `NewMelt`, `SCA` and `AZMexclWA`.
[[nodiscard]] std::vector<MeltDay> melt_days(const DailyRows& rows);

/// Adds a curve of the picked zone; its line is its place among the curves.
void add_zone_curve(PlotBuild& build, std::string name, std::vector<PlotPoint> points);

/// Labels the axes of a plot that shows the cover over the depth of melt.
void label_depletion(PlotBuild& build);

/// @throws BuildFault if a curve has more points than a plot of one year holds
void check_year_points(std::size_t points);

}  // namespace nivora
