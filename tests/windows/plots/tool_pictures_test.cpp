#include "windows/plots/tool_pictures.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QToolButton>
#include <algorithm>
#include <array>
#include <cmath>
#include <set>

namespace nivora {
namespace {

constexpr std::array k_tools{ToolPicture::SaveAs,    ToolPicture::Print,    ToolPicture::Copy,
                             ToolPicture::ZoomIn,    ToolPicture::ZoomOut,  ToolPicture::LineAttributes,
                             ToolPicture::GridLines, ToolPicture::ShowData, ToolPicture::HideData,
                             ToolPicture::Redraw,    ToolPicture::Help};
constexpr std::array k_sides{16, 20, 24, 32, 48, 64, 96};

QPalette tool_palette(const QColor& button, const QColor& text, const QColor& disabled) {
    QPalette palette(button);
    palette.setColor(QPalette::ButtonText, text);
    palette.setColor(QPalette::Disabled, QPalette::ButtonText, disabled);
    return palette;
}
QPalette light_palette() {
    return tool_palette(QColor(239, 239, 239), QColor(20, 20, 20), QColor(160, 160, 160));
}
QPalette dark_palette() {
    return tool_palette(QColor(49, 54, 59), QColor(239, 240, 241), QColor(120, 124, 128));
}

QImage picture_of(const QIcon& icon, int side, double ratio = 1.0, QIcon::Mode mode = QIcon::Normal) {
    return icon.pixmap(QSize(side, side), ratio, mode).toImage().convertToFormat(QImage::Format_ARGB32);
}

/// The colours of the pixels that are fully covered.
std::set<QRgb> solid_colours(const QImage& image) {
    std::set<QRgb> colours;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (qAlpha(image.pixel(x, y)) == 255) colours.insert(image.pixel(x, y));
        }
    }
    return colours;
}

/// The share of the picture that is covered.
double coverage(const QImage& image) {
    double covered = 0.0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) covered += qAlpha(image.pixel(x, y)) / 255.0;
    }
    return covered / (image.width() * image.height());
}

/// The relative luminance of a colour, as the rules for readable screens define it.
double luminance(const QColor& colour) {
    const auto linear = [](double part) {
        return part <= 0.04045 ? part / 12.92 : std::pow((part + 0.055) / 1.055, 2.4);
    };
    return 0.2126 * linear(colour.redF()) + 0.7152 * linear(colour.greenF()) +
           0.0722 * linear(colour.blueF());
}
/// From 1 for equal colours to 21 for black on white.
double contrast(const QColor& a, const QColor& b) {
    const auto [less, more] = std::minmax({luminance(a), luminance(b)});
    return (more + 0.05) / (less + 0.05);
}

TEST(ToolPictures, EachDrawsSomethingAtEverySizeAndLeavesItsGroundFree) {
    for (const ToolPicture tool : k_tools) {
        for (const int side : k_sides) {
            const QImage image = picture_of(tool_picture(tool, light_palette()), side);
            ASSERT_EQ(image.size(), QSize(side, side));
            EXPECT_GT(coverage(image), 0.08) << static_cast<int>(tool) << " at " << side;
            EXPECT_LT(coverage(image), 0.6) << static_cast<int>(tool) << " at " << side;
            EXPECT_EQ(qAlpha(image.pixel(0, 0)), 0) << static_cast<int>(tool) << " at " << side;
        }
    }
}

TEST(ToolPictures, EachDiffersFromTheOthersByShapeEvenWhereItIsDisabled) {
    for (std::size_t i = 0; i < k_tools.size(); ++i) {
        for (std::size_t j = i + 1; j < k_tools.size(); ++j) {
            const QIcon one = tool_picture(k_tools.at(i), light_palette());
            const QIcon other = tool_picture(k_tools.at(j), light_palette());
            const QImage a = picture_of(one, 16, 1.0, QIcon::Disabled);
            const QImage b = picture_of(other, 16, 1.0, QIcon::Disabled);
            int differing = 0;
            for (int at = 0; at < 16 * 16; ++at) {
                const int x = at % 16;
                const int y = at / 16;
                if (std::abs(qAlpha(a.pixel(x, y)) - qAlpha(b.pixel(x, y))) > 128) ++differing;
            }
            EXPECT_GE(differing, 3) << i << " and " << j;
        }
    }
}

