#include "engine/runoff_custom_lag.h"

#include "engine/lag_distribution.h"

#include <algorithm>
#include <limits>
#include <optional>

namespace nivora {
namespace {

/// The inputs of the last days, oldest first, and their shares.
class LagQueue {
public:
    LagQueue(std::vector<double> weights, double first_input)
        : weights_(std::move(weights)), inputs_(weights_.size(), first_input) {}

    /// Adds the day's input, or keeps the newest one if it is missing, and returns the lagged input; NaN if
    /// it is too large.
    double release(std::optional<double> input) {
        if (input) inputs_.back() = *input;
        double lagged = 0.0;
        for (std::size_t i = 0; i < inputs_.size(); ++i) lagged += inputs_[i] * weights_[i];
        std::shift_left(inputs_.begin(), inputs_.end(), 1);
        return lagged;
    }

private:
    std::vector<double> weights_;
    std::vector<double> inputs_;
};

std::vector<double> daily_inputs(const StepColumns& columns, const RunoffBasin& basin, const RunRows& rows,
                                 const std::vector<DayRows>& days, RunState& run) {
    const FullTableInputs table{columns, basin, rows, run};
    std::vector<double> inputs;
    inputs.reserve(days.size());
    for (std::size_t day = 0; day < days.size(); ++day) {
        const DayInput input = table.computed() ? table.day(day) : day_input(columns, basin, days[day], run);
        inputs.push_back(input.flow);
    }
    return inputs;
}

/// Inputs are kept for two days more than the simulation's period. Rows of zones that the basin does not have
/// add days beyond that, and these have no input.
std::size_t days_with_input(const BasinInputs& inputs) {
    if (!inputs.start || !inputs.end) return std::numeric_limits<std::size_t>::max();
    return static_cast<std::size_t>(std::max<DayCount>(0, *inputs.end - *inputs.start + 3));
}

}  // namespace

bool Runoff_Custom_Lag(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
                       Dialogs& dialogs) {
    const StepColumns columns = step_columns(results, run.ClimateStep);
    const RunoffBasin constants = runoff_basin(inputs);
    const std::vector<DayRows> days = days_of(rows.by_day, constants.zones);
    const std::vector<double> flows = daily_inputs(columns, constants, rows, days, run);
    if (days.empty()) return true;

    const std::size_t room = days_with_input(inputs);
    LagQueue queue{lag_weights(run.LagDistribution), flows.front()};
    Recession recession{run.InitialRunoff};
    double rain_share = 0.0;
    double lagged = 0.0;
    for (std::size_t day = 0; day < days.size(); ++day) {
        const std::size_t row = days[day].front();
        const std::optional<double> input = day < room ? std::optional{flows[day]} : std::nullopt;
        if (input) assign_field(columns.total_melt[row], *input);
        const bool wet = columns.precipitation[row] >= constants.threshold;
        if (wet && is_heavy_on_average(columns, constants, days[day], rain_share))
            recession.start_high_flow();
        if (!recession.prepare_day(columns.recession_x[row], columns.recession_y[row], dialogs)) return false;
        assign_if_number(lagged, queue.release(input));
        assign_if_number(columns.computed[row], recession.discharge(lagged));
        assign_if_number(recession.Q, columns.computed[row]);
    }
    const auto last = static_cast<float>(columns.computed[days.back().front()]);
    if (std::isfinite(last)) run.FinalQ[static_cast<std::size_t>(run.ClimateStep)] = last;
    return true;
}

}  // namespace nivora
