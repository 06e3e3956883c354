#include "engine/missing_input.h"

#include <algorithm>

namespace nivora {
namespace {

std::optional<MissingInput> input_of_row(const SimResults& results, std::size_t row, const char* field) {
    return MissingInput{results.Zone[row], results.Date[row], field};
}

/// Why the first zone has no degree days on a day: its temperatures and precipitation are checked in this
/// order, with the lapse rate between them.
std::optional<MissingInput> of_first_zone(const SimResults& results, const BasinInputs& inputs,
                                          std::size_t row) {
    if (inputs.temperature_max_min) {
        if (is_missing(results.TMax[row])) return input_of_row(results, row, "Tmax");
        if (is_missing(results.Tmin[row])) return input_of_row(results, row, "Tmin");
    } else if (is_missing(results.TAvg[row])) {
        return input_of_row(results, row, "Tavg");
    }
    if (!is_missing(results.LR[row]) && is_missing(results.Precip[row]))
        return input_of_row(results, row, "Precip");
    return std::nullopt;
}

/// The zone inputs stop at the first row that fails, day by day. A daily variable stops them only in the
/// first zone; another zone without a temperature of its own stops the snow and melt stage.
std::optional<MissingInput> of_zone_inputs(const SimResults& results, const BasinInputs& inputs,
                                           const RunState& run) {
    const RunRows rows = run_rows(results, run.RunStart, run.RunEnd);
    for (const std::size_t row : rows.by_day) {
        if (!is_missing(results.ZoneDD[row])) continue;
        if (results.Zone[row] == 1) return of_first_zone(results, inputs, row);
        if (inputs.temperature_basinwide) return std::nullopt;
    }
    return std::nullopt;
}

std::optional<MissingInput> of_snow_stage(const SimResults& results, const RunNote& note) {
    for (std::size_t row = 0; row < results.Zone.size(); ++row) {
        if (results.Zone[row] != note.zones.front() || results.Date[row] != note.first) continue;
        if (is_missing(results.TAvg[row])) return input_of_row(results, row, "Tavg");
        if (is_missing(results.Precip[row])) return input_of_row(results, row, "Precip");
        if (is_missing(results.SCA[row])) return input_of_row(results, row, "SCA");
    }
    return std::nullopt;
}

}  // namespace

std::optional<MissingInput> missing_input(const SimResults& results, const BasinInputs& inputs,
                                          const RunState& run, bool reached_end) {
    if (!reached_end) return of_zone_inputs(results, inputs, run);
    const auto stopped = std::find_if(run.notes.begin(), run.notes.end(), [](const RunNote& note) {
        return note.kind == NoteKind::SnowMeltStopped && !note.zones.empty();
    });
    if (stopped == run.notes.end()) return std::nullopt;
    return of_snow_stage(results, *stopped);
}

}  // namespace nivora
