#include "windows/plots/plot_panels.h"

#include "paint/image_surface.h"
#include "plots/draw_panels.h"
#include "widgets/qt_text.h"
#include "windows/plots/plot_panel.h"

#include <QImage>
#include <QPainter>
#include <algorithm>
#include <cmath>
#include <vector>

namespace nivora {
namespace {

constexpr int k_line_help = 30;
constexpr int k_first_statistic_help = 23;

SurfacePoint place_of(const PlotPanel& panel) {
    const QPoint corner = panel.frame().topLeft();
    return {static_cast<double>(corner.x()), static_cast<double>(corner.y())};
}

SurfaceSize size_of(const QWidget& canvas) {
    return {static_cast<double>(canvas.width()), static_cast<double>(canvas.height())};
}

/// The points that a panel covers with its rim.
QRect cover_of(const SurfaceRectangle& box, SurfacePoint corner) {
    const QPoint place(static_cast<int>(corner.x), static_cast<int>(corner.y));
    const QSize size(static_cast<int>(std::ceil(box.width)), static_cast<int>(std::ceil(box.height)));
    constexpr int k_rim = PlotPanel::k_rim;
    return QRect(place, size).adjusted(-k_rim, -k_rim, k_rim, k_rim);
}

QRectF inside(const SurfaceRectangle& box, const QRect& panel) {
    return QRectF(box.left, box.top, box.width, box.height).translated(-panel.topLeft());
}

std::vector<PanelText> legend_texts(const Surface& surface, const Plot& plot, const DrawOptions& options,
                                    const QRect& panel) {
    const std::vector<SurfaceRectangle> boxes = legend_text_boxes(surface, plot, options);
    std::vector<PanelText> texts;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        texts.push_back({.name = QStringLiteral("Label4(%1)").arg(i),
                         .text = to_qt(plot.legend[i].text),
                         .box = inside(boxes[i], panel),
                         .help = k_line_help,
                         .line = plot.legend[i].line});
    }
    return texts;
}

std::vector<PanelText> summary_texts(const Surface& surface, const Plot& plot, const DrawOptions& options,
                                     const QRect& panel) {
    const std::vector<SummaryRowBoxes> boxes = summary_row_boxes(surface, plot, options);
    std::vector<PanelText> texts;
    for (std::size_t i = 0; i < boxes.size(); ++i) {
        const int help = k_first_statistic_help + static_cast<int>(i);
        texts.push_back({.name = QStringLiteral("Label2(%1)").arg(i),
                         .text = to_qt(plot.summary[i].caption),
                         .box = inside(boxes[i].caption, panel),
                         .help = help});
        texts.push_back({.name = QStringLiteral("Label3(%1)").arg(i),
                         .text = to_qt(plot.summary[i].value),
                         .box = inside(boxes[i].value, panel),
                         .help = help});
    }
    return texts;
}

/// What one panel has of its own.
struct PanelDrawing {
    SurfaceRectangle (*rectangle)(const Surface&, const Plot&, const DrawOptions&);
    void (*paint)(Surface&, const Plot&, const DrawOptions&);
    std::vector<PanelText> (*texts)(const Surface&, const Plot&, const DrawOptions&, const QRect&);
    std::optional<SurfacePoint> DrawOptions::*place;
};

constexpr PanelDrawing k_legend{legend_rectangle, paint_legend, legend_texts, &DrawOptions::legend_place};
constexpr PanelDrawing k_summary{summary_rectangle, paint_summary, summary_texts,
                                 &DrawOptions::summary_place};

/// Shows a panel where the options put it, or where it hides the least, and says in the options where.
/// @return whether the plot has that panel
bool show_panel(PlotPanel& panel, const PanelDrawing& drawing, const Plot& plot, DrawOptions& options) {
    QImage paper(1, 1, QImage::Format_RGB32);  // to measure texts as they are painted
    QPainter painter(&paper);
    const QWidget& canvas = *panel.parentWidget();
    const PaintedSurface surface(painter, size_of(canvas));
    const SurfaceRectangle box = drawing.rectangle(surface, plot, options);
    if (!(box.width > 0.0)) return false;
    const SurfacePoint corner{std::floor(box.left), std::floor(box.top)};
    options.*drawing.place = corner;
    const QRect cover = cover_of(box, corner);
    panel.setGeometry(cover);
    panel.show_picture(painted_part(cover, surface.size(), canvas.devicePixelRatioF(), Qt::transparent,
                                    [&](Surface& part) { drawing.paint(part, plot, options); }),
                       drawing.texts(surface, plot, options, cover));
    return true;
}

}  // namespace

QImage painted_part(const QRect& part, SurfaceSize whole, double ratio, const QColor& ground,
                    const std::function<void(Surface&)>& draw) {
    const bool opaque = ground.alpha() == 255;
    QImage image((QSizeF(part.size()) * ratio).toSize(),
                 opaque ? QImage::Format_RGB32 : QImage::Format_ARGB32_Premultiplied);
    if (image.isNull()) return image;
    image.fill(ground);
    QPainter painter(&image);
    // Whole pixels, so that straight lines stay crisp.
    painter.translate(-std::round(part.x() * ratio), -std::round(part.y() * ratio));
    painter.scale(ratio, ratio);
    {
        PaintedSurface surface(painter, whole);
        draw(surface);
    }
    painter.end();
    image.setDevicePixelRatio(ratio);
    return image;
}

PlotPanels::PlotPanels(PlotScreen& screen, QWidget& canvas)
    : QObject(&canvas),
      screen_(screen),
      canvas_(canvas),
      legend_(new PlotPanel(QStringLiteral("Frame2"), QStringLiteral("Legend"), &canvas)),
      summary_(new PlotPanel(QStringLiteral("Frame3"), QStringLiteral("Run summary"), &canvas)) {
    legend_->setToolTip(QStringLiteral("Leftclick and drag to move legend "));
    legend_->set_line_tip(
        QStringLiteral("Click on upperleft corner to move legend, line names to customize lines "));
    for (PlotPanel* panel : {legend_, summary_})
        connect(panel, &PlotPanel::entered, this, &PlotPanels::entered);
    connect(legend_, &PlotPanel::line_chosen, this, &PlotPanels::line_chosen);
    connect(legend_, &PlotPanel::dropped, this, [this] {
        screen_.move_legend(place_of(*legend_));
        emit dropped();
    });
    connect(summary_, &PlotPanel::dropped, this, [this] {
        screen_.move_summary(place_of(*summary_));
        emit dropped();
    });
}

void PlotPanels::place(DrawOptions options) {
    give_up_drag();
    options.legend_place = screen_.legend_place();
    options.summary_place = screen_.summary_place();
    const Plot* plot = screen_.plot();
    // The run summary avoids the legend.
    const bool legend = plot != nullptr && show_panel(*legend_, k_legend, *plot, options);
    const bool summary = plot != nullptr && show_panel(*summary_, k_summary, *plot, options);
    legend_->setVisible(legend);
    summary_->setVisible(summary);
    legend_place_ = legend ? options.legend_place : std::nullopt;
    summary_place_ = summary ? options.summary_place : std::nullopt;
}

bool PlotPanels::give_up_drag() {
    const bool legend = legend_->give_up_drag();
    const bool summary = summary_->give_up_drag();
    return legend || summary;
}

bool PlotPanels::is_dragged() const { return legend_->is_dragged() || summary_->is_dragged(); }

}  // namespace nivora
