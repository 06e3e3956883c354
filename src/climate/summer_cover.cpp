#include "climate/summer_cover.h"

#include "base/single.h"

namespace nivora {
namespace {

constexpr float k_no_cover_mark = 0.0001F;
constexpr double k_least_cover = 0.01;

/// The dates of a curve's values under the changed climate.
struct DatedCurve {
    SummerCursor reader;
    SummerCursor writer;
    std::optional<HeldCover> held = std::nullopt;
};

/// Moves the writer to the first day whose degree days reach a depth, and counts the days.
/// @return whether there is such a day, or a day of the next zone
bool find_day(const SimResults& t, SummerCursor& writer, int zone, float depth, int& target) {
    while (writer.within(zone) && depth > t.SumAT[writer.row()]) {
        ++target;
        writer.step_on();
        if (writer.past_end()) return false;
    }
    return true;
}

/// Whether the curve ends on a day. Days that the moved curve does not reach are bare, too, but on these the
/// zone may have had snow under the present climate.
bool is_end_of_curve(const SimResults& t, std::uint32_t row) {
    return t.SCAclim[row] == 0.0F && t.SCA[row] == 0.0F;
}

/// The cover on the writer's day, if it is to be repeated.
std::optional<HeldCover> held_on(const SimResults& t, const SummerCursor& writer) {
    const float cover = t.SCAclimWA[writer.row()];
    if (!(as_double(cover) > k_least_cover)) return std::nullopt;
    return HeldCover{.from = writer.date(), .cover = cover};
}

/// @return the positions of reader and writer after the zone
DatedCurve walk_curve(SimResults& t, std::span<const std::uint32_t> rows, int zone) {
    DatedCurve curve{{t, rows}, {t, rows}};
    auto& [reader, writer, held] = curve;
    reader.find_zone(zone);
    writer.find_zone(zone);
    float new_melt = 0.0F;
    int target = 1;
    int last_target = 0;
    while (reader.within(zone)) {
        const std::uint32_t row = reader.row();
        new_melt = to_single(as_double(new_melt) + as_double(t.NewMelt[row]));
        t.MDCexclWAnew[row] = to_single_field(as_double(t.MDCexclWA[row]) + as_double(new_melt));
        if (find_day(t, writer, zone, t.MDCexclWAnew[row], target)) {
            t.MeltOffset[row] = static_cast<float>(target);
            if (target > last_target) {
                t.SCAclimWA[writer.row()] = t.SCAclim[row] == 0.0F ? k_no_cover_mark : t.SCAclim[row];
                last_target = target;
                // A value that goes to the next zone's first day does not end this zone's cover.
                if (writer.within(zone)) held.reset();
            } else if (is_end_of_curve(t, row) && writer.within(zone) && !held) {
                held = held_on(t, writer);
            }
        }
        writer.step_back_from_end();
        reader.step_on();
        if (reader.past_end()) break;
    }
    return curve;
}

/// Joins the dated curve to the cover of the summer's last day.
void join_last_day(SimResults& t, DatedCurve curve, DayCount summer_end) {
    auto& [reader, writer, held] = curve;
    reader.step_back();
    const float last_cover = t.SCA[reader.row()];
    const float above = to_single(as_double(t.SCAclimWA[writer.row()]) - as_double(t.SCA[writer.row()]));
    if (last_cover > 0.0F) {
        if (t.SCAclimWA[writer.row()] > last_cover) {
            writer.step_on();
            // Intended: the next row may be the next zone's first day. After the basin's last row there is
            // none, and an upper zone that keeps its snow all summer still gets its curve.
            if (!writer.past_end()) t.SCAclimWA[writer.row()] = last_cover;
        }
    } else if (last_cover <= 0.0F && above > 0.0F && writer.date() != summer_end) {
        // Intended: the rest of the curve goes to SCAclim, not to SCAclimWA,
        // with the last day's cover throughout.
        const float rest = to_single(as_double(last_cover) + as_double(above));
        do {
            writer.step_on();
            t.SCAclim[writer.row()] = rest;
        } while (writer.date() != summer_end);
    }
}

/// The row of a zone's last day. @throws Fault if the zone has no rows
std::uint32_t last_row(const SimResults& results, std::span<const std::uint32_t> rows, int zone) {
    SummerCursor cursor{results, rows};
    cursor.find_zone(zone);
    std::uint32_t row = cursor.row();
    for (; !cursor.past_end() && cursor.within(zone); cursor.step_on()) row = cursor.row();
    return row;
}

}  // namespace

std::optional<HeldCover> date_curve(SimResults& results, std::span<const std::uint32_t> rows, int zone,
                                    DayCount summer_end) {
    const DatedCurve curve = walk_curve(results, rows, zone);
    join_last_day(results, curve, summer_end);
    return curve.held;
}

void close_cover(SimResults& results, std::span<const std::uint32_t> rows, int zone) {
    SummerCursor writer{results, rows};
    writer.find_zone(zone);
    float held = required(results.SCAclim[writer.row()]);
    while (writer.within(zone)) {
        const std::uint32_t row = writer.row();
        const float dated = results.SCAclimWA[row];
        if (dated != 0.0F) {
            held = required(dated);
            if (k_least_cover >= as_double(held)) {
                // The rest of the zone keeps 0: the cover is 0.01 on one day and 0 after it.
                results.SCAclimWAMA[row] = static_cast<float>(k_least_cover);
                return;
            }
        }
        results.SCAclimWAMA[row] = held;
        writer.step_on();
        if (writer.past_end()) return;
    }
}

std::optional<HeldCover> still_held(std::optional<HeldCover> held, const SimResults& results,
                                    std::span<const std::uint32_t> rows, int zone) {
    if (!held) return std::nullopt;
    const float cover = results.SCAclimWAMA[last_row(results, rows, zone)];
    if (!(as_double(cover) > k_least_cover)) return std::nullopt;
    held->cover = cover;
    return held;
}

}  // namespace nivora
