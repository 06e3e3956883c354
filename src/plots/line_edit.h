// The changes of the attributes of plot lines, before the user accepts or drops them.
#pragma once

#include "plots/line_attributes.h"
#include "plots/plot_number.h"
#include "plots/surface.h"

namespace nivora {

/// The number that stands for no edited line: the edit was cancelled, so that nothing has to be drawn again.
inline constexpr int k_no_edited_line = -1;
/// The widest line that can be chosen.
inline constexpr int k_widest_line = 10;
inline constexpr int k_line_styles = 5;
inline constexpr int k_fill_styles = 8;

/// Whether a plot has filled bands, so that the fill of its lines can be chosen: plots 16 and 23.
[[nodiscard]] constexpr bool has_filled_bands(PlotNumber plot) {
    return plot == PlotNumber::RunoffComponents || plot == PlotNumber::WaterEquivalent;
}

/// A copy of all lines, one of which is shown and changed at a time.
class LineEdit {
public:
    /// @param lines       the lines of all plots
    /// @param edited_line the line that is shown first, from 1; line 1 if the plot has no such line
    /// @param curves      the number of curves of the plot; only their lines can be chosen
    LineEdit(const LineTable& lines, int edited_line, int curves);

    /// The lines with all changes, also of lines beyond the curves of the plot.
    [[nodiscard]] const LineTable& lines() const { return lines_; }
    [[nodiscard]] int curves() const { return curves_; }

    /// The number of the shown line, from 1.
    [[nodiscard]] int line() const { return line_; }
    /// Shows another line; a number without a curve is ignored.
    void go_to(int line);

    /// The shown line. A value that cannot be chosen, from damaged settings, is replaced by one that can.
    [[nodiscard]] const LineAttribute& shown() const;
    void set_style(int style);
    void set_colour(Colour colour);
    void set_width(int width);
    void set_fill(int fill);

    /// Whether the style applies: a line wider than 1 is drawn solid, but keeps its style.
    [[nodiscard]] bool has_style() const { return shown().width == 1; }
    /// The shown line as it is drawn.
    [[nodiscard]] Pen pen() const;

private:
    [[nodiscard]] LineAttribute& attribute();

    LineTable lines_;
    int curves_;
    int line_ = 1;
};

}  // namespace nivora
