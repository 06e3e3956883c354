// Rows of any table, one at a time and by row number.
#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;

const TableSchema& work_table() {
    static const TableSchema table{
        "Work", {{"Number", FieldType::Integer}, {"Size", FieldType::Single}, {"Note", FieldType::Text, 20}}};
    return table;
}

struct WorkRow {
    std::int16_t number = 0;
    float size = k_missing;
    std::optional<std::string> note = {};

    template <typename Self, typename Visitor>
    static void visit(Self& row, Visitor&& field) {
        field(row.number), field(row.size), field(row.note);
    }
};

/// Three rows, of which the second was deleted.
class TableRows : public testing::Test {
protected:
    TableRows() {
        database_.create_table(work_table());
        database_.execute("INSERT INTO Work VALUES (7, 1.5, 'a'), (8, 2.5, 'b'), (3, NULL, NULL)");
        delete_row(database_, "work", 2);
    }

    [[nodiscard]] std::vector<std::string> stored(const std::string& expression) const {
        return file_.column("SELECT " + expression + " FROM Work ORDER BY rowid");
    }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
};

TEST_F(TableRows, AreReadInStoredOrderWithTheirRowNumbers) {
    TableReader reader{database_, work_table()};
    std::int16_t number = 0;
    ASSERT_TRUE(reader.next());
    reader.read(0, number);
    EXPECT_EQ(number, 7);
    EXPECT_EQ(reader.row_number(), 1);
    EXPECT_FALSE(reader.is_null(1));
    ASSERT_TRUE(reader.next());
    reader.read(0, number);
    EXPECT_EQ(number, 3);
    EXPECT_EQ(reader.row_number(), 3);
    EXPECT_TRUE(reader.is_null(1));
    float size = 0.0F;
    reader.read(1, size);
    EXPECT_TRUE(std::isnan(size));
    EXPECT_FALSE(reader.next());
}

TEST_F(TableRows, AValueThatCannotBeReadIsRefusedWhenItIsAskedFor) {
    database_.execute("UPDATE Work SET Size = 'much' WHERE rowid = 3");
    TableReader reader{database_, work_table()};
    ASSERT_TRUE(reader.next());
    ASSERT_TRUE(reader.next());
    std::int16_t number = 0;
    reader.read(0, number);
    EXPECT_EQ(number, 3);
    float size = 0.0F;
    EXPECT_EQ(refused([&] { reader.read(1, size); }), StoreFault::Value);
}

TEST_F(TableRows, AReaderOrWriterOfAMissingTableOrFieldIsRefused) {
    const TableSchema other{"Work", {{"Colour", FieldType::Text}}};
    EXPECT_EQ(refused([&] {
                  const TableReader reader{database_, parameter_table("none")};
              }),
              StoreFault::Missing);
    EXPECT_EQ(refused([&] { const TableReader reader{database_, other}; }), StoreFault::Statement);
    EXPECT_EQ(refused([&] {
                  const TableWriter writer{database_, parameter_table("none")};
              }),
              StoreFault::Missing);
    EXPECT_EQ(refused([&] { const TableWriter writer{database_, other}; }), StoreFault::Statement);
}

TEST_F(TableRows, AreAppendedAndKeepFieldsThatAreNotSetAgain) {
    TableWriter writer{database_, work_table()};
    writer.set(0, std::int16_t{1});
    writer.set(1, k_missing);
    writer.set(2, std::string{"x"});
    writer.add();
    writer.set(0, std::int16_t{2});
    writer.add();
    EXPECT_THAT(stored("Number"), ElementsAre("7", "3", "1", "2"));
    EXPECT_THAT(stored("Size"), ElementsAre("1.5", "Null", "Null", "Null"));
    EXPECT_THAT(stored("Note"), ElementsAre("a", "Null", "x", "x"));
    EXPECT_EQ(refused([&] { writer.set(1, std::numeric_limits<float>::infinity()); }), StoreFault::Value);
}

TEST_F(TableRows, AreReplacedAndDeletedByRowNumber) {
    auto rows = read_stored_rows<WorkRow>(database_, work_table());
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_EQ(rows[1].number, 3);
    rows[1].row = {.number = 4, .size = 0.25F, .note = "c"};
    replace_row(database_, work_table(), rows[1]);
    replace_row(database_, work_table(), Stored<WorkRow>{77, {}});  // no such row
    EXPECT_THAT(stored("Number"), ElementsAre("7", "4"));
    EXPECT_THAT(stored("Size"), ElementsAre("1.5", "0.25"));
    EXPECT_THAT(stored("Note"), ElementsAre("a", "c"));
    delete_row(database_, "Work", 1);
    delete_row(database_, "Work", 77);  // no such row
    EXPECT_THAT(stored("Number"), ElementsAre("4"));
}

TEST_F(TableRows, OfAMissingTableCannotBeReplacedOrDeleted) {
    database_.drop_table("Work");
    EXPECT_EQ(refused([&] {
                  replace_row(database_, work_table(), Stored<WorkRow>{1, {}});
              }),
              StoreFault::Missing);
    EXPECT_EQ(refused([&] { delete_row(database_, "Work", 1); }), StoreFault::Missing);
}

TEST_F(TableRows, ANumberIsReadAsItsFieldHoldsIt) {
    SQLite::Statement row{database_.sql(), "SELECT 0.1, 40000, NULL"};
    ASSERT_TRUE(row.executeStep());
    EXPECT_EQ(read_number(row, 0, FieldType::Single), static_cast<double>(0.1F));
    EXPECT_EQ(read_number(row, 0, FieldType::Double), 0.1);
    EXPECT_EQ(refused([&] { static_cast<void>(read_number(row, 0, FieldType::Integer)); }),
              StoreFault::Value);
    EXPECT_EQ(refused([&] { static_cast<void>(read_number(row, 1, FieldType::Integer)); }),
              StoreFault::Value);
    EXPECT_EQ(read_number(row, 1, FieldType::Single), 40000.0);
    for (const FieldType type : {FieldType::Integer, FieldType::Single, FieldType::Double})
        EXPECT_TRUE(std::isnan(read_number(row, 2, type)));
}

TEST_F(TableRows, MoveWithTheirTableToAnotherName) {
    database_.rename_table("Work", "Other");
    EXPECT_FALSE(database_.has_table("Work"));
    EXPECT_THAT(file_.column("SELECT Number FROM Other ORDER BY rowid"), ElementsAre("7", "3"));
    EXPECT_EQ(refused([&] { database_.rename_table("Work", "Again"); }), StoreFault::Statement);
    EXPECT_EQ(refused([&] { database_.rename_table("Other", k_physical_data); }), StoreFault::Statement);
}

}  // namespace
}  // namespace nivora
