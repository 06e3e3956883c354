// The choice of the reports to produce.
#pragma once

#include "reports/report_catalogue.h"

#include <span>
#include <vector>

namespace nivora {

/// Where the chosen reports go.
enum class ReportDestination { Printer, Viewer };

/// The boxes of the reports, and the button that ticks or clears them all.
class ReportChoice {
public:
    /// Nothing is ticked at first. Which reports may be chosen is determined here, once.
    ReportChoice(const BasinState& basin, const RunState& run);

    [[nodiscard]] std::string caption(Report report) const { return report_title(report, climate_step_); }
    [[nodiscard]] bool is_enabled(Report report) const { return enabled_.at(index(report)); }
    [[nodiscard]] bool is_ticked(Report report) const { return ticked_.at(index(report)); }
    [[nodiscard]] bool is_any_ticked() const;
    /// The ticked reports in ascending order.
    [[nodiscard]] std::vector<Report> ticked() const;

    /// Has no effect on a report that is not enabled.
    void tick(Report report, bool on);
    /// Ticks all enabled reports or clears them, as `all_caption` says, and changes that caption.
    ///
    /// Intended: ticking or clearing boxes one by one does not change the caption.
    void tick_or_clear_all();
    [[nodiscard]] const char* all_caption() const { return clears_ ? "&Reset" : "&All"; }

private:
    static std::size_t index(Report report) { return static_cast<std::size_t>(report); }

    int climate_step_;
    std::array<bool, k_reports> enabled_{};
    std::array<bool, k_reports> ticked_{};
    bool clears_ = false;
};

/// The reports that may be chosen, in ascending order.
[[nodiscard]] std::vector<Report> choosable_reports(const BasinState& basin, const RunState& run);

/// What a report needs before it can be chosen, for the user; empty for a report that needs nothing.
[[nodiscard]] std::string report_condition(Report report);

/// The caption of the button that produces the reports.
[[nodiscard]] const char* produce_caption(ReportDestination destination);

/// The title of reports that are shown together: that of a single one, or a common one.
[[nodiscard]] std::string display_title(std::span<const Report> reports, int climate_step);

}  // namespace nivora
