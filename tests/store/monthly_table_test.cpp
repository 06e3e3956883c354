#include "store/monthly_table.h"

#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;

/// A basin with a given number of zones.
class MonthlyTable : public testing::Test {
protected:
    void state_zones(int zones) const {
        file_.change("UPDATE BasinDescription SET Zones = " + std::to_string(zones));
    }

    void ensure() const {
        BasinDatabase database = file_.open();
        Ensure_Monthly_Table(database);
    }

    [[nodiscard]] std::vector<MonthlyRow> rows() const {
        BasinDatabase database = file_.open(Access::ReadOnly);
        return read_table<MonthlyRow>(database, basin_averages_table());
    }

    [[nodiscard]] std::vector<std::string> fields() const {
        return file_.column("SELECT name FROM pragma_table_info('BasinAverages') ORDER BY cid");
    }

    BasinFile file_;
};

TEST(MonthName, OfTheTwelveMonths) {
    EXPECT_STREQ(month_name(1), "Jan");
    EXPECT_STREQ(month_name(2), "Feb");
    EXPECT_STREQ(month_name(3), "Mar");
    EXPECT_STREQ(month_name(4), "Apr");
    EXPECT_STREQ(month_name(5), "May");
    EXPECT_STREQ(month_name(6), "Jun");
    EXPECT_STREQ(month_name(7), "Jul");
    EXPECT_STREQ(month_name(8), "Aug");
    EXPECT_STREQ(month_name(9), "Sep");
    EXPECT_STREQ(month_name(10), "Oct");
    EXPECT_STREQ(month_name(11), "Nov");
    EXPECT_STREQ(month_name(12), "Dec");
}

TEST_F(MonthlyTable, IsCreatedIfItIsMissing) {
    state_zones(2);
    ensure();
    EXPECT_THAT(fields(), ElementsAre("Zone", "Month", "TMaxN", "TMinN", "TAvgN", "PrecipN"));
    EXPECT_EQ(rows().size(), 24U);
}

TEST_F(MonthlyTable, HasTwelveRowsOfZerosForEachZone) {
    state_zones(3);
    ensure();
    const auto all = rows();
    ASSERT_EQ(all.size(), 36U);
    for (std::size_t i = 0; i < all.size(); ++i) {
        EXPECT_EQ(all[i].zone, static_cast<std::int16_t>(i / 12 + 1)) << i;
        EXPECT_EQ(all[i].month, month_name(static_cast<int>(i % 12) + 1)) << i;
        for (const float average : {all[i].tmax, all[i].tmin, all[i].tavg, all[i].precip}) {
            EXPECT_EQ(average, 0.0F) << i;
        }
    }
}

TEST_F(MonthlyTable, OfABasinWithoutZonesIsCreatedEmpty) {
    ensure();
    EXPECT_EQ(fields().size(), 6U);
    EXPECT_TRUE(rows().empty());
}

TEST_F(MonthlyTable, WithEnoughRowsIsKept) {
    state_zones(2);
    ensure();
    file_.change("UPDATE BasinAverages SET TMaxN = 4.5 WHERE Zone = 2 AND Month = 'Mar'");
    ensure();
    ASSERT_EQ(rows().size(), 24U);
    EXPECT_EQ(rows()[14].tmax, 4.5F);  // after twelve rows of zone 1, and Jan and Feb of zone 2
}

TEST_F(MonthlyTable, WithEmptyAveragesIsKept) {
    state_zones(1);
    ensure();
    file_.change("UPDATE BasinAverages SET TMaxN = Null, TMinN = Null, TAvgN = Null, PrecipN = Null");
    ensure();
    ASSERT_EQ(rows().size(), 12U);
    EXPECT_TRUE(std::isnan(rows()[0].tmax));
}

TEST_F(MonthlyTable, WithMoreRowsThanTheZonesNeedIsKept) {
    state_zones(3);
    ensure();
    file_.change("UPDATE BasinAverages SET PrecipN = 2.5");
    state_zones(2);
    ensure();
    ASSERT_EQ(rows().size(), 36U);
    EXPECT_EQ(rows()[0].precip, 2.5F);
}

TEST_F(MonthlyTable, WithOneRowTooFewIsCreatedAgain) {
    state_zones(2);
    ensure();
    file_.change(
        "UPDATE BasinAverages SET PrecipN = 2.5; DELETE FROM BasinAverages WHERE Zone = 1 AND Month = 'May'");
    ensure();
    ASSERT_EQ(rows().size(), 24U);
    EXPECT_EQ(rows()[0].precip, 0.0F);
    EXPECT_EQ(rows()[4].month, "May");
}

