#include "batch/plot_output.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "batch/output_guard.h"
#include "plots/paint_methods.h"
#include "plots/plot_export.h"

#include <fmt/format.h>

#include <array>
#include <memory>
#include <string_view>

namespace nivora {
namespace {

namespace fs = std::filesystem;

std::array<const std::optional<fs::path>*, 3> outputs(const PlotCommand& command) {
    return {&command.out, &command.text, &command.slurp};
}

std::string text_of(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) text += line + "\r\n";
    return text;
}

std::string picture_of(const fs::path& file, const PlotCommand& command, const PlotResult& result) {
    const auto form = picture_form(path_text(file.extension()));
    if (!form) throw FileError(fmt::format("The file '{}' is not a picture by its name.", path_text(file)));
    DrawOptions options;
    options.grid = command.grid;
    options.data_points = command.data_points;
    options.now = result.now;
    options.legend = true;
    options.summary = true;
    const Drawing drawing{.title = result.plot.head.title,
                          .draw = [&](Surface& surface) { draw(surface, result.plot, options); }};
    std::string picture = drawn_by_module(drawing, command.size, *form);
    if (picture.empty()) {
        throw FileError(
            fmt::format("The picture '{}' of {} x {} pixels can't be made: there is no room for it in "
                        "memory. Ask for a smaller one with --size.",
                        path_text(file), command.size.width, command.size.height));
    }
    return picture;
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
    const auto opened = [&](const std::optional<fs::path>& name) {
        return name ? std::make_unique<OutputFile>(*name, std::vector{command.basin}) : nullptr;
    };
    // A name that can't be written is refused before the work.
    const auto out = opened(command.out);
    const auto text = opened(command.text);
    const auto slurp = opened(command.slurp);
    if (out) out->write(picture_of(*command.out, command, result));
    if (text) text->write(text_of(export_plot_text(result.plot, result.now)));
    if (slurp) slurp->write(text_of(result.flow));
    // One that has no room on the disk leaves none of them behind.
    const std::array files{out.get(), text.get(), slurp.get()};
    for (OutputFile* file : files) {
        if (file != nullptr) file->complete();
    }
    for (OutputFile* file : files) {
        if (file != nullptr) file->finish();
    }
}

}  // namespace nivora
