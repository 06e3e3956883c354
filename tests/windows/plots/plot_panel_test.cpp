#include "windows/plots/plot_panel.h"

#include "paint/plot_picture.h"
#include "tests/shell/main_window_fixture.h"
#include "tests/support/shown_plot.h"
#include "widgets/qt_text.h"
#include "windows/plots/plot_panels.h"

#include <gmock/gmock.h>

#include <QLabel>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class PlotPanelTest : public WithShownPlot<OffscreenTest> {
protected:
    PlotPanelTest() {
        window_->show();
        settle();
        show(k_cover);
    }

    void show(PlotNumber plot) {
        pick(plot);
        settle();
    }
    [[nodiscard]] PlotPanel& legend() { return *canvas_->findChild<PlotPanel*>(QStringLiteral("Frame2")); }
    [[nodiscard]] PlotPanel& summary() { return *canvas_->findChild<PlotPanel*>(QStringLiteral("Frame3")); }
    /// A text of the legend, from 0.
    [[nodiscard]] QLabel& name(int row) {
        return *legend().findChild<QLabel*>(QStringLiteral("Label4(%1)").arg(row));
    }
    /// A place in a panel where no text stands.
    [[nodiscard]] QPoint corner_of(const QWidget& panel) const { return panel.pos() + QPoint(3, 3); }
    [[nodiscard]] QImage shown() { return canvas_->grab().toImage().convertToFormat(QImage::Format_RGB32); }
    [[nodiscard]] QImage on_paper() {
        DrawOptions options = canvas_->draw_options();
        options.legend = true;
        options.summary = canvas_->shows_summary();
        return plot_image(*screen_.plot(), options, canvas_->picture_size());
    }

    CanvasMouse mouse_{*canvas_};
};

