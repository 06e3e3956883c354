#include "windows/plots/tool_pictures.h"

#include "windows/plots/tool_drawings.h"

#include <QGuiApplication>
#include <QIconEngine>
#include <QPainter>
#include <QSvgRenderer>
#include <algorithm>
#include <cmath>
#include <string>

namespace nivora {
namespace {

constexpr int k_tool_grid = 24;
constexpr QColor k_accent_on_light(0, 98, 190);
constexpr QColor k_accent_on_dark(110, 184, 255);

/// The colours of a picture in one state.
struct PictureColours {
    QColor ink;
    QColor accent;
};

QByteArray svg(int grid, std::string_view elements) {
    const std::string side = std::to_string(grid);
    std::string text = R"(<svg xmlns="http://www.w3.org/2000/svg" viewBox="0 0 )" + side + ' ' + side +
                       R"("><g fill="none" stroke="@ink" stroke-width="2" stroke-linecap="round" )"
                       R"(stroke-linejoin="round">)";
    text.append(elements).append("</g></svg>");
    return QByteArray::fromStdString(text);
}

QByteArray word(std::string_view text) { return {text.data(), static_cast<qsizetype>(text.size())}; }

QByteArray coloured(QByteArray drawing, const PictureColours& colours) {
    return drawing.replace(word(k_ink), colours.ink.name().toLatin1())
        .replace(word(k_accent), colours.accent.name().toLatin1());
}

/// Draws into the largest square in the middle of a rectangle.
void draw_centred(QPainter& painter, const QRectF& place, const QByteArray& drawing) {
    const double side = std::min(place.width(), place.height());
    QRectF square(0.0, 0.0, side, side);
    square.moveCenter(place.center());
    QSvgRenderer(drawing).render(&painter, square);
}

QPixmap drawn(const QSize& pixels, const QByteArray& drawing) {
    QPixmap picture(pixels);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    draw_centred(painter, QRectF(QPointF(), QSizeF(pixels)), drawing);
    return picture;
}

QColor halfway(const QColor& a, const QColor& b) {
    return {(a.red() + b.red()) / 2, (a.green() + b.green()) / 2, (a.blue() + b.blue()) / 2};
}

PictureColours enabled_colours(const QPalette& palette) {
    const QColor ink = palette.color(QPalette::Active, QPalette::ButtonText);
    const QColor ground = palette.color(QPalette::Active, QPalette::Button);
    return {ink, ground.lightness() < ink.lightness() ? k_accent_on_dark : k_accent_on_light};
}

/// In one colour, since the accent would catch the eye.
PictureColours disabled_colours(const QPalette& palette) {
    const QColor enabled = palette.color(QPalette::Active, QPalette::ButtonText);
    QColor ink = palette.color(QPalette::Disabled, QPalette::ButtonText);
    // Some palettes make no difference.
    if (ink == enabled) ink = halfway(enabled, palette.color(QPalette::Disabled, QPalette::Button));
    return {ink, ink};
}

/// Draws at every size that is asked for, instead of scaling a picture that was drawn once.
class ToolPictureEngine : public QIconEngine {
public:
    ToolPictureEngine(ToolPicture which, const QPalette& palette)
        : enabled_(coloured(svg(k_tool_grid, tool_drawing(which)), enabled_colours(palette))),
          disabled_(coloured(svg(k_tool_grid, tool_drawing(which)), disabled_colours(palette))) {}

    void paint(QPainter* painter, const QRect& rect, QIcon::Mode mode, QIcon::State /*state*/) override {
        draw_centred(*painter, QRectF(rect), drawing(mode));
    }
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State /*state*/) override {
        return drawn(size, drawing(mode));
    }
    [[nodiscard]] QIconEngine* clone() const override { return new ToolPictureEngine(*this); }

private:
    [[nodiscard]] const QByteArray& drawing(QIcon::Mode mode) const {
        return mode == QIcon::Disabled ? disabled_ : enabled_;
    }

    QByteArray enabled_;
    QByteArray disabled_;
};

}  // namespace

QIcon tool_picture(ToolPicture which, const QPalette& palette) {
    return QIcon(new ToolPictureEngine(which, palette));
}

QCursor zoom_pointer(double ratio, PointerUnits units) {
    const QByteArray drawing =
        coloured(svg(k_zoom_grid, k_zoom_pointer_drawing), {.ink = Qt::black, .accent = Qt::white});
    const int side = static_cast<int>(std::lround(k_zoom_grid * ratio));
    QPixmap picture = drawn({side, side}, drawing);
    if (units == PointerUnits::Points) {
        picture.setDevicePixelRatio(ratio);
        return QCursor(picture, k_zoom_hot_spot, k_zoom_hot_spot);
    }
    const int hot_spot = static_cast<int>((k_zoom_hot_spot + 0.5) * ratio);
    return QCursor(picture, hot_spot, hot_spot);
}

QCursor zoom_pointer() {
    const bool on_x = QGuiApplication::platformName() == QStringLiteral("xcb");
    return zoom_pointer(qGuiApp->devicePixelRatio(), on_x ? PointerUnits::Pixels : PointerUnits::Points);
}

}  // namespace nivora
