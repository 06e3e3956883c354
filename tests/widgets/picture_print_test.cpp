// Prints of a plot, on a printer and into a PDF file.
#include "paint/plot_print.h"
#include "tests/support/full_disk.h"
#include "tests/widgets/printing_fixture.h"

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

class PicturePrintTest : public PrintingTest {
protected:
    PicturePrintTest() {
        window_.setObjectName(QStringLiteral("frmNVRPlot"));
        session_.settings.page.paper = "Letter";
        session_.settings.page.margins = {1.0F, 1.5F, 1.0F, 0.5F};
        plot_.head.title = "Runoff";
        plot_.head.subtitle = "alder.mdb (wy2002)";
        plot_.frame = {37165.0F, 37195.0F, 0.0F, 30.0F, 1.0F, std::nullopt};
        PlotCurve& curve = plot_.curves.emplace_back();
        curve.name = "Zone A";
        curve.points = {{37165.0F, 0.0F}, {37195.0F, 30.0F}};
        plot_.legend = {{.text = "Zone A", .line = 1, .curve = 0}};
    }

    bool print_plot_of(double width, double height) {
        const SurfaceSize size{width, height};
        return printing_.print_picture(
            &window_,
            {.plot = plot_, .options = with_panels(plot_, {.now = 46000.0}, size, false), .size = size});
    }
    bool print_small() { return print_plot_of(600.0, 400.0); }
    bool print_large() { return print_plot_of(1248.0, 700.0); }

    /// The text of the last job, which must be there.
    [[nodiscard]] RecordedText printed(const std::string& text) const {
        for (const RecordedText& found : printers_.jobs().back().pages.at(0)) {
            if (found.text == text) return found;
        }
        ADD_FAILURE() << "not printed: " << text;
        return {};
    }

    Plot plot_;
};

TEST_F(PicturePrintTest, APlotGoesToThePrinterAsOnePageWithItsLegend) {
    EXPECT_TRUE(print_small());
    ASSERT_EQ(printers_.jobs().size(), 1U);
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 1U);
    const std::string page = printers_.jobs()[0].page(0);
    for (const char* text : {"Runoff\n", "alder.mdb (wy2002)\n", "Zone A\n"})
        EXPECT_THAT(page, HasSubstr(text));
    EXPECT_EQ(printers_.window(), &window_);
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(session_.settings.page.printer, "Laser");
}

TEST_F(PicturePrintTest, TheDialogOffersNoTextFile) {
    printers_.then(std::nullopt);
    EXPECT_FALSE(print_small());
    EXPECT_FALSE(printers_.text_offered());
    EXPECT_TRUE(printers_.jobs().empty());
    printers_.then(std::nullopt);
    EXPECT_FALSE(print());
    EXPECT_TRUE(printers_.text_offered()) << "a grid can be text";
}

// 600 points are 6.25 inches, which the margins of 1 inch leave on paper of 8.5: from 72 to 522 points of
// 1/72 inch.
TEST_F(PicturePrintTest, ThePictureBeginsAtTheCornerBetweenTheMarginsInItsOwnSize) {
    ASSERT_TRUE(print_small());
    const RecordedText title = printed("Runoff");
    EXPECT_NEAR(title.x + title.width / 2.0, 72.0 + 450.0 / 2.0, 1.0) << "the title is centred";
    EXPECT_GT(title.y, 108.0);
    EXPECT_LT(title.y, 108.0 + 30.0);
    for (const RecordedText& text : printers_.jobs()[0].pages[0]) {
        EXPECT_GE(text.x, 72.0) << text.text;
        EXPECT_LE(text.x + text.width, 522.5) << text.text;
        EXPECT_LE(text.y, 108.0 + 300.0) << text.text;
    }
}

TEST_F(PicturePrintTest, APictureThatIsTooLargeIsCompressedAfterOk) {
    dialogs_.then(Answer::Ok);
    EXPECT_TRUE(print_large());
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(told().title, "Nivora graphics print overflow");
    EXPECT_THAT(told().text, StartsWith("The image is too large to fit on the current printer page-area."));
    const RecordedText title = printed("Runoff");
    EXPECT_NEAR(title.x + title.width / 2.0, 72.0 + 468.0 / 2.0, 1.0) << "centred over the whole room";
    // The lowest text stands near the lower margin: the room ends at 756 points.
    double lowest = 0.0;
    for (const RecordedText& text : printers_.jobs()[0].pages[0]) lowest = std::max(lowest, text.y);
    EXPECT_GT(lowest, 700.0);
    EXPECT_LE(lowest, 756.0);
}

TEST_F(PicturePrintTest, CancelOfTheQuestionPrintsNothing) {
    dialogs_.then(Answer::Cancel);
    EXPECT_FALSE(print_large());
    EXPECT_EQ(messages(), 1U);
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
}

TEST_F(PicturePrintTest, LandscapeMakesRoomForAWidePicture) {
    session_.settings.page.orientation = 2;
    EXPECT_TRUE(print_plot_of(800.0, 400.0));
    EXPECT_EQ(messages(), 0U);
    EXPECT_NEAR(printers_.jobs()[0].paper_width, 792.0, 0.5);
}

