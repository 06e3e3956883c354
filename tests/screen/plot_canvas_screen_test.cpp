// The plot on a display: the rubber band, the pointer, drags that are interrupted, the panels, the label.

#include "paint/plot_picture.h"
#include "tests/screen/screen_fixture.h"
#include "tests/support/shown_plot.h"
#include "windows/plots/plot_panel.h"

#include <QLabel>
#include <QWindow>

namespace nivora {
namespace {

bool is_band_red(QRgb pixel) { return qRed(pixel) > 200 && qGreen(pixel) < 60 && qBlue(pixel) < 60; }

class PlotCanvasOnScreenTest : public WithShownPlot<ScreenTest> {
protected:
    void SetUp() override {
        ScreenTest::SetUp();
        if (IsSkipped()) return;
        window_->move(150, 120);
        window_->show();
        await_active(*window_);
        pick(k_cover);
        settle();
    }
    void TearDown() override {
        if (screen_display() == nullptr) return;
        if (QApplication::mouseButtons().testFlag(Qt::LeftButton)) screen_display()->button_up(1);
        screen_display()->point_at(5, 5);
        settle();
    }

    /// Moves the mouse to a place on the canvas, or around it.
    void point(QPoint place) {
        const QPoint at = canvas_->mapToGlobal(place);
        screen_display()->point_at(at.x(), at.y());
        await([&] { return QCursor::pos() == at; });
        settle();
    }
    void press_button(int button = 1) {
        const Qt::MouseButton expected = button == 1 ? Qt::LeftButton : Qt::RightButton;
        screen_display()->button_down(button);
        ASSERT_TRUE(await([&] { return QApplication::mouseButtons().testFlag(expected); }));
        settle();
    }
    void release_button(int button = 1) {
        const Qt::MouseButton expected = button == 1 ? Qt::LeftButton : Qt::RightButton;
        screen_display()->button_up(button);
        ASSERT_TRUE(await([&] { return !QApplication::mouseButtons().testFlag(expected); }));
        settle();
    }
    void begin_drag(QPoint from, QPoint to) {
        screen_.zoom_in();
        canvas_->show_pointer();
        point(from);
        press_button();
        point((from + to) / 2);
        point(to);
        ASSERT_TRUE(screen_.drag().band());
    }
    [[nodiscard]] int red_pixels() const {
        const QImage image = picture(*canvas_);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) count += is_band_red(image.pixel(x, y)) ? 1 : 0;
        }
        return count;
    }
    /// The pointer that the display shows over our window.
    [[nodiscard]] Qt::CursorShape pointer() const { return window_->windowHandle()->cursor().shape(); }
    [[nodiscard]] QImage on_paper() const {
        DrawOptions options = canvas_->draw_options();
        options.legend = true;
        options.summary = canvas_->shows_summary();
        return plot_image(*screen_.plot(), options, canvas_->picture_size());
    }
    [[nodiscard]] bool shows_band() const { return red_pixels() > 50; }
    void expect_no_drag() {
        EXPECT_FALSE(screen_.drag().armed());
        EXPECT_FALSE(screen_.drag().dragging());
        EXPECT_EQ(red_pixels(), 0);
        EXPECT_FALSE(is_zoomed());
    }
};

TEST_F(PlotCanvasOnScreenTest, TheBandIsSeenWhileTheButtonIsDown) {
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    const QImage band = picture(*canvas_);
    int on_edge = 0;
    for (int x = at(3.0, 0.875).x(); x <= at(6.0, 0.875).x(); ++x) {
        bool red = false;
        for (int y = -1; y <= 1; ++y) red = red || is_band_red(band.pixel(x, at(3.0, 0.875).y() + y));
        on_edge += red ? 1 : 0;
    }
    EXPECT_GT(on_edge, (at(6.0, 0.875).x() - at(3.0, 0.875).x()) / 5);
    const int large = red_pixels();
    point(at(4.0, 0.8));
    EXPECT_LT(red_pixels(), large) << "the former band is gone";
    EXPECT_GT(red_pixels(), 0);
    point(at(6.0, 0.625));
    release_button();
    EXPECT_TRUE(is_zoomed());
    EXPECT_EQ(red_pixels(), 0);
    EXPECT_EQ(picture(*canvas_), on_paper());
}

TEST_F(PlotCanvasOnScreenTest, ThePointerIsAMagnifierWhileTheZoomIsArmed) {
    point(at(3.0, 0.55));
    EXPECT_EQ(pointer(), Qt::ArrowCursor);
    screen_.zoom_in();
    canvas_->show_pointer();
    settle();
    EXPECT_EQ(pointer(), Qt::BitmapCursor);
    press({"Escape"});  // nobody listens to it here
    EXPECT_EQ(pointer(), Qt::BitmapCursor);
    canvas_->escape();
    settle();
    EXPECT_EQ(pointer(), Qt::ArrowCursor);
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    release_button();
    EXPECT_EQ(pointer(), Qt::ArrowCursor);
}

