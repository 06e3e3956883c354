// The lines of a report's text, for tests.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The lines without their ends. Every line must end with CR LF, and no CR or LF may be anywhere else.
inline std::vector<std::string> report_text_lines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find("\r\n");
        if (end == std::string_view::npos) {
            ADD_FAILURE() << "a line without its end: " << text;
            break;
        }
        lines.emplace_back(text.substr(0, end));
        if (lines.back().find_first_of("\r\n") != std::string::npos)
            ADD_FAILURE() << "a line end without CR or LF: " << lines.back();
        text.remove_prefix(end + 2);
    }
    return lines;
}

inline std::vector<std::string> lines_that_begin(const std::vector<std::string>& lines,
                                                 std::string_view head) {
    std::vector<std::string> found;
    for (const std::string& line : lines) {
        if (line.starts_with(head)) found.push_back(line);
    }
    return found;
}

}  // namespace nivora
