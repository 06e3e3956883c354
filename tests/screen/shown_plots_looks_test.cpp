// The plot window's lines, panels and maxima, and what leaves it: the clipboard, files, a page.

#include "plots/plot_view.h"
#include "tests/screen/shown_plots_fixture.h"
#include "tests/support/picture_likeness.h"
#include "windows/plots/plot_panel.h"

#include <QClipboard>
#include <QMenu>
#include <QProcess>
#include <QPushButton>
#include <QSpinBox>
#include <array>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class PlotLooksOnScreenTest : public ShownPlotsTest {
protected:
    [[nodiscard]] PlotPanel* legend() const { return in<PlotPanel>(canvas_, "Frame2"); }
    /// Clicks a name in the legend and chooses the attributes of its line from the menu.
    void open_line(int line, const std::function<void(QWidget&)>& act) {
        const int before = modal_windows_seen_;
        auto* menu = in<QMenu>(plots_, "mnuEd");
        click(*in<QLabel>(canvas_, ("Label4(" + std::to_string(line - 1) + ")").c_str()));
        ASSERT_TRUE(await([&] { return menu->isVisible(); }));
        EXPECT_EQ(from_qt(menu->actions().constFirst()->text()), "&LineAttributes");
        in_modal("frmLineAtt", [&](QWidget& window) {
            EXPECT_EQ(in<QSpinBox>(&window, "UpDown1")->value(), line);
            act(window);
        });
        press({"l"});
        ASSERT_TRUE(await([&] { return modal_windows_seen_ > before; }));
        await_active(*plots_);
        point_away();
    }
    static std::string content(const std::filesystem::path& file) {
        QFile input(QString::fromStdString(file.string()));
        EXPECT_TRUE(input.open(QIODevice::ReadOnly)) << file;
        return input.readAll().toStdString();
    }
    static void expect_alike(const QImage& one, const QImage& other) {
        EXPECT_GT(found_in(one, other), 0.99);
        EXPECT_GT(found_in(other, one), 0.99);
    }
    /// The left part of a page, in pixels of 1/96 inch.
    [[nodiscard]] QImage page_of(const std::filesystem::path& file) const {
        const QString name = QString::fromStdString((user_ / "page").string());
        EXPECT_EQ(
            QProcess::execute(QStringLiteral("pdftoppm"),
                              {QStringLiteral("-r"), QStringLiteral("96"), QStringLiteral("-png"),
                               QStringLiteral("-singlefile"), QString::fromStdString(file.string()), name}),
            0);
        return QImage(name + QStringLiteral(".png")).convertToFormat(QImage::Format_RGB32);
    }
};

TEST_F(PlotLooksOnScreenTest, AWiderLineIsDrawnAfterDoneAndNothingChangesAfterCancel) {
    const Plot plot = built(PlotNumber::Runoff);
    point_away();
    ASSERT_TRUE(shows(plot));
    const QImage before = picture(*canvas_);
    for (const int button : {1, 0}) {  // Cancel, then Done
        open_line(2, [&](QWidget& window) {
            auto* width = in<QSpinBox>(&window, "UpDown2");
            width->setFocus();
            press({"ctrl+a"});
            type("3");
            EXPECT_EQ(width->value(), 3);
            if (button == 1) keep(window, "shown-plots-line.png");
            click(*in<QPushButton>(&window, ("Command1(" + std::to_string(button) + ")").c_str()));
        });
        if (button == 1) {
            EXPECT_EQ(picture(*canvas_), before);
        }
    }
    EXPECT_EQ(session_.settings.lines.at(1).width, 3);
    EXPECT_TRUE(shows(plot));
    EXPECT_GT(pixels_of(picture(*canvas_), colour_of_line(2)), 2 * pixels_of(before, colour_of_line(2)));
    keep(*plots_, "shown-plots-wide-line.png");
}

TEST_F(PlotLooksOnScreenTest, ADraggedLegendStaysThroughAResizeAndAPick) {
    const QPoint began = legend()->pos();
    const QPoint grip = began + QPoint(3, 3);
    const QPoint moved(began.x() - 200, began.y() + 100);
    begin_drag(grip, grip + QPoint(-200, 100));
    release_button();
    point_away();
    EXPECT_EQ(legend()->pos(), moved);
    EXPECT_TRUE(shows(built(PlotNumber::Runoff)));
    plots_->resize(plots_->width() - 120, plots_->height() - 60);
    settle();
    EXPECT_EQ(legend()->pos(), moved);
    list()->setFocus();
    press({"Down"});
    ASSERT_EQ(list()->currentIndex(), 1);
    EXPECT_EQ(legend()->pos(), moved);
    point_away();
    EXPECT_TRUE(shows(built(PlotNumber::SnowCover, session_.basin.ZoneCount + 1)));
    keep(*plots_, "shown-plots-legend.png");
}

