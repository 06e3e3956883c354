#include "prep/csv_reader.h"

#include "base/durable_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <system_error>
#include <utility>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t k_block = 1U << 18U;

struct CloseFile {
    void operator()(std::FILE* file) const { static_cast<void>(std::fclose(file)); }
};

[[noreturn]] void refuse_reading(const fs::path& file, int error) {
    throw FileError(fmt::format("The file '{}' can't be read: {}.", path_text(file),
                                std::generic_category().message(error)));
}

bool is_line_end(char byte) { return byte == '\n' || byte == '\r'; }

/// Control characters that no text of a table holds.
bool is_foreign(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 && byte != '\t' && !is_line_end(byte) && byte != '\f';
}

/// What the first bytes of a file say about it if it can't be CSV; empty if they say nothing.
std::string_view kind_of_file(std::string_view head) {
    if (head.starts_with("SQLite format 3")) return "it is a database, such as a basin file, and not CSV";
    if (head.starts_with("PK\x03\x04"))
        return "it is a workbook or an archive, and not CSV: save the sheet as CSV";
    if (head.starts_with("\xFF\xFE") || head.starts_with("\xFE\xFF"))
        return "it is text in UTF-16: save it as CSV in UTF-8";
    return {};
}

}  // namespace

ByteSource bytes_of_file(const fs::path& file) {
    std::error_code unknown;  // a name that can't be looked up is refused when the file is opened
    if (fs::is_directory(file, unknown)) refuse_reading(file, EISDIR);
    // A function that is copied can't own the handle alone.
    const std::shared_ptr<std::FILE> handle{std::fopen(file.c_str(), "rb"), [](std::FILE* opened) {
                                                if (opened != nullptr) CloseFile{}(opened);
                                            }};
    if (!handle) refuse_reading(file, errno);
    return [handle, file](std::span<char> room) {
        const std::size_t count = std::fread(room.data(), 1, room.size(), handle.get());
        if (count == 0 && std::ferror(handle.get()) != 0) refuse_reading(file, errno);
        return count;
    };
}

ByteSource bytes_of_text(std::string_view text) {
    return [text](std::span<char> room) mutable {
        const std::size_t count = std::min(room.size(), text.size());
        std::copy_n(text.begin(), count, room.begin());
        text.remove_prefix(count);
        return count;
    };
}

CsvReader::CsvReader(ByteSource source, std::optional<char> separator)
    : source_(std::move(source)), separator_(separator) {}

/// Reads another block behind the bytes of the row, which move to the beginning of the buffer.
/// @return false at the end of the source
bool CsvReader::fill() {
    if (ended_) return false;
    if (row_ > 0) {
        std::memmove(buffer_.data(), buffer_.data() + row_, filled_ - row_);
        filled_ -= row_;
        row_ = 0;
    }
    if (filled_ > k_longest_row) {
        throw CsvError(row_line_,
                       "the row that begins here does not end within a million characters; a quotation mark "
                       "may be left open, or the file is not CSV");
    }
    if (buffer_.size() < filled_ + k_block) buffer_.resize(filled_ + k_block);
    const std::size_t count = source_(std::span{buffer_}.subspan(filled_));
    filled_ += count;
    ended_ = count == 0;
    return !ended_;
}

/// Whether the row, or what follows it, has a byte at this place.
bool CsvReader::has(std::size_t place) {
    while (row_ + place >= filled_) {
        if (!fill()) return false;
    }
    return true;
}

void CsvReader::skip_mark() {
    constexpr std::string_view k_mark = "\xEF\xBB\xBF";
    constexpr std::size_t k_head = 16;
    row_line_ = 1;
    static_cast<void>(has(k_head));
    const std::string_view head{buffer_.data(), std::min(filled_, k_head)};
    if (const std::string_view kind = kind_of_file(head); !kind.empty()) throw CsvError(1, std::string{kind});
    if (head.starts_with(k_mark)) row_ = k_mark.size();
}

