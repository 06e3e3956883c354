#include "plots/plot_screen.h"

#include "plots/plot_lists.h"
#include "plots/plot_pointer.h"
#include "reports/report_period.h"

#include <utility>

namespace nivora {
namespace {

constexpr const char* k_error_title = "Plotting error";

bool same_frame(const PlotFrame& a, const PlotFrame& b) {
    return a.x_min == b.x_min && a.x_max == b.x_max && a.y_min == b.y_min && a.y_max == b.y_max;
}

/// Whether two plots are of the same basin, simulation, scenario, step and zone.
bool shows_same(const PlotHead& a, const PlotHead& b) {
    return a.subtitle == b.subtitle && a.scenario_line == b.scenario_line && a.step == b.step &&
           a.export_zone_label == b.export_zone_label;
}

ScreenAnswer message(std::string title, std::string text, bool information = false) {
    ScreenAnswer answer;
    answer.message = ScreenMessage{std::move(title), std::move(text), information};
    return answer;
}

/// Why a pick is not taken; null if it is, also if the build failed, which shows its fallback.
const PlotRefusal* refusal_of(const PlotOutcome& outcome) {
    const auto* refusal = std::get_if<PlotRefusal>(&outcome);
    return refusal != nullptr && refusal->kind != PlotRefusal::Kind::Unable ? refusal : nullptr;
}

ScreenAnswer drawn() { return {.draw = true}; }

/// After the whole plot was shown, whose maxima the boxes show.
ScreenAnswer armed() { return {.draw = true, .fill_boxes = true}; }

}  // namespace

bool is_rebuilt(PlotNumber plot) {
    return plot == PlotNumber::RunoffComponents || plot == PlotNumber::CoverComparison ||
           plot == PlotNumber::WaterEquivalent;
}

int PlotScreen::shown_zone(const BasinState& basin) const {
    return zone_ && *zone_ <= basin.ZoneCount ? *zone_ : basin.ZoneCount + 1;
}

Plot PlotScreen::whole_view() const { return with_maxima(*whole_, maxima_); }

void PlotScreen::show_whole() {
    view_ = whole_view();
    boxes_ = box_texts(*view_);
}

ScreenAnswer PlotScreen::take(PlotOutcome outcome, const PlotRequest& request, const PlotSources& sources) {
    if (const PlotRefusal* refusal = refusal_of(outcome)) return message(k_error_title, refusal->text);
    drag_.escape();
    picked_ = request.plot;
    step_ = reported_climate_step(sources.basin, sources.run);
    if (zone_list(request.plot, sources.basin) != ZoneList::None) {
        zone_ = request.zone.value_or(picked_zone(request.plot, sources.basin));
        if (*zone_ > sources.basin.ZoneCount) zone_.reset();
    }
    whole_.reset();
    view_.reset();
    fallback_.reset();
    if (const auto* failure = std::get_if<PlotRefusal>(&outcome)) {
        fallback_ = *failure;
        boxes_ = {};
        return armed();
    }
    whole_ = std::get<Plot>(std::move(outcome));
    show_whole();
    ScreenAnswer answer = armed();
    answer.store_melt = request.plot == PlotNumber::ChangedAccumulatedMelt;
    return answer;
}

ScreenAnswer PlotScreen::pick(PlotNumber plot, BasinDatabase& database, const PlotSources& sources) {
    PlotRequest request{.plot = plot, .zone = {}};
    // Intended: the snow cover alone keeps the zone that the list shows.
    if (plot == PlotNumber::SnowCover) request.zone = shown_zone(sources.basin);
    PlotOutcome outcome = select_plot(database, request, sources);
    if (refusal_of(outcome) == nullptr) {
        manual_scale_ = false;
        maxima_ = {};
    }
    return take(std::move(outcome), request, sources);
}

ScreenAnswer PlotScreen::pick_zone(int zone, BasinDatabase& database, const PlotSources& sources) {
    if (!picked_) return {};
    const PlotRequest request{.plot = *picked_, .zone = zone};
    return take(select_plot(database, request, sources), request, sources);
}

ScreenAnswer PlotScreen::redraw(const BoxTexts& typed) {
    if (!whole_) return {};
    const auto reading = read_boxes(*whole_, boxes_, typed);
    if (const auto* refusal = std::get_if<BoxRefusal>(&reading)) {
        ScreenAnswer answer = message(k_error_title, refusal->text);
        answer.wrong_box = refusal->box;
        return answer;
    }
    const auto& maxima = std::get<TypedMaxima>(reading);
    if (maxima.x) maxima_.x = maxima.x;
    if (maxima.y) maxima_.y = maxima.y;
    manual_scale_ = true;
    boxes_ = box_texts(whole_view());
    if (!view_->zoomed || is_rebuilt(view_->number)) show_whole();
    ScreenAnswer answer = armed();
    answer.after_zoom = view_->zoomed;
    return answer;
}

bool PlotScreen::zoom_in() {
    if (!view_ || !plot_tools(view_->number).zoom) return false;
    drag_.arm();
    return true;
}

void PlotScreen::press(const WorldPoint& at) {
    if (view_) drag_.press(view_->number, at);
}

ScreenAnswer PlotScreen::release(const WorldPoint& at) {
    if (!view_) return {};
    const auto rectangle = drag_.release(view_->number, at);
    return rectangle ? zoom(*rectangle) : ScreenAnswer{};
}

ScreenAnswer PlotScreen::zoom(const WorldRectangle& rectangle) {
    if (!view_) return {};
    auto outcome = nivora::zoom(*view_, rectangle);
    if (const auto* refusal = std::get_if<PlotRefusal>(&outcome)) return message({}, refusal->text, true);
    auto& zoomed = std::get<Plot>(outcome);
    if (zoomed.zoomed == view_->zoomed && same_frame(zoomed.frame, view_->frame)) return {};
    view_ = std::move(zoomed);
    return drawn();
}

/// @return false if the basin has another plot now than the one that was picked, or none
bool PlotScreen::build_again(BasinDatabase& database, const PlotSources& sources) {
    const PlotRequest request{.plot = whole_->number, .zone = whole_->zone};
    PlotOutcome outcome = select_plot(database, request, sources);
    auto* plot = std::get_if<Plot>(&outcome);
    if (plot == nullptr || !shows_same(plot->head, whole_->head)) return false;
    whole_ = std::move(*plot);
    return true;
}

ScreenAnswer PlotScreen::zoom_out(BasinDatabase* database, const PlotSources& sources) {
    drag_.escape();
    if (!whole_) return {};
    const bool built = database != nullptr && build_again(*database, sources);
    show_whole();
    ScreenAnswer answer = armed();
    answer.store_melt = built && whole_->number == PlotNumber::ChangedAccumulatedMelt;
    return answer;
}

ScreenAnswer PlotScreen::show_frame(const PlotFrame& frame) {
    if (same_frame(frame, view_->frame)) return {};
    Plot whole = whole_view();
    if (!same_frame(frame, whole.frame)) {
        whole.frame = frame;
        whole.bands.clear();  // A part of plot 16 shows the lines alone.
        whole.zoomed = true;
    }
    view_ = std::move(whole);
    return drawn();
}

ScreenAnswer PlotScreen::wheel(const WorldPoint& about, double notches) {
    if (!view_ || !has_wheel(view_->number) || has_no_data(*view_) || drag_.dragging()) return {};
    return show_frame(wheel_zoomed(view_->frame, whole_view().frame, about, notches));
}

ScreenAnswer PlotScreen::pan(double notches) {
    if (!view_ || !has_wheel(view_->number) || has_no_data(*view_) || drag_.dragging()) return {};
    return show_frame(panned(view_->frame, whole_view().frame, notches));
}

ScreenAnswer PlotScreen::after_resize() {
    if (!view_) return {.draw = fallback_.has_value()};
    if (!is_rebuilt(view_->number)) return drawn();
    show_whole();
    return armed();
}

void PlotScreen::forget_pick() {
    PlotScreen fresh;
    fresh.grid_ = grid_;
    fresh.data_points_ = data_points_;
    *this = std::move(fresh);
}

ScreenAnswer PlotScreen::next_grid() {
    constexpr int k_modes = 4;
    grid_ = static_cast<GridMode>((static_cast<int>(grid_) + 1) % k_modes);
    return after_resize();
}

ScreenAnswer PlotScreen::toggle_data_points() {
    data_points_ = !data_points_;
    return after_resize();
}

}  // namespace nivora
