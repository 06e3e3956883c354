// The header of a legacy data file: free-format items, numbered from 1.
#pragma once

#include "prep/legacy_file.h"

#include <array>
#include <string>
#include <string_view>

namespace nivora {

/// Reads a legacy file: item by item in its header, then line by line.
class LegacyText {
public:
    explicit LegacyText(std::string_view text) : text_(text) {}

    [[nodiscard]] bool at_end() const { return at_ >= text_.size(); }
    /// The number of the current line, from 1.
    [[nodiscard]] int line() const { return line_; }

    /// The next item, up to a comma or the line's end; quotation marks around it are removed.
    [[nodiscard]] std::string next_item();
    /// The rest of the current line without its line end.
    [[nodiscard]] std::string_view next_line();

private:
    [[nodiscard]] std::size_t closing_quote(std::size_t open) const;
    void skip_line_end();

    std::string_view text_;
    std::size_t at_ = 0;
    int line_ = 1;
};

/// The beginning of a piece of a file, as a message can show it: UTF-8, without control characters.
[[nodiscard]] std::string shown_text(std::string_view text);

/// Reads the header and fills everything in `file` except its daily values; leaves the text at the first
/// daily line. @throws LegacyFileError
void read_legacy_header(LegacyText& text, LegacyFile& file);

}  // namespace nivora
