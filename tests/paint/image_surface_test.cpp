#include "paint/image_surface.h"

#include "tests/paint/paint_fixture.h"

#include <QBuffer>
#include <QFontInfo>
#include <QImage>
#include <QPdfWriter>
#include <QSvgGenerator>
#include <array>
#include <cmath>

namespace nivora {
namespace {

using testing::Each;
using testing::ElementsAre;
using testing::SizeIs;

constexpr Colour k_red = 0x0000FF;
constexpr Colour k_blue = 0xFF0000;

/// A white picture with a surface over it.
class Canvas {
public:
    Canvas(double width, double height, double scale)
        : image_(static_cast<int>(std::lround(width * scale)), static_cast<int>(std::lround(height * scale)),
                 QImage::Format_RGB32) {
        image_.fill(Qt::white);
        painter_.begin(&image_);
        painter_.scale(scale, scale);
        surface_.emplace(painter_, SurfaceSize{width, height});
    }

    Surface& operator*() { return *surface_; }
    Surface* operator->() { return &*surface_; }

    const QImage& finished() {
        surface_.reset();
        painter_.end();
        return image_;
    }

private:
    QImage image_;
    QPainter painter_;
    std::optional<PaintedSurface> surface_;
};

/// 0 for white, 1 for a pixel that is wholly of a dark colour.
double ink(const QImage& image, int x, int y) {
    const QRgb pixel = image.pixel(x, y);
    return 1.0 - std::min({qRed(pixel), qGreen(pixel), qBlue(pixel)}) / 255.0;
}

/// The lengths of runs of ink and of paper in turn, along a row, from the first pixel with ink to the last.
std::vector<int> runs_of_row(const QImage& image, int y) {
    std::vector<int> runs;
    bool inked = false;
    for (int x = 0; x < image.width(); ++x) {
        const bool here = ink(image, x, y) > 0.5;
        if (here != inked || runs.empty()) {
            if (!here && runs.empty()) continue;
            runs.push_back(0);
            inked = here;
        }
        ++runs.back();
    }
    if (!runs.empty() && !inked) runs.pop_back();
    return runs;
}

/// The bounds of all ink, in pixels; right and bottom are the first ones without.
struct Ink {
    int left = 0, top = 0, right = 0, bottom = 0;
    bool antialiased = false;  ///< whether a pixel is neither paper nor wholly inked
};
Ink ink_of(const QImage& image) {
    Ink found{image.width(), image.height(), 0, 0, false};
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double here = ink(image, x, y);
            if (here <= 0.0) continue;
            found.left = std::min(found.left, x);
            found.top = std::min(found.top, y);
            found.right = std::max(found.right, x + 1);
            found.bottom = std::max(found.bottom, y + 1);
            if (here < 0.999) found.antialiased = true;
        }
    }
    return found;
}

double share_of_ink(const QImage& image) {
    double sum = 0.0;
    for (int y = 0; y < image.height(); ++y)
        for (int x = 0; x < image.width(); ++x) sum += ink(image, x, y);
    return sum / (image.width() * image.height());
}

void line(Surface& surface, SurfacePoint from, SurfacePoint to, const Pen& pen) {
    const std::array ends{from, to};
    surface.line(ends, pen);
}

class ImageSurface : public PaintTest {};

// A line from (10, 20) to (30, 20), one point wide, covers 10 to 31 and 20 to 21.
TEST_F(ImageSurface, AStraightLineTakesWholePixels) {
    Canvas canvas{50.0, 40.0, 1.0};
    line(*canvas, {10.0, 20.0}, {30.0, 20.0}, {});
    const Ink found = ink_of(canvas.finished());
    EXPECT_EQ(found.left, 10);
    EXPECT_EQ(found.right, 31);
    EXPECT_EQ(found.top, 20);
    EXPECT_EQ(found.bottom, 21);
    EXPECT_FALSE(found.antialiased);
}

