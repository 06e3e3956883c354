// Prints into PDF and text files.
#include "base/durable_file.h"
#include "reports/report_pages.h"
#include "reports/text_pages.h"
#include "tests/support/full_disk.h"
#include "tests/widgets/printing_fixture.h"

#include <array>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

/// Prints into files.
class PrintToFileTest : public PrintingTest {
protected:
    /// A page of a PDF file, points.
    struct FoundPage {
        double width = 0.0, height = 0.0;
        double left = 0.0, top = 0.0;  ///< of its first word
    };

    /// The first page, as a PDF reader finds it.
    static FoundPage first_page(const fs::path& file) {
        const std::string command = "pdftotext -bbox '" + file.string() + "' -";
        std::FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr) throw std::runtime_error("cannot start " + command);
        std::array<char, 4096> text{};
        static_cast<void>(std::fread(text.data(), 1, text.size() - 1, pipe));
        FoundPage page;
        const char* found = std::strstr(text.data(), "<page ");
        const bool whole =
            ::pclose(pipe) == 0 && found != nullptr &&
            std::sscanf(found, "<page width=\"%lf\" height=\"%lf\"> <word xMin=\"%lf\" yMin=\"%lf\"",
                        &page.width, &page.height, &page.left, &page.top) == 4;
        if (!whole) throw std::runtime_error("no page with a word was found by " + command);
        return page;
    }
};

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
    EXPECT_EQ(file_bytes(folder_ / "out.txt"),
              "Header\r\n\r\n"
              "Date        Runoff\r\n"
              "----------  ------\r\n"
              "10/01/1980    1.00\r\n"
              "10/02/1980    2.00\r\n");
    EXPECT_TRUE(printers_.jobs().empty());
}

TEST_F(PrintToFileTest, AReportInATextFileHasNoMarks) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "out.txt");
    ASSERT_TRUE(printing_.print_report(&window_, {.text = "a\r\n\f\r\nb\r\n\x01\r\n"}));
    EXPECT_EQ(file_bytes(folder_ / "out.txt"), "a\r\n\r\nb\r\n\r\n");
}

TEST_F(PrintToFileTest, AHelpTextKeepsItsParagraphsAndItsLastLineEnds) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "out.txt");
    ASSERT_TRUE(printing_.print_text(&window_, {.text = "a\n\nb", .title = "T"}));
    EXPECT_EQ(file_bytes(folder_ / "out.txt"), "a\r\n\r\nb\r\n");
}

TEST_F(PrintToFileTest, ATextThatEndsWithALineGetsNoFurtherOne) {
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "out.txt");
    ASSERT_TRUE(printing_.print_text(&window_, {.text = "a\n", .title = "T"}));
    EXPECT_EQ(file_bytes(folder_ / "out.txt"), "a\r\n");
}

TEST_F(PrintToFileTest, AReportOf50000LinesIsWrittenToTheLast) {
    const std::string text = numbered_lines(50'000);
    printers_.then(PrintTarget::Text).then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "out.txt").then_file(folder_ / "out.pdf");
    ASSERT_TRUE(print_report(text));
    EXPECT_EQ(file_bytes(folder_ / "out.txt"), text);
    ASSERT_TRUE(print_report(text));
    EXPECT_THAT(file_bytes(folder_ / "out.pdf"), testing::EndsWith("%%EOF\n"));
}

TEST_F(PrintToFileTest, ABasinWhoseNameIsInCapitalsProposesTheEndingOfThePrint) {
    session_.basin.Basin_File = folder_ / "ALDER.MDB";
    printers_.then(PrintTarget::Text).then(PrintTarget::Pdf);
    dialogs_.then_file(std::nullopt).then_file(std::nullopt);
    EXPECT_FALSE(print({.name_suffix = "_Results"}));
    EXPECT_FALSE(print());
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "ALDER_Results.txt");
    EXPECT_EQ(dialogs_.files()[1].proposed_name, "ALDER.pdf");
}

TEST_F(PrintToFileTest, APdfIsAskedForAndWritten) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "out");
    ASSERT_TRUE(print({.name_suffix = "_Results"}));
    EXPECT_EQ(dialogs_.files()[0].title, "Save as a PDF(.pdf) file");
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "alder_Results.pdf");
    EXPECT_THAT(file_bytes(folder_ / "out.pdf"), StartsWith("%PDF-"));
}