TEST_F(PlotPanelTest, ADragMovesThePanelAndIsKept) {
    show(PlotNumber::Runoff);
    for (PlotPanel* panel : {&legend(), &summary()}) {
        const QPoint before = panel->pos();
        const QPoint by(before.x() > 300 ? -90 : 90, 120);
        mouse_.press(corner_of(*panel));
        mouse_.move(corner_of(*panel) + by / 2);
        EXPECT_EQ(panel->pos(), before + by / 2) << "while the button is down";
        const QPoint end = before + QPoint(3, 3) + by;
        mouse_.move(end);
        mouse_.release(end);
        EXPECT_EQ(panel->pos(), before + by);
    }
    ASSERT_TRUE(screen_.legend_place());
    ASSERT_TRUE(screen_.summary_place());
    EXPECT_EQ(screen_.legend_place()->x, legend().frame().x());
    EXPECT_EQ(screen_.summary_place()->y, summary().frame().y());
    ASSERT_TRUE(canvas_->draw_options().legend_place);
    EXPECT_EQ(canvas_->draw_options().legend_place->x, legend().frame().x());
    EXPECT_EQ(canvas_->draw_options().summary_place->y, summary().frame().y());
    EXPECT_EQ(shown(), on_paper());
    canvas_->redraw();
    EXPECT_EQ(screen_.legend_place()->x, legend().frame().x());
    EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(PlotPanelTest, CanBeDraggedByAName) {
    const QPoint before = legend().pos();
    const QPoint grip = middle_of(name(0));
    mouse_.drag(grip, grip + QPoint(-100, 50));
    EXPECT_EQ(legend().pos(), before + QPoint(-100, 50));
    EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(PlotPanelTest, StaysInsideThePlot) {
    const QPoint grip = corner_of(legend());
    mouse_.drag(grip, QPoint(-500, -500));
    EXPECT_EQ(legend().frame().topLeft(), QPoint(0, 0));
    mouse_.drag(corner_of(legend()), QPoint(5000, 5000));
    EXPECT_EQ(legend().frame().bottomRight(), canvas_->rect().bottomRight());
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotPanelTest, StaysInsideASmallerPlotAndComesBack) {
    mouse_.drag(corner_of(legend()), QPoint(600, 440));
    const QPoint place = legend().pos();
    canvas_->resize(400, 300);
    settle();
    EXPECT_TRUE(canvas_->rect().contains(legend().frame()));
    EXPECT_EQ(shown(), on_paper());
    canvas_->resize(800, 500);
    settle();
    EXPECT_EQ(legend().pos(), place);
}

TEST_F(PlotPanelTest, AClickOnANameChoosesItsLine) {
    const QPoint place = middle_of(name(1));
    mouse_.press(place);
    mouse_.move(place + QPoint(1, 1));  // a hand that is not quite still
    mouse_.release(place + QPoint(1, 1));
    EXPECT_THAT(lines_, ElementsAre(2));
    EXPECT_THAT(line_places_, ElementsAre(canvas_->mapToGlobal(place + QPoint(1, 1))));
    mouse_.click(middle_of(name(0)));
    EXPECT_THAT(lines_, ElementsAre(2, 1));
    EXPECT_FALSE(screen_.legend_place()) << "a click moves nothing";
}

TEST_F(PlotPanelTest, AClickElsewhereChoosesNoLine) {
    mouse_.click(corner_of(legend()));
    mouse_.click(legend().pos() + QPoint(13, name(0).geometry().center().y()));  // a sample
    mouse_.press(middle_of(name(0)), Qt::RightButton);
    mouse_.release(middle_of(name(0)), Qt::RightButton);
    // Between the names, pressed on one and released on the other
    const QPoint first = name(0).mapTo(canvas_, QPoint(5, name(0).height() - 2));
    const QPoint second = name(1).mapTo(canvas_, QPoint(5, 2));
    ASSERT_LT((second - first).manhattanLength(), QApplication::startDragDistance());
    mouse_.press(first);
    mouse_.release(second);
    EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(PlotPanelTest, AClickOnATextWithoutALineChoosesNone) {
    legend().show_picture({}, {{.name = QStringLiteral("Label4(0)"),
                                .text = QStringLiteral("Total"),
                                .box = QRectF(5.0, 5.0, 40.0, 10.0),
                                .line = 0}});
    EXPECT_EQ(name(0).cursor().shape(), Qt::OpenHandCursor);
    EXPECT_EQ(name(0).toolTip(), QString{});
    mouse_.click(middle_of(name(0)));
    EXPECT_THAT(lines_, IsEmpty());
}

TEST_F(PlotPanelTest, EscapePutsADraggedPanelBack) {
    const QPoint before = legend().pos();
    const QPoint grip = middle_of(name(0));
    mouse_.press(grip);
    mouse_.move(grip + QPoint(-60, 60));
    ASSERT_EQ(legend().pos(), before + QPoint(-60, 60));
    EXPECT_TRUE(canvas_->escape());
    EXPECT_EQ(legend().pos(), before);
    mouse_.move(grip + QPoint(-80, 80));
    mouse_.release(grip);
    EXPECT_EQ(legend().pos(), before);
    EXPECT_FALSE(screen_.legend_place());
    EXPECT_THAT(lines_, IsEmpty());
    EXPECT_FALSE(canvas_->escape());
}

TEST_F(PlotPanelTest, ASecondButtonDeactivationOrARedrawPutADraggedPanelBack) {
    const QPoint before = legend().pos();
    const QPoint grip = corner_of(legend());
    QEvent deactivation(QEvent::WindowDeactivate);
    const std::vector<std::function<void()>> ends{
        [&] {
            mouse_.press(grip, Qt::RightButton);
            mouse_.release(grip, Qt::RightButton);
        },
        [&] { QApplication::sendEvent(&legend(), &deactivation); },
        [&] { canvas_->redraw(); },
        [&] {
            mouse_.lose_buttons();
            mouse_.move(grip + QPoint(-55, 65));
        },
    };
    for (const auto& end : ends) {
        SCOPED_TRACE(&end - ends.data());
        mouse_.press(grip);
        mouse_.move(grip + QPoint(-60, 60));
        ASSERT_NE(legend().pos(), before);
        end();
        EXPECT_EQ(legend().pos(), before);
        mouse_.release(grip + QPoint(-60, 60));
        EXPECT_FALSE(screen_.legend_place());
    }
}

TEST_F(PlotPanelTest, TheWheelRestsDuringADrag) {
    const QPoint grip = corner_of(legend());
    mouse_.press(grip);
    mouse_.move(grip + QPoint(-60, 60));
    mouse_.turn_wheel(grip, {0, 120});
    EXPECT_FALSE(is_zoomed());
    mouse_.release(grip + QPoint(-60, 60));
    mouse_.turn_wheel(grip, {0, 120});
    EXPECT_TRUE(is_zoomed());
}

TEST_F(PlotPanelTest, ThePointerShowsWhatAPressDoes) {
    EXPECT_EQ(legend().cursor().shape(), Qt::OpenHandCursor);
    EXPECT_EQ(name(0).cursor().shape(), Qt::PointingHandCursor);
    const QPoint grip = middle_of(name(0));
    mouse_.press(grip);
    mouse_.move(grip + QPoint(-60, 60));
    EXPECT_EQ(legend().cursor().shape(), Qt::ClosedHandCursor);
    EXPECT_EQ(name(0).cursor().shape(), Qt::ClosedHandCursor);
    mouse_.release(grip + QPoint(-60, 60));
    EXPECT_EQ(legend().cursor().shape(), Qt::OpenHandCursor);
    EXPECT_EQ(name(0).cursor().shape(), Qt::PointingHandCursor);
}

TEST_F(PlotPanelTest, NamesTextsAndTipsAreFound) {
    EXPECT_EQ(legend().accessibleName(), QStringLiteral("Legend"));
    EXPECT_EQ(summary().accessibleName(), QStringLiteral("Run summary"));
    EXPECT_EQ(from_qt(legend().toolTip()), "Leftclick and drag to move legend ");
    EXPECT_EQ(from_qt(name(0).toolTip()),
              "Click on upperleft corner to move legend, line names to customize lines ");
    EXPECT_EQ(from_qt(name(0).text()), screen_.plot()->legend[0].text);
    EXPECT_EQ(from_qt(name(1).text()), screen_.plot()->legend[1].text);
    show(PlotNumber::Runoff);
    const auto* caption = summary().findChild<QLabel*>(QStringLiteral("Label2(5)"));
    ASSERT_NE(caption, nullptr);
    EXPECT_EQ(from_qt(caption->text()), screen_.plot()->summary[5].caption);
    EXPECT_EQ(caption->cursor().shape(), Qt::OpenHandCursor);
}

TEST_F(PlotPanelTest, APlotWithFewerNamesLeavesNoneBehind) {
    ASSERT_TRUE(name(1).isVisible());
    pick(k_cover);
    {
        BasinDatabase database = basin_.file.open(Access::ReadOnly);
        screen_.pick_zone(1, database, basin_.sources());
        canvas_->redraw();
    }
    ASSERT_EQ(screen_.plot()->legend.size(), 1U);
    EXPECT_TRUE(name(0).isVisible());
    EXPECT_FALSE(name(1).isVisible());
}

TEST(PaintedPart, IsThatPartOfTheWhole) {
    const auto draw = [](Surface& surface) {
        surface.rectangle({20.0, 10.0, 30.0, 20.0}, Pen{0x0000FF, 0, 1}, Fill{0x00FF00, 0});
        surface.text({22.0, 12.0}, "Zone", {8.0, false}, k_black);
    };
    constexpr SurfaceSize k_whole{100.0, 50.0};
    for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
        const QImage whole = painted_part(QRect(0, 0, 100, 50), k_whole, ratio, Qt::white, draw);
        const QRect part(20, 8, 36, 24);
        const QImage piece = painted_part(part, k_whole, ratio, Qt::white, draw);
        const QPoint corner(qRound(part.x() * ratio), qRound(part.y() * ratio));
        EXPECT_EQ(piece.copy(), whole.copy(QRect(corner, piece.size()))) << ratio;
    }
    const QImage clear = painted_part(QRect(0, 0, 100, 50), k_whole, 1.0, Qt::transparent, draw);
    EXPECT_EQ(clear.pixelColor(0, 0).alpha(), 0);
    EXPECT_EQ(clear.pixelColor(40, 15).alpha(), 255);
}

/// A canvas in a window with QuickHelp.
class HelpedWindow : public NivoraWindow {
public:
    HelpedWindow(const WindowContext& context, QWidget* canvas)
        : NivoraWindow(context, "frmNVRPlot", WindowNumber::frmNVRPlot) {
        set_content(canvas);
    }
};

TEST_F(PlotPanelTest, QuickHelpExplainsThePartsOfAPanelAndNothingActs) {
    TemporaryFolder folder;
    std::filesystem::copy_file(std::filesystem::path{NIVORA_SOURCE_DIR} / "data" / "quickhelp.txt",
                               folder / "quickhelp.txt");
    WatchedDialogs dialogs;
    Desktop desktop;
    Session session{dialogs, desktop};
    QuickHelp quick_help;
    RecordedPrinters printers;
    Printing printing{session, printers};
    show(PlotNumber::Runoff);
    HelpedWindow window({session, quick_help, folder.path(), printing}, canvas_);
    window.show();
    settle();
    quick_help.set_on(true);
    const auto explained = [&](QWidget& element) {
        mouse_.click(middle_of(element));
        return from_qt(window.help_text());
    };
    EXPECT_EQ(explained(name(0)).rfind("A line of the plot with its name", 0), 0U);
    const auto statistic = [&](const char* label) -> QWidget& {
        return *summary().findChild<QWidget*>(QString::fromUtf8(label));
    };
    EXPECT_EQ(explained(statistic("Label2(0)")).rfind("Measured Runoff Volume", 0), 0U);
    EXPECT_EQ(explained(statistic("Label2(5)")).rfind("Coefficient of Determination", 0), 0U);
    EXPECT_THAT(lines_, IsEmpty());
    const QPoint before = legend().pos();
    mouse_.drag(corner_of(legend()), corner_of(legend()) + QPoint(-60, 60));
    EXPECT_EQ(legend().pos(), before);
    screen_.zoom_in();
    mouse_.drag(at(3.0, 30.0), at(5.0, 60.0));
    mouse_.turn_wheel(at(3.0, 30.0), {0, 120});
    EXPECT_FALSE(is_zoomed());
    quick_help.set_on(false);
    mouse_.turn_wheel(at(3.0, 30.0), {0, 120});
    EXPECT_TRUE(is_zoomed());
    canvas_->setParent(window_.get());
}

}  // namespace
}  // namespace nivora
