#include "studies/measures.h"

#include "base/fault.h"
#include "engine/run_statistics.h"

#include <algorithm>
#include <cmath>
#include <vector>

namespace nivora {
namespace {

constexpr double k_offset_share = 0.01;
constexpr double k_percent = 100.0;

double sum(Series values) {
    double result = 0.0;
    for (const double value : values) result += value;
    return result;
}

double mean(Series values) { return sum(values) / static_cast<double>(values.size()); }

bool is_constant(Series values) {
    return std::all_of(values.begin(), values.end(), [&](double value) { return value == values.front(); });
}

double sum_of_squares(Series values, double reference) {
    double result = 0.0;
    for (const double value : values) result += (value - reference) * (value - reference);
    return result;
}

double sum_of_squared_errors(Series measured, Series computed) {
    double result = 0.0;
    for (std::size_t day = 0; day < measured.size(); ++day) {
        const double error = measured[day] - computed[day];
        result += error * error;
    }
    return result;
}

std::optional<double> finite(double value) {
    return std::isfinite(value) ? std::optional{value} : std::nullopt;
}

double relative_error(double computed, double measured) {
    return measured == 0.0 ? as_double(k_missing) : (computed - measured) / measured * k_percent;
}

/// The moments that both forms of the Kling-Gupta efficiency need.
struct Moments {
    double measured_mean = 0.0;
    double computed_mean = 0.0;
    double measured_spread = 0.0;  ///< square root of the sum of squares: n cancels out
    double computed_spread = 0.0;
    double correlation = 0.0;
};

Moments moments(Series measured, Series computed) {
    Moments result{.measured_mean = mean(measured), .computed_mean = mean(computed)};
    result.measured_spread = std::sqrt(sum_of_squares(measured, result.measured_mean));
    result.computed_spread = std::sqrt(sum_of_squares(computed, result.computed_mean));
    double product = 0.0;
    for (std::size_t day = 0; day < measured.size(); ++day)
        product += (measured[day] - result.measured_mean) * (computed[day] - result.computed_mean);
    result.correlation = product / (result.measured_spread * result.computed_spread);
    return result;
}

std::optional<KlingGupta> efficiency(double correlation, double variability, double bias) {
    const double distance =
        std::sqrt((correlation - 1.0) * (correlation - 1.0) + (variability - 1.0) * (variability - 1.0) +
                  (bias - 1.0) * (bias - 1.0));
    if (!std::isfinite(distance)) return std::nullopt;
    return KlingGupta{1.0 - distance, correlation, variability, bias};
}

std::vector<double> logarithms(Series values, double offset) {
    std::vector<double> result;
    result.reserve(values.size());
    for (const double value : values) result.push_back(std::log(value + offset));
    return result;
}

bool all_positive(Series values, double offset) {
    return std::all_of(values.begin(), values.end(), [&](double value) { return value + offset > 0.0; });
}

}  // namespace

std::optional<float> run_determination(Series measured, Series computed) {
    try {
        return determination(measured, computed, single_mean(measured));
    } catch (const Fault&) {
        return std::nullopt;  // a sum is beyond the largest Single
    }
}

std::optional<double> nash_sutcliffe(Series measured, Series computed) {
    if (is_constant(measured)) return std::nullopt;
    return finite(1.0 - sum_of_squared_errors(measured, computed) / sum_of_squares(measured, mean(measured)));
}

double logarithm_offset(Series measured) { return mean(measured) * k_offset_share; }

std::optional<double> logarithmic_nash_sutcliffe(Series measured, Series computed) {
    const double offset = logarithm_offset(measured);
    if (!all_positive(measured, offset) || !all_positive(computed, offset)) return std::nullopt;
    return nash_sutcliffe(logarithms(measured, offset), logarithms(computed, offset));
}

std::optional<KlingGupta> kling_gupta(Series measured, Series computed) {
    if (is_constant(measured) || is_constant(computed)) return std::nullopt;
    const Moments m = moments(measured, computed);
    return efficiency(m.correlation, m.computed_spread / m.measured_spread,
                      m.computed_mean / m.measured_mean);
}

std::optional<KlingGupta> modified_kling_gupta(Series measured, Series computed) {
    if (is_constant(measured) || is_constant(computed)) return std::nullopt;
    const Moments m = moments(measured, computed);
    return efficiency(m.correlation,
                      (m.computed_spread / m.computed_mean) / (m.measured_spread / m.measured_mean),
                      m.computed_mean / m.measured_mean);
}

double root_mean_square_error(Series measured, Series computed) {
    return std::sqrt(sum_of_squared_errors(measured, computed) / static_cast<double>(measured.size()));
}

double mean_absolute_error(Series measured, Series computed) {
    double total = 0.0;
    for (std::size_t day = 0; day < measured.size(); ++day) total += std::abs(measured[day] - computed[day]);
    return total / static_cast<double>(measured.size());
}

std::optional<float> run_volume_difference(Series measured, Series computed) {
    try {
        return volume_difference(discharge_volume(measured), discharge_volume(computed));
    } catch (const Fault&) {
        return std::nullopt;  // a volume is beyond the largest Single
    }
}

std::array<MonthBias, 13> bias_by_month(std::span<const DayCount> dates, Series measured, Series computed) {
    std::array<MonthBias, 13> months{};
    std::array<double, 13> measured_sum{};
    std::array<double, 13> computed_sum{};
    for (std::size_t day = 0; day < dates.size(); ++day) {
        const auto month = static_cast<std::size_t>(civil_date(dates[day]).month);
        ++months.at(month).days;
        measured_sum.at(month) += measured[day];
        computed_sum.at(month) += computed[day];
    }
    for (std::size_t month = 1; month < months.size(); ++month) {
        MonthBias& bias = months.at(month);
        if (bias.days == 0) continue;
        bias.measured = measured_sum.at(month) / bias.days;
        bias.computed = computed_sum.at(month) / bias.days;
        bias.bias = bias.computed - bias.measured;
        bias.percent = relative_error(computed_sum.at(month), measured_sum.at(month));
    }
    return months;
}

HighestDay highest_day(std::span<const DayCount> dates, Series measured, Series computed) {
    const auto m =
        static_cast<std::size_t>(std::max_element(measured.begin(), measured.end()) - measured.begin());
    const auto c =
        static_cast<std::size_t>(std::max_element(computed.begin(), computed.end()) - computed.begin());
    return {.measured_date = dates[m],
            .computed_date = dates[c],
            .measured = measured[m],
            .computed = computed[c],
            .size_error = relative_error(computed[c], measured[m]),
            .days_late = static_cast<int>(dates[c] - dates[m])};
}

LowFlow low_flow(Series measured, Series computed) {
    std::vector<double> ordered(measured.begin(), measured.end());
    std::sort(ordered.begin(), ordered.end());
    const std::size_t least = (ordered.size() * 3 + 9) / 10;  // 0.3 n rounded up, in whole numbers
    LowFlow result{.limit = ordered[least - 1]};
    double measured_sum = 0.0;
    double computed_sum = 0.0;
    for (std::size_t day = 0; day < measured.size(); ++day) {
        if (measured[day] > result.limit) continue;
        ++result.days;
        measured_sum += measured[day];
        computed_sum += computed[day];
    }
    result.volume_error = relative_error(computed_sum, measured_sum);
    return result;
}

std::optional<double> centre_of_mass(std::span<const DayCount> dates, Series discharge) {
    const double total = sum(discharge);
    if (!(total > 0.0)) return std::nullopt;
    double moment = 0.0;  // from the first day, which keeps the products small
    for (std::size_t day = 0; day < dates.size(); ++day)
        moment += static_cast<double>(dates[day] - dates.front()) * discharge[day];
    return static_cast<double>(dates.front()) + moment / total;
}

}  // namespace nivora
