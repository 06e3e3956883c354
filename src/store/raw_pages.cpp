#include "store/raw_pages.h"

#include "store/database.h"

#include <array>
#include <fstream>
#include <vector>

namespace nivora {
namespace {

namespace fs = std::filesystem;

constexpr std::size_t k_header_size = 100;
constexpr std::string_view k_magic{"SQLite format 3\0", 16};
constexpr std::uint32_t k_usual_page_size = 4096;
constexpr unsigned char k_interior_page = 0x05;
constexpr unsigned char k_leaf_page = 0x0D;

using Bytes = std::vector<unsigned char>;

/// A big-endian number of some bytes; 0 beyond the end.
std::uint32_t number_at(const Bytes& bytes, std::size_t at, std::size_t size) {
    if (at + size > bytes.size()) return 0;
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) value = value << 8U | bytes[at + i];
    return value;
}

void put_number(Bytes& bytes, std::size_t at, std::uint32_t value) {
    for (std::size_t i = 0; i < 4; ++i) bytes[at + i] = static_cast<unsigned char>(value >> (24 - 8 * i));
}

/// Reads a number of one to nine bytes and moves past it; nothing if it goes beyond the page.
std::optional<std::uint64_t> read_varint(const Bytes& bytes, std::size_t& at) {
    std::uint64_t value = 0;
    for (int i = 0; i < 9; ++i) {
        if (at >= bytes.size()) return std::nullopt;
        const unsigned char byte = bytes[at++];
        if (i == 8) return value << 8U | byte;
        value = value << 7U | (byte & 0x7FU);
        if ((byte & 0x80U) == 0) return value;
    }
    return value;
}

std::uint32_t page_size_of(const Bytes& header) {
    const std::uint32_t size = number_at(header, 16, 2) == 1 ? 65536 : number_at(header, 16, 2);
    const bool valid = size >= 512 && (size & (size - 1)) == 0;
    return valid ? size : k_usual_page_size;
}

Bytes read_bytes(std::istream& file, std::uint64_t at, std::size_t size) {
    Bytes bytes(size);
    file.clear();
    file.seekg(static_cast<std::streamoff>(at));
    file.read(reinterpret_cast<char*>(bytes.data()), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

/// Writes the header values that all basin files share, and those that follow from the file's size.
void repair(Bytes& header, std::uint32_t page_size, std::uint64_t file_size) {
    std::copy(k_magic.begin(), k_magic.end(), header.begin());
    const std::uint32_t stored_size = page_size == 65536 ? 1 : page_size;
    header[16] = static_cast<unsigned char>(stored_size >> 8U);
    header[17] = static_cast<unsigned char>(stored_size);
    constexpr std::array<unsigned char, 6> k_fixed{1, 1, 0, 64, 32, 32};  // versions, reserve, fractions
    std::copy(k_fixed.begin(), k_fixed.end(), header.begin() + 18);
    put_number(header, 28, static_cast<std::uint32_t>(file_size / page_size));
    put_number(header, 32, 0);  // free pages: the first, and their number
    put_number(header, 36, 0);
    put_number(header, 44, 4);  // schema format
    put_number(header, 52, 0);  // no automatic vacuum
    put_number(header, 56, 1);  // UTF-8
    put_number(header, 60, static_cast<std::uint32_t>(k_schema_version));
    put_number(header, 64, 0);
    put_number(header, 68, static_cast<std::uint32_t>(k_application_id));
    std::copy(header.begin() + 24, header.begin() + 28,
              header.begin() + 92);  // marks the size above as valid
}

}  // namespace

bool repair_header(const fs::path& copy) {
    std::fstream file{copy, std::ios::binary | std::ios::in | std::ios::out};
    Bytes header = read_bytes(file, 0, k_header_size);
    if (header.size() < k_header_size) return false;
    const bool engine =
        std::equal(k_magic.begin(), k_magic.end(), header.begin(),
                   [](char a, unsigned char b) { return static_cast<unsigned char>(a) == b; });
    const bool basin = number_at(header, 68, 4) == static_cast<std::uint32_t>(k_application_id);
    if (!engine && !basin) return false;
    const std::uint32_t page_size = page_size_of(header);
    const std::uint64_t whole_pages = fs::file_size(copy) / page_size * page_size;
    const std::uint64_t size = (fs::file_size(copy) + page_size - 1) / page_size * page_size;
    repair(header, page_size, size);
    file.clear();
    file.seekp(0);
    file.write(reinterpret_cast<const char*>(header.data()), static_cast<std::streamsize>(header.size()));
    file.close();
    // A row whose beginning is in the file and whose end was cut off would read as zeros.
    if (whole_pages > 0) fs::resize_file(copy, whole_pages);
    fs::resize_file(copy, size);
    return true;
}

std::optional<int> fields_of_first_row(const fs::path& path, std::int64_t page) {
    std::ifstream file{path, std::ios::binary};
    const std::uint32_t page_size = page_size_of(read_bytes(file, 0, k_header_size));
    constexpr int k_deepest = 20;
    for (int depth = 0; depth < k_deepest && page >= 1; ++depth) {
        const Bytes bytes = read_bytes(file, static_cast<std::uint64_t>(page - 1) * page_size, page_size);
        if (bytes.size() < page_size || number_at(bytes, 3, 2) == 0) return std::nullopt;
        const bool interior = bytes[0] == k_interior_page;
        if (!interior && bytes[0] != k_leaf_page) return std::nullopt;
        std::size_t cell = number_at(bytes, interior ? 12 : 8, 2);
        if (interior) {
            page = number_at(bytes, cell, 4);
            continue;
        }
        if (!read_varint(bytes, cell) || !read_varint(bytes, cell)) return std::nullopt;  // size, row number
        const std::size_t start = cell;
        const auto header_size = read_varint(bytes, cell);
        if (!header_size) return std::nullopt;
        int fields = 0;
        while (cell < start + *header_size && read_varint(bytes, cell)) ++fields;
        return fields;
    }
    return std::nullopt;
}

}  // namespace nivora
