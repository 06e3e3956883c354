// The options of the scenario command.
#pragma once

#include "batch/commands.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace nivora {

/// The texts of the options as the command line gives them.
struct ScenarioTexts {
    std::string basin;
    std::string simulation;
    std::string name;
    std::string winter_end;
    std::vector<std::string> edits;
};

CLI::App& add_scenario(CLI::App& app, ScenarioTexts& texts);

/// The command that checked options ask for.
///
/// @param scenario what add_scenario returned
[[nodiscard]] ScenarioCommand scenario_of(const ScenarioTexts& texts, const CLI::App& scenario,
                                          std::chrono::milliseconds wait);

}  // namespace nivora
