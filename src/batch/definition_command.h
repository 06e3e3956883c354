// The commands that write the definition of a basin as JSON, and make a basin of such a text.
#pragma once

#include "engine/batch_dialogs.h"

#include <chrono>
#include <filesystem>
#include <iosfwd>

namespace nivora {

/// Makes a new basin by a definition. @return the exit status; if it is refused, there is no new file
int new_command(const std::filesystem::path& basin, const std::filesystem::path& definition,
                BatchDialogs& dialogs, std::ostream& out);

/// Prints the definition of a basin.
int definition_command(const std::filesystem::path& basin, std::chrono::milliseconds wait,
                       BatchDialogs& dialogs, std::ostream& out);

}  // namespace nivora
