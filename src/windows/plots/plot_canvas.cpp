#include "windows/plots/plot_canvas.h"

#include "base/calendar.h"
#include "plots/plot_words.h"
#include "widgets/accessible_elements.h"
#include "widgets/qt_text.h"
#include "windows/plots/plot_panels.h"
#include "windows/plots/tool_pictures.h"
#include "windows/plots/value_label.h"

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegion>
#include <QStyle>
#include <QStyleOption>
#include <QWheelEvent>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_rest_ms = 150;
constexpr double k_near = 8.0;  ///< points within which the mouse reads a value off a curve
constexpr double k_mark = 4.0;  ///< radius of the ring around that point
constexpr double k_angle_a_notch = 120.0;
constexpr int k_edge = 2;  ///< points around an edge of the rubber band that are painted with it

const BoxTexts k_no_place{" ", " "};

/// The four edges of a rectangle.
QRegion edges_of(const std::optional<QRectF>& box) {
    if (!box) return {};
    const QRect outer = box->toAlignedRect().adjusted(-k_edge, -k_edge, k_edge, k_edge);
    const QRect inner = outer.adjusted(2 * k_edge, 2 * k_edge, -2 * k_edge, -2 * k_edge);
    return inner.isEmpty() ? QRegion(outer) : QRegion(outer).subtracted(inner);
}

}  // namespace

PlotCanvas::PlotCanvas(PlotScreen& screen, const Settings& settings, QWidget* parent)
    : QWidget(parent),
      screen_(screen),
      settings_(settings),
      panels_(new PlotPanels(screen, *this)),
      label_(new ValueLabel(this)) {
    setObjectName(QStringLiteral("Plotframe"));
    setAccessibleName(QStringLiteral("Plot"));
    set_accessible_role(*this, QAccessible::Chart);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    rest_.setSingleShot(true);
    rest_.setInterval(k_rest_ms);
    connect(&rest_, &QTimer::timeout, this, &PlotCanvas::show_value);
    connect(panels_, &PlotPanels::line_chosen, this, &PlotCanvas::line_chosen);
    connect(panels_, &PlotPanels::dropped, this, [this] { panels_->place(draw_options()); });
    connect(panels_, &PlotPanels::entered, this, &PlotCanvas::tell_no_place);
}

QSize PlotCanvas::sizeHint() const { return {900, 520}; }

SurfaceSize PlotCanvas::surface_points() const {
    return {static_cast<double>(width()), static_cast<double>(height())};
}

PictureSize PlotCanvas::picture_size() const {
    const double ratio = devicePixelRatioF();
    const QSize pixels = (QSizeF(size()) * ratio).toSize();
    return {.width = pixels.width(), .height = pixels.height(), .dpi = ratio * k_points_an_inch};
}

DrawOptions PlotCanvas::draw_options() const {
    return {.lines = settings_.lines,
            .grid = screen_.grid(),
            .data_points = screen_.data_points(),
            .now = local_now(),
            .legend_place = panels_->legend_place(),
            .summary_place = panels_->summary_place()};
}

bool PlotCanvas::shows_summary() const { return panels_->summary_place().has_value(); }

void PlotCanvas::redraw() {
    hide_value();
    stale_ = true;
    panels_->place(draw_options());
    describe();
    show_pointer();
    update();
}

void PlotCanvas::describe() {
    QString text;
    if (screen_.plot() != nullptr) text = to_qt(plot_words(*screen_.plot()));
    if (screen_.fallback() != nullptr) text = to_qt(screen_.fallback()->text);
    setAccessibleDescription(text);
}

void PlotCanvas::show_pointer() {
    if (screen_.drag().armed()) {
        setCursor(zoom_pointer());
    } else {
        unsetCursor();
    }
}

bool PlotCanvas::escape() {
    const bool panel = panels_->give_up_drag();
    const auto before = band_box();
    const bool zoom = screen_.escape();
    update_band(before);
    show_pointer();
    return panel || zoom;
}

// Painting

/// A window that comes to another display may need more pixels, or fewer.
void PlotCanvas::keep_picture_up_to_date() {
    const PictureSize wanted = picture_size();
    const bool other_display = !picture_.isNull() && picture_.devicePixelRatio() != devicePixelRatioF();
    if (!stale_ && !other_display && picture_.size() == QSize(wanted.width, wanted.height)) return;
    paint_picture();
    // The panels, too, but an element can't be changed while it is painted.
    if (other_display) QMetaObject::invokeMethod(this, &PlotCanvas::redraw, Qt::QueuedConnection);
}

