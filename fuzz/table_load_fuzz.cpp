// Tables from CSV: any bytes are either rows or refused, the same however they arrive.

#include "prep/csv_reader.h"

#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

using namespace nivora;

void require(bool holds, const char* what) {
    if (holds) return;
    std::fprintf(stderr, "does not hold: %s\n", what);
    std::abort();
}

/// All rows as one text, with a refusal at its end.
std::string rows_of(std::string_view text, std::size_t block) {
    const ByteSource whole = bytes_of_text(text);
    CsvReader reader{[&](std::span<char> room) { return whole(room.first(std::min(block, room.size()))); }};
    std::string rows;
    std::size_t last = 0;
    try {
        while (reader.next()) {
            require(reader.line() > last, "each row begins in a later line");
            require(!reader.cells().empty(), "a row has cells");
            last = reader.line();
            rows += std::to_string(last);
            for (const std::string_view cell : reader.cells()) (rows += '\x1F') += cell;
            rows += '\x1E';
        }
    } catch (const CsvError& error) {
        require(error.line() >= 1, "lines count from 1");
        rows += std::to_string(error.line()) + error.what();
    }
    return rows;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    constexpr std::size_t k_large = 1U << 20U;
    const std::string text(reinterpret_cast<const char*>(data), size);
    require(rows_of(text, 1) == rows_of(text, k_large), "the size of a block does not matter");
    return 0;
}
