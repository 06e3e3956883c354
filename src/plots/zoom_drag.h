// The drag of a zoom rectangle: armed by Zoom In, begun, moved and ended by the mouse.
#pragma once

#include "plots/plot_view.h"

#include <optional>

namespace nivora {

/// A place in the units of a plot's axes.
struct WorldPoint {
    double x = 0.0;
    double y = 0.0;
};

class ZoomDrag {
public:
    [[nodiscard]] bool armed() const { return armed_; }
    /// Whether the button is down.
    [[nodiscard]] bool dragging() const { return stage_ > 0; }
    /// 0 without a drag, 1 from the press on, 2 from the first move on.
    [[nodiscard]] int stage() const { return stage_; }
    /// The rubber band: from where the drag began to the last place of the mouse; nothing before a move.
    [[nodiscard]] std::optional<WorldRectangle> band() const;

    /// Zoom In was pressed; a drag that is under way begins anew.
    void arm();
    /// The button went down; nothing happens if the zoom is not armed. On an axis that counts days the drag
    /// begins on a whole day.
    void press(PlotNumber plot, const WorldPoint& at);
    /// The mouse moved. @return the rubber band to show, if there is one
    std::optional<WorldRectangle> move(const WorldPoint& to);
    /// The button went up, which ends the drag and disarms the zoom. @return what to zoom to; nothing if
    /// there was no drag or the rectangle has no area
    std::optional<WorldRectangle> release(PlotNumber plot, const WorldPoint& at);

    /// Escape: disarms the zoom and ends a drag. @return whether there was either
    bool escape();
    /// A second button or the loss of the focus: ends a drag and disarms; a zoom that is only armed stays so.
    /// @return whether there was a drag
    bool interrupt();

private:
    bool armed_ = false;
    int stage_ = 0;
    WorldPoint start_;
    WorldPoint last_;
};

}  // namespace nivora
