// Report 0: the description of the current data.
#pragma once

#include "reports/daily_reports.h"

namespace nivora {

/// Writes the basin, the simulation and the zones, on one page. @throws StoreError
void write_data_description(ReportLines& lines, int& pages, const ReportSources& sources);

}  // namespace nivora
