// What the program was made from: commit, compiler, libraries and their licences.
#pragma once

#include <string>

namespace nivora {

/// "Nivora 1.10" and, line by line, the commit, the compiler, and each library with its version and licence.
/// The versions are those that the program was compiled with.
[[nodiscard]] std::string version_details();

}  // namespace nivora
