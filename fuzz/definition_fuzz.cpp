// Definitions of basins: any bytes are either refused with their problems, or a definition that is written
// and read back the same.

#include "prep/basin_definition.h"

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace nivora;

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string text(reinterpret_cast<const char*>(data), size);
    std::string written;
    try {
        written = definition_text(read_definition(text));
    } catch (const DefinitionFault& fault) {
        require(!fault.problems().empty(), "a refusal has a problem");
        return 0;
    }
    require(definition_text(read_definition(written)) == written, "what is written reads back the same");
    return 0;
}
