// The rows of a results table as days of the discharge stage.
#pragma once

#include "base/dialogs.h"
#include "engine/runoff_day.h"

namespace nivora {

/// The days of a run's rows, which are taken by position, so many zones a day.
class TableDays {
public:
    TableDays(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
              Dialogs& dialogs);

    TableDays(const TableDays&) = delete;  // the sums refer to its columns
    TableDays& operator=(const TableDays&) = delete;

    [[nodiscard]] const StepColumns& columns() const { return columns_; }
    [[nodiscard]] std::size_t count() const { return days_.size(); }
    [[nodiscard]] std::size_t row(std::size_t day) const { return days_[day].front(); }
    [[nodiscard]] bool starts_run(std::size_t day) const { return results_.Date[row(day)] == run_.RunStart; }
    [[nodiscard]] DayInput input(std::size_t day);
    [[nodiscard]] bool is_wet(std::size_t day) const {
        return columns_.precipitation[row(day)] >= basin_.threshold;
    }
    [[nodiscard]] bool is_heavy(std::size_t day);
    [[nodiscard]] bool accepts_limit();

    /// After a cancel the table holds the zonal melt of the days up to it and no later ones.
    void forget_days_after(std::size_t last);
    /// Leaves the discharge of the last day in the run, where there is one.
    void keep_final();

private:
    SimResults& results_;
    RunState& run_;
    Dialogs& dialogs_;
    StepColumns columns_;
    RunoffBasin basin_;
    std::vector<DayRows> days_;
    FullTableInputs inputs_;
    double rain_share_ = 0.0;
};

}  // namespace nivora
