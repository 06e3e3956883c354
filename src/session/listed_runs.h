// What the list of runs takes from a run, how it shows it, and how two runs compare.
#pragma once

#include "session/run_list.h"
#include "session/session.h"

#include <string>
#include <vector>

namespace nivora {

/// The open basin as the list names it; empty for one without a file.
[[nodiscard]] std::string open_basin_name(const BasinState& basin);

/// Adds the run that has just ended to the list.
///
/// @param completed whether all of its stages were completed
void list_run(Session& session, bool completed);

/// Adds an evaluation of a changed climate after its sixth step: the computed discharge of the present
/// climate stands in the place of the measured one, that of the changed climate in the place of the computed
/// one.
void list_evaluation(Session& session);

/// The headers of the list, and a run as its texts in the same order. The basin's file is the last.
[[nodiscard]] std::vector<std::string> listed_headers();
/// @param basin the open basin: its file and its simulations tell whether the run's simulation is still there
[[nodiscard]] std::vector<std::string> listed_texts(const ListedRun& run, const BasinState& basin);

/// The simulation of a run by the name that it had; behind it the name that it has now, or that it is gone.
[[nodiscard]] std::string listed_simulation(const ListedRun& run, const BasinState& basin);

/// The settings of a run in a few words: "forecast, 3 days; no snow; lag 0.5 0.5; initial runoff 2.5".
[[nodiscard]] std::string listed_settings(const ListedRun& run);

/// One quantity of two runs.
struct ComparedItem {
    std::string name;
    std::string first;
    std::string second;
    std::string difference;  ///< second less first, of numbers that both runs have in the same units
    bool differs = false;
    bool operator==(const ComparedItem&) const = default;
};

/// Two runs side by side: simulation and period, the six statistics, then the settings.
[[nodiscard]] std::vector<ComparedItem> compare_runs(const ListedRun& first, const ListedRun& second,
                                                     const BasinState& basin);

}  // namespace nivora
