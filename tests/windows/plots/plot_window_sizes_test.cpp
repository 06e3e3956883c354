// The plot window with many zones, as small and as large as it gets.
#include "paint/image_surface.h"
#include "plots/draw_panels.h"
#include "tests/windows/plots/plot_window_fixture.h"
#include "windows/plots/plot_panels.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
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

/// The letters of the first zones, as their names end.
std::vector<std::string> names_of_zones(int count) {
    std::vector<std::string> names;
    for (int zone = 1; zone <= count; ++zone) names.push_back("Zone " + zone_letter(zone));
    return names;
}

/// Sixteen zones with values for each plot of a run that shows all zones.
class PlotWindowLegendTest : public PlotWindowSizesTest {
protected:
    PlotWindowLegendTest() {
        small_.file.open().execute("UPDATE PhysicalData SET Tmax = 10 + Zone + Date % 8, Tmin = Zone");
        small_.write_parameters([](ParameterRow& row, int zone, int day) {
            const auto value = static_cast<float>(day + zone);
            row.tcrit = row.lag_hours = row.lapse_rate = row.an = value;
            row.cs = row.cr = value / 100.0F;
            row.rca = std::int16_t{1};
        });
        small_.write_results([](SimResults& t, std::size_t row, int zone, int day) {
            t.ActualQ[row] = 10.0F * static_cast<float>(day);
            t.DailyQ[row] = 5.0 * day;
            t.ZoneDD[row] = t.SumAT[row] = static_cast<float>(day + zone);
        });
    }

    /// The measures of a plot's texts as the program paints them, with `ratio` pixels to a point.
    template <typename Check>
    static void on_surface(SurfaceSize size, double ratio, Check&& check) {
        QImage paper(1, 1, QImage::Format_RGB32);
        QPainter painter(&paper);
        painter.scale(ratio, ratio);
        check(PaintedSurface{painter, size});
    }
    /// Whether no text is painted on the inner rim of the legend, where one that is too long would end.
    [[nodiscard]] static bool has_free_rim(const Plot& plot, SurfaceSize size, double ratio) {
        DrawOptions options;
        SurfaceRectangle box;
        on_surface(size, ratio, [&](const Surface& on) { box = legend_rectangle(on, plot, options); });
        options.legend_place = SurfacePoint{std::floor(box.left), std::floor(box.top)};
        const QRect part(static_cast<int>(options.legend_place->x), static_cast<int>(options.legend_place->y),
                         static_cast<int>(box.width) + 2, static_cast<int>(box.height) + 2);
        const QImage image =
            painted_part(part, size, ratio, Qt::white, [&](Surface& on) { paint_legend(on, plot, options); });
        EXPECT_GT(painted_pixels(image, image.rect()), 100) << "the names are painted";
        const auto pixel = [&](double points) { return static_cast<int>(points * ratio); };
        const QRect right(pixel(box.width - 3.0), pixel(2.0), pixel(1.5), pixel(box.height - 4.0));
        const QRect below(pixel(2.0), pixel(box.height - 2.5), pixel(box.width - 4.0), pixel(1.0));
        return painted_pixels(image, right) + painted_pixels(image, below) == 0;
    }
    static int painted_pixels(const QImage& image, const QRect& part) {
        int count = 0;
        for (int y = part.top(); y <= part.bottom(); ++y) {
            for (int x = part.left(); x <= part.right(); ++x)
                count += image.pixel(x, y) == qRgb(255, 255, 255) ? 0 : 1;
        }
        return count;
    }
};

