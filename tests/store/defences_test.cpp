#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <SQLiteCpp/Exception.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(Defences, TriggersOfAFileDoNotFire) {
    const BasinFile file;
    file.change(
        "CREATE TRIGGER t AFTER UPDATE ON BasinDescription BEGIN"
        " INSERT INTO ZoneDescription (ZoneId) VALUES ('planted'); END");
    BasinDatabase database = file.open();
    database.execute("UPDATE BasinDescription SET BasinName = 'Ellervane'");
    EXPECT_TRUE(read_table<Zone>(database, template_table(k_zone_description)).empty());
    // Outside the store it fires.
    file.change("UPDATE BasinDescription SET BasinName = 'Elsewhere'");
    EXPECT_THAT(file.column("SELECT ZoneId FROM ZoneDescription"), ElementsAre("planted"));
}

TEST(Defences, ViewsOfAFileAreNotTablesAndCannotBeRead) {
    const BasinFile file;
    file.change("CREATE VIEW Planted AS SELECT * FROM BasinDescription");
    BasinDatabase database = file.open();
    EXPECT_FALSE(database.has_table("Planted"));
    EXPECT_EQ(database.table_names().size(), 5U);
    EXPECT_NE(refused([&] { database.execute("SELECT BasinName FROM Planted"); }), std::nullopt);
    EXPECT_NE(refused([&] { static_cast<void>(database.table_fields("Planted")); }), std::nullopt);
    EXPECT_NE(refused([&] { clear_table(database, "Planted"); }), std::nullopt);
}

TEST(Defences, AViewInsteadOfATableIsRefused) {
    const BasinFile file;
    file.change("DROP TABLE ZoneDescription; CREATE VIEW ZoneDescription AS SELECT * FROM SimulationIndex");
    BasinDatabase database = file.open();
    EXPECT_NE(
        refused([&] { static_cast<void>(read_table<Zone>(database, template_table(k_zone_description))); }),
        std::nullopt);
}

TEST(Defences, NoOtherFileCanBeAttached) {
    const BasinFile file;
    const BasinFile other;
    BasinDatabase database = file.open();
    for (const std::string& name : {other.path().string(), std::string{":memory:"}}) {
        EXPECT_THAT(refusal_text([&] { database.execute("ATTACH '" + name + "' AS other"); }),
                    HasSubstr("too many attached databases"))
            << name;
    }
}

TEST(Defences, TheSchemaCannotBeWritten) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_NE(refused([&] { database.execute("PRAGMA writable_schema = 1; DELETE FROM sqlite_schema"); }),
              std::nullopt);
    EXPECT_EQ(database.table_names().size(), 5U);
}

TEST(Defences, AnUnknownFieldNameIsNotReadAsText) {
    const BasinFile file;
    BasinDatabase database = file.open();
    EXPECT_EQ(refused([&] { database.execute("SELECT \"NoField\" FROM BasinDescription"); }),
              StoreFault::Statement);
}

/// The value of an SQL expression as text; "Null" if it is missing.
std::string value_of(BasinDatabase& database, const std::string& expression) {
    return guarded([&]() -> std::string {
        SQLite::Statement query{database.sql(), "SELECT " + expression};
        query.executeStep();
        return query.isColumnNull(0) ? "Null" : query.getColumn(0).getString();
    });
}

double number_of(BasinDatabase& database, const std::string& expression) {
    return guarded([&] { return database.sql().execAndGet("SELECT " + expression).getDouble(); });
}

TEST(SqlSingle, RoundsTo32Bits) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_EQ(number_of(database, "single(0.1)"), static_cast<double>(0.1F));
    EXPECT_EQ(number_of(database, "single(16777217)"), 16777216.0);
    EXPECT_EQ(number_of(database, "SINGLE(-2.5)"), -2.5);
    EXPECT_EQ(number_of(database, "single(1e-50)"), 0.0);
    EXPECT_EQ(number_of(database, "single(3.4028234663852886e38)"), 3.4028234663852886e38);
}

TEST(SqlSingle, OfNullIsNull) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_EQ(value_of(database, "single(Null)"), "Null");
}

TEST(SqlSingle, BeyondTheLargestSingleIsRefused) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_THAT(refusal_text([&] { number_of(database, "single(1e39)"); }), HasSubstr("Overflow"));
    EXPECT_THAT(refusal_text([&] { number_of(database, "single(-1e39)"); }), HasSubstr("Overflow"));
    EXPECT_THAT(refusal_text([&] { number_of(database, "single(9e999)"); }), HasSubstr("Overflow"));
}

