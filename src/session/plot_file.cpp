#include "session/plot_file.h"

#include "base/durable_file.h"
#include "plots/plot_export.h"
#include "store/store_error.h"

namespace nivora {
namespace {

constexpr const char* k_save_title = "Save As";

std::string text_file(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

Message not_written(const PlotFileName& name, const std::string& why) {
    return {.text = "The file '" + path_text(name.file) + "' was not written. " + why,
            .title = k_save_title,
            .icon = Icon::Stop};
}

/// The content of a file; nothing if it can't be made, which the user was told. @throws StoreError
std::optional<std::string> file_content(Session& session, const Plot& plot, double now,
                                        const PaintPlot& paint, const PlotFileName& name) {
    if (name.form == PlotForm::Text) return text_file(export_plot_text(plot, now));
    if (name.form == PlotForm::Flow) {
        BasinDatabase database{session.basin.Work_File, Access::ReadOnly};
        if (has_shown_discharge(database, session.basin, session.run, plot))
            return text_file(export_slurp_file(database, session.basin, session.run));
        session.dialogs.message(not_written(
            name,
            "The results are no longer those of this plot: a simulation was run, selected or changed since "
            "it was made. Choose the plot again, then save it; if it is not offered, run the simulation "
            "first."));
        return std::nullopt;
    }
    std::string picture = paint(name.form);
    if (!picture.empty()) return picture;
    session.dialogs.message(not_written(
        name, "There is no room for a picture of this size in memory. Make the window of the plot smaller."));
    return std::nullopt;
}

}  // namespace

std::optional<PlotForm> save_plot_file(Session& session, const Plot& plot, double now,
                                       const PaintPlot& paint) {
    const auto name = session.file_names.GetPlotFileName(session.basin, shows_runoff(plot.number));
    if (!name) return std::nullopt;
    try {
        const auto content = file_content(session, plot, now, paint, *name);
        if (!content) return std::nullopt;
        // Another program may have put a link to the basin there since the name was chosen.
        write_whole_file(name->file, *content, {session.basin.Basin_File, session.basin.Work_File});
        return name->form;
    } catch (const FileError& error) {
        session.dialogs.stop(error.what(), k_save_title);
    } catch (const StoreError& error) {
        session.dialogs.message(not_written(*name, error.what()));
    }
    return std::nullopt;
}

}  // namespace nivora
