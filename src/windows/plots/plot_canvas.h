// The surface of the plot window: the picture of the plot, and what the mouse does on it.
#pragma once

#include "paint/plot_picture.h"
#include "plots/plot_pointer.h"
#include "plots/plot_screen.h"
#include "session/settings.h"

#include <QImage>
#include <QTimer>
#include <QWidget>
#include <optional>

namespace nivora {

class PlotPanels;
class ValueLabel;

/// Shows the plot of a screen with its panels. A point of the plot is a point of the widget; the picture has
/// as many pixels as the display. It is painted once and kept: the mouse only moves the rubber band over it.
///
/// Its owner answers `answered` by `redraw` where there is something to draw.
class PlotCanvas : public QWidget {
    Q_OBJECT

public:
    /// @param screen   what is shown; the mouse works on it
    /// @param settings the looks of the lines
    PlotCanvas(PlotScreen& screen, const Settings& settings, QWidget* parent = nullptr);

    /// Shows what the screen shows now: plot, lines, panels, pointer.
    void redraw();
    /// Shows by the pointer whether the zoom is armed.
    void show_pointer();
    /// Ends a drag and disarms the zoom, or puts a panel back that is being dragged. @return whether there
    /// was anything to end
    bool escape();

    /// What the picture is drawn with: its panels stand where the window shows them.
    [[nodiscard]] DrawOptions draw_options() const;
    [[nodiscard]] PictureSize picture_size() const;
    [[nodiscard]] bool shows_summary() const;

    [[nodiscard]] QSize sizeHint() const override;

signals:
    /// The mouse gave a command, or the size has changed.
    void answered(const nivora::ScreenAnswer& answer);
    /// The place of the mouse; blanks where there is none.
    void pointed(const nivora::BoxTexts& texts);
    /// The name of a line was clicked in the legend.
    void line_chosen(int line, QPoint at);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    [[nodiscard]] SurfaceSize surface_points() const;
    [[nodiscard]] bool has_axes() const;
    [[nodiscard]] World world() const;
    [[nodiscard]] WorldPoint world_at(QPointF place) const;
    [[nodiscard]] std::optional<QRectF> band_box() const;
    void update_band(const std::optional<QRectF>& before);
    void keep_picture_up_to_date();
    void paint_picture();
    void paint_mark(QPainter& painter) const;
    void paint_band(QPainter& painter) const;
    void describe();
    void give_answer(const ScreenAnswer& answer);
    void give_up_drag();
    void tell_place(QPointF place);
    void tell_no_place();
    void look_for_value(const QMouseEvent& event);
    void show_value();
    void hide_value();
    void update_mark();

    PlotScreen& screen_;
    const Settings& settings_;
    QImage picture_;
    bool stale_ = true;  ///< whether the picture has to be painted anew
    PlotPanels* panels_;
    ValueLabel* label_;
    QTimer rest_;  ///< runs out once the mouse has rested
    QPointF mouse_;
    std::optional<NearPoint> marked_;  ///< the point that the label is about
};

}  // namespace nivora
