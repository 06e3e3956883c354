// What came of each pair of changes: as a printed table, and as JSON.
#pragma once

#include "batch/json.h"
#include "search/response_rows.h"
#include "search/response_study.h"

#include <iosfwd>
#include <string>
#include <vector>

namespace nivora {

void print_response(const ResponseHead& head, const std::vector<ResponsePoint>& points, std::ostream& out);
[[nodiscard]] Json response_json(const ResponseHead& head, const std::vector<ResponsePoint>& points);

}  // namespace nivora
