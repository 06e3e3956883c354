#include "search/methods.h"

#include "base/program_module.h"

namespace nivora {
namespace {

SearchMethods load() {
    const auto function = [](const char* name) {
        return module_function("nivora-search.so", name, "is no search");
    };
    return {reinterpret_cast<NivoraClimbFunction>(function("nivora_climb")),
            reinterpret_cast<NivoraGenerationsFunction>(function("nivora_generations"))};
}

}  // namespace

const SearchMethods& search_methods() {
    static const SearchMethods methods = load();
    return methods;
}

}  // namespace nivora
