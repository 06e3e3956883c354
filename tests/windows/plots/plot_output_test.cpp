// What leaves the plot window: six kinds of file, the clipboard, paper.
#include "windows/plots/plot_output.h"

#include "base/scripted_dialogs.h"
#include "tests/support/full_disk.h"
#include "tests/support/picture_likeness.h"
#include "tests/support/plot_basin.h"
#include "tests/support/recorded_printers.h"
#include "tests/support/temporary_folder.h"
#include "widgets/nivora_window.h"
#include "widgets/quick_help.h"
#include "windows/plots/plot_canvas.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>

namespace nivora {
namespace {

namespace fs = std::filesystem;
using testing::HasSubstr;
using testing::StartsWith;

/// The hydrographs of a year, as a window of 700 by 420 points shows them on a usual display.
class PlotOutputTest : public testing::Test {
protected:
    PlotOutputTest() {
        small_.write_results([](SimResults& results, std::size_t row, int, int day) {
            results.ActualQ[row] = static_cast<float>(30.0 - 25.0 * std::cos(day / 58.0));
            results.DailyQ[row] = 30.0 - 20.0 * std::cos(day / 58.0);
        });
        session_.basin = small_.basin;
        session_.run = small_.run;
        session_.file_names.begin_in(folder_.path());
        session_.settings.page.paper = "A4";
        session_.settings.page.orientation = 2;
        window_.setObjectName(QStringLiteral("frmNVRPlot"));
        BasinDatabase database = small_.file.open(Access::ReadOnly);
        screen_.pick(PlotNumber::Runoff, database, small_.sources());
        canvas_.resize(700, 420);
        canvas_.redraw();
    }
    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    [[nodiscard]] ShownPlot shown() const {
        return {.plot = *screen_.plot(),
                .options = canvas_.draw_options(),
                .size = canvas_.picture_size(),
                .summary = true};
    }
    [[nodiscard]] WindowContext context() { return {session_, quick_help_, folder_.path(), printing_}; }
    bool save() { return save_plot(context(), &window_, shown()).has_value(); }
    /// Saves with the filter at a position.
    bool save_as(std::size_t filter) {
        dialogs_.then_file(folder_ / "a", filter);
        return save();
    }
    bool print() { return print_plot(context(), &window_, shown()); }

    /// The window's picture with its panels, which are widgets of their own.
    QImage on_screen() { return canvas_.grab().toImage().convertToFormat(QImage::Format_RGB32); }
    [[nodiscard]] QImage saved_picture(const char* name) const {
        QImage image(QString::fromStdString((folder_ / name).string()));
        EXPECT_FALSE(image.isNull()) << name;
        return image.convertToFormat(QImage::Format_RGB32);
    }
    /// The part of a picture in which the run summary stands.
    [[nodiscard]] QRect summary_box() const {
        const auto* panel = canvas_.findChild<QWidget*>(QStringLiteral("Frame3"));
        EXPECT_TRUE(panel != nullptr && !panel->isHidden());
        return panel == nullptr ? QRect() : panel->geometry();
    }
    /// What a command prints; a command that fails ends the test.
    static std::string text_of(const std::string& command) {
        std::FILE* pipe = ::popen(command.c_str(), "r");
        if (pipe == nullptr) throw std::runtime_error("cannot start " + command);
        std::string output;
        std::array<char, 4096> block{};
        for (std::size_t count = 0; (count = std::fread(block.data(), 1, block.size(), pipe)) > 0;)
            output.append(block.data(), count);
        if (::pclose(pipe) != 0) throw std::runtime_error(command + " failed");
        return output;
    }
    /// The one page of a PDF file in pixels of 1/96 inch.
    [[nodiscard]] QImage page_of(const fs::path& file) const {
        const std::string name = (folder_ / "page").string();
        text_of("pdftoppm -r 96 -png -singlefile '" + file.string() + "' '" + name + "'");
        const QImage page = saved_picture("page.png");
        const char* kept = std::getenv("NIVORA_PICTURES");
        if (kept != nullptr)
            page.save(QString::fromStdString((fs::path{kept} / file.filename()).string() + ".png"));
        return page;
    }
    static void expect_alike(const QImage& one, const QImage& other) {
        EXPECT_GT(found_in(one, other), 0.99);
        EXPECT_GT(found_in(other, one), 0.99);
    }

