// The plot window over a run of the sample basin, on a real display, and a mouse that works it.
#pragma once

#include "paint/plot_picture.h"
#include "plots/axes.h"
#include "plots/draw_plot.h"
#include "plots/select_plot.h"
#include "tests/screen/climate_screen_fixture.h"
#include "windows/plots/plot_canvas.h"

#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QToolButton>
#include <string>
#include <utility>
#include <variant>

namespace nivora {

/// The sample basin was run; the plot window is open and shows the hydrograph.
class ShownPlotsTest : public ClimateOnScreenTest {
protected:
    void SetUp() override {
        ClimateOnScreenTest::SetUp();
        if (IsSkipped()) return;
        choose("mnuRunSimVar(1)");
        QWidget* results = await_window("Results");
        ASSERT_NE(results, nullptr);
        results->close();
        await_active(*window_);
        click_graphics();
        plots_ = await_window("frmNVRPlot");
        ASSERT_NE(plots_, nullptr);
        await_active(*plots_);
        canvas_ = in<PlotCanvas>(plots_, "Plotframe");
        ASSERT_NE(canvas_, nullptr);
    }
    void TearDown() override {
        if (screen_display() != nullptr) {
            if (QApplication::mouseButtons().testFlag(Qt::LeftButton)) screen_display()->button_up(1);
            screen_display()->point_at(5, 5);
        }
        ClimateOnScreenTest::TearDown();
    }

    /// Clicks Graphics on the menu bar of the main window.
    void click_graphics() {
        const QRect place = window_->menuBar()->actionGeometry(find<QAction>("mnuWinGraphics"));
        click(*window_->menuBar(), place.center());
    }
    [[nodiscard]] QToolButton* tool(const char* name) const { return in<QToolButton>(plots_, name); }
    [[nodiscard]] QComboBox* list() const { return in<QComboBox>(plots_, "PlotList"); }
    [[nodiscard]] std::string place(const char* label) const {
        return from_qt(in<QLabel>(plots_, label)->text());
    }
    [[nodiscard]] std::string box_text(const char* box) const {
        return from_qt(in<QLineEdit>(plots_, box)->text());
    }

    // The mouse

    /// Moves the mouse to a place on an element, or around it.
    static void point(const QWidget& element, QPoint where) {
        const QPoint at = element.mapToGlobal(where);
        screen_display()->point_at(at.x(), at.y());
        EXPECT_TRUE(await([&] { return QCursor::pos() == at; }));
        settle();
    }
    void point(QPoint where) const { point(*canvas_, where); }
    /// Moves the mouse off the plot, whose picture then has no label.
    void point_away() const { point(*plots_, {plots_->width() / 2, plots_->height() - 4}); }
    static void press_button(int button = 1) {
        screen_display()->button_down(button);
        EXPECT_TRUE(await([&] { return QApplication::mouseButtons().testFlag(flag(button)); }));
        settle();
    }
    static void release_button(int button = 1) {
        screen_display()->button_up(button);
        EXPECT_TRUE(await([&] { return !QApplication::mouseButtons().testFlag(flag(button)); }));
        settle();
    }
    void begin_drag(QPoint from, QPoint to) const {
        point(from);
        press_button();
        point((from + to) / 2);
        point(to);
    }

    // What is expected

    /// A plot as the basin's file has it now.
    [[nodiscard]] Plot built(PlotNumber number, std::optional<int> zone = {}) const {
        BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
        PlotOutcome outcome =
            select_plot(database, {.plot = number, .zone = zone}, {session_.basin, session_.run, true});
        return std::get<Plot>(std::move(outcome));
    }
    /// A plot with its panels, as the window has to show it.
    [[nodiscard]] QImage painted(const Plot& plot) const {
        DrawOptions options = canvas_->draw_options();
        options.legend = true;
        options.summary = canvas_->shows_summary();
        return plot_image(plot, options, canvas_->picture_size());
    }
    /// Waits until the screen shows a plot to the pixel.
    [[nodiscard]] bool shows(const Plot& plot) const {
        return await([&] { return picture(*canvas_) == painted(plot); }, 5000);
    }
    /// Where a day, counted from the first one, and a value stand on the canvas.
    [[nodiscard]] QPoint at(const Plot& plot, double day, double value) const {
        const World world{lay_out_axes(plot, GridMode::None).transform,
                          {static_cast<double>(canvas_->width()), static_cast<double>(canvas_->height())}};
        const SurfacePoint place = world.to_surface(static_cast<double>(plot.frame.x_min) + day, value);
        return {qRound(place.x), qRound(place.y)};
    }
    /// The number of pixels in the colour of a line.
    [[nodiscard]] static int pixels_of(const QImage& image, Colour colour) {
        const QRgb wanted = qRgb(colour & 0xFF, (colour >> 8) & 0xFF, (colour >> 16) & 0xFF);
        int count = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x) count += image.pixel(x, y) == wanted ? 1 : 0;
        }
        return count;
    }
    [[nodiscard]] Colour colour_of_line(std::size_t line) const {
        return session_.settings.lines.at(line - 1).colour;
    }

    QWidget* plots_ = nullptr;
    PlotCanvas* canvas_ = nullptr;

private:
    static Qt::MouseButton flag(int button) { return button == 1 ? Qt::LeftButton : Qt::RightButton; }
};

}  // namespace nivora
