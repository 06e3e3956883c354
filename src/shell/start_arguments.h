// The command line of the desktop program.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// What the command line asks for.
struct StartArguments {
    bool help = false;
    bool version = false;
    bool verbose = false;
    std::optional<std::filesystem::path> file = std::nullopt;  ///< as given, maybe relative
    std::string problem = {};  ///< what is wrong with the command line; empty if nothing is
};

/// @param arguments without the name of the program and without options of Qt
[[nodiscard]] StartArguments read_start_arguments(const std::vector<std::string>& arguments);

/// Whether the command line asks for a text only, so that no display is needed.
[[nodiscard]] bool wants_text_only(const std::vector<std::string>& arguments);

/// The text of --help.
[[nodiscard]] const char* start_help();

}  // namespace nivora
