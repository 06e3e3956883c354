#include "search/methods.h"

#include "base/durable_file.h"

#include <dlfcn.h>
#include <fmt/format.h>

#include <filesystem>

namespace nivora {
namespace {

constexpr const char* k_module = "nivora-search.so";

std::filesystem::path& stated_folder() {
    static std::filesystem::path folder;
    return folder;
}

std::filesystem::path module_file() {
    const std::filesystem::path& stated = stated_folder();
    if (!stated.empty()) return stated / k_module;
    return std::filesystem::read_symlink("/proc/self/exe").parent_path() / k_module;
}

[[noreturn]] void refuse(const std::string& reason) {
    throw FileError{
        fmt::format("The file '{}' can't be loaded, without which there is no search: {}. It belongs to the "
                    "program; install the program again.",
                    k_module, reason)};
}

SearchMethods load() {
    void* module = dlopen(module_file().c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) refuse(dlerror());
    const auto function = [&](const char* name) {
        void* address = dlsym(module, name);
        if (address == nullptr) refuse(dlerror());
        return address;
    };
    return {reinterpret_cast<NivoraClimbFunction>(function("nivora_climb")),
            reinterpret_cast<NivoraGenerationsFunction>(function("nivora_generations"))};
}

}  // namespace

void set_search_folder(const std::filesystem::path& folder) { stated_folder() = folder; }

const SearchMethods& search_methods() {
    static const SearchMethods methods = load();
    return methods;
}

}  // namespace nivora
