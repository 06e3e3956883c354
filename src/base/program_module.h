// Modules beside the program: parts of it that need large libraries, loaded only when they are used.
//
// A module is built with its program, and each has a function `nivora_module_version` that tells with which.
#pragma once

#include <filesystem>
#include <string>

namespace nivora {

/// Where the modules are, for code in another program. Without it they stand beside the program.
void set_module_folder(const std::filesystem::path& folder);

/// Loads a module, once; it stays loaded.
///
/// @param file     its name, such as "nivora-paint.so"
/// @param function of the module, with C linkage
/// @param loss     what the program lacks without the module, such as "is no search"
/// @return the function's address. @throws FileError if there is no such module or function, or if the module
/// belongs to another version of the program
[[nodiscard]] void* module_function(const std::string& file, const char* function, const std::string& loss);

}  // namespace nivora
