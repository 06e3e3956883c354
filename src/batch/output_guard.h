// The rule that a command never writes its output over a basin.
#pragma once

#include <filesystem>

namespace nivora {

/// Refuses an output that would replace a basin or its journal: the one that the command works on, through
/// any name or link, or any other basin. Called before the basin is opened. @throws FileError
void refuse_basin_as_output(const std::filesystem::path& output, const std::filesystem::path& basin);

}  // namespace nivora
