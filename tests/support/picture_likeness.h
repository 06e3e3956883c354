// How far two pictures show the same lines, for pictures that are not equal to the pixel.
#pragma once

#include <QColor>
#include <QImage>

namespace nivora {

/// The share of the drawn points of a picture, those that are not nearly white, that have one within two
/// pixels of their place in another picture; 0 if the first picture has none.
inline double found_in(const QImage& from, const QImage& in) {
    constexpr int k_near = 2;
    constexpr int k_drawn = 160;
    const auto drawn = [](const QImage& image, int x, int y) {
        return image.valid(x, y) && qGray(image.pixel(x, y)) < k_drawn;
    };
    int all = 0;
    int found = 0;
    for (int y = 0; y < from.height(); ++y) {
        for (int x = 0; x < from.width(); ++x) {
            if (!drawn(from, x, y)) continue;
            ++all;
            bool near = false;
            for (int dy = -k_near; dy <= k_near && !near; ++dy) {
                for (int dx = -k_near; dx <= k_near && !near; ++dx) near = drawn(in, x + dx, y + dy);
            }
            if (near) ++found;
        }
    }
    return all == 0 ? 0.0 : static_cast<double>(found) / all;
}

}  // namespace nivora
