#include "batch/command_line.h"

#include "base/build_details.h"
#include "base/durable_file.h"
#include "base/number_text.h"
#include "base/version.h"
#include "batch/calibrate_command.h"
#include "batch/commands.h"
#include "batch/definition_command.h"
#include "batch/evaluate_options.h"
#include "batch/import_options.h"
#include "batch/load_command.h"
#include "batch/no_snow_option.h"
#include "batch/plot_options.h"
#include "batch/progress.h"
#include "batch/report_options.h"
#include "batch/response_options.h"
#include "batch/sample_command.h"
#include "batch/scenario_options.h"

#include <CLI/CLI.hpp>
#include <fmt/format.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <optional>
#include <ostream>
#include <string_view>
#include <utility>
#include <vector>

namespace nivora {
namespace {

constexpr const char* k_description =
    "Nivora computes the daily streamflow of mountain basins "
    "in which melting snow is a major source of runoff.\n"
    "A basin is one file. It holds zones, daily variables, simulations with their parameters, "
    "and the results of the\n"
    "last run. Depths are cm or inches, discharge is m³/s or ft³/s, by the basin's units.";

constexpr const char* k_footer =
    "Questions that the model asks are answered so that the work goes on, "
    "and reported on standard error; with --refuse\n"
    "they are answered with Cancel or No.\n\n"
    "Exit status: 0 done; 1 refused, by the model or because of the data "
    "(title and text on standard error); 2 wrong usage.\n\n"
    "Example:\n"
    "  nivora-batch import alder.NVR alder.mdb --name wy1998 --initial-runoff 4.2 --latitude 46.5\n"
    "  nivora-batch run alder.mdb --simulation wy1998 --kind year-round\n"
    "  nivora-batch export alder.mdb SimResults --csv results.csv";

std::string share_number(const std::string& text) {
    if (!text.empty() && text.find_first_not_of("0123456789.") == std::string::npos && exact_number(text))
        return {};
    return "'" + text + "' is not a share such as 0.5";
}

constexpr int k_longest_wait = 86400;

/// The texts of the options as the command line gives them.
struct Texts {
    std::string file;
    std::string basin;
    std::string simulation;
    std::string kind = "melt-season";
    std::string forecast;
    bool no_snow = false;
    std::vector<std::string> lag_shares;
    std::string scenario;
    std::string report;
    std::string table;
    std::string csv;
    std::string netcdf;
    std::string exported_simulation;
    std::string exported_kind;
    bool exported_forecast = false;
    std::string duplicated;
    std::string renamed;
    std::string other_name;
    bool json = false;
    bool data = false;
    bool refuse = false;
    std::string made;
    int last_step = k_climate_steps;
    int wait = static_cast<int>(k_usual_wait.count());

