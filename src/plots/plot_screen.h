// The plot window as a value: what was picked, how it is viewed, and what the window must do after a command.
#pragma once

#include "plots/axes.h"
#include "plots/plot_boxes.h"
#include "plots/select_plot.h"
#include "plots/surface.h"
#include "plots/zoom_drag.h"

#include <optional>
#include <string>
#include <variant>

namespace nivora {

/// A message box.
struct ScreenMessage {
    std::string title;  ///< empty for the name of the program
    std::string text;
    bool information = false;  ///< with the icon of an information
};

/// What the window must do after a command.
struct ScreenAnswer {
    bool draw = false;        ///< the surface anew
    bool fill_boxes = false;  ///< with `boxes()`, and hide the Redraw button
    bool store_melt = false;  ///< plot 21 was built: its columns belong into the results
    bool after_zoom = false;  ///< what was typed shows once the zoom is left; the user should be told
    std::optional<ScreenMessage> message = {};
    std::optional<BoxRefusal::Box> wrong_box = {};  ///< the box that the message is about
};

/// Whether the general redraw makes a plot anew, which ends a zoom: the filled plots and plot 19.
[[nodiscard]] bool is_rebuilt(PlotNumber plot);

/// The picture, with its step, stays until the next pick, whatever happens to the basin under it.
class PlotScreen {
public:
    /// Nothing before the first pick.
    [[nodiscard]] std::optional<PlotNumber> picked() const { return picked_; }
    /// The climate step of the pick.
    [[nodiscard]] int step() const { return step_; }
    /// The place in the zone list that it shows, from 1; that of "All Zones" at first.
    [[nodiscard]] int shown_zone(const BasinState& basin) const;
    /// The plot as it is viewed; null if none stands.
    [[nodiscard]] const Plot* plot() const { return view_ ? &*view_ : nullptr; }
    /// Why no plot stands after a build that failed, shown on the surface; null otherwise.
    [[nodiscard]] const PlotRefusal* fallback() const { return fallback_ ? &*fallback_ : nullptr; }
    [[nodiscard]] GridMode grid() const { return grid_; }
    [[nodiscard]] bool data_points() const { return data_points_; }
    /// Whether Redraw was used since the pick of the plot.
    [[nodiscard]] bool manual_scale() const { return manual_scale_; }
    [[nodiscard]] const TypedMaxima& maxima() const { return maxima_; }
    /// The texts that the boxes were last given.
    [[nodiscard]] const BoxTexts& boxes() const { return boxes_; }
    [[nodiscard]] const ZoomDrag& drag() const { return drag_; }
    /// Top left corners of the panels; nothing until the user drags one.
    [[nodiscard]] std::optional<SurfacePoint> legend_place() const { return legend_place_; }
    [[nodiscard]] std::optional<SurfacePoint> summary_place() const { return summary_place_; }

    /// An entry of the plot list was chosen. A plot that is not offered gives a message, and nothing changes;
    /// a build that fails leaves the fallback and no plot.
    ScreenAnswer pick(PlotNumber plot, BasinDatabase& database, const PlotSources& sources);
    /// An entry of the zone list was chosen, from 1. Typed maxima stay.
    ScreenAnswer pick_zone(int zone, BasinDatabase& database, const PlotSources& sources);

    /// Redraw: takes the maxima that were typed into the boxes. A zoom goes before them; Zoom Out shows them.
    ScreenAnswer redraw(const BoxTexts& typed);

    /// Zoom In. @return whether the zoom is armed; never for plot 23 or without a plot
    bool zoom_in();
    void press(const WorldPoint& at);
    /// @return the rubber band to show
    std::optional<WorldRectangle> move(const WorldPoint& to) { return drag_.move(to); }
    ScreenAnswer release(const WorldPoint& at);
    /// As those of the drag.
    bool escape() { return drag_.escape(); }
    bool interrupt() { return drag_.interrupt(); }

    ScreenAnswer zoom(const WorldRectangle& rectangle);
    /// Leaves all zooms at once, those of the wheel too. The plot is made anew from the file while the basin
    /// still has what was picked, at the same climate step; otherwise the one that was built is shown again.
    ///
    /// @param database null if the file can't be opened
    ScreenAnswer zoom_out(BasinDatabase* database, const PlotSources& sources);
    /// The wheel was turned over a place; above 0 zooms in.
    ScreenAnswer wheel(const WorldPoint& about, double notches);
    /// The wheel was turned with Shift; above 0 goes to later days.
    ScreenAnswer pan(double notches);

    /// The general redraw, also after a change of size, lines, grid or data points.
    ScreenAnswer after_resize();
    /// Vertical, horizontal, both, none, and again.
    ScreenAnswer next_grid();
    ScreenAnswer toggle_data_points();

    /// The window is closed: nothing was picked. Grid lines and data points stay for its next opening.
    void forget_pick();

    void move_legend(SurfacePoint to) { legend_place_ = to; }
    void move_summary(SurfacePoint to) { summary_place_ = to; }

private:
    ScreenAnswer take(PlotOutcome outcome, const PlotRequest& request, const PlotSources& sources);
    void show_whole();
    ScreenAnswer show_frame(const PlotFrame& frame);
    [[nodiscard]] Plot whole_view() const;
    bool build_again(BasinDatabase& database, const PlotSources& sources);

    std::optional<PlotNumber> picked_;
    std::optional<int> zone_;  ///< what the zone list shows; nothing for "All Zones"
    int step_ = 0;
    std::optional<Plot> whole_;  ///< as it was built
    std::optional<Plot> view_;
    std::optional<PlotRefusal> fallback_;
    GridMode grid_ = GridMode::Vertical;
    bool data_points_ = false;
    bool manual_scale_ = false;
    TypedMaxima maxima_;
    BoxTexts boxes_;
    ZoomDrag drag_;
    std::optional<SurfacePoint> legend_place_;
    std::optional<SurfacePoint> summary_place_;
};

}  // namespace nivora
