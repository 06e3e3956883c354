#include "store/daily_table.h"

#include "store/rows.h"
#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>

#include <array>
#include <random>
#include <set>

namespace nivora {
namespace {

/// Days 100 to 102 of zone 2 and day 101 of zone 1, stored in another order.
class DailyTableTest : public testing::Test {
protected:
    DailyTableTest() {
        const std::vector<PhysicalRow> rows{{.zone = 2, .date = 102},
                                            {.zone = 2, .date = 100},
                                            {.zone = 1, .date = 101},
                                            {.zone = 2, .date = 101}};
        add_rows<PhysicalRow>(database_, template_table(k_physical_data), rows);
    }

    [[nodiscard]] std::string days(const std::optional<Period>& period) {
        std::string text;
        for (const StoredDay& day : stored_days(database_, k_physical_data, period))
            text += std::to_string(day.zone) + "/" + std::to_string(day.date) + "@" +
                    std::to_string(day.row) + " ";
        return text;
    }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
};

TEST_F(DailyTableTest, DaysComeZoneByZoneWithTheirRowNumbers) {
    EXPECT_EQ(days(std::nullopt), "1/101@3 2/100@2 2/101@4 2/102@1 ");
    EXPECT_EQ(days(Period{101, 101}), "1/101@3 2/101@4 ");
}

TEST_F(DailyTableTest, BothEndsOfAPeriodAreInItEvenWithATimePart) {
    EXPECT_EQ(count_days(database_, k_physical_data, {100, 101}), 3);
    database_.execute("UPDATE PhysicalData SET Date = 101.75 WHERE rowid = 4");
    EXPECT_EQ(count_days(database_, k_physical_data, {101, 101}), 2);
    EXPECT_EQ(count_days(database_, k_physical_data, {103, 200}), 0);
}

TEST_F(DailyTableTest, TheExtentIsThatOfAllRows) {
    const RecordExtent extent = scan_daily_table(database_, k_physical_data);
    EXPECT_EQ(extent.first, 100);
    EXPECT_EQ(extent.last, 102);
    EXPECT_EQ(extent.zones, 2);
    EXPECT_EQ(extent.count, 4);
}

/// How many hundreds of steps the database engine takes for the extent of the daily variables.
int hundreds_of_steps(BasinDatabase& database) {
    int hundreds = 0;
    sqlite3_progress_handler(
        database.sql().getHandle(), 100,
        [](void* count) {
            ++*static_cast<int*>(count);
            return 0;
        },
        &hundreds);
    static_cast<void>(scan_daily_table(database, k_physical_data));
    sqlite3_progress_handler(database.sql().getHandle(), 0, nullptr, nullptr);
    return hundreds;
}

TEST_F(DailyTableTest, TheExtentOfALongRecordIsReadFromTheEndsOfItsKey) {
    database_.execute(
        "WITH RECURSIVE days(d) AS (SELECT 200 UNION ALL SELECT d + 1 FROM days WHERE d < 5199) "
        "INSERT INTO PhysicalData (Zone, Date) SELECT 3, d FROM days");
    const RecordExtent extent = scan_daily_table(database_, k_physical_data);
    EXPECT_EQ(extent.first, 100);
    EXPECT_EQ(extent.last, 5199);
    EXPECT_EQ(extent.zones, 3);
    EXPECT_EQ(extent.count, 5004);
    EXPECT_LT(hundreds_of_steps(database_), 20) << "fewer than rows";
}

TEST_F(DailyTableTest, TheExtentCountsRowsWithoutAZoneAndLeavesOutThoseWithoutADate) {
    database_.execute(
        "INSERT INTO PhysicalData (Zone, Date) VALUES (NULL, 7), (NULL, NULL), (1, NULL), "
        "(1, 101), (4, NULL), (-2, 900)");
    const RecordExtent extent = scan_daily_table(database_, k_physical_data);
    EXPECT_EQ(extent.first, 7);
    EXPECT_EQ(extent.last, 900);
    EXPECT_EQ(extent.zones, 4);
    EXPECT_EQ(extent.count, 7);
}

TEST_F(DailyTableTest, TheExtentOfATableWithAColumnAndANameThatTheQueryUses) {
    for (const char* name : {"steps", "n"}) {
        database_.execute(fmt::format("CREATE TABLE {0} (Zone SMALLINT, Date DATE, n FLOAT)", name));
        database_.create_daily_index(name);
        database_.execute(fmt::format("INSERT INTO {0} VALUES (1, 5, 9), (2, 4, 0)", name));
        const RecordExtent extent = scan_daily_table(database_, name);
        EXPECT_EQ(extent.first, 4);
        EXPECT_EQ(extent.last, 5);
        EXPECT_EQ(extent.zones, 2);
        EXPECT_EQ(extent.count, 2);
    }
}

/// The extent of a table, or why it is refused.
std::string told_extent(BasinDatabase& database) {
    try {
        const RecordExtent extent = scan_daily_table(database, "damaged");
        return fmt::format("{} to {}, zone {}, {} rows", extent.first, extent.last, extent.zones,
                           extent.count);
    } catch (const StoreError& error) {
        return error.what();
    }
}

TEST_F(DailyTableTest, WithTheKeyTheExtentOfDamagedTablesIsThatOfAllTheirRows) {
    constexpr std::array k_zones{"1", "2",     "16",    "0",    "-3",     "NULL",
                                 "2", "1.5",   "40000", "9e99", "'a'",    "'12'",
                                 "3", "X'01'", "'B'",   "1e0",  "123456", "9007199254740993"};
    constexpr std::array k_dates{"NULL", "100",    "101",   "101.75", "-7",  "1e7",
                                 "9e99", "'1996'", "'day'", "X'02'",  "102", "100"};
    constexpr std::array k_types{"SMALLINT", "TEXT", "BLOB", "DOUBLE", "TEXT COLLATE NOCASE"};
    std::mt19937 random{17};
    const auto below = [&](std::size_t count) { return random() % count; };
    std::set<std::string> seen;
    for (int round = 0; round < 3000; ++round) {
        database_.execute("BEGIN");
        database_.execute(fmt::format("CREATE TABLE damaged (Zone {}, Date {})",
                                      k_types.at(below(2) == 0 ? 0 : below(k_types.size())),
                                      below(2) == 0 ? "DATE" : k_types.at(below(k_types.size()))));
        // Mostly sound values, so that many rounds are not refused.
        const std::size_t zones = below(2) == 0 ? 6 : k_zones.size();
        const std::size_t dates = below(2) == 0 ? 6 : k_dates.size();
        for (std::size_t rows = below(12); rows > 0; --rows)
            database_.execute(fmt::format("INSERT INTO damaged VALUES ({}, {})", k_zones.at(below(zones)),
                                          k_dates.at(below(dates))));
        if (below(50) == 0)
            database_.execute(
                "WITH RECURSIVE zones(z) AS (SELECT 1 UNION ALL SELECT z + 1 FROM zones WHERE z < 90) "
                "INSERT INTO damaged SELECT z, 1000 - z FROM zones");
        const std::string without_key = told_extent(database_);
        database_.create_daily_index("damaged");
        EXPECT_EQ(told_extent(database_), without_key) << "round " << round;
        seen.insert(without_key);
        database_.execute("ROLLBACK");
        if (HasFailure()) break;
    }
    EXPECT_GT(seen.size(), 50U);
    EXPECT_TRUE(seen.contains("The field 'max(Zone)' holds text instead of a number."));
    EXPECT_TRUE(seen.contains("The field 'min(Date)' holds a date that is out of range.") ||
                seen.contains("The field 'max(Date)' holds a date that is out of range."));
}

TEST_F(DailyTableTest, ATableHasDaysOrNone) {
    EXPECT_TRUE(has_days(database_, k_physical_data));
    clear_table(database_, k_physical_data);
    EXPECT_FALSE(has_days(database_, k_physical_data));
    EXPECT_EQ(scan_daily_table(database_, k_physical_data).count, 0);
}

TEST_F(DailyTableTest, DaysOfZonesEndWithTheLastDayAndTheLastZone) {
    using testing::UnorderedElementsAre;
    const auto rows = [&](const Period& period, int last_zone) {
        std::vector<std::int64_t> numbers;
        for (const StoredDay& day : days_of_zones(database_, k_physical_data, period, last_zone))
            numbers.push_back(day.row);
        return numbers;
    };
    EXPECT_THAT(rows({100, 101}, 2), UnorderedElementsAre(2, 3, 4));
    EXPECT_THAT(rows({100, 101}, 1), UnorderedElementsAre(3));
    database_.execute("UPDATE PhysicalData SET Date = 101.75 WHERE rowid = 4");
    EXPECT_THAT(rows({100, 101}, 2), UnorderedElementsAre(2, 3))
        << "its date lies after the start of day 101";
    EXPECT_THAT(rows({100, 102}, 2), UnorderedElementsAre(1, 2, 3, 4));
}

TEST_F(DailyTableTest, DaysOfZonesAreDeletedAndNoOthers) {
    delete_days_of_zones(database_, k_physical_data, {101, 102}, 1);
    EXPECT_EQ(days(std::nullopt), "2/100@2 2/101@4 2/102@1 ");
    delete_days_of_zones(database_, k_physical_data, {101, 102}, 2);
    EXPECT_EQ(days(std::nullopt), "2/100@2 ");
}

TEST_F(DailyTableTest, AMissingTableIsRefused) {
    EXPECT_THROW(static_cast<void>(days_of_zones(database_, "none", {1, 2}, 1)), StoreError);
    EXPECT_THROW(delete_days_of_zones(database_, "none", {1, 2}, 1), StoreError);
    EXPECT_THROW(static_cast<void>(stored_days(database_, "none", std::nullopt)), StoreError);
    EXPECT_THROW(static_cast<void>(count_days(database_, "none", {1, 2})), StoreError);
    EXPECT_THROW(static_cast<void>(has_days(database_, "none")), StoreError);
}

}  // namespace
}  // namespace nivora
