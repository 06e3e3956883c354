#include "plots/line_attributes.h"

namespace nivora {
namespace {

constexpr std::int32_t colour(int red, int green, int blue) { return red + green * 256 + blue * 65536; }

constexpr LineAttribute line(std::int32_t style, std::int32_t rgb) { return {style, rgb, 1, 0}; }

}  // namespace

LineTable default_lines() {
    return {line(0, colour(128, 0, 0)),   line(1, colour(0, 128, 0)),     line(2, colour(0, 0, 128)),
            line(3, colour(128, 128, 0)), line(4, colour(128, 0, 128)),   line(0, colour(0, 128, 128)),
            line(1, colour(255, 0, 255)), line(2, colour(0, 255, 0)),     line(3, colour(0, 255, 255)),
            line(4, colour(90, 90, 0)),   line(1, colour(192, 192, 192)), line(1, colour(128, 128, 128)),
            line(1, colour(255, 0, 0)),   line(1, colour(0, 0, 255)),     line(1, colour(255, 255, 0)),
            line(1, colour(0, 0, 0))};
}

}  // namespace nivora
