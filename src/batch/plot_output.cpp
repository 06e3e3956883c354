#include "batch/plot_output.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "batch/font_application.h"
#include "batch/output_guard.h"
#include "plots/plot_export.h"

#include <fmt/format.h>

#include <array>
#include <string_view>

namespace nivora {
namespace {

namespace fs = std::filesystem;

std::array<const std::optional<fs::path>*, 3> outputs(const PlotCommand& command) {
    return {&command.out, &command.text, &command.slurp};
}

void write_lines(const fs::path& file, const std::vector<std::string>& lines, const fs::path& basin) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    write_whole_file(file, text, {basin});
}

void write_picture(const fs::path& file, const PlotCommand& command, const PlotResult& result) {
    const auto form = picture_form(path_text(file.extension()));
    if (!form) throw FileError(fmt::format("The file '{}' is not a picture by its name.", path_text(file)));
    // A name that can't be written is refused before the work.
    static_cast<void>(output_target(file, {command.basin}));
    DrawOptions options;
    options.grid = command.grid;
    options.data_points = command.data_points;
    options.now = result.now;
    options.legend = true;
    options.summary = true;
    const FontApplication fonts;
    const QByteArray picture = plot_picture(result.plot, options, command.size, *form);
    if (picture.isEmpty()) {
        throw FileError(
            fmt::format("The picture '{}' of {} x {} pixels can't be made: there is no room for it in "
                        "memory. Ask for a smaller one with --size.",
                        path_text(file), command.size.width, command.size.height));
    }
    write_whole_file(file, {picture.constData(), static_cast<std::size_t>(picture.size())}, {command.basin});
}

}  // namespace

void refuse_plot_outputs(const PlotCommand& command) {
    for (const auto* output : outputs(command)) {
        if (*output) refuse_basin_as_output(**output, command.basin);
    }
}

bool has_same_outputs(const PlotCommand& command) {
    const auto same = [](const std::optional<fs::path>& a, const std::optional<fs::path>& b) {
        return a && b && same_file(*a, *b);
    };
    return same(command.out, command.text) || same(command.out, command.slurp) ||
           same(command.text, command.slurp);
}

void write_plot_files(const PlotCommand& command, const PlotResult& result) {
    if (command.out) write_picture(*command.out, command, result);
    if (command.text) write_lines(*command.text, export_plot_text(result.plot, result.now), command.basin);
    if (command.slurp) write_lines(*command.slurp, result.flow, command.basin);
}

}  // namespace nivora