void PlotCanvas::paint_picture() {
    stale_ = false;
    picture_ = painted_part(rect(), surface_points(), devicePixelRatioF(), Qt::white, [this](Surface& on) {
        if (screen_.plot() != nullptr) {
            draw(on, *screen_.plot(), draw_options());
        } else if (screen_.fallback() != nullptr) {
            draw_refusal(on, *screen_.fallback());
        }
    });
}

void PlotCanvas::paintEvent(QPaintEvent* /*event*/) {
    keep_picture_up_to_date();
    QPainter painter(this);
    painter.drawImage(QPoint(0, 0), picture_);
    paint_mark(painter);
    paint_band(painter);
    if (hasFocus()) {
        QStyleOptionFocusRect around;
        around.initFrom(this);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &around, &painter, this);
    }
}

void PlotCanvas::paint_mark(QPainter& painter) const {
    if (!marked_) return;
    painter.setRenderHint(QPainter::Antialiasing);
    // Two rings, one of which stands out on every colour.
    const QPointF place(marked_->at.x, marked_->at.y);
    for (const auto& [colour, width] : {std::pair{Qt::white, 4.0}, std::pair{Qt::black, 2.0}}) {
        painter.setPen(QPen(colour, width));
        painter.drawEllipse(place, k_mark, k_mark);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
}

void PlotCanvas::paint_band(QPainter& painter) const {
    const auto band = band_box();
    if (!band) return;
    QPen dots(Qt::red, 1.0);
    dots.setCapStyle(Qt::FlatCap);
    dots.setDashPattern({2.0, 2.0});
    painter.setBrush(Qt::NoBrush);
    // On white, as it begins on a grid line and may cross a red area.
    for (const QPen& pen : {QPen(Qt::white, 1.0), dots}) {
        painter.setPen(pen);
        painter.drawRect(*band);
    }
}

void PlotCanvas::resizeEvent(QResizeEvent* event) {
    QWidget::resizeEvent(event);
    const ScreenAnswer answer = screen_.after_resize();
    if (answer.draw) {
        emit answered(answer);
    } else {
        redraw();
    }
}

// The mouse

/// Whether there is a plot with places to point at.
bool PlotCanvas::has_axes() const { return screen_.plot() != nullptr && !has_no_data(*screen_.plot()); }

World PlotCanvas::world() const {
    return World{lay_out_axes(*screen_.plot(), GridMode::None).transform, surface_points()};
}

WorldPoint PlotCanvas::world_at(QPointF place) const {
    const auto [x, y] = world().to_world({place.x(), place.y()});
    return {x, y};
}

std::optional<QRectF> PlotCanvas::band_box() const {
    const auto band = screen_.drag().band();
    if (!band || !has_axes()) return std::nullopt;
    const World units = world();
    const SurfacePoint begin = units.to_surface(band->x1, band->y1);
    const SurfacePoint end = units.to_surface(band->x2, band->y2);
    return QRectF(QPointF(begin.x, begin.y), QPointF(end.x, end.y)).normalized();
}

void PlotCanvas::update_band(const std::optional<QRectF>& before) {
    update(edges_of(before) | edges_of(band_box()));
}

void PlotCanvas::give_answer(const ScreenAnswer& answer) {
    if (answer.draw || answer.message) emit answered(answer);
}

void PlotCanvas::give_up_drag() {
    const auto before = band_box();
    if (!screen_.interrupt()) return;
    update_band(before);
    show_pointer();
}

void PlotCanvas::mousePressEvent(QMouseEvent* event) {
    hide_value();
    if (event->buttons() != Qt::LeftButton) {
        give_up_drag();
    } else if (has_axes()) {
        screen_.press(world_at(event->position()));
    }
}

void PlotCanvas::mouseMoveEvent(QMouseEvent* event) {
    mouse_ = event->position();
    panels_->give_up_drag();  // one whose release went elsewhere
    tell_place(mouse_);
    if (!has_axes()) return;
    if (screen_.drag().dragging()) {
        if (!event->buttons().testFlag(Qt::LeftButton)) {  // its release went elsewhere
            give_up_drag();
            return;
        }
        const auto before = band_box();
        static_cast<void>(screen_.move(world_at(mouse_)));
        update_band(before);
    }
    look_for_value(*event);
}

void PlotCanvas::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton || !screen_.drag().dragging() || !has_axes()) return;
    const auto before = band_box();
    const ScreenAnswer answer = screen_.release(world_at(event->position()));
    update_band(before);
    show_pointer();
    give_answer(answer);
}