TEST_F(PrintToFileTest, APdfHasPaperOrientationAndMarginsOfThePageSetup) {
    // Letter on its side is 792 x 612 points.
    session_.settings.page.paper = "Letter";
    session_.settings.page.orientation = 2;
    session_.settings.page.margins = {1.5F, 0.75F, 0.5F, 0.5F};
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "out.pdf");
    ASSERT_TRUE(print_report("first\r\n"));
    const FoundPage page = first_page(folder_ / "out.pdf");
    EXPECT_NEAR(page.width, 792.0, 0.5);
    EXPECT_NEAR(page.height, 612.0, 0.5);
    EXPECT_NEAR(page.left, 1.5 * 72, 0.5);
    // The box of a letter reaches over its line by a little.
    EXPECT_NEAR(page.top, 0.75 * 72, 2.5);
}

TEST_F(PrintToFileTest, TheEndingOfTheNameDecidesWhatIsWritten) {
    printers_.then(PrintTarget::Text).then(PrintTarget::Pdf).then(PrintTarget::Pdf).then(PrintTarget::Text);
    for (const char* name : {"a.PDF", "b.txt", "c.prn", "d.prn"}) {
        dialogs_.then_file(folder_ / name);
        ASSERT_TRUE(print());
    }
    EXPECT_THAT(file_bytes(folder_ / "a.PDF"), StartsWith("%PDF-"));
    EXPECT_THAT(file_bytes(folder_ / "b.txt"), StartsWith("Header"));
    EXPECT_THAT(file_bytes(folder_ / "c.prn"), StartsWith("%PDF-"));
    EXPECT_THAT(file_bytes(folder_ / "d.prn"), StartsWith("Header"));
}

TEST_F(PrintToFileTest, TheOpenBasinIsNeverReplaced) {
    for (const char* name : {"alder.mdb", "new.mdb"}) {
        const fs::path basin = folder_.write(name, "a basin");
        for (const PrintTarget target : {PrintTarget::Text, PrintTarget::Pdf}) {
            printers_.then(target);
            dialogs_.then_file(basin).then(Answer::Yes);
            EXPECT_FALSE(print());
            EXPECT_THAT(told().text, HasSubstr("is the basin that is open"));
            EXPECT_EQ(file_bytes(basin), "a basin");
        }
    }
}

TEST_F(PrintToFileTest, TheFilesOfTheProgramAreNeverReplaced) {
    session_.basin.App_Path = folder_.path();
    folder_.write("recovery.state", "unsaved");
    fs::create_symlink(folder_ / "recovery.state", folder_ / "link.txt");
    const std::string end = "' belongs to Nivora itself.  Choose another name for the print.";
    for (const char* name : {"recovery.state", "link.txt"}) {
        for (const PrintTarget target : {PrintTarget::Text, PrintTarget::Pdf}) {
            printers_.then(target);
            dialogs_.then_file(folder_ / name).then(Answer::Yes);
            EXPECT_FALSE(print());
            EXPECT_EQ(told().text, "The file '" + path_text(folder_ / name) + end);
            EXPECT_EQ(file_bytes(folder_ / "recovery.state"), "unsaved");
        }
    }
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(folder_ / "null.mdb");
    EXPECT_FALSE(print());
    EXPECT_FALSE(fs::exists(folder_ / "null.mdb")) << "nor is one made where it is missing";
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
        EXPECT_EQ(file_bytes(file), "older");
    }
}

/// What is refused or asked before a file is named, for both kinds of file.
class PrintToFileRefusalTest : public PrintingTest, public testing::WithParamInterface<PrintTarget> {
protected:
    PrintToFileRefusalTest() { printers_.then(GetParam()); }
    void TearDown() override {
        EXPECT_THAT(folder_.entries(), testing::IsEmpty());
        PrintingTest::TearDown();
    }
};
INSTANTIATE_TEST_SUITE_P(Files, PrintToFileRefusalTest, testing::Values(PrintTarget::Pdf, PrintTarget::Text),
                         [](const auto& target) {
                             return target.param == PrintTarget::Pdf ? "Pdf" : "Text";
                         });

TEST_P(PrintToFileRefusalTest, MarginsThatAreTooWideAreToldBeforeANameIsAsked) {
    session_.settings.page.margins = {4.0F, 1.0F, 4.0F, 1.0F};
    window_.setObjectName(QStringLiteral("frmFileDisp"));
    EXPECT_FALSE(print_report("a report\r\n"));
    EXPECT_EQ(told().text,
              "Nivora reports are too wide for the current horizontal margin definition.\n"
              "Click Print/Page Setup to change your margin definition.");
    EXPECT_EQ(told().title, "Nivora margin definition error");
    EXPECT_EQ(messages(), 1U);
    EXPECT_TRUE(dialogs_.files().empty());
}

TEST_P(PrintToFileRefusalTest, APageOfFewerThanFortyLinesIsToldBeforeANameIsAsked) {
    leave_four_lines();
    EXPECT_FALSE(print());
    EXPECT_THAT(told().text, StartsWith("The Nivora recommended minimum page height is 40 lines."));
    EXPECT_THAT(told().text, HasSubstr("\nClick File/Page Setup on the main window menu"));
    EXPECT_TRUE(dialogs_.files().empty());
}

