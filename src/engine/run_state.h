// The settings of a run and its results beside the results table; they live as long as the program.
#pragma once

#include "base/calendar.h"
#include "base/single.h"
#include "engine/run_notes.h"
#include "store/basin_store.h"

#include <array>
#include <string>
#include <vector>

namespace nivora {

/// RunKind between the choice of the Simulation menu and the choice of its item.
inline constexpr int k_run_kind_simulation_chosen = -1;

inline constexpr int k_melt_season_forecast = 0;
inline constexpr int k_year_round_forecast = 1;
inline constexpr int k_melt_season_simulation = 2;
inline constexpr int k_year_round_simulation = 3;

/// The number of zones for which a climate run keeps sums.
inline constexpr int k_climate_zones = 9;

/// Days and sums of a zone over the run, or over its winter, for the melt and input bar plots.
struct ZoneTotals {
    std::optional<DayCount> first_day;
    std::optional<DayCount> last_day;
    float precipitation = k_missing;  ///< cm or inches
    float rain = k_missing;           ///< cm or inches
    float zonal_melt = k_missing;     ///< melt from the snow covered area, cm or inches
    float new_snow_melt = k_missing;  ///< melt of new snow that reached the runoff, cm or inches
};

/// Which statistics of a run were computed; a fault ends their computation.
enum class StatisticsReach {
    Nothing,
    Volumes,  ///< volumes and averages
    All       ///< the volume difference and R², too
};

/// The settings of a run.
struct RunRequest {
    int RunKind = 0;             ///< 0, 1 forecast; 2, 3 simulation; even melt season, odd year round
    std::string RunTitle;        ///< such as "Year round Simulation"
    int UpdateInterval = 0;      ///< days between updates of a forecast; 0 for a simulation
    DayCount RunStart = 0;       ///< first day of the working period
    DayCount RunEnd = 0;         ///< last day of the working period
    int ClimateStep = 0;         ///< 0 plain run, 1 to 6 the steps of a climate evaluation
    float InitialRunoff = 0.0F;  ///< m³/s or ft³/s
    bool NoSnow = false;         ///< New and Open do not reset it
    std::string ScenarioName;    ///< the climate scenario, empty in a plain run

    /// Index 0 the number of days N (0 to 6, 0 for none), 1 to N the shares of a day's input that run off on
    /// that day, the day after, and so on. New and Open do not reset it; it is not stored.
    std::array<float, 8> LagDistribution{};
};

/// The results of a run that are not in the results table.
struct RunResults {
    /// The simulation whose results `SimResults` holds; empty during a run.
    std::string LastRunSimulation;

    /// Days per month, 1 to 12; February is set by each run.
    std::array<int, 13> MonthDays{0, 31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};

    float LapseUnit = 100.0F;      ///< m or ft that the lapse rate refers to
    float SnowStore = 0.0F;        ///< new snow waiting to melt in the last zone, cm or inches of water
    DayCount MeltSeasonStart = 0;  ///< the day before the melt season day that ended the last winter

    std::array<float, 7> FinalQ{};  ///< discharge of the last day, by climate step; m³/s or ft³/s

    /// New snow left in each zone after the last day's melt, by climate step, zone 1 first; cm or inches of
    /// water. Empty for a step that computed no snow, missing for a zone that the stage did not finish.
    std::array<std::vector<float>, 7> EndingStores{};

    float AvgMeasuredQ = 0.0F;      ///< m³/s or ft³/s
    float MeasuredVolume = 0.0F;    ///< 10^6 m³ or 10^6 ft³
    float AvgComputedQ = 0.0F;      ///< m³/s or ft³/s
    float ComputedVolume = 0.0F;    ///< 10^6 m³ or 10^6 ft³
    float VolumeDifference = 0.0F;  ///< Dv, percent of the measured volume
    float CoefficientR2 = 0.0F;     ///< Nash-Sutcliffe form, 1 at best, no lower bound
    bool former_r2 = false;         ///< CoefficientR2 was left as it was: the measured discharge is constant
    /// Which of the six belong to this run; the others may be those of an earlier one.
    StatisticsReach statistics = StatisticsReach::Nothing;

    /// Notes on the last run, or on the steps of an evaluation in their order.
    std::vector<RunNote> notes;

    /// Sums of a climate run by zone (1 to 9), step (1 to 4) and item: 1 the zone's input, 2 melt from the
    /// snow covered area, 3 rain, 4 melt of new snow; cm or inches.
    std::array<std::array<std::array<float, 5>, 5>, k_climate_zones + 1> ClimateSums{};
    /// By zone (1 to 9): 1, 2 winter precipitation of steps 1 and 2;
    /// 3, 4 snow carried at the end of steps 3 and 5.
    std::array<std::array<float, 5>, k_climate_zones + 1> WinterPrecip{};

    std::array<ZoneTotals, k_most_zones> zone_totals{};  ///< zone 1 first
};

/// Settings and results, and whether the main window offers them.
struct RunState : RunRequest, RunResults {
    bool results_enabled = false;  ///< whether the Results entry of the Data menu can be chosen
};

}  // namespace nivora
