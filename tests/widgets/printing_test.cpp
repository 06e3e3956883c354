#include "widgets/printing.h"

#include "base/scripted_dialogs.h"
#include "reports/grid_pages.h"
#include "reports/print_texts.h"
#include "reports/report_pages.h"
#include "reports/text_pages.h"
#include "session/session.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QWidget>
#include <fstream>
#include <sstream>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

class PrintingTest : public testing::Test {
protected:
    PrintingTest() {
        window_.setObjectName(QStringLiteral("frmData"));
        session_.file_names.begin_in(folder_.path());
        session_.basin.Basin_File = folder_ / "alder.mdb";
        session_.basin.Work_File = folder_ / "new.mdb";
        sheet_ = {.header = "/lHeader",
                  .columns = {{"Date", PrintAlign::Left}, {"Runoff", PrintAlign::Right}},
                  .rows = {{"10/01/1980", "1.00"}, {"10/02/1980", "2.00"}},
                  .footer = k_grid_print_footer};
    }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    bool print(const SheetsPrint& how = {}) {
        return printing_.print_sheets(&window_, std::span{&sheet_, 1}, how);
    }
    void fill_rows(int count) {
        sheet_.rows.clear();
        for (int row = 0; row < count; ++row) sheet_.rows.push_back({"row " + std::to_string(row), "1"});
    }
    static std::string content(const fs::path& file) {
        std::ifstream input{file, std::ios::binary};
        std::ostringstream text;
        text << input.rdbuf();
        return text.str();
    }
    [[nodiscard]] const Message& told() const { return dialogs_.messages().back().message; }
    [[nodiscard]] std::size_t messages() const { return dialogs_.messages().size(); }

    TemporaryFolder folder_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    QWidget window_;
    PrintedSheet sheet_;
};

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

TEST_F(PrintingTest, APrinterThatVanishedIsNamed) {
    printers_.vanished = true;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().text,
              "The printer \"Laser\" is not available.  Choose another printer, or print into a file.");
    EXPECT_TRUE(printers_.jobs().empty());
}

TEST_F(PrintingTest, APrinterThatTakesNoFurtherPageIsTold) {
    fill_rows(500);
    printers_.sheets = 2;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().title, "Printout subroutine error trap");
    EXPECT_EQ(
        told().text,
        "The printer \"Laser\" did not print all pages, Error Code #5.  Error raised during print request "
        "(PrintOut) ");
}

TEST_F(PrintingTest, APrinterThatReportsAnErrorIsTold) {
    printers_.jams = true;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().title, "Printout subroutine error trap");
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
    EXPECT_FALSE(printing_.print_report(&window_, {.text = "a report\r\n"}));
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

TEST_F(PrintingTest, AReportIsPrintedInTheFontOfReports) {
    ASSERT_TRUE(printing_.print_report(&window_, {.text = "one line of a report\r\n"}));
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 1U);
    EXPECT_THAT(printers_.jobs()[0].page(0), HasSubstr("one line of a report"));
}

TEST_F(PrintingTest, ATextIsPrintedWithItsTitleAndPageNumbers) {
    ASSERT_TRUE(printing_.print_text(
        &window_,
        {.text = "First\nSecond", .title = "Help", .name = "J", .font = {.family = "Sans", .points = 10.0}}));
    EXPECT_THAT(printers_.jobs()[0].page(0), StartsWith("Help\nFirst\nSecond\nPage 1 of 1\n"));
}

/// Prints into files.
class PrintToFileTest : public PrintingTest {};

TEST_F(PrintToFileTest, ATextFileIsAskedForUnderTheBasinsNameWithTheSuffix) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(std::nullopt);
    EXPECT_FALSE(print({.name_suffix = "_Results"}));
    ASSERT_EQ(dialogs_.files().size(), 1U);
    EXPECT_EQ(dialogs_.files()[0].title, "Save as a text(.txt) file");
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "alder_Results.txt");
}

TEST_F(PrintToFileTest, ATextFileHoldsTheSheetWithoutPages) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "out.txt");
    ASSERT_TRUE(print());
    EXPECT_EQ(content(folder_ / "out.txt"),
              "Header\r\n\r\nDate        Runoff\r\n----------  ------\r\n10/01/1980    1.00\r\n10/02/1980    "
              "2.00\r\n");
    EXPECT_TRUE(printers_.jobs().empty());
}

