// What the selections of all plots share: the pick, its rows, the bounds of its columns. Used by the
// selection alone.
#pragma once

#include "plots/select_plot.h"
#include "store/daily_rows.h"
#include "store/daily_table.h"

#include <initializer_list>
#include <stdexcept>
#include <string_view>

namespace nivora {

/// A build that fails: no rows, an empty bound, a missing value in a sum, more points than a plot holds.
class BuildFault : public std::runtime_error {
public:
    using std::runtime_error::runtime_error;
};

/// The most points of a curve of plots 14, 16, 19, 20 and 22, which show one year.
inline constexpr std::size_t k_year_points = 366;

/// A pick with the zones, the days and the labels that belong to it.
struct PlotBuild {
    BasinDatabase& database;
    const PlotSources& sources;
    MeltStop melt_stop = MeltStop::FirstDryDay;
    int step = 0;  ///< climate step of the results
    int first_zone = 1;
    int last_zone = 1;  ///< the zone count if all zones were picked
    bool all_zones = false;
    Period period;  ///< days of the rows
    Plot plot;      ///< number, zone, head, labels and title are set; the selection fills the rest
};

/// Reads fields of the plot's rows. @throws BuildFault without any row
[[nodiscard]] DailyRows read_plot_rows(PlotBuild& build, std::string_view table,
                                       std::initializer_list<std::string_view> fields);

/// The least, the largest and the sum of the values of a field that are not missing, in Double, as Singles.
/// @throws BuildFault if all are missing, or if the result is beyond the largest Single
[[nodiscard]] float least(const std::vector<double>& values);
[[nodiscard]] float largest(const std::vector<double>& values);
[[nodiscard]] float total(const std::vector<double>& values);

/// The first and the last day of rows as Singles. @throws BuildFault without rows
[[nodiscard]] float first_day(const DailyRows& rows);
[[nodiscard]] float last_day(const DailyRows& rows);

/// The frame of the bounds query: x to the maximum plus 1, the queried bounds copied, two legend rows.
void set_frame(Plot& plot, float min_x, float max_x, float min_y, float max_y);

/// "Zone A"
[[nodiscard]] std::string zone_name(int zone);

/// Adds a curve for each zone of the rows; zone i has line i.
///
/// @param y      field of the rows that the points take
/// @param limit  the most points of a curve; more are a BuildFault. 0 for no limit
void add_zone_curves(PlotBuild& build, const DailyRows& rows, std::size_t y, int pass, CurveMode mode,
                     std::size_t limit = 0);

// Labels, cut out of the table of units

[[nodiscard]] std::string temperature_label(Units units);  ///< " (°C)"
[[nodiscard]] std::string depth_label(Units units);        ///< " (cm)"
[[nodiscard]] std::string runoff_label(Units units);       ///< " (m³/s)", in English units " (f³/s) "
[[nodiscard]] std::string lapse_rate_label(Units units);   ///< " (°C/100m)"
[[nodiscard]] std::string degree_day_label(Units units);   ///< "(cm/°C·d)"

// The selections. Each fills frame, axis labels, curves, bands, bars and summary of `build.plot`.

void select_runoff(PlotBuild& build);                    ///< plots 1 and 18
void select_zone_series(PlotBuild& build);               ///< plots 2 to 13
void select_depletion_over_melt(PlotBuild& build);       ///< plot 14
void select_accumulated_melt(PlotBuild& build);          ///< plot 15
void select_runoff_components(PlotBuild& build);         ///< plot 16
void select_cover_comparison(PlotBuild& build);          ///< plot 19
void select_depletion_cutoff(PlotBuild& build);          ///< plot 20
void select_changed_accumulated_melt(PlotBuild& build);  ///< plot 21
void select_depletion_comparison(PlotBuild& build);      ///< plot 22
void select_water_equivalent(PlotBuild& build);          ///< plot 23

}  // namespace nivora