TEST_F(MonthlyTable, ThatDoesNotBeginWithTheZoneIsPutInOrder) {
    state_zones(2);
    file_.change(
        "CREATE TABLE BasinAverages (Month TEXT(3), TMinN FLOAT, TMaxN FLOAT, TAvgN FLOAT, PrecipN FLOAT)");
    for (int month = 1; month <= 12; ++month) {
        file_.change(std::string{"INSERT INTO BasinAverages VALUES ('"} + month_name(month) +
                     "', 1, 2, 3, 4)");
    }
    ensure();
    EXPECT_THAT(fields(), ElementsAre("Zone", "Month", "TMaxN", "TMinN", "TAvgN", "PrecipN"));
    ASSERT_EQ(rows().size(), 24U);
    EXPECT_EQ(rows()[0].zone, 1);
    EXPECT_EQ(rows()[0].month, "Jan");
    EXPECT_EQ(rows()[0].tmax, 0.0F);
}

TEST_F(MonthlyTable, ThatBeginsWithTheZoneInAnotherCaseIsKept) {
    state_zones(1);
    file_.change(
        "CREATE TABLE basinaverages (ZONE SMALLINT, Month TEXT(3), TMaxN FLOAT, TMinN FLOAT, TAvgN FLOAT,"
        " PrecipN FLOAT)");
    for (int month = 1; month <= 12; ++month) {
        file_.change(std::string{"INSERT INTO BasinAverages VALUES (1, '"} + month_name(month) +
                     "', 1, 2, 3, 4)");
    }
    ensure();
    EXPECT_EQ(fields().at(0), "ZONE");
    ASSERT_EQ(rows().size(), 12U);
    EXPECT_EQ(rows()[0].tmax, 1.0F);
}

TEST_F(MonthlyTable, CanBeBroughtUpToDateWithinATransaction) {
    state_zones(1);
    BasinDatabase database = file_.open();
    {
        const HeldTransaction rolled_back{database};
        Ensure_Monthly_Table(database);
    }
    EXPECT_FALSE(database.has_table(k_basin_averages));
    HeldTransaction transaction{database};
    Ensure_Monthly_Table(database);
    transaction.commit();
    EXPECT_EQ(rows().size(), 12U);
}

TEST_F(MonthlyTable, StaysAsItWasIfItsRowsAreRefused) {
    state_zones(2);
    file_.change(
        "CREATE TABLE BasinAverages (Zone SMALLINT CHECK (Zone < 2), Month TEXT(3), TMaxN FLOAT, TMinN FLOAT,"
        " TAvgN FLOAT, PrecipN FLOAT); INSERT INTO BasinAverages VALUES (1, 'Jan', 1.5, 2.5, 3.5, 4.5)");
    EXPECT_NE(refused([&] { ensure(); }), std::nullopt);
    ASSERT_EQ(rows().size(), 1U);
    EXPECT_EQ(rows()[0].tmax, 1.5F);
}

TEST_F(MonthlyTable, AYearIsTheFirstTwelveRowsOfItsZoneInStoredOrder) {
    state_zones(2);
    ensure();
    file_.change(
        "INSERT INTO BasinAverages VALUES (2, 'Jan', 9, 9, 9, 9);"
        "UPDATE BasinAverages SET TMaxN = 1.5, TMinN = NULL, TAvgN = 2.5, PrecipN = 3.5 WHERE rowid = 14");
    BasinDatabase database = file_.open();
    const StoredYear year = read_stored_year(database, 2);
    EXPECT_EQ(year.front().row, 13);
    EXPECT_EQ(year.back().row, 24);
    EXPECT_EQ(year[1].values[0], 1.5F);
    EXPECT_TRUE(std::isnan(year[1].values[1]));
    EXPECT_EQ(year[1].values[2], 2.5F);
    EXPECT_EQ(year[1].values[3], 3.5F);
}

TEST_F(MonthlyTable, AYearOfFewerThanTwelveRowsIsDamaged) {
    state_zones(1);
    ensure();
    file_.change("DELETE FROM BasinAverages WHERE Month = 'May'");
    BasinDatabase database = file_.open();
    EXPECT_EQ(refused([&] { static_cast<void>(read_stored_year(database, 1)); }), StoreFault::Damaged);
    EXPECT_EQ(refused([&] { static_cast<void>(read_stored_year(database, 2)); }), StoreFault::Damaged);
    database.drop_table(k_basin_averages);
    EXPECT_EQ(refused([&] { static_cast<void>(read_stored_year(database, 1)); }), StoreFault::Statement);
}

TEST_F(MonthlyTable, AMonthIsStoredInItsRowAlone) {
    state_zones(1);
    ensure();
    BasinDatabase database = file_.open();
    store_month(database, {3, {1.0F, -2.0F, k_missing, 4.0F}});
    const auto all = rows();
    EXPECT_EQ(all[2].month, "Mar");
    EXPECT_EQ(all[2].tmax, 1.0F);
    EXPECT_EQ(all[2].tmin, -2.0F);
    EXPECT_TRUE(std::isnan(all[2].tavg));
    EXPECT_EQ(all[2].precip, 4.0F);
    EXPECT_EQ(all[1].tmax, 0.0F);
    EXPECT_EQ(refused([&] {
                  store_month(database, {3, {std::numeric_limits<float>::infinity(), 0.0F, 0.0F, 0.0F}});
              }),
              StoreFault::Value);
}

}  // namespace
}  // namespace nivora
