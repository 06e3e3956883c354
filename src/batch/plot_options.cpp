#include "batch/plot_options.h"

#include "base/calendar.h"
#include "base/durable_file.h"
#include "base/iso_date.h"
#include "base/number_text.h"
#include "base/text.h"
#include "batch/no_snow_option.h"
#include "batch/report_options.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>
#include <cmath>

namespace nivora {
namespace {

constexpr int k_longest_interval = 9;
constexpr int k_last_step = 6;
constexpr int k_last_grid_mode = 3;

/// The parts of a text between its commas.
std::vector<std::string> parts_of(std::string_view text) {
    std::vector<std::string> parts;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t comma = std::min(text.find(',', begin), text.size());
        parts.emplace_back(text.substr(begin, comma - begin));
        begin = comma + 1;
    }
    return parts;
}

/// Whether a text is meant as a date: digits, and two dashes between them.
bool is_of_date_form(std::string_view text) {
    const std::size_t first = text.find('-');
    return text.find_first_not_of("0123456789-") == std::string_view::npos && first > 0 &&
           std::count(text.begin(), text.end(), '-') == 2;
}

std::optional<int> read_pixels(std::string_view text) {
    int pixels = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), pixels);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole && pixels >= 1 && pixels <= k_most_pixels ? std::optional{pixels} : std::nullopt;
}

CLI::Validator check(const char* form, const char* problem, bool (*is_valid)(std::string_view text)) {
    return {
        [=](const std::string& text) { return is_valid(text) ? std::string{} : "'" + text + "' " + problem; },
        form};
}

/// What is wrong with a place on the x axis; empty if nothing is.
std::string day_problem(const std::string& text) {
    if (read_plot_day(text)) return {};
    if (is_of_date_form(text))
        return fmt::format("'{}' is not a day of the calendar from {}-01-01 to {}-12-31", text, k_first_year,
                           k_last_year);
    return "'" + text + "' is neither a date such as 1998-09-30 nor a number";
}

/// What is wrong with a zoom; empty if nothing is.
std::string zoom_problem(const std::string& text) {
    if (read_zoom(text)) return {};
    const std::vector<std::string> parts = parts_of(text);
    for (std::size_t i = 0; i < 2 && parts.size() == 4; ++i) {
        if (is_of_date_form(parts[i]) && !read_plot_day(parts[i])) return day_problem(parts[i]);
    }
    return "'" + text + "' is not a rectangle such as 1998-04-01,1998-06-30,0,20";
}

CLI::Validator plot_number() {
    return {[](const std::string& text) -> std::string {
                int number = 0;
                const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
                if (error != std::errc{} || end != text.data() + text.size() || number < 1 ||
                    number > k_last_plot)
                    return "'" + text + "' is not a plot from 1 to 23";
                if (number == number_of(PlotNumber::Dashes))
                    return "17 is the line in the plot list, not a plot";
                return {};
            },
            "NUMBER"};
}

CLI::Validator picture_file() {
    return check("FILE", "does not end in .png, .svg, .pdf or .bmp", [](std::string_view text) {
        return picture_form(path_text(path_from_utf8(text).extension())).has_value();
    });
}

void add_outputs(CLI::App& plot, PlotTexts& texts) {
    plot.add_option("--out", texts.out, "Picture to write: .png, .svg, .pdf or .bmp, with its legend")
        ->check(picture_file());
    plot.add_option("--size", texts.size, "Width and height of the picture in pixels")
        ->check(check("WIDTHxHEIGHT", "is not a size such as 1600x900, of 1 to 20000 pixels",
                      [](std::string_view text) { return read_size(text).has_value(); }))
        ->capture_default_str();
    plot.add_option("--dpi", texts.dpi, "Pixels of the picture that make an inch")
        ->check(check("NUMBER", "is not a number from 10 to 2400",
                      [](std::string_view text) {
                          const auto dpi = read_plot_number(text);  // "nan" is no number here
                          return dpi && *dpi >= k_least_dpi && *dpi <= k_most_dpi;
                      }))
        ->capture_default_str();
    plot.add_option("--text", texts.text, "Text file to write: the curves as a table");
    plot.add_option("--slurp", texts.slurp, "Flow file to write: the computed discharge of each day in m³/s");
    auto* describe = plot.add_flag("--describe", texts.describe,
                                   "Print everything that stands on the plot as JSON, also a refusal");
    auto* list = plot.add_flag("--list", texts.list,
                               "List the plots by number and title, and why one can't be made now");
    list->excludes(describe);
    plot.add_flag("--json", texts.json, "Print the list as JSON")->needs(list);
    for (const char* output : {"--out", "--text", "--slurp"}) list->excludes(plot.get_option(output));
}

