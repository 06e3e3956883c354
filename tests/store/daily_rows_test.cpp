#include "store/daily_rows.h"

#include "tests/support/basin_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace nivora {
namespace {

constexpr std::array<std::string_view, 2> k_row_fields{"Runoff", "SCA"};

class DailyRowsTest : public testing::Test {
protected:
    DailyRows read(int first_zone, int last_zone, const Period& period) {
        BasinDatabase database = file_.open(Access::ReadOnly);
        return read_daily_rows(database, k_physical_data, k_row_fields, first_zone, last_zone, period);
    }
    void add(int zone, const std::string& date, const std::string& runoff, const std::string& sca) {
        file_.change("INSERT INTO PhysicalData (Zone, Date, Runoff, SCA) VALUES (" + std::to_string(zone) +
                     ", " + date + ", " + runoff + ", " + sca + ")");
    }

    BasinFile file_;
};

TEST_F(DailyRowsTest, RowsOutOfOrderAreReadByZoneAndDay) {
    add(2, "100", "4", "0.4");
    add(1, "101", "2", "0.2");
    add(1, "100", "1", "0.1");
    add(2, "101", "5", "0.5");
    const DailyRows rows = read(1, 2, {100, 101});
    EXPECT_EQ(rows.zone, (std::vector{1, 1, 2, 2}));
    EXPECT_EQ(rows.date, (std::vector<DayCount>{100, 101, 100, 101}));
    ASSERT_EQ(rows.fields.size(), 2U);
    EXPECT_EQ(rows.fields[0], (std::vector{1.0, 2.0, 4.0, 5.0}));
    EXPECT_EQ(rows.fields[1], (std::vector{0.1, 0.2, 0.4, 0.5}));
}

TEST_F(DailyRowsTest, OnlyRowsOfTheZonesAndDaysAreRead) {
    for (const char* day : {"99", "100", "101", "102"}) {
        for (const int zone : {1, 2, 3, 4}) add(zone, day, "1", "1");
    }
    const DailyRows rows = read(2, 3, {100, 101});
    EXPECT_EQ(rows.zone, (std::vector{2, 2, 3, 3}));
    EXPECT_EQ(rows.date, (std::vector<DayCount>{100, 101, 100, 101}));
}

TEST_F(DailyRowsTest, ANullIsMissingAndADayWithoutRowIsNotThere) {
    add(1, "100", "NULL", "1");
    add(1, "102", "3", "1");
    const DailyRows rows = read(1, 1, {100, 102});
    ASSERT_EQ(rows.size(), 2U);
    EXPECT_TRUE(std::isnan(rows.fields[0][0]));
    EXPECT_EQ(rows.fields[0][1], 3.0);
}

TEST_F(DailyRowsTest, ADateWithATimePartBelongsToItsDay) {
    add(1, "101.75", "1", "1");
    add(1, "102.25", "2", "1");
    const DailyRows rows = read(1, 1, {100, 101});
    EXPECT_EQ(rows.date, (std::vector<DayCount>{101}));
}

TEST_F(DailyRowsTest, TwoRowsOfADayKeepTheirOrder) {
    add(1, "100", "2", "1");
    add(1, "100", "1", "1");
    EXPECT_EQ(read(1, 1, {100, 100}).fields[0], (std::vector{2.0, 1.0}));
}

TEST_F(DailyRowsTest, APeriodThatEndsBeforeItBeginsHasNoRows) {
    add(1, "100", "1", "1");
    EXPECT_EQ(read(1, 1, {101, 99}).size(), 0U);
}

TEST_F(DailyRowsTest, AMissingTableOrFieldAndATextAreStoreErrors) {
    add(1, "100", "'high'", "1");
    BasinDatabase database = file_.open(Access::ReadOnly);
    constexpr std::array<std::string_view, 1> k_unknown{"Runof"};
    const Period period{100, 100};
    EXPECT_EQ(refused([&] { (void)read_daily_rows(database, "SimResults", k_row_fields, 1, 1, period); }),
              StoreFault::Missing);
    EXPECT_EQ(refused([&] { (void)read_daily_rows(database, k_physical_data, k_unknown, 1, 1, period); }),
              StoreFault::Statement);
    EXPECT_EQ(refused([&] { (void)read_daily_rows(database, k_physical_data, k_row_fields, 1, 1, period); }),
              StoreFault::Value);
}

}  // namespace
}  // namespace nivora
