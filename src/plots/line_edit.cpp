#include "plots/line_edit.h"

#include <algorithm>

namespace nivora {
namespace {

std::int32_t one_of(std::int32_t value, std::int32_t count) {
    return value >= 0 && value < count ? value : 0;
}

/// The values that controls show.
LineAttribute choosable(LineAttribute line) {
    line.style = one_of(line.style, k_line_styles);
    line.colour &= k_white;
    line.width = std::clamp(line.width, 1, k_widest_line);
    line.fill = one_of(line.fill, k_fill_styles);
    return line;
}

}  // namespace

LineEdit::LineEdit(const LineTable& lines, int edited_line, int curves)
    : lines_(lines), curves_(std::clamp(curves, 1, static_cast<int>(k_plot_lines))) {
    go_to(edited_line);
    attribute() = choosable(shown());
}

void LineEdit::go_to(int line) {
    if (line < 1 || line > curves_) return;
    line_ = line;
    attribute() = choosable(shown());
}

LineAttribute& LineEdit::attribute() { return lines_.at(static_cast<std::size_t>(line_ - 1)); }

const LineAttribute& LineEdit::shown() const { return lines_.at(static_cast<std::size_t>(line_ - 1)); }

void LineEdit::set_style(int style) { attribute().style = one_of(style, k_line_styles); }

void LineEdit::set_colour(Colour colour) { attribute().colour = colour; }

void LineEdit::set_width(int width) { attribute().width = std::clamp(width, 1, k_widest_line); }

void LineEdit::set_fill(int fill) { attribute().fill = one_of(fill, k_fill_styles); }

Pen LineEdit::pen() const {
    const LineAttribute& line = shown();
    return {.colour = line.colour, .style = has_style() ? line.style : 0, .width = line.width};
}

}  // namespace nivora
