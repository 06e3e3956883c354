// What both forms of the discharge stage share: a day's basin input, the heavy rain rule and the recession.
// Equations and rules: docs/model.md, sections 4 and 7.
#pragma once

#include "base/dialogs.h"
#include "engine/basin_inputs.h"
#include "engine/run_state.h"
#include "engine/step_columns.h"

#include <cmath>
#include <span>
#include <vector>

namespace nivora {

/// "Assign if it can be": a result that is missing or too large leaves the variable as it was, and the run
/// goes on.
inline void assign_if_number(double& variable, double result) {
    if (std::isfinite(result)) variable = result;
}

/// The same for a Single field: too large a result leaves the field as it was; a missing one makes it
/// missing.
inline void assign_field(float& field, double result) {
    const auto rounded = static_cast<float>(result);
    if (!std::isinf(rounded) && !std::isinf(result)) field = rounded;
}

/// What a run needs of the basin to turn depths into discharge.
struct RunoffBasin {
    std::size_t zones = 1;
    std::vector<float> areas;           ///< km² or mi² by zone; index 0 is not used
    std::vector<double> depth_to_flow;  ///< m³/s or ft³/s per depth of 1 cm or 1 inch a day, by zone
    float basin_area = 0.0F;            ///< km² or mi²
    float threshold = 0.0F;             ///< daily precipitation from which rain counts as heavy, cm or inches
};

/// @param inputs with a settled threshold
[[nodiscard]] RunoffBasin runoff_basin(const BasinInputs& inputs);

/// The rows of a day, one a zone; fewer on a last day whose rows are incomplete.
using DayRows = std::span<const std::uint32_t>;

/// What the zones of a day yield together.
struct DayInput {
    double flow = 0.0;        ///< basin input, m³/s or ft³/s
    bool heavy_rain = false;  ///< whether some zone's precipitation reached the threshold
};

/// Q_in = sum over the zones of area x (c_R (M_new + P_rain) + c_S M_snow), with M_snow = SCA x a x T+
/// written to the column of zonal melt, and the sums of climate steps 1 to 3.
[[nodiscard]] DayInput day_input(const StepColumns& columns, const RunoffBasin& basin, DayRows rows,
                                 RunState& run);

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

    /// Works out 1 - k of the day. Where k would reach 1 it is held at 0.99, with a question at the first
    /// time in a run.
    ///
    /// @param x, y recession coefficients of the first zone's row; a missing one leaves the former
    /// @return false where the user cancelled
    [[nodiscard]] bool prepare_day(double x, double y, Dialogs& dialogs);

    /// Q(n) = Q_in(n) (1 - k(n)) + Q(n-1) k(n); not a number where it is too large.
    [[nodiscard]] double discharge(double input) const { return input * share_ + (1.0 - share_) * Q; }

private:
    int high_flow_days_ = 0;
    double x_ = 0.0;
    double y_ = 0.0;
    double share_ = 0.0;
    bool told_ = false;
};

/// Cuts rows in day order into days of so many zones, by position; the last day may be incomplete.
[[nodiscard]] std::vector<DayRows> days_of(const RowOrder& rows, std::size_t zones);

}  // namespace nivora
