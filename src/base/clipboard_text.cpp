#include "base/clipboard_text.h"

#include <algorithm>
#include <optional>

namespace nivora {
namespace {

bool ends_cell(std::string_view text, std::size_t at) {
    return at >= text.size() || text[at] == '\t' || text[at] == '\n' || text[at] == '\r';
}

/// Reads a cell in quotation marks and moves past it; nothing if the quotation marks do not enclose the cell.
std::optional<std::string> quoted_cell(std::string_view text, std::size_t& at) {
    if (at >= text.size() || text[at] != '"') return std::nullopt;
    std::string cell;
    for (std::size_t i = at + 1; i < text.size(); ++i) {
        if (text[i] != '"') {
            cell.push_back(text[i]);
        } else if (i + 1 < text.size() && text[i + 1] == '"') {
            cell.push_back('"');
            ++i;
        } else {
            if (!ends_cell(text, i + 1)) return std::nullopt;
            at = i + 1;
            return cell;
        }
    }
    return std::nullopt;
}

std::string next_cell(std::string_view text, std::size_t& at) {
    if (auto cell = quoted_cell(text, at)) return *cell;
    const std::size_t start = at;
    while (!ends_cell(text, at)) ++at;
    return std::string{text.substr(start, at - start)};
}

/// Skips a line end of any kind.
void pass_line_end(std::string_view text, std::size_t& at) {
    const bool two = text[at] == '\r' && at + 1 < text.size() && text[at + 1] == '\n';
    at += two ? 2 : 1;
}

}  // namespace

std::string clipboard_text(const CellBlock& cells) {
    std::string text;
    for (const auto& row : cells) {
        for (std::size_t column = 0; column < row.size(); ++column) {
            if (column > 0) text.push_back('\t');
            const std::string& cell = row[column];
            if (cell.find_first_of("\t\r\n\"") == std::string::npos) {
                text += cell;
                continue;
            }
            text.push_back('"');
            for (const char character : cell) {
                if (character == '"') text.push_back('"');
                text.push_back(character);
            }
            text.push_back('"');
        }
        text.push_back('\n');
    }
    return text;
}

CellBlock read_clipboard_text(std::string_view text) {
    CellBlock cells;
    std::size_t at = 0;
    while (at < text.size()) {
        auto& row = cells.emplace_back();
        for (;;) {
            row.push_back(next_cell(text, at));
            if (at >= text.size()) break;
            if (text[at] != '\t') {
                pass_line_end(text, at);
                break;
            }
            ++at;
        }
    }
    return cells;
}

std::vector<PastePiece> paste_pieces(std::size_t first, std::size_t selected, std::size_t copied,
                                     std::size_t rows) {
    std::vector<PastePiece> pieces;
    if (copied == 0 || first >= rows) return pieces;
    const std::size_t end = std::min(rows, first + std::max(selected, copied));
    for (std::size_t row = first; row < end; row += copied)
        pieces.push_back({row, std::min(copied, end - row)});
    return pieces;
}

}  // namespace nivora
