// Reports and grids as PDF files.
#include "paint/page_layout.h"
#include "reports/grid_pages.h"
#include "reports/print_texts.h"
#include "reports/report_pages.h"
#include "tests/paint/paint_fixture.h"
#include "tests/support/full_disk.h"

#include <QBuffer>
#include <QByteArray>
#include <QPdfWriter>
#include <fstream>

namespace nivora {
namespace {

using testing::AllOf;
using testing::AnyOf;
using testing::Contains;
using testing::HasSubstr;
using testing::Not;

constexpr double k_a4_width = 595.0;
constexpr double k_a4_height = 842.0;

class PdfPages : public PaintTest {
protected:
    [[nodiscard]] std::optional<Message> write_report(const std::string& text,
                                                      bool No_Table_Head = false) const {
        return write_pdf(file_, setup_, [&](const PagedDevice& device) -> std::variant<PrintedJob, Message> {
            if (auto refusal = margin_refusal(device, "frmFileDisp")) return *refusal;
            return lay_out_report(device, {.text = text, .name = "Reports", .No_Table_Head = No_Table_Head});
        });
    }
    [[nodiscard]] std::optional<Message> write_sheet(const PrintedSheet& sheet) const {
        return write_pdf(file_, setup_, [&](const PagedDevice& device) -> std::variant<PrintedJob, Message> {
            return lay_out_sheets(device, std::span{&sheet, 1}, k_print_job_name);
        });
    }

