#include "reports/report_catalogue.h"

#include <fmt/format.h>

namespace nivora {
namespace {

constexpr int k_last_climate_step = 6;
constexpr std::array<const char*, k_reports> k_titles{
    "Current data description",
    "Temperature Values",
    "Degree Day Factors, Runoff Coefficients",
    "Lapse Rate, Critical Temperature, Rain Contributing Area, Lag Time",
    "Zone Degree Days, Observed Precipitation, Snow Covered Area (S)",
    "Melt Depth (M·S), Melt/New Snow (M·(1-S)), Contributing Rain (Cpr)",
    "Measured vs Computed Snowmelt Runoff",
    "Input Summary Report, Run Statistics",
    "Climate Change Deficit / Gain Summary"};
constexpr const char* k_changed_runoff_title = "Simulated Runoff - Present vs. Changed Climate";
constexpr const char* k_missing_data = "Missing data!";

bool is_computed(Report report) { return report >= Report::DegreeDays && report <= Report::InputSummary; }

std::optional<Message> period_refusal(Report report, const BasinState& basin, const RunState& run) {
    const auto problem = period_problem(basin, run);
    if (!problem) return std::nullopt;
    return Message{
        .text = fmt::format("The report '{}' has no days to show: {}. {}, {}then make the report "
                            "again.",
                            report_title(report, reported_climate_step(basin, run)), problem->cause,
                            problem->remedy, is_computed(report) ? "run the simulation, " : ""),
        .title = k_missing_data};
}

}  // namespace

bool is_daily_report(Report report) { return report >= Report::Temperatures && report <= Report::Runoff; }

std::string report_title(Report report, int climate_step) {
    if (report == Report::Runoff && climate_step == k_last_climate_step) return k_changed_runoff_title;
    return k_titles.at(static_cast<std::size_t>(report));
}

bool may_choose_computed(const BasinState& basin, const RunState& run) {
    return basin.Output_Valid && !basin.Input_Changed && is_last_run(basin, run);
}

bool may_choose_report(Report report, const BasinState& basin, const RunState& run) {
    if (report <= Report::DegreeDays) return true;
    if (report == Report::DeficitGain && run.ClimateStep != k_last_climate_step) return false;
    return may_choose_computed(basin, run);
}

std::optional<Message> report_refusal(Report report, const BasinState& basin, const RunState& run) {
    if (is_daily_report(report)) {
        if (auto refusal = period_refusal(report, basin, run)) return refusal;
    }
    if (!is_computed(report) || is_last_run(basin, run)) return std::nullopt;
    // Intended: no blank stands between "simulation" and "or".
    return Message{.text =
                       "Your current simulation is different from the one most recently executed.\r\n"
                       "Reports that include calculated values cannot be produced until a simulation"
                       "or climate change run is performed!",
                   .title = k_missing_data};
}

}  // namespace nivora
