#include "reports/report_catalogue.h"

#include "base/text.h"

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

bool is_last_run(const BasinState& basin, const RunState& run) {
    return !run.LastRunSimulation.empty() && same_name(run.LastRunSimulation, basin.Current_Sim_Name);
}

}  // namespace

int reported_climate_step(const BasinState& basin, const RunState& run) {
    return is_last_run(basin, run) ? run.ClimateStep : 0;
}

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
    const bool computed = report >= Report::DegreeDays && report <= Report::InputSummary;
    if (!computed || is_last_run(basin, run)) return std::nullopt;
    // Intended: no blank stands between "simulation" and "or".
    return Message{.text =
                       "Your current simulation is different from the one most recently executed.\r\n"
                       "Reports that include calculated values cannot be produced until a simulation"
                       "or climate change run is performed!",
                   .title = "Missing data!"};
}

}  // namespace nivora
