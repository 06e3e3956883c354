// The label that reads a value off a plot.

#include "windows/plots/value_label.h"

#include "tests/windows/plots/plot_canvas_fixture.h"
#include "widgets/qt_text.h"

#include <QToolTip>
#include <cmath>

namespace nivora {
namespace {

class PlotValueTest : public PlotCanvasTest {};

TEST_F(PlotValueTest, ALabelReadsAValueWhereTheMouseRests) {
    show(k_cover);
    // Zone B on the third day: 1 - 3/16.
    const QPoint place = at(3.0, 0.8125);
    mouse_.move(place + QPoint(2, 3));
    EXPECT_FALSE(label()->isVisible()) << "before the mouse rests";
    QTest::qWait(k_rest_ms + 60);
    ASSERT_TRUE(label()->isVisible());
    const QStringList lines = label()->text().split(QLatin1Char('\n'));
    ASSERT_EQ(lines.size(), 3);
    EXPECT_TRUE(lines[0].startsWith(QStringLiteral("Zone B"))) << from_qt(lines[0]);
    EXPECT_EQ(from_qt(lines[1]), "Oct 3, 2001");
    EXPECT_EQ(from_qt(lines[2].trimmed()), "0.8125");
    EXPECT_TRUE(canvas_->rect().contains(label()->geometry()));
    EXPECT_FALSE(label()->geometry().adjusted(-12, -12, 12, 12).contains(place));
    EXPECT_NE(shown(), on_paper()) << "a ring marks the point";
}

TEST_F(PlotValueTest, AShownLabelFollowsTheMouseAtOnce) {
    show(k_cover);
    rest_at(at(3.0, 0.8125));
    const QPoint before = label()->pos();
    mouse_.move(at(3.0, 0.8125) + QPoint(4, 0));
    EXPECT_EQ(label()->pos(), before + QPoint(4, 0));
    mouse_.move(at(3.0, 0.8125) + QPoint(0, 30));
    EXPECT_FALSE(label()->isVisible());
    EXPECT_EQ(shown(), on_paper());
}

TEST_F(PlotValueTest, TheLabelGoesAwayWithWhatItIsAbout) {
    show(k_cover);
    const QPoint place = at(3.0, 0.8125);
    QEvent leave(QEvent::Leave);
    QEvent deactivation(QEvent::WindowDeactivate);
    const std::vector<std::function<void()>> ends{
        [&] { QApplication::sendEvent(canvas_, &leave); },
        [&] { QApplication::sendEvent(canvas_, &deactivation); },
        [&] { canvas_->redraw(); },
        [&] { mouse_.click(place); },
        [&] {
            mouse_.turn_wheel(place, {0, 120});
        },
    };
    for (const auto& end : ends) {
        rest_at(place);
        ASSERT_TRUE(label()->isVisible());
        end();
        EXPECT_FALSE(label()->isVisible());
        EXPECT_EQ(shown(), on_paper());
        QTest::qWait(k_rest_ms + 60);
        EXPECT_FALSE(label()->isVisible());
    }
}

TEST_F(PlotValueTest, NoLabelShowsWithAButtonDownOrFarFromCurves) {
    show(k_cover);
    rest_at(at(3.0, 0.55));
    EXPECT_FALSE(label()->isVisible());
    mouse_.press(at(3.0, 0.55));
    rest_at(at(3.0, 0.8125));
    EXPECT_FALSE(label()->isVisible());
}

TEST_F(PlotValueTest, NoLabelShowsWhileThePointerAsksOrWaits) {
    show(k_cover);
    QApplication::setOverrideCursor(Qt::WhatsThisCursor);
    rest_at(at(3.0, 0.8125));
    EXPECT_FALSE(label()->isVisible());
    QApplication::restoreOverrideCursor();
    rest_at(at(3.0, 0.8125));
    EXPECT_TRUE(label()->isVisible());
}

TEST_F(PlotValueTest, TheLabelHasTheColoursOfToolTips) {
    show(k_cover);
    const QPalette usual = QToolTip::palette();
    for (const auto& [ground, text] : {std::pair{QColor(255, 255, 220), QColor(Qt::black)},
                                       std::pair{QColor(30, 30, 40), QColor(240, 240, 240)}}) {
        QPalette palette = usual;
        palette.setColor(QPalette::ToolTipBase, ground);
        palette.setColor(QPalette::ToolTipText, text);
        QToolTip::setPalette(palette);
        rest_at(at(3.0, 0.8125) + QPoint(ground.red() % 2, 0));
        ASSERT_TRUE(label()->isVisible());
        const QImage picture = shown().copy(label()->geometry());
        EXPECT_EQ(picture.pixelColor(2, picture.height() / 2), ground);
        int letters = 0;
        for (int x = 4; x < picture.width() - 4; ++x) {
            for (int y = 4; y < picture.height() - 4; ++y)
                letters += std::abs(picture.pixelColor(x, y).lightness() - text.lightness()) < 40 ? 1 : 0;
        }
        EXPECT_GT(letters, 30);
    }
    QToolTip::setPalette(usual);
}

}  // namespace
}  // namespace nivora
