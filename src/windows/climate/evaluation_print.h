// A climate evaluation as it is printed.
#pragma once

#include "reports/grid_pages.h"
#include "session/session.h"

#include <optional>
#include <vector>

namespace nivora {

class GridView;

/// The scenario that step 1 of an evaluation has just applied. It is kept for the print: the user may change
/// the stored one while the statistics are still shown. Climate changes that were made by hand have no
/// scenario to print. @throws StoreError
[[nodiscard]] std::optional<PrintedSheet> evaluated_scenario(const Session& session, double now);

/// The statistics of an evaluation and its scenario, each on a page of its own.
///
/// @param statistics the grid of the steps that ran
/// @param scenario   as evaluated_scenario gave it
/// @param now        date and time of the print
[[nodiscard]] std::vector<PrintedSheet> printed_evaluation(const Session& session, const GridView& statistics,
                                                           const std::optional<PrintedSheet>& scenario,
                                                           double now);

}  // namespace nivora
