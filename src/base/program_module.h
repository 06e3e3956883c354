// Modules beside the program: parts of it that need large libraries, loaded only when they are used.
#pragma once

#include <string>

namespace nivora {

/// Loads a module from the program's folder, once; it stays loaded.
///
/// @param file     its name, such as "nivora-paint.so"
/// @param function of the module, with C linkage
/// @param loss     what the program lacks without the module, such as "is no search"
/// @return the function's address. @throws FileError if there is no such module or function
[[nodiscard]] void* module_function(const std::string& file, const char* function, const std::string& loss);

}  // namespace nivora
