// The options of the import command.
#pragma once

#include "batch/commands.h"

#include <CLI/CLI.hpp>

#include <string>
#include <vector>

namespace nivora {

/// The texts of the options as the command line gives them.
struct ImportTexts {
    std::string file;
    std::string basin;
    std::string name;
    std::vector<std::string> by_zone;
    std::string temperature = "average";
    std::string initial_runoff;
    std::string rain_threshold;
    std::string latitude;
};

CLI::App& add_import(CLI::App& app, ImportTexts& texts);

/// The command that checked options ask for.
///
/// @param import what add_import returned
[[nodiscard]] ImportCommand import_of(const ImportTexts& texts, const CLI::App& import,
                                      std::chrono::milliseconds wait);

}  // namespace nivora
