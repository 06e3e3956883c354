#include "windows/plots/plot_output.h"

#include "base/calendar.h"
#include "paint/plot_print.h"
#include "session/plot_file.h"
#include "widgets/busy_pointer.h"
#include "widgets/nivora_window.h"
#include "widgets/printing.h"

#include <QClipboard>
#include <QGuiApplication>

namespace nivora {
namespace {

DrawOptions painted_options(const ShownPlot& shown, bool summary) {
    return with_panels(shown.plot, shown.options, surface_size(shown.size), summary);
}

PictureForm picture_of(PlotForm form) {
    switch (form) {
        case PlotForm::Png: return PictureForm::Png;
        case PlotForm::Svg: return PictureForm::Svg;
        case PlotForm::Pdf: return PictureForm::Pdf;
        default: return PictureForm::Bmp;
    }
}

}  // namespace

std::optional<PlotForm> save_plot(const WindowContext& context, QWidget* /*window*/, const ShownPlot& shown) {
    const BusyPointer busy;
    return save_plot_file(context.session, shown.plot, local_now(), [&](PlotForm form) {
        // Intended: a bitmap has the legend alone.
        const DrawOptions options = painted_options(shown, shown.summary && form != PlotForm::Bitmap);
        return plot_picture(shown.plot, options, shown.size, picture_of(form)).toStdString();
    });
}

PlotCopy copy_plot(const ShownPlot& shown) {
    const QImage picture = plot_image(shown.plot, painted_options(shown, shown.summary), shown.size);
    if (picture.isNull()) return PlotCopy::NoRoom;
    QClipboard& clipboard = *QGuiApplication::clipboard();
    clipboard.clear();
    clipboard.setImage(picture);
    // A system that refuses the picture reports no error.
    return clipboard.image().size() == picture.size() ? PlotCopy::Copied : PlotCopy::Refused;
}

bool print_plot(const WindowContext& context, QWidget* window, const ShownPlot& shown) {
    return context.printing.print_picture(window, {.plot = shown.plot,
                                                   .options = painted_options(shown, shown.summary),
                                                   .size = surface_size(shown.size)});
}

}  // namespace nivora
