#include "widgets/printing.h"

#include "paint/print_fonts.h"
#include "reports/report_pages.h"
#include "reports/text_pages.h"
#include "tests/widgets/printing_fixture.h"

#include <QProgressDialog>
#include <algorithm>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

TEST_F(PrintingTest, ASheetGoesToThePrinterWithHeadRowsAndPageNumber) {
    EXPECT_TRUE(print());
    ASSERT_EQ(printers_.jobs().size(), 1U);
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 1U);
    const std::string page = printers_.jobs()[0].page(0);
    for (const char* text :
         {"Header", "Date", "Runoff", "10/01/1980", "1.00", "10/02/1980", "2.00", "Page 1"})
        EXPECT_THAT(page, HasSubstr(text));
    EXPECT_EQ(printers_.window(), &window_);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(PrintingTest, NothingLiesOutsideTheMarginsOfThePageSetup) {
    session_.settings.page.margins = {0.5F, 1.5F, 2.0F, 0.75F};
    session_.settings.page.paper = "A4";
    fill_rows(200);
    ASSERT_TRUE(print());
    const RecordedJob& job = printers_.jobs()[0];
    EXPECT_GT(job.pages.size(), 2U);
    for (const auto& page : job.pages) {
        for (const RecordedText& text : page) {
            EXPECT_GE(text.x, 0.5 * 72 - 0.1) << text.text;
            EXPECT_LE(text.x + text.width, job.paper_width - 2.0 * 72 + 0.1) << text.text;
            EXPECT_GE(text.y, 1.5 * 72) << text.text;
            EXPECT_LE(text.y, job.paper_height - 0.75 * 72) << text.text;
        }
    }
}

TEST_F(PrintingTest, ColumnHeadsAndPageNumbersStandOnEveryPage) {
    fill_rows(200);
    ASSERT_TRUE(print());
    const RecordedJob& job = printers_.jobs()[0];
    for (std::size_t page = 0; page < job.pages.size(); ++page) {
        EXPECT_THAT(job.page(page), HasSubstr("Runoff\n"));
        EXPECT_THAT(job.page(page), HasSubstr("Page " + std::to_string(page + 1) + "\n"));
    }
}

TEST_F(PrintingTest, TheChosenPrinterIsKeptAndOfferedAgain) {
    ASSERT_TRUE(print());
    EXPECT_EQ(session_.settings.page.printer, "Laser");
    ASSERT_TRUE(print());
    EXPECT_THAT(printers_.offered_printers(), testing::ElementsAre("", "Laser"));
}

TEST_F(PrintingTest, ACancelOfTheDialogPrintsNothingAndKeepsThePrinter) {
    session_.settings.page.printer = "Ink";
    printers_.then(std::nullopt);
    EXPECT_FALSE(print());
    EXPECT_TRUE(printers_.jobs().empty());
    EXPECT_EQ(session_.settings.page.printer, "Ink");
    EXPECT_EQ(messages(), 0U);
}

TEST_F(PrintingTest, APrinterThatVanishedIsNamedAndNotKept) {
    session_.settings.page.printer = "Ink";
    printers_.vanished = true;
    EXPECT_FALSE(print());
    EXPECT_EQ(session_.settings.page.printer, "Ink");
    EXPECT_EQ(told().text,
              "The printer \"Laser\" is not available.  Choose another printer, or print into a file.");
    EXPECT_TRUE(printers_.jobs().empty());
}

TEST_F(PrintingTest, APrinterThatTakesNoPageIsNotReady) {
    printers_.sheets = 0;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().title, "Print");
    EXPECT_EQ(told().text, " Printer not ready, error=5 - request ignored ");
    EXPECT_EQ(messages(), 1U);
}

TEST_F(PrintingTest, APrinterThatTakesNoFurtherPageIsTold) {
    fill_rows(500);
    printers_.sheets = 2;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().title, "Printout subroutine error trap");
    EXPECT_EQ(told().text,
              "The printer \"Laser\" did not print all pages, Error Code #5.  "
              "Error raised during print request (PrintOut) ");
}

