#include "batch/evaluate_options.h"

#include "base/durable_file.h"
#include "base/iso_date.h"

#include <fmt/format.h>

#include <algorithm>
#include <charconv>

namespace nivora {
namespace {

constexpr int k_last_month = 12;

std::optional<int> read_month(std::string_view text) {
    int month = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), month);
    const bool whole = error == std::errc{} && end == text.data() + text.size();
    return whole && month >= 1 && month <= k_last_month ? std::optional{month} : std::nullopt;
}

/// Adds a month or a range of months. @return what is wrong with the text; empty if nothing is
std::string take_range(std::string_view text, MonthSet& months) {
    const std::size_t dash = text.find('-');
    const auto first = read_month(text.substr(0, dash));
    const auto last = dash == std::string_view::npos ? first : read_month(text.substr(dash + 1));
    if (!first || !last)
        return fmt::format("'{}' is neither a month from 1 to 12 nor a range such as 4-9", text);
    if (*first > *last) {
        return fmt::format("'{}' is reversed; for months over the end of a year give {}-12,1-{}", text,
                           *first, *last);
    }
    for (int month = *first; month <= *last; ++month) months.at(static_cast<std::size_t>(month)) = true;
    return {};
}

std::string months_problem(const std::string& text) { return read_months(text).problem; }

std::string day_problem_of(const std::string& text) {
    return read_iso_date(text) ? std::string{} : "'" + text + "' is not a date such as 1996-04-01";
}

}  // namespace

ReadMonths read_months(std::string_view text) {
    ReadMonths read;
    for (std::size_t begin = 0; begin <= text.size() && read.problem.empty();) {
        const std::size_t comma = std::min(text.find(',', begin), text.size());
        read.problem = take_range(text.substr(begin, comma - begin), read.months);
        begin = comma + 1;
    }
    return read;
}

CLI::App& add_evaluate(CLI::App& app, EvaluateTexts& texts) {
    CLI::App& evaluate = *app.add_subcommand(
        "evaluate",
        "Compare the computed with the measured discharge by measures such as NSE, KGE and the bias of each "
        "month; the basin is not changed");
    evaluate.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    evaluate.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    evaluate.add_option("--from", texts.from, "First day, YYYY-MM-DD; that of the simulation if not given")
        ->check(CLI::Validator(day_problem_of, "DATE"));
    evaluate.add_option("--to", texts.to, "Last day, YYYY-MM-DD; that of the simulation if not given")
        ->check(CLI::Validator(day_problem_of, "DATE"));
    evaluate
        .add_option(
            "--months", texts.months,
            "Compare these months alone: months and ranges joined by commas, such as 4-9 or 10-12,1-3")
        ->check(CLI::Validator(months_problem, "MONTHS"));
    evaluate.add_flag("--run", texts.run,
                      "Compare a fresh simulation run, made in memory, instead of the results in the basin; "
                      "so does the command where the basin has none");
    evaluate.add_flag("--json", texts.json, "Print JSON");
    return evaluate;
}

EvaluateCommand evaluate_of(const EvaluateTexts& texts, const CLI::App& app, std::chrono::milliseconds wait) {
    EvaluateCommand command;
    command.basin = path_from_utf8(texts.basin);
    command.simulation = texts.simulation;
    if (app.count("--from") > 0) command.from = texts.from;
    if (app.count("--to") > 0) command.to = texts.to;
    if (app.count("--months") > 0) command.months = read_months(texts.months).months;
    command.run = texts.run;
    command.json = texts.json;
    command.wait = wait;
    return command;
}

}  // namespace nivora