// Two pixels wide at 192 dpi: from 9.5 to 30.5 points and from 19.5 to 20.5.
TEST_F(ImageSurface, AStraightLineIsTwoPixelsWideAtTwiceTheResolution) {
    Canvas canvas{50.0, 40.0, 2.0};
    line(*canvas, {10.0, 20.0}, {30.0, 20.0}, {});
    const Ink found = ink_of(canvas.finished());
    EXPECT_EQ(found.left, 19);
    EXPECT_EQ(found.right, 61);
    EXPECT_EQ(found.top, 39);
    EXPECT_EQ(found.bottom, 41);
    EXPECT_FALSE(found.antialiased);
}

TEST_F(ImageSurface, StraightLinesAreCrispAtAllPlacesAndScales) {
    for (const double scale : {0.5, 0.75, 1.0, 1.25, 1.5, 1.75, 2.0, 3.0, 4.1}) {
        const int expected = std::max(1, static_cast<int>(std::round(scale)));
        for (const double offset : {0.0, 0.1, 0.25, 0.5, 0.6, 0.99}) {
            Canvas level{40.0, 40.0, scale};
            line(*level, {5.3, 20.0 + offset}, {30.7, 20.0 + offset}, {});
            const Ink across = ink_of(level.finished());
            EXPECT_EQ(across.bottom - across.top, expected) << scale << " " << offset;
            EXPECT_FALSE(across.antialiased) << scale << " " << offset;
            EXPECT_NEAR((across.top + across.bottom) / 2.0 / scale, 20.0 + offset, 0.51 / scale);

            Canvas upright{40.0, 40.0, scale};
            line(*upright, {20.0 + offset, 30.7}, {20.0 + offset, 5.3}, {});
            const Ink down = ink_of(upright.finished());
            EXPECT_EQ(down.right - down.left, expected) << scale << " " << offset;
            EXPECT_FALSE(down.antialiased) << scale << " " << offset;
        }
    }
}

TEST_F(ImageSurface, ALineAlongAnEdgeIsNotLost) {
    for (const double scale : {1.0, 1.25, 2.0}) {
        Canvas canvas{40.0, 40.0, scale};
        line(*canvas, {40.0, 10.0}, {40.0, 30.0}, {});
        const QImage& image = canvas.finished();
        EXPECT_EQ(ink(image, image.width() - 1, image.height() / 2), 1.0) << scale;
    }
}

TEST_F(ImageSurface, TheStylesOfStraightLinesAreRepeatedDashesOfWholePixels) {
    const std::array<std::vector<double>, 4> periods{{{8, 4}, {1, 3}, {9, 3, 2, 3}, {9, 3, 2, 3, 2, 3}}};
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        for (int style = 1; style <= 4; ++style) {
            Canvas level{160.0, 160.0, scale};
            line(*level, {5.0, 10.0}, {150.0, 10.0}, {.style = style});
            Canvas upright{160.0, 160.0, scale};
            line(*upright, {10.0, 150.0}, {10.0, 5.0}, {.style = style});
            const QImage across = level.finished();
            EXPECT_FALSE(ink_of(across).antialiased);
            EXPECT_EQ(ink_of(across).bottom - ink_of(across).top, std::round(scale));
            const QImage turned = upright.finished().transformed(QTransform(0, 1, 1, 0, 0, 0));
            EXPECT_EQ(turned.convertToFormat(across.format()), across) << style << " at " << scale;

            const std::vector<int> runs = runs_of_row(across, ink_of(across).top);
            const std::vector<double>& period = periods.at(static_cast<std::size_t>(style - 1));
            ASSERT_GT(runs.size(), 2 * period.size());
            for (std::size_t i = 0; i + 1 < runs.size(); ++i)
                EXPECT_EQ(runs[i], std::round(period[i % period.size()] * scale))
                    << "style " << style << ", run " << i << " at " << scale;
        }
    }
}

