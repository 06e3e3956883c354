// A surface that writes down what is drawn on it, one line of text a call. Its letters all have the same
// width and its numbers one decimal, so that a drawing has the same text on every machine.
#pragma once

#include "plots/surface.h"

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// A line of a font is as high as the font, a letter 0.6 of that wide: at 7.5 points 10 and 6 units.
class RecordingSurface : public Surface {
public:
    explicit RecordingSurface(SurfaceSize size) : size_(size) {}

    [[nodiscard]] SurfaceSize size() const override { return size_; }
    [[nodiscard]] SurfaceSize text_size(std::string_view text, const PlotFont& font) const override;
    void line(std::span<const SurfacePoint> points, const Pen& pen) override;
    void text(SurfacePoint top_left, std::string_view text, const PlotFont& font, Colour colour) override;
    void rectangle(const SurfaceRectangle& rectangle, const std::optional<Pen>& outline,
                   const std::optional<Fill>& fill) override;
    void circle(SurfacePoint centre, double radius, const Pen& pen) override;
    void dot(SurfacePoint at, Colour colour) override;
    void fill_band(std::span<const SurfacePoint> outline, const Fill& fill) override;

    /// The calls in their order.
    [[nodiscard]] const std::vector<std::string>& calls() const { return calls_; }
    /// The calls that begin with a word, such as "text".
    [[nodiscard]] std::vector<std::string> calls(std::string_view word) const;
    /// All calls, each with a line end.
    [[nodiscard]] std::string record() const;

private:
    SurfaceSize size_;
    std::vector<std::string> calls_;
};

}  // namespace nivora
