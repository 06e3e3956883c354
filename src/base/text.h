// Small text helpers: blanks, lines, the comparison of names.
#pragma once

#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The text without blanks, tabs and line ends at either side.
[[nodiscard]] std::string_view trimmed(std::string_view text);
[[nodiscard]] std::string_view right_trimmed(std::string_view text);

/// A text on one line: each control character, line ends included, becomes a blank.
[[nodiscard]] std::string one_line(std::string_view text);

/// The lines of a text, each as `one_line` makes it. CR LF, CR and LF end a line; behind the end of the last
/// line there is no further one.
[[nodiscard]] std::vector<std::string> split_lines(std::string_view text);

/// A name in the form in which the store compares names: without regard to case, in every script.
///
/// @param name UTF-8; text that is not UTF-8 compares byte by byte
[[nodiscard]] std::string folded_name(std::string_view name);
[[nodiscard]] bool same_name(std::string_view a, std::string_view b);

/// The number of characters of a UTF-8 text.
[[nodiscard]] std::size_t character_count(std::string_view text);

/// The first `most` characters of a UTF-8 text, or all of a shorter one.
[[nodiscard]] std::string_view first_characters(std::string_view text, std::size_t most);

/// Whether the bytes are well-formed UTF-8 without a zero byte.
[[nodiscard]] bool is_utf8(std::string_view text);

/// Text of an older file as UTF-8: text that is not valid UTF-8 is read as Windows Latin-1 (code page 1252).
[[nodiscard]] std::string to_utf8(std::string_view text);

}  // namespace nivora