TEST_F(PlotWindowLegendTest, EachPlotOfAllZonesNamesAllSixteen) {
    open();
    for (int number = number_of(k_snow_cover); number <= number_of(PlotNumber::PotentialMelt); ++number) {
        choose(*plots(), number);
        ASSERT_NE(screen_.plot(), nullptr) << number;
        EXPECT_EQ(from_qt(zones()->currentText()), "All Zones") << number;
        std::vector<std::string> names;
        for (const LegendRow& row : screen_.plot()->legend) names.push_back(row.text.substr(0, 6));
        EXPECT_EQ(names, names_of_zones(k_most)) << number;
    }
    pick_zone(k_most);
    ASSERT_EQ(screen_.plot()->legend.size(), 1U);
    EXPECT_THAT(screen_.plot()->legend[0].text, testing::StartsWith("Zone P"));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(PlotWindowLegendTest, TheNamesStandInsideTheirPanelOnSmallAndOnDenseScreens) {
    open();
    for (const PlotNumber number : {k_snow_cover, PlotNumber::PotentialMelt}) {
        pick(number);
        ASSERT_NE(screen_.plot(), nullptr);
        const Plot& plot = *screen_.plot();
        for (const SurfaceSize size :
             {SurfaceSize{480.0, 200.0}, {900.0, 520.0}, {3840.0, 200.0}, {3840.0, 2160.0}}) {
            for (const double ratio : {1.0, 2.0}) {
                SCOPED_TRACE("plot " + std::to_string(number_of(number)) + " of " +
                             std::to_string(size.width) + " points, ratio " + std::to_string(ratio));
                on_surface(size, ratio, [&](const Surface& on) {
                    const SurfaceRectangle panel = legend_rectangle(on, plot, {});
                    EXPECT_GE(panel.left, 0.0);
                    EXPECT_GE(panel.top, 0.0);
                    EXPECT_LE(panel.left + panel.width, size.width);
                    EXPECT_LE(panel.top + panel.height, size.height);
                    const auto boxes = legend_text_boxes(on, plot, {});
                    ASSERT_EQ(boxes.size(), static_cast<std::size_t>(k_most));
                    double free = panel.top;
                    for (const SurfaceRectangle& box : boxes) {
                        EXPECT_GT(box.left, panel.left);
                        EXPECT_LT(box.left + box.width, panel.left + panel.width);
                        EXPECT_GE(box.top, free) << "no name covers another";
                        free = box.top + box.height;
                    }
                    EXPECT_LE(free, panel.top + panel.height);
                });
                EXPECT_TRUE(has_free_rim(plot, size, ratio));
            }
        }
    }
}

/// A year, which has the plot of the water equivalent.
class PlotWindowBarsTest : public PlotWindowTest {
protected:
    PlotWindowBarsTest() : PlotWindowTest(2, 365) {
        small_.write_results([](SimResults& t, std::size_t row, int, int day) {
            t.ActualQ[row] = 10.0F;
            t.DailyQ[row] = 5.0;
            t.SCA[row] = 0.5F;
            t.Precip[row] = day < 183 ? 1.0F : 0.0F;
            t.PrecipCC[row] = t.Precip[row];
            t.Cpr[row] = day < 40 ? 1.0F : 0.0F;
            t.M1S[row] = 0.1F;
            t.ZonalMelt[row] = day < 320 ? 0.5F : 0.0F;
            t.NewMelt[row] = 0.0F;
            t.AZMexclWA[row] = 0.0F;
        });
    }
    /// How much of a picture has a colour.
    static double share_of(const QImage& picture, Colour colour) {
        const QColor wanted = colour_of(colour);
        int count = 0;
        for (int y = 0; y < picture.height(); ++y) {
            for (int x = 0; x < picture.width(); ++x) count += picture.pixelColor(x, y) == wanted ? 1 : 0;
        }
        return static_cast<double>(count) / (static_cast<double>(picture.width()) * picture.height());
    }
};

TEST_F(PlotWindowBarsTest, TheBarsAreFilledAndThePanelsInsideAtEachSize) {
    open();
    pick(PlotNumber::WaterEquivalent);
    ASSERT_NE(screen_.plot(), nullptr);
    const auto& bars = screen_.plot()->bars;
    ASSERT_EQ(bars.size(), 4U);
    const PlotBar& cover = bars.back();
    ASSERT_GT(cover.top, cover.bottom);
    const Colour colour = session_.settings.lines.at(static_cast<std::size_t>(cover.line - 1)).colour;
    for (const QSize size : {QSize(1000, 700), QSize(3840, 2160), window_->minimumSize(), QSize(1, 1),
                             QSize(3840, 200), QSize(1000, 700)}) {
        window_->resize(size);
        QTest::qWait(1);
        EXPECT_GE(canvas().width(), 480);
        EXPECT_GE(canvas().height(), 200);
        const QImage picture = canvas().grab().toImage();
        EXPECT_EQ(picture.size(), canvas().size());
        EXPECT_GT(share_of(picture, colour), 0.02) << size.width() << " x " << size.height();
        const QWidget* legend = in<>("Frame2");
        ASSERT_TRUE(legend->isVisible());
        EXPECT_TRUE(canvas().rect().adjusted(-1, -1, 1, 1).contains(legend->geometry()))
            << size.width() << " x " << size.height();
    }
    EXPECT_TRUE(dialogs_.messages().empty());
}

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
