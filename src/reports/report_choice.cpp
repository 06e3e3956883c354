#include "reports/report_choice.h"

#include <algorithm>

namespace nivora {

ReportChoice::ReportChoice(const BasinState& basin, const RunState& run)
    : climate_step_(reported_climate_step(basin, run)) {
    for (const Report report : k_all_reports)
        enabled_.at(index(report)) = may_choose_report(report, basin, run);
}

bool ReportChoice::is_any_ticked() const {
    return std::any_of(ticked_.begin(), ticked_.end(), [](bool on) { return on; });
}

std::vector<Report> ReportChoice::ticked() const {
    std::vector<Report> reports;
    for (const Report report : k_all_reports) {
        if (is_ticked(report)) reports.push_back(report);
    }
    return reports;
}

void ReportChoice::tick(Report report, bool on) {
    if (is_enabled(report)) ticked_.at(index(report)) = on;
}

void ReportChoice::tick_or_clear_all() {
    for (const Report report : k_all_reports) tick(report, !clears_);
    clears_ = !clears_;
}

std::vector<Report> choosable_reports(const BasinState& basin, const RunState& run) {
    std::vector<Report> reports;
    for (const Report report : k_all_reports) {
        if (may_choose_report(report, basin, run)) reports.push_back(report);
    }
    return reports;
}

std::string report_condition(Report report) {
    if (report <= Report::DegreeDays) return {};
    if (report == Report::DeficitGain)
        return "Needs a climate change run of the current simulation with all six steps done, and no change "
               "of the inputs since.";
    return "Needs a finished run of the current simulation, and no change of the inputs since.";
}

const char* produce_caption(ReportDestination destination) {
    return destination == ReportDestination::Viewer ? "&View" : "&Print";
}

std::string display_title(std::span<const Report> reports, int climate_step) {
    return reports.size() == 1 ? report_title(reports.front(), climate_step) : "Multiple NVR Reports";
}

}  // namespace nivora
