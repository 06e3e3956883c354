// The two text exports of a plot: its curves as a table, and the basin's computed discharge as a flow file.
#pragma once

#include "engine/run_state.h"
#include "plots/plot.h"
#include "store/database.h"

#include <string>
#include <vector>

namespace nivora {

/// The lines of the text file of a plot, without line ends.
///
/// @param now date and time of the head
[[nodiscard]] std::vector<std::string> export_plot_text(const Plot& plot, double now);

/// The lines of a flow file: date and computed discharge in m³/s of each day of a period that has one.
/// @throws StoreError
[[nodiscard]] std::vector<std::string> export_slurp_file(BasinDatabase& database, const BasinState& basin,
                                                         const RunState& run);

/// Whether the table of results still holds, day by day, what plot 1 or 18 shows as its second hydrograph: a
/// picture may be older than the results. @throws StoreError
[[nodiscard]] bool has_shown_discharge(BasinDatabase& database, const BasinState& basin, const RunState& run,
                                       const Plot& plot);

}  // namespace nivora