void add_run_state(CLI::App& plot, PlotTexts& texts) {
    auto* step = plot.add_option("--step", texts.step,
                                 "The results are those of this step of a climate evaluation; 0 for a run")
                     ->check(CLI::Range(0, k_last_step))
                     ->capture_default_str();
    plot.add_option("--scenario", texts.scenario, "Name of the scenario that was evaluated")->needs(step);
    plot.add_option("--kind", texts.kind, "Kind of the last run: melt-season or year-round")
        ->check(CLI::IsMember({"melt-season", "year-round"}))
        ->capture_default_str();
    plot.add_option("--forecast", texts.forecast,
                    "The last run was a forecast that was updated every so many days, 1 to 9")
        ->check(CLI::Range(1, k_longest_interval));
    plot.add_flag("--no-snow", texts.no_snow,
                  "The last run was in No Snow mode; only with --kind year-round");
}

void add_view(CLI::App& plot, PlotTexts& texts) {
    plot.add_option(
            "--zone", texts.zone,
            "Letter of a zone, or all; all zones if not given, or zone A where one is shown at a time")
        ->check(check("ZONE|all", "is neither the letter of a zone nor all",
                      [](std::string_view text) { return read_zone(text).has_value(); }));
    plot.add_option("--zoom", texts.zoom,
                    "Show the part between two corners; x is YYYY-MM-DD or a day count, or a depth in plots "
                    "14, 20 and 22. --zoom=-1,... if it begins with a minus")
        ->check(CLI::Validator(zoom_problem, "X1,X2,Y1,Y2"));
    plot.add_option("--xmax", texts.x_max, "End of the x axis: as x of --zoom")
        ->check(CLI::Validator(day_problem, "DATE|NUMBER"));
    plot.add_option("--ymax", texts.y_max, "End of the y axis")
        ->check(check("NUMBER", "is not a number",
                      [](std::string_view text) { return read_plot_number(text).has_value(); }));
    plot.add_option("--grid-mode", texts.grid_mode, "Grid lines: 0 vertical, 1 horizontal, 2 both, 3 none")
        ->check(CLI::Range(0, k_last_grid_mode))
        ->capture_default_str();
    plot.add_flag("--data-points", texts.data_points, "Mark each point with a circle");
    plot.add_option("--melt-stop", texts.melt_stop,
                    "Where accumulated melt ends in plots 15 and 23: first-dry-day (the first day "
                    "without melt after one with melt) or season (the day after the last one with melt)")
        ->check(CLI::IsMember({"first-dry-day", "season"}))
        ->capture_default_str();
    plot.add_option("--now", texts.now, "Date and time on the plot, YYYY-MM-DDTHH:MM:SS; now if not given")
        ->check(check("MOMENT", "is not a moment such as 1996-04-01T12:30:00",
                      [](std::string_view text) { return read_iso_moment(text).has_value(); }));
}

/// Checks what an option alone can't tell.
void check_together(const PlotTexts& texts) {
    check_no_snow(texts.no_snow, texts.kind);
    if (texts.step > 0 && texts.scenario.empty())
        throw CLI::ValidationError("--step", "above 0 needs --scenario");
    if (texts.step == 0 && !texts.scenario.empty())
        throw CLI::ValidationError("--scenario", "needs a --step above 0: step 0 is a run");
    if (texts.list) return;
    if (texts.plot == 0) throw CLI::ValidationError("--plot", "is required, or --list");
    const bool writes = !texts.out.empty() || !texts.text.empty() || !texts.slurp.empty();
    if (!writes && !texts.describe)
        throw CLI::ValidationError("plot", "needs one of --out, --text, --slurp, --describe and --list");
}

std::optional<std::filesystem::path> file_of(const std::string& text) {
    return text.empty() ? std::nullopt : std::optional{path_from_utf8(text)};
}

