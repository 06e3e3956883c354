#include "batch/scenario_options.h"

#include "base/durable_file.h"
#include "base/iso_date.h"
#include "batch/scenario_edit.h"

namespace nivora {
namespace {

std::string scenario_edit(const std::string& text) { return read_scenario_edit(text).problem; }

std::string iso_date(const std::string& text) {
    return read_iso_date(text) ? std::string{} : "'" + text + "' is not a date such as 1996-04-01";
}

}  // namespace

CLI::App& add_scenario(CLI::App& app, ScenarioTexts& texts) {
    CLI::App& scenario = *app.add_subcommand(
        "scenario", "Create a climate scenario of a simulation, or replace the one of the same name");
    scenario.add_option("BASIN.mdb", texts.basin, "Basin file")->required();
    scenario.add_option("--simulation", texts.simulation, "Name of the simulation")->required();
    scenario.add_option("--name", texts.name, "Name of the scenario")->required();
    scenario
        .add_option(
            "--winter-end", texts.winter_end,
            "Last day of the winter, YYYY-MM-DD; a day before the middle of the simulation if not given")
        ->check(CLI::Validator(iso_date, "DATE"));
    scenario
        .add_option(
            "--edit", texts.edits,
            "One change of the climate, as often as needed, in the order in which they apply. Variable, "
            "action and zone by the text of the scenario window or by its code: "
            "\"Average Temperature:1996-01-01:1996-06-30:Add/subtract to each:2:All\" is the same as "
            "1:1996-01-01:1996-06-30:0:2:0. Normalize needs no factor")
        ->allow_extra_args(false)
        ->check(CLI::Validator(scenario_edit, "VARIABLE:START:END:ACTION:FACTOR:ZONE"));
    return scenario;
}

ScenarioCommand scenario_of(const ScenarioTexts& texts, const CLI::App& scenario,
                            std::chrono::milliseconds wait) {
    ScenarioCommand command;
    command.basin = path_from_utf8(texts.basin);
    command.simulation = texts.simulation;
    command.name = texts.name;
    if (scenario.count("--winter-end") > 0) command.winter_end = texts.winter_end;
    command.edits = texts.edits;
    command.wait = wait;
    return command;
}

}  // namespace nivora