TEST_F(ImageSurface, TheStylesOfCurvesHaveTheSameDashes) {
    // Strokes in 240 points: a stroke each 12, 5, 17 / 2 and 22 / 3 points.
    const std::array<double, 5> expected{1.0, 240.0 / 12.0, 240.0 / 5.0, 2 * 240.0 / 17.0, 3 * 240.0 / 22.0};
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (int style = 0; style <= 4; ++style) {
            Canvas canvas{260.0, 20.0, scale};
            std::vector<SurfacePoint> points;
            for (int x = 10; x <= 250; x += 3) points.push_back({static_cast<double>(x), 10.0});
            canvas->line(points, {.style = style});
            const auto strokes =
                (runs_of_row(canvas.finished(), static_cast<int>(10.0 * scale)).size() + 1) / 2;
            EXPECT_NEAR(static_cast<double>(strokes), expected.at(static_cast<std::size_t>(style)), 1.5)
                << "style " << style << " at " << scale;
        }
    }
}

TEST_F(ImageSurface, ALineWiderThanAPointIsSolid) {
    for (const double scale : {1.0, 2.0}) {
        Canvas straight{100.0, 20.0, scale};
        line(*straight, {10.0, 10.0}, {90.0, 10.0}, {.style = 2, .width = 3});
        const QImage& image = straight.finished();
        EXPECT_THAT(runs_of_row(image, static_cast<int>(10.0 * scale)), SizeIs(1));
        const Ink found = ink_of(image);
        EXPECT_EQ(found.bottom - found.top, static_cast<int>(3.0 * scale));

        Canvas curved{100.0, 20.0, scale};
        const std::array<SurfacePoint, 3> points{{{10.0, 10.0}, {50.0, 10.0}, {90.0, 10.0}}};
        curved->line(points, {.style = 2, .width = 3});
        EXPECT_THAT(runs_of_row(curved.finished(), static_cast<int>(10.0 * scale)), SizeIs(1));
    }
}

TEST_F(ImageSurface, AStepCurveLiesOverTheAxisAtTheSamePlace) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        Canvas axis{50.0, 40.0, scale};
        line(*axis, {5.0, 20.0}, {45.0, 20.0}, {});
        const Ink straight = ink_of(axis.finished());
        Canvas level{50.0, 40.0, scale};
        const std::array<SurfacePoint, 3> points{{{5.0, 20.0}, {20.0, 20.0}, {45.0, 20.0}}};
        level->line(points, {});
        const QImage& image = level.finished();
        const int middle = static_cast<int>(30.0 * scale);
        for (int row = 0; row < image.height(); ++row) {
            const bool covered = row >= straight.top && row < straight.bottom;
            EXPECT_NEAR(ink(image, middle, row), covered ? 1.0 : 0.0, 0.02) << row << " at " << scale;
        }
    }
}

TEST_F(ImageSurface, ASlopedLineIsAntialiased) {
    Canvas canvas{50.0, 40.0, 1.0};
    line(*canvas, {5.0, 10.0}, {45.0, 20.0}, {});
    EXPECT_TRUE(ink_of(canvas.finished()).antialiased);
}

// Vertical runs of 18,250 days are as dark as they are when every point is drawn.
TEST_F(ImageSurface, FiftyYearsOfDaysReachFromLowToHighInEachColumn) {
    for (const double scale : {1.0, 1.5, 2.0, 3.0}) {
        Canvas canvas{200.0, 100.0, scale};
        std::vector<SurfacePoint> points;
        for (int day = 0; day < 18250; ++day)
            points.push_back({day * 200.0 / 18250.0, day % 2 == 0 ? 20.0 : 80.0});
        canvas->line(points, {});
        const QImage& image = canvas.finished();
        const auto pixels = [&](double place) { return static_cast<int>(std::lround(place * scale)); };
        for (int x = pixels(2.0); x < pixels(198.0); ++x) {
            for (int y = pixels(22.0); y < pixels(79.0); ++y)
                ASSERT_GT(ink(image, x, y), 0.9) << x << ", " << y << " at " << scale;
            EXPECT_EQ(ink(image, x, pixels(17.0)), 0.0);
            EXPECT_EQ(ink(image, x, pixels(83.0)), 0.0);
        }
    }
}

