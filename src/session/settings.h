// The user's settings as plain values. Where they are kept is the shell's business.
#pragma once

#include "session/window_place.h"

#include <array>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The most entries of the list of recent files.
inline constexpr std::size_t k_most_recent_files = 4;
/// Window numbers run from 1; index 0 is not used.
inline constexpr std::size_t k_window_places = 31;
/// Windows whose position is kept from one start to the next have the numbers 1 to 14.
inline constexpr std::size_t k_kept_windows = 14;
inline constexpr std::size_t k_plot_lines = 16;

/// How a plot line is drawn.
struct LineAttribute {
    std::int32_t style = 0;   ///< 0 solid, 1 dash, 2 dot, 3 dash-dot, 4 dash-dot-dot
    std::int32_t colour = 0;  ///< red in the lowest byte, then green, then blue
    std::int32_t width = 1;   ///< pixels; a line wider than 1 is drawn solid
    std::int32_t fill = 0;    ///< 0 solid, 1 transparent, 2 to 7 hatched

    bool operator==(const LineAttribute&) const = default;
};

using LineTable = std::array<LineAttribute, k_plot_lines>;

/// The lines as they are before the user changed any; line 1 first.
[[nodiscard]] LineTable default_lines();

struct Settings {
    bool show_splash = true;
    std::string printer_data;
    std::array<float, 4> margins{};  ///< left, top, right, bottom, inches; 0 where none was set
    std::int32_t orientation = 0;
    /// The paper: the key of a known size, such as "A4", or width and height in mm, such as "200x300"; empty
    /// where none was chosen.
    std::string paper;
    std::string page_unit;  ///< in which the page dialog shows lengths: "mm", "in" or empty
    /// A spare item of the page: written under one name and read under another, so that it never comes back.
    /// It is meant.
    std::string extra;
    std::optional<std::int32_t> quick_help_fore;  ///< red in the lowest byte
    std::optional<std::int32_t> quick_help_back;
    std::array<WindowPlace, k_window_places> places;  ///< by window number
    /// What the window manager drew around the window that was shown last; for the life of the program only.
    FrameWidths frame;
    LineTable lines = default_lines();
    std::vector<std::string> recent_files;  ///< newest first, at most four
};

/// Puts a basin file at the head of the recent list, where it stands once; the oldest of more than four goes.
/// A file that ends with "null.mdb" never gets there.
void update_recent_files(Settings& settings, const std::string& basin_file);

}  // namespace nivora
