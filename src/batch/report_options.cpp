#include "batch/report_options.h"

#include "base/calendar.h"
#include "base/durable_file.h"
#include "base/iso_date.h"
#include "batch/no_snow_option.h"
#include "batch/report_output.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::size_t k_date_length = 10;
constexpr int k_hours_a_day = 24;
constexpr int k_sixty = 60;
constexpr double k_seconds_a_day = 86400.0;

bool is_digit(char character) { return character >= '0' && character <= '9'; }

/// A number of two digits below a bound.
std::optional<int> two_digits(std::string_view text, int bound) {
    if (text.size() != 2 || !std::all_of(text.begin(), text.end(), is_digit)) return std::nullopt;
    const int value = (text[0] - '0') * 10 + (text[1] - '0');
    return value < bound ? std::optional{value} : std::nullopt;
}

std::string report_numbers(const std::string& text) {
    if (text == k_all_reports_word || read_report_numbers(text)) return {};
    return "'" + text + "' is neither all nor a list of numbers from 0 to 8 such as 0,4,7";
}

std::string report_file(const std::string& text) {
    if (report_form(path_from_utf8(text))) return {};
    return "'" + text + "' does not end in .txt, .out or .pdf";
}

std::string iso_moment(const std::string& text) {
    return read_iso_moment(text) ? std::string{}
                                 : "'" + text + "' is not a moment such as 1996-04-01T12:30:00";
}

ReportedRun reported_run(const ReportTexts& texts, const CLI::App& report) {
    ReportedRun run;
    run.year_round = texts.kind == "year-round";
    if (report.count("--forecast") > 0) run.forecast_days = texts.forecast;
    run.no_snow = texts.no_snow;
    run.step = texts.step;
    run.scenario = texts.scenario;
    return run;
}

}  // namespace

CLI::App& add_report(CLI::App& app, ReportTexts& texts) {
    CLI::App& report = *app.add_subcommand(
        "report",
        "Write reports of a simulation and its last run into a file; the basin is not changed. "
        "If a report is refused, the file holds those before it; "
        "if the first one is refused, no file is written and an older one stays as it is");
    report.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    report.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    report
        .add_option(
            "--reports", texts.reports,
            "Numbers of reports joined by commas, or all: 0 current data description, 1 temperatures, "
            "2 degree day factors, 3 lapse rates, 4 degree days, 5 melt, 6 runoff, 7 input summary, "
            "8 deficit and gain; all if not given")
        ->check(CLI::Validator(report_numbers, "NUMBERS|all"));
    report
        .add_option("--out", texts.out,
                    "File to write: .txt or .out for the text, .pdf for pages; NVRrpts.out beside the basin "
                    "if not given")
        ->check(CLI::Validator(report_file, "FILE"));
    report.add_option("--kind", texts.kind, "Kind of the last run: melt-season or year-round")
        ->check(CLI::IsMember({"melt-season", "year-round"}))
        ->capture_default_str();
    report.add_option("--forecast", texts.forecast,
                      "The last run was a forecast that was updated every so many days, 1 to 9");
    report.add_flag("--no-snow", texts.no_snow,
                    "The last run was in No Snow mode; only with --kind year-round");
    report.add_flag("--input-changed", texts.input_changed, "An input has changed since the last run");
    auto* step =
        report.add_option("--step", texts.step, "The results are those of this step of a climate evaluation")
            ->check(CLI::IsMember({1, 2, 3, 6}));
    auto* scenario =
        report.add_option("--scenario", texts.scenario, "Name of the scenario that was evaluated");
    step->needs(scenario);
    scenario->needs(step);
    report
        .add_option("--climate-report", texts.climate_report,
                    "The report that step 5 wrote; NVR_DfGN.out beside the basin if not given")
        ->needs(step);
    report
        .add_option("--now", texts.now, "Date and time in the reports, YYYY-MM-DDTHH:MM:SS; now if not given")
        ->check(CLI::Validator(iso_moment, "MOMENT"));
    report.callback([&texts] { check_no_snow(texts.no_snow, texts.kind); });
    return report;
}

ReportCommand report_of(const ReportTexts& texts, const CLI::App& report, std::chrono::milliseconds wait) {
    ReportCommand command;
    command.basin = path_from_utf8(texts.basin);
    command.simulation = texts.simulation;
    command.reports = read_report_numbers(texts.reports);
    if (!texts.out.empty()) command.out = path_from_utf8(texts.out);
    command.run = reported_run(texts, report);
    command.input_changed = texts.input_changed;
    if (!texts.climate_report.empty()) command.climate_report = path_from_utf8(texts.climate_report);
    if (!texts.now.empty()) command.now = read_iso_moment(texts.now);
    command.wait = wait;
    return command;
}

std::optional<std::vector<Report>> read_report_numbers(std::string_view text) {
    std::vector<Report> reports;
    while (true) {
        const std::string_view number = text.substr(0, text.find(','));
        if (number.size() != 1 || number[0] < '0' || number[0] >= '0' + k_reports) return std::nullopt;
        reports.push_back(static_cast<Report>(number[0] - '0'));
        if (number.size() == text.size()) return reports;
        text.remove_prefix(number.size() + 1);
    }
}

std::optional<double> read_iso_moment(std::string_view text) {
    constexpr std::string_view k_form = "yyyy-mm-ddThh:mm:ss";
    if (text.size() != k_form.size() || text[k_date_length] != 'T') return std::nullopt;
    const auto day = read_iso_date(text.substr(0, k_date_length));
    const auto hours = two_digits(text.substr(11, 2), k_hours_a_day);
    const auto minutes = two_digits(text.substr(14, 2), k_sixty);
    const auto seconds = two_digits(text.substr(17, 2), k_sixty);
    if (!day || !hours || !minutes || !seconds || text[13] != ':' || text[16] != ':') return std::nullopt;
    return static_cast<double>(*day) + ((*hours * k_sixty + *minutes) * k_sixty + *seconds) / k_seconds_a_day;
}

}  // namespace nivora
