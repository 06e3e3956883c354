// The texts of the report command's options.
#pragma once

#include "reports/report_catalogue.h"

#include <optional>
#include <string_view>
#include <vector>

namespace nivora {

/// The word for all reports that a user may choose.
inline constexpr std::string_view k_all_reports_word = "all";

/// Numbers of reports, 0 to 8, joined by commas; nothing for any other text.
[[nodiscard]] std::optional<std::vector<Report>> read_report_numbers(std::string_view text);

/// Date and time of the form yyyy-mm-ddThh:mm:ss; nothing for any other text.
[[nodiscard]] std::optional<double> read_iso_moment(std::string_view text);

}  // namespace nivora
