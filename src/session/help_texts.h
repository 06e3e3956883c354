// The texts of the manual window and of QuickHelp, from the two files beside the program.
#pragma once

#include <filesystem>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The lines of the main window from this number on are the texts of its menus.
inline constexpr int k_last_main_window_line = 48;

/// QuickHelp texts of a window by line number, and for the main window those of the menus.
struct QuickHelpTexts {
    std::vector<std::string> lines;
    std::vector<std::string> menu;

    /// The text of an element; line 0 if there is none with that number.
    [[nodiscard]] const std::string& line(int number) const;
    [[nodiscard]] const std::string& menu_text(int number) const;
};

/// The text of a topic of the manual: the lines between its two tags in NIVORAHelp.txt. If the file, the
/// topic or its closing tag is missing, a text that says so and names the file.
[[nodiscard]] std::string Help_Text(const std::filesystem::path& program_folder, int topic);

/// The texts of a window in quickhelp.txt, one a line between its two tags. If the file or the window's
/// section is missing, line 0 says so and names the file.
[[nodiscard]] QuickHelpTexts Load_QuickHelp(const std::filesystem::path& program_folder,
                                            std::string_view form_name);

}  // namespace nivora
