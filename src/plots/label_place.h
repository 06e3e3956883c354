// Where a label about a place on a surface stands.
#pragma once

#include "plots/surface.h"

#include <optional>

namespace nivora {

/// The space that a label leaves around the place that it is about: room for the pointer and the mark.
inline constexpr double k_label_gap = 16.0;

/// The top left corner of a label inside a surface that leaves a place free. It stands to the right of it and
/// below, or on the other side where there is no room. Nothing if it fits on no side.
[[nodiscard]] std::optional<SurfacePoint> label_place(SurfaceSize surface, SurfaceSize label,
                                                      SurfacePoint about);

}  // namespace nivora
