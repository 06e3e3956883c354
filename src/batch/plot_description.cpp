#include "batch/plot_description.h"

#include "plots/curve_walk.h"
#include "plots/plot_export.h"

namespace nivora {
namespace {

constexpr const char* k_form = "nivora plot description 1";

template <typename List, typename ToJson>
Json list_of(const List& list, ToJson to_json) {
    Json json = Json::array();
    for (const auto& item : list) json.push_back(to_json(item));
    return json;
}

template <typename Value>
Json values_of(const std::vector<Value>& values) {
    return list_of(values, [](const Value& value) { return Json(value); });
}

Json zone_json(const Plot& plot, int zone_count) {
    if (!plot.zone) return nullptr;
    return *plot.zone > zone_count ? "all" : zone_letter(*plot.zone);
}

Json bounds_json(const PlotFrame& frame) {
    Json bounds{frame.x_min, frame.x_max, frame.y_min, frame.y_max, frame.legend_rows};
    for (std::size_t bound = 0; bound < 3; ++bound)
        bounds.push_back(frame.queried ? Json((*frame.queried)[bound]) : Json(nullptr));
    return bounds;
}

Json transform_json(const Transform& transform) {
    return {{"ScaleLeft", transform.ScaleLeft},
            {"ScaleTop", transform.ScaleTop},
            {"ScaleWidth", transform.ScaleWidth},
            {"ScaleHeight", transform.ScaleHeight}};
}

const char* kind_name(XAxisKind kind) {
    if (kind == XAxisKind::Number) return "number";
    return kind == XAxisKind::Months ? "months" : "days";
}

Json x_axis_json(const Plot& plot, const PlotAxes& axes) {
    return {{"kind", kind_name(axes.x_kind)},
            {"step", axes.x_step},
            {"label", axes.x_kind == XAxisKind::Number ? Json(plot.x_label) : Json(nullptr)},
            {"ticks", list_of(axes.x_ticks, [](const XTick& tick) {
                 return Json{{"x", tick.x}, {"line", tick.line}, {"label", tick.label}, {"at", tick.at}};
             })}};
}

Json y_axis_json(const Plot& plot, const PlotAxes& axes) {
    return {{"step", axes.y_step},
            {"label", plot.y_label},
            {"ticks", list_of(axes.y_ticks, [](const YTick& tick) {
                 return Json{{"y", tick.y}, {"label", tick.label}};
             })}};
}

Json point_json(const PlotPoint& point) { return Json::array({point.x, point.y}); }

Json curve_json(const Plot& plot, const PlotCurve& curve, bool data_points) {
    const Pen pen = curve_pen(plot, curve, default_lines());
    const CurveStrokes strokes = walk_curve(curve, plot.frame);
    const auto chain = [](const std::vector<PlotPoint>& points) { return list_of(points, point_json); };
    return {{"name", curve.name},
            {"pass", curve.pass},
            {"line", curve.mode == CurveMode::Fifth ? 5 : curve.line},
            {"style", pen.style},
            {"width", pen.width},
            {"points", curve.points.size()},
            {"lines", list_of(strokes.lines, chain)},
            {"dots", list_of(strokes.dots, point_json)},
            {"circles", data_points ? list_of(strokes.circles, point_json) : Json::array()}};
}

Json bar_json(const PlotBar& bar) {
    return {{"name", bar.name}, {"line", bar.line},     {"x1", bar.x1},
            {"x2", bar.x2},     {"bottom", bar.bottom}, {"top", bar.top}};
}

Json band_json(const PlotBand& band) {
    return {{"band", band.band}, {"line", band.line}, {"filled", band.filled}, {"seed_y", band.seed_y}};
}

/// What is drawn within the frame; a plot without a range has none of it.
void add_drawing(Json& json, const Plot& plot, const PlotAxes& axes, const DescriptionOptions& options) {
    const Json none = Json::array();
    const bool empty = axes.no_data;
    json["x_axis"] = empty ? Json(nullptr) : x_axis_json(plot, axes);
    json["y_axis"] = empty ? Json(nullptr) : y_axis_json(plot, axes);
    json["grid"] = {{"x", values_of(axes.grid_x)}, {"y", values_of(axes.grid_y)}};
    const auto curve = [&](const PlotCurve& drawn) { return curve_json(plot, drawn, options.data_points); };
    json["curves"] = empty ? none : list_of(plot.curves, curve);
    json["legend"] = empty ? none : list_of(plot.legend, [](const LegendRow& row) { return Json(row.text); });
    json["bars"] = empty ? none : list_of(plot.bars, bar_json);
    json["fills"] = empty ? none : list_of(plot.bands, band_json);
    json["radius"] = empty || !options.data_points ? Json(nullptr) : Json(data_point_radius(axes.transform));
}

}  // namespace

Json describe_plot(const Plot& plot, const DescriptionOptions& options) {
    const PlotAxes axes = lay_out_axes(plot, options.grid);
    Json json{{"form", k_form},
              {"plot", number_of(plot.number)},
              {"step", plot.head.step},
              {"zone", zone_json(plot, options.zone_count)},
              {"bounds", bounds_json(plot.frame)},
              {"no_data", axes.no_data},
              {"transform", transform_json(axes.transform)},
              {"title", plot.head.title},
              {"subtitle", plot.head.subtitle},
              {"period", period_text(plot)},
              {"zone_label", plot.head.zone_label},
              {"scenario_line", plot.head.scenario_line},
              {"right_column", values_of(right_column(plot, options.now))}};
    add_drawing(json, plot, axes, options);
    json["summary"] = list_of(plot.summary, [](const RunSummaryRow& row) {
        return Json::array({row.caption, row.value});
    });
    json["text_export"] = values_of(export_plot_text(plot, options.now));
    json["slurp"] = options.flow ? values_of(*options.flow) : Json(nullptr);
    return json;
}

Json describe_refusal(PlotNumber plot, int step, const PlotRefusal& refusal) {
    const auto name = [&] {
        switch (refusal.kind) {
            case PlotRefusal::Kind::ClimateStep: return "climate step";
            case PlotRefusal::Kind::NotOffered: return "not offered";
            case PlotRefusal::Kind::Unable: return "unable";
            case PlotRefusal::Kind::Zoom: return "zoom";
        }
        return "";
    };
    return {{"form", k_form},
            {"plot", number_of(plot)},
            {"step", step},
            {"refused", name()},
            {"text", refusal.text}};
}

}  // namespace nivora
