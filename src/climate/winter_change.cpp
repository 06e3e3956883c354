#include "climate/winter_change.h"

#include "base/single.h"

namespace nivora {
namespace {

/// Indices of the present and the changed winter in the sums.
constexpr std::size_t k_present = 1;
constexpr std::size_t k_changed = 2;
constexpr std::size_t k_total_input = 1;

/// The curve keeps its dates: the same cover is reached with more melt.
void stretch_row(SimResults& t, std::uint32_t row, float gain) {
    const float curve = to_single_field(as_double(gain) * as_double(t.MDCexcl[row]));
    t.SCAclim[row] = t.SCA[row];
    t.MDCexclWA[row] = curve;
}

/// A point on the moved curve.
struct CurvePoint {
    float cover = 0.0F;
    float depth = 0.0F;
};

/// The season starts with the cover of a later day, and the depth counts from there. Before the start of the
/// present curve and after its end the depth is below 0; then the value of the day before is repeated.
void move_row(SimResults& t, std::uint32_t row, std::uint32_t source, float offset, CurvePoint& before) {
    CurvePoint point{t.SCA[source], to_single_field(as_double(t.MDCexcl[source]) - as_double(offset))};
    if (point.depth < 0.0F) point = before;
    before = {required(point.cover), required(point.depth)};
    t.SCAclim[row] = point.cover;
    t.MDCexclWA[row] = point.depth;
}

}  // namespace

ZoneWinter zone_winter(const RunState& run, int zone) {
    if (zone < 1 || zone > k_climate_zones) throw subscript_fault();
    const auto index = static_cast<std::size_t>(zone);
    return {run.WinterPrecip[index][k_present], run.WinterPrecip[index][k_changed],
            run.ClimateSums[index][k_present][k_total_input],
            run.ClimateSums[index][k_changed][k_total_input]};
}

float winter_change(const ZoneWinter& winter) {
    const float less_input = to_single(as_double(winter.input) - as_double(winter.input_changed));
    return to_single((as_double(winter.P_changed) - as_double(winter.P)) + as_double(less_input));
}

float winter_gain(const ZoneWinter& winter, float before) {
    const double stored = as_double(winter.P) - as_double(winter.input);
    if (stored == 0.0) return before;
    return to_single((as_double(winter.P_changed) - as_double(winter.input_changed)) / stored);
}

WinterShift find_shift(const SimResults& results, SummerCursor& reader, int zone, float deficit) {
    WinterShift shift;
    float melt = 0.0F;
    float prior_curve = 0.0F;
    while (reader.within(zone)) {
        const std::uint32_t row = reader.row();
        const float rise = to_single(as_double(results.MDCexcl[row]) - as_double(prior_curve));
        melt = to_single(as_double(melt) + as_double(results.SCA[row]) * as_double(rise));
        if (melt >= deficit) {
            shift.melt = melt;
            shift.cut_day = reader.date();
            break;
        }
        ++shift.ShiftDays;
        shift.prior_melt = melt;
        prior_curve = results.MDCexcl[row];
        reader.step_on();
        if (reader.past_end()) {
            reader.step_back();
            break;
        }
    }
    if (shift.ShiftDays == 1) shift.ShiftDays = 0;
    // Intended: a deficit that is covered without any melt, such as a deficit of 0, counts as never covered.
    if (shift.melt == 0.0F) shift.ShiftDays = k_never_covered;
    return shift;
}

void adjust_curve(SimResults& results, SummerCursor& reader, SummerCursor writer, int zone, float gain) {
    const float offset = required(results.MDCexcl[reader.row()]);
    reader.step_on();
    reader.step_back_from_end();
    CurvePoint before;
    while (reader.within(zone)) {
        if (gain >= 1.0F) {
            stretch_row(results, writer.row(), gain);
        } else {
            move_row(results, writer.row(), reader.row(), offset, before);
        }
        reader.step_on();
        writer.step_on();
        if (reader.past_end()) break;
    }
}

}  // namespace nivora
