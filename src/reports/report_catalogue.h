// The nine reports: their titles, and which of them may be chosen or made.
#pragma once

#include "base/dialogs.h"
#include "engine/run_state.h"
#include "store/basin_store.h"

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

/// The climate step whose results are reported: 0 also where they belong to another simulation.
[[nodiscard]] int reported_climate_step(const BasinState& basin, const RunState& run);

/// The title of a report, as boxes, menus and the report itself bear it. At step 6 the measured runoff is
/// that of the present climate, and the title says so.
[[nodiscard]] std::string report_title(Report report, int climate_step);

/// Whether the results belong to the current simulation as it stands.
[[nodiscard]] bool may_choose_computed(const BasinState& basin, const RunState& run);

/// Whether a report may be chosen from a list. The first five always, the three of computed values and the
/// climate report only with results that are current.
[[nodiscard]] bool may_choose_report(Report report, const BasinState& basin, const RunState& run);

/// Why a report cannot be made, also where its box could be ticked; nothing where it can.
[[nodiscard]] std::optional<Message> report_refusal(Report report, const BasinState& basin,
                                                    const RunState& run);

}  // namespace nivora
