#include "engine/snow_table.h"

#include "engine/snow_row.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::size_t k_block = 256;  // days, so that what the passes hand on stays in the cache
constexpr float k_largest_depth = 1.0e6F;
constexpr float k_largest_degree_days = 1.0e9F;

/// A zone's columns from its first day on.
struct SnowZone {
    const float* degree_days;
    const float* factor;
    const float* precipitation;
    const float* critical;
    const float* rain_switch;
    const float* cover;
    float* at;
    float* sum_at;
    float* rain;
    float* snow_on_store;
    float* new_melt;
    float* runoff_melt;
    float* curve_including;
    float* curve_excluding;
};

SnowZone zone_of(const StepColumns& columns, std::size_t first) {
    return {.degree_days = columns.degree_days.data() + first,
            .factor = columns.degree_day_factor.data() + first,
            .precipitation = columns.precipitation.data() + first,
            .critical = columns.critical_temperature.data() + first,
            .rain_switch = columns.rain_switch.data() + first,
            .cover = columns.cover.data() + first,
            .at = columns.at.data() + first,
            .sum_at = columns.sum_at.data() + first,
            .rain = columns.rain.data() + first,
            .snow_on_store = columns.snow_on_store.data() + first,
            .new_melt = columns.new_melt.data() + first,
            .runoff_melt = columns.runoff_melt.data() + first,
            .curve_including = columns.curve_including.data() + first,
            .curve_excluding = columns.curve_excluding.data() + first};
}

using NewSnow = std::array<double, k_block>;

/// What a day doesn't take from the day before: potential melt, rain, and what falls on the store.
template <bool Winter>
void independent_part(const SnowZone& zone, std::size_t first, std::size_t count, NewSnow& fallen) {
    const float* degree_days = zone.degree_days + first;
    const float* factor = zone.factor + first;
    const float* precipitation = zone.precipitation + first;
    const float* critical = zone.critical + first;
    const float* rain_switch = zone.rain_switch + first;
    const float* cover = zone.cover + first;
    float* at = zone.at + first;
    float* rain = zone.rain + first;
    for (std::size_t i = 0; i < count; ++i) at[i] = potential_melt<PlainSteps>(degree_days[i], factor[i]);
    for (std::size_t i = 0; i < count; ++i) {
        const float wet = is_wet(precipitation[i]) ? precipitation[i] : 0.0F;
        const float warm = degree_days[i] >= critical[i] ? wet : 0.0F;
        const float beside = rain_beside_snow<PlainSteps>(warm, cover[i]);
        rain[i] = rain_switch[i] == 0.0F ? beside : warm;
    }
    for (std::size_t i = 0; i < count; ++i) {
        const float wet = is_wet(precipitation[i]) ? precipitation[i] : 0.0F;
        const float cold = degree_days[i] >= critical[i] ? 0.0F : wet;
        fallen[i] = new_snow(cold, cover[i], Winter);
    }
}

/// The state of a zone from day to day.
struct StoreState {
    float store = 0.0F;
    float sum_at = 0.0F;
};

/// The store from day to day, and the sum of potential melt. Nothing falls on most days, and adding that zero
/// changes nothing; an empty store melts by nothing.
template <bool Winter>
void dependent_part(const SnowZone& zone, std::size_t first, std::size_t count, const NewSnow& fallen,
                    bool keeps_store, StoreState& state) {
    StoreState now = state;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t day = first + i;
        const float at = zone.at[day];
        now.sum_at = sum_of<PlainSteps>(now.sum_at, at);
        now.store = filled_store<PlainSteps>(now.store, fallen[i]);
        zone.sum_at[day] = now.sum_at;
        zone.snow_on_store[day] = now.store;
        if (Winter && !keeps_store && is_full_cover(zone.cover[day])) now.store = 0.0F;
        const float melt = melt_of_store(at, now.store);
        now.store = melted_store<PlainSteps>(now.store, melt);
        zone.new_melt[day] = melt;
    }
    state = now;
}

template <bool Winter>
void work_days(const SnowZone& zone, std::size_t first, std::size_t last, bool keeps_store,
               StoreState& state) {
    NewSnow fallen;
    for (std::size_t block = first; block < last; block += k_block) {
        const std::size_t count = std::min(k_block, last - block);
        independent_part<Winter>(zone, block, count, fallen);
        dependent_part<Winter>(zone, block, count, fallen, keeps_store, state);
        const float* melt = zone.new_melt + block;
        const float* cover = zone.cover + block;
        float* runoff = zone.runoff_melt + block;
        for (std::size_t i = 0; i < count; ++i)
            runoff[i] = runoff_of_melt<PlainSteps>(melt[i], cover[i], Winter);
    }
}

/// The first day from this one on whose cover is zero, or isn't.
std::size_t next_day(const float* cover, std::size_t day, std::size_t days, bool zero) {
    while (day < days && (cover[day] == 0.0F) != zero) ++day;
    return day;
}

/// The curves of days on end.
void curves_of_days(const SnowZone& zone, std::size_t first, std::size_t last, float base,
                    float& new_melt_sum) {
    std::array<float, k_block> sums;
    for (std::size_t block = first; block < last; block += k_block) {
        const std::size_t count = std::min(k_block, last - block);
        for (std::size_t i = 0; i < count; ++i)
            sums[i] = new_melt_sum = sum_of<PlainSteps>(new_melt_sum, zone.new_melt[block + i]);
        const float* sum_at = zone.sum_at + block;
        float* including = zone.curve_including + block;
        float* excluding = zone.curve_excluding + block;
        for (std::size_t i = 0; i < count; ++i)
            including[i] = curve_with_new_melt<PlainSteps>(sum_at[i], base);
        for (std::size_t i = 0; i < count; ++i)
            excluding[i] = curve_without_new_melt<PlainSteps>(sum_at[i], sums[i], base);
    }
}

/// The curve runs from the first day with cover to the first day without; on days with cover that come later
/// it goes on with the base of a finished curve.
void depletion_curves(const SnowZone& zone, std::size_t days) {
    float new_melt_sum = 0.0F;
    std::size_t first = next_day(zone.cover, 0, days, false);
    if (first == days) return;
    float base = first == 0 ? 0.0F : zone.sum_at[first - 1];
    std::size_t last = next_day(zone.cover, first, days, true);
    if (last < days) ++last;  // the first day without cover ends the curve and has a value
    while (first < days) {
        curves_of_days(zone, first, last, base, new_melt_sum);
        base = k_curve_finished;
        first = next_day(zone.cover, last, days, false);
        last = next_day(zone.cover, first, days, true);
    }
}

}  // namespace

bool is_plain_snow(const StepColumns& columns) {
    const auto within = [](Column column, float limit) {
        return all_from_zero_to(column.data(), column.size(), limit);
    };
    return within(columns.degree_days, k_largest_degree_days) &&
           within(columns.degree_day_factor, k_largest_depth) &&
           within(columns.precipitation, k_largest_depth) && within(columns.cover, 1.0F);
}

float work_snow_of_zone(const StepColumns& columns, const SnowTableShape& shape, std::size_t zone) {
    const SnowZone days = zone_of(columns, (zone - 1) * shape.days);
    StoreState state;
    work_days<true>(days, 0, shape.winter_days, shape.keeps_store, state);
    if (shape.winter_days > 0 && shape.winter_days < shape.days && !shape.keeps_store) state.store = 0.0F;
    work_days<false>(days, shape.winter_days, shape.days, shape.keeps_store, state);
    if (shape.draws_curves) depletion_curves(days, shape.days);
    return state.store;
}

}  // namespace nivora
