// The nine reports: their titles, and which of them may be chosen or made.
#pragma once

#include "base/dialogs.h"
#include "reports/report_period.h"

#include <array>
#include <optional>
#include <string>

namespace nivora {

/// The reports by number. The order is that of the boxes and menus.
enum class Report {
    DataDescription,
    Temperatures,
    DegreeDayFactors,
    LapseRates,
    DegreeDays,
    Melt,
    Runoff,
    InputSummary,
    DeficitGain
};

inline constexpr int k_reports = 9;
inline constexpr std::array<Report, k_reports> k_all_reports{
    Report::DataDescription, Report::Temperatures, Report::DegreeDayFactors,
    Report::LapseRates,      Report::DegreeDays,   Report::Melt,
    Report::Runoff,          Report::InputSummary, Report::DeficitGain};

/// Whether a report is a daily table, reports 1 to 6.
[[nodiscard]] bool is_daily_report(Report report);

/// The title of a report, in boxes, in menus and in the report itself. At step 6 the runoff of the present
/// climate takes the place of the measured one, and the title says so.
[[nodiscard]] std::string report_title(Report report, int climate_step);

/// Whether the results belong to the current simulation as it stands.
[[nodiscard]] bool may_choose_computed(const BasinState& basin, const RunState& run);

/// Whether a report may be chosen from a list: the first five always, the others only with current results.
[[nodiscard]] bool may_choose_report(Report report, const BasinState& basin, const RunState& run);

/// Why a report cannot be made, even if its box could be ticked; nothing if it can.
///
/// Daily reports need a period. Reports of computed values need a run of the current simulation; of these the
/// input summary is made without a period, too, with blank dates.
[[nodiscard]] std::optional<Message> report_refusal(Report report, const BasinState& basin,
                                                    const RunState& run);

}  // namespace nivora
