// The surface of the plot window without a display, with its mouse.
#pragma once

#include "paint/plot_picture.h"
#include "tests/shell/main_window_fixture.h"
#include "tests/support/shown_plot.h"

#include <gmock/gmock.h>

#include <QLabel>
#include <QTest>

namespace nivora {

inline constexpr int k_rest_ms = 150;

[[nodiscard]] inline bool is_red(QRgb pixel) {
    return qRed(pixel) > 200 && qGreen(pixel) < 60 && qBlue(pixel) < 60;
}

class PlotCanvasTest : public WithShownPlot<OffscreenTest> {
protected:
    PlotCanvasTest() {
        window_->show();
        settle();
    }

    void show(PlotNumber plot) {
        pick(plot);
        settle();
    }
    [[nodiscard]] QImage shown() { return canvas_->grab().toImage().convertToFormat(QImage::Format_RGB32); }
    /// What the picture files show in the size of the canvas.
    [[nodiscard]] QImage on_paper() {
        DrawOptions options = canvas_->draw_options();
        options.legend = true;
        options.summary = canvas_->shows_summary();
        return plot_image(*screen_.plot(), options, canvas_->picture_size());
    }
    [[nodiscard]] int red_pixels(const QRect& part) {
        const QImage image = shown();
        int count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x) count += is_red(image.pixel(x, y)) ? 1 : 0;
        }
        return count;
    }
    /// Arms the zoom and drags from one place to another, with the button still down.
    void begin_drag(QPoint from, QPoint to) {
        ASSERT_TRUE(screen_.zoom_in());
        canvas_->show_pointer();
        mouse_.press(from);
        mouse_.move((from + to) / 2);
        mouse_.move(to);
        ASSERT_TRUE(screen_.drag().band());
    }
    void expect_no_drag() {
        EXPECT_FALSE(screen_.drag().armed());
        EXPECT_FALSE(screen_.drag().dragging());
        EXPECT_EQ(canvas_->cursor().shape(), Qt::ArrowCursor);
        EXPECT_EQ(red_pixels(canvas_->rect()), 0);
        EXPECT_FALSE(is_zoomed());
        EXPECT_TRUE(answers_.empty());
    }
    [[nodiscard]] QLabel* label() { return canvas_->findChild<QLabel*>(QStringLiteral("ValueLabel")); }
    void rest_at(QPoint place) {
        mouse_.move(place);
        QTest::qWait(k_rest_ms + 60);
    }

    CanvasMouse mouse_{*canvas_};
};

}  // namespace nivora