TEST(SqlMonth, OfADayCount) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_EQ(value_of(database, "month(0)"), "12");     // 1899-12-30
    EXPECT_EQ(value_of(database, "month(2)"), "1");      // 1900-01-01
    EXPECT_EQ(value_of(database, "month(36526)"), "1");  // 2000-01-01
    EXPECT_EQ(value_of(database, "month(36585)"), "2");  // 2000-02-29
    EXPECT_EQ(value_of(database, "month(36585.9)"), "2");
    EXPECT_EQ(value_of(database, "month(36586)"), "3");
    EXPECT_EQ(value_of(database, "Month(146463)"), "12");  // 2300-12-31
}

TEST(SqlMonth, OfNullIsNull) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    EXPECT_EQ(value_of(database, "month(Null)"), "Null");
}

TEST(SqlMonth, OfANumberThatIsNotADateIsRefused) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    for (const char* date : {"1e300", "-1e300", "9e999", "-9e999", "1e9", "-1e9"}) {
        EXPECT_THAT(refusal_text([&] { number_of(database, std::string{"month("} + date + ")"); }),
                    HasSubstr("Overflow"))
            << date;
    }
}

StoreFault fault_for(int code) { return store_error(SQLite::Exception{"text", code}).fault(); }

TEST(StoreError, TranslatesTheCodesOfTheDatabaseEngine) {
    EXPECT_EQ(fault_for(SQLITE_BUSY), StoreFault::Busy);
    EXPECT_EQ(fault_for(SQLITE_LOCKED), StoreFault::Busy);
    EXPECT_EQ(fault_for(SQLITE_READONLY), StoreFault::ReadOnly);
    EXPECT_EQ(fault_for(SQLITE_CANTOPEN), StoreFault::ReadOnly);
    EXPECT_EQ(fault_for(SQLITE_FULL), StoreFault::Full);
    EXPECT_EQ(fault_for(SQLITE_CORRUPT), StoreFault::Damaged);
    EXPECT_EQ(fault_for(SQLITE_NOTADB), StoreFault::NotADatabase);
    EXPECT_EQ(fault_for(SQLITE_TOOBIG), StoreFault::Value);
    EXPECT_EQ(fault_for(SQLITE_MISMATCH), StoreFault::Value);
    EXPECT_EQ(fault_for(SQLITE_ERROR), StoreFault::Statement);
    EXPECT_EQ(fault_for(SQLITE_IOERR), StoreFault::Statement);
}

TEST(StoreError, TranslatesTheExtendedCodesToo) {
    EXPECT_EQ(fault_for(SQLITE_BUSY_SNAPSHOT), StoreFault::Busy);
    EXPECT_EQ(fault_for(SQLITE_READONLY_ROLLBACK), StoreFault::ReadOnly);
    EXPECT_EQ(fault_for(SQLITE_CORRUPT_INDEX), StoreFault::Damaged);
}

TEST(StoreError, SaysWhatTheUserCanDoSomethingAbout) {
    const auto text_for = [](int code) {
        return std::string{store_error(SQLite::Exception{"(text)", code}).what()};
    };
    EXPECT_THAT(text_for(SQLITE_BUSY), HasSubstr("in use by another program"));
    EXPECT_THAT(text_for(SQLITE_READONLY), HasSubstr("cannot be written"));
    EXPECT_THAT(text_for(SQLITE_FULL), HasSubstr("no disk space left"));
    EXPECT_THAT(text_for(SQLITE_CORRUPT), HasSubstr("is damaged"));
    for (const int code : {SQLITE_BUSY, SQLITE_READONLY, SQLITE_FULL, SQLITE_CORRUPT, SQLITE_ERROR}) {
        EXPECT_THAT(text_for(code), HasSubstr("(text)"));
    }
}

TEST(StoreError, OfAFileThatMayNotGrowIsAFullDisk) {
    const BasinFile file;
    BasinDatabase database = file.open();
    const int pages = database.sql().execAndGet("PRAGMA page_count").getInt();
    database.sql().execAndGet("PRAGMA max_page_count = " + std::to_string(pages));
    EXPECT_EQ(refused([&] { database.create_table(sim_results_table()); }), StoreFault::Full);
    EXPECT_FALSE(database.has_table(k_sim_results));
}

}  // namespace
}  // namespace nivora
