#include "batch/output_guard.h"

#include "base/durable_file.h"
#include "base/output_file.h"
#include "store/database.h"

#include <fmt/format.h>

namespace nivora {

namespace fs = std::filesystem;

void refuse_basin_as_output(const fs::path& output, const fs::path& basin) {
    fs::path journal = basin;
    journal += "-journal";
    static_cast<void>(output_target(output, {basin, journal}));
    if (!is_basin_file(output)) return;
    throw FileError(
        fmt::format("The file '{}' can't be written: it is a basin. Give another name.", path_text(output)));
}

}  // namespace nivora
