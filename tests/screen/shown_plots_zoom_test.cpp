// The plot window worked by the mouse: the menu bar opens it, the list picks a plot, a drag and the wheel
// zoom.

#include "plots/plot_view.h"
#include "tests/screen/shown_plots_fixture.h"

#include <QAbstractItemView>

namespace nivora {
namespace {

int band_pixels(const QImage& image) {
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == qRgb(255, 0, 0) ? 1 : 0;
    }
    return count;
}

class PlotZoomOnScreenTest : public ShownPlotsTest {
protected:
    /// From January to June, in the lower part of the plot.
    [[nodiscard]] std::pair<QPoint, QPoint> spring(const Plot& plot) const {
        const double height = static_cast<double>(plot.frame.y_max);
        return {at(plot, 100.0, 0.5 * height), at(plot, 240.0, 0.1 * height)};
    }
    /// The plot after a drag.
    [[nodiscard]] Plot zoomed(const Plot& plot, const std::pair<QPoint, QPoint>& corners) const {
        const World world{lay_out_axes(plot, GridMode::None).transform,
                          {static_cast<double>(canvas_->width()), static_cast<double>(canvas_->height())}};
        const auto in_world = [&](QPoint corner) {
            const auto [x, y] =
                world.to_world({static_cast<double>(corner.x()), static_cast<double>(corner.y())});
            return std::pair{std::round(x), y};
        };
        const auto [x1, y1] = in_world(corners.first);
        const auto [x2, y2] = in_world(corners.second);
        return std::get<Plot>(zoom(plot, {.x1 = x1, .x2 = x2, .y1 = y1, .y2 = y2}));
    }
    void click_zoom_in() {
        click(*tool("ZoomIn"));
        point_away();
    }
    /// Whether the drag has ended and the plot is whole.
    void expect_no_zoom(const Plot& whole) {
        point_away();
        EXPECT_TRUE(shows(whole));
    }
};

TEST_F(PlotZoomOnScreenTest, GraphicsShowsTheHydrographAtOnce) {
    EXPECT_TRUE(plots_->isActiveWindow());
    EXPECT_EQ(focused(), "PlotList");
    const Plot hydrograph = built(PlotNumber::Runoff);
    point_away();
    EXPECT_TRUE(shows(hydrograph));
    const QImage seen = picture(*canvas_);
    for (const std::size_t line : {1U, 2U}) EXPECT_GT(pixels_of(seen, colour_of_line(line)), 20) << line;
    keep(*plots_, "shown-plots-hydrograph.png");
    window_->raise();
    window_->activateWindow();
    await_active(*window_);
    window_->move(0, 0);
    plots_->move(150, 250);  // leaves the menu bar free
    settle();
    click_graphics();
    await_active(*plots_);
    EXPECT_EQ(QApplication::topLevelAt(plots_->mapToGlobal(QPoint(30, 60))), plots_);
    EXPECT_TRUE(shows(hydrograph));
}

TEST_F(PlotZoomOnScreenTest, AClickInTheListPicksAPlotAndTheDashesPickNone) {
    click(*list());
    ASSERT_TRUE(await([&] { return list()->view()->isVisible(); }));
    const QAbstractItemView& view = *list()->view();
    const auto entry = [&](int number) {
        return view.visualRect(view.model()->index(number - 1, 0)).center();
    };
    settle();
    click(*view.viewport(), entry(number_of(PlotNumber::Dashes)));
    EXPECT_TRUE(view.isVisible());
    keep(*plots_, "shown-plots-list.png");
    click(*view.viewport(), entry(2));
    ASSERT_TRUE(await([&] { return !view.isVisible(); }));
    EXPECT_EQ(list()->currentIndex(), 1);
    point_away();
    EXPECT_TRUE(shows(built(PlotNumber::SnowCover, session_.basin.ZoneCount + 1)));
    auto* zones = in<QComboBox>(plots_, "ZoneList");
    zones->setFocus();
    press({"Up"});
    EXPECT_EQ(zones->currentIndex(), session_.basin.ZoneCount - 1);
    EXPECT_TRUE(shows(built(PlotNumber::SnowCover, session_.basin.ZoneCount)));
}

TEST_F(PlotZoomOnScreenTest, ADragShowsItsRectangleAndZoomOutTheWhole) {
    const Plot whole = built(PlotNumber::Runoff);
    const auto corners = spring(whole);
    click_zoom_in();
    ASSERT_TRUE(shows(whole));
    EXPECT_EQ(band_pixels(picture(*canvas_)), 0);
    begin_drag(corners.first, corners.second);
    EXPECT_GT(band_pixels(picture(*canvas_)), 100);
    const double day = static_cast<double>(whole.frame.x_min) + 240.0;
    EXPECT_THAT(place("PositionX"), testing::StartsWith(" X: " + month_text(day)));
    EXPECT_THAT(place("PositionY"), testing::MatchesRegex(" Y: +[0-9]+\\.[0-9]+"));
    keep(*plots_, "shown-plots-band.png");
    release_button();
    point_away();
    EXPECT_EQ(place("PositionX"), " ");
    EXPECT_TRUE(shows(zoomed(whole, corners)));
    keep(*plots_, "shown-plots-zoomed.png");
    click(*tool("ZoomOut"));
    expect_no_zoom(whole);
}

TEST_F(PlotZoomOnScreenTest, ADragThatLeavesTheWindowEndsAtItsRelease) {
    const Plot whole = built(PlotNumber::Runoff);
    const auto [from, to] = spring(whole);
    plots_->move(100, 60);
    settle();
    const QPoint outside(canvas_->width() + 60, to.y());
    click_zoom_in();
    begin_drag(from, outside);
    EXPECT_GT(band_pixels(picture(*canvas_)), 100);
    release_button();
    point_away();
    EXPECT_TRUE(shows(zoomed(whole, {from, outside})));
}

TEST_F(PlotZoomOnScreenTest, ASecondButtonOrEscapeEndsADragWithoutAZoom) {
    const Plot whole = built(PlotNumber::Runoff);
    const auto [from, to] = spring(whole);
    for (const bool by_key : {true, false}) {
        SCOPED_TRACE(by_key);
        click_zoom_in();
        begin_drag(from, to);
        ASSERT_GT(band_pixels(picture(*canvas_)), 100);
        if (by_key) {
            press({"Escape"});
        } else {
            press_button(3);
            release_button(3);
        }
        EXPECT_EQ(band_pixels(picture(*canvas_)), 0);
        point(to + QPoint(30, -20));
        release_button();
        expect_no_zoom(whole);
        EXPECT_TRUE(plots_->isVisible());
    }
}

TEST_F(PlotZoomOnScreenTest, AnotherWindowThatTakesTheKeyboardEndsADrag) {
    const Plot whole = built(PlotNumber::Runoff);
    const auto [from, to] = spring(whole);
    window_->move(0, 0);
    plots_->move(150, 250);
    settle();
    click_zoom_in();
    begin_drag(from, to);
    ASSERT_GT(band_pixels(picture(*canvas_)), 100);
    window_->activateWindow();
    ASSERT_TRUE(await([&] { return !plots_->isActiveWindow(); }));
    release_button();
    plots_->activateWindow();
    await_active(*plots_);
    expect_no_zoom(whole);
}

TEST_F(PlotZoomOnScreenTest, TheWheelZoomsAndWithShiftMovesAlongTheDays) {
    const Plot whole = built(PlotNumber::Runoff);
    const QPoint middle = at(whole, 180.0, 0.5 * static_cast<double>(whole.frame.y_max));
    const QPoint left = at(whole, 2.0, 0.5 * static_cast<double>(whole.frame.y_max));
    const auto place_at = [&](QPoint where) {
        point(where);
        return place("PositionX");
    };
    const std::string first = place_at(left);
    point(middle);
    const std::string centre = place("PositionX");
    screen_display()->turn_wheel(true);
    ASSERT_TRUE(await([&] { return picture(*canvas_) != painted(whole); }));
    settle();
    EXPECT_EQ(place("PositionX"), centre) << "the place under the mouse stays";
    EXPECT_NE(place_at(left), first);
    const std::string before = place("PositionX");
    screen_display()->turn_wheel(false, {"shift"});
    EXPECT_TRUE(await([&] { return place("PositionX") != before; }));
    click(*tool("ZoomOut"));
    expect_no_zoom(whole);
}

TEST_F(PlotZoomOnScreenTest, AValueShowsNearACurveAndGoesAway) {
    const Plot whole = built(PlotNumber::Runoff);
    const auto& curve = whole.curves.at(1);
    const auto& on_curve = curve.points.at(curve.points.size() / 2);
    auto* label = in<QLabel>(canvas_, "ValueLabel");
    const QPoint near =
        at(whole, static_cast<double>(on_curve.x - whole.frame.x_min), static_cast<double>(on_curve.y));
    point(near + QPoint(0, -3));
    ASSERT_TRUE(await([&] { return label->isVisible(); }, 3000));
    settle();
    EXPECT_GT(drawn_points(picture(*label)), 100);
    EXPECT_EQ(label->text().count(QLatin1Char('\n')), 2) << from_qt(label->text());
    keep(*plots_, "shown-plots-value.png");
    point_away();
    EXPECT_TRUE(await([&] { return !label->isVisible(); }));
    EXPECT_TRUE(shows(whole));
}

}  // namespace
}  // namespace nivora
