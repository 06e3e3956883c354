// Saves on a disk that is almost full.
#pragma once

#include <cstdint>
#include <string>

namespace nivora {

struct DiskFigures {
    int sizes = 0;  ///< free sizes that were tried
    int saved = 0;  ///< the new file stood, and nobody was told of a fault
    int told = 0;   ///< the old file stood whole, and the user was told
    int wrong = 0;  ///< anything else
    std::string first_wrong;
    std::string stand_in;  ///< what took the place of a small disk; empty where it was one
};

/// Saves a basin again and again on a disk that has from nothing to one and a half times the basin's size
/// free.
[[nodiscard]] DiskFigures save_on_small_disks(std::uintmax_t about_bytes, int sizes);

}  // namespace nivora