/// With Shift, or sideways, the wheel moves the plot along its days: downward or to the right to later ones.
void PlotCanvas::wheelEvent(QWheelEvent* event) {
    const bool wheel = has_axes() && has_wheel(screen_.plot()->number);
    event->setAccepted(wheel);
    if (!wheel || screen_.drag().dragging() || panels_->is_dragged()) return;
    const QPointF turned = QPointF(event->angleDelta()) / k_angle_a_notch;
    const bool sideways = std::abs(turned.x()) > std::abs(turned.y());
    const double notches = sideways ? turned.x() : turned.y();
    if (notches == 0.0) return;
    if (sideways || event->modifiers().testFlag(Qt::ShiftModifier)) {
        give_answer(screen_.pan(-notches));
    } else {
        give_answer(screen_.wheel(world_at(event->position()), notches));
    }
    tell_place(event->position());
}

/// What the wheel does, about the middle of the plot.
void PlotCanvas::keyPressEvent(QKeyEvent* event) {
    const bool works = has_axes() && has_wheel(screen_.plot()->number) && !screen_.drag().dragging() &&
                       !panels_->is_dragged() &&
                       (event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier)) == 0;
    if (!works) return QWidget::keyPressEvent(event);
    const WorldPoint middle = world_at(QRectF(rect()).center());
    switch (event->key()) {
        case Qt::Key_Plus: return give_answer(screen_.wheel(middle, 1.0));
        case Qt::Key_Minus: return give_answer(screen_.wheel(middle, -1.0));
        case Qt::Key_Right: return give_answer(screen_.pan(1.0));
        case Qt::Key_Left: return give_answer(screen_.pan(-1.0));
        default: return QWidget::keyPressEvent(event);
    }
}

void PlotCanvas::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void PlotCanvas::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
    give_up_drag();
}

void PlotCanvas::leaveEvent(QEvent* event) {
    QWidget::leaveEvent(event);
    if (!screen_.drag().dragging()) tell_no_place();
}

bool PlotCanvas::event(QEvent* event) {
    if (event->type() == QEvent::WindowDeactivate || event->type() == QEvent::Hide) {
        hide_value();
        give_up_drag();
    }
    return QWidget::event(event);
}

void PlotCanvas::tell_place(QPointF place) {
    if (!has_axes()) {
        emit pointed(k_no_place);
        return;
    }
    const WorldPoint at = world_at(place);
    emit pointed(position_texts(*screen_.plot(), at.x, at.y));
}

void PlotCanvas::tell_no_place() {
    hide_value();
    emit pointed(k_no_place);
}

// The value under the mouse

/// A label that shows follows the mouse; otherwise it comes once the mouse rests.
void PlotCanvas::look_for_value(const QMouseEvent& event) {
    if (event.buttons() != Qt::NoButton) {
        hide_value();
    } else if (marked_) {
        show_value();
    } else {
        rest_.start();
    }
}

/// While the pointer has another meaning, such as the question mark of QuickHelp, nothing shows.
void PlotCanvas::show_value() {
    update_mark();
    marked_.reset();
    if (has_axes() && QApplication::overrideCursor() == nullptr)
        marked_ = nearest_point(*screen_.plot(), surface_points(), {mouse_.x(), mouse_.y()}, k_near);
    if (!marked_) {
        label_->hide();
        return;
    }
    label_->show_texts(point_texts(*screen_.plot(), *marked_), mouse_);
    update_mark();
}

void PlotCanvas::hide_value() {
    rest_.stop();
    label_->hide();
    update_mark();
    marked_.reset();
}

void PlotCanvas::update_mark() {
    if (!marked_) return;
    constexpr double k_reach = k_mark + 3.0;
    update(QRectF(marked_->at.x - k_reach, marked_->at.y - k_reach, 2.0 * k_reach, 2.0 * k_reach)
               .toAlignedRect());
}

}  // namespace nivora