TEST(ToolPictures, TheirLinesHaveTheColourOfTheButtonsText) {
    const QPalette palette = tool_palette(QColor(239, 239, 239), QColor(90, 10, 60), QColor(160, 160, 160));
    for (const ToolPicture tool : k_tools) {
        const auto colours = solid_colours(picture_of(tool_picture(tool, palette), 96));
        EXPECT_THAT(colours, testing::Contains(qRgb(90, 10, 60))) << static_cast<int>(tool);
        EXPECT_GE(colours.size(), 2U) << "no accent in " << static_cast<int>(tool);
    }
}

TEST(ToolPictures, LinesAndAccentAreReadableOnALightAndOnADarkButton) {
    for (const QPalette& palette : {light_palette(), dark_palette()}) {
        const QColor ground = palette.color(QPalette::Button);
        for (const ToolPicture tool : k_tools) {
            // A pixel that lines of two colours share has a colour between them, readable as both are.
            for (const QRgb colour : solid_colours(picture_of(tool_picture(tool, palette), 96))) {
                EXPECT_GE(contrast(QColor(colour), ground), 4.5)
                    << static_cast<int>(tool) << " on " << ground.name().toStdString();
            }
        }
    }
}

/// Whether two colours differ by no more than the rounding where lines that are not fully opaque lie on each
/// other.
bool nearly_equal(const QColor& a, const QColor& b) {
    return std::abs(a.red() - b.red()) <= 1 && std::abs(a.green() - b.green()) <= 1 &&
           std::abs(a.blue() - b.blue()) <= 1;
}

TEST(ToolPictures, DisabledOnesAreInTheGreyOfDisabledTextAlone) {
    for (const QPalette& palette : {light_palette(), dark_palette()}) {
        const QColor grey = palette.color(QPalette::Disabled, QPalette::ButtonText);
        for (const ToolPicture tool : k_tools) {
            const QImage image = picture_of(tool_picture(tool, palette), 96, 1.0, QIcon::Disabled);
            EXPECT_THAT(solid_colours(image), testing::Contains(grey.rgb()));
            for (const QRgb colour : solid_colours(image)) {
                EXPECT_TRUE(nearly_equal(QColor(colour), grey)) << static_cast<int>(tool);
            }
        }
    }
}

TEST(ToolPictures, ADisabledOneIsPalerThoughThePaletteMakesNoDifference) {
    const QPalette palette = tool_palette(QColor(240, 240, 240), Qt::black, Qt::black);
    const QIcon icon = tool_picture(ToolPicture::Print, palette);
    EXPECT_THAT(solid_colours(picture_of(icon, 96, 1.0, QIcon::Disabled)),
                testing::ElementsAre(qRgb(120, 120, 120)));
}

TEST(ToolPictures, AreDrawnAnewForAScreenOfTwicePixels) {
    for (const ToolPicture tool : k_tools) {
        const QIcon icon = tool_picture(tool, light_palette());
        const QImage sharp = picture_of(icon, 24, 2.0);
        ASSERT_EQ(sharp.size(), QSize(48, 48));
        EXPECT_EQ(sharp.devicePixelRatio(), 2.0);
        QImage at_48 = picture_of(icon, 48);
        at_48.setDevicePixelRatio(2.0);
        EXPECT_EQ(sharp, at_48) << static_cast<int>(tool);
        EXPECT_NE(sharp, picture_of(icon, 24).scaled(48, 48)) << static_cast<int>(tool);
    }
}

TEST(ToolPictures, StraightLinesAreSharpAt24Pixels) {
    // The frame of the grid: two pixels wide, from 2 to 4, at full strength, and nothing beside it.
    const QImage image = picture_of(tool_picture(ToolPicture::GridLines, light_palette()), 24);
    const int middle = 12;
    EXPECT_EQ(qAlpha(image.pixel(1, middle)), 0);
    EXPECT_EQ(qAlpha(image.pixel(2, middle)), 255);
    EXPECT_EQ(qAlpha(image.pixel(3, middle)), 255);
    EXPECT_EQ(qAlpha(image.pixel(4, middle)), 0);
}

TEST(ToolPictures, StandInTheMiddleOfAPlaceThatIsNotSquare) {
    const QIcon icon = tool_picture(ToolPicture::Help, light_palette());
    const QImage wide = icon.pixmap(QSize(60, 24), 1.0).toImage().convertToFormat(QImage::Format_ARGB32);
    ASSERT_EQ(wide.size(), QSize(60, 24));
    EXPECT_EQ(wide.copy(18, 0, 24, 24), picture_of(icon, 24));
    EXPECT_EQ(coverage(wide.copy(0, 0, 18, 24)), 0.0);
}

