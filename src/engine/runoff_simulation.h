// Third stage of a run: the basin's daily input, its distribution by the time lag, and the discharge
// recursion. Equations and rules: docs/model.md, sections 5, 7 and 8.
#pragma once

#include "base/dialogs.h"
#include "engine/runoff_day.h"

namespace nivora {

/// Combines the inputs of three days to the lagged input of one day, by a lag in hours.
///
/// Keeps the part of the last inputs that is not yet released, so that a change of the lag loses or repeats
/// water for a few days at most.
class LagSpread {
public:
    /// The share of a day's input that arrives a day later, measured from the 6 o'clock reading; from a lag
    /// above 18 hours on it exceeds 1 and reaches into the day after that.
    [[nodiscard]] static double late_share(double lag_hours) { return 0.25 + lag_hours * (0.25 / 6.0); }

    /// Sets the first day's input, which is also used for the days before the run.
    void start(double input);
    /// Adds a day's input; the others become one day older.
    void shift(double input);

    /// The inputs of one day.
    struct Day {
        double lag_hours;  ///< of the first zone's row; if missing, the input of the day before is used
        double older;      ///< input of two days before, rounded to a Single
        double yesterday;  ///< input of the day before, rounded to a Single
        double today;
        bool first_of_run;  ///< whether the row has the first date of the run
    };

    /// The lagged input of a day, m³/s or ft³/s.
    [[nodiscard]] double release(const Day& day);

    /// The lag of a day to come, for the rule of a lag that falls to 18 hours or below.
    void remember_lag(double lag_hours) {
        if (lag_hours > 0.0) former_lag_ = lag_hours;
    }

private:
    void release_long(const Day& day);
    void release_short(const Day& day);

    double pending_[4] = {0.0, 0.0, 0.0, 0.0};  // by age: 1 oldest, 3 today
    double former_lag_ = 0.0;
    double late_ = 0.0;
    double older_ = 0.0;
    double yesterday_ = 0.0;
    double part1_ = 0.0;
    double part2_ = 0.0;
    double input_ = 0.0;
};

/// Computes the discharge of every day with the lag rule, into the first zone's row of the day.
///
/// With a positive update interval, every so many days the next day starts from the measured discharge; the
/// computed value of the update day stays. Writes `ZonalMelt`, `TotalMelt` (on day n the input of day n-1)
/// and the computed discharge of the step; leaves `FinalQ` of the step. Rows are taken by position,
/// `ZoneCount` a day. A value that cannot be computed keeps its previous value.
///
/// @return false where the user cancelled
[[nodiscard]] bool Runoff_Simulation(SimResults& results, const RunRows& rows, const BasinInputs& inputs,
                                     RunState& run, Dialogs& dialogs);

}  // namespace nivora
