// The place of a plot on a page, and its print into a PDF file.
#include "paint/plot_print.h"

#include "paint/image_surface.h"
#include "paint/plot_picture.h"
#include "tests/paint/paint_fixture.h"
#include "tests/support/picture_likeness.h"

#include <QImage>
#include <cmath>

namespace nivora {
namespace {

using testing::HasSubstr;

// 8 x 11 inches with margins of 1 inch left and right, 1.5 and 0.5 at the top and the bottom: 6 x 9 inches of
// room, 576 x 864 points of 1/96 inch.
constexpr PageMetrics k_page{
    .paper_width = 11520, .paper_height = 15840, .left = 1440, .top = 2160, .right = 1440, .bottom = 720};

/// A curve that rises from the lower left to the upper right corner of the frame.
Plot rising() {
    Plot plot;
    plot.head.title = "Rising";
    plot.head.subtitle = "/basins/alder.mdb (wy2002)";
    plot.y_label = " (cm)";
    plot.frame = {37165.0F, 37195.0F, 0.0F, 30.0F, 1.0F, std::nullopt};
    PlotCurve& curve = plot.curves.emplace_back();
    curve.name = "Zone A";
    for (int day = 0; day <= 30; ++day)
        curve.points.push_back({37165.0F + static_cast<float>(day), static_cast<float>(day)});
    plot.legend = {{.text = "Zone A", .line = 1, .curve = 0}};
    plot.summary = {{.caption = "Volume", .value = "12"}, {.caption = "R2", .value = "0.9"}};
    return plot;
}

TEST(PlotPlace, OfAPlotThatFitsIsTheCornerBetweenTheMarginsInItsOwnSize) {
    for (const SurfaceSize size : {SurfaceSize{576.0, 864.0}, {100.0, 50.0}}) {
        EXPECT_FALSE(plot_overflow_question(k_page, size));
        const PlotPlace place = plot_place(k_page, size);
        EXPECT_EQ(place.left, 1440.0);
        EXPECT_EQ(place.top, 2160.0);
        EXPECT_EQ(place.scale, 1.0);
        EXPECT_EQ(place.surface.width, size.width);
        EXPECT_EQ(place.surface.height, size.height);
    }
}

// 1152 points are twice the width of the room: every letter is half as large, and the room has 1152 x 1728 of
// these smaller points.
TEST(PlotPlace, OfAPlotThatIsTooWideIsTheWholeRoomWithoutDistortion) {
    const SurfaceSize size{1152.0, 500.0};
    EXPECT_TRUE(plot_overflow_question(k_page, size));
    const PlotPlace place = plot_place(k_page, size);
    EXPECT_EQ(place.left, 1440.0);
    EXPECT_EQ(place.top, 2160.0);
    EXPECT_DOUBLE_EQ(place.scale, 0.5);
    EXPECT_DOUBLE_EQ(place.surface.width, 1152.0);
    EXPECT_DOUBLE_EQ(place.surface.height, 1728.0);
}

TEST(PlotPlace, OfAPlotThatIsTooWideAndTooHighTakesTheStrongerCompression) {
    // 864/3456 = 0.25 of the height, 576/1152 = 0.5 of the width.
    const PlotPlace place = plot_place(k_page, {1152.0, 3456.0});
    EXPECT_DOUBLE_EQ(place.scale, 0.25);
    EXPECT_DOUBLE_EQ(place.surface.width, 2304.0);
    EXPECT_DOUBLE_EQ(place.surface.height, 3456.0);
}

TEST(PlotOverflow, IsAskedAboutOnePointBeyondTheRoom) {
    EXPECT_FALSE(plot_overflow_question(k_page, {576.0, 864.0}));
    EXPECT_TRUE(plot_overflow_question(k_page, {577.0, 10.0}));
    const auto question = plot_overflow_question(k_page, {10.0, 865.0});
    ASSERT_TRUE(question);
    EXPECT_EQ(question->title, "Nivora graphics print overflow");
    EXPECT_EQ(question->buttons, Buttons::OkCancel);
    EXPECT_EQ(question->text,
              "The image is too large to fit on the current printer page-area.  The plot will be compressed "
              "to fit the available area \n"
              "defined by the printer's margins.  To avoid automatic compression, reduce the size of your "
              "plot window by 'resizing' it or\n"
              "enlarge the printable area by reducing the size of your printer's page margins (File/Page "
              "Setup on the main window).\n\n"
              "Click 'OK' to produce a compressed image.");
}

TEST(PlotPage, NeedsAnInchBetweenTheMargins) {
    EXPECT_FALSE(plot_page_refusal(k_page));
    PageMetrics page = k_page;
    page.right = 11520 - 1440 - 1440;
    EXPECT_FALSE(plot_page_refusal(page));
    ++page.right;
    const auto refusal = plot_page_refusal(page);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->text,
              "The margins leave no room for a plot on the page.\n"
              "Click File/Page Setup on the main window menu to change your margin definition.");
    EXPECT_EQ(refusal->title, "Nivora margin definition error");
    page = k_page;
    page.bottom = 20000;
    EXPECT_TRUE(plot_page_refusal(page));
}

/// On Letter, with the margins of k_page.
class PlotPrintTest : public PaintTest {
protected:
    PlotPrintTest() {
        setup_.paper = "Letter";
        setup_.margins = {1.0F, 1.5F, 1.0F, 0.5F};
    }

