// The texts of a plot's numbers in its window: the boxes of the maxima, and the place of the mouse.
#pragma once

#include "plots/plot_view.h"

#include <string>
#include <variant>

namespace nivora {

/// The texts of the two boxes of maxima.
struct BoxTexts {
    std::string x;
    std::string y;

    bool operator==(const BoxTexts&) const = default;
};

/// The maxima of a plot's frame as its boxes show them: x as "mm/dd/yyyy", or as "######.##" if the axis
/// counts depths.
[[nodiscard]] BoxTexts box_texts(const Plot& plot);

/// Why a box can't be taken.
struct BoxRefusal {
    enum class Box { X, Y };
    Box box = Box::X;
    std::string text;
};

/// Reads the boxes. One that is empty or still has the text that it was given stands for no typed maximum.
/// The largest x may be a date or a number, on every plot.
///
/// @param given the texts that the boxes were given before the user typed
[[nodiscard]] std::variant<TypedMaxima, BoxRefusal> read_boxes(const Plot& plot, const BoxTexts& given,
                                                               const BoxTexts& typed);

/// An x of a plot as text: "mmm d, yyyy", or "######.##" if the axis counts depths.
[[nodiscard]] std::string x_text(const Plot& plot, double x);

/// The texts of the two panels that show the place of the mouse: " X: " and " Y: " with their values.
[[nodiscard]] BoxTexts position_texts(const Plot& plot, double x, double y);

}  // namespace nivora