    [[nodiscard]] std::chrono::milliseconds waiting() const { return std::chrono::seconds{wait}; }
};

RunCommand run_of(const Texts& texts, const CLI::App& app) {
    RunCommand command;
    command.basin = path_from_utf8(texts.basin);
    command.simulation = texts.simulation;
    command.year_round = texts.kind == "year-round";
    if (app.count("--forecast") > 0) command.forecast_days = texts.forecast;
    command.no_snow = texts.no_snow;
    command.lag_shares = texts.lag_shares;
    command.json = texts.json;
    command.wait = texts.waiting();
    return command;
}

// An option with a list has one argument, a list separated by commas: the next one may be a file name.
CLI::App& add_run(CLI::App& app, Texts& texts) {
    CLI::App& run =
        *app.add_subcommand("run", "Run a simulation, keep its results in the basin, print its statistics");
    run.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    run.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    run.add_option("--kind", texts.kind,
                   "melt-season or year-round; the discharge is the same, reports differ")
        ->check(CLI::IsMember({"melt-season", "year-round"}))
        ->capture_default_str();
    run.add_option(
        "--forecast", texts.forecast,
        "Run as a forecast that is updated with the measured discharge every so many days, 1 to 9");
    run.add_flag(
        "--no-snow", texts.no_snow,
        "Disregard the snow covered area and carry unmelted winter precipitation into the melt season; "
        "only with --kind year-round");
    run.add_option("--lag-shares", texts.lag_shares,
                   "Custom time lag: shares of a day's input that run off on that day, the day after, ... "
                   "(up to six, together 1), joined by commas; the simulation's lag times if not given")
        ->delimiter(',')
        ->allow_extra_args(false)
        ->check(CLI::Validator(share_number, "SHARE"));
    run.add_flag("--json", texts.json, "Print JSON");
    run.callback([&texts] { check_no_snow(texts.no_snow, texts.kind); });
    return run;
}

CLI::App& add_climate(CLI::App& app, Texts& texts) {
    CLI::App& climate = *app.add_subcommand(
        "climate",
        "Evaluate a climate scenario in six steps, keep the results in the basin, print the statistics");
    climate.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    climate.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    climate.add_option("--scenario", texts.scenario, "Name of the scenario")->required();
    climate.add_option(
        "--report", texts.report,
        "File for the report of the winter change; NVR_DfGN.out beside the basin if not given");
    climate
        .add_option("--last-step", texts.last_step,
                    "End the evaluation after this step, so that its results can be reported")
        ->check(CLI::Range(1, k_climate_steps))
        ->capture_default_str();
    climate.add_flag("--json", texts.json, "Print JSON");
    return climate;
}

ClimateCommand climate_of(const Texts& texts) {
    ClimateCommand command;
    command.basin = path_from_utf8(texts.basin);
    command.simulation = texts.simulation;
    command.scenario = texts.scenario;
    if (!texts.report.empty()) command.report = path_from_utf8(texts.report);
    command.last_step = texts.last_step;
    command.json = texts.json;
    command.wait = texts.waiting();
    return command;
}

CLI::App& add_simulations(CLI::App& app, Texts& texts) {
    CLI::App& simulations = *app.add_subcommand(
        "simulations",
        "List the simulations of a basin, copy one of them, or give it another name. What can't be done "
        "changes nothing");
    simulations.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    auto* json = simulations.add_flag("--json", texts.json, "Print the list as JSON");
    auto* duplicated =
        simulations.add_option("--duplicate", texts.duplicated,
                               "Name of a simulation to copy, with its parameter table and its "
                               "scenarios; the results stay with the one that ran");
    auto* renamed = simulations.add_option("--rename", texts.renamed,
                                           "Name of a simulation that gets another name; results stay valid");
    auto* name = simulations.add_option(
        "--as", texts.other_name, "The name of the copy, or the other name: none that the basin has already");
    duplicated->excludes(renamed)->excludes(json)->needs(name);
    renamed->excludes(json)->needs(name);
    simulations.callback([&texts] {
        if (!texts.other_name.empty() && texts.duplicated.empty() && texts.renamed.empty())
            throw CLI::ValidationError("--as", "needs --duplicate or --rename");
    });
    return simulations;
}

SimulationNameCommand simulation_name_of(const Texts& texts, bool copy) {
    return {.basin = path_from_utf8(texts.basin),
            .simulation = copy ? texts.duplicated : texts.renamed,
            .copy = copy,
            .name = texts.other_name,
            .wait = texts.waiting()};
}

int simulations_of(const Texts& texts, const CLI::App& app, BatchDialogs& dialogs, std::ostream& out) {
    const bool copy = app.count("--duplicate") > 0;
    if (copy || app.count("--rename") > 0)
        return simulation_name_command(simulation_name_of(texts, copy), dialogs, out);
    return simulations_command(path_from_utf8(texts.basin), texts.waiting(), texts.json, dialogs, out);
}

CLI::App& add_export(CLI::App& app, Texts& texts) {
    CLI::App& exported = *app.add_subcommand(
        "export",
        "Write a table as CSV (UTF-8, a header line, ISO dates, nothing for a missing value) or as NetCDF");
    exported.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    exported
        .add_option("TABLE", texts.table, "SimResults, PhysicalData, a simulation's name, or any other table")
        ->required();
    CLI::Option* const csv = exported.add_option("--csv", texts.csv, "CSV file to write");
    CLI::Option* const netcdf =
        exported.add_option("--netcdf", texts.netcdf,
                            "NetCDF file to write, zone by date, for a table with zones and days (CF-1.8)");
    csv->excludes(netcdf);
    exported
        .add_option("--simulation", texts.exported_simulation,
                    "The results are those of this simulation, which the NetCDF file then tells")
        ->needs(netcdf);
    exported
        .add_option("--kind", texts.exported_kind,
                    "The results are those of such a run, which the NetCDF file then tells: melt-season or "
                    "year-round")
        ->needs(netcdf)
        ->check(CLI::IsMember({"melt-season", "year-round"}));
    exported.add_flag("--forecast", texts.exported_forecast, "The run was a forecast")->needs("--kind");
    exported.callback([csv, netcdf] {
        if (csv->count() + netcdf->count() == 0) throw CLI::RequiredError("--csv or --netcdf");
    });
    return exported;
}

ExportCommand export_of(const Texts& texts) {
    return {
        .basin = path_from_utf8(texts.basin),
        .table = texts.table,
        .file = path_from_utf8(texts.netcdf.empty() ? texts.csv : texts.netcdf),
        .netcdf = !texts.netcdf.empty(),
        .simulation = texts.exported_simulation,
        .run = {.forecast = texts.exported_forecast, .index = texts.exported_kind == "year-round" ? 1 : 0},
        .run_told = !texts.exported_kind.empty(),
        .wait = texts.waiting()};
}

CLI::App& add_check(CLI::App& app, Texts& texts) {
    CLI::App& check = *app.add_subcommand(
        "check",
        "Check every page and row of a basin: structure, duplicate or missing keys, ranges of values");
    check.add_option("BASIN.mdb", texts.basin, "Basin file; it is not changed")->required();
    CLI::Option* data = check.add_flag(
        "--data", texts.data,
        "List what is likely to be wrong in the daily variables instead, such as gaps and jumps");
    check.add_flag("--json", texts.json, "Print the list as JSON")->needs(data);
    return check;
}

CLI::App& add_salvage(CLI::App& app, Texts& texts) {
    CLI::App& salvage = *app.add_subcommand(
        "salvage", "Copy every table and row of a damaged basin that can be read, and list what can't");
    salvage.add_option("DAMAGED.mdb", texts.basin, "Basin file; it is not changed")->required();
    salvage.add_option("NEW.mdb", texts.made, "File to write; it must not exist")->required();
    return salvage;
}

CLI::App& add_new(CLI::App& app, Texts& texts) {
    CLI::App& made = *app.add_subcommand(
        "new", "Make a basin by a definition: its name, units, zones, simulations and scenarios, as JSON");
    made.add_option("BASIN.mdb", texts.basin, "Basin file to write; it must not exist")->required();
    made.add_option("--definition", texts.file, "Definition in the form that the command definition prints")
        ->required();
    return made;
}

CLI::App& add_definition(CLI::App& app, Texts& texts) {
    CLI::App& definition =
        *app.add_subcommand("definition", "Print the definition of a basin as JSON, for the command new");
    definition.add_option("BASIN.mdb", texts.basin, "Basin file; it is not changed")->required();
    return definition;
}

CLI::App& add_template(CLI::App& app, Texts& texts) {
    CLI::App& blank = *app.add_subcommand("template", "Write the blank template of all basins to a new file");
    blank.add_option("FILE.mdb", texts.file, "File to write; it must not exist")->required();
    return blank;
}

/// The commands in the order of the help, each with what it does.
class Commands {
public:
    Commands(CLI::App& app, Texts& texts, std::ostream& out, std::ostream& err)
        : app_(app), texts_(texts), out_(out), err_(err) {
        add_model_commands();
        add_studies();
        add_tables();
        add_files();
    }

