#include "reports/report_view.h"

namespace nivora {

std::string shown_report_text(std::string_view file) {
    std::string shown;
    shown.reserve(file.size());
    while (!file.empty()) {
        const std::size_t end = file.find('\n');
        std::string_view line = file.substr(0, end);
        file.remove_prefix(end == std::string_view::npos ? file.size() : end + 1);
        if (!line.empty() && line.back() == '\r') line.remove_suffix(1);
        if (line != "\f" && line != "\x01") shown += line;
        if (end != std::string_view::npos) shown += '\n';
    }
    return shown;
}

}  // namespace nivora
