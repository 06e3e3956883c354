// Salvage of a basin with damaged pages: what it copies equals the
// sound basin, and what is missing is listed.
#include "tests/batch/run_basin.h"
#include "tests/support/printed_seed.h"

#include <gmock/gmock.h>

#include <map>
#include <random>
#include <set>

namespace nivora {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;

/// The rows of a table as texts that show every bit of their values.
using Rows = std::multiset<std::string>;

class SalvagedRows : public YearBasinTest {
protected:
    SalvagedRows() {
        EXPECT_EQ(climate().status, 0);
        sound_bytes_ = basin.bytes();
        sound_ = tables_of(file());
        for (const auto& [table, rows] : sound_) {
            EXPECT_EQ(std::set<std::string>(rows.begin(), rows.end()).size(), rows.size())
                << "two rows of " << table << " are the same, so that a doubled one would not show";
        }
    }

    static Rows rows_of(SQLite::Database& sql, const std::string& table) {
        std::string columns;
        SQLite::Statement fields{sql, "SELECT name FROM pragma_table_info(?)"};
        fields.bind(1, table);
        while (fields.executeStep()) {
            columns += columns.empty() ? "" : " || '|' || ";
            columns += "quote(\"" + fields.getColumn(0).getString() + "\")";
        }
        SQLite::Statement query{sql, "SELECT " + columns + " FROM \"" + table + "\" NOT INDEXED"};
        Rows rows;
        while (query.executeStep()) rows.insert(query.getColumn(0).getString());
        return rows;
    }

    static std::map<std::string, Rows> tables_of(const std::string& path) {
        SQLite::Database sql{path, SQLite::OPEN_READONLY};
        SQLite::Statement names{sql, "SELECT name FROM sqlite_schema WHERE type = 'table'"};
        std::map<std::string, Rows> tables;
        while (names.executeStep()) {
            const std::string name = names.getColumn(0).getString();
            tables[name] = rows_of(sql, name);
        }
        return tables;
    }

    /// The output about a table: its line and the indented lines after it.
    static std::string told_of(const std::string& out, const std::string& table) {
        std::string told;
        bool within = false;
        for (const std::string& line : lines_of(out)) {
            within = line.rfind(table + ": ", 0) == 0 || (within && line.rfind("    ", 0) == 0);
            if (within) told += line + "\n";
        }
        return told;
    }

    void expect_sound_rows(const std::string& table, const Rows& rows, const std::string& out) const {
        const std::string told = told_of(out, table);
        const bool listed = told.find("not copied: ") != std::string::npos;
        const Rows& sound = sound_.at(table);
        for (const std::string& row : rows) {
            // A lost description is replaced by that of a new basin.
            const bool replaced = table == k_basin_description && listed && rows.size() == 1;
            EXPECT_TRUE(sound.count(row) == 1 || replaced) << table << " has the row " << row;
            EXPECT_EQ(rows.count(row), 1U) << table << " has twice the row " << row;
        }
        if (rows.size() < sound.size()) {
            EXPECT_TRUE(listed) << table << " has " << rows.size() << " of " << sound.size()
                                << " rows: " << out;
        }
        if (!listed) {
            EXPECT_THAT(told, HasSubstr(table + ": " + std::to_string(sound.size()) + " rows\n"));
        }
    }

    /// Salvages a damaged file and compares every row with the sound one.
    /// @return whether there was anything to compare
    bool expect_salvaged(const std::string& damaged) const {
        basin.folder().write("basin.mdb", damaged);
        const BatchResult result = salvage();
        EXPECT_TRUE(basin.bytes() == damaged) << "the damaged file was changed";
        if (!fs::exists(salvaged())) {
            EXPECT_EQ(result.status, 1);
            EXPECT_THAT(result.err, HasSubstr("Nothing was salvaged: "));
            return false;
        }
        const auto tables = tables_of(salvaged());
        bool whole = true;
        for (const auto& [table, rows] : sound_) {
            const auto found = tables.find(table);
            const Rows none;
            expect_sound_rows(table, found == tables.end() ? none : found->second, result.out);
            whole = whole && found != tables.end() && found->second == rows;
        }
        for (const auto& [table, rows] : tables) EXPECT_TRUE(sound_.count(table) == 1) << table;
        EXPECT_EQ(result.status, whole ? 0 : 1) << result.out;
        return true;
    }

    std::string sound_bytes_;
    std::map<std::string, Rows> sound_;
};

/// A random page that is of none of the four types of a table's tree.
std::string random_page(std::mt19937& random) {
    std::string page(k_page_size, '\0');
    for (char& byte : page) byte = static_cast<char>(random());
    page.front() = '\x7f';
    return page;
}

TEST_F(SalvagedRows, WhicheverPageIsLostTheOthersAreCopiedBitForBitAndTheGapIsListed) {
    std::mt19937 random{printed_seed()};
    std::size_t compared = 0;
    const std::size_t pages = sound_bytes_.size() / k_page_size;
    for (std::size_t page = 0; page < pages; ++page) {
        const std::string lost = random() % 2 == 0 ? std::string(k_page_size, '\0') : random_page(random);
        SCOPED_TRACE("page " + std::to_string(page + 1) + (lost.front() == '\0' ? ", zeros" : ", chance"));
        std::string damaged = sound_bytes_;
        damaged.replace(page * k_page_size, k_page_size, lost);
        if (expect_salvaged(damaged)) ++compared;
        ASSERT_FALSE(HasFailure());
    }
    EXPECT_GE(compared, pages - 1) << "only the first page takes all with it";
}

TEST_F(SalvagedRows, ATruncatedFileKeepsTheRowsOfThePagesThatItHas) {
    std::mt19937 random{printed_seed()};
    for (int i = 0; i < 20; ++i) {
        const std::size_t size = k_page_size + random() % (sound_bytes_.size() - k_page_size);
        SCOPED_TRACE("cut to " + std::to_string(size));
        EXPECT_TRUE(expect_salvaged(sound_bytes_.substr(0, size)));
        ASSERT_FALSE(HasFailure());
    }
}

}  // namespace
}  // namespace nivora
