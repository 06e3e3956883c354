#include "windows/plots/plot_canvas.h"

#include "paint/image_surface.h"
#include "plots/plot_words.h"
#include "tests/windows/plots/plot_canvas_fixture.h"
#include "widgets/qt_text.h"

#include <QPainter>

namespace nivora {
namespace {

using testing::AllOf;
using testing::Ge;
using testing::IsEmpty;
using testing::Le;

/// A day as the status bar and the label name it.
MATCHER_P(StartsWithText, text, "") { return arg.rfind(text, 0) == 0; }

TEST_F(PlotCanvasTest, IsWhiteBeforeAPick) {
    QImage white = shown();
    white.fill(Qt::white);
    EXPECT_EQ(shown(), white);
    EXPECT_TRUE(panel("Frame2")->isHidden());
    EXPECT_TRUE(panel("Frame3")->isHidden());
    mouse_.drag({10, 10}, {200, 200});
    mouse_.turn_wheel({50, 50}, {0, 120});
    EXPECT_THAT(answers_, IsEmpty());
    EXPECT_THAT(places_, testing::Each(BoxTexts{" ", " "}));
    EXPECT_FALSE(canvas_->escape());
}

TEST_F(PlotCanvasTest, ShowsPlotAndPanelsAsOnPaper) {
    show(k_cover);
    EXPECT_TRUE(panel("Frame2")->isVisible());
    EXPECT_FALSE(panel("Frame3")->isVisible());
    EXPECT_EQ(shown(), on_paper());
    show(PlotNumber::Runoff);
    EXPECT_TRUE(panel("Frame2")->isVisible());
    EXPECT_TRUE(panel("Frame3")->isVisible());
    EXPECT_TRUE(canvas_->shows_summary());
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotCanvasTest, ShowsWhyNoPlotStands) {
    show(PlotNumber::Runoff);
    show(PlotNumber::LagTime);  // the parameters have no rows
    ASSERT_NE(screen_.fallback(), nullptr);
    EXPECT_FALSE(panel("Frame2")->isVisible());
    EXPECT_FALSE(panel("Frame3")->isVisible());
    QImage refused(canvas_->size(), QImage::Format_RGB32);
    {
        QPainter painter(&refused);
        PaintedSurface surface(painter, {800.0, 500.0});
        draw_refusal(surface, *screen_.fallback());
    }
    EXPECT_EQ(shown(), refused);
    mouse_.move({100, 100});
    EXPECT_EQ(places_.back(), (BoxTexts{" ", " "}));
}

TEST_F(PlotCanvasTest, KeepsItsPictureUntilItIsRedrawn) {
    show(k_cover);
    const QImage before = shown();
    for (LineAttribute& line : settings_.lines) line.colour = 0x00FF00;
    mouse_.move({300, 200});
    canvas_->update();
    EXPECT_EQ(shown(), before);
    canvas_->redraw();
    EXPECT_NE(shown(), before);
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotCanvasTest, FollowsItsSize) {
    show(k_cover);
    canvas_->resize(640, 400);
    settle();
    ASSERT_EQ(answers_.size(), 1U);
    EXPECT_TRUE(answers_[0].draw);
    EXPECT_EQ(shown().size(), QSize(640, 400));
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotCanvasTest, ShowsThePlotAtAnySize) {
    show(PlotNumber::Runoff);
    for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(40, 20), QSize(150, 90), QSize(3840, 2160)}) {
        canvas_->resize(size);
        settle();
        mouse_.move({size.width() / 2, size.height() / 2});
        mouse_.turn_wheel({size.width() / 2, size.height() / 2}, {0, 120});
        settle();
        EXPECT_EQ(shown(), on_paper()) << size.width() << " by " << size.height();
    }
}

/// A canvas on a display with another number of pixels to a point.
class DenseCanvas : public PlotCanvas {
public:
    using PlotCanvas::PlotCanvas;
    int pixels = 1;

protected:
    int metric(PaintDeviceMetric which) const override {
        if (which == PdmDevicePixelRatio) return pixels;
        if (which == PdmDevicePixelRatioScaled) return static_cast<int>(pixels * 0x10000);
        return PlotCanvas::metric(which);
    }
};

