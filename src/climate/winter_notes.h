// What step 5 wants its user to know of a zone in which one of its rules leads astray.
#pragma once

#include "climate/summer_cover.h"
#include "climate/winter_report.h"
#include "engine/run_notes.h"

#include <optional>
#include <span>

namespace nivora {

/// A note where the present winter of a zone stored nothing, or less than nothing, because the period begins
/// on snow that fell before it. The gain is a quotient by that store, so that it means nothing then. A zone
/// that has no snow in the summer takes no harm and gets no note.
///
/// @param rows of the summer, all zones
/// @param start, end the winter
[[nodiscard]] std::optional<RunNote> winter_store_note(const AdjustedZone& zone, const SimResults& results,
                                                       std::span<const std::uint32_t> rows, DayCount start,
                                                       DayCount end);

/// The note of a cover that never ends.
///
/// @param start, end the summer
[[nodiscard]] RunNote held_cover_note(int zone, const HeldCover& held, DayCount start, DayCount end);

}  // namespace nivora