TEST_P(PrintToFileRefusalTest, MarginsThatEatThePageAreTold) {
    session_.settings.page.margins = {1.0F, 50.0F, 1.0F, 50.0F};
    EXPECT_FALSE(print());
    EXPECT_THAT(told().text, HasSubstr("results in a 0 line page."));
}

TEST_P(PrintToFileRefusalTest, AMarginThatIsNoLengthIsTold) {
    session_.settings.page.margins[0] = -1.0F;
    EXPECT_FALSE(print());
    EXPECT_EQ(told().text, "Unable to set the printer margin");
}

TEST_P(PrintToFileRefusalTest, ALargePrintIsAskedAboutAndNoEndsIt) {
    dialogs_.then(Answer::No);
    EXPECT_FALSE(print({.question = Message{.text = "many", .buttons = Buttons::YesNo}}));
    EXPECT_EQ(messages(), 1U);
    EXPECT_TRUE(dialogs_.files().empty());
}

TEST_P(PrintToFileRefusalTest, ALargePrintIsWrittenAfterYes) {
    const fs::path file = folder_ / (GetParam() == PrintTarget::Pdf ? "a.pdf" : "a.txt");
    dialogs_.then(Answer::Yes).then_file(file);
    EXPECT_TRUE(print({.question = Message{.text = "many", .buttons = Buttons::YesNo}}));
    EXPECT_TRUE(fs::remove(file));
}

/// Files that cannot be written, of both kinds.
class PrintFaultTest : public PrintingTest, public testing::WithParamInterface<PrintTarget> {
protected:
    PrintFaultTest() { printers_.then(GetParam()); }

    [[nodiscard]] std::string name() const { return GetParam() == PrintTarget::Pdf ? "a.pdf" : "a.txt"; }
    void expect_told(const std::string& reason) const {
        EXPECT_THAT(told().text, testing::AllOf(HasSubstr(name()), HasSubstr(reason)));
        EXPECT_EQ(told().title, "Print");
        EXPECT_EQ(told().icon, Icon::Stop);
    }
};
INSTANTIATE_TEST_SUITE_P(Files, PrintFaultTest, testing::Values(PrintTarget::Pdf, PrintTarget::Text),
                         [](const auto& target) {
                             return target.param == PrintTarget::Pdf ? "Pdf" : "Text";
                         });

TEST_P(PrintFaultTest, AFullDiskLeavesTheOlderFileWhole) {
    const fs::path file = folder_.write(name(), "older");
    dialogs_.then_file(file).then(Answer::Yes);
    fill_rows(300);
    {
        const FullDisk disk{100};
        EXPECT_FALSE(print());
    }
    expect_told("the disk may be full");
    EXPECT_EQ(file_bytes(file), "older");
    EXPECT_THAT(folder_.entries(), ElementsAre(name())) << "nothing is left beside it";
}

TEST_P(PrintFaultTest, AFullDiskLeavesNoPartOfANewFile) {
    dialogs_.then_file(folder_ / name());
    fill_rows(300);
    {
        const FullDisk disk{100};
        EXPECT_FALSE(print());
    }
    expect_told("the disk may be full");
    EXPECT_THAT(folder_.entries(), testing::IsEmpty());
}

TEST_P(PrintFaultTest, ADeviceIsNotReplaced) {
    fs::create_symlink("/dev/full", folder_ / name());
    dialogs_.then_file(folder_ / name()).then(Answer::Yes);
    EXPECT_FALSE(print());
    expect_told("it is not a regular file");
    EXPECT_TRUE(fs::is_character_file("/dev/full"));
    EXPECT_TRUE(fs::is_symlink(folder_ / name()));
}

TEST_P(PrintFaultTest, AFolderInWhichNothingCanBeWrittenIsTold) {
    dialogs_.then_file(fs::path{"/proc"} / name());
    EXPECT_FALSE(print());
    expect_told("its folder can't be written to, or does not exist");
}

TEST_P(PrintFaultTest, AFileThatAnotherProgramReadsIsReplacedAndTheReaderKeepsTheOlderOne) {
    const fs::path file = folder_.write(name(), "older");
    std::ifstream reader{file, std::ios::binary};
    dialogs_.then_file(file).then(Answer::Yes);
    EXPECT_TRUE(print());
    EXPECT_THAT(file_bytes(file), StartsWith(GetParam() == PrintTarget::Pdf ? "%PDF-" : "Header"));
    std::string read;
    reader >> read;
    EXPECT_EQ(read, "older");
}

}  // namespace
}  // namespace nivora