TEST_F(ImageSurface, ADotIsAsLargeAsThePenIsWide) {
    Canvas one{20.0, 20.0, 1.0};
    one->dot({10.0, 5.0}, k_black);
    Ink found = ink_of(one.finished());
    EXPECT_THAT((std::array{found.left, found.top, found.right, found.bottom}), ElementsAre(10, 5, 11, 6));
    Canvas two{20.0, 20.0, 2.0};
    two->dot({10.0, 5.0}, k_black);
    found = ink_of(two.finished());
    EXPECT_THAT((std::array{found.left, found.top, found.right, found.bottom}), ElementsAre(19, 9, 21, 11));
}

TEST_F(ImageSurface, ACircleIsOpen) {
    Canvas canvas{40.0, 40.0, 2.0};
    canvas->circle({20.0, 20.0}, 8.0, {});
    const QImage& image = canvas.finished();
    EXPECT_EQ(ink(image, 40, 40), 0.0);
    EXPECT_GT(ink(image, 40 + 16, 40), 0.5);
    EXPECT_GT(ink(image, 40, 40 - 16), 0.5);
    EXPECT_EQ(ink(image, 40 + 20, 40), 0.0);
}

TEST_F(ImageSurface, ARectangleIsFilledUpToItsOutline) {
    for (const double scale : {1.0, 1.25, 2.0}) {
        Canvas canvas{60.0, 40.0, scale};
        canvas->rectangle({10.3, 10.3, 30.0, 20.0}, Pen{.colour = k_black}, Fill{.colour = k_red});
        const QImage& image = canvas.finished();
        const Ink found = ink_of(image);
        for (int y = found.top; y < found.bottom; ++y) {
            for (int x = found.left; x < found.right; ++x) {
                const QRgb pixel = image.pixel(x, y);
                ASSERT_TRUE(pixel == qRgb(255, 0, 0) || pixel == qRgb(0, 0, 0))
                    << x << ", " << y << " at " << scale;
            }
        }
        EXPECT_EQ(image.pixel(found.left, found.top), qRgb(0, 0, 0));
        EXPECT_EQ(image.pixel(found.right - 1, found.bottom - 1), qRgb(0, 0, 0));
        EXPECT_EQ(image.pixel((found.left + found.right) / 2, (found.top + found.bottom) / 2),
                  qRgb(255, 0, 0));
    }
}

TEST_F(ImageSurface, ARectangleOfTheWholeSurfaceCoversItAtEveryScale) {
    for (const double scale : {0.9, 1.0, 1.25, 1.37, 2.0}) {
        Canvas canvas{50.0, 40.0, scale};
        canvas->rectangle({0.0, 0.0, 50.0, 40.0}, std::nullopt, Fill{.colour = k_black});
        EXPECT_EQ(share_of_ink(canvas.finished()), 1.0) << scale;
    }
}

TEST_F(ImageSurface, ATransparentRectangleIsNotFilled) {
    Canvas canvas{50.0, 40.0, 1.0};
    canvas->rectangle({10.0, 10.0, 30.0, 20.0}, std::nullopt, Fill{.colour = k_black, .style = k_no_fill});
    EXPECT_EQ(share_of_ink(canvas.finished()), 0.0);
}

// One line in six is inked; of two crossing ones 1 - (5 / 6)^2. Qt takes a pixel a column for diagonals of
// one pixel, which makes them thinner by the root of 2: 0.118, of two 0.222.
TEST_F(ImageSurface, HatchesAreAsDenseAtEveryScale) {
    for (const double scale : {1.0, 2.0, 3.0}) {
        const double diagonal = scale > 1.0 ? 1 / 6.0 : 1 / 6.0 / std::sqrt(2.0);
        const double diagonals = 1.0 - (1.0 - diagonal) * (1.0 - diagonal);
        const std::array<double, 6> expected{1 / 6.0, 1 / 6.0, diagonal, diagonal, 11 / 36.0, diagonals};
        std::vector<QImage> pictures;
        for (int style = 2; style <= 7; ++style) {
            Canvas canvas{120.0, 120.0, scale};
            canvas->rectangle({0.0, 0.0, 120.0, 120.0}, std::nullopt,
                              Fill{.colour = k_black, .style = style});
            pictures.push_back(canvas.finished());
            EXPECT_NEAR(share_of_ink(pictures.back()), expected.at(static_cast<std::size_t>(style - 2)), 0.02)
                << "style " << style << " at " << scale;
        }
        for (std::size_t i = 0; i < pictures.size(); ++i)
            for (std::size_t j = 0; j < i; ++j) EXPECT_NE(pictures[i], pictures[j]);
    }
}

