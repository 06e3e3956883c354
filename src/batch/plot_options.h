// The options of the plot command.
#pragma once

#include "batch/plot_command.h"

#include <CLI/CLI.hpp>

#include <string>
#include <string_view>

namespace nivora {

/// The texts of the options as the command line gives them.
struct PlotTexts {
    std::string basin;
    std::string simulation;
    int plot = 0;
    std::string out;
    std::string size = "1600x900";
    double dpi = 96.0;
    std::string text;
    std::string slurp;
    bool list = false;
    bool describe = false;
    bool json = false;
    std::string zone;
    int step = 0;
    std::string scenario;
    std::string kind = "melt-season";
    std::string forecast;
    bool no_snow = false;
    std::string zoom;
    std::string x_max;
    std::string y_max;
    int grid_mode = 0;
    bool data_points = false;
    std::string melt_stop = "first-dry-day";
    std::string now;
};

CLI::App& add_plot(CLI::App& app, PlotTexts& texts);

/// The command that checked options ask for.
[[nodiscard]] PlotCommand plot_of(const PlotTexts& texts, const CLI::App& app,
                                  std::chrono::milliseconds wait);

/// A letter from A to P in any case, or the word all.
[[nodiscard]] std::optional<AskedZone> read_zone(std::string_view text);

/// Width and height of the form 1600x900, each at least 1 and at most what a picture can have.
[[nodiscard]] std::optional<PictureSize> read_size(std::string_view text);

/// X1,X2,Y1,Y2: x a date or a number, y a number.
[[nodiscard]] std::optional<AskedZoom> read_zoom(std::string_view text);

/// A finite number that a Single can hold.
[[nodiscard]] std::optional<double> read_plot_number(std::string_view text);

/// A date of the form yyyy-mm-dd as a day count, or a number of days.
[[nodiscard]] std::optional<double> read_plot_day(std::string_view text);

}  // namespace nivora
