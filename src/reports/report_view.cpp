#include "reports/report_view.h"

#include "reports/report_lines.h"

namespace nivora {
namespace {

void append_shown(std::string& shown, std::string_view line) {
    for (std::size_t at = line.find(k_difference); at != std::string_view::npos;
         at = line.find(k_difference)) {
        shown.append(line.substr(0, at)).append(k_shown_difference);
        line.remove_prefix(at + 1);
    }
    shown += line;
}

}  // namespace

std::string shown_report_text(std::string_view file) {
    std::string shown;
    shown.reserve(file.size());
    while (!file.empty()) {
        const std::size_t end = file.find('\n');
        std::string_view line = file.substr(0, end);
        file.remove_prefix(end == std::string_view::npos ? file.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line != "\f" && line != "\x01") append_shown(shown, line);
        if (end != std::string_view::npos) shown += '\n';
    }
    return shown;
}

}  // namespace nivora