    TemporaryFolder folder_;
    PlotBasin small_{1, 365};
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
    QuickHelp quick_help_;
    RecordedPrinters printers_;
    Printing printing_{session_, printers_};
    PlotScreen screen_;
    QWidget window_;
    PlotCanvas canvas_{screen_, session_.settings, &window_};
};

TEST_F(PlotOutputTest, ABitmapIsWhatTheWindowShowsWithTheLegendAndWithoutTheSummary) {
    ASSERT_TRUE(save_as(0));
    EXPECT_THAT(file_bytes(folder_ / "a.bmp"), StartsWith("BM"));
    const QImage saved = saved_picture("a.bmp");
    EXPECT_EQ(saved.size(), QSize(700, 420));
    const auto* legend = canvas_.findChild<QWidget*>(QStringLiteral("Frame2"));
    ASSERT_NE(legend, nullptr);
    const QRect legend_box = legend->geometry();
    expect_alike(saved.copy(legend_box), on_screen().copy(legend_box));
    EXPECT_EQ(saved.copy(summary_box()), plot_image(shown().plot, shown().options, shown().size)
                                             .convertToFormat(QImage::Format_RGB32)
                                             .copy(summary_box()))
        << "the plot alone";
}

TEST_F(PlotOutputTest, APngHasTheSummaryToo) {
    ASSERT_TRUE(save_as(3));
    const QImage saved = saved_picture("a.png");
    EXPECT_EQ(saved.size(), QSize(700, 420));
    expect_alike(saved, on_screen());
    expect_alike(saved.copy(summary_box()), on_screen().copy(summary_box()));
}

TEST_F(PlotOutputTest, ASummaryThatTheWindowDoesNotShowIsNotSaved) {
    ShownPlot plot = shown();
    plot.summary = false;
    dialogs_.then_file(folder_ / "a", 3);
    ASSERT_TRUE(save_plot(context(), &window_, plot));
    EXPECT_LT(found_in(on_screen().copy(summary_box()), saved_picture("a.png").copy(summary_box())), 0.7);
}

TEST_F(PlotOutputTest, AnSvgAndAPdfHoldTextsAndBothPanels) {
    ASSERT_TRUE(save_as(4));
    const std::string svg = file_bytes(folder_ / "a.svg");
    EXPECT_THAT(svg, testing::AllOf(HasSubstr("<svg"), HasSubstr("Measured Runoff"), HasSubstr("Volume")));
    ASSERT_TRUE(save_as(5));
    const fs::path pdf = folder_ / "a.pdf";
    EXPECT_THAT(text_of("pdftotext -layout '" + pdf.string() + "' -"),
                testing::AllOf(HasSubstr("Measured Runoff"), HasSubstr("Volume")));
    expect_alike(page_of(pdf), on_screen());
}

TEST_F(PlotOutputTest, ATextAndAFlowFileHoldTheCurves) {
    ASSERT_TRUE(save_as(1));
    EXPECT_THAT(file_bytes(folder_ / "a.txt"),
                testing::AllOf(StartsWith("Program    : Hollin Flow Model"), HasSubstr("10/1/2001  "),
                               HasSubstr("Line#2: Computed Runoff")));
    ASSERT_TRUE(save_as(2));
    // 30 - 20 cos(1/58) = 10.003
    EXPECT_THAT(file_bytes(folder_ / "a.flx"), StartsWith("2001 10 01 10\r\n2001 10 02 10.01\r\n"));
}

TEST_F(PlotOutputTest, TheBasinCanBeReplacedWhileThePlotStands) {
    ASSERT_TRUE(save_as(2));
    // A handle that stayed open would keep another program out.
    BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
    EXPECT_NO_THROW(database.lock_exclusively());
}

TEST_F(PlotOutputTest, CancelSavesNothingAndSetsThePointerFree) {
    dialogs_.then_file(std::nullopt);
    EXPECT_FALSE(save());
    EXPECT_THAT(folder_.entries(), testing::IsEmpty());
    EXPECT_EQ(QGuiApplication::overrideCursor(), nullptr);
}

TEST_F(PlotOutputTest, AFullDiskIsToldForEachKindAndLeavesTheOlderFile) {
    const std::array<const char*, 6> names{"a.bmp", "a.txt", "a.flx", "a.png", "a.svg", "a.pdf"};
    for (std::size_t filter = 0; filter < names.size(); ++filter) {
        const fs::path file = folder_.write(names[filter], "older");
        dialogs_.then_file(file, filter).then(Answer::Yes);
        const FullDisk disk{100};
        EXPECT_FALSE(save()) << names[filter];
        EXPECT_THAT(dialogs_.messages().back().message.text,
                    testing::AllOf(HasSubstr(names[filter]), HasSubstr("the disk may be full")));
        EXPECT_EQ(file_bytes(file), "older");
    }
    EXPECT_EQ(folder_.entries().size(), names.size()) << "nothing is left beside the files";
}

TEST_F(PlotOutputTest, TheOpenBasinIsRefused) {
    const std::string before = file_bytes(session_.basin.Work_File);
    dialogs_.then_file(session_.basin.Work_File, 3).then(Answer::Yes).then_file(std::nullopt);
    EXPECT_FALSE(save());
    EXPECT_THAT(dialogs_.messages().back().message.text, HasSubstr("is the basin that is open"));
    EXPECT_EQ(file_bytes(session_.basin.Work_File), before);
}

TEST_F(PlotOutputTest, ACopyReplacesTheClipboardByThePictureWithBothPanels) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    EXPECT_EQ(copy_plot(shown()), PlotCopy::Copied);
    EXPECT_FALSE(QGuiApplication::clipboard()->mimeData()->hasText());
    const QImage copied = QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(copied.size(), QSize(700, 420));
    expect_alike(copied, on_screen());
}

TEST_F(PlotOutputTest, ACopyWithoutRoomLeavesTheClipboard) {
    QGuiApplication::clipboard()->setText(QStringLiteral("before"));
    ShownPlot huge = shown();
    huge.size.width = k_most_pixels + 1;
    EXPECT_EQ(copy_plot(huge), PlotCopy::NoRoom);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("before"));
}