// Such margins have no room for the lines of a report, but for a picture.
TEST_F(PicturePrintTest, APageThatIsTooSmallForReportsTakesAPicture) {
    leave_four_lines();
    session_.settings.page.margins[3] = 4.5F;
    dialogs_.then(Answer::Ok);
    EXPECT_TRUE(print_small());
    EXPECT_EQ(messages(), 1U) << "the question about its size alone";
}

TEST_F(PicturePrintTest, MarginsThatEatThePageAreToldOnAPrinterAndForAFile) {
    session_.settings.page.margins = {5.0F, 1.0F, 5.0F, 1.0F};
    printers_.then(PrintTarget::Printer).then(PrintTarget::Pdf);
    for (const std::size_t told_before : {0U, 1U}) {
        EXPECT_FALSE(print_small());
        ASSERT_EQ(messages(), told_before + 1) << "nothing else is asked";
        EXPECT_EQ(told().text,
                  "The margins leave no room for a plot on the page.\n"
                  "Click File/Page Setup on the main window menu to change your margin definition.");
        EXPECT_EQ(told().title, "Nivora margin definition error");
    }
    EXPECT_TRUE(dialogs_.files().empty());
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
}

TEST_F(PicturePrintTest, SettingsThatThePrinterRefusesAreTold) {
    printers_.refused.orientation = true;
    EXPECT_FALSE(print_small());
    EXPECT_EQ(told().text, "Unable to set the printer page orientation ");
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
}

TEST_F(PicturePrintTest, FaultsOfThePrinterAreToldAsInAllPrints) {
    printers_.sheets = 0;
    EXPECT_FALSE(print_small());
    EXPECT_EQ(told().text, " Printer not ready, error=5 - request ignored ");
    printers_.sheets = 1;
    printers_.jams = true;
    EXPECT_FALSE(print_small());
    EXPECT_EQ(told().title, "Printout subroutine error trap");
    printers_.vanished = true;
    EXPECT_FALSE(print_small());
    EXPECT_EQ(told().text,
              "The printer \"Laser\" is not available.  Choose another printer, or print into a file.");
}

TEST_F(PicturePrintTest, APdfIsProposedUnderTheBasinsNameAndWritten) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "out");
    EXPECT_TRUE(print_small());
    EXPECT_EQ(dialogs_.files()[0].title, "Save as a PDF(.pdf) file");
    EXPECT_EQ(dialogs_.files()[0].proposed_name, "alder_Plot.pdf");
    EXPECT_THAT(file_bytes(folder_ / "out.pdf"), StartsWith("%PDF-"));
    EXPECT_TRUE(printers_.jobs().empty());
}

TEST_F(PicturePrintTest, TheQuestionComesBeforeTheNameOfAFile) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then(Answer::Cancel);
    EXPECT_FALSE(print_large());
    EXPECT_TRUE(dialogs_.files().empty());
    printers_.then(PrintTarget::Pdf);
    dialogs_.then(Answer::Ok).then_file(folder_ / "out");
    EXPECT_TRUE(print_large());
    EXPECT_TRUE(fs::exists(folder_ / "out.pdf"));
}

TEST_F(PicturePrintTest, TheOpenBasinIsNotReplacedByAPicture) {
    folder_.write("alder.mdb", "a basin");
    folder_.write("new.mdb", "a basin");
    fs::create_symlink(folder_ / "alder.mdb", folder_ / "link.pdf");
    for (const char* name : {"alder.mdb", "new.mdb", "link.pdf"}) {
        printers_.then(PrintTarget::Pdf);
        dialogs_.then_file(folder_ / name).then(Answer::Yes);
        EXPECT_FALSE(print_small());
        EXPECT_THAT(told().text, HasSubstr("is the basin that is open.  Choose another name for the print."));
        EXPECT_EQ(file_bytes(folder_ / name), "a basin");
    }
    EXPECT_TRUE(fs::is_symlink(folder_ / "link.pdf"));
}

TEST_F(PicturePrintTest, AFullDiskLeavesTheOlderPdfWhole) {
    const fs::path file = folder_.write("a.pdf", "older");
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(file).then(Answer::Yes);
    {
        const FullDisk disk{100};
        EXPECT_FALSE(print_small());
    }
    EXPECT_THAT(told().text, HasSubstr("the disk may be full"));
    EXPECT_EQ(told().title, "Print");
    EXPECT_EQ(file_bytes(file), "older");
    EXPECT_THAT(folder_.entries(), testing::ElementsAre("a.pdf"));
}

TEST_F(PicturePrintTest, ACancelledNameWritesNothing) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(std::nullopt);
    EXPECT_FALSE(print_small());
    EXPECT_EQ(messages(), 0U);
    EXPECT_THAT(folder_.entries(), testing::IsEmpty());
}

}  // namespace
}  // namespace nivora
