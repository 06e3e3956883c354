// A blank basin file in a folder of its own, and helpers for errors of the store.
#pragma once

#include "store/database.h"
#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>

#include <optional>
#include <ostream>
#include <string>
#include <vector>

namespace nivora {

/// Prints a fault by name when a test fails.
inline void PrintTo(StoreFault fault, std::ostream* out) {
    switch (fault) {
        case StoreFault::Missing: *out << "Missing"; return;
        case StoreFault::Exists: *out << "Exists"; return;
        case StoreFault::NotADatabase: *out << "NotADatabase"; return;
        case StoreFault::Foreign: *out << "Foreign"; return;
        case StoreFault::Newer: *out << "Newer"; return;
        case StoreFault::Damaged: *out << "Damaged"; return;
        case StoreFault::Busy: *out << "Busy"; return;
        case StoreFault::ReadOnly: *out << "ReadOnly"; return;
        case StoreFault::Full: *out << "Full"; return;
        case StoreFault::Value: *out << "Value"; return;
        case StoreFault::Statement: *out << "Statement"; return;
    }
    *out << "no fault of the store";
}

/// The kind of the StoreError with which a piece of work ends; nothing if it ends without one.
template <typename Work>
[[nodiscard]] std::optional<StoreFault> refused(Work&& work) {
    try {
        work();
    } catch (const StoreError& error) {
        return error.fault();
    }
    return std::nullopt;
}

/// The text of that error; empty if there is none.
template <typename Work>
[[nodiscard]] std::string refusal_text(Work&& work) {
    try {
        work();
    } catch (const StoreError& error) {
        return error.what();
    }
    return {};
}

/// A basin file with the content of the template, removed when the test ends.
class BasinFile {
public:
    BasinFile() { BasinDatabase::create_template(path_); }

    [[nodiscard]] const TemporaryFolder& folder() const { return folder_; }
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

    [[nodiscard]] BasinDatabase open(Access access = Access::ReadWrite) const { return {path_, access}; }

    /// Runs statements without the store, as another program would.
    void change(const std::string& statements) const {
        SQLite::Database raw{path_.string(), SQLite::OPEN_READWRITE};
        raw.exec(statements);
    }

    /// The first column of the rows of a query, as texts, read without the store; "Null" for a missing value.
    [[nodiscard]] std::vector<std::string> column(const std::string& query) const {
        SQLite::Database raw{path_.string(), SQLite::OPEN_READONLY};
        SQLite::Statement rows{raw, query};
        std::vector<std::string> texts;
        while (rows.executeStep()) {
            texts.push_back(rows.isColumnNull(0) ? "Null" : rows.getColumn(0).getString());
        }
        return texts;
    }

private:
    TemporaryFolder folder_;
    std::filesystem::path path_ = folder_ / "basin.mdb";
};

}  // namespace nivora