    /// Does what the command that was given says.
    [[nodiscard]] int run(BatchDialogs& dialogs) const {
        for (const auto& [command, act] : commands_) {
            if (command->parsed()) return act(dialogs);
        }
        return k_wrong_usage;
    }

private:
    using Act = std::function<int(BatchDialogs& dialogs)>;

    void add(const CLI::App& command, Act act) { commands_.emplace_back(&command, std::move(act)); }
    [[nodiscard]] std::filesystem::path basin() const { return path_from_utf8(texts_.basin); }

    void add_model_commands() {
        const CLI::App& import = add_import(app_, import_);
        add(import, [this, &import](BatchDialogs& dialogs) {
            return import_command(import_of(import_, import, texts_.waiting()), dialogs, out_);
        });
        const CLI::App& simulations = add_simulations(app_, texts_);
        add(simulations, [this, &simulations](BatchDialogs& dialogs) {
            return simulations_of(texts_, simulations, dialogs, out_);
        });
        const CLI::App& run = add_run(app_, texts_);
        add(run,
            [this, &run](BatchDialogs& dialogs) { return run_command(run_of(texts_, run), dialogs, out_); });
        add(add_climate(app_, texts_),
            [this](BatchDialogs& dialogs) { return climate_command(climate_of(texts_), dialogs, out_); });
        const CLI::App& scenario = add_scenario(app_, scenario_);
        add(scenario, [this, &scenario](BatchDialogs& dialogs) {
            return scenario_command(scenario_of(scenario_, scenario, texts_.waiting()), dialogs, out_);
        });
        const CLI::App& report = add_report(app_, report_);
        add(report, [this, &report](BatchDialogs& dialogs) {
            return report_command(report_of(report_, report, texts_.waiting()), dialogs);
        });
        const CLI::App& plot = add_plot(app_, plot_);
        add(plot, [this, &plot](BatchDialogs& dialogs) {
            return plot_command(plot_of(plot_, plot, texts_.waiting()), dialogs, out_);
        });
    }

