// The long-term monthly averages of each zone.
#include "prep/monthly_averages.h"

#include "store/monthly_table.h"
#include "tests/prep/prep_fixture.h"

#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::Pointwise;

/// Each pair of values is equal, or both are missing.
MATCHER(SameOrMissing, "") {
    return std::get<0>(arg) == std::get<1>(arg) ||
           (is_missing(std::get<0>(arg)) && is_missing(std::get<1>(arg)));
}

class MonthlyAveragesTest : public PrepTest {
protected:
    /// Two zones, with 1, 2, 3 and 4 in each of their months.
    MonthlyAveragesTest() {
        database_.create_table(basin_averages_table());
        std::vector<MonthlyRow> months;
        for (std::int16_t zone = 1; zone <= 2; ++zone) {
            for (int month = 1; month <= 12; ++month)
                months.push_back({zone, month_name(month), 1.0F, 2.0F, 3.0F, 4.0F});
        }
        add_rows<MonthlyRow>(database_, basin_averages_table(), months);
    }

    [[nodiscard]] MonthlyAverages open(int zones = 2) const { return {file_.path(), zones}; }

    void day_of(std::int16_t zone, DayCount date, float tmax, float tmin, float tavg, float precip) {
        add_physical(
            {{.zone = zone, .date = date, .tmax = tmax, .tmin = tmin, .tavg = tavg, .precip = precip}});
    }

    std::vector<std::string> stored(int zone, const std::string& month) {
        return rows("SELECT TMaxN, TMinN, TAvgN, PrecipN FROM BasinAverages WHERE Zone = " +
                    std::to_string(zone) + " AND Month = '" + month + "'");
    }
};

TEST_F(MonthlyAveragesTest, ShowsWhatIsStored) {
    database_.execute(
        "UPDATE BasinAverages SET TMaxN = 7.5, PrecipN = NULL WHERE Zone = 2 AND Month = 'Feb'");
    const MonthlyAverages averages = open();
    EXPECT_EQ(averages.zones(), 2);
    EXPECT_THAT(averages.values(1, 12), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F));
    EXPECT_THAT(averages.values(2, 2), Pointwise(SameOrMissing(), {7.5F, 2.0F, 3.0F, k_missing}));
}

TEST_F(MonthlyAveragesTest, AMonthIsFoundByItsPositionAfterTheFirstOfItsZone) {
    database_.execute("UPDATE BasinAverages SET Month = 'xyz', TMaxN = 9 WHERE Zone = 1 AND Month = 'Mar'");
    EXPECT_EQ(open().values(1, 3).front(), 9.0F);
}

TEST_F(MonthlyAveragesTest, ATableThatIsMissingOrLacksAMonthIsRefused) {
    EXPECT_EQ(refused([&] { static_cast<void>(open(3)); }), StoreFault::Damaged) << "there is no zone 3";
    database_.execute("DELETE FROM BasinAverages WHERE Zone = 2 AND Month = 'Dec'");
    EXPECT_EQ(refused([&] { static_cast<void>(open()); }), StoreFault::Damaged);
    EXPECT_EQ(refused([&] { static_cast<void>(open(1)); }), std::nullopt);
    database_.drop_table(k_basin_averages);
    EXPECT_TRUE(refused([&] { static_cast<void>(open(1)); }).has_value());
    EXPECT_TRUE(is_free()) << "the file is let go of";
}

TEST_F(MonthlyAveragesTest, ATypedValueIsKeptByTheCommit) {
    {
        MonthlyAverages averages = open();
        averages.set_value(2, 5, 1, -7.25F);
        averages.set_value(1, 1, 3, k_missing);
        EXPECT_EQ(averages.values(2, 5).at(1), -7.25F);
        averages.commit();
    }
    EXPECT_THAT(stored(2, "May"), ElementsAre("1.0 -7.25 3.0 4.0"));
    EXPECT_THAT(stored(1, "Jan"), ElementsAre("1.0 2.0 3.0 -"));
    EXPECT_THAT(stored(1, "May"), ElementsAre("1.0 2.0 3.0 4.0"));
}

TEST_F(MonthlyAveragesTest, WithoutACommitAllIsRolledBack) {
    day_of(1, day(1981, 5, 1), 10.0F, 0.0F, 5.0F, 1.0F);
    {
        MonthlyAverages averages = open();
        averages.set_value(2, 5, 1, -7.25F);
        EXPECT_TRUE(averages.recalculate());
        EXPECT_EQ(averages.values(1, 5).front(), 10.0F);
    }
    EXPECT_THAT(stored(2, "May"), ElementsAre("1.0 2.0 3.0 4.0"));
    EXPECT_THAT(stored(1, "May"), ElementsAre("1.0 2.0 3.0 4.0"));
    EXPECT_TRUE(is_free());
}

TEST_F(MonthlyAveragesTest, AnInfiniteValueIsRefused) {
    MonthlyAverages averages = open();
    EXPECT_EQ(refused([&] { averages.set_value(1, 1, 0, std::numeric_limits<float>::infinity()); }),
              StoreFault::Value);
    EXPECT_EQ(averages.values(1, 1).front(), 1.0F);
}

// Recalculation.

