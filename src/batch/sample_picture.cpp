#include "batch/sample_picture.h"

#include "base/durable_file.h"
#include "base/units.h"
#include "batch/plot_options.h"
#include "plots/paint_methods.h"

#include <fmt/format.h>

#include <algorithm>
#include <utility>

namespace nivora {
namespace {

constexpr int k_usual_width = 1600;
constexpr int k_usual_height = 900;
/// Of each panel of several, and of the head above them.
constexpr int k_panel_height = 440;
constexpr int k_head_height = 100;

/// The usual size for so many panels, and for so many pixels an inch: letters keep their place on the page.
PictureSize usual_size(std::size_t panels, double dpi) {
    const int many = static_cast<int>(std::min<std::size_t>(panels, k_most_pixels / k_panel_height));
    const double scale = dpi / PictureSize{}.dpi;
    const int height = panels > 1 ? k_head_height + many * k_panel_height : k_usual_height;
    const auto pixels = [&](int points) {
        return std::clamp(static_cast<int>(points * scale), 1, k_most_pixels);
    };
    return {.width = pixels(k_usual_width), .height = pixels(height), .dpi = dpi};
}

std::string file_problem(const std::string& text) {
    return picture_form(path_text(path_from_utf8(text).extension()))
               ? std::string{}
               : "'" + text + "' does not end in .png, .svg, .pdf or .bmp";
}

std::string size_problem(const std::string& text) {
    return read_size(text) ? std::string{}
                           : "'" + text + "' is not a size such as 1600x900, of 1 to 20000 pixels";
}

std::string dpi_problem(const std::string& text) {
    const auto dpi = read_plot_number(text);
    return dpi && *dpi >= k_least_dpi && *dpi <= k_most_dpi
               ? std::string{}
               : "'" + text + "' is not a number from 10 to 2400";
}

}  // namespace

void add_picture_options(CLI::App& command, BandPictureTexts& texts) {
    auto* picture =
        command
            .add_option("--picture", texts.file,
                        "Picture of the bands with the measured discharge: .png, .svg, .pdf or .bmp")
            ->check(CLI::Validator(file_problem, "FILE"));
    command
        .add_option("--size", texts.size,
                    "Width and height of the picture in pixels; 1600x900 at 96 dpi if not given, and higher "
                    "for several simulations")
        ->check(CLI::Validator(size_problem, "WIDTHxHEIGHT"))
        ->needs(picture);
    command.add_option("--dpi", texts.dpi, "Pixels of the picture that make an inch")
        ->check(CLI::Validator(dpi_problem, "NUMBER"))
        ->capture_default_str()
        ->needs(picture);
}

std::optional<BandPictureFile> picture_of(const BandPictureTexts& texts) {
    if (texts.file.empty()) return std::nullopt;
    BandPictureFile wanted{.file = path_from_utf8(texts.file)};
    wanted.dpi = read_plot_number(texts.dpi).value_or(wanted.dpi);
    wanted.size = read_size(texts.size);
    if (wanted.size) wanted.size->dpi = wanted.dpi;
    return wanted;
}

std::string bands_line(std::size_t kept, const FlowBands& bands) {
    return fmt::format(
        "Bands of {} runs: {} of {} measured days ({:.1f} %) lie within the band from 5 to 95 %", kept,
        bands.within, bands.measured_days,
        100.0 * static_cast<double>(bands.within) /
            static_cast<double>(std::max<std::size_t>(1, bands.measured_days)));
}

BandPicture band_picture(const StudyProblem& problem, const FlowBands& bands, std::size_t kept,
                         std::size_t runs) {
    const StudyCase& first = problem.cases().front();
    BandPicture picture{
        .title = "Bands of the computed discharge",
        .subtitle = fmt::format("{}, simulation {}{}", first.basin->basin.basin_name, first.name,
                                problem.cases().size() > 1 ? " and others" : ""),
        .remark = fmt::format("{}; {} runs in all", bands_line(kept, bands), runs),
        .y_label = fmt::format("Discharge, {}", unit_words(first.basin->basin.Units_Code).discharge),
        .legend = {"5 to 95 %", "25 to 75 %", "Median", "Measured"},
        .series = {}};
    picture.series.reserve(problem.cases().size());
    for (std::size_t index = 0; index < problem.cases().size(); ++index) {
        const StudyCase& one = problem.cases()[index];
        BandSeries series{.name = one.name,
                          .dates = one.basin->measured.dates,
                          .measured = one.basin->measured.measured,
                          .quantiles = {}};
        series.quantiles.reserve(bands.days[index].size());
        for (const DayBand& day : bands.days[index]) series.quantiles.push_back(day.quantiles);
        picture.series.push_back(std::move(series));
    }
    return picture;
}

std::string drawn_bands(const BandPicture& picture, const BandPictureFile& wanted) {
    const PictureSize size = wanted.size.value_or(usual_size(picture.series.size(), wanted.dpi));
    const auto form = picture_form(path_text(wanted.file.extension()));
    if (!form)
        throw FileError(fmt::format("The file '{}' is not a picture by its name.", path_text(wanted.file)));
    const Drawing drawing{.title = picture.title,
                          .draw = [&](Surface& surface) { draw_bands(surface, picture); }};
    std::string bytes = drawn_by_module(drawing, size, *form);
    if (bytes.empty()) {
        throw FileError(
            fmt::format("The picture '{}' of {} x {} pixels can't be made: there is no room for it in "
                        "memory. Ask for a smaller one with --size.",
                        path_text(wanted.file), size.width, size.height));
    }
    return bytes;
}

}  // namespace nivora
