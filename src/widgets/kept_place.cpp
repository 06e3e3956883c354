#include "widgets/kept_place.h"

#include <QEvent>
#include <QGuiApplication>
#include <QScreen>
#include <QTimer>
#include <QWidget>
#include <QWindow>
#include <tuple>

namespace nivora {
namespace {

ScreenArea area_of(const QScreen& screen) {
    const QRect area = screen.availableGeometry();
    return {area.left(), area.top(), area.width(), area.height()};
}

/// All screens, beginning with `first`.
std::vector<ScreenArea> all_screens(const QScreen* first) {
    std::vector<ScreenArea> areas{area_of(*first)};
    for (const QScreen* screen : QGuiApplication::screens()) {
        if (screen != first) areas.push_back(area_of(*screen));
    }
    return areas;
}

}  // namespace

FrameWidths frame_of(const QWidget& window) {
    if (window.windowHandle() == nullptr) return {};
    const QMargins frame = window.windowHandle()->frameMargins();
    return {frame.left(), frame.top(), frame.right(), frame.bottom()};
}

KeptPlace::KeptPlace(QWidget& window, Settings& settings, std::size_t number)
    : QObject(&window), window_(window), settings_(settings), number_(number) {}

Placement KeptPlace::place() const {
    return place_window(settings_.places.at(number_), {own_size_->width(), own_size_->height()},
                        settings_.frame, all_screens(screen_ ? screen_.data() : window_.screen()));
}

void KeptPlace::put(const QScreen& screen) {
    screen_ = &screen;
    // A window is never smaller than its content, whose size the layouts know only now.
    window_.ensurePolished();
    const bool shown_before = own_size_.has_value();
    if (!own_size_) own_size_ = window_.size();
    own_size_ = own_size_->expandedTo(window_.minimumSizeHint());
    const Placement wanted = place();
    // A hidden window returns by itself to its old place.
    const bool comes_back = shown_before && kept().left == wanted.left && kept().top == wanted.top &&
                            kept().width == wanted.width && kept().height == wanted.height;
    asked_ = wanted;
    if (!comes_back) move_to(wanted);
    window_.winId();
    window_.windowHandle()->installEventFilter(this);
}

/// Before the platform window exists, the corner is that of the frame.
void KeptPlace::move_to(const Placement& place) {
    asked_ = place;
    window_.resize(place.width, place.height);
    window_.move(place.left, place.top);
}

bool KeptPlace::eventFilter(QObject* watched, QEvent* event) {
    // The frame is known when the content is first drawn.
    if (event->type() == QEvent::Expose && watched == window_.windowHandle())
        QTimer::singleShot(0, this, &KeptPlace::frame_appeared);
    return false;
}

/// The first visible window is placed before its frame is known: it is then moved by as much as it extends
/// beyond the screen. A size or corner that was set since is kept as far as it fits.
void KeptPlace::frame_appeared() {
    // The frame of a window that fills the screen differs from that of others.
    if (!window_.isVisible() || window_.isMaximized() || window_.isFullScreen()) return;
    const FrameWidths frame = frame_of(window_);
    if (frame == FrameWidths{} || frame == settings_.frame) return;
    settings_.frame = frame;
    const QPoint corner = window_.frameGeometry().topLeft();
    WindowPlace stands =
        place_to_keep(corner.x(), corner.y(), {window_.width(), window_.height()}, asked_, frame);
    const Placement now{*stands.left, *stands.top, window_.width(), window_.height()};
    const bool as_asked = now.left == asked_.left && now.top == asked_.top;
    if (as_asked) std::tie(stands.left, stands.top) = std::tie(kept().left, kept().top);
    const Placement better =
        place_window(stands, {}, frame, all_screens(screen_ ? screen_.data() : window_.screen()));
    if (better != now) move_to(better);
}

void KeptPlace::keep(int passing_height) {
    const FrameWidths frame = frame_of(window_);
    const bool whole_screen = window_.isMaximized() || window_.isFullScreen() || window_.isMinimized();
    const QRect normal = whole_screen ? window_.normalGeometry() : window_.geometry();
    if (!normal.isValid()) return;
    const QPoint corner =
        whole_screen ? normal.topLeft() - QPoint(frame.left, frame.top) : window_.frameGeometry().topLeft();
    kept() = place_to_keep(corner.x(), corner.y(), {normal.width(), normal.height() - passing_height}, asked_,
                           settings_.frame);
}

}  // namespace nivora
