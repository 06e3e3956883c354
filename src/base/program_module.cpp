#include "base/program_module.h"

#include "base/durable_file.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <filesystem>

namespace nivora {

void* module_function(const std::string& file, const char* function, const std::string& loss) {
    const auto path = std::filesystem::read_symlink("/proc/self/exe").parent_path() / file;
    // Loaded again it is the same module.
    void* module = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    void* address = module == nullptr ? nullptr : dlsym(module, function);
    if (address != nullptr) return address;
    throw FileError{
        fmt::format("The file '{}' can't be loaded, without which there {}: {}. It belongs to "
                    "the program; install the program again.",
                    file, loss, dlerror())};
}

}  // namespace nivora