TEST(ToolPictures, APainterGetsTheSamePicture) {
    const QIcon icon = tool_picture(ToolPicture::SaveAs, light_palette());
    QImage painted(24, 24, QImage::Format_ARGB32_Premultiplied);
    painted.fill(Qt::transparent);
    QPainter painter(&painted);
    icon.paint(&painter, QRect(0, 0, 24, 24));
    painter.end();
    EXPECT_EQ(painted.convertToFormat(QImage::Format_ARGB32), picture_of(icon, 24));
}

TEST(ToolPictures, AButtonThatIsOffShowsTheDisabledPicture) {
    QToolButton button;
    button.setPalette(light_palette());
    button.setIcon(tool_picture(ToolPicture::Redraw, light_palette()));
    button.setIconSize(QSize(24, 24));
    button.resize(32, 32);
    const QImage on = button.grab().toImage();
    button.setEnabled(false);
    EXPECT_NE(button.grab().toImage(), on);
}

/// The colours under the pointer's lines, drawn on a ground.
std::set<QRgb> on_ground(const QCursor& pointer, const QColor& ground) {
    QImage image(pointer.pixmap().size(), QImage::Format_RGB32);
    image.fill(ground);
    QPixmap picture = pointer.pixmap();
    picture.setDevicePixelRatio(1.0);
    QPainter painter(&image);
    painter.drawPixmap(0, 0, picture);
    painter.end();
    return solid_colours(image);
}

TEST(ZoomPointer, IsSeenOnWhiteOnBlackAndOnGrey) {
    const QCursor pointer = zoom_pointer(1.0, PointerUnits::Pixels);
    ASSERT_EQ(pointer.shape(), Qt::BitmapCursor);
    EXPECT_THAT(on_ground(pointer, Qt::white), testing::Contains(qRgb(0, 0, 0)));
    EXPECT_THAT(on_ground(pointer, Qt::black), testing::Contains(qRgb(255, 255, 255)));
    EXPECT_THAT(on_ground(pointer, Qt::gray), testing::IsSupersetOf({qRgb(0, 0, 0), qRgb(255, 255, 255)}));
}

/// What the pointer covers around a pixel: symmetrical both ways, and free in the middle.
void expect_centred_cross(const QCursor& pointer, int hot_x, int arm) {
    const QImage image = pointer.pixmap().toImage().convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(qAlpha(image.pixel(hot_x, hot_x)), 0) << "what the user points at is hidden";
    for (int d = 1; d <= arm; ++d) {
        EXPECT_EQ(image.pixel(hot_x, hot_x - d), image.pixel(hot_x - d, hot_x)) << d;
        EXPECT_EQ(qAlpha(image.pixel(hot_x + d, hot_x)), qAlpha(image.pixel(hot_x, hot_x + d))) << d;
    }
    EXPECT_EQ(qAlpha(image.pixel(hot_x - arm, hot_x)), 255);
    EXPECT_EQ(qAlpha(image.pixel(hot_x + arm, hot_x)), 255);
}

TEST(ZoomPointer, HasItsHotSpotInTheMiddleOfTheCross) {
    const QCursor pointer = zoom_pointer(1.0, PointerUnits::Pixels);
    EXPECT_EQ(pointer.pixmap().size(), QSize(32, 32));
    EXPECT_EQ(pointer.hotSpot(), QPoint(12, 12));
    expect_centred_cross(pointer, 12, 4);
}

TEST(ZoomPointer, GrowsWithTheRatioWhereThePlatformCountsPixels) {
    const QCursor pointer = zoom_pointer(2.0, PointerUnits::Pixels);
    EXPECT_EQ(pointer.pixmap().size(), QSize(64, 64));
    EXPECT_EQ(pointer.pixmap().devicePixelRatio(), 1.0);
    EXPECT_EQ(pointer.hotSpot(), QPoint(25, 25));
    EXPECT_EQ(zoom_pointer(1.5, PointerUnits::Pixels).hotSpot(), QPoint(18, 18));
}

TEST(ZoomPointer, CarriesItsRatioWhereThePlatformCountsPoints) {
    const QCursor pointer = zoom_pointer(2.0, PointerUnits::Points);
    EXPECT_EQ(pointer.pixmap().size(), QSize(64, 64));
    EXPECT_EQ(pointer.pixmap().devicePixelRatio(), 2.0);
    EXPECT_EQ(pointer.hotSpot(), QPoint(12, 12));
}

TEST(ZoomPointer, IsThatOfTheScreensRatio) {
    EXPECT_EQ(zoom_pointer().pixmap().width(), std::lround(32 * qGuiApp->devicePixelRatio()));
}

}  // namespace
}  // namespace nivora
