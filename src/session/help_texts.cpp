#include "session/help_texts.h"

#include "base/durable_file.h"
#include "base/text.h"

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::uintmax_t k_largest_help_file = 16U << 20U;

std::string not_found_text(const fs::path& file) {
    return path_text(file) + "\n\nThe requested text was not found in   ";
}

/// The content of a help file; empty if it cannot be read, for which the caller has a default text.
std::string content_of(const fs::path& file) {
    try {
        return to_utf8(read_whole_file(file, k_largest_help_file));
    } catch (const FileError&) {
        return {};
    }
}

}  // namespace

const std::string& QuickHelpTexts::line(int number) const {
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < lines.size() ? lines[index] : lines.front();
}

const std::string& QuickHelpTexts::menu_text(int number) const {
    const auto index = static_cast<std::size_t>(number);
    return number >= 0 && index < menu.size() ? menu[index] : lines.front();
}

std::string Help_Text(const fs::path& program_folder, int topic) {
    const fs::path file = program_folder / "NIVORAHelp.txt";
    const std::string content = content_of(file);
    const std::string opening = "[STRING" + std::to_string(topic) + "]";
    const std::string closing = "[/" + opening.substr(1);
    const std::size_t start = content.find(opening);
    if (start == std::string::npos) return not_found_text(file);
    const std::size_t end = content.find(closing, start + opening.size());
    if (end == std::string::npos) return not_found_text(file);
    return content.substr(start + opening.size(), end - start - opening.size());
}

QuickHelpTexts Load_QuickHelp(const fs::path& program_folder, std::string_view form_name) {
    const fs::path file = program_folder / "quickhelp.txt";
    QuickHelpTexts texts;
    const std::string content = content_of(file);
    const std::string tag = "<" + std::string{form_name} + ">";
    const std::size_t found = content.find(tag);
    const bool main_window = form_name == "frmNVR";
    std::size_t at = found == std::string::npos ? content.size() : content.find('\n', found);
    at = at == std::string::npos ? content.size() : at + (at < content.size() ? 1 : 0);
    for (int number = 0; at < content.size(); ++number) {
        const std::size_t end = std::min(content.find('\n', at), content.size());
        std::string line = content.substr(at, end - at);
        if (line.ends_with('\r')) line.pop_back();
        if (line.find(tag) != std::string::npos) break;
        (main_window && number > k_last_main_window_line ? texts.menu : texts.lines).push_back(line);
        at = end + 1;
    }
    if (texts.lines.empty()) texts.lines.push_back(not_found_text(file));
    return texts;
}

}  // namespace nivora
