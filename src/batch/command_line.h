// The command line of the batch program.
#pragma once

#include <iosfwd>

namespace nivora {

/// Reads the command line and does what it says.
///
/// @return the exit status: 0 done, 1 refused by the model or because of the data, 2 wrong usage
int run_command_line(int argc, const char* const* argv, std::ostream& out, std::ostream& err);

}  // namespace nivora
