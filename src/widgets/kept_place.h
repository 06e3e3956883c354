// Puts a window back where the user left it.
#pragma once

#include "session/settings.h"

#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QSize>

class QWidget;

namespace nivora {

/// The place of one window: set before the window is shown, corrected once its frame is known, saved when
/// the window closes.
class KeptPlace : public QObject {
    Q_OBJECT

public:
    /// @param number the window's number among the kept places
    KeptPlace(QWidget& window, Settings& settings, std::size_t number);

    /// Puts the window in its place before it is shown. A window without a saved place is centred.
    ///
    /// @param screen for a window without a saved place
    void put(const QScreen& screen);
    /// Saves place and size of a window that is about to close.
    ///
    /// @param passing_height the part of its height that is only temporary
    void keep(int passing_height);

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void move_to(const Placement& place);
    void frame_appeared();
    [[nodiscard]] Placement place() const;
    [[nodiscard]] WindowPlace& kept() { return settings_.places.at(number_); }

    QWidget& window_;
    Settings& settings_;
    std::size_t number_;
    QPointer<const QScreen> screen_;
    std::optional<QSize> own_size_;
    Placement asked_;
};

/// The frame that the window manager draws around a window, as far as it is already known.
[[nodiscard]] FrameWidths frame_of(const QWidget& window);

}  // namespace nivora
