#include "batch/import_options.h"

#include "base/durable_file.h"
#include "base/number_text.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace nivora {
namespace {

/// A text that has to be a number a Single can hold, for CLI11.
std::string single_number(const std::string& text) {
    const auto value = exact_number(text);
    if (value && std::isfinite(static_cast<float>(*value))) return {};
    return "'" + text + "' is not a number";
}

std::string number_or_blank(const std::string& text) {
    return text == "blank" ? std::string{} : single_number(text);
}

bool has(const std::vector<std::string>& list, std::string_view word) {
    return std::find(list.begin(), list.end(), word) != list.end();
}

}  // namespace

CLI::App& add_import(CLI::App& app, ImportTexts& texts) {
    CLI::App& import = *app.add_subcommand(
        "import", "Read a legacy data file (.NVR) into a basin, which is created if it does not exist");
    import.add_option("FILE.NVR", texts.file, "Legacy data file: one year or season of one basin")
        ->required();
    import.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    import.add_option("--name", texts.name,
                      "Name of the new simulation; the file's name without .NVR if not given");
    import
        .add_option(
            "--by-zone", texts.by_zone,
            "Inputs given for each zone: temperature, precipitation, lapse-rate, coefficients, tcrit, "
            "recession, joined by commas; all others hold basinwide")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::IsMember(
            {"temperature", "precipitation", "lapse-rate", "coefficients", "tcrit", "recession"}));
    import
        .add_option("--temperature", texts.temperature,
                    "average (daily means) or max-min (mean of maximum and minimum)")
        ->check(CLI::IsMember({"average", "max-min"}))
        ->capture_default_str();
    import
        .add_option("--initial-runoff", texts.initial_runoff,
                    "Discharge on the day before the run, m³/s or ft³/s")
        ->check(CLI::Validator(single_number, "NUMBER"));
    import
        .add_option("--rain-threshold", texts.rain_threshold,
                    "Daily rain from which the recession quickens, cm or inches, "
                    "or the word blank for the default; the file's own if not given")
        ->check(CLI::Validator(number_or_blank, "NUMBER|blank"));
    import
        .add_option("--latitude", texts.latitude,
                    "Latitude of the basin, decimal degrees, negative in the south")
        ->check(CLI::Validator(single_number, "NUMBER"));
    return import;
}

ImportCommand import_of(const ImportTexts& texts, const CLI::App& import, std::chrono::milliseconds wait) {
    ImportCommand command;
    command.file = path_from_utf8(texts.file);
    command.basin = path_from_utf8(texts.basin);
    if (import.count("--name") > 0) command.name = texts.name;
    command.by_zone = {.temperature = has(texts.by_zone, "temperature"),
                       .precipitation = has(texts.by_zone, "precipitation"),
                       .lapse_rate = has(texts.by_zone, "lapse-rate"),
                       .coefficients = has(texts.by_zone, "coefficients"),
                       .critical_temperature = has(texts.by_zone, "tcrit"),
                       .recession = has(texts.by_zone, "recession")};
    command.max_min = texts.temperature == "max-min";
    command.initial_runoff = exact_number(texts.initial_runoff);
    if (import.count("--rain-threshold") > 0) command.rain_threshold = exact_number(texts.rain_threshold);
    command.latitude = exact_number(texts.latitude);
    command.wait = wait;
    return command;
}

}  // namespace nivora