    static std::string table(int lines) {
        std::string text;
        for (int line = 1; line <= lines; ++line) {
            text += "row " + std::to_string(line) + std::string(117 - std::to_string(line).size(), ' ') +
                    "last\r\n";
        }
        return text;
    }
};

TEST_F(PdfPages, ALineStandsAtTheMarginsAndCanBeSelected) {
    ASSERT_FALSE(write_report("Hollin Flow Model\r\n"));
    EXPECT_EQ(page_count(), 1U);
    EXPECT_EQ(info("Title"), "Reports");
    EXPECT_THAT(info("Page size"), HasSubstr("A4"));
    EXPECT_THAT(page_lines(1), Contains("Hollin Flow Model"));
    const auto found = words();
    ASSERT_EQ(found.size(), 3U);
    EXPECT_NEAR(found[0].left, 72.0, 0.5);
    EXPECT_NEAR(found[0].top, 72.0, 2.5);
    expect_words_within(k_a4_width, k_a4_height, 72.0);
}

TEST_F(PdfPages, TheFontIsEmbedded) {
    ASSERT_FALSE(write_report("Hollin Flow Model km² °C\r\n"));
    std::istringstream fonts{output_of("pdffonts " + quoted())};
    int listed = 0;
    for (std::string line; std::getline(fonts, line);) {
        if (line.starts_with("name") || line.starts_with("---")) continue;
        ++listed;
        // The columns "emb", "sub" and "uni": embedded, in whole or in part, and with its letters named.
        EXPECT_THAT(line, AnyOf(HasSubstr(" yes yes yes "), HasSubstr(" yes no  yes ")));
    }
    EXPECT_GE(listed, 1);
}

TEST_F(PdfPages, AWideTableIsSetSmallerAndNothingIsCut) {
    ASSERT_FALSE(write_report(table(100)));
    expect_words_within(k_a4_width, k_a4_height, 72.0);
    const auto found = words();
    EXPECT_EQ(
        std::count_if(found.begin(), found.end(), [](const FoundWord& word) { return word.text == "last"; }),
        100);
    // The widest line takes the whole width of 451 points. A font of 6 points is 100 dots of 1/1200 inch
    // high; its rounding to whole dots takes up to a hundredth of the width.
    const auto right = std::max_element(
        found.begin(), found.end(), [](const FoundWord& a, const FoundWord& b) { return a.right < b.right; });
    EXPECT_GT(right->right, k_a4_width - 72.0 - 4.6);
}

TEST_F(PdfPages, PagesAreCountedAndHeaded) {
    const std::string end = "\x01\r\n\r\n\r\nend of the table\r\n\f\r\n";
    ASSERT_FALSE(write_report(table(80) + end + table(150) + end));
    // At about 6 points 100 lines stand on a page, so that the first table has one of its own.
    ASSERT_EQ(page_count(), 3U);
    EXPECT_THAT(page_lines(1), AllOf(Contains("end of the table"), Not(Contains(HasSubstr("=====")))));
    EXPECT_THAT(page_lines(2), AllOf(Contains(HasSubstr("NVR, Version 1.10")),
                                     Contains(testing::MatchesRegex(" *=+")), Not(Contains("(continued)"))));
    EXPECT_THAT(page_lines(3),
                AllOf(Contains(testing::ContainsRegex("Page +3$")), Contains("(continued)"),
                      Contains(testing::StartsWith("row 11 ")), Contains(testing::StartsWith("row 150 "))));
    expect_words_within(k_a4_width, k_a4_height, 72.0);
}

TEST_F(PdfPages, MarginsOrientationAndPaperAreThoseOfTheSetUp) {
    setup_.margins = {0.5F, 0.75F, 0.5F, 0.75F};
    setup_.orientation = 2;
    setup_.paper = "Letter";
    ASSERT_FALSE(write_report(table(40)));
    EXPECT_THAT(info("Page size"), HasSubstr("792 x 612"));
    const auto found = words();
    EXPECT_NEAR(found[0].left, 36.0, 0.5);
    EXPECT_NEAR(found[0].top, 54.0, 2.5);
}

TEST_F(PdfPages, ColumnsHoldWhereAnotherFontStepsInForALetter) {
    ASSERT_FALSE(
        write_report("Basin:      Долина 谷川岳              |end\r\n"
                     "Basin:      Alder                   |end\r\n"));
    const auto found = words();
    std::vector<double> ends;
    for (const FoundWord& word : found) {
        if (word.text == "|end") ends.push_back(word.left);
    }
    ASSERT_EQ(ends.size(), 2U);
    // The bar follows 36 characters in both lines.
    EXPECT_NEAR(ends[0], ends[1], 0.2);
    EXPECT_THAT(page_lines(1), Contains(HasSubstr("Долина")));
}

TEST_F(PdfPages, ARefusedMarginLeavesNoFile) {
    setup_.margins = {3.0F, 1.0F, 3.0F, 1.0F};
    const auto refusal = write_report("text\r\n");
    ASSERT_TRUE(refusal);
    EXPECT_THAT(refusal->text, testing::StartsWith("Nivora reports are too wide"));
    EXPECT_FALSE(std::filesystem::exists(file_));
    setup_.margins = {1.0F, 6.0F, 1.0F, 5.0F};
    EXPECT_THAT(write_report("text\r\n")->text, HasSubstr("recommended minimum page height is 40 lines"));
    setup_.margins = {50.0F, 50.0F, 50.0F, 50.0F};
    EXPECT_THAT(write_report("text\r\n")->text, testing::StartsWith("Nivora reports are too wide"));
}

TEST_F(PdfPages, TheCheckWithoutAFileRefusesWhatThePrintWould) {
    EXPECT_FALSE(file_page_refusal(setup_, "frmFileDisp"));
    setup_.margins = {3.0F, 1.0F, 3.0F, 1.0F};
    EXPECT_EQ(file_page_refusal(setup_, "frmFileDisp")->text, write_report("text\r\n")->text);
    EXPECT_THAT(file_page_refusal(setup_, "frmFileDisp")->text, HasSubstr("Click Print/Page Setup"));
    EXPECT_THAT(file_page_refusal(setup_, "frmData")->text, HasSubstr("Click File/Page Setup"));
    setup_.margins = {1.0F, 6.0F, 1.0F, 5.0F};
    EXPECT_EQ(file_page_refusal(setup_, "frmFileDisp")->text, write_report("text\r\n")->text);
    setup_.margins = {1.0F, -1.0F, 1.0F, 1.0F};
    EXPECT_EQ(file_page_refusal(setup_, "frmFileDisp")->text, "Unable to set the printer margin");
}

// 80 hyphens at 7.25 points are about 348 points wide, A4 is 595 upright and 842 across: margins of 2 inches
// on either side leave 307 or 554.
TEST_F(PdfPages, TheCheckTakesTheOrientationAndThePaperOfTheSetUp) {
    setup_.margins = {2.0F, 0.5F, 2.0F, 0.5F};
    EXPECT_TRUE(file_page_refusal(setup_, ""));
    setup_.orientation = 2;
    EXPECT_FALSE(file_page_refusal(setup_, ""));
    setup_.orientation = 1;
    setup_.paper = "A3";
    EXPECT_FALSE(file_page_refusal(setup_, ""));
}

TEST_F(PdfPages, AMarginThatIsNoLengthIsRefused) {
    setup_.margins[1] = -1.0F;
    EXPECT_EQ(write_report("text\r\n")->text, "Unable to set the printer margin");
}

TEST_F(PdfPages, NothingToPrintIsSaidAndNoFileIsMade) {
    EXPECT_THAT(write_report("")->text, HasSubstr("nothing to print"));
    EXPECT_FALSE(std::filesystem::exists(file_));
}

TEST_F(PdfPages, AFolderThatIsMissingIsNamed) {
    file_ = folder_ / "none" / "report.pdf";
    const auto refusal = write_report("text\r\n");
    ASSERT_TRUE(refusal);
    EXPECT_THAT(refusal->text, HasSubstr("report.pdf"));
}

TEST_F(PdfPages, AReadOnlyTargetKeepsItsContent) {
    { std::ofstream{file_} << "older"; }
    std::filesystem::permissions(file_, std::filesystem::perms::owner_read);
    const auto refusal = write_report("text\r\n");
    ASSERT_TRUE(refusal);
    EXPECT_THAT(refusal->text, HasSubstr("report.pdf"));
    std::ifstream file{file_};
    EXPECT_EQ(std::string(std::istreambuf_iterator<char>{file}, {}), "older");
}

TEST_F(PdfPages, AFullDiskLeavesTheOlderFileWhole) {
    ASSERT_FALSE(write_report("short\r\n"));
    std::optional<Message> refusal;
    {
        const FullDisk disk{1000};
        refusal = write_report(table(300));
    }
    ASSERT_TRUE(refusal);
    EXPECT_THAT(refusal->text, AllOf(HasSubstr("report.pdf"), HasSubstr("disk")));
    EXPECT_EQ(page_count(), 1U);
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{folder_.path()}, {}), 1);
}

