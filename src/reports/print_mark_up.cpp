#include "reports/print_mark_up.h"

#include "base/text.h"

#include <utility>

namespace nivora {
namespace {

class MarkUpReader {
public:
    MarkUpReader(std::string_view mark_up, std::size_t page) : rest_(mark_up), page_(std::to_string(page)) {}

    std::vector<MarkedLine> read() {
        while (!rest_.empty()) read_next();
        end_run();
        return std::move(lines_);
    }

private:
    void read_next() {
        if (took("\r\n") || took("\n") || took("\r") || took("/n")) return end_line();
        if (took("/c")) return align(PrintAlign::Centre);
        if (took("/r")) return align(PrintAlign::Right);
        if (took("/l")) return align(PrintAlign::Left);
        if (took("/fb0")) return style(run_.bold, false);
        if (took("/fb1")) return style(run_.bold, true);
        if (took("/fu0")) return style(run_.underline, false);
        if (took("/fu1")) return style(run_.underline, true);
        if (took("/p")) {
            run_.text += page_;
            return;
        }
        if (took("//")) {
            run_.text += '/';
            return;
        }
        run_.text += rest_.front();
        rest_.remove_prefix(1);
    }

    bool took(std::string_view code) {
        if (!rest_.starts_with(code)) return false;
        rest_.remove_prefix(code.size());
        return true;
    }

    void end_run() {
        if (run_.text.empty()) return;
        lines_.back().push_back(run_);
        run_.text.clear();
    }

    void end_line() {
        end_run();
        lines_.emplace_back();
        run_.align = PrintAlign::Left;
    }

    void align(PrintAlign to) {
        end_run();
        run_.align = to;
    }

    void style(bool& of_run, bool on) {
        end_run();
        of_run = on;
    }

    std::string_view rest_;
    std::string page_;
    MarkedRun run_;
    std::vector<MarkedLine> lines_{1};
};

}  // namespace

std::vector<MarkedLine> read_mark_up(std::string_view mark_up, std::size_t page) {
    if (mark_up.empty()) return {};
    return MarkUpReader{mark_up, page}.read();
}

std::string mark_up_text(std::string_view plain) {
    std::string text;
    bool first = true;
    for (const std::string& line : split_lines(plain)) {
        if (!first) text += "/n";
        first = false;
        for (const char character : line) {
            if (character == '/') text += '/';
            text += character;
        }
    }
    return text;
}

}  // namespace nivora
