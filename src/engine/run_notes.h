// What a run wants its user to know although it reached its end: days that were left out, results that a rule
// of the model makes doubtful.
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
    SnowMeltStopped,  ///< snow and melt of zones that the stage did not reach, because of a fault
    NoWinterStore,    ///< step 5: the present winter stores no snow in the zone, or less than none
    CoverHeld         ///< step 5: the cover of the changed climate never ends in the zone
};

/// A note and what it is about. No note changes a number or stops a run.
struct RunNote {
    NoteKind kind = NoteKind::DaysWithoutRows;
    int step = 0;            ///< of a climate evaluation, 1 to 6; 0 in a plain run
    std::vector<int> zones;  ///< from 1, ascending; empty where the note is about the basin's discharge
    DayCount start = 0;      ///< first day of the period that was looked at
    DayCount end = 0;        ///< its last day
    DayCount first = 0;      ///< first day that the note is about
    DayCount last = 0;       ///< last day that it is about
    DayCount days = 0;       ///< how many days it is about, of those from `first` to `last`
    /// RunoffBelowZero: the lowest discharge, m³/s or ft³/s. NoWinterStore: precipitation of the present
    /// winter less what left the zone, cm or inches. CoverHeld: the cover that is held, 0 to 1.
    float value = k_missing;
    DayCount value_day = 0;   ///< RunoffBelowZero: the day of the lowest discharge
    bool all_zones = true;    ///< DaysWithoutRows: no zone of the basin has these days
    bool negligible = false;  ///< NoWinterStore: `value` is 0 but for roundings

    /// Days of the period that was looked at.
    [[nodiscard]] DayCount period_days() const { return end - start + 1; }
};

/// Which name a kind bears in the output of the batch program.
[[nodiscard]] const char* note_name(NoteKind kind);

/// The whole note: what happened, where, and what to do.
[[nodiscard]] std::string note_text(const RunNote& note, Units units);

/// A few words for a status line, such as "30 of 91 days without rows in zones 1 to 5".
[[nodiscard]] std::string note_summary(const RunNote& note);

/// "zone 2", "zones 1 to 5", "zones 1, 3 and 5"; the zones ascend.
[[nodiscard]] std::string zones_text(const std::vector<int>& zones);

/// The days of a period that a basin's zones lack in the results table: a note for each set of zones that
/// lack the same days, in the order of their first zones.
[[nodiscard]] std::vector<RunNote> days_without_rows(const SimResults& results, int zones, DayCount start,
                                                     DayCount end);

/// The days of a run on which its computed discharge is below 0, where there are any.
[[nodiscard]] std::optional<RunNote> runoff_below_zero(const SimResults& results, const RunRows& rows,
                                                       const RunState& run);

/// The zones and days that the snow and melt stage did not work, from the row that stopped it.
[[nodiscard]] RunNote snow_melt_stopped(const SimResults& results, std::size_t row, int zones,
                                        const RunState& run);

/// Forgets the notes of a climate step, which is about to be taken again.
void forget_notes(RunState& run, int step);

}  // namespace nivora
