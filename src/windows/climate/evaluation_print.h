// A climate evaluation as it is printed.
#pragma once

#include "reports/grid_pages.h"
#include "session/session.h"

#include <vector>

namespace nivora {

class GridView;

/// The statistics of an evaluation and its scenario, each on a page of its own. Climate changes that were
/// made by hand have no scenario to print.
///
/// @param statistics the grid of the steps that ran. @throws StoreError
[[nodiscard]] std::vector<PrintedSheet> printed_evaluation(const Session& session, const GridView& statistics,
                                                           double now);

}  // namespace nivora
