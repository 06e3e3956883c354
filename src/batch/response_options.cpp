#include "batch/response_options.h"

#include "base/durable_file.h"
#include "base/iso_date.h"
#include "base/number_text.h"
#include "batch/study_options.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <optional>

namespace nivora {
namespace {

constexpr double k_hair = 1.0e-6;

std::optional<double> read_change(std::string_view text) {
    const auto number = exact_number(text);
    return number && std::isfinite(static_cast<float>(*number)) ? number : std::nullopt;
}

/// The parts of LOW..HIGH:STEP.
ReadChanges read_steps(std::string_view text, std::size_t dots) {
    const std::size_t colon = text.find(':', dots);
    if (colon == std::string_view::npos)
        return {{}, fmt::format("'{}' has no step: give a range as LOW..HIGH:STEP", text)};
    const auto low = read_change(text.substr(0, dots));
    const auto high = read_change(text.substr(dots + 2, colon - dots - 2));
    const auto step = read_change(text.substr(colon + 1));
    if (!low || !high || !step) return {{}, fmt::format("'{}' is not a range such as 0..4:0.5", text)};
    if (*low > *high)
        return {{}, fmt::format("the range '{}' is reversed: the lower number comes first", text)};
    if (!(*step > 0.0)) return {{}, fmt::format("the step of '{}' must be above 0", text)};
    const double last = std::floor((*high - *low) / *step + k_hair);
    if (!(last < static_cast<double>(k_most_changes)))
        return {{}, fmt::format("'{}' has more than {} values", text, k_most_changes)};
    ReadChanges read;
    for (double count = 0.0; count <= last; ++count)
        read.values.push_back(static_cast<float>(*low + count * *step));
    return read;
}

ReadChanges read_list(std::string_view text) {
    ReadChanges read;
    for (std::size_t begin = 0; begin <= text.size();) {
        const std::size_t comma = std::min(text.find(',', begin), text.size());
        const auto part = text.substr(begin, comma - begin);
        const auto value = read_change(part);
        if (!value) return {{}, fmt::format("'{}' is not a number", part)};
        read.values.push_back(static_cast<float>(*value));
        begin = comma + 1;
    }
    if (read.values.size() > k_most_changes)
        return {{}, fmt::format("there are more than {} values", k_most_changes)};
    return read;
}

std::string changes_problem(const std::string& text) { return read_changes(text).problem; }

std::string factors_problem(const std::string& text) {
    const ReadChanges read = read_changes(text);
    if (!read.problem.empty()) return read.problem;
    const bool negative =
        std::any_of(read.values.begin(), read.values.end(), [](float value) { return value < 0.0F; });
    return negative ? "a factor of the precipitation cannot be below 0" : std::string{};
}

std::string winter_end_form(const std::string& text) {
    return read_iso_date(text) ? std::string{} : "'" + text + "' is not a date such as 1996-03-31";
}

}  // namespace

ReadChanges read_changes(std::string_view text) {
    const std::size_t dots = text.find("..");
    ReadChanges read = dots == std::string_view::npos ? read_list(text) : read_steps(text, dots);
    std::vector<float> sorted = read.values;
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice != sorted.end())
        return {{}, fmt::format("'{}' has {} twice: give each value once", text, single_text(*twice))};
    return read;
}

CLI::App& add_response(CLI::App& app, ResponseTexts& texts) {
    CLI::App& response = *app.add_subcommand(
        "response",
        "Evaluate every pair of a temperature and a precipitation change in six steps, in memory, and print "
        "seasonal runoff, centre of mass and highest day of each; the basin is not changed");
    response.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    response.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    response.add_option("--winter-end", texts.winter_end, "Last day of the winter, YYYY-MM-DD")
        ->required()
        ->check(CLI::Validator(winter_end_form, "DATE"));
    response
        .add_option("--temperature", texts.temperature,
                    "Degrees to add on every day in all zones: numbers joined by commas, or LOW..HIGH:STEP. "
                    "Write --temperature=-1,... if the first one is negative")
        ->required()
        ->check(CLI::Validator(changes_problem, "NUMBERS"));
    response
        .add_option("--precipitation", texts.precipitation,
                    "Factors of the precipitation of every day in all zones, in the same form")
        ->required()
        ->check(CLI::Validator(factors_problem, "NUMBERS"));
    response
        .add_option("--threads", texts.threads,
                    "How many evaluations run at a time; the results do not depend on it")
        ->check(CLI::Range(1U, k_most_threads))
        ->capture_default_str();
    response.add_option("--out", texts.out, "CSV with a line for each pair");
    response.add_option("--picture", texts.picture,
                        "A picture for each quantity: response.png makes response-winter.png and others; "
                        ".png, .svg, .pdf or .bmp");
    add_share_option(response, texts.share);
    response.add_flag("--resume", texts.resume,
                      "Go on with a response that was stopped, with the same options, or add its pictures");
    response.add_flag("--json", texts.json, "Print JSON");
    return response;
}

ResponseCommand response_of(const ResponseTexts& texts, std::chrono::milliseconds wait) {
    const auto file = [](const std::string& text) {
        return text.empty() ? std::nullopt : std::optional{path_from_utf8(text)};
    };
    return {.basin = path_from_utf8(texts.basin),
            .simulation = texts.simulation,
            .winter_end = texts.winter_end,
            .temperature = read_changes(texts.temperature).values,
            .precipitation = read_changes(texts.precipitation).values,
            .threads = texts.threads,
            .json = texts.json,
            .out = file(texts.out),
            .picture = file(texts.picture),
            .share = read_share(texts.share).value_or(SampleShare{}),
            .resume = texts.resume,
            .wait = wait};
}

}  // namespace nivora