TEST_F(PlotCanvasTest, HasThePixelsOfItsDisplay) {
    auto* dense = make_canvas<DenseCanvas>();
    dense->setGeometry(10, 10, 800, 500);
    dense->show();
    show(k_cover);
    EXPECT_EQ(shown(), on_paper());
    dense->pixels = 2;
    EXPECT_EQ(shown().size(), QSize(1600, 1000));  // as on a display to which the window was moved
    settle();
    EXPECT_EQ(canvas_->picture_size().width, 1600);
    EXPECT_EQ(canvas_->picture_size().dpi, 192.0);
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotCanvasTest, TellsThePlaceOfTheMouse) {
    show(k_cover);
    mouse_.move(at(3.4, 0.75));
    ASSERT_FALSE(places_.empty());
    EXPECT_EQ(places_.back().x, " X: Oct 3, 2001");
    EXPECT_THAT(places_.back().y, StartsWithText(" Y: .7"));
    QEvent leave(QEvent::Leave);
    QApplication::sendEvent(canvas_, &leave);
    EXPECT_EQ(places_.back(), (BoxTexts{" ", " "}));
}

TEST_F(PlotCanvasTest, HasNoPlaceUnderAPanel) {
    show(k_cover);
    mouse_.move(at(3.0, 0.75));
    const QPointF place(5.0, 5.0);
    QEnterEvent enter(place, place, place);
    QApplication::sendEvent(panel("Frame2"), &enter);
    EXPECT_EQ(places_.back(), (BoxTexts{" ", " "}));
}

// The zoom

TEST_F(PlotCanvasTest, ShowsARedDottedBandWhileTheButtonIsDown) {
    show(k_cover);
    const QPoint from = at(3.0, 0.875);
    const QPoint to = at(6.0, 0.625);
    begin_drag(from, to);
    EXPECT_NE(canvas_->cursor().shape(), Qt::ArrowCursor);
    // Dots, thus neither all pixels of an edge nor none.
    const int across = red_pixels(QRect(from.x(), from.y() - 1, to.x() - from.x(), 3));
    EXPECT_THAT(across, AllOf(Ge((to.x() - from.x()) / 5), Le((to.x() - from.x()) * 4 / 5)));
    const int down = red_pixels(QRect(to.x() - 1, from.y(), 3, to.y() - from.y()));
    EXPECT_THAT(down, AllOf(Ge((to.y() - from.y()) / 5), Le((to.y() - from.y()) * 4 / 5)));
    EXPECT_EQ(red_pixels(QRect(from, to).adjusted(4, 4, -4, -4)), 0);
    // The former band is gone, and with the last one the picture is what it was.
    mouse_.move(at(5.0, 0.75));
    EXPECT_EQ(red_pixels(QRect(to.x() - 1, from.y(), 3, to.y() - from.y())), 0);
    EXPECT_TRUE(canvas_->escape());
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotCanvasTest, TheBandStandsOutOnWhatItCrosses) {
    for (LineAttribute& line : settings_.lines) line = {.style = 0, .colour = 0x0000FF, .width = 10};
    show(k_cover);
    const QPoint from = at(3.0, 0.875);
    const QPoint to = at(6.0, 0.5625);
    begin_drag(from, to);
    const QImage image = shown();
    // The left edge crosses the curve of zone B, which is as red as itself, and lies on a grid line.
    const QPoint curve = at(3.0, 0.8125);
    int gaps = 0;
    for (int y = -3; y <= 3; ++y) {
        for (int x = -1; x <= 1; ++x)
            gaps += image.pixel(curve + QPoint(x, y)) == qRgb(255, 255, 255) ? 1 : 0;
    }
    EXPECT_THAT(gaps, AllOf(Ge(2), Le(5)));
}

