// The response of a basin to changes of its climate: the six steps of an evaluation for every pair of a
// temperature and a precipitation change, in memory.
#pragma once

#include "climate/climate_state.h"
#include "engine/run_notes.h"
#include "studies/evaluator.h"
#include "studies/study_pool.h"

#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace nivora {

/// A changed climate: the same change on every day in all zones.
struct ClimateChange {
    float degrees = 0.0F;        ///< added to the temperature, °C or °F
    float precipitation = 1.0F;  ///< the factor of the precipitation
};

/// Discharge, m³/s or ft³/s, by day of `StudyBasin::measured`; NaN for a day that has none.
struct ClimateFlows {
    std::vector<double> present;
    std::vector<double> changed;
};

/// The last day of snow by zone; nothing where snow never was or never goes, see last_snow.
using LastSnow = std::vector<std::optional<DayCount>>;

/// What a changed climate does.
struct ClimateResponse {
    ClimateChange change;
    bool done = false;                ///< all six steps were done
    std::string problem = {};         ///< why not
    ClimateState state = {};          ///< statistics of the steps and the seasonal summary
    std::vector<RunNote> notes = {};  ///< such as where a rule of step 5 may mislead
    ClimateFlows flows = {};          ///< winter and summer; empty if not done
    LastSnow snow_present = {};       ///< by zone; empty if not done
    LastSnow snow_changed = {};
};

/// The rows of a scenario with this change: with Max/Min temperatures both of them change, otherwise the
/// average.
[[nodiscard]] std::vector<ScenarioRow> scenario_rows(const StudyBasin& study, const ClimateChange& change);

/// Why no evaluation can have this last day of the winter; empty if one can.
[[nodiscard]] std::string winter_end_problem(const StudyBasin& study, DayCount winter_end);

/// Evaluates changed climates, to the bit as `run_climate_steps` does with a scenario of these rows. It has
/// a table of its own and is used by one thread at a time.
class ResponseEvaluator {
public:
    /// @param winter_end that winter_end_problem accepts
    ResponseEvaluator(std::shared_ptr<const StudyBasin> study, DayCount winter_end);

    [[nodiscard]] ClimateResponse evaluate(const ClimateChange& change);

    /// The table that the last evaluation left.
    [[nodiscard]] const SimResults& table() const { return table_; }

private:
    std::shared_ptr<const StudyBasin> study_;
    DayCount winter_end_;
    SimResults table_;
};

/// All pairs, precipitation by precipitation for each temperature.
[[nodiscard]] std::vector<ClimateChange> all_pairs(std::span<const float> degrees,
                                                   std::span<const float> precipitation);

/// Evaluates each change and hands it over, in their order; the result does not depend on the number of
/// threads.
///
/// @param stops asked from time to time; a study that it stops ends behind the last one that was handed over
void evaluate_all(
    const std::shared_ptr<const StudyBasin>& study, DayCount winter_end,
    std::span<const ClimateChange> changes, StudyPool& pool,
    const std::function<void(std::size_t index, ClimateResponse response)>& take,
    const std::function<bool()>& stops = [] { return false; });

/// What a flow over the simulation shows, for a comparison of two climates.
struct FlowFigures {
    std::optional<double> centre_of_mass;  ///< a day with a fraction; nothing without a volume
    /// The first day by which half of the volume has passed; nothing without a volume.
    std::optional<DayCount> median_day;
    DayCount highest_day = 0;
    double highest = k_missing;  ///< m³/s or ft³/s; NaN without days
};

/// The day before the first bare day of the summer, for each zone. A day is bare if the cover is not above
/// 0.01: with that cover step 5 closes the curve of a changed climate, on its first bare day. Nothing for a
/// zone that is bare on the first day of the summer, and for one that has snow on all its days. Snow that
/// falls on bare ground later, such as that of the next winter, does not count: it is no part of a depletion
/// curve, so that a changed climate never has it.
///
/// @param table with the days of a zone in order
/// @param cover by row of the table; days without a value are left out
[[nodiscard]] LastSnow last_snow(const SimResults& table, Column cover, DayCount winter_end, int zones);

/// @param flow by day; missing days are left out
[[nodiscard]] FlowFigures flow_figures(std::span<const DayCount> dates, std::span<const double> flow);

}  // namespace nivora
