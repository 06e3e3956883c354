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

/// Places the texts one after the other.
class HeadLayout {
public:
    explicit HeadLayout(const Surface& surface) : surface_(surface) {}

    /// @param x     place on the surface
    /// @param share part of the text's width that lies left of x
    /// @return where the next line begins
    double add(const std::string& whole, const PlotFont& font, double x, double share, double top) {
        std::string text = shortened(surface_, whole, font, surface_.size().width - 2.0 * k_text_edge);
        const SurfaceSize extent = surface_.text_size(text, font);
        if (text.empty()) return top + extent.height;
        PlacedText placed = place_text(surface_, std::move(text), font, {x - share * extent.width, top});
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
    std::vector<PlacedText> texts_;
};

void add_right_column(HeadLayout& layout, const Surface& surface, const Plot& plot, const PlotFont& font,
                      double now) {
    const std::size_t large = plot.head.step > 0 ? 2 : 1;  // step and date
    double top = k_text_edge;
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
    HeadLayout layout{surface};
    const auto add_centred = [&](const std::string& text, const PlotFont& font, double top) {
        return layout.add(text, font, width / 2.0, k_centred, top);
    };

    const PlotFont title_font =
        shrunk_font(surface, head.title, fitted_font(surface, k_title_font), width / 2.0);
    const double under_title = add_centred(head.title, title_font, k_text_edge);
    const PlotFont font = shrunk_font(surface, head.subtitle, fitted_font(surface, k_line_font), usable);
    const double under_subtitle = add_centred(head.subtitle, font, under_title);

    const double under_period = layout.add(period_text(plot), font, 0.0, k_right_of_it, k_text_edge);
    layout.add(head.zone_label, font, k_frame_left * width, k_centred, under_period);

    const PlotFont scenario_font = shrunk_font(surface, head.scenario_line, {font.size, false}, usable);
    add_centred(head.scenario_line, scenario_font, under_subtitle);
    add_right_column(layout, surface, plot, font, now);
    return std::move(layout).texts();
}

std::vector<PlacedText> refusal_texts(const Surface& surface, const PlotRefusal& refusal) {
    const double width = surface.size().width;
    HeadLayout layout{surface};
    double top = k_text_edge;
    for (const std::string& line :
         broken_lines(surface, refusal.text, k_title_font, width - 2.0 * k_text_edge))
        top = layout.add(line, k_title_font, width / 2.0, k_centred, top);
    return std::move(layout).texts();
}

}  // namespace nivora