ReportedRun run_of(const PlotTexts& texts) {
    ReportedRun run;
    run.year_round = texts.kind == "year-round";
    if (!texts.forecast.empty()) run.forecast_days = texts.forecast;
    run.no_snow = texts.no_snow;
    run.step = texts.step;
    run.scenario = texts.scenario;
    return run;
}

}  // namespace

std::optional<AskedZone> read_zone(std::string_view text) {
    constexpr int k_letters = k_most_zones;
    if (same_name(text, "all")) return AskedZone{.zone = 0, .all = true};
    if (text.size() != 1) return std::nullopt;
    const char letter = text[0] >= 'a' && text[0] <= 'z' ? static_cast<char>(text[0] - 'a' + 'A') : text[0];
    const int zone = letter - 'A' + 1;
    return zone >= 1 && zone <= k_letters ? std::optional{AskedZone{.zone = zone}} : std::nullopt;
}

std::optional<PictureSize> read_size(std::string_view text) {
    const std::size_t cross = text.find('x');
    if (cross == std::string_view::npos) return std::nullopt;
    const auto width = read_pixels(text.substr(0, cross));
    const auto height = read_pixels(text.substr(cross + 1));
    if (!width || !height) return std::nullopt;
    return PictureSize{.width = *width, .height = *height};
}

std::optional<double> read_plot_number(std::string_view text) {
    const auto value = exact_number(text);
    return value && std::isfinite(static_cast<float>(*value)) ? value : std::nullopt;
}

std::optional<double> read_plot_day(std::string_view text) {
    if (const auto day = read_iso_date(text)) return static_cast<double>(*day);
    return read_plot_number(text);
}

std::optional<AskedZoom> read_zoom(std::string_view text) {
    const std::vector<std::string> parts = parts_of(text);
    if (parts.size() != 4 || !read_plot_day(parts[0]) || !read_plot_day(parts[1])) return std::nullopt;
    const auto y1 = read_plot_number(parts[2]);
    const auto y2 = read_plot_number(parts[3]);
    if (!y1 || !y2) return std::nullopt;
    return AskedZoom{.x1 = parts[0], .x2 = parts[1], .y1 = *y1, .y2 = *y2};
}

CLI::App& add_plot(CLI::App& app, PlotTexts& texts) {
    CLI::App& plot = *app.add_subcommand(
        "plot",
        "Draw a plot of a simulation and its last run into a file, write its data, or describe it. The basin "
        "is not changed, except that plot 21 keeps its curves in the results");
    plot.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    plot.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    plot.add_option("--plot", texts.plot, "Number of the plot, 1 to 23; see --list")->check(plot_number());
    add_outputs(plot, texts);
    add_run_state(plot, texts);
    add_view(plot, texts);
    plot.callback([&texts] { check_together(texts); });
    return plot;
}

PlotCommand plot_of(const PlotTexts& texts, const CLI::App& app, std::chrono::milliseconds wait) {
    PlotCommand command;
    command.basin = path_from_utf8(texts.basin);
    command.simulation = texts.simulation;
    if (texts.plot > 0) command.plot = static_cast<PlotNumber>(texts.plot);
    command.run = run_of(texts);
    command.melt_stop = texts.melt_stop == "season" ? MeltStop::Season : MeltStop::FirstDryDay;
    if (app.count("--zone") > 0) command.zone = read_zone(texts.zone);
    if (app.count("--zoom") > 0) command.zoom = read_zoom(texts.zoom);
    if (app.count("--xmax") > 0) command.x_max = texts.x_max;
    if (app.count("--ymax") > 0)
        command.y_max = static_cast<float>(read_plot_number(texts.y_max).value_or(0.0));
    command.grid = static_cast<GridMode>(texts.grid_mode);
    command.data_points = texts.data_points;
    if (!texts.now.empty()) command.now = read_iso_moment(texts.now);
    command.size = read_size(texts.size).value_or(PictureSize{});
    command.size.dpi = texts.dpi;
    command.out = file_of(texts.out);
    command.text = file_of(texts.text);
    command.slurp = file_of(texts.slurp);
    command.describe = texts.describe;
    command.list = texts.list;
    command.json = texts.json;
    command.wait = wait;
    return command;
}

}  // namespace nivora
