// The plot window with many zones, as small and as large as it gets.
#include "tests/windows/plots/plot_window_fixture.h"

#include <QImage>
#include <set>

namespace nivora {
namespace {

constexpr int k_most = 16;

class PlotWindowSizesTest : public PlotWindowTest {
protected:
    PlotWindowSizesTest() : PlotWindowTest(k_most) {
        small_.write_results([](SimResults& t, std::size_t row, int zone, int day) {
            t.ActualQ[row] = 10.0F * static_cast<float>(day);
            t.DailyQ[row] = 5.0 * day;
            t.SCA[row] = 1.0F - 0.0625F * static_cast<float>(day);
            t.ZonalMelt[row] = 0.5F;
            t.NewMelt[row] = 0.25F;
            t.M1S[row] = 0.25F;
            t.Precip[row] = 2.0F;
            t.AZMexclWA[row] = 0.0F;
            t.Cpr[row] = 0.125F * static_cast<float>(zone);
        });
    }

    QImage resized(QSize size) {
        window_->resize(size);
        QTest::qWait(1);
        return canvas().grab().toImage();
    }
    QRect panel(const char* name) { return in<>(name)->geometry(); }
    /// How many colours a picture has on some of its lines.
    static std::size_t colours_of(const QImage& picture) {
        std::set<QRgb> colours;
        for (int y = 0; y < picture.height(); y += 1 + picture.height() / 50) {
            for (int x = 0; x < picture.width(); ++x) colours.insert(picture.pixel(x, y));
        }
        return colours.size();
    }
};

TEST_F(PlotWindowSizesTest, TheLegendHasRoomForEachOfSixteenZones) {
    open();
    pick(k_snow_cover);
    std::set<int> lines;
    QStringList texts;
    for (const QLabel* name : in<>("Frame2")->findChildren<QLabel*>()) {
        if (!name->isVisible() || name->text().isEmpty()) continue;
        texts << name->text();
        lines.insert(name->y());
        EXPECT_TRUE(in<>("Frame2")->rect().contains(name->geometry())) << from_qt(name->text());
        EXPECT_GE(name->width(), name->sizeHint().width() / 2) << from_qt(name->text());
    }
    EXPECT_EQ(texts.size(), k_most) << from_qt(texts.join(QStringLiteral(", ")));
    EXPECT_EQ(lines.size(), static_cast<std::size_t>(k_most)) << "one below the other";
}

TEST_F(PlotWindowSizesTest, PlotsAndPanelsStandInTheLargestAndTheSmallestWindow) {
    open();
    for (const PlotNumber plot : {PlotNumber::Runoff, k_snow_cover, PlotNumber::RunoffComponents}) {
        pick(plot);
        ASSERT_NE(screen_.plot(), nullptr) << number_of(plot);
        for (const QSize size : {QSize(3840, 2160), window_->minimumSize(), QSize(1, 1), QSize(3840, 200)}) {
            const QImage picture = resized(size);
            EXPECT_GT(colours_of(picture), 3U) << number_of(plot) << " at " << size.width();
            for (const char* name : {"Frame2", "Frame3"}) {
                if (!in<>(name)->isVisible()) continue;
                const QRect inside = canvas().rect();
                EXPECT_TRUE(inside.contains(panel(name).topLeft())) << name << " at " << size.width();
                EXPECT_TRUE(inside.contains(panel(name).bottomRight()) ||
                            panel(name).height() > inside.height() || panel(name).width() > inside.width())
                    << name << " at " << size.width();
            }
        }
        const QImage again = resized(QSize(1000, 700));
        EXPECT_GT(colours_of(again), 3U) << number_of(plot);
    }
    EXPECT_TRUE(dialogs_.messages().empty());
}

}  // namespace
}  // namespace nivora