TEST_F(PlotOutputTest, APictureThatAnotherProgramDisplacesAtOnceIsNotCopied) {
    QClipboard& clipboard = *QGuiApplication::clipboard();
    QObject other;
    QObject::connect(&clipboard, &QClipboard::dataChanged, &other, [&clipboard] {
        if (!clipboard.image().isNull()) clipboard.setText(QStringLiteral("theirs"));
    });
    EXPECT_EQ(copy_plot(shown()), PlotCopy::Refused);
    EXPECT_EQ(clipboard.text(), QStringLiteral("theirs"));
}

TEST_F(PlotOutputTest, APictureHasThePixelsOfAFineDisplay) {
    ShownPlot fine = shown();
    fine.size = {.width = 1400, .height = 840, .dpi = 192.0};
    EXPECT_EQ(copy_plot(fine), PlotCopy::Copied);
    const QImage copied = QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    EXPECT_EQ(copied.size(), QSize(1400, 840));
    expect_alike(copied.scaled(700, 420, Qt::IgnoreAspectRatio, Qt::SmoothTransformation), on_screen());
}

TEST_F(PlotOutputTest, APanelThatWasDraggedStandsThereInThePicture) {
    screen_.move_legend({150.0, 300.0});
    canvas_.redraw();
    EXPECT_EQ(copy_plot(shown()), PlotCopy::Copied);
    const QImage copied = QGuiApplication::clipboard()->image().convertToFormat(QImage::Format_RGB32);
    const QRect box = canvas_.findChild<QWidget*>(QStringLiteral("Frame2"))->geometry();
    EXPECT_NEAR(box.left(), 150, 1);
    expect_alike(copied.copy(box), on_screen().copy(box));
}

// The room on A4 in landscape is 9.7 x 6.3 inches: 931 x 601 points.
TEST_F(PlotOutputTest, APrintIsThePictureOfTheWindowAtItsSize) {
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(folder_ / "print");
    ASSERT_TRUE(print());
    EXPECT_TRUE(dialogs_.messages().empty());
    expect_alike(page_of(folder_ / "print.pdf").copy(96, 96, 700, 420), on_screen());
}

TEST_F(PlotOutputTest, AWindowThatIsTooLargeIsAskedAbout) {
    session_.settings.page.orientation = 1;
    dialogs_.then(Answer::Cancel);
    EXPECT_FALSE(print());
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
    dialogs_.then(Answer::Ok);
    EXPECT_TRUE(print());
    ASSERT_EQ(printers_.jobs()[1].pages.size(), 1U);
    EXPECT_EQ(dialogs_.messages().back().message.title, "Nivora graphics print overflow");
    EXPECT_THAT(printers_.jobs()[1].page(0),
                testing::AllOf(HasSubstr("Measured Runoff\n"), HasSubstr("Volume")));
    EXPECT_FALSE(printers_.text_offered());
    EXPECT_EQ(printers_.window(), &window_);
}

// Between margins of 1 inch A4 has 6.27 x 9.69 inches, 602 x 931 points. The frame begins at 1/12 of the
// width and ends at 11/12, as on the screen.
TEST_F(PlotOutputTest, ACompressedPrintFillsTheRoomOfThePage) {
    session_.settings.page.orientation = 1;
    printers_.then(PrintTarget::Pdf);
    dialogs_.then(Answer::Ok).then_file(folder_ / "compressed");
    ASSERT_TRUE(print());
    const QImage page = page_of(folder_ / "compressed.pdf");
    QRect drawn;
    for (int y = 0; y < page.height(); ++y) {
        for (int x = 0; x < page.width(); ++x) {
            if (qGray(page.pixel(x, y)) < 128) drawn |= QRect(x, y, 1, 1);
        }
    }
    EXPECT_GE(drawn.left(), 96);
    EXPECT_LE(drawn.left(), 96 + 602 / 12);
    EXPECT_LE(drawn.right(), 96 + 602);
    EXPECT_GE(drawn.right(), 96 + 602 * 11 / 12 - 1);
    EXPECT_GE(drawn.top(), 96);
    EXPECT_LE(drawn.top(), 96 + 20);
    EXPECT_LE(drawn.bottom(), 96 + 931);
    EXPECT_GE(drawn.bottom(), 96 + 931 * 15 / 16 - 1);
}

TEST_F(PlotOutputTest, ACancelledPrintDialogPrintsNothing) {
    printers_.then(std::nullopt);
    EXPECT_FALSE(print());
    EXPECT_TRUE(printers_.jobs().empty());
    EXPECT_TRUE(dialogs_.messages().empty());
}

}  // namespace
}  // namespace nivora