TEST_F(PlotLooksOnScreenTest, EnterTakesATypedMaximumAndF5TakesTheNext) {
    auto* maximum = in<QLineEdit>(plots_, "bartext2");
    const Plot plot = built(PlotNumber::Runoff);
    const auto replace = [&](const std::string& text) {
        maximum->setFocus();
        press({"ctrl+a"});
        type(text);
        EXPECT_TRUE(tool("Redraw")->isVisible());
    };
    replace("200");
    press({"Return"});
    EXPECT_FALSE(tool("Redraw")->isVisible());
    point_away();
    EXPECT_TRUE(shows(with_maxima(plot, {.x = {}, .y = 200.0F})));
    replace("150.5");
    press({"F5"});
    EXPECT_FALSE(tool("Redraw")->isVisible());
    EXPECT_TRUE(shows(with_maxima(plot, {.x = {}, .y = 150.5F})));
    EXPECT_EQ(box_text("bartext2"), "150.5");
    keep(*plots_, "shown-plots-maximum.png");
}

TEST_F(PlotLooksOnScreenTest, ARefusedMaximumIsRedDuringItsMessageAndThePlotStays) {
    const Plot plot = built(PlotNumber::Runoff);
    auto* maximum = in<QLineEdit>(plots_, "bartext2");
    maximum->setFocus();
    press({"ctrl+a"});
    type("high");
    QRgb shown = 0;
    dialogs_.while_shown = [&] {
        settle();
        shown = main_colour(picture(*maximum));
    };
    press({"Return"});
    dialogs_.while_shown = nullptr;
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "The maximum Y 'high' is not a number. Type a number, such as 12.5.");
    EXPECT_EQ(shown, NivoraWindow::k_refused_colour & 0xFFFFFFU);
    EXPECT_EQ(focused(), "bartext2");
    point_away();
    EXPECT_TRUE(shows(plot));
}

TEST_F(PlotLooksOnScreenTest, CopyTakesTheTextOfABoxAndOtherwiseThePictureOnTheScreen) {
    QClipboard& clipboard = *QGuiApplication::clipboard();
    const Plot plot = built(PlotNumber::Runoff);
    auto* maximum = in<QLineEdit>(plots_, "bartext2");
    maximum->setFocus();
    press({"ctrl+a", "ctrl+c"});
    EXPECT_EQ(clipboard.text(), maximum->text());
    EXPECT_TRUE(clipboard.image().isNull());
    list()->setFocus();
    press({"ctrl+c"});
    ASSERT_TRUE(await([&] { return !clipboard.image().isNull(); }));
    point_away();
    ASSERT_TRUE(shows(plot));
    EXPECT_EQ(clipboard.image().convertToFormat(QImage::Format_RGB32), picture(*canvas_));
    EXPECT_EQ(clipboard.image().size(), canvas_->size());
}

TEST_F(PlotLooksOnScreenTest, TheKeySavesAllSixKinds) {
    struct Kind {
        const char* name;
        const char* begins;
    };
    // In the order of the filters.
    constexpr std::array kinds{Kind{"a.bmp", "BM"},      Kind{"a.txt", ""},      Kind{"a.flx", ""},
                               Kind{"a.png", "\x89PNG"}, Kind{"a.svg", "<?xml"}, Kind{"a.pdf", "%PDF-"}};
    list()->setFocus();
    point_away();
    for (std::size_t i = 0; i < kinds.size(); ++i) {
        const auto file = user_ / kinds.at(i).name;
        dialogs_.then_file(file, i);
        press({"ctrl+s"});
        ASSERT_TRUE(await([&] { return std::filesystem::exists(file); })) << file;
        await([] { return QApplication::overrideCursor() == nullptr; });
        EXPECT_THAT(content(file), StartsWith(kinds.at(i).begins)) << file;
        EXPECT_GT(content(file).size(), 1000U) << file;
    }
    EXPECT_TRUE(dialogs_.messages().empty());
    const auto saved = [&](const char* name) {
        return QImage(QString::fromStdString((user_ / name).string())).convertToFormat(QImage::Format_RGB32);
    };
    EXPECT_EQ(saved("a.bmp").size(), picture(*canvas_).size());
    EXPECT_EQ(saved("a.png"), picture(*canvas_));
    EXPECT_THAT(content(user_ / "a.txt"), HasSubstr("Measured"));
    EXPECT_TRUE(shows(built(PlotNumber::Runoff)));
}

TEST_F(PlotLooksOnScreenTest, APageOfThePrintShowsWhatTheScreenShows) {
    // Small enough for a page on its side in its own size.
    plots_->resize(plots_->minimumSizeHint().expandedTo({820, 560}));
    session_.settings.page.paper = "A4";
    session_.settings.page.orientation = 2;
    session_.settings.page.margins = {0.5F, 0.5F, 0.5F, 0.5F};
    settle();
    point_away();
    const Plot plot = built(PlotNumber::Runoff);
    ASSERT_TRUE(shows(plot));
    const QImage screen = picture(*canvas_);
    printers_.then(PrintTarget::Pdf);
    dialogs_.then_file(user_ / "plot.pdf");
    list()->setFocus();
    press({"ctrl+p"});
    ASSERT_TRUE(await([&] { return std::filesystem::exists(user_ / "plot.pdf"); }));
    const QImage page = page_of(user_ / "plot.pdf");
    ASSERT_FALSE(page.isNull());
    if (const char* folder = std::getenv("NIVORA_PICTURES"))
        page.save(QString::fromUtf8(folder) + QStringLiteral("/shown-plots-page.png"));
    // Its corner is at the margins.
    const QImage printed = page.copy(QRect(QPoint(48, 48), screen.size()));
    expect_alike(screen, printed);
    EXPECT_TRUE(shows(plot));
}

}  // namespace
}  // namespace nivora
