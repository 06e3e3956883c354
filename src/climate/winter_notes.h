// Notes of step 5 on zones in which one of its rules gives misleading results.
#pragma once

#include "climate/summer_cover.h"
#include "climate/winter_report.h"
#include "engine/run_notes.h"

#include <optional>
#include <span>

namespace nivora {

/// A note if the store of a zone's present winter is 0 or negative, because there was snow when the period
/// began. The gain is a quotient by that store and then has no meaning. A zone without snow in the summer is
/// not affected and gets no note.
///
/// @param rows of the summer, all zones
/// @param start, end the winter
[[nodiscard]] std::optional<RunNote> winter_store_note(const AdjustedZone& zone, const SimResults& results,
                                                       std::span<const std::uint32_t> rows, DayCount start,
                                                       DayCount end);

/// A note for a cover that never ends.
///
/// @param start, end the summer
[[nodiscard]] RunNote held_cover_note(int zone, const HeldCover& held, DayCount start, DayCount end);

}  // namespace nivora
