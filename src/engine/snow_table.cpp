#include "engine/snow_table.h"

#include "engine/snow_passes.h"

#include <algorithm>
#include <array>

namespace nivora {
namespace {

constexpr std::size_t k_block = 64;  // days, so that what the passes hand on stays in the cache
/// Zones that are worked side by side: each day of a store waits for the day before, so that one zone alone
/// leaves the processor idle.
constexpr std::size_t k_lanes = 4;

/// A zone's columns from its first day on.
struct SnowZone {
    SnowInputs in;
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
    return {.in = {.degree_days = columns.degree_days.data() + first,
                   .factor = columns.degree_day_factor.data() + first,
                   .precipitation = columns.precipitation.data() + first,
                   .critical = columns.critical_temperature.data() + first,
                   .rain_switch = columns.rain_switch.data() + first,
                   .cover = columns.cover.data() + first},
            .at = columns.at.data() + first,
            .sum_at = columns.sum_at.data() + first,
            .rain = columns.rain.data() + first,
            .snow_on_store = columns.snow_on_store.data() + first,
            .new_melt = columns.new_melt.data() + first,
            .runoff_melt = columns.runoff_melt.data() + first,
            .curve_including = columns.curve_including.data() + first,
            .curve_excluding = columns.curve_excluding.data() + first};
}

/// The state of a zone from day to day.
struct StoreState {
    float store = 0.0F;
    float sum_at = 0.0F;
};

template <std::size_t Lanes>
struct SnowLanes {
    std::array<SnowZone, Lanes> zones;
    std::array<StoreState, Lanes> states{};
    std::array<std::array<double, k_block>, Lanes> fallen;
};

/// The stores from day to day, and the sums of potential melt. Nothing falls on most days, and adding that
/// zero changes nothing; an empty store melts by nothing.
template <bool Winter, std::size_t Lanes>
void dependent_part(SnowLanes<Lanes>& lanes, std::size_t first, std::size_t count, bool keeps_store) {
    auto states = lanes.states;
    for (std::size_t i = 0; i < count; ++i) {
        const std::size_t day = first + i;
        for (std::size_t k = 0; k < Lanes; ++k) {
            const SnowZone& zone = lanes.zones[k];
            StoreState& now = states[k];
            const float at = zone.at[day];
            now.sum_at = sum_of<PlainSteps>(now.sum_at, at);
            now.store = filled_store<PlainSteps>(now.store, lanes.fallen[k][i]);
            zone.sum_at[day] = now.sum_at;
            zone.snow_on_store[day] = now.store;
            if (Winter && !keeps_store && is_full_cover(zone.in.cover[day])) now.store = 0.0F;
            const float melt = melt_of_store(at, now.store);
            now.store = melted_store<PlainSteps>(now.store, melt);
            zone.new_melt[day] = melt;
        }
    }
    lanes.states = states;
}

template <bool Winter, std::size_t Lanes>
void work_days(SnowLanes<Lanes>& lanes, std::size_t first, std::size_t last, bool keeps_store) {
    for (std::size_t block = first; block < last; block += k_block) {
        const std::size_t count = std::min(k_block, last - block);
        for (std::size_t k = 0; k < Lanes; ++k) {
            const SnowZone& zone = lanes.zones[k];
            const SnowInputs in = later(zone.in, block);
            pass_potential_melt(in, count, zone.at + block);
            pass_rain(in, count, zone.rain + block);
            pass_new_snow<Winter>(in, count, lanes.fallen[k].data());
        }
        dependent_part<Winter>(lanes, block, count, keeps_store);
        for (const SnowZone& zone : lanes.zones) {
            const float* melt = zone.new_melt + block;
            const float* cover = zone.in.cover + block;
            float* runoff = zone.runoff_melt + block;
            for (std::size_t i = 0; i < count; ++i)
                runoff[i] = runoff_of_melt<PlainSteps>(melt[i], cover[i], Winter);
        }
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
    std::size_t first = next_day(zone.in.cover, 0, days, false);
    if (first == days) return;
    float base = first == 0 ? 0.0F : zone.sum_at[first - 1];
    std::size_t last = next_day(zone.in.cover, first, days, true);
    if (last < days) ++last;  // the first day without cover ends the curve and has a value
    while (first < days) {
        curves_of_days(zone, first, last, base, new_melt_sum);
        base = k_curve_finished;
        first = next_day(zone.in.cover, last, days, false);
        last = next_day(zone.in.cover, first, days, true);
    }
}

/// Works so many zones side by side, or as many as there are.
template <std::size_t Lanes = k_lanes>
void work_lanes(const StepColumns& columns, const SnowTableShape& shape, std::size_t first_zone,
                std::span<float> stores) {
    if (stores.size() < Lanes) {
        if constexpr (Lanes > 1) work_lanes<Lanes - 1>(columns, shape, first_zone, stores);
        return;
    }
    SnowLanes<Lanes> lanes;
    for (std::size_t k = 0; k < Lanes; ++k)
        lanes.zones[k] = zone_of(columns, (first_zone - 1 + k) * shape.days);
    work_days<true>(lanes, 0, shape.winter_days, shape.keeps_store);
    if (shape.winter_days < shape.days && !shape.keeps_store) {
        for (StoreState& state : lanes.states) state.store = 0.0F;
    }
    work_days<false>(lanes, shape.winter_days, shape.days, shape.keeps_store);
    for (std::size_t k = 0; k < Lanes; ++k) {
        stores[k] = lanes.states[k].store;
        if (shape.draws_curves) depletion_curves(lanes.zones[k], shape.days);
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

void work_snow_of_zones(const StepColumns& columns, const SnowTableShape& shape, std::span<float> stores) {
    for (std::size_t done = 0; done < stores.size(); done += k_lanes) {
        work_lanes(columns, shape, done + 1, stores.subspan(done, std::min(k_lanes, stores.size() - done)));
    }
}

}  // namespace nivora
