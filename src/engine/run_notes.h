// Notes on a run that was completed: days that were skipped,
// and results that a rule of the model makes doubtful.
#pragma once

#include "base/calendar.h"
#include "base/single.h"
#include "base/units.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

struct RunState;
struct RunRows;
struct SimResults;

enum class NoteKind {
    DaysWithoutRows,  ///< days of the period that the data or parameters of some zones lack
    RunoffBelowZero,  ///< days with a negative computed discharge
    SnowMeltStopped,  ///< zones and days without snow and melt, because a fault ended the stage
    NoWinterStore,    ///< step 5: the store of the present winter is 0 or negative in the zone
    CoverHeld         ///< step 5: the cover of the changed climate never ends in the zone
};

/// A note with its place and values. Notes change no number and stop no run.
struct RunNote {
    NoteKind kind = NoteKind::DaysWithoutRows;
    int step = 0;            ///< climate step, 1 to 6; 0 in a plain run
    std::vector<int> zones;  ///< from 1, ascending; empty for a note about the basin's discharge
    DayCount start = 0;      ///< first day of the period that was checked
    DayCount end = 0;        ///< its last day
    DayCount first = 0;      ///< first affected day
    DayCount last = 0;       ///< last affected day
    DayCount days = 0;       ///< number of affected days from `first` to `last`
    /// RunoffBelowZero: the lowest discharge, m³/s or ft³/s. NoWinterStore: precipitation minus input of the
    /// present winter, cm or inches. CoverHeld: the constant cover, 0 to 1.
    float value = k_missing;
    DayCount value_day = 0;   ///< RunoffBelowZero: the day of the lowest discharge
    bool all_zones = true;    ///< DaysWithoutRows: no zone has rows on these days
    bool negligible = false;  ///< NoWinterStore: `value` is 0 except for rounding

    /// Number of days of the period that was checked.
    [[nodiscard]] DayCount period_days() const { return end - start + 1; }
};

/// The name of a kind in the output of the batch program.
[[nodiscard]] const char* note_name(NoteKind kind);

/// The whole note: what happened, where, and what to do.
[[nodiscard]] std::string note_text(const RunNote& note, Units units);

/// A few words for a status line, such as "30 of 91 days without rows in zones 1 to 5".
[[nodiscard]] std::string note_summary(const RunNote& note);

/// "zone 2", "zones 1 to 5", "zones 1, 3 and 5"; the zones ascend.
[[nodiscard]] std::string zones_text(const std::vector<int>& zones);

/// Days of a period without rows in the results table: one note for each group of zones that miss the same
/// days, ordered by their first zones.
[[nodiscard]] std::vector<RunNote> days_without_rows(const SimResults& results, int zones, DayCount start,
                                                     DayCount end);

/// Days of a run with a computed discharge below 0; nothing if there are none.
[[nodiscard]] std::optional<RunNote> runoff_below_zero(const SimResults& results, const RunRows& rows,
                                                       const RunState& run);

/// Zones and days that the snow and melt stage did not compute, from the row that stopped it.
[[nodiscard]] RunNote snow_melt_stopped(const SimResults& results, std::size_t row, int zones,
                                        const RunState& run);

/// Removes the notes of a climate step before it runs again.
void forget_notes(RunState& run, int step);

}  // namespace nivora
