#include "base/program_module.h"

#include "base/durable_file.h"
#include "base/version.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <string_view>

namespace nivora {
namespace {

std::filesystem::path& stated_folder() {
    static std::filesystem::path folder;
    return folder;
}

std::filesystem::path module_folder() {
    const std::filesystem::path& stated = stated_folder();
    return stated.empty() ? std::filesystem::read_symlink("/proc/self/exe").parent_path() : stated;
}

/// A program and a module of different versions would misread each other's data.
std::string version_problem(void* module) {
    using VersionOfModule = const char* (*)();
    const auto version = reinterpret_cast<VersionOfModule>(dlsym(module, "nivora_module_version"));
    if (version == nullptr) return "it tells no version";
    if (std::string_view{version()} == k_version) return {};
    return fmt::format("it is of version {}, and the program of version {}", version(), k_version);
}

}  // namespace

void set_module_folder(const std::filesystem::path& folder) { stated_folder() = folder; }

void* module_function(const std::string& file, const char* function, const std::string& loss) {
    const auto refuse = [&](const std::string& reason) {
        throw FileError{
            fmt::format("The file '{}' can't be loaded, without which there {}: {}. It belongs to "
                        "the program; install the program again.",
                        file, loss, reason)};
    };
    // Loaded again it is the same module.
    void* module = dlopen((module_folder() / file).c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) refuse(dlerror());
    if (const std::string problem = version_problem(module); !problem.empty()) {
        dlclose(module);
        refuse(problem);
    }
    void* address = dlsym(module, function);
    if (address == nullptr) refuse(dlerror());
    return address;
}

}  // namespace nivora
