// The two forms of the discharge stage, day after day, over any source of days: the rows of a results table
// or the sums of a run without one. Equations and rules: docs/model.md, sections 5, 6, 7 and 8.
//
// A source of days has
//   columns()      the columns of which the first zone's rows are used
//   count()        the number of days
//   row(day)       the row of the first zone on a day, from 0
//   starts_run(d)  whether the row has the first date of the run
//   input(day)     the day's sums, asked for in order
//   is_wet(day)    whether the first zone's precipitation reaches the threshold of heavy rain
//   is_heavy(day)  whether the mean rain of the basin reaches the threshold on that day
//   accepts_limit()  asks whether the run goes on with a recession of 0.99
#pragma once

#include "engine/lag_distribution.h"
#include "engine/runoff_simulation.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace nivora {

/// The discharge by the lag rule.
template <typename Days>
class LagRuleWalk {
public:
    LagRuleWalk(Days& days, const RunRequest& run)
        : days_(days),
          columns_(days.columns()),
          recession_(run.InitialRunoff),
          update_interval_(run.UpdateInterval),
          next_update_(run.UpdateInterval) {}

    /// @return false where the user cancelled, on this day
    bool work_day(std::size_t day) {
        const std::size_t row = days_.row(day);
        const DayInput input = days_.input(day);
        if (day == 0) {
            lag_.start(input.flow);
            assign_field(columns_.total_melt[row], input.flow);
        }
        lag_.shift(input.flow);
        if (input.heavy_rain && days_.is_heavy(day)) recession_.start_high_flow();
        if (recession_.prepare_day(columns_.recession_x[row], columns_.recession_y[row]) &&
            !days_.accepts_limit())
            return false;
        const double lagged = lag_.release({.lag_hours = as_double(columns_.lag_hours[row]),
                                            .older = total_melt(day == 0 ? 0 : day - 1),
                                            .yesterday = total_melt(day),
                                            .today = input.flow,
                                            .first_of_run = days_.starts_run(day)});
        assign_if_number(columns_.computed[row], recession_.discharge(lagged));
        update(static_cast<int>(day) + 1, row);
        hand_on(day, input.flow);
        return true;
    }

private:
    [[nodiscard]] double total_melt(std::size_t day) const {
        return as_double(columns_.total_melt[days_.row(day)]);
    }

    /// The forecast: on an update day the next day starts from the measurement, if there is one.
    void update(int day_number, std::size_t row) {
        if (day_number == next_update_) {
            const double measured = columns_.measured_present.empty() ? as_double(columns_.measured[row])
                                                                      : columns_.measured_present[row];
            assign_if_number(recession_.Q, measured);
            next_update_ += update_interval_;
        } else {
            assign_if_number(recession_.Q, columns_.computed[row]);
        }
    }

    /// The next day's row takes this day's input. The lag of the day after that row is kept: when a day is
    /// computed, the kept lag is that of the following day.
    void hand_on(std::size_t day, double input) {
        if (day + 1 < days_.count()) assign_field(columns_.total_melt[days_.row(day + 1)], input);
        if (day + 2 < days_.count()) lag_.remember_lag(as_double(columns_.lag_hours[days_.row(day + 2)]));
    }

    Days& days_;
    StepColumns columns_;
    Recession recession_;
    LagSpread lag_;
    int update_interval_;
    int next_update_;
};

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

/// The discharge by a custom distribution of the lag. There is at least one day.
///
/// @param flows     the input of every day
/// @param room      the number of days that have an input; later ones have none
/// @return false where the user cancelled
template <typename Days>
bool walk_with_distribution(Days& days, const std::vector<double>& flows, std::size_t room,
                            const RunRequest& run) {
    const StepColumns columns = days.columns();
    LagQueue queue{lag_weights(run.LagDistribution), flows.front()};
    Recession recession{run.InitialRunoff};
    double lagged = 0.0;
    for (std::size_t day = 0; day < days.count(); ++day) {
        const std::size_t row = days.row(day);
        const std::optional<double> input = day < room ? std::optional{flows[day]} : std::nullopt;
        if (input) assign_field(columns.total_melt[row], *input);
        if (days.is_wet(day) && days.is_heavy(day)) recession.start_high_flow();
        if (recession.prepare_day(columns.recession_x[row], columns.recession_y[row]) &&
            !days.accepts_limit())
            return false;
        assign_if_number(lagged, queue.release(input));
        assign_if_number(columns.computed[row], recession.discharge(lagged));
        assign_if_number(recession.Q, columns.computed[row]);
    }
    return true;
}

/// Inputs are kept for two days more than the simulation's period. Rows of zones that the basin does not have
/// add days beyond that, and these have no input.
[[nodiscard]] std::size_t days_with_input(const BasinInputs& inputs);

}  // namespace nivora
