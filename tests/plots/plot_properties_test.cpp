// Rules of axes, curves and drawing that hold for any plot.
#include "plots/axes.h"
#include "plots/curve_walk.h"
#include "plots/draw_head.h"
#include "plots/draw_plot.h"
#include "plots/legend.h"
#include "plots/plot_view.h"
#include "tests/plots/plot_values.h"
#include "tests/support/random_trials.h"
#include "tests/support/recording_surface.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <cmath>

namespace nivora {
namespace {

bool inside(const PlotPoint& point, const PlotFrame& frame) {
    return point.x >= frame.x_min && point.x <= frame.x_max && point.y >= frame.y_min &&
           point.y <= frame.y_max;
}

/// A surface that keeps the boxes of its texts.
class TextBoxes : public RecordingSurface {
public:
    using RecordingSurface::RecordingSurface;
    void text(SurfacePoint top_left, std::string_view text, const PlotFont& font, Colour colour) override {
        const SurfaceSize extent = text_size(text, font);
        boxes.push_back({top_left.x, top_left.y, extent.width, extent.height});
        RecordingSurface::text(top_left, text, font, colour);
    }
    std::vector<SurfaceRectangle> boxes;
};

class PlotProperties : public RandomTrials<testing::Test> {
protected:
    PlotNumber any_number() {
        int number = whole_between(1, k_last_plot);
        if (number == number_of(PlotNumber::Dashes)) number = 1;
        return static_cast<PlotNumber>(number);
    }

    PlotFrame any_frame() {
        const bool near = by_chance(0.3);
        const float x_min = static_cast<float>(whole_between(30'000, 40'000));
        const float y_min = by_chance(0.5) ? 0.0F : static_cast<float>(between(-30.0, 30.0));
        return frame_of(x_min, x_min + static_cast<float>(whole_between(1, near ? 20 : 900)), y_min,
                        y_min + static_cast<float>(std::pow(10.0, between(-2.0, 6.0))));
    }

    /// Days of a frame and some around it, now and then without a value, zero or beyond the frame.
    PlotCurve any_curve(const PlotFrame& frame, int line) {
        PlotCurve curve = curve_of(std::string{"Zone "} + static_cast<char>('A' + line - 1), {}, line);
        const int points = whole_between(0, 60);
        float x = frame.x_min - static_cast<float>(whole_between(0, 5));
        for (int i = 0; i < points; ++i, x += static_cast<float>(whole_between(0, 3)))
            curve.points.push_back({x, any_value(frame)});
        return curve;
    }

    float any_value(const PlotFrame& frame) {
        if (by_chance(0.1)) return k_missing;
        if (by_chance(0.3)) return 0.0F;
        const double range = as_double(frame.y_max) - as_double(frame.y_min);
        return static_cast<float>(as_double(frame.y_min) + between(-0.2, 1.2) * range);
    }

    std::string letters(int most, char letter) {
        return std::string(static_cast<std::size_t>(whole_between(0, most)), letter);
    }

    Plot any_plot() {
        Plot plot = plot_of(any_number(), any_frame());
        const int curves = plot.number == PlotNumber::RunoffComponents ? 3 : whole_between(1, 16);
        for (int line = 1; line <= curves; ++line) plot.curves.push_back(any_curve(plot.frame, line));
        plot.head.title = letters(60, 'T');
        plot.head.subtitle = letters(300, 's');
        plot.head.scenario_line = letters(200, 'c');
        plot.head.period = by_chance(0.5) ? PeriodLine::ToDayBefore : PeriodLine::None;
        plot.head.zone_label = "Zone A (Basinwide)";
        plot.head.step = whole_between(0, 6);
        plot.head.run_kind = by_chance(0.5) ? "Melt Season Forecast" : "";
        plot.head.update_interval = whole_between(0, 1) * 7;
        plot.head.no_snow = by_chance(0.5);
        plot.y_label = " (cm)";
        plot.x_label = has_number_axis(plot.number) ? " (cm)" : "";
        if (shows_runoff(plot.number))
            plot.summary.assign(6, {.caption = "Measured Runoff Volume (10  m³)", .value = "1.5", .line = 1});
        name_curves(plot);
        return plot;
    }

