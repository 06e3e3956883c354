// Puts a window where its user left it.
#pragma once

#include "session/settings.h"

#include <QObject>
#include <QPointer>
#include <QScreen>
#include <QSize>

class QWidget;

namespace nivora {

/// The place of one window: put before the window shows, corrected once its frame is known, kept when the
/// window goes.
class KeptPlace : public QObject {
    Q_OBJECT

public:
    /// @param number the window's number among the kept places
    KeptPlace(QWidget& window, Settings& settings, std::size_t number);

    /// Puts the window, which does not show yet, on its place. A window that was not kept yet is centred.
    ///
    /// @param screen that of a window which was not kept yet
    void put(const QScreen& screen);
    /// Keeps place and size of a window that is about to go.
    ///
    /// @param passing_height by how much it is taller for a while only
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

/// What the window manager draws around a window, as far as it is known yet.
[[nodiscard]] FrameWidths frame_of(const QWidget& window);

}  // namespace nivora
