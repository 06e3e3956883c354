#include "reports/sheet_text.h"

#include "base/text.h"

#include <algorithm>

namespace nivora {
namespace {

constexpr std::size_t k_least_width = 80;
constexpr const char* k_line_end = "\r\n";
constexpr const char* k_gap = "  ";

std::vector<std::string> lines_of(const std::string& text) {
    std::vector<std::string> lines;
    std::size_t begin = 0;
    for (std::size_t end = text.find('\n'); end != std::string::npos; end = text.find('\n', begin)) {
        lines.push_back(text.substr(begin, end - begin));
        begin = end + 1;
    }
    lines.push_back(text.substr(begin));
    return lines;
}

std::string padded(const std::string& text, std::size_t width, PrintAlign align) {
    const std::size_t taken = character_count(text);
    const std::size_t blanks = width > taken ? width - taken : 0;
    std::size_t before = 0;
    if (align == PrintAlign::Right) before = blanks;
    if (align == PrintAlign::Centre) before = blanks / 2;
    return std::string(before, ' ') + text + std::string(blanks - before, ' ');
}

/// The columns of a sheet with the width of each, in characters.
class TextColumns {
public:
    explicit TextColumns(const PrintedSheet& sheet) : sheet_(sheet) {
        for (const SheetColumn& column : sheet.columns) {
            heads_.push_back(lines_of(column.head));
            std::size_t widest = 0;
            for (const std::string& line : heads_.back()) widest = std::max(widest, character_count(line));
            widths_.push_back(widest);
            head_lines_ = std::max(head_lines_, heads_.back().size());
        }
        for (const auto& row : sheet.rows) {
            for (std::size_t at = 0; at < std::min(row.size(), widths_.size()); ++at)
                widths_[at] = std::max(widths_[at], character_count(row[at]));
        }
    }

    [[nodiscard]] std::size_t width() const {
        std::size_t width = 0;
        for (const std::size_t column : widths_) width += column + std::string_view{k_gap}.size();
        return width == 0 ? 0 : width - std::string_view{k_gap}.size();
    }
    [[nodiscard]] bool has_heads() const {
        return std::ranges::any_of(sheet_.columns, [](const auto& column) { return !column.head.empty(); });
    }
    /// A line of the heads, which are aligned at their last line.
    [[nodiscard]] std::string head_line(std::size_t line) const {
        std::vector<std::string> texts;
        for (const auto& head : heads_) {
            const std::size_t missing = head_lines_ - head.size();
            texts.push_back(line < missing ? std::string{} : head[line - missing]);
        }
        return row(texts);
    }
    [[nodiscard]] std::size_t head_lines() const { return head_lines_; }
    [[nodiscard]] std::string rule() const {
        std::vector<std::string> texts;
        for (const std::size_t width : widths_) texts.emplace_back(width, '-');
        return row(texts);
    }
    [[nodiscard]] std::string row(const std::vector<std::string>& texts) const {
        std::string line;
        for (std::size_t at = 0; at < widths_.size(); ++at) {
            if (at > 0) line += k_gap;
            line +=
                padded(at < texts.size() ? texts[at] : std::string{}, widths_[at], sheet_.columns[at].align);
        }
        return std::string{right_trimmed(line)};
    }

private:
    const PrintedSheet& sheet_;
    std::vector<std::vector<std::string>> heads_;
    std::vector<std::size_t> widths_;
    std::size_t head_lines_ = 0;
};

/// Aligns the parts of a line of mark-up. A part that would overlap the one before follows it after a blank.
std::string marked_text(const MarkedLine& marked, std::size_t width) {
    std::string line;
    for (const PrintAlign align : {PrintAlign::Left, PrintAlign::Centre, PrintAlign::Right}) {
        std::string part;
        for (const MarkedRun& run : marked) {
            if (run.align == align) part += run.text;
        }
        if (part.empty()) continue;
        const std::string placed = padded(part, width, align);
        const std::size_t blanks = placed.find_first_not_of(' ');
        const std::size_t taken = character_count(line);
        if (taken > 0 && blanks != std::string::npos && taken >= blanks)
            line += " " + std::string{trimmed(part)};
        else
            line += align == PrintAlign::Left ? part
                                              : right_trimmed(placed.substr(std::min(taken, placed.size())));
    }
    return std::string{right_trimmed(line)};
}

void add_mark_up(std::string& text, const std::string& mark_up, std::size_t width) {
    if (mark_up.empty()) return;
    for (const MarkedLine& line : read_mark_up(mark_up, 1)) text += marked_text(line, width) + k_line_end;
}

void add_sheet(std::string& text, const PrintedSheet& sheet) {
    const TextColumns columns(sheet);
    const std::size_t width = std::max(k_least_width, columns.width());
    // The table may be far wider than a screen; the texts around it stay within one.
    constexpr std::size_t k_most_width = 132;
    const std::size_t head_width = std::min(width, k_most_width);
    add_mark_up(text, sheet.header, head_width);
    add_mark_up(text, sheet.heading, head_width);
    if (columns.has_heads()) {
        text += k_line_end;
        for (std::size_t line = 0; line < columns.head_lines(); ++line)
            text += columns.head_line(line) + k_line_end;
        text += columns.rule() + k_line_end;
    }
    for (const auto& row : sheet.rows) text += columns.row(row) + k_line_end;
    if (!sheet.legend.empty()) text += k_line_end;
    add_mark_up(text, sheet.legend, head_width);
    if (read_mark_up(sheet.footer, 1) == read_mark_up(sheet.footer, 2))
        add_mark_up(text, sheet.footer, head_width);
}

}  // namespace

std::string sheet_text_file(std::span<const PrintedSheet> sheets) {
    std::string text;
    for (const PrintedSheet& sheet : sheets) {
        if (!text.empty()) text += std::string{k_line_end} + k_line_end;
        add_sheet(text, sheet);
    }
    return text;
}

}  // namespace nivora
