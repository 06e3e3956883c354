#include "engine/runoff_simulation.h"

namespace nivora {
namespace {

constexpr double k_longest_short_lag = 18.0;

/// The stage and the values that its steps share.
class RunoffStage {
public:
    RunoffStage(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
                Dialogs& dialogs)
        : results_(results),
          run_(run),
          dialogs_(dialogs),
          columns_(step_columns(results, run.ClimateStep)),
          basin_(runoff_basin(inputs)),
          days_(days_of(rows.by_day, basin_.zones)),
          inputs_(columns_, basin_, rows, run),
          recession_(run.InitialRunoff),
          next_update_(run.UpdateInterval) {}

    bool work() {
        for (std::size_t day = 0; day < days_.size(); ++day) {
            if (work_day(day)) continue;
            forget_days_after(day);
            return false;
        }
        if (!days_.empty()) keep_final();
        return true;
    }

private:
    [[nodiscard]] std::size_t first_row(std::size_t day) const { return days_[day].front(); }

    /// After a cancel the table holds the zonal melt of the days up to it and no later ones.
    void forget_days_after(std::size_t last) {
        if (!inputs_.computed()) return;
        inputs_.undo();
        for (std::size_t day = 0; day <= last; ++day)
            static_cast<void>(day_input(columns_, basin_, days_[day], run_));
    }

    bool work_day(std::size_t day) {
        const std::size_t row = first_row(day);
        const DayInput input =
            inputs_.computed() ? inputs_.day(day) : day_input(columns_, basin_, days_[day], run_);
        if (day == 0) {
            lag_.start(input.flow);
            assign_field(columns_.total_melt[row], input.flow);
        }
        lag_.shift(input.flow);
        if (input.heavy_rain) test_heavy_rain(days_[day]);
        if (!recession_.prepare_day(columns_.recession_x[row], columns_.recession_y[row], dialogs_))
            return false;
        const double lagged = lag_.release({.lag_hours = as_double(columns_.lag_hours[row]),
                                            .older = total_melt(day == 0 ? 0 : day - 1),
                                            .yesterday = total_melt(day),
                                            .today = input.flow,
                                            .first_of_run = results_.Date[row] == run_.RunStart});
        assign_if_number(columns_.computed[row], recession_.discharge(lagged));
        update(static_cast<int>(day) + 1, row);
        hand_on(day, input.flow);
        return true;
    }

    [[nodiscard]] double total_melt(std::size_t day) const {
        return as_double(columns_.total_melt[first_row(day)]);
    }

    void test_heavy_rain(DayRows rows) {
        if (is_heavy_on_average(columns_, basin_, rows, rain_share_)) recession_.start_high_flow();
    }

    /// The forecast: on an update day the next day starts from the measurement, if there is one.
    void update(int day_number, std::size_t row) {
        if (day_number == next_update_) {
            const double measured = columns_.measured_present.empty() ? as_double(columns_.measured[row])
                                                                      : columns_.measured_present[row];
            assign_if_number(recession_.Q, measured);
            next_update_ += run_.UpdateInterval;
        } else {
            assign_if_number(recession_.Q, columns_.computed[row]);
        }
    }

    /// The next day's row takes this day's input. The lag of the day after that row is kept: when a day is
    /// computed, the kept lag is that of the following day.
    void hand_on(std::size_t day, double input) {
        if (day + 1 < days_.size()) assign_field(columns_.total_melt[first_row(day + 1)], input);
        if (day + 2 < days_.size()) lag_.remember_lag(as_double(columns_.lag_hours[first_row(day + 2)]));
    }

    void keep_final() {
        const auto last = static_cast<float>(columns_.computed[first_row(days_.size() - 1)]);
        if (std::isfinite(last)) run_.FinalQ[static_cast<std::size_t>(run_.ClimateStep)] = last;
    }

    SimResults& results_;
    RunState& run_;
    Dialogs& dialogs_;
    StepColumns columns_;
    RunoffBasin basin_;
    std::vector<DayRows> days_;
    FullTableInputs inputs_;
    Recession recession_;
    LagSpread lag_;
    double rain_share_ = 0.0;
    int next_update_;
};

}  // namespace

void LagSpread::start(double input) { pending_[2] = pending_[3] = input; }

void LagSpread::shift(double input) {
    pending_[1] = pending_[2];
    pending_[2] = pending_[3];
    pending_[3] = input;
}

double LagSpread::release(const Day& day) {
    assign_if_number(late_, late_share(day.lag_hours));
    if (day.lag_hours > k_longest_short_lag) release_long(day);
    if (day.lag_hours <= k_longest_short_lag) release_short(day);
    return input_;
}

void LagSpread::release_long(const Day& day) {
    late_ -= 1.0;
    assign_if_number(older_, day.older);
    assign_if_number(yesterday_, day.yesterday);
    assign_if_number(part1_, late_ * older_);
    if (part1_ > pending_[1]) {
        part1_ = pending_[1];
    } else if (std::abs(part1_ - pending_[1]) > 0.01 && !day.first_of_run) {
        part1_ = pending_[1];
    }
    pending_[1] = 0.0;
    assign_if_number(part2_, (1.0 - late_) * yesterday_);
    if (part2_ > pending_[2]) {
        part2_ = pending_[2];
        pending_[2] = 0.0;
    } else {
        assign_if_number(pending_[2], pending_[2] - part2_);
    }
    assign_if_number(input_, part1_ + part2_);
}

void LagSpread::release_short(const Day& day) {
    assign_if_number(yesterday_, day.yesterday);
    assign_if_number(part2_, yesterday_ * late_);
    if (part2_ >= pending_[2]) {
        part2_ = pending_[2];
        pending_[2] = 0.0;
    } else if (former_lag_ > k_longest_short_lag) {
        assign_if_number(pending_[2], pending_[2] - part2_);
    } else {
        // Intended: on the first day the rest is never released.
        if (!day.first_of_run) part2_ = pending_[2];
        pending_[2] = 0.0;
    }
    const double part3 = (1.0 - late_) * day.today;
    assign_if_number(pending_[3], pending_[3] - part3);
    const double rest = std::abs(pending_[1]) > 0.001 && !day.first_of_run ? pending_[1] : 0.0;
    assign_if_number(input_, part2_ + part3 + rest);
}

bool Runoff_Simulation(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
                       Dialogs& dialogs) {
    return RunoffStage{results, rows, inputs, run, dialogs}.work();
}

}  // namespace nivora