TEST_F(MonthlyAveragesTest, WithoutDailyVariablesNothingIsRecalculated) {
    MonthlyAverages averages = open();
    EXPECT_FALSE(averages.has_physical_data());
    EXPECT_FALSE(averages.recalculate());
    EXPECT_THAT(averages.values(1, 1), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F));
}

TEST_F(MonthlyAveragesTest, AveragesCoverAllDaysOfAMonthOverAllYears) {
    day_of(1, day(1981, 5, 1), 10.0F, 0.0F, 5.0F, 1.0F);
    day_of(1, day(1981, 5, 31), 12.0F, 1.0F, 6.5F, 0.0F);
    day_of(1, day(1990, 5, 15), 17.0F, 5.0F, 11.0F, 0.5F);
    day_of(1, day(1981, 6, 1), 20.0F, 8.0F, 14.0F, 0.25F);
    MonthlyAverages averages = open();
    EXPECT_TRUE(averages.has_physical_data());
    EXPECT_TRUE(averages.recalculate());
    // (10 + 12 + 17) / 3 = 13, (0 + 1 + 5) / 3 = 2, (5 + 6.5 + 11) / 3 = 7.5, (1 + 0 + 0.5) / 3 = 0.5.
    EXPECT_THAT(averages.values(1, 5), ElementsAre(13.0F, 2.0F, 7.5F, 0.5F));
    EXPECT_THAT(averages.values(1, 6), ElementsAre(20.0F, 8.0F, 14.0F, 0.25F));
    averages.commit();
    EXPECT_THAT(stored(1, "May"), ElementsAre("13.0 2.0 7.5 0.5"));
}

TEST_F(MonthlyAveragesTest, AMonthWithoutDaysKeepsItsValues) {
    day_of(1, day(1981, 5, 1), 10.0F, 0.0F, 5.0F, 1.0F);
    MonthlyAverages averages = open();
    EXPECT_TRUE(averages.recalculate());
    EXPECT_THAT(averages.values(1, 4), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F));
    EXPECT_THAT(averages.values(2, 5), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F));
}

TEST_F(MonthlyAveragesTest, EachZoneIsAveragedSeparately) {
    day_of(1, day(1981, 5, 1), 10.0F, 0.0F, 5.0F, 1.0F);
    day_of(2, day(1981, 5, 1), 4.0F, -6.0F, -1.0F, 3.0F);
    day_of(3, day(1981, 5, 1), 100.0F, 100.0F, 100.0F, 100.0F);
    MonthlyAverages averages = open();
    EXPECT_TRUE(averages.recalculate());
    EXPECT_THAT(averages.values(1, 5), ElementsAre(10.0F, 0.0F, 5.0F, 1.0F));
    EXPECT_THAT(averages.values(2, 5), ElementsAre(4.0F, -6.0F, -1.0F, 3.0F));
}

TEST_F(MonthlyAveragesTest, MissingValuesDoNotCount) {
    day_of(1, day(1981, 5, 1), 10.0F, k_missing, k_missing, 1.0F);
    day_of(1, day(1981, 5, 2), k_missing, k_missing, 6.0F, 2.0F);
    MonthlyAverages averages = open();
    EXPECT_TRUE(averages.recalculate());
    // One maximum, no minimum, one average, two days of precipitation.
    EXPECT_THAT(averages.values(1, 5), Pointwise(SameOrMissing(), {10.0F, k_missing, 6.0F, 1.5F}));
}

TEST_F(MonthlyAveragesTest, AMonthWithoutPrecipitationKeepsItsTemperaturesToo) {
    day_of(1, day(1981, 5, 1), 10.0F, 0.0F, 5.0F, k_missing);
    MonthlyAverages averages = open();
    EXPECT_TRUE(averages.recalculate());
    EXPECT_THAT(averages.values(1, 5), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F));
}

TEST_F(MonthlyAveragesTest, AnAverageIsSummedInDoubleAndStoredAsASingle) {
    // 2^24 + 1 + 1: a Single would lose both 1s. 16777218 / 3 = 5592406.
    day_of(1, day(1981, 5, 1), 16777216.0F, 0.0F, 0.0F, 0.0F);
    day_of(1, day(1981, 5, 2), 1.0F, 0.0F, 0.0F, 0.0F);
    day_of(1, day(1981, 5, 3), 1.0F, 0.0F, 0.0F, 1.0F);
    MonthlyAverages averages = open();
    EXPECT_TRUE(averages.recalculate());
    EXPECT_EQ(averages.values(1, 5).front(), 5592406.0F);
    EXPECT_EQ(averages.values(1, 5).back(), static_cast<float>(1.0 / 3.0));
}

TEST_F(MonthlyAveragesTest, ATextAmongTheDailyVariablesIsRefusedAndChangesNothing) {
    day_of(1, day(1981, 5, 1), 10.0F, 0.0F, 5.0F, 1.0F);
    database_.execute("INSERT INTO PhysicalData (Zone, Date, Tmax) VALUES (2, " +
                      std::to_string(day(1981, 5, 1)) + ", 'warm')");
    MonthlyAverages averages = open();
    EXPECT_EQ(refused([&] { static_cast<void>(averages.recalculate()); }), StoreFault::Value);
    EXPECT_THAT(averages.values(1, 5), ElementsAre(1.0F, 2.0F, 3.0F, 4.0F));
}

}  // namespace
}  // namespace nivora
