// The options of the report command.
#pragma once

#include "batch/commands.h"
#include "reports/report_catalogue.h"

#include <CLI/CLI.hpp>

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The word for all reports that a user may choose.
inline constexpr std::string_view k_all_reports_word = "all";

/// The texts of the options as the command line gives them.
struct ReportTexts {
    std::string basin;
    std::string simulation;
    std::string reports;
    std::string out;
    std::string kind = "melt-season";
    std::string forecast;
    bool no_snow = false;
    bool input_changed = false;
    int step = 0;
    std::string scenario;
    std::string climate_report;
    std::string now;
};

CLI::App& add_report(CLI::App& app, ReportTexts& texts);

/// The command that checked options ask for.
///
/// @param report what add_report returned
[[nodiscard]] ReportCommand report_of(const ReportTexts& texts, const CLI::App& report,
                                      std::chrono::milliseconds wait);

/// Numbers of reports, 0 to 8, joined by commas; nothing for any other text.
[[nodiscard]] std::optional<std::vector<Report>> read_report_numbers(std::string_view text);

/// Date and time of the form yyyy-mm-ddThh:mm:ss; nothing for any other text.
[[nodiscard]] std::optional<double> read_iso_moment(std::string_view text);

}  // namespace nivora