TEST_F(ImageSurface, AHatchedBandStaysInItsOutline) {
    for (int style = 0; style <= 7; ++style) {
        Canvas canvas{100.0, 100.0, 1.0};
        const std::array<SurfacePoint, 4> outline{{{20.0, 80.0}, {50.0, 20.0}, {80.0, 80.0}, {50.0, 60.0}}};
        canvas->fill_band(outline, {.colour = k_blue, .style = style});
        const QImage& image = canvas.finished();
        const Ink found = ink_of(image);
        if (style == k_no_fill) {
            EXPECT_EQ(share_of_ink(image), 0.0);
            continue;
        }
        EXPECT_GE(found.left, 19) << style;
        EXPECT_LE(found.right, 82) << style;
        EXPECT_GE(found.top, 18) << style;
        EXPECT_LE(found.bottom, 82) << style;
        EXPECT_EQ(ink(image, 50, 75), 0.0) << style;
        EXPECT_GT(share_of_ink(image), 0.01) << style;
    }
}

TEST_F(ImageSurface, NoPaperShowsBetweenTwoBands) {
    for (const double scale : {1.0, 2.0}) {
        Canvas canvas{100.0, 100.0, scale};
        const std::array<SurfacePoint, 4> lower{{{10.0, 90.0}, {90.0, 90.0}, {90.0, 33.0}, {10.0, 60.0}}};
        const std::array<SurfacePoint, 4> upper{{{10.0, 60.0}, {90.0, 33.0}, {90.0, 10.0}, {10.0, 10.0}}};
        canvas->fill_band(lower, {.colour = k_red});
        canvas->fill_band(upper, {.colour = k_blue});
        const QImage& image = canvas.finished();
        for (int y = static_cast<int>(15.0 * scale); y < static_cast<int>(85.0 * scale); ++y)
            for (int x = static_cast<int>(15.0 * scale); x < static_cast<int>(85.0 * scale); ++x)
                ASSERT_LT(qGreen(image.pixel(x, y)), 16) << x << ", " << y << " at " << scale;
    }
}

TEST_F(ImageSurface, NothingIsDrawnBeyondTheEdges) {
    QImage image(100, 100, QImage::Format_RGB32);
    image.fill(Qt::white);
    {
        QPainter painter(&image);
        PaintedSurface surface{painter, {50.0, 50.0}};
        surface.text({40.0, 40.0}, "Computed Runoff", {10.0, true}, k_black);
        line(surface, {10.0, 30.0}, {90.0, 30.0}, {});
        line(surface, {10.0, 10.0}, {90.0, 90.0}, {});
        surface.rectangle({30.0, 30.0, 60.0, 60.0}, Pen{}, Fill{});
    }
    const Ink found = ink_of(image);
    EXPECT_EQ(found.right, 50);
    EXPECT_EQ(found.bottom, 50);
}

// A digit of Arial is 0.556 of its size wide. 7.5 typographic points are 10 points of a surface, 10 are 13
// 1/3, for which 13 stands.
TEST_F(ImageSurface, TextsHaveTheWidthsOfArial) {
    const QString family = QFontInfo(QFont(QStringLiteral("Arial"))).family();
    if (family != QStringLiteral("Arial") && family != QStringLiteral("Liberation Sans"))
        GTEST_SKIP() << "the system has no font with the widths of Arial but " << family.toStdString();
    Canvas canvas{50.0, 50.0, 1.0};
    EXPECT_NEAR(canvas->text_size("0", {7.5, false}).width, 5.56, 0.05);
    EXPECT_NEAR(canvas->text_size("0000000000", {7.5, true}).width, 55.6, 0.3);
    EXPECT_NEAR(canvas->text_size("0", {10.0, false}).width, 0.556 * 13.0, 0.05);
    EXPECT_NEAR(canvas->text_size("0  ", {7.5, false}).width, (0.556 + 2 * 0.278) * 10.0, 0.05);
}