    void add_studies() {
        add(add_response(app_, response_), [this](BatchDialogs& dialogs) {
            return response_command(response_of(response_, texts_.waiting()), dialogs, out_, err_,
                                    errors_go_to_terminal());
        });
        const CLI::App& evaluate = add_evaluate(app_, evaluate_);
        add(evaluate, [this, &evaluate](BatchDialogs& dialogs) {
            return evaluate_command(evaluate_of(evaluate_, evaluate, texts_.waiting()), dialogs, out_);
        });
        calibrate_.emplace(app_);
        add(calibrate_->app(), [this](BatchDialogs& dialogs) {
            return calibrate_command(calibrate_->command(texts_.waiting()), dialogs, out_, err_,
                                     errors_go_to_terminal());
        });
        sample_.emplace(app_);
        add(sample_->app(), [this](BatchDialogs& dialogs) {
            return sample_command(sample_->command(texts_.waiting()), dialogs, out_, err_,
                                  errors_go_to_terminal());
        });
        gather_.emplace(app_);
        add(gather_->app(), [this](BatchDialogs& dialogs) { return gather_->run(dialogs, out_); });
    }

    void add_tables() {
        add(add_export(app_, texts_),
            [this](BatchDialogs& dialogs) { return export_command(export_of(texts_), dialogs); });
        load_.emplace(app_);
        add(load_->app(), [this](BatchDialogs& dialogs) {
            return load_command(load_->command(texts_.waiting()), dialogs, out_);
        });
        add(add_new(app_, texts_), [this](BatchDialogs& dialogs) {
            return new_command(basin(), path_from_utf8(texts_.file), dialogs, out_);
        });
        add(add_definition(app_, texts_), [this](BatchDialogs& dialogs) {
            return definition_command(basin(), texts_.waiting(), dialogs, out_);
        });
    }

    void add_files() {
        add(add_template(app_, texts_),
            [this](BatchDialogs& dialogs) { return template_command(path_from_utf8(texts_.file), dialogs); });
        add(add_check(app_, texts_), [this](BatchDialogs& dialogs) {
            if (texts_.data) return check_data_command(basin(), texts_.json, texts_.waiting(), dialogs, out_);
            return check_command(basin(), texts_.waiting(), dialogs, out_);
        });
        add(add_salvage(app_, texts_), [this](BatchDialogs& dialogs) {
            return salvage_command(basin(), path_from_utf8(texts_.made), dialogs, out_);
        });
    }

    CLI::App& app_;
    Texts& texts_;
    std::ostream& out_;
    std::ostream& err_;
    ImportTexts import_;
    ScenarioTexts scenario_;
    ReportTexts report_;
    PlotTexts plot_;
    ResponseTexts response_;
    EvaluateTexts evaluate_;
    std::optional<CalibrateOptions> calibrate_;
    std::optional<SampleOptions> sample_;
    std::optional<GatherOptions> gather_;
    std::optional<LoadOptions> load_;
    std::vector<std::pair<const CLI::App*, Act>> commands_;
};

}  // namespace

int run_command_line(int argc, const char* const* argv, std::ostream& out, std::ostream& err) {
    Texts texts;
    CLI::App app{k_description, "nivora-batch"};
    app.footer(k_footer);
    // The version is told as soon as its flag is read, before the flags behind it.
    const bool verbose = std::any_of(
        argv, argv + argc, [](const char* argument) { return argument == std::string_view{"--verbose"}; });
    app.set_version_flag(
        "--version", [verbose] { return verbose ? version_details() : std::string{"Nivora "} + k_version; });
    app.add_flag("--verbose")->description("With --version: commit, compiler, libraries and licences, too");
    app.add_flag("--refuse", texts.refuse, "Answer the model's questions with Cancel or No");
    app.add_option(
           "--wait", texts.wait,
           "Seconds to wait for another program that works on the basin, before the command is refused")
        ->check(CLI::Range(0, k_longest_wait))
        ->capture_default_str();
    app.fallthrough();
    app.require_subcommand(1);
    const Commands commands{app, texts, out, err};
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error, out, err) == 0 ? k_done : k_wrong_usage;
    }
    BatchDialogs dialogs{err, texts.refuse};
    try {
        return commands.run(dialogs);
    } catch (const std::filesystem::filesystem_error& error) {
        // The path is impossible, for example because its name is too long.
        dialogs.report_problem(
            "The file can't be used",
            fmt::format("The file '{}': {}.", path_text(error.path1()), error.code().message()));
        return k_failed;
    }
}

}  // namespace nivora