    SurfaceSize any_size() { return {between(400.0, 2000.0), between(300.0, 1200.0)}; }
};

TEST_F(PlotProperties, EveryPointInsideIsInAStrokeOrADotAndNoOtherIs) {
    try_often(500, [&] {
        const PlotFrame frame = any_frame();
        const PlotCurve curve = any_curve(frame, 1);
        const CurveStrokes strokes = walk_curve(curve, frame);
        std::vector<PlotPoint> drawn = strokes.dots;
        for (const std::vector<PlotPoint>& line : strokes.lines) {
            EXPECT_GE(line.size(), 2U);
            drawn.insert(drawn.end(), line.begin(), line.end());
        }
        std::vector<PlotPoint> expected;
        std::copy_if(curve.points.begin(), curve.points.end(), std::back_inserter(expected),
                     [&](const PlotPoint& point) { return inside(point, frame); });
        EXPECT_EQ(strokes.circles, expected);
        const auto before = [](const PlotPoint& a, const PlotPoint& b) {
            return a.x < b.x || (a.x == b.x && a.y < b.y);
        };
        std::sort(drawn.begin(), drawn.end(), before);
        std::sort(expected.begin(), expected.end(), before);
        EXPECT_EQ(drawn, expected);
    });
}

TEST_F(PlotProperties, TicksOfNumbersLieInTheFrame) {
    try_often(500, [&] {
        const Plot plot = any_plot();
        const PlotAxes axes = lay_out_axes(plot, GridMode::Both);
        EXPECT_FALSE(axes.y_ticks.empty());
        EXPECT_LE(axes.y_ticks.size(), 2000U);
        for (const YTick& tick : axes.y_ticks) {
            EXPECT_GE(tick.y, plot.frame.y_min);
            EXPECT_LE(tick.y, plot.frame.y_max);
        }
        for (const XTick& tick : axes.x_ticks) {
            EXPECT_GE(tick.x, plot.frame.x_min);
            EXPECT_TRUE(!tick.line || tick.x <= plot.frame.x_max + 0.5F) << tick.x;
        }
        EXPECT_EQ(axes.grid_y.size(), axes.y_ticks.size());
    });
}

TEST_F(PlotProperties, AZoomIntoTheWholeFrameChangesNothing) {
    try_often(300, [&] {
        Plot plot = any_plot();
        plot.frame.y_min = std::max(plot.frame.y_min, 0.0F);
        if (has_no_data(plot)) return;
        const auto outcome = zoom(plot, {.x1 = as_double(plot.frame.x_min),
                                         .x2 = as_double(plot.frame.x_max),
                                         .y1 = as_double(plot.frame.y_min),
                                         .y2 = as_double(plot.frame.y_max)});
        if (std::holds_alternative<PlotRefusal>(outcome)) {
            for (const PlotCurve& curve : plot.curves)
                EXPECT_TRUE(walk_curve(curve, plot.frame).circles.empty());
            return;
        }
        const auto record = [](const Plot& shown) {
            RecordingSurface surface{{1200.0, 600.0}};
            draw(surface, shown, {.data_points = true, .legend = true});
            return surface.record();
        };
        EXPECT_EQ(record(std::get<Plot>(outcome)), record(plot));
    });
}

TEST_F(PlotProperties, NoTextIsCutAndNoHeadTextCoversAnother) {
    try_often(200, [&] {
        const Plot plot = any_plot();
        TextBoxes surface{any_size()};
        draw(surface, plot, {.legend = true, .summary = true});
        for (const SurfaceRectangle& box : surface.boxes) {
            EXPECT_GE(box.left, -1e-6);
            EXPECT_GE(box.top, -1e-6);
            EXPECT_LE(box.left + box.width, surface.size().width + 1e-6);
            EXPECT_LE(box.top + box.height, surface.size().height + 1e-6);
        }
        const std::vector<PlacedText> head = head_texts(surface, plot, 46348.0);
        for (std::size_t i = 0; i < head.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j)
                EXPECT_FALSE(overlap(head[i].box, head[j].box)) << head[i].text << " and " << head[j].text;
        }
    });
}

/// A surface that keeps the places of the texts that stand in one line with each other.
class TextLines : public TextBoxes {
public:
    using TextBoxes::TextBoxes;
    /// The boxes of the lowest line, from the left.
    [[nodiscard]] std::vector<SurfaceRectangle> lowest() const {
        std::vector<SurfaceRectangle> line;
        double top = 0.0;
        for (const SurfaceRectangle& box : boxes) top = std::max(top, box.top);
        std::copy_if(boxes.begin(), boxes.end(), std::back_inserter(line),
                     [&](const SurfaceRectangle& box) { return box.top == top; });
        std::sort(line.begin(), line.end(), [](const auto& a, const auto& b) { return a.left < b.left; });
        return line;
    }
};

TEST_F(PlotProperties, NoLabelOfTheXAxisTouchesAnother) {
    try_often(500, [&] {
        Plot plot = any_plot();
        plot.curves.clear();
        const double days = std::pow(10.0, between(0.0, 4.3));
        plot.frame.x_max = plot.frame.x_min + static_cast<float>(std::ceil(days));
        TextLines surface{{between(100.0, 2000.0), between(150.0, 1200.0)}};
        draw(surface, plot, {});
        const std::vector<SurfaceRectangle> labels = surface.lowest();
        EXPECT_FALSE(labels.empty());
        for (std::size_t i = 1; i < labels.size(); ++i)
            EXPECT_GE(labels[i].left, labels[i - 1].left + labels[i - 1].width + 1.0);
    });
}

TEST_F(PlotProperties, PanelsAreOnTheSurfaceAndApartFromEachOther) {
    try_often(200, [&] {
        Plot plot = any_plot();
        plot.curves.resize(std::min<std::size_t>(plot.curves.size(), 4));
        name_curves(plot);
        const RecordingSurface surface{{between(800.0, 2000.0), between(450.0, 1200.0)}};
        const SurfaceRectangle legend = legend_rectangle(surface, plot, {});
        const SurfaceRectangle summary = summary_rectangle(surface, plot, {});
        for (const SurfaceRectangle& box : {legend, summary}) {
            EXPECT_GE(box.left, 0.0);
            EXPECT_GE(box.top, 0.0);
            EXPECT_LE(box.left + box.width, surface.size().width);
            EXPECT_LE(box.top + box.height, surface.size().height);
        }
        EXPECT_FALSE(overlap(legend, summary));
        for (const PlacedText& text : head_texts(surface, plot, 0.0)) EXPECT_FALSE(overlap(text.box, legend));
    });
}

TEST_F(PlotProperties, ALegendHasARowForEachNameAndAnotherForATotal) {
    try_often(300, [&] {
        const Plot plot = any_plot();
        const std::size_t totals =
            plot.number == PlotNumber::RunoffComponents || plot.number == PlotNumber::WaterEquivalent ? 1 : 0;
        EXPECT_EQ(plot.legend.size(), plot.curves.size() + totals);
    });
}

}  // namespace
}  // namespace nivora
