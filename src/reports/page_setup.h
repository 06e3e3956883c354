// The page that reports, tables and plots are printed on, as the user sets it up.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace nivora {

struct PageSetup {
    std::array<float, 4> margins{};  ///< left, top, right, bottom, inches; 0 for one that was not set
    std::int32_t orientation = 0;
    /// The paper: the key of a known size, such as "A4", or width and height in mm, such as "200x300"; empty
    /// if none was chosen.
    std::string paper;
    std::string unit;     ///< in which the page dialog shows lengths: "mm", "in" or empty
    std::string printer;  ///< empty if none was chosen
};

}  // namespace nivora
