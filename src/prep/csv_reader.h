// The rows of a CSV file, one after another, whatever the size of the file.
#pragma once

#include <array>
#include <cstddef>
#include <filesystem>
#include <functional>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// Why a file can't be read as CSV: the line, from 1, and the reason as a clause without a full stop.
class CsvError : public std::runtime_error {
public:
    CsvError(std::size_t line, const std::string& reason) : std::runtime_error(reason), line_(line) {}

    [[nodiscard]] std::size_t line() const { return line_; }

private:
    std::size_t line_;
};

/// Puts the next bytes of a file into the room that it is given, and returns how many; 0 at the end.
using ByteSource = std::function<std::size_t(std::span<char> room)>;

/// The bytes of a file that is read once from its beginning to its end: a regular file, a pipe or a device.
/// @throws FileError if it can't be opened, and from the source if it can't be read
[[nodiscard]] ByteSource bytes_of_file(const std::filesystem::path& file);

/// The bytes of a text, which outlives the source.
[[nodiscard]] ByteSource bytes_of_text(std::string_view text);

/// The separators that a file may have.
inline constexpr std::array k_separators{'\t', ';', ','};

/// A row longer than this, in bytes, is no row of a table.
inline constexpr std::size_t k_longest_row = 1U << 20U;

/// Reads rows of cells. A byte-order mark is passed over. LF, CR LF and CR end a line. A cell that begins
/// with a double quote ends at the next single one; doubled ones within stand for one each, and it may hold
/// separators and line ends. Lines without any text are passed over.
///
/// The memory in use does not grow with the file: one row, at most k_longest_row bytes, and a block.
class CsvReader {
public:
    /// @param separator nothing: a tab, else a semicolon, else a comma, the first of these that the first row
    ///                  has outside quotes
    explicit CsvReader(ByteSource source, std::optional<char> separator = {});

    /// Goes to the next row, at first to the first one; false after the last.
    /// @throws CsvError if what follows can't be text of a table; FileError from the source
    bool next();

    /// The cells of the row, valid until the next row is read.
    [[nodiscard]] std::span<const std::string_view> cells() const { return cells_; }
    /// Where the row begins: its line, from 1.
    [[nodiscard]] std::size_t line() const { return row_line_; }
    /// Known after the first row.
    [[nodiscard]] char separator() const { return separator_.value_or(','); }

private:
    /// A cell by the places of its first byte and its end, counted from the beginning of the row.
    struct Extent {
        std::size_t begin = 0;
        std::size_t end = 0;
    };

    bool fill();
    bool has(std::size_t place);
    [[nodiscard]] char at(std::size_t place) const { return buffer_[row_ + place]; }
    void skip_mark();
    void detect_separator();
    void read_row();
    std::size_t read_plain(std::size_t place);
    std::size_t read_quoted(std::size_t place);
    std::size_t end_line(std::size_t place);
    [[noreturn]] void refuse_byte(char byte) const;

    ByteSource source_;
    std::optional<char> separator_;
    std::vector<char> buffer_;
    std::size_t row_ = 0;     ///< where the row begins in the buffer
    std::size_t filled_ = 0;  ///< bytes in the buffer
    bool ended_ = false;      ///< the source has no more bytes
    bool begun_ = false;
    std::size_t row_length_ = 0;  ///< with its line end
    std::size_t row_line_ = 0;
    std::size_t line_ = 1;  ///< of the byte that is read next
    std::vector<Extent> extents_;
    std::vector<std::string_view> cells_;
};

}  // namespace nivora
