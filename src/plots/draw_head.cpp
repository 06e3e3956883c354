#include "plots/draw_head.h"

#include "plots/axes.h"

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr PlotFont k_title_font{10.5, true};
constexpr PlotFont k_line_font{8.5, true};
constexpr PlotFont k_run_font{7.5, true};

/// Where the texts of the right column end: a twelfth of the range of x right of the frame.
constexpr double k_column_right = (0.1 + 1.0 + 1.0 / 12.0) / 1.2;

/// The part of a text's width that lies left of its place.
constexpr double k_centred = 0.5;
constexpr double k_left_of_it = 1.0;
constexpr double k_right_of_it = 0.0;

/// The least part of its height that a line takes up: what is left out is blank above its letters.
constexpr double k_least_line = 0.85;
/// The least space above the first line, and the one between the last line and the frame.
constexpr double k_least_edge = 1.0;
constexpr double k_frame_gap = 1.0;

/// How close the lines stand.
struct HeadPitch {
    double top = k_text_edge;
    double line = 1.0;  ///< the part of its height that a line takes up
};

/// Places the texts one after the other.
class HeadLayout {
public:
    HeadLayout(const Surface& surface, const HeadPitch& pitch) : surface_(surface), pitch_(pitch) {}

    /// @param x     place on the surface
    /// @param share part of the text's width that lies left of x
    /// @return where the next line begins
    double add(const std::string& whole, const PlotFont& font, double x, double share, double top) {
        std::string text = shortened(surface_, whole, font, surface_.size().width - 2.0 * k_text_edge);
        const SurfaceSize extent = surface_.text_size(text, font);
        if (text.empty()) return top + pitch_.line * extent.height;
        PlacedText placed = place_text(surface_, std::move(text), font, {x - share * extent.width, top});
        placed.box.top = std::min(placed.box.top, std::max(top, pitch_.top));
        placed.box.height *= pitch_.line;
        // Each step passes one text or more, so that there are no more steps than texts.
        for (std::size_t step = 0; step < texts_.size(); ++step) {
            const auto taken = std::find_if(texts_.begin(), texts_.end(), [&](const PlacedText& other) {
                return overlap(other.box, placed.box);
            });
            if (taken == texts_.end()) break;
            placed.box.top = taken->box.top + taken->box.height;
        }
        const double end = placed.box.top + placed.box.height;
        texts_.push_back(std::move(placed));
        return end;
    }

    [[nodiscard]] std::vector<PlacedText> texts() && { return std::move(texts_); }

private:
    const Surface& surface_;
    HeadPitch pitch_;
    std::vector<PlacedText> texts_;
};

/// The widest pitch at which the title and the two lines below it stand above the frame; the closest one if
/// none does.
HeadPitch pitch_of(const Surface& surface, const PlotFont& title, const PlotFont& second,
                   const PlotFont& third) {
    const auto height = [&](const PlotFont& font) { return surface.text_size("0", font).height; };
    const double upper = height(title) + height(second);
    const double room = k_frame_top * surface.size().height - k_frame_gap - height(third);
    HeadPitch pitch;
    if (upper > 0.0) pitch.line = std::clamp((room - k_text_edge) / upper, k_least_line, 1.0);
    pitch.top = std::clamp(room - pitch.line * upper, k_least_edge, k_text_edge);
    return pitch;
}

void add_right_column(HeadLayout& layout, const Surface& surface, const Plot& plot, const PlotFont& font,
                      double now, double top) {
    const std::size_t large = plot.head.step > 0 ? 2 : 1;  // step and date
    std::size_t row = 0;
    for (const std::string& text : right_column(plot, now)) {
        const PlotFont row_font =
            row++ < large ? font : PlotFont{std::min(font.size, fitted_font(surface, k_run_font).size), true};
        top = layout.add(text, row_font, k_column_right * surface.size().width, k_left_of_it, top);
    }
}

}  // namespace

std::vector<PlacedText> head_texts(const Surface& surface, const Plot& plot, double now) {
    const PlotHead& head = plot.head;
    const double width = surface.size().width;
    const double usable = width - 2.0 * k_text_edge;
    const PlotFont title_font =
        shrunk_font(surface, head.title, fitted_font(surface, k_title_font), width / 2.0);
    const PlotFont font = shrunk_font(surface, head.subtitle, fitted_font(surface, k_line_font), usable);
    const PlotFont scenario_font = shrunk_font(surface, head.scenario_line, {font.size, false}, usable);
    const HeadPitch pitch = pitch_of(surface, title_font, font, scenario_font);
    HeadLayout layout{surface, pitch};
    const auto add_centred = [&](const std::string& text, const PlotFont& text_font, double top) {
        return layout.add(text, text_font, width / 2.0, k_centred, top);
    };

    const double under_title = add_centred(head.title, title_font, pitch.top);
    const double under_subtitle = add_centred(head.subtitle, font, under_title);

    const double under_period = layout.add(period_text(plot), font, 0.0, k_right_of_it, pitch.top);
    layout.add(head.zone_label, font, k_frame_left * width, k_centred, under_period);

    add_centred(head.scenario_line, scenario_font, under_subtitle);
    add_right_column(layout, surface, plot, font, now, pitch.top);
    return std::move(layout).texts();
}

std::vector<PlacedText> refusal_texts(const Surface& surface, const PlotRefusal& refusal) {
    const double width = surface.size().width;
    HeadLayout layout{surface, {}};
    double top = k_text_edge;
    for (const std::string& line :
         broken_lines(surface, refusal.text, k_title_font, width - 2.0 * k_text_edge))
        top = layout.add(line, k_title_font, width / 2.0, k_centred, top);
    return std::move(layout).texts();
}

}  // namespace nivora
