#include "climate/winter_adjustment.h"

#include "base/number_text.h"
#include "climate/summer_cover.h"
#include "climate/winter_change.h"
#include "climate/winter_notes.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace nivora {
namespace {

/// The number of the fault if there is no table.
constexpr int k_fault_no_table = 91;

/// Shows the computed change. Intended: neither a typed value nor Cancel alters anything.
void show_change(Dialogs& dialogs, int zone, float change) {
    static_cast<void>(
        dialogs.input({"Click OK to accept the computed 'Change', or type a new value",
                       "Winter Change for Zone: " + std::to_string(zone), single_text(change)}));
}

/// @param gain of the zone before; this zone's afterwards
AdjustedZone adjust_zone(SimResults& results, const RowOrder& rows, const WinterContext& context, int zone,
                         float& gain) {
    SummerCursor reader{results, rows};
    reader.find_zone(zone);
    const SummerCursor first_day = reader;
    AdjustedZone adjusted{.zone = zone, .winter = zone_winter(context.run, zone)};
    adjusted.change = winter_change(adjusted.winter);
    show_change(context.dialogs, zone, adjusted.change);
    adjusted.shift = find_shift(results, reader, zone, -adjusted.change);
    gain = winter_gain(adjusted.winter, gain);
    adjusted.gain = gain;
    adjust_curve(results, reader, first_day, zone, gain);
    return adjusted;
}

}  // namespace

void Winter_Adjustment(SimResults& results, const WinterContext& context, WinterReport& report) {
    const DayCount summer_end = context.basin.Current_End.value();
    if (context.climate.WinterEndDate == summer_end) {
        throw Fault{k_fault_no_table,
                    "The winter ends on the last day of the simulation: there is no summer to adjust."};
    }
    const RowOrder rows = run_rows(results, context.run.RunStart, context.run.RunEnd).by_zone;
    const int zones = context.basin.ZoneCount;
    std::vector<RunNote>& notes = context.run.notes;
    float gain = 0.0F;
    for (int zone = 1; zone <= zones; ++zone) {
        const AdjustedZone adjusted = adjust_zone(results, rows, context, zone, gain);
        report.add(adjusted);
        const DayCount winter_start = context.basin.Current_Start.value_or(context.climate.WinterEndDate);
        if (const auto note =
                winter_store_note(adjusted, results, rows, winter_start, context.climate.WinterEndDate))
            notes.push_back(*note);
    }
    std::vector<std::optional<HeldCover>> held;
    held.reserve(static_cast<std::size_t>(zones));
    for (int zone = 1; zone <= zones; ++zone) held.push_back(date_curve(results, rows, zone, summer_end));
    for (int zone = 1; zone <= zones; ++zone) {
        close_cover(results, rows, zone);
        const auto& of_zone = held[static_cast<std::size_t>(zone - 1)];
        if (const auto cover = still_held(of_zone, results, rows, zone))
            notes.push_back(held_cover_note(zone, *cover, context.run.RunStart, summer_end));
    }
}

}  // namespace nivora
