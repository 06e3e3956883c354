#include "store/daily_table.h"

#include "store/rows.h"
#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

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
