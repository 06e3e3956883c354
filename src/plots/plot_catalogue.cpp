#include "plots/plot_catalogue.h"

#include <array>

namespace nivora {
namespace {

using enum PlotNumber;
using enum PlotTable;
using enum PlotZones;

/// In the order of the list. Intended: "cllimate"; the texts are those that users know.
constexpr std::array<PlotEntry, k_last_plot> k_entries{{
    {Runoff, "Runoff (Measured vs Computed)", Results, Basin},
    {SnowCover, "Snow-covered Area (S)", Variables},
    {Temperatures, "Max/Min Temperature (Tmax/TMin)", Variables, AnyZones, PeriodLine::ToDayBefore,
     &Simulation::temperature},
    {DegreeDays, "Zonal Degree Days", Results},
    {Precipitation, "Precipitation (P)", Variables, AnyZones, PeriodLine::ToDayBefore,
     &Simulation::precipitation},
    {CriticalTemperature, "Critical Temperature (Tcrit)", Parameters, AnyZones, PeriodLine::ToDayBefore,
     &Simulation::critical_temperature},
    {LagTime, "Lag Time (L)", Parameters},
    {LapseRate, "Lapse Rate (LR)", Parameters, AnyZones, PeriodLine::ToDayBefore, &Simulation::lapse_rate},
    {DegreeDayFactors, "Degree Day Factors (An)", Parameters},
    {SnowCoefficients, "Snow Runoff Coefficients (CS)", Parameters, AnyZones, PeriodLine::ToDayBefore,
     &Simulation::runoff_coefficients},
    {RainCoefficients, "Rain Runoff Coefficients (CR)", Parameters, AnyZones, PeriodLine::ToDayBefore,
     &Simulation::runoff_coefficients},
    {RainArea, "Rainfall Contributing Area (RCA)", Parameters},
    {PotentialMelt, "Potential Melt Depth (An*T)", Results},
    {DepletionOverMelt, "Snow Depletion vs Total Snowmelt Depth", Results, OneZone, PeriodLine::None},
    {AccumulatedMelt, "Accumulated Zonal Melt Depth vs Time", Results, OneZone},
    {RunoffComponents, "Cumulative Runoff Components", Results, OneZone, PeriodLine::None},
    {Dashes, "--------------------", Results, Basin, PeriodLine::None},
    {RunoffComparison, "Simulated Runoff - Present vs. Changed Climate", Results, Basin},
    {CoverComparison, "Snow Covered Area (Before/After Climate Change)", Results},
    {DepletionCutoff, "MDCexcl vs. MDCexclWA [cutoff]", Results, OneZone, PeriodLine::None},
    {ChangedAccumulatedMelt, "Accumulated Zonal Melt (Changed cllimate)", Results, OneZone},
    {DepletionComparison, "MDCexclWA vs MDCexclWA_CLIM", Results, OneZone, PeriodLine::None},
    {WaterEquivalent, "Comparison of Areal Water Equivalent", Results, OneZone, PeriodLine::ToEnd},
}};

}  // namespace

const PlotEntry& plot_entry(PlotNumber plot) {
    return k_entries.at(static_cast<std::size_t>(number_of(plot) - 1));
}

bool is_basinwide(const PlotEntry& entry, const Simulation* simulation) {
    if (entry.distribution == nullptr || simulation == nullptr) return false;
    return simulation->*entry.distribution == Distribution::Basinwide;
}

}  // namespace nivora