TEST_F(PdfPages, AReportOf50000LinesGoesOnToItsLastPage) {
    std::string text;
    for (int line = 1; line <= 50'000; ++line) text += "line " + std::to_string(line) + "\r\n";
    ASSERT_FALSE(write_report(text));
    const std::size_t pages = page_count();
    EXPECT_GT(pages, 500U);
    EXPECT_THAT(page_lines(pages),
                AllOf(Contains("line 50000"),
                      Contains(testing::ContainsRegex("Page +" + std::to_string(pages) + "$"))));
}

TEST_F(PdfPages, AnOlderFileIsReplacedAsAWhole) {
    ASSERT_FALSE(write_report(table(300)));
    ASSERT_FALSE(write_report("short\r\n"));
    EXPECT_EQ(page_count(), 1U);
    // Nothing else stays beside it.
    EXPECT_EQ(std::distance(std::filesystem::directory_iterator{folder_.path()}, {}), 1);
}

TEST_F(PdfPages, AGridGoesOnToTheRightWithinTheMargins) {
    PrintedSheet sheet{.header = grid_print_header(daily_values_title("wet"), "Alder", 46000.5),
                       .key_columns = 1,
                       .footer = k_grid_print_footer};
    for (int column = 0; column < 30; ++column) {
        sheet.columns.push_back({"Head" + std::to_string(column), PrintAlign::Right});
    }
    for (int row = 0; row < 120; ++row) {
        sheet.rows.emplace_back();
        for (int column = 0; column < 30; ++column) {
            sheet.rows.back().push_back("v" + std::to_string(row) + "." + std::to_string(column));
        }
    }
    ASSERT_FALSE(write_sheet(sheet));
    expect_words_within(k_a4_width, k_a4_height, 72.0);
    EXPECT_EQ(info("Title"), "Hollin Flow Model");
    const auto found = words();
    const auto count = [&](const std::string& text) {
        return std::count_if(found.begin(), found.end(),
                             [&](const FoundWord& word) { return word.text == text; });
    };
    const auto pages = static_cast<std::ptrdiff_t>(page_count());
    EXPECT_GT(pages, 4);
    EXPECT_EQ(count("Head0"), pages);
    EXPECT_EQ(count("v119.29"), 1);
    EXPECT_EQ(count("v0.1"), 1);
    EXPECT_EQ(count("Page"), pages);
    for (std::size_t page = 1; page <= page_count(); ++page) {
        EXPECT_THAT(page_lines(page), Contains(HasSubstr("Page " + std::to_string(page))));
        EXPECT_THAT(page_lines(page), Contains(HasSubstr("Simulation: wet")));
    }
}

TEST_F(PdfPages, APrintCanBeEndedBetweenPages) {
    QByteArray content;
    QBuffer buffer(&content);
    ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
    std::vector<int> asked;
    {
        QPdfWriter writer(&buffer);
        writer.setPageLayout(page_of(setup_));
        PaintedDevice device{writer};
        const PrintedSheet sheet{.columns = {{"Day"}},
                                 .rows = std::vector<std::vector<std::string>>(500, {"x"})};
        const PrintedJob job = lay_out_sheets(device, std::span{&sheet, 1}, "ended");
        ASSERT_GT(job.pages.size(), 4U);
        EXPECT_FALSE(paint_pages(device, job, [&](int page) {
            asked.push_back(page);
            return page < 3;
        }));
    }
    EXPECT_THAT(asked, testing::ElementsAre(1, 2, 3));
    std::ofstream{file_, std::ios::binary}.write(content.constData(), content.size());
    EXPECT_EQ(page_count(), 2U);
}

}  // namespace
}  // namespace nivora
