// The two panels over a plot: the legend and the run summary.
#pragma once

#include "plots/draw_plot.h"
#include "plots/plot_screen.h"

#include <QColor>
#include <QObject>
#include <QPoint>
#include <functional>
#include <optional>

class QImage;
class QRect;
class QWidget;

namespace nivora {

class PlotPanel;

/// Paints on a part of a surface as on the whole, with as many pixels as the display has.
///
/// @param part   in points of the surface
/// @param ratio  pixels to a point
/// @param ground what was there before; may be transparent
[[nodiscard]] QImage painted_part(const QRect& part, SurfaceSize whole, double ratio, const QColor& ground,
                                  const std::function<void(Surface&)>& draw);

/// Puts the panels of a screen's plot over it. They are painted as they are on paper, and stand on whole
/// points. Where the user drops one is kept in the screen.
class PlotPanels : public QObject {
    Q_OBJECT

public:
    /// @param canvas what they lie on, a point of which is a point of the plot
    PlotPanels(PlotScreen& screen, QWidget& canvas);

    /// Shows the panels that the plot of the screen has, in their places; ends a drag.
    ///
    /// @param options what the plot is drawn with; the places in them don't count
    void place(DrawOptions options);
    /// Gives up the drag of a panel. @return whether one was dragged
    bool give_up_drag();
    [[nodiscard]] bool is_dragged() const;

    /// Top left corners; nothing for a panel that does not show.
    [[nodiscard]] std::optional<SurfacePoint> legend_place() const { return legend_place_; }
    [[nodiscard]] std::optional<SurfacePoint> summary_place() const { return summary_place_; }

signals:
    /// The mouse has come over a panel.
    void entered();
    /// A panel was dropped: place them again.
    void dropped();
    /// The name of a line was clicked in the legend.
    void line_chosen(int line, QPoint at);

private:
    PlotScreen& screen_;
    QWidget& canvas_;
    PlotPanel* legend_;
    PlotPanel* summary_;
    std::optional<SurfacePoint> legend_place_;
    std::optional<SurfacePoint> summary_place_;
};

}  // namespace nivora