/// Looks at the first row that has text.
void CsvReader::detect_separator() {
    std::array<bool, k_separators.size()> found{};
    bool quoted = false;
    bool any_text = false;
    for (std::size_t place = 0; has(place); ++place) {
        const char byte = at(place);
        if (byte == '"') quoted = !quoted;
        if (!quoted && is_line_end(byte)) {
            if (any_text) break;
            continue;
        }
        any_text = any_text || (byte != ' ' && byte != '\t');
        const auto* const separator = std::find(k_separators.begin(), k_separators.end(), byte);
        if (!quoted && separator != k_separators.end())
            found.at(static_cast<std::size_t>(separator - k_separators.begin())) = true;
    }
    const auto* const first = std::find(found.begin(), found.end(), true);
    separator_ =
        first == found.end() ? ',' : k_separators.at(static_cast<std::size_t>(first - found.begin()));
}

void CsvReader::refuse_byte(char byte) const {
    throw CsvError(line_, fmt::format("it holds the control character {:02X} (hexadecimal): the file is not "
                                      "text",
                                      static_cast<unsigned>(static_cast<unsigned char>(byte))));
}

/// Ends the line at its line end. @return the place behind it
std::size_t CsvReader::end_line(std::size_t place) {
    const bool carriage_return = at(place) == '\r';
    ++place;
    ++line_;
    return carriage_return && has(place) && at(place) == '\n' ? place + 1 : place;
}

/// Reads a cell without quotes. @return the place of the separator or line end behind it
std::size_t CsvReader::read_plain(std::size_t place) {
    const std::size_t begin = place;
    const char separator = *separator_;
    for (;;) {
        const char* const bytes = buffer_.data() + row_;
        const std::size_t end = filled_ - row_;
        while (place < end) {
            const char byte = bytes[place];
            if (byte == separator || is_line_end(byte)) {
                extents_.push_back({begin, place});
                return place;
            }
            if (is_foreign(byte)) refuse_byte(byte);
            ++place;
        }
        if (has(place)) continue;
        extents_.push_back({begin, place});
        return place;
    }
}

/// Reads a cell that begins with a quote, and removes its quotes in place. @return the place behind it
std::size_t CsvReader::read_quoted(std::size_t place) {
    const std::size_t begin = ++place;
    std::size_t end = begin;
    const std::size_t opened = line_;
    for (;; ++place) {
        if (!has(place)) throw CsvError(opened, "a quotation mark is opened here and never closed");
        char byte = at(place);
        if (byte == '"') {
            if (!has(place + 1) || at(place + 1) != '"') break;
            ++place;
        } else if (byte == '\n' || (byte == '\r' && !(has(place + 1) && at(place + 1) == '\n'))) {
            ++line_;
        } else if (is_foreign(byte)) {
            refuse_byte(byte);
        }
        byte = at(place);
        buffer_[row_ + end++] = byte;
    }
    extents_.push_back({begin, end});
    ++place;
    if (has(place) && at(place) != *separator_ && !is_line_end(at(place)))
        throw CsvError(line_, "text stands behind the closing quotation mark of a cell");
    return place;
}

void CsvReader::read_row() {
    extents_.clear();
    std::size_t place = 0;
    for (;;) {
        place = has(place) && at(place) == '"' ? read_quoted(place) : read_plain(place);
        if (!has(place)) break;
        if (is_line_end(at(place))) {
            place = end_line(place);
            break;
        }
        ++place;  // behind the separator
    }
    row_length_ = place;
    cells_.clear();
    const std::string_view row{buffer_.data() + row_, place};
    for (const Extent& cell : extents_) cells_.push_back(row.substr(cell.begin, cell.end - cell.begin));
}

bool CsvReader::next() {
    if (!begun_) {
        begun_ = true;
        skip_mark();
        if (!separator_) detect_separator();
    }
    const auto is_blank = [](std::string_view cell) {
        return cell.find_first_not_of(" \t\f") == std::string_view::npos;
    };
    do {
        row_ += row_length_;
        row_length_ = 0;
        row_line_ = line_;
        if (!has(0)) {
            cells_.clear();
            return false;
        }
        read_row();
    } while (std::all_of(cells_.begin(), cells_.end(), is_blank));
    return true;
}

}  // namespace nivora