TEST_F(PlotCanvasOnScreenTest, ADragGoesOnOutsideTheWindow) {
    begin_drag(at(3.0, 0.875), QPoint(canvas_->width() + 90, canvas_->height() + 120));
    EXPECT_TRUE(shows_band());
    point(QPoint(canvas_->width() + 100, canvas_->height() + 150));
    release_button();
    EXPECT_TRUE(is_zoomed());
    EXPECT_EQ(screen_.plot()->frame.x_min, basin_.x(3));
    EXPECT_GT(screen_.plot()->frame.x_max, basin_.x(9));
    EXPECT_EQ(places_.back(), (BoxTexts{" ", " "})) << "the mouse is outside";
}

TEST_F(PlotCanvasOnScreenTest, AnotherWindowInFrontEndsADrag) {
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    QWidget other;
    other.resize(200, 100);
    other.move(1050, 800);
    other.show();
    other.activateWindow();
    ASSERT_TRUE(await([&] { return !window_->isActiveWindow(); }));
    settle();
    expect_no_drag();
    point(at(7.0, 0.6));
    release_button();
    expect_no_drag();
}

TEST_F(PlotCanvasOnScreenTest, ASecondButtonEndsADrag) {
    begin_drag(at(3.0, 0.875), at(6.0, 0.625));
    press_button(3);
    expect_no_drag();
    release_button(3);
    point(at(7.0, 0.6));
    release_button();
    expect_no_drag();
    EXPECT_EQ(pointer(), Qt::ArrowCursor);
}

TEST_F(PlotCanvasOnScreenTest, ThePanelFollowsTheMouse) {
    auto* legend = canvas_->findChild<PlotPanel*>(QStringLiteral("Frame2"));
    const QPoint before = legend->pos();
    const QPoint grip = before + QPoint(3, 3);
    point(grip);
    EXPECT_EQ(pointer(), Qt::OpenHandCursor);
    press_button();
    point(grip + QPoint(-150, 40));
    point(grip + QPoint(-300, 80));
    EXPECT_EQ(pointer(), Qt::ClosedHandCursor);
    EXPECT_EQ(legend->pos(), before + QPoint(-300, 80));
    release_button();
    EXPECT_EQ(pointer(), Qt::OpenHandCursor);
    EXPECT_EQ(screen_.legend_place()->x, legend->frame().x());
    point({4, 4});
    EXPECT_EQ(picture(*canvas_), on_paper());
}

TEST_F(PlotCanvasOnScreenTest, AClickOnANameChoosesItsLine) {
    auto* name = canvas_->findChild<QLabel*>(QStringLiteral("Label4(1)"));
    point(middle_of(*name));
    EXPECT_EQ(pointer(), Qt::PointingHandCursor);
    press_button();
    release_button();
    EXPECT_THAT(lines_, testing::ElementsAre(2));
    EXPECT_THAT(line_places_, testing::ElementsAre(canvas_->mapToGlobal(middle_of(*name))));
}

TEST_F(PlotCanvasOnScreenTest, ALabelShowsTheValueUnderARestingMouse) {
    auto* label = canvas_->findChild<QLabel*>(QStringLiteral("ValueLabel"));
    point(at(4.0, 0.75) + QPoint(2, 2));  // zone B: 1 - 4/16
    ASSERT_TRUE(await([&] { return label->isVisible(); }, 2000));
    settle();
    const QImage seen = picture(*label);
    EXPECT_EQ(main_colour(seen), QToolTip::palette().color(QPalette::ToolTipBase).rgb() & 0xFFFFFFU);
    EXPECT_GT(drawn_points(seen), 100);
    EXPECT_EQ(label->text().section(QLatin1Char('\n'), 1, 1), QStringLiteral("Oct 4, 2001"));
    auto* legend = canvas_->findChild<PlotPanel*>(QStringLiteral("Frame2"));
    point(legend->pos() + QPoint(3, 3));
    EXPECT_FALSE(label->isVisible());
    EXPECT_EQ(places_.back(), (BoxTexts{" ", " "}));
    EXPECT_EQ(picture(*canvas_), on_paper());
}

TEST_F(PlotCanvasOnScreenTest, TheWheelZoomsAndPans) {
    point(at(5.0, 0.6));
    screen_display()->turn_wheel(true);
    ASSERT_TRUE(await([&] { return is_zoomed(); }));
    const PlotFrame zoomed = screen_.plot()->frame;
    screen_display()->turn_wheel(false, {"shift"});
    ASSERT_TRUE(await([&] { return screen_.plot()->frame.x_min > zoomed.x_min; }));
    EXPECT_NEAR(screen_.plot()->frame.x_max - screen_.plot()->frame.x_min, zoomed.x_max - zoomed.x_min, 0.02);
    settle();
    EXPECT_EQ(picture(*canvas_), on_paper());
}

}  // namespace
}  // namespace nivora
