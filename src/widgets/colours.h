// Colours as numbers, and the dialog in which the user chooses one.
#pragma once

#include <QColor>
#include <array>
#include <cstdint>

class QWidget;

namespace nivora {

/// A colour from a number with red in the lowest byte, then green, then blue; and back.
[[nodiscard]] QColor colour_of(std::int32_t number);
[[nodiscard]] std::int32_t number_of(const QColor& colour);

/// The contrast that a text needs to be read, by the same guidelines.
inline constexpr double k_readable_contrast = 4.5;

/// The contrast of two colours by the guidelines for readable content (WCAG 2): 1 for the same colour, 21 for
/// black and white.
[[nodiscard]] double contrast(const QColor& one, const QColor& other);

/// A colour of text for a ground. On a light ground it stays as it is; on a dark one it is made lighter, in
/// the same hue, until its contrast is that of readable text: 4.5.
[[nodiscard]] QColor readable_on(const QColor& text, const QColor& ground);

/// How the user is asked for a colour. Tests answer in the place of the dialog.
class Colours {
public:
    static constexpr std::int32_t k_cancelled = -1;

    Colours() = default;
    Colours(const Colours&) = delete;
    Colours& operator=(const Colours&) = delete;
    virtual ~Colours() = default;

    /// @param owner the window that is behind the dialog
    /// @param first the colour that the dialog shows first
    /// @return the chosen colour, or k_cancelled
    [[nodiscard]] virtual std::int32_t Choose_Color(QWidget* owner, std::int32_t first) = 0;
};

/// The colour dialog. It keeps the user's own colours from one call to the next; a cancelled call
/// changes none of them.
class ColourDialog : public Colours {
public:
    static constexpr int k_custom_colours = 16;

    ColourDialog();
    [[nodiscard]] std::int32_t Choose_Color(QWidget* owner, std::int32_t first) override;

private:
    std::array<QColor, k_custom_colours> custom_;
};

}  // namespace nivora