TEST_F(PrintingTest, APrinterThatReportsAnErrorIsTold) {
    printers_.jams = true;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().title, "Printout subroutine error trap");
}

TEST_F(PrintingTest, EachSettingThatThePrinterRefusesIsToldAndNothingIsPrinted) {
    session_.settings.page.paper = "A4";
    const auto refusal = [this](const RefusedSettings& refused) {
        printers_.refused = refused;
        EXPECT_FALSE(print());
        EXPECT_TRUE(printers_.jobs().back().pages.empty());
        return told().text;
    };
    EXPECT_EQ(refusal({.resolution = true}), "Unable to set the printer fontsize (7.25)");
    EXPECT_EQ(refusal({.orientation = true}), "Unable to set the printer page orientation ");
    EXPECT_EQ(refusal({.paper = true}), "Unable to initialize the printer pagesize/position.");
    session_.settings.page.margins[3] = -0.5F;
    EXPECT_EQ(refusal({}), "Unable to set the printer margin");
    EXPECT_EQ(messages(), 4U);
}

TEST_F(PrintingTest, APageOfFewerThanFortyLinesIsToldWithTheirNumber) {
    leave_four_lines();
    EXPECT_FALSE(print());
    // A4 is 842 points high: 842 - 11.2 * 72 = 35.6 between the margins. A line of 7.25 points is 8.2 or a
    // little higher, by the font that the system has.
    EXPECT_EQ(told().text,
              "The Nivora recommended minimum page height is 40 lines.  The current vertical margin "
              "definition results in a 4 line page.\n"
              "Click File/Page Setup on the main window menu to change your margin definition.");
    EXPECT_EQ(told().title, "Nivora margin definition error");
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
    EXPECT_EQ(messages(), 1U);
    window_.setObjectName(QStringLiteral("frmFileDisp"));
    EXPECT_FALSE(print_report("a report\r\n"));
    EXPECT_THAT(told().text, HasSubstr("a 4 line page.\nClick Print/Page Setup to change"));
}

TEST_F(PrintingTest, MarginsThatAreTooWideAreToldWhereTheyCanBeChanged) {
    session_.settings.page.margins = {4.0F, 1.0F, 4.0F, 1.0F};
    EXPECT_FALSE(print());
    EXPECT_EQ(told().text,
              "Nivora reports are too wide for the current horizontal margin definition.\n"
              "Click File/Page Setup on the main window menu to change your margin definition.");
    EXPECT_EQ(told().title, "Nivora margin definition error");
    EXPECT_TRUE(printers_.jobs().empty() || printers_.jobs()[0].pages.empty());
    window_.setObjectName(QStringLiteral("frmFileDisp"));
    EXPECT_FALSE(print_report("a report\r\n"));
    EXPECT_THAT(told().text, HasSubstr("\nClick Print/Page Setup to change your margin definition."));
}

TEST_F(PrintingTest, ALargePrintIsAskedAboutAndNoEndsIt) {
    dialogs_.then(Answer::No);
    const Message question{.text = "many pages", .buttons = Buttons::YesNo};
    EXPECT_FALSE(print({.question = question}));
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
    EXPECT_EQ(messages(), 1U) << "the question alone";
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(print({.question = question}));
    EXPECT_EQ(printers_.jobs()[1].pages.size(), 1U);
}

TEST_F(PrintingTest, MarginsAreCheckedBeforeTheQuestion) {
    leave_four_lines();
    EXPECT_FALSE(print({.question = Message{.text = "many pages", .buttons = Buttons::YesNo}}));
    EXPECT_EQ(messages(), 1U);
    EXPECT_EQ(told().title, "Nivora margin definition error");
}

