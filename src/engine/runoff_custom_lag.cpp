#include "engine/runoff_custom_lag.h"

#include "engine/discharge_walk.h"
#include "engine/table_days.h"

#include <limits>

namespace nivora {

std::size_t days_with_input(const BasinInputs& inputs) {
    if (!inputs.start || !inputs.end) return std::numeric_limits<std::size_t>::max();
    return static_cast<std::size_t>(std::max<DayCount>(0, *inputs.end - *inputs.start + 3));
}

bool Runoff_Custom_Lag(SimResults& results, const RunRows& rows, const BasinInputs& inputs, RunState& run,
                       Dialogs& dialogs) {
    TableDays days{results, rows, inputs, run, dialogs};
    std::vector<double> flows;
    flows.reserve(days.count());
    for (std::size_t day = 0; day < days.count(); ++day) flows.push_back(days.input(day).flow);
    if (flows.empty()) return true;
    if (!walk_with_distribution(days, flows, days_with_input(inputs), run)) return false;
    days.keep_final();
    return true;
}

}  // namespace nivora
