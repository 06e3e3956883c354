// A plot in words, for those who do not see it.
#pragma once

#include "plots/plot.h"

#include <string>

namespace nivora {

/// Title, zone, axes, and of each curve and bar what the frame shows: lowest and highest value with their
/// places.
[[nodiscard]] std::string plot_words(const Plot& plot);

}  // namespace nivora
