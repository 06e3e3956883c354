// The discharge of a plain run without its results table, for studies that run a basin many thousand times.
// The arithmetic is that of the stages: the same functions of a row, walked in another order.
// Equations and rules: docs/model.md, sections 2 to 8.
#pragma once

#include "engine/basin_inputs.h"
#include "engine/run_state.h"
#include "engine/runoff_day.h"
#include "engine/sim_results.h"
#include "engine/wide_vectors.h"

#include <memory>
#include <span>
#include <vector>

namespace nivora {

/// The daily inputs of a plain run, in the units of `SimResults`: zone 1 with all days in order, then zone 2,
/// and so on. Of a column that an option makes basinwide, of both extremes of temperature, and of the columns
/// from `lag_hours` on, only the days of zone 1 are read, and such a column may end there.
struct FlowColumns {
    Column maximum_temperature;
    Column minimum_temperature;
    Column average_temperature;
    Column precipitation;
    Column lapse_rate;
    Column critical_temperature;
    Column degree_day_factor;
    Column snow_coefficient;
    Column rain_coefficient;
    Column rain_switch;
    Column cover;
    Column lag_hours;
    Column measured;  ///< used on the update days of a forecast alone
    DoubleColumn recession_x;
    DoubleColumn recession_y;
};

[[nodiscard]] FlowColumns flow_columns(const SimResults& results);

/// Computes the discharge of one basin and simulation from any inputs. An object keeps its working memory
/// from run to run and is used by one thread at a time.
class FlowRun {
public:
    /// @param inputs whose threshold is set
    /// @param run    its first day, initial runoff, update interval, lag distribution and `NoSnow`
    /// @param days   of the run, at least 1
    /// @param wide   whether the form for wide vectors is used, which the processor must have; both forms
    /// give the
    ///               same bits
    FlowRun(const BasinInputs& inputs, const RunRequest& run, std::size_t days,
            bool wide = has_wide_vectors());
    ~FlowRun();
    FlowRun(FlowRun&&) noexcept;
    FlowRun& operator=(FlowRun&&) noexcept;
    FlowRun(const FlowRun&) = delete;
    FlowRun& operator=(const FlowRun&) = delete;

    /// Computes the discharge of every day, bit for bit as the stages do.
    ///
    /// @return false where the inputs have missing or wild values. The stages take such inputs too, and have
    ///         the messages for those that they refuse; no discharge is left then.
    [[nodiscard]] bool compute(const FlowColumns& in);

    /// m³/s or ft³/s, by day; empty before the first run and after one that returned false. A day that cannot
    /// be computed is missing.
    [[nodiscard]] std::span<const double> computed() const;
    /// Whether a recession coefficient had to be limited to 0.99, of which a run tells its user.
    [[nodiscard]] bool limited() const;

private:
    class Work;
    std::unique_ptr<Work> work_;
};

}  // namespace nivora
