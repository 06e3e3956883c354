// What both forms of the discharge stage share: a day's basin input, the heavy rain rule and the recession.
// Equations and rules: docs/model.md, sections 4 and 7.
#pragma once

#include "engine/basin_inputs.h"
#include "engine/run_state.h"
#include "engine/step_columns.h"

#include <cmath>
#include <span>
#include <vector>

namespace nivora {

/// Assigns a result if it is finite. If it is missing or too large,
/// the variable keeps its value and the run continues.
inline void assign_if_number(double& variable, double result) {
    if (std::isfinite(result)) variable = result;
}

/// The same for a Single field: if the result is too large the field keeps its value; if it is missing, so
/// is the field.
inline void assign_field(float& field, double result) {
    const auto rounded = static_cast<float>(result);
    if (!std::isinf(rounded) && !std::isinf(result)) field = rounded;
}

/// The values of the basin that convert depths to discharge.
struct RunoffBasin {
    std::size_t zones = 1;
    std::vector<float> areas;           ///< km² or mi² by zone; index 0 is not used
    std::vector<double> depth_to_flow;  ///< m³/s or ft³/s per depth of 1 cm or 1 inch a day, by zone
    float basin_area = 0.0F;            ///< km² or mi²
    float threshold = 0.0F;             ///< daily precipitation from which rain counts as heavy, cm or inches
};

/// @param inputs whose threshold is set
[[nodiscard]] RunoffBasin runoff_basin(const BasinInputs& inputs);

/// The rows of a day, one for each zone; fewer on an incomplete last day.
using DayRows = std::span<const std::uint32_t>;

/// The sums of a day over all zones.
struct DayInput {
    double flow = 0.0;        ///< basin input, m³/s or ft³/s
    bool heavy_rain = false;  ///< whether some zone's precipitation reached the threshold
};

/// Q_in = sum over the zones of area x (c_R (M_new + P_rain) + c_S M_snow), with M_snow = SCA x a x T+
/// written to the column of zonal melt, and the sums of climate steps 1 to 3.
[[nodiscard]] DayInput day_input(const StepColumns& columns, const RunoffBasin& basin, DayRows rows,
                                 RunState& run);

/// The sums of all days of a full table, computed zone by zone before the days are worked.
class FullTableInputs {
public:
    /// Computes the sums as `day_input` does for each day; where the table is not full, or a sum is missing
    /// or too large, it computes and changes nothing.
    FullTableInputs(const StepColumns& columns, const RunoffBasin& basin, const RunRows& rows, RunState& run);

    [[nodiscard]] bool computed() const;
    [[nodiscard]] DayInput day(std::size_t day) const { return {flows_[day], heavy_[day] != 0}; }

    /// Puts zonal melt and the climate sums back as they were, for a run that ends before its last day.
    void undo();

private:
    void work_zone(std::size_t zone);
    void sum_climate(std::size_t zone);

    const StepColumns& columns_;
    const RunoffBasin& basin_;
    RunState& run_;
    std::size_t days_;
    bool computed_ = false;
    std::vector<double> flows_;
    std::vector<std::uint32_t> heavy_;
    std::vector<float> former_melt_;
    decltype(RunState::ClimateSums) former_sums_;
};

/// Whether the mean depth of the day's rain over the basin reaches the threshold: precipitation of the zones
/// that are warm enough, on the snow-free part alone where the zone's switch is 0. A mean too large for a
/// Single does not count.
///
/// @param share carries the last zone's share from call to call, for a cover that is missing
[[nodiscard]] bool is_heavy_on_average(const StepColumns& columns, const RunoffBasin& basin, DayRows rows,
                                       double& share);

/// The recession of a run, day after day: k = x Q^-y, of which it keeps 1 - k.
class Recession {
public:
    explicit Recession(float initial_runoff) : Q(as_double(initial_runoff)) {}

    double Q;  ///< the discharge that the day builds on, m³/s or ft³/s

    /// Five days of faster recession begin with this one.
    void start_high_flow() { high_flow_days_ = 5; }

    /// Computes 1 - k of the day. If k reaches 1 it is limited to 0.99.
    ///
    /// @param x, y recession coefficients of the first zone's row;
    /// if one is missing the previous value is used
    /// @return whether k was limited for the first time in the run, of which the user is told
    [[nodiscard]] bool prepare_day(double x, double y);

    /// Q(n) = Q_in(n) (1 - k(n)) + Q(n-1) k(n); NaN if it is too large.
    [[nodiscard]] double discharge(double input) const { return input * share_ + (1.0 - share_) * Q; }

private:
    int high_flow_days_ = 0;
    double x_ = 0.0;
    double y_ = 0.0;
    double share_ = 0.0;
    bool limited_ = false;
};

/// Divides rows in day order into days of `zones` rows by position; the last day may be incomplete.
[[nodiscard]] std::vector<DayRows> days_of(const RowOrder& rows, std::size_t zones);

}  // namespace nivora
