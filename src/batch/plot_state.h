// The state of a program that has made the run which the options of the plot command describe.
#pragma once

#include "batch/plot_command.h"
#include "plots/plot.h"
#include "session/session.h"

#include <optional>

namespace nivora {

struct PlotState {
    bool results_current = false;        ///< whether the results table has a row in the period
    std::optional<PlotRefusal> refusal;  ///< of every plot: the step of an evaluation has no period
};

/// Selects the simulation and sets the run, with its statistics where the plot shows them. Without results
/// the plots of input data can be made all the same.
///
/// @return nothing, after a report, if the basin has no simulation or scenario of that name
/// @throws StoreError
[[nodiscard]] std::optional<PlotState> take_plot_state(BasinDatabase& database, Session& session,
                                                       const PlotCommand& command, BatchDialogs& dialogs);

}  // namespace nivora
