#include "store/work_file_state.h"

#include "base/durable_file.h"
#include "store/table_io.h"

#include <SQLiteCpp/Statement.h>
#include <sqlite3.h>

#include <array>
#include <bit>
#include <memory>

namespace nivora {
namespace {

constexpr sqlite3_int64 k_counter_at = 24;  // in the header of the file

std::uint64_t mixed(std::uint64_t number, std::uint64_t bits) {
    number = (number ^ bits) * 0x9E3779B97F4A7C15ULL;
    return (number ^ (number >> 29U)) * 0xBF58476D1CE4E5B9ULL;
}

std::uint64_t mixed(std::uint64_t number, const SQLite::Column& cell) {
    if (cell.isInteger()) return mixed(number, static_cast<std::uint64_t>(cell.getInt64()));
    if (cell.isFloat()) return mixed(number, std::bit_cast<std::uint64_t>(cell.getDouble()));
    if (cell.isNull()) return mixed(number, 1);
    for (const char letter : cell.getString()) number = mixed(number, static_cast<unsigned char>(letter));
    return mixed(number, 2);
}

}  // namespace

std::optional<std::uint32_t> change_counter(const std::filesystem::path& file) {
    // Through the engine: a handle of the system, when closed, would drop the locks of this whole process.
    sqlite3* raw = nullptr;
    const int opened = sqlite3_open_v2(path_text(std::filesystem::absolute(file)).c_str(), &raw,
                                       SQLITE_OPEN_READONLY, nullptr);
    const std::unique_ptr<sqlite3, decltype(&sqlite3_close)> connection{raw, &sqlite3_close};
    if (opened != SQLITE_OK) return std::nullopt;
    sqlite3_file* pages = nullptr;
    if (sqlite3_file_control(raw, "main", SQLITE_FCNTL_FILE_POINTER, static_cast<void*>(&pages)) !=
            SQLITE_OK ||
        pages == nullptr || pages->pMethods == nullptr) {
        return std::nullopt;
    }
    std::array<unsigned char, 4> bytes{};
    if (pages->pMethods->xRead(pages, bytes.data(), static_cast<int>(bytes.size()), k_counter_at) !=
        SQLITE_OK)
        return std::nullopt;
    std::uint32_t counter = 0;
    for (const unsigned char byte : bytes) counter = counter << 8U | byte;
    return counter;
}

std::map<std::string, TableContent> table_contents(BasinDatabase& database) {
    std::map<std::string, TableContent> contents;
    for (const std::string& table : database.table_names()) {
        TableContent& content = contents[table];
        guarded([&] {
            SQLite::Statement rows{database.sql(), "SELECT * FROM " + quoted_name(table) + " ORDER BY rowid"};
            while (rows.executeStep()) {
                ++content.rows;
                for (int column = 0; column < rows.getColumnCount(); ++column)
                    content.digest = mixed(content.digest, rows.getColumn(column));
            }
        });
    }
    return contents;
}

}  // namespace nivora
