#include "engine/lag_distribution.h"

#include "base/number_text.h"
#include "base/single.h"

#include <algorithm>

namespace nivora {

std::optional<Message> lag_day_count_problem(double days) {
    if (days >= 0.0 && days <= k_most_lag_days) return std::nullopt;
    return Message{.text = "Day count must be from 0 to 6", .icon = Icon::Stop};
}

std::string lag_total_text(std::span<const std::string> shares) {
    float total = 0.0F;
    for (const std::string& share : shares) {
        total = static_cast<float>(as_double(total) + leading_number(share));
    }
    return single_text(total);
}

std::optional<Message> lag_total_problem(const std::string& total_text) {
    const double total = leading_number(total_text);
    if (total == 0.0 || total == 1.0) return std::nullopt;
    return Message{
        .text =
            "Distribution of daily melt over the period specified must equal 1 (100%).  Please correct "
            "before proceeding",
        .icon = Icon::Stop};
}

std::array<float, 8> lag_distribution(double days, std::span<const std::string> shares) {
    std::array<float, 8> distribution{};
    // With a total of 0 no water would ever run off, so it removes the distribution.
    if (leading_number(lag_total_text(shares)) == 0.0) return distribution;
    distribution[0] = static_cast<float>(days);
    const std::size_t count = std::min(shares.size(), distribution.size() - 1);
    for (std::size_t i = 0; i < count; ++i)
        distribution[i + 1] = static_cast<float>(leading_number(shares[i]));
    return distribution;
}

std::vector<double> lag_weights(const std::array<float, 8>& distribution) {
    const auto days = static_cast<std::size_t>(std::clamp(distribution[0], 0.0F, 7.0F));
    std::vector<double> weights;
    for (std::size_t day = days; day >= 1; --day) {
        weights.push_back(leading_number(format_number(as_double(distribution[day]), ".#####")));
    }
    return weights;
}

}  // namespace nivora
