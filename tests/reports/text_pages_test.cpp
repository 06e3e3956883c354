#include "reports/text_pages.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;

/// A device on which each character is 100 twips wide and each line 200 twips high.
class GridPaper : public PagedDevice {
public:
    bool set_font_name(const std::string& /*family*/) override { return true; }
    bool set_font_size(double /*points*/) override { return true; }
    bool set_bold(bool /*bold*/) override { return true; }
    bool set_orientation(std::int32_t /*orientation*/) override { return true; }
    bool set_margins(const std::array<float, 4>& /*inches*/) override { return true; }
    bool set_page_size(const std::string& /*paper*/) override { return true; }
    [[nodiscard]] PageMetrics page() const override { return metrics; }
    [[nodiscard]] double line_height(const PrintFont& /*font*/) const override { return 200.0; }
    [[nodiscard]] double text_width(const PrintFont& /*font*/, bool /*bold*/,
                                    std::string_view text) const override {
        std::size_t characters = 0;
        for (const char byte : text) {
            if ((static_cast<unsigned char>(byte) & 0xC0U) != 0x80U) ++characters;
        }
        return 100.0 * static_cast<double>(characters);
    }

    /// Twelve characters by nine lines between the margins.
    PageMetrics metrics{
        .paper_width = 1700, .paper_height = 2300, .left = 300, .top = 250, .right = 200, .bottom = 250};
};

class TextPagesTest : public testing::Test {
protected:
    [[nodiscard]] PrintedJob laid_out(const std::string& text) const {
        return lay_out_text(paper_,
                            {.text = text, .title = "Help", .name = "Job", .font = {.family = "Sans"}});
    }
    /// The lines of a text that takes one page.
    [[nodiscard]] std::vector<std::string> lines(const std::string& text) const {
        std::vector<std::string> found;
        const PrintedJob job = laid_out(text);
        for (const PrintedText& printed : job.pages.at(0).texts) found.push_back(printed.text);
        found.erase(found.begin());
        found.pop_back();
        return found;
    }

    GridPaper paper_;
};

TEST_F(TextPagesTest, LinesBreakAtBlanksWhereTheWidthEnds) {
    EXPECT_THAT(lines("one two three four"), ElementsAre("one two", "three four"));
    EXPECT_THAT(lines("0123456789AB x"), ElementsAre("0123456789AB", "x")) << "exactly twelve fit";
    EXPECT_THAT(lines("a 0123456789ABCDE b"), ElementsAre("a", "0123456789AB", "CDE b"));
}

TEST_F(TextPagesTest, AnEmptyLineKeepsItsRoom) {
    const PrintedJob job = laid_out("one\n\ntwo\r\n\n");
    ASSERT_EQ(job.pages[0].texts.size(), 4U);
    EXPECT_EQ(job.pages[0].texts[1].y, 650.0);  // 250 + 2 lines of 200
    EXPECT_EQ(job.pages[0].texts[2].text, "two");
    EXPECT_EQ(job.pages[0].texts[2].y, 1050.0);
}

TEST_F(TextPagesTest, EachPageHasItsTitleAndItsNumber) {
    // Nine lines: two of the head, two of the foot, five of text.
    std::string text;
    for (int line = 1; line <= 6; ++line) text += std::to_string(line) + "\n";
    const PrintedJob job = laid_out(text);
    EXPECT_EQ(job.name, "Job");
    EXPECT_EQ(job.font.family, "Sans");
    ASSERT_EQ(job.pages.size(), 2U);
    const auto texts = [&](std::size_t page) {
        std::vector<std::string> found;
        for (const PrintedText& printed : job.pages.at(page).texts) found.push_back(printed.text);
        return found;
    };
    EXPECT_THAT(texts(0), ElementsAre("Help", "1", "2", "3", "4", "5", "Page 1 of 2"));
    EXPECT_THAT(texts(1), ElementsAre("Help", "6", "Page 2 of 2"));
    // The first line of text: 250 + 2 lines of 200. The foot, 11 characters wide: 2300 - 250 - 200, in the
    // middle of 300 to 1500.
    EXPECT_EQ(job.pages[0].texts[1].y, 650.0);
    EXPECT_EQ(job.pages[0].texts.back().y, 1850.0);
    EXPECT_EQ(job.pages[0].texts.back().x, 350.0);
    EXPECT_TRUE(job.pages[0].texts[0].bold);
    EXPECT_EQ(job.pages[0].rules.size(), 1U);
}

TEST_F(TextPagesTest, NothingLeavesTheMarginsAndNoLineMeetsTheFoot) {
    std::string text;
    for (int word = 0; word < 300; ++word) text += std::to_string(word * 977) + (word % 7 == 0 ? "\n" : " ");
    const PrintedJob job = lay_out_text(paper_, {.text = text, .title = "T", .name = {}, .font = {}});
    EXPECT_GT(job.pages.size(), 10U);
    for (const PrintedPage& page : job.pages) {
        for (std::size_t at = 0; at + 1 < page.texts.size(); ++at) {
            const PrintedText& printed = page.texts[at];
            EXPECT_GE(printed.x, 300.0);
            EXPECT_LE(printed.x + printed.width, 1500.0);
            EXPECT_LE(printed.y + 200.0, page.texts.back().y);
        }
    }
}

TEST_F(TextPagesTest, AnEmptyTextIsOnePage) { EXPECT_EQ(lay_out_text(paper_, {}).pages.size(), 1U); }

}  // namespace
}  // namespace nivora
