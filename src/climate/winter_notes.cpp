#include "climate/winter_notes.h"

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

/// A store below this fraction of the winter's water is 0 except for the rounding of its sums.
constexpr double k_share_of_roundings = 1e-4;
constexpr int k_step = 5;

bool has_snow(const SimResults& results, std::span<const std::uint32_t> rows, int zone) {
    return std::any_of(rows.begin(), rows.end(), [&](std::uint32_t row) {
        return results.Zone[row] == zone && results.SCA[row] > 0.0F;
    });
}

RunNote note_of(NoteKind kind, int zone, DayCount start, DayCount end) {
    RunNote note{.kind = kind, .step = k_step, .zones = {zone}};
    note.start = start;
    note.end = end;
    return note;
}

}  // namespace

std::optional<RunNote> winter_store_note(const AdjustedZone& zone, const SimResults& results,
                                         std::span<const std::uint32_t> rows, DayCount start, DayCount end) {
    const double fallen = as_double(zone.winter.P);
    const double left = as_double(zone.winter.input);
    const double stored = fallen - left;
    const bool negligible = std::abs(stored) <= k_share_of_roundings * std::max(fallen, left);
    if ((stored > 0.0 && !negligible) || !has_snow(results, rows, zone.zone)) return std::nullopt;
    RunNote note = note_of(NoteKind::NoWinterStore, zone.zone, start, end);
    note.first = start;
    note.last = end;
    note.days = note.period_days();
    note.value = static_cast<float>(stored);
    note.negligible = negligible;
    return note;
}

RunNote held_cover_note(int zone, const HeldCover& held, DayCount start, DayCount end) {
    RunNote note = note_of(NoteKind::CoverHeld, zone, start, end);
    note.first = held.from;
    note.last = end;
    note.days = end - held.from + 1;
    note.value = held.cover;
    return note;
}

}  // namespace nivora
