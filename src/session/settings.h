// The user's settings as plain values. The shell reads and writes them.
#pragma once

#include "plots/line_attributes.h"
#include "reports/page_setup.h"
#include "session/window_place.h"

#include <array>
#include <cstdint>
#include <map>
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

struct Settings {
    bool show_splash = true;
    PageSetup page;
    /// A spare item of the page. Intended: written under one name and read under another, so that a saved
    /// value is never read back.
    std::string extra;
    std::optional<std::int32_t> quick_help_fore;  ///< red in the lowest byte
    std::optional<std::int32_t> quick_help_back;
    std::array<WindowPlace, k_window_places> places;  ///< by window number
    /// The frame that the window manager drew around the last window; not stored.
    FrameWidths frame;
    LineTable lines = default_lines();
    /// Hidden and moved columns as texts of a ColumnLayout, by the name of the view; only where there are
    /// any.
    std::map<std::string, std::string> columns;
    std::vector<std::string> recent_files;  ///< newest first, at most four
};

/// Moves or adds a basin file to the head of the recent list; with more than four the oldest is removed.
/// A file whose name ends with "null.mdb" is not added.
void update_recent_files(Settings& settings, const std::string& basin_file);

}  // namespace nivora
