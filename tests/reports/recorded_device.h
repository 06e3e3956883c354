// A printer that records its calls and whose letters all have the same width.
#pragma once

#include "base/text.h"
#include "reports/printed_page.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

namespace nivora {

/// A letter is 12 twips wide for each point of its font, a line 20 high: at 7.25 points 87 and 145.
class RecordedDevice : public PagedDevice {
public:
    bool set_font_name(const std::string& family) override { return take("font " + family); }
    bool set_font_size(double points) override { return take("size " + std::to_string(points)); }
    bool set_bold(bool bold) override { return take(bold ? "bold" : "plain"); }
    bool set_orientation(std::int32_t orientation) override {
        return take("orientation " + std::to_string(orientation));
    }
    bool set_margins(const std::array<float, 4>& inches) override {
        return take("margins " + std::to_string(inches[0]));
    }
    bool set_page_size(const std::string& paper) override { return take("paper " + paper); }
    [[nodiscard]] PageMetrics page() const override { return metrics; }
    [[nodiscard]] double line_height(const PrintFont& font) const override { return 20.0 * font.points; }
    [[nodiscard]] double text_width(const PrintFont& font, bool /*bold*/,
                                    std::string_view text) const override {
        return 12.0 * font.points * static_cast<double>(character_count(text));
    }

    /// A page of so many twips between margins of an inch.
    void usable(int width, int height) {
        metrics = {.paper_width = width + 2 * k_twips_an_inch,
                   .paper_height = height + 2 * k_twips_an_inch,
                   .left = k_twips_an_inch,
                   .top = k_twips_an_inch,
                   .right = k_twips_an_inch,
                   .bottom = k_twips_an_inch};
    }

    PageMetrics metrics;
    std::vector<std::string> refused;  ///< the settings that it refuses
    std::vector<std::string> taken;

private:
    bool take(std::string setting) {
        const bool refuse = std::find(refused.begin(), refused.end(), setting) != refused.end();
        taken.push_back(std::move(setting));
        return !refuse;
    }
};

/// The texts of a page by line, from top to bottom; a line without text is empty. The texts of a line are in
/// their order from left to right, with a bar between them.
inline std::vector<std::string> printed_lines(const PrintedPage& page, const PagedDevice& device,
                                              const PrintFont& font) {
    std::vector<PrintedText> texts = page.texts;
    std::stable_sort(texts.begin(), texts.end(),
                     [](const PrintedText& a, const PrintedText& b) { return a.x < b.x; });
    std::vector<std::string> lines;
    for (const PrintedText& text : texts) {
        const double row = (text.y - device.page().top) / device.line_height(font);
        const auto at = static_cast<std::size_t>(row + 0.5);
        if (lines.size() <= at) lines.resize(at + 1);
        lines[at] += (lines[at].empty() ? "" : "|") + text.text;
    }
    return lines;
}

/// Checks that every text and rule lies between the margins.
inline void expect_within_margins(const PrintedJob& job, const PagedDevice& device) {
    const PageMetrics page = device.page();
    const double right = page.paper_width - page.right + 1e-3;
    const double bottom = page.paper_height - page.bottom + 1e-3;
    for (const PrintedPage& printed : job.pages) {
        for (const PrintedText& text : printed.texts) {
            EXPECT_GE(text.x, page.left - 1e-3) << text.text;
            EXPECT_GE(text.y, page.top) << text.text;
            EXPECT_LE(text.x + text.width, right) << text.text;
            EXPECT_LE(text.x + device.text_width(job.font, text.bold, text.text), right) << text.text;
            EXPECT_LE(text.y + device.line_height(job.font), bottom) << text.text;
        }
        for (const PrintedRule& rule : printed.rules) {
            EXPECT_GE(rule.x1, page.left);
            EXPECT_LE(rule.x2, right);
            EXPECT_LE(rule.y1, bottom);
        }
    }
}

}  // namespace nivora
