// The rule of the option --no-snow.
#pragma once

#include <CLI/CLI.hpp>

#include <string>

namespace nivora {

/// A melt season run cannot be in No Snow mode. @throws CLI::ValidationError
inline void check_no_snow(bool no_snow, const std::string& kind) {
    if (no_snow && kind != "year-round")
        throw CLI::ValidationError("--no-snow", "is only allowed with --kind year-round");
}

}  // namespace nivora
