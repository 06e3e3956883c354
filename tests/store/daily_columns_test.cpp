#include "store/daily_columns.h"

#include "tests/support/basin_file.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>

namespace nivora {
namespace {

constexpr std::array<std::string_view, 2> k_fields{"Runoff", "SCA"};

class DailyColumnsTest : public testing::Test {
protected:
    DailyColumns read(int zones, DayCount first, DayCount last) {
        BasinDatabase database = file_.open();
        return read_daily_columns(database, k_physical_data, k_fields, zones, first, last);
    }
    void add(int zone, DayCount day, const std::string& runoff, const std::string& sca) {
        file_.open().execute("INSERT INTO PhysicalData (Zone, Date, Runoff, SCA) VALUES (" +
                             std::to_string(zone) + ", " + std::to_string(day) + ", " + runoff + ", " + sca +
                             ")");
    }

    BasinFile file_;
};

TEST_F(DailyColumnsTest, HoldFieldsByZoneAndDay) {
    add(2, 101, "4", "0.5");
    add(1, 100, "3", "1");
    const DailyColumns columns = read(2, 100, 101);
    EXPECT_EQ(columns.days(), 2U);
    EXPECT_TRUE(columns.has_rows());
    EXPECT_EQ(columns.at(1, 0, 100), 3.0);
    EXPECT_EQ(columns.at(2, 1, 101), 0.5);
    EXPECT_EQ(columns.column(2, 0)[1], 4.0);
}

TEST_F(DailyColumnsTest, ANullADayWithoutRowAndADayOutsideAreMissing) {
    add(1, 100, "NULL", "1");
    const DailyColumns columns = read(1, 100, 102);
    EXPECT_TRUE(std::isnan(columns.at(1, 0, 100)));
    EXPECT_TRUE(std::isnan(columns.at(1, 0, 101)));
    EXPECT_TRUE(std::isnan(columns.at(1, 0, 99)));
    EXPECT_TRUE(std::isnan(columns.at(2, 0, 100)));
}

TEST_F(DailyColumnsTest, RowsOfOtherZonesAndDaysAreLeftOut) {
    add(3, 100, "1", "1");
    add(1, 99, "1", "1");
    EXPECT_FALSE(read(2, 100, 101).has_rows());
}

TEST_F(DailyColumnsTest, ADateWithATimePartBelongsToItsDayAlsoOnTheLastOne) {
    add(1, 100, "3", "1");
    add(1, 101, "4", "1");
    add(1, 102, "5", "1");
    file_.open().execute("UPDATE PhysicalData SET Date = Date + 0.75");
    const DailyColumns columns = read(1, 100, 101);
    EXPECT_EQ(columns.at(1, 0, 100), 3.0);
    EXPECT_EQ(columns.at(1, 0, 101), 4.0);
}

TEST_F(DailyColumnsTest, APeriodThatEndsBeforeItBeginsHasNoDays) {
    add(1, 100, "1", "1");
    const DailyColumns columns = read(1, 101, 100);
    EXPECT_EQ(columns.days(), 0U);
    EXPECT_TRUE(std::isnan(columns.at(1, 0, 100)));
}

TEST_F(DailyColumnsTest, TheLaterOfTwoRowsOfADayCounts) {
    add(1, 100, "1", "1");
    add(1, 100, "2", "1");
    EXPECT_EQ(read(1, 100, 100).at(1, 0, 100), 2.0);
}

TEST_F(DailyColumnsTest, AMissingTableIsAStoreError) {
    BasinDatabase database = file_.open();
    EXPECT_THROW((void)read_daily_columns(database, "SimResults", k_fields, 1, 1, 2), StoreError);
}

}  // namespace
}  // namespace nivora
