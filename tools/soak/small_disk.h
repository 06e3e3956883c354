// Saves on a disk that is almost full.
#pragma once

#include <cstdint>
#include <string>

namespace nivora {

struct DiskFigures {
    int sizes = 0;  ///< free sizes that were tried
    int saved = 0;  ///< the new file is there, and no error was shown
    int told = 0;   ///< the old file is unchanged, and an error was shown
    int wrong = 0;  ///< anything else
    std::string first_wrong;
    std::string stand_in;  ///< what was used instead of a small disk; empty if there was one
};

/// Saves a basin repeatedly on a disk whose free space grows from nothing
/// to one and a half times the basin's size.
[[nodiscard]] DiskFigures save_on_small_disks(std::uintmax_t about_bytes, int sizes);

}  // namespace nivora
