#include "engine/runoff_simulation.h"

#include "engine/discharge_walk.h"
#include "engine/table_days.h"

namespace nivora {
namespace {

constexpr double k_longest_short_lag = 18.0;

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
    TableDays days{results, rows, inputs, run, dialogs};
    LagRuleWalk<TableDays> walk{days, run};
    for (std::size_t day = 0; day < days.count(); ++day) {
        if (walk.work_day(day)) continue;
        days.forget_days_after(day);
        return false;
    }
    days.keep_final();
    return true;
}

}  // namespace nivora
