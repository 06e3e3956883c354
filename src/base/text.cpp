#include "base/text.h"

#include <utf8proc.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <memory>

namespace nivora {
namespace {

constexpr std::string_view k_blanks = " \t\r\n\v\f";

/// Code points of the bytes 0x80 to 0x9F; the five bytes that the code page does not define
/// map to themselves.
constexpr std::array<std::uint16_t, 32> k_windows_1252{
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

/// Whether a byte begins a character and does not continue one.
bool begins_character(char byte) { return (static_cast<unsigned char>(byte) & 0xC0U) != 0x80U; }

void append_utf8(std::string& text, unsigned code_point) {
    std::array<utf8proc_uint8_t, 4> bytes{};
    const auto count = utf8proc_encode_char(static_cast<utf8proc_int32_t>(code_point), bytes.data());
    for (utf8proc_ssize_t i = 0; i < count; ++i) {
        text.push_back(static_cast<char>(bytes[static_cast<std::size_t>(i)]));
    }
}

}  // namespace

std::string_view right_trimmed(std::string_view text) {
    const std::size_t last = text.find_last_not_of(k_blanks);
    return last == std::string_view::npos ? std::string_view{} : text.substr(0, last + 1);
}

std::string_view trimmed(std::string_view text) {
    const std::size_t first = text.find_first_not_of(k_blanks);
    return first == std::string_view::npos ? std::string_view{} : right_trimmed(text.substr(first));
}

std::string one_line(std::string_view text) {
    // In UTF-8, the control characters above ASCII are this byte and one of 0x80 to 0x9F.
    constexpr unsigned char k_high_control = 0xC2;
    std::string line;
    line.reserve(text.size());
    for (std::size_t at = 0; at < text.size(); ++at) {
        const auto byte = static_cast<unsigned char>(text[at]);
        const bool high = byte == k_high_control && at + 1 < text.size() &&
                          (static_cast<unsigned char>(text[at + 1]) & 0xE0U) == 0x80U;
        const bool control = high || byte < 0x20 || byte == 0x7F;
        line += control ? ' ' : text[at];
        if (high) ++at;
    }
    return line;
}

std::vector<std::string> split_lines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = std::min(text.find_first_of("\r\n"), text.size());
        lines.push_back(one_line(text.substr(0, end)));
        text.remove_prefix(end);
        if (!text.empty()) text.remove_prefix(text.starts_with("\r\n") ? 2 : 1);
    }
    return lines;
}

std::string folded_name(std::string_view name) {
    utf8proc_uint8_t* folded = nullptr;
    const auto length = utf8proc_map(
        reinterpret_cast<const utf8proc_uint8_t*>(name.data()), static_cast<utf8proc_ssize_t>(name.size()),
        &folded, static_cast<utf8proc_option_t>(UTF8PROC_STABLE | UTF8PROC_COMPOSE | UTF8PROC_CASEFOLD));
    const std::unique_ptr<utf8proc_uint8_t, decltype(&std::free)> owner{folded, &std::free};
    if (length < 0) return std::string{name};
    return {reinterpret_cast<const char*>(folded), static_cast<std::size_t>(length)};
}

bool same_name(std::string_view a, std::string_view b) { return folded_name(a) == folded_name(b); }

std::size_t character_count(std::string_view text) {
    return static_cast<std::size_t>(std::count_if(text.begin(), text.end(), begins_character));
}

std::string_view first_characters(std::string_view text, std::size_t most) {
    std::size_t characters = 0;
    for (std::size_t at = 0; at < text.size(); ++at) {
        if (begins_character(text[at]) && characters++ == most) return text.substr(0, at);
    }
    return text;
}

bool is_utf8(std::string_view text) {
    const auto* bytes = reinterpret_cast<const utf8proc_uint8_t*>(text.data());
    auto left = static_cast<utf8proc_ssize_t>(text.size());
    while (left > 0) {
        utf8proc_int32_t code_point = 0;
        const auto used = utf8proc_iterate(bytes, left, &code_point);
        if (used <= 0 || code_point == 0) return false;
        bytes += used;
        left -= used;
    }
    return true;
}

std::string to_utf8(std::string_view text) {
    if (is_utf8(text)) return std::string{text};
    std::string result;
    for (const char character : text) {
        const auto byte = static_cast<unsigned char>(character);
        append_utf8(result, byte >= 0x80 && byte < 0xA0 ? k_windows_1252[byte - 0x80U] : byte);
    }
    return result;
}

}  // namespace nivora