TEST_F(PrintToFileTest, AReportInATextFileHasNoMarks) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "out.txt");
    ASSERT_TRUE(printing_.print_report(&window_, {.text = "a\r\n\f\r\nb\r\n\x01\r\n"}));
    EXPECT_EQ(content(folder_ / "out.txt"), "a\r\n\r\nb\r\n\r\n");
}

TEST_F(PrintToFileTest, AHelpTextKeepsItsParagraphs) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "out.txt");
    ASSERT_TRUE(printing_.print_text(&window_, {.text = "a\n\nb", .title = "T"}));
    EXPECT_EQ(content(folder_ / "out.txt"), "a\r\n\r\nb");
}

TEST_F(PrintToFileTest, APdfIsAskedForAndWritten) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "out");
    ASSERT_TRUE(print({.name_suffix = "_Results"}));
    EXPECT_EQ(dialogs_.files()[0].title, "Save as a PDF(.pdf) file");
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "alder_Results.pdf");
    EXPECT_THAT(content(folder_ / "out.pdf"), StartsWith("%PDF-"));
}

TEST_F(PrintToFileTest, TheEndingOfTheNameDecidesWhatIsWritten) {
    printers_.then(PrintTarget::Text).then(PrintTarget::Pdf).then(PrintTarget::Pdf).then(PrintTarget::Text);
    for (const char* name : {"a.PDF", "b.txt", "c.prn", "d.prn"}) {
        dialogs_.then_file(folder_ / name);
        ASSERT_TRUE(print());
    }
    EXPECT_THAT(content(folder_ / "a.PDF"), StartsWith("%PDF-"));
    EXPECT_THAT(content(folder_ / "b.txt"), StartsWith("Header"));
    EXPECT_THAT(content(folder_ / "c.prn"), StartsWith("%PDF-"));
    EXPECT_THAT(content(folder_ / "d.prn"), StartsWith("Header"));
}

TEST_F(PrintToFileTest, TheOpenBasinIsNeverReplaced) {
    for (const char* name : {"alder.mdb", "new.mdb"}) {
        const fs::path basin = folder_.write(name, "a basin");
        for (const PrintTarget target : {PrintTarget::Text, PrintTarget::Pdf}) {
            printers_.then(target);
            dialogs_.then_file(basin).then(Answer::Yes);
            EXPECT_FALSE(print());
            EXPECT_THAT(told().text, HasSubstr("is the basin that is open"));
            EXPECT_EQ(content(basin), "a basin");
        }
    }
}

TEST_F(PrintToFileTest, AFolderThatIsNotThereIsToldWithItsName) {
    for (const PrintTarget target : {PrintTarget::Text, PrintTarget::Pdf}) {
        printers_.then(target);
        dialogs_.then_file(folder_ / "missing" / (target == PrintTarget::Text ? "a.txt" : "a.pdf"));
        const std::size_t before = messages();
        EXPECT_FALSE(print());
        ASSERT_EQ(messages(), before + 1);
        EXPECT_THAT(told().text, HasSubstr("missing"));
        EXPECT_FALSE(fs::exists(folder_ / "missing"));
    }
}

TEST_F(PrintToFileTest, AnOlderFileStaysWhereTheNewOneCannotBeWritten) {
    for (const PrintTarget target : {PrintTarget::Text, PrintTarget::Pdf}) {
        const fs::path file = folder_.write(target == PrintTarget::Text ? "a.txt" : "a.pdf", "older");
        fs::permissions(file, fs::perms::owner_read);
        printers_.then(target);
        dialogs_.then_file(file).then(Answer::Yes);
        const std::size_t before = messages();
        EXPECT_FALSE(print());
        EXPECT_EQ(messages(), before + 2) << "the question about the older file, then the refusal";
        EXPECT_EQ(content(file), "older");
    }
}

TEST_F(PrintToFileTest, MarginsThatAreTooWideLeaveNoPdf) {
    session_.settings.page.margins = {4.0F, 1.0F, 4.0F, 1.0F};
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "a.pdf");
    EXPECT_FALSE(print());
    EXPECT_EQ(told().title, "Nivora margin definition error");
    EXPECT_FALSE(fs::exists(folder_ / "a.pdf"));
}

TEST_F(PrintToFileTest, AQuestionThatIsAnsweredWithNoLeavesNoPdf) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "a.pdf").then(Answer::No);
    EXPECT_FALSE(print({.question = Message{.text = "many", .buttons = Buttons::YesNo}}));
    EXPECT_EQ(messages(), 1U);
    EXPECT_FALSE(fs::exists(folder_ / "a.pdf"));
}

}  // namespace
}  // namespace nivora