TEST_F(ImageSurface, TextsHaveTheSameExtentOnEveryDevice) {
    const std::string text = "Average Measured Runoff (m³/s), 12.5 °C·d";
    for (const double size : {6.0, 7.5, 8.5, 10.5}) {
        const PlotFont font{size, true};
        Canvas one{500.0, 50.0, 1.0};
        const SurfaceSize expected = one->text_size(text, font);
        const auto expect_same = [&](const Surface& surface, const char* device) {
            EXPECT_NEAR(surface.text_size(text, font).width, expected.width, 0.004 * expected.width)
                << device;
            EXPECT_NEAR(surface.text_size(text, font).height, expected.height, 0.1) << device;
        };
        Canvas three{500.0, 50.0, 3.0};
        expect_same(*three, "picture");

        QByteArray bytes;
        QBuffer buffer(&bytes);
        ASSERT_TRUE(buffer.open(QIODevice::WriteOnly));
        {
            QSvgGenerator generator;
            generator.setOutputDevice(&buffer);
            generator.setResolution(192);
            generator.setSize({1000, 100});
            generator.setViewBox(QRectF(0, 0, 500, 50));
            QPainter painter(&generator);
            expect_same(PaintedSurface{painter, {500.0, 50.0}}, "SVG");
        }
        bytes.clear();
        buffer.seek(0);
        QPdfWriter writer(&buffer);
        writer.setResolution(1200);
        QPainter painter(&writer);
        painter.scale(12.5, 12.5);
        expect_same(PaintedSurface{painter, {500.0, 50.0}}, "PDF");
    }
}

TEST_F(ImageSurface, ATextStaysInItsBox) {
    for (const double scale : {1.0, 1.5, 2.0}) {
        for (const bool bold : {false, true}) {
            Canvas canvas{300.0, 60.0, scale};
            const std::string text = "Ågy (m³/s) 10/01/2001 (°C·d)";
            const PlotFont font{8.5, bold};
            const SurfaceSize extent = canvas->text_size(text, font);
            canvas->text({20.0, 10.0}, text, font, k_black);
            const Ink found = ink_of(canvas.finished());
            EXPECT_GE(found.left, std::floor(19.0 * scale));
            EXPECT_LE(found.right, std::ceil((21.0 + extent.width) * scale));
            EXPECT_GE(found.top, std::floor(9.0 * scale));
            EXPECT_LE(found.bottom, std::ceil((11.0 + extent.height) * scale));
            // It fills its box.
            EXPECT_GT(found.right - found.left, 0.95 * extent.width * scale);
            EXPECT_GT(found.bottom - found.top, 0.6 * extent.height * scale);
        }
    }
}

TEST_F(ImageSurface, TheEdgesOfLettersAreGrey) {
    Canvas canvas{300.0, 60.0, 1.0};
    canvas->text({20.0, 10.0}, "Wetterstation", {10.0, false}, k_black);
    const QImage& image = canvas.finished();
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            ASSERT_TRUE(qRed(pixel) == qGreen(pixel) && qGreen(pixel) == qBlue(pixel)) << x << ", " << y;
        }
    }
}

TEST_F(ImageSurface, ColoursAreRedInTheLowestByte) {
    Canvas canvas{30.0, 30.0, 1.0};
    canvas->rectangle({0.0, 0.0, 30.0, 30.0}, std::nullopt, Fill{.colour = 0x204080});
    EXPECT_EQ(canvas.finished().pixel(10, 10), qRgb(0x80, 0x40, 0x20));
}

TEST_F(ImageSurface, TooFewPointsDrawNothing) {
    Canvas canvas{30.0, 30.0, 1.0};
    canvas->line({}, {});
    const std::array<SurfacePoint, 2> points{{{5.0, 5.0}, {25.0, 25.0}}};
    canvas->line(std::span{points}.first(1), {});
    canvas->fill_band(points, {});
    EXPECT_EQ(share_of_ink(canvas.finished()), 0.0);
}

}  // namespace
}  // namespace nivora
