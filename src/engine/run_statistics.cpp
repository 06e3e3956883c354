#include "engine/run_statistics.h"

#include <algorithm>
#include <span>
#include <vector>

namespace nivora {
namespace {

constexpr double k_seconds_a_day = 86400.0;
constexpr double k_million = 1000000.0;

/// Measured and computed discharge of the period's days.
struct Hydrographs {
    std::vector<double> measured;
    std::vector<double> computed;
};

/// Sum and count of the values that are not missing.
struct Total {
    double sum = 0.0;
    std::size_t count = 0;

    [[nodiscard]] float average() const {
        return to_single(count == 0 ? as_double(k_missing) : sum / static_cast<double>(count));
    }
    [[nodiscard]] float single_sum() const { return to_single(count == 0 ? as_double(k_missing) : sum); }
};

/// Zone 1's rows of the period in date order, the order of summation.
std::span<const std::uint32_t> basin_rows(const SimResults& t, const RunRows& rows) {
    const auto first = std::partition_point(rows.by_zone.begin(), rows.by_zone.end(),
                                            [&](std::uint32_t row) { return t.Zone[row] < 1; });
    const auto last =
        std::partition_point(first, rows.by_zone.end(), [&](std::uint32_t row) { return t.Zone[row] == 1; });
    return {first, last};
}

Hydrographs hydrographs(const SimResults& t, const RunRows& rows, const RunState& run) {
    Hydrographs curves;
    for (const std::size_t row : basin_rows(t, rows)) {
        const double present = t.DailyQPresent[row];
        curves.measured.push_back(run.ClimateStep == 6 ? present : as_double(t.ActualQ[row]));
        curves.computed.push_back(run.ClimateStep == 3 ? present : t.DailyQ[row]);
    }
    return curves;
}

Total total(std::span<const double> values) {
    Total result;
    for (const double value : values) {
        if (is_missing(value)) continue;
        result.sum += value;
        ++result.count;
    }
    return result;
}

float volume(float sum) {
    const float product = to_single(as_double(sum) * k_seconds_a_day);
    return to_single(as_double(product) / k_million);
}

void take_determination(const Hydrographs& curves, RunState& run) {
    const auto r2 = determination(curves.measured, curves.computed, run.AvgMeasuredQ);
    run.former_r2 = !r2;
    if (r2) run.CoefficientR2 = *r2;
}

void volumes(const Hydrographs& curves, RunState& run) {
    if (curves.measured.empty()) throw no_record_fault();
    const Total measured = total(curves.measured);
    const Total computed = total(curves.computed);
    run.AvgMeasuredQ = measured.average();
    run.MeasuredVolume = volume(measured.single_sum());
    run.AvgComputedQ = computed.average();
    run.ComputedVolume = volume(computed.single_sum());
}

void take_volume_difference(RunState& run) {
    run.VolumeDifference =
        volume_difference(run.MeasuredVolume, run.ComputedVolume).value_or(run.VolumeDifference);
}

}  // namespace

float single_mean(std::span<const double> values) { return total(values).average(); }

float discharge_volume(std::span<const double> discharge) { return volume(total(discharge).single_sum()); }

std::optional<float> volume_difference(float measured_volume, float computed_volume) {
    if (measured_volume == 0.0F) return std::nullopt;
    const double reference = as_double(measured_volume);
    return to_single((reference - as_double(computed_volume)) / reference * 100.0);
}

std::optional<float> determination(std::span<const double> measured, std::span<const double> computed,
                                   float mean) {
    const double scale = 1.0 / static_cast<double>(measured.size());
    const double average = as_double(mean);
    float sum_mean = 0.0F;
    float sum_difference = 0.0F;
    for (std::size_t day = 0; day < measured.size(); ++day) {
        const double from_mean = measured[day] - average;
        const double from_computed = measured[day] - computed[day];
        sum_mean = to_single(as_double(sum_mean) + from_mean * from_mean);
        sum_difference = to_single(as_double(sum_difference) + from_computed * from_computed);
    }
    const double variance = as_double(sum_mean) * scale;
    if (variance == 0.0) return std::nullopt;
    return to_single((variance - as_double(sum_difference) * scale) / variance);
}

StatisticsReach Run_Statistics(const SimResults& results, const RunRows& rows, RunState& run,
                               Dialogs& dialogs) {
    StatisticsReach reach = StatisticsReach::Nothing;
    try {
        const Hydrographs curves = hydrographs(results, rows, run);
        volumes(curves, run);
        reach = StatisticsReach::Volumes;
        take_determination(curves, run);
        take_volume_difference(run);
        reach = StatisticsReach::All;
    } catch (const Fault& fault) {
        dialogs.stop(fault.what(), "Run statistics failed, probably caused by missing/invalid data");
    }
    run.statistics = reach;
    return reach;
}

}  // namespace nivora
