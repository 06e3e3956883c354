// The one rule for what a command writes: never over a basin.
#pragma once

#include <filesystem>

namespace nivora {

/// Refuses an output that would take the place of a basin: of the one that the command works on, by whatever
/// name or link, of its journal, or of any other. Called before the basin is opened. @throws FileError
void refuse_basin_as_output(const std::filesystem::path& output, const std::filesystem::path& basin);

}  // namespace nivora