    /// Prints into the PDF file of the test.
    [[nodiscard]] std::optional<Message> print(SurfaceSize size, bool summary) const {
        const Plot plot = rising();
        return write_plot_pdf(file_, setup_,
                              {.plot = plot, .options = with_panels(plot, {}, size, summary), .size = size});
    }
    /// The one page of the file in pixels of 1/96 inch.
    [[nodiscard]] QImage page() const {
        output_of("pdftoppm -r 96 -png -singlefile " + quoted() + " " + quoted());
        QImage image(QString::fromStdString(file_.string() + ".png"));
        EXPECT_FALSE(image.isNull());
        return image;
    }
    /// What the surface of a place shows, on a picture of its own.
    static QImage picture(const DrawOptions& options, SurfaceSize surface) {
        return plot_image(rising(), options,
                          {static_cast<int>(std::lround(surface.width)),
                           static_cast<int>(std::lround(surface.height)), 96.0});
    }
};

TEST_F(PlotPrintTest, APlotThatFitsStandsOnThePageAsInItsWindow) {
    const SurfaceSize size{600.0, 400.0};
    ASSERT_FALSE(print(size, true));
    // Letter is 816 x 1056 points of 1/96 inch, with 96 to the left and 144 above.
    const QImage printed = page();
    EXPECT_NEAR(printed.width(), 816, 1);
    EXPECT_NEAR(printed.height(), 1056, 1);
    const QImage shown = picture(with_panels(rising(), {}, size, true), size);
    const QImage part = printed.copy(96, 144, 600, 400);
    EXPECT_GT(found_in(shown, part), 0.99);
    EXPECT_GT(found_in(part, shown), 0.99);
    // Nothing stands beside it.
    EXPECT_EQ(found_in(printed.copy(0, 0, 816, 143), printed), 0.0);
    EXPECT_EQ(found_in(printed.copy(0, 546, 816, 500), printed), 0.0);
}

TEST_F(PlotPrintTest, TextsOfThePageAreTexts) {
    ASSERT_FALSE(print({600.0, 400.0}, true));
    const std::string text = output_of("pdftotext -layout " + quoted() + " -");
    for (const char* part : {"Rising", "/basins/alder.mdb (wy2002)", "Zone A", "Volume", "R2"})
        EXPECT_THAT(text, HasSubstr(part));
    EXPECT_EQ(info("Title"), "Rising");
    EXPECT_EQ(page_count(), 1U);
}

TEST_F(PlotPrintTest, TheSummaryIsPaintedOnlyWhereItIsShown) {
    ASSERT_FALSE(print({600.0, 400.0}, false));
    const std::string text = output_of("pdftotext -layout " + quoted() + " -");
    EXPECT_THAT(text, HasSubstr("Zone A"));
    EXPECT_THAT(text, testing::Not(HasSubstr("Volume")));
}

// The room is 6.5 x 9 inches: 624 x 864 points. The frame has the same share of every surface, so that the
// curve ends where the frame does: at 1.1/1.2 of the width and 0.125/1.2 of the height.
TEST_F(PlotPrintTest, ACompressedPlotFillsTheRoom) {
    ASSERT_FALSE(print({1248.0, 700.0}, false));
    const QImage printed = page();
    const auto dark_near = [&](double x, double y) {
        const QImage part =
            printed.copy(96 + static_cast<int>(624.0 * x) - 3, 144 + static_cast<int>(864.0 * y) - 3, 7, 7);
        return found_in(part, part) > 0.0;
    };
    EXPECT_TRUE(dark_near(0.1 / 1.2, 1.125 / 1.2));
    EXPECT_TRUE(dark_near(0.6 / 1.2, 0.625 / 1.2));
    EXPECT_TRUE(dark_near(1.1 / 1.2, 0.125 / 1.2));
    EXPECT_TRUE(dark_near(1.1 / 1.2, 1.125 / 1.2)) << "the lower right corner of the frame";
    EXPECT_FALSE(dark_near(0.3 / 1.2, 0.225 / 1.2));
    for (const FoundWord& word : words()) {
        EXPECT_GE(word.left, 72.0 - 0.1) << word.text;
        EXPECT_LE(word.right, 540.0 + 0.1) << word.text;
    }
}

// 1248 points are twice the width of the room. The other paper has room for the plot in its own size.
TEST_F(PlotPrintTest, LettersOfACompressedPlotAreSmallerAndNotDistorted) {
    const auto of_title = [&] {
        const auto found = words();
        const auto title =
            std::ranges::find_if(found, [](const FoundWord& word) { return word.text == "Rising"; });
        EXPECT_NE(title, found.end());
        return title == found.end() ? FoundWord{} : *title;
    };
    ASSERT_FALSE(print({1248.0, 700.0}, false));
    const FoundWord small = of_title();
    setup_.paper = "600x600";
    ASSERT_FALSE(print({1248.0, 700.0}, false));
    const FoundWord large = of_title();
    EXPECT_NEAR((small.right - small.left) * 2.0, large.right - large.left, 0.2);
    EXPECT_NEAR((small.bottom - small.top) * 2.0, large.bottom - large.top, 0.2);
}

// The corner of the room is 7.5 inches from the left and 10.5 from the top: 540 and 756 points.
TEST_F(PlotPrintTest, ALegendInACornerStaysThereInACompressedPlot) {
    const Plot plot = rising();
    const SurfaceSize size{1248.0, 700.0};
    for (const bool lower_right : {false, true}) {
        DrawOptions options;
        options.legend_place = lower_right ? SurfacePoint{9000.0, 9000.0} : SurfacePoint{0.0, 0.0};
        ASSERT_FALSE(write_plot_pdf(
            file_, setup_, {.plot = plot, .options = with_panels(plot, options, size, false), .size = size}));
        const auto found = words();
        const auto letter =
            std::ranges::find_if(found, [](const FoundWord& word) { return word.text == "A"; });
        ASSERT_NE(letter, found.end());
        EXPECT_NEAR(letter->right, lower_right ? 540.0 : 72.0, lower_right ? 8.0 : 60.0);
        EXPECT_NEAR(letter->bottom, lower_right ? 756.0 : 108.0, 12.0);
    }
}

/// The shares of the room left of a panel and above it.
std::pair<double, double> shares(const SurfaceRectangle& panel, SurfaceSize surface) {
    return {panel.left / (surface.width - panel.width), panel.top / (surface.height - panel.height)};
}

TEST_F(PlotPrintTest, PanelsStandWhereTheyStandInTheWindow) {
    const SurfaceSize size{600.0, 400.0};
    QImage image(600, 400, QImage::Format_RGB32);
    QPainter painter(&image);
    const PaintedSurface surface{painter, size};
    const Plot plot = rising();
    DrawOptions options;
    const SurfaceRectangle legend = legend_rectangle(surface, plot, options);
    const DrawOptions chosen = with_panels(plot, options, size, true);
    EXPECT_TRUE(chosen.legend);
    EXPECT_TRUE(chosen.summary);
    ASSERT_TRUE(chosen.legend_place);
    EXPECT_DOUBLE_EQ(chosen.legend_place->x, legend.left);
    EXPECT_DOUBLE_EQ(chosen.legend_place->y, legend.top);

    options.legend_place = SurfacePoint{250.0, 130.0};
    options.summary_place = SurfacePoint{1000.0, 1000.0};
    const DrawOptions dragged = with_panels(plot, options, size, true);
    EXPECT_DOUBLE_EQ(dragged.legend_place->x, 250.0);
    EXPECT_DOUBLE_EQ(dragged.legend_place->y, 130.0);
    // A panel beyond the edge stands at the edge.
    EXPECT_NEAR(shares(summary_rectangle(surface, plot, dragged), size).first, 1.0, 1e-9);
    EXPECT_FALSE(with_panels(plot, options, size, false).summary);
}

TEST_F(PlotPrintTest, AFileThatMustStayIsNotReplacedThroughALink) {
    const Plot plot = rising();
    const SurfaceSize size{600.0, 400.0};
    const std::filesystem::path basin = folder_.write("alder.mdb", "a basin");
    std::filesystem::create_symlink(basin, file_);
    const auto refusal = write_plot_pdf(
        file_, setup_, {.plot = plot, .options = with_panels(plot, {}, size, false), .size = size}, {basin});
    ASSERT_TRUE(refusal);
    EXPECT_THAT(refusal->text, testing::HasSubstr("alder.mdb"));
    EXPECT_EQ(file_bytes(basin), "a basin");
    EXPECT_TRUE(std::filesystem::is_symlink(file_));
}

TEST_F(PlotPrintTest, APageSetupThatIsNoPageIsRefusedAndNothingIsWritten) {
    setup_.margins[0] = -1.0F;
    const auto refusal = print({600.0, 400.0}, true);
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->text, "Unable to set the printer margin");
    EXPECT_FALSE(std::filesystem::exists(file_));
}

}  // namespace
}  // namespace nivora