TEST_F(PlotCanvasTest, ADragZoomsAndDisarms) {
    show(k_cover);
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    mouse_.release(at(6.0, 0.625));
    ASSERT_EQ(answers_.size(), 1U);
    EXPECT_TRUE(answers_[0].draw);
    EXPECT_TRUE(is_zoomed());
    EXPECT_EQ(screen_.plot()->frame.x_min, basin_.x(3));
    EXPECT_EQ(screen_.plot()->frame.x_max, basin_.x(6));
    EXPECT_EQ(canvas_->cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(shown(), on_paper());
    mouse_.drag(at(4.0, 0.8), at(5.0, 0.7));
    EXPECT_EQ(answers_.size(), 1U) << "the zoom is not armed any more";
}

TEST_F(PlotCanvasTest, ADragMayEndOutside) {
    show(k_cover);
    begin_drag(at(3.0, 0.875), {900, 700});
    mouse_.release({900, 700});
    ASSERT_EQ(answers_.size(), 1U);
    EXPECT_TRUE(is_zoomed());
    EXPECT_GT(screen_.plot()->frame.x_max, basin_.x(9));
}

TEST_F(PlotCanvasTest, ADragWithoutAnAreaDoesNothing) {
    show(k_cover);
    for (const QPoint to : {at(3.0, 0.75), at(3.0, 0.75) + QPoint(1, 0), at(6.0, 0.75), at(3.0, 0.625)}) {
        screen_.zoom_in();
        mouse_.drag(at(3.0, 0.75), to);
        expect_no_drag();
    }
}

TEST_F(PlotCanvasTest, AZoomWithoutPointsSaysSo) {
    show(k_cover);
    begin_drag(at(2.0, 0.55), at(3.0, 0.6));
    mouse_.release(at(3.0, 0.6));
    ASSERT_EQ(answers_.size(), 1U);
    ASSERT_TRUE(answers_[0].message);
    EXPECT_EQ(answers_[0].message->text, "No points in the zoom area");
    EXPECT_FALSE(is_zoomed());
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotCanvasTest, OnlyTheLeftButtonDrags) {
    show(k_cover);
    screen_.zoom_in();
    mouse_.press(at(3.0, 0.875), Qt::RightButton);
    mouse_.move(at(6.0, 0.625));
    mouse_.release(at(6.0, 0.625), Qt::RightButton);
    EXPECT_FALSE(screen_.drag().dragging());
    EXPECT_TRUE(screen_.drag().armed());
    EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(PlotCanvasTest, ASecondButtonEndsADrag) {
    show(k_cover);
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    mouse_.press(at(6.0, 0.625), Qt::RightButton);
    expect_no_drag();
    mouse_.release(at(6.0, 0.625), Qt::RightButton);
    mouse_.move(at(7.0, 0.6));
    mouse_.release(at(7.0, 0.6));
    expect_no_drag();
}

TEST_F(PlotCanvasTest, LossOfFocusOrActivationEndsADrag) {
    show(k_cover);
    QFocusEvent focus(QEvent::FocusOut, Qt::OtherFocusReason);
    QEvent deactivation(QEvent::WindowDeactivate);
    for (QEvent* event : {static_cast<QEvent*>(&focus), &deactivation}) {
        begin_drag(at(3.0, 0.875), at(6.0, 0.625));
        QApplication::sendEvent(canvas_, event);
        expect_no_drag();
        mouse_.release(at(6.0, 0.625));
        expect_no_drag();
    }
}

TEST_F(PlotCanvasTest, ALostReleaseEndsADrag) {
    show(k_cover);
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    mouse_.lose_buttons();
    mouse_.move(at(7.0, 0.6));
    expect_no_drag();
}

TEST_F(PlotCanvasTest, EscapeEndsADragOrDisarms) {
    show(k_cover);
    EXPECT_FALSE(canvas_->escape());
    screen_.zoom_in();
    EXPECT_TRUE(canvas_->escape());
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    EXPECT_TRUE(canvas_->escape());
    expect_no_drag();
    EXPECT_FALSE(canvas_->escape());
    mouse_.release(at(6.0, 0.625));
    expect_no_drag();
}

// The wheel

TEST_F(PlotCanvasTest, TheWheelZoomsAboutThePointer) {
    show(k_cover);
    const QPoint place = at(5.1, 0.75);
    EXPECT_TRUE(mouse_.turn_wheel(place, {0, 120}));
    ASSERT_EQ(answers_.size(), 1U);
    EXPECT_TRUE(answers_[0].draw);
    const PlotFrame& frame = screen_.plot()->frame;
    // Eight days by 1/1.25; a place 4.1 days from the edge has 4.1/1.25 before it.
    EXPECT_NEAR(frame.x_max - frame.x_min, 6.4, 0.05);
    EXPECT_NEAR(frame.x_min, basin_.x(1) + 4.1 * 0.2, 0.05);
    EXPECT_EQ(shown(), on_paper());
    EXPECT_EQ(places_.back().x, " X: Oct 5, 2001");
    mouse_.turn_wheel(place, {0, -120});
    EXPECT_FALSE(is_zoomed());
}

TEST_F(PlotCanvasTest, AFineWheelTurnsByPartsOfANotch) {
    show(k_cover);
    for (int part = 0; part < 4; ++part) mouse_.turn_wheel(at(5.0, 0.75), {0, 30});
    const PlotFrame& frame = screen_.plot()->frame;
    EXPECT_NEAR(frame.x_max - frame.x_min, 6.4, 0.05);
}

TEST_F(PlotCanvasTest, ShiftOrASidewaysWheelPans) {
    show(k_cover);
    mouse_.turn_wheel(at(5.0, 0.75), {0, 120});
    const PlotFrame before = screen_.plot()->frame;
    const float tenth = (before.x_max - before.x_min) / 10.0F;
    mouse_.turn_wheel(at(5.0, 0.75), {0, -120}, Qt::ShiftModifier);
    EXPECT_NEAR(screen_.plot()->frame.x_min, before.x_min + tenth, 0.02);
    EXPECT_EQ(screen_.plot()->frame.y_max, before.y_max);
    mouse_.turn_wheel(at(5.0, 0.75), {120, 0});
    EXPECT_NEAR(screen_.plot()->frame.x_min, before.x_min, 0.02);
    mouse_.turn_wheel(at(5.0, 0.75), {120, 0}, Qt::ShiftModifier);
    EXPECT_NEAR(screen_.plot()->frame.x_min, before.x_min - tenth, 0.02);
}

TEST_F(PlotCanvasTest, TheWheelRestsDuringADrag) {
    show(k_cover);
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    mouse_.turn_wheel(at(6.0, 0.625), {0, 120});
    EXPECT_THAT(answers_, IsEmpty());
    EXPECT_TRUE(screen_.drag().dragging());
}

TEST_F(PlotCanvasTest, LeavesTheWheelToOthersWhereItDoesNothing) {
    EXPECT_FALSE(mouse_.turn_wheel({100, 100}, {0, 120}));
    show(PlotNumber::DepletionOverMelt);
    ASSERT_NE(screen_.plot(), nullptr);
    EXPECT_FALSE(mouse_.turn_wheel({100, 100}, {0, 120}));
    EXPECT_THAT(answers_, IsEmpty());
}

TEST_F(PlotCanvasTest, HasANameAndTellsWhatItShows) {
    EXPECT_EQ(canvas_->objectName(), QStringLiteral("Plotframe"));
    EXPECT_EQ(canvas_->accessibleName(), QStringLiteral("Plot"));
    show(k_cover);
    EXPECT_EQ(from_qt(canvas_->accessibleDescription()), plot_words(*screen_.plot()));
    EXPECT_TRUE(from_qt(canvas_->accessibleDescription()).starts_with(screen_.plot()->head.title));
    show(PlotNumber::LagTime);
    EXPECT_EQ(from_qt(canvas_->accessibleDescription()), screen_.fallback()->text);
}

}  // namespace
}  // namespace nivora