TEST_F(PrintingTest, AReportIsPrintedBoldInTheFixedPitchFontOfReports) {
    ASSERT_TRUE(print_report("one line of a report\r\n"));
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 1U);
    ASSERT_EQ(printers_.jobs()[0].pages[0].size(), 1U);
    const RecordedText& line = printers_.jobs()[0].pages[0][0];
    EXPECT_EQ(line.text, "one line of a report");
    EXPECT_TRUE(line.bold);
    EXPECT_EQ(line.points, 7.25);
    EXPECT_EQ(line.font, fixed_pitch_family(QStringLiteral("Courier New")).toStdString());
}

TEST_F(PrintingTest, AGridIsPrintedInTheFontOfGrids) {
    ASSERT_TRUE(print());
    for (const RecordedText& text : printers_.jobs()[0].pages[0]) {
        EXPECT_EQ(text.font, "MS Sans Serif") << text.text;
        EXPECT_EQ(text.points, 8.25) << text.text;
    }
}

TEST_F(PrintingTest, AReportOf50000LinesIsPrintedToTheLast) {
    ASSERT_TRUE(print_report(numbered_lines(50'000)));
    const RecordedJob& job = printers_.jobs()[0];
    std::size_t lines = 0;
    for (const auto& page : job.pages) {
        lines += static_cast<std::size_t>(std::ranges::count_if(
            page, [](const RecordedText& text) { return text.text.starts_with("line "); }));
    }
    // The first eleven lines are the head that every further page repeats.
    EXPECT_EQ(lines, 50'000 + 11 * (job.pages.size() - 1));
    EXPECT_EQ(job.pages.back().back().text, "line 50000");
}

TEST_F(PrintingTest, AnEmptyReportIsToldBeforeAnythingIsAsked) {
    EXPECT_FALSE(print_report(""));
    EXPECT_EQ(told().text, "There is nothing to print.  Make a report first, then print it.");
    EXPECT_TRUE(printers_.offered_printers().empty());
}

TEST_F(PrintingTest, CancelEndsALongPrintBehindThePageThatIsBeingPrinted) {
    fill_rows(1000);
    std::string shown;
    printers_.before_page = [&] {
        auto* progress = window_.findChild<QProgressDialog*>();
        ASSERT_NE(progress, nullptr);
        shown = progress->labelText().toStdString();
        if (printers_.jobs()[0].pages.size() == 3) progress->cancel();
    };
    EXPECT_FALSE(print());
    EXPECT_EQ(shown, "Printing - Click Cancel to quit");
    EXPECT_EQ(printers_.jobs()[0].pages.size(), 4U);
    EXPECT_EQ(printers_.aborted_jobs(), 1);
    EXPECT_EQ(messages(), 0U) << "the user knows";
    EXPECT_EQ(window_.findChild<QProgressDialog*>(), nullptr);
    printers_.before_page = {};
    EXPECT_TRUE(print()) << "the next print is another one";
}

TEST_F(PrintingTest, ThePointerIsBusyExceptOverTheProgress) {
    fill_rows(300);
    const auto is_busy = [] {
        const QCursor* pointer = QApplication::overrideCursor();
        return pointer != nullptr && pointer->shape() == Qt::WaitCursor;
    };
    int pages = 0;
    printers_.before_page = [&] {
        if (++pages > 1) return;
        auto* progress = window_.findChild<QProgressDialog*>();
        ASSERT_NE(progress, nullptr);
        EXPECT_TRUE(is_busy()) << "it is not shown yet";
        progress->show();
        EXPECT_EQ(QApplication::overrideCursor(), nullptr);
        progress->hide();
        EXPECT_TRUE(is_busy());
        progress->show();
    };
    ASSERT_TRUE(print());
    EXPECT_GT(pages, 1) << "it was open to the end";
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(PrintingTest, ATextIsPrintedWithItsTitleAndPageNumbers) {
    ASSERT_TRUE(printing_.print_text(
        &window_,
        {.text = "First\nSecond", .title = "Help", .name = "J", .font = {.family = "Sans", .points = 10.0}}));
    EXPECT_THAT(printers_.jobs()[0].page(0), StartsWith("Help\nFirst\nSecond\nPage 1 of 1\n"));
}

}  // namespace
}  // namespace nivora
