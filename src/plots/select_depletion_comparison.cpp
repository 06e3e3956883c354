#include "plots/melt_curves.h"

#include <algorithm>
#include <utility>
#include <vector>

namespace nivora {
namespace {

// Fields of the rows of both plots; the last one is another curve's depth in each of them.
constexpr std::size_t k_cover = 0;
constexpr std::size_t k_changed_cover = 1;
constexpr std::size_t k_depth = 2;
constexpr std::size_t k_adjusted_depth = 3;
constexpr std::size_t k_dated_depth = 4;

/// What a curve shows: cover over depth.
struct CurveFields {
    std::size_t depth = 0;
    std::size_t cover = 0;
    bool holds_depth = false;  ///< whether a depth that falls keeps the value of the day before
};

/// A depletion curve to the first day without snow.
class DepletionCurve {
public:
    explicit DepletionCurve(const CurveFields& fields) : fields_(fields) {}

    /// Adds the next row. Reads it after the curve's end, too: what is missing there ends the build.
    ///
    /// Intended: the first day stands at a depth of 0 and is not tested, so that snow may come later.
    void add(const DailyRows& rows, std::size_t row) {
        PlotPoint point{0.0F, required_value(rows, fields_.cover, row)};
        if (row > 0) point.x = required_value(rows, fields_.depth, row);
        if (ended_) return;
        if (fields_.holds_depth && !points_.empty()) point.x = std::max(point.x, points_.back().x);
        points_.push_back(point);
        ended_ = row > 0 && point.y == 0.0F;
    }

    [[nodiscard]] bool ended() const { return ended_; }
    [[nodiscard]] float last_depth() const { return points_.back().x; }
    [[nodiscard]] std::vector<PlotPoint> take_points() { return std::move(points_); }

private:
    CurveFields fields_;
    std::vector<PlotPoint> points_;
    bool ended_ = false;
};

/// Common to both plots: rows, labels and the y axis, which reaches the larger of the two covers.
DailyRows begin_comparison(PlotBuild& build) {
    DailyRows rows =
        read_plot_rows(build, k_sim_results, {"SCA", "SCAclim", "MDCexcl", "MDCexclWA", "MDCexclWAnew"});
    Plot& plot = build.plot;
    label_depletion(build);
    set_frame(plot, least(rows.fields[k_depth]), largest(rows.fields[k_depth]), least(rows.fields[k_cover]),
              largest(rows.fields[k_cover]));
    plot.frame.x_min = 0.0F;
    plot.frame.y_max = std::max(plot.frame.y_max, largest(rows.fields[k_changed_cover]));
    plot.frame.legend_rows = 1.0F;
    return rows;
}

/// Walks the rows until both curves have ended.
void walk(const DailyRows& rows, DepletionCurve& first, DepletionCurve& second) {
    for (std::size_t row = 0; row < rows.size(); ++row) {
        check_year_points(row + 1);
        first.add(rows, row);
        second.add(rows, row);
        if (first.ended() && second.ended()) return;
    }
}

void compare(PlotBuild& build, const char* first_name, const CurveFields& first_fields,
             const char* second_name, const CurveFields& second_fields) {
    const DailyRows rows = begin_comparison(build);
    DepletionCurve first{first_fields};
    DepletionCurve second{second_fields};
    walk(rows, first, second);
    build.plot.frame.x_max = std::max(first.last_depth(), second.last_depth());
    add_zone_curve(build, first_name, first.take_points());
    add_zone_curve(build, second_name, second.take_points());
}

}  // namespace

void select_depletion_cutoff(PlotBuild& build) {
    compare(build, "MDC_excl", {.depth = k_depth, .cover = k_cover}, "MDC_excl_WA",
            {.depth = k_adjusted_depth, .cover = k_changed_cover});
}

void select_depletion_comparison(PlotBuild& build) {
    compare(build, "MDC_excl_WA", {.depth = k_adjusted_depth, .cover = k_changed_cover, .holds_depth = true},
            "MDC_exclWA_CLIM", {.depth = k_dated_depth, .cover = k_changed_cover, .holds_depth = true});
}

}  // namespace nivora
