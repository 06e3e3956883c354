// Damage like that of a failing disk: wrong bytes in a database file.
#pragma once

#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <gtest/gtest.h>

#include <cstddef>
#include <string>

namespace nivora {

inline constexpr std::size_t k_page_size = 4096;

/// Overwrites bytes of a file, which keeps its size.
inline void put_bytes(const std::filesystem::path& file, std::size_t at, const std::string& bytes) {
    std::fstream stream{file, std::ios::binary | std::ios::in | std::ios::out};
    stream.seekp(static_cast<std::streamoff>(at));
    stream.write(bytes.data(), static_cast<std::streamsize>(bytes.size()));
    if (!stream.flush()) throw std::runtime_error("can't write " + file.string());
}

/// The page on which a table or an index begins, from 1.
[[nodiscard]] inline std::size_t first_page_of(const std::filesystem::path& file, const std::string& name) {
    SQLite::Database sql{file.string(), SQLite::OPEN_READONLY};
    SQLite::Statement query{sql, "SELECT rootpage FROM sqlite_schema WHERE name = ?"};
    query.bind(1, name);
    if (!query.executeStep()) throw std::runtime_error("there is no '" + name + "' in " + file.string());
    return static_cast<std::size_t>(query.getColumn(0).getInt64());
}

/// Puts bytes at the beginning of the first page of a table or an index.
inline void damage_first_page(const std::filesystem::path& file, const std::string& name,
                              const std::string& bytes) {
    put_bytes(file, (first_page_of(file, name) - 1) * k_page_size, bytes);
}

/// Empties an index. The trees stay well-formed, so only a comparison with the rows finds it.
inline void empty_index(const std::filesystem::path& file, const std::string& name) {
    damage_first_page(file, name, std::string("\x0a\x00\x00\x00\x00\x10\x00\x00", 8));
}

/// Renames a field in the declaration of its table.
inline void misname_field(const std::filesystem::path& file, const std::string& declared,
                          const std::string& other) {
    const std::size_t at = file_bytes(file).find(declared);
    ASSERT_NE(at, std::string::npos) << declared;
    put_bytes(file, at, other);
}

}  // namespace nivora
