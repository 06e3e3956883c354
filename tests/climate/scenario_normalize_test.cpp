// Normalization: a scenario brings the months of the simulation to the long-term monthly averages.
#include "store/monthly_table.h"
#include "store/transactions.h"
#include "tests/climate/scenario_fixture.h"

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr int k_temperature = 1;
constexpr int k_precipitation = 2;

/// Two zones with the first two days of each month of 1996: days 2m - 1 and 2m of the table are the 1st and
/// 2nd of month m. All values are 2, and so are all averages, until a test sets its own.
class ScenarioNormalization : public ScenarioTest {
protected:
    void SetUp() override {
        start(2, date_of(1996, 1, 1), 24);
        for (const int zone : {1, 2}) {
            for (int day = 1; day <= 24; ++day)
                table.Date[at(zone, day)] = date_of(1996, (day - 1) / 2 + 1, (day - 1) % 2 + 1);
        }
        for (auto* column : {&table.TAvg, &table.TAvgCC, &table.Precip, &table.PrecipCC}) fill(*column, 2.0);
    }

    /// Stores the long-term averages: zone after zone, January to December.
    void store_normals(const std::vector<MonthlyRow>& rows) {
        atomically_if(database, [&] {
            database.create_table(basin_averages_table());
            add_rows<MonthlyRow>(database, basin_averages_table(), rows);
            return true;
        });
    }

    void store_normals_again(const std::vector<MonthlyRow>& rows) {
        database.drop_table(basin_averages_table().name);
        store_normals(rows);
    }

    /// Temperature is 10 times the zone plus the month; precipitation is half of that.
    [[nodiscard]] static std::vector<MonthlyRow> normals(int zones = 2) {
        std::vector<MonthlyRow> rows;
        for (int zone = 1; zone <= zones; ++zone) {
            for (int month = 1; month <= 12; ++month) {
                const auto value = static_cast<float>(10 * zone + month);
                rows.push_back(
                    {static_cast<std::int16_t>(zone), month_name(month), 90.0F, 80.0F, value, value / 2.0F});
            }
        }
        return rows;
    }

    [[nodiscard]] ScenarioRow normalized(int variable, int zones = 0) const {
        return edit(variable, EditAction::Normalize, k_missing, 1, 1, zones);
    }
};

TEST_F(ScenarioNormalization, MovesTheTemperatureOfEachMonthByTheDifferenceOfTheAverages) {
    store_normals(normals());
    set(table.TAvg, 1, {1, 4});  // average 2.5, long-term 11: each day rises by 8.5
    table.TAvg[at(2, 24)] = -6;  // average (2 - 6) / 2 = -2, long-term 32: each day rises by 34
    const SimResults before = table;
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    EXPECT_THAT(changed_columns(before, table), ElementsAre("TAvgCC"));
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 9.5F);
    EXPECT_EQ(table.TAvgCC[at(1, 2)], 12.5F);
    EXPECT_EQ(table.TAvgCC[at(1, 3)], 12.0F);  // February: 2 + (12 - 2)
    EXPECT_EQ(table.TAvgCC[at(2, 1)], 21.0F);  // January of zone 2: 2 + (21 - 2)
    EXPECT_EQ(table.TAvgCC[at(2, 23)], 36.0F);
    EXPECT_EQ(table.TAvgCC[at(2, 24)], 28.0F);
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioNormalization, TakesWholeMonthsWhateverTheDatesOfTheRow) {
    store_normals(normals());
    ScenarioRow row = normalized(k_temperature);
    row.start = date_of(2050, 1, 2);
    row.end = date_of(2050, 1, 1);
    EXPECT_EQ(apply({row}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 11.0F);
    EXPECT_EQ(table.TAvgCC[at(2, 24)], 32.0F);
}

TEST_F(ScenarioNormalization, OfALaterZoneAloneTakesTheAveragesOfZone1) {
    store_normals(normals());
    const SimResults before = table;
    EXPECT_EQ(apply({normalized(k_temperature, 2)}), 0);
    EXPECT_EQ(table.TAvgCC[at(2, 1)], 11.0F);
    EXPECT_EQ(table.TAvgCC[at(2, 24)], 22.0F);
    EXPECT_EQ(days(table.TAvgCC, 1), days(before.TAvgCC, 1));
}

TEST_F(ScenarioNormalization, TakesTheAveragesInStoredOrderWhateverTheirZoneAndMonthSay) {
    auto rows = normals();
    std::swap(rows.front(), rows.back());
    store_normals(rows);
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 32.0F);
    EXPECT_EQ(table.TAvgCC[at(2, 24)], 11.0F);
}

TEST_F(ScenarioNormalization, AveragesAMonthOverAllYearsWithoutMissingValues) {
    store_normals(normals());
    // February's first day becomes a January day of 1997, its second a January day without a value; a day of
    // March becomes the day of February. January: (2 + 2 + 8) / 3 = 4, long-term 11, so each day rises by 7.
    table.Date[at(1, 3)] = date_of(1997, 1, 1);
    table.TAvg[at(1, 3)] = 8.0F;
    table.Date[at(1, 4)] = date_of(1997, 1, 2);
    table.TAvg[at(1, 4)] = k_missing;
    table.Date[at(1, 5)] = date_of(1997, 2, 1);
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 9.0F);
    EXPECT_EQ(table.TAvgCC[at(1, 2)], 9.0F);
    EXPECT_EQ(table.TAvgCC[at(1, 3)], 15.0F);
    EXPECT_TRUE(std::isnan(table.TAvgCC[at(1, 4)]));
    EXPECT_EQ(table.TAvgCC[at(1, 5)], 12.0F);
}

TEST_F(ScenarioNormalization, TakesSevenDigitsOfTheDifference) {
    auto rows = normals();
    rows[0].tavg = 0.0F;
    store_normals(rows);
    // (1 + 2 + 2) / 3 = 1.6666...; as text 1.666667. Day 1 becomes 1 - 1.666667 = -0.666667.
    table.Date[at(1, 3)] = date_of(1997, 1, 1);
    set(table.TAvg, 1, {1, 2, 2});
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], -0.666667F);
}

TEST_F(ScenarioNormalization, MovesWetDaysAndLeavesDryOnesDry) {
    auto rows = normals();
    rows[0].precip = 3.0F;
    rows[1].precip = 9.0F;
    store_normals(rows);
    // January: (0 + 10) / 2 = 5, long-term 3: the wet day falls by 2.
    // February: 5, long-term 9: it rises by 4.
    set(table.Precip, 1, {0, 10, 0, 10});
    set(table.PrecipCC, 1, {0, 10, 0, 10});
    const SimResults before = table;
    EXPECT_EQ(apply({normalized(k_precipitation)}), 0);
    EXPECT_THAT(changed_columns(before, table), ElementsAre("PrecipCC"));
    EXPECT_EQ(table.PrecipCC[at(1, 1)], 0.0F);
    EXPECT_EQ(table.PrecipCC[at(1, 2)], 8.0F);
    EXPECT_EQ(table.PrecipCC[at(1, 3)], 0.0F);
    EXPECT_EQ(table.PrecipCC[at(1, 4)], 14.0F);
}

TEST_F(ScenarioNormalization, LeavesNoPrecipitationBelowZero) {
    auto rows = normals();
    rows[0].precip = 0.5F;
    store_normals(rows);
    // (1 + 9) / 2 = 5, long-term 0.5: the difference is -4.5, more than the first day has.
    set(table.Precip, 1, {1, 9});
    EXPECT_EQ(apply({normalized(k_precipitation)}), 0);
    EXPECT_EQ(table.PrecipCC[at(1, 1)], 0.0F);
    EXPECT_EQ(table.PrecipCC[at(1, 2)], 4.5F);
}

TEST_F(ScenarioNormalization, RaisesADryDayThatAnEarlierRowTookBelowZeroAndKeepsOneAboveIt) {
    store_normals(normals());
    set(table.Precip, 1, {0, 2, 0, 2});
    // The addition makes the dry 1 January -2 and the dry 1 February 1. Normalization tells wet days from dry
    // ones by the present climate only, and clamps the value that it finds in the changed climate.
    ScenarioRow january = normalized(k_precipitation);
    january.action = 0;
    january.factor = -2.0F;
    january.start = january.end = date_of(1996, 1, 1);
    ScenarioRow february = january;
    february.factor = 1.0F;
    february.start = february.end = date_of(1996, 2, 1);
    EXPECT_EQ(apply({january, february, normalized(k_precipitation)}), 0);
    EXPECT_EQ(table.PrecipCC[at(1, 1)], 0.0F);
    EXPECT_EQ(table.PrecipCC[at(1, 3)], 1.0F);
    // 2 January: average (0 + 2) / 2 = 1, long-term 5.5, so 2 + 4.5.
    EXPECT_EQ(table.PrecipCC[at(1, 2)], 6.5F);
}

TEST_F(ScenarioNormalization, LeavesAMissingPrecipitationAsItIs) {
    store_normals(normals());
    table.Precip[at(1, 1)] = table.PrecipCC[at(1, 1)] = k_missing;
    EXPECT_EQ(apply({normalized(k_precipitation)}), 0);
    EXPECT_TRUE(std::isnan(table.PrecipCC[at(1, 1)]));
    EXPECT_EQ(table.PrecipCC[at(1, 2)], 5.5F);  // January's average is its one value, 2: 2 + (5.5 - 2)
}

TEST_F(ScenarioNormalization, AsksWhereTheAverageTemperatureIsZeroAndGoesOn) {
    store_normals(normals());
    set(table.TAvg, 2, {2, 2, 2, 2, -3, 3});  // March of zone 2
    dialogs.then(Answer::Ok);
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_message(
        last_message(),
        "The simulation's average monthly temperature for Mar, Zone# 2 is zero.  This often occurs "
        "when no valid temperature data has been provided.\r\nIf these data are valid, click 'Ok' "
        "to continue the process of normalization, 'Cancel' to abort the climate change run.",
        "Possible missing temperature data");
    EXPECT_EQ(last_message().message.buttons, Buttons::OkCancel);
    EXPECT_EQ(table.TAvgCC[at(2, 5)], 20.0F);   // -3 + 23
    EXPECT_EQ(table.TAvgCC[at(2, 24)], 32.0F);  // and the months after it
}

TEST_F(ScenarioNormalization, AsksAboutAZeroAverageBeforeItMissesTheLongTermOne) {
    auto rows = normals();
    rows[0].tavg = k_missing;
    rows[0].precip = k_missing;
    store_normals(rows);
    set(table.TAvg, 1, {-1, 1});
    set(table.Precip, 1, {0, 0});
    const SimResults before = table;
    for (const int variable : {k_temperature, k_precipitation}) {
        dialogs.then(Answer::Ok);
        EXPECT_EQ(apply({normalized(variable)}), 1);
        dialogs.then(Answer::Cancel);
        EXPECT_EQ(apply({normalized(variable)}), 1);
    }
    // OK continues to the missing value; Cancel does not.
    ASSERT_EQ(dialogs.messages().size(), 6U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Possible missing temperature data");
    expect_stop(dialogs.messages()[1], missing_in_row(1, k_missing_data), k_missing_title);
    EXPECT_EQ(dialogs.messages()[2].message.title, "Possible missing temperature data");
    EXPECT_EQ(dialogs.messages()[3].message.title, "Possible missing precipitation data");
    expect_stop(dialogs.messages()[4], missing_in_row(1, k_missing_data), k_missing_title);
    EXPECT_EQ(dialogs.messages()[5].message.title, "Possible missing precipitation data");
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
}

TEST_F(ScenarioNormalization, OfTheMeanTemperatureNeedsNoMaximaAndMinima) {
    store_normals(normals());
    for (auto* column : {&table.TMax, &table.TMaxCC, &table.Tmin, &table.TminCC}) fill(*column, k_missing);
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 11.0F);   // January of zone 1: 2 + (11 - 2)
    EXPECT_EQ(table.TAvgCC[at(2, 24)], 32.0F);  // December of zone 2: 2 + (32 - 2)
    EXPECT_THAT(table.TMaxCC, testing::Each(testing::IsNan()));
    EXPECT_THAT(table.TminCC, testing::Each(testing::IsNan()));
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioNormalization, OfAllZonesEndsWithTheLastZoneOfTheBasin) {
    store_normals(normals(1));
    basin.ZoneCount = 1;
    EXPECT_EQ(apply({normalized(k_temperature)}), 0);
    EXPECT_EQ(table.TAvgCC[at(1, 24)], 22.0F);
    EXPECT_THAT(days(table.TAvgCC, 2), testing::Each(2.0F));
    basin.ZoneCount = 3;
    store_normals_again(normals(3));
    EXPECT_EQ(apply({normalized(k_precipitation)}), 1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(last_message(), missing_in_row(1, k_missing_data),
                k_missing_title);                 // zone 3 has no days to average
    EXPECT_EQ(table.PrecipCC[at(2, 24)], 16.0F);  // December of zone 2: 2 + (16 - 2)
}

TEST_F(ScenarioNormalization, EndsWhereTheUserCancelsAndKeepsTheMonthsBefore) {
    store_normals(normals());
    set(table.Precip, 1, {2, 2, 0, 0});  // February of zone 1
    dialogs.then(Answer::Cancel);
    EXPECT_EQ(apply({normalized(k_precipitation), edit(1, EditAction::Add, 4.0F)}), 1);
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_message(
        last_message(),
        "The simulation's average monthly precipitation for Feb, Zone# 1 is zero.  This often occurs "
        "when no valid precipitation data has been provided.\r\nIf these data are valid, click 'Ok' to "
        "continue the process of normalization, 'Cancel' to abort the climate change run.",
        "Possible missing precipitation data");
    EXPECT_EQ(table.PrecipCC[at(1, 1)], 5.5F);
    EXPECT_EQ(table.PrecipCC[at(1, 3)], 2.0F);
    EXPECT_EQ(table.PrecipCC[at(1, 5)], 2.0F);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 2.0F);
}

TEST_F(ScenarioNormalization, AsksAboutALaterZoneAloneWithTheMonthOfTheRowThatItReads) {
    auto rows = normals();
    rows[0].month = "???";
    store_normals(rows);
    set(table.TAvg, 2, {-1, 1});
    dialogs.then(Answer::Cancel);
    EXPECT_EQ(apply({normalized(k_temperature, 2)}), 1);
    EXPECT_THAT(last_message().message.text, testing::HasSubstr(" for ???, Zone# 2 is zero."));
}

TEST_F(ScenarioNormalization, OfAnyOtherVariableChangesNothing) {
    store_normals(normals());
    fill(table.TAvg, 0.0);
    fill(table.Precip, 0.0);
    const SimResults before = table;
    for (const int code : {0, 3, 4, 5, 11, 13, 14, -1}) EXPECT_EQ(apply({normalized(code)}), 0) << code;
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
    EXPECT_THAT(dialogs.messages(), IsEmpty());
}

TEST_F(ScenarioNormalization, OfAnyOtherVariableStillReadsTheAverages) {
    store_normals(normals(1));
    EXPECT_EQ(apply({normalized(3)}), 1);
    expect_stop(last_message(), "The long-term monthly averages end after 12 of the months needed.",
                k_definition_error);
}

TEST_F(ScenarioNormalization, NeedsADayInEachMonth) {
    store_normals(normals());
    for (const int zone : {1, 2}) {
        for (int day = 7; day <= 8; ++day) table.Date[at(zone, day)] = date_of(1996, 5, 10 + day);
    }
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);  // no day of April
    ASSERT_EQ(dialogs.messages().size(), 1U);
    expect_stop(last_message(), missing_in_row(1, k_missing_data), k_missing_title);
    EXPECT_EQ(table.TAvgCC[at(1, 5)], 13.0F);  // March was done
    EXPECT_EQ(table.TAvgCC[at(1, 9)], 2.0F);   // May was not
}

TEST_F(ScenarioNormalization, NeedsAValueInEachMonth) {
    store_normals(normals());
    set(table.Precip, 2, {k_missing, k_missing});
    EXPECT_EQ(apply({normalized(k_precipitation)}), 1);
    expect_stop(last_message(), missing_in_row(1, k_missing_data), k_missing_title);
    EXPECT_EQ(table.PrecipCC[at(1, 24)], 11.0F);  // zone 1 was done
}

TEST_F(ScenarioNormalization, NeedsEveryLongTermAverageThatItReads) {
    auto rows = normals();
    rows[14].tavg = k_missing;
    rows[15].precip = k_missing;
    store_normals(rows);
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);
    EXPECT_EQ(apply({normalized(k_precipitation)}), 1);
    ASSERT_EQ(dialogs.messages().size(), 2U);
    expect_stop(last_message(), missing_in_row(1, k_missing_data), k_missing_title);
    // Each variable reads its own average: temperature stops at March of zone 2, precipitation at April.
    EXPECT_EQ(table.TAvgCC[at(2, 3)], 22.0F);
    EXPECT_EQ(table.TAvgCC[at(2, 5)], 2.0F);
    EXPECT_EQ(table.PrecipCC[at(2, 5)], 11.5F);
    EXPECT_EQ(table.PrecipCC[at(2, 7)], 2.0F);
}

TEST_F(ScenarioNormalization, OfAZoneThatTheBasinLacksIsMissingValues) {
    store_normals(normals());
    EXPECT_EQ(apply({normalized(k_temperature, 3)}), 1);
    expect_stop(last_message(), missing_in_row(1, k_missing_data), k_missing_title);
}

TEST_F(ScenarioNormalization, FaultsWhereTheLongTermAveragesEndTooSoon) {
    store_normals(normals(1));
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);
    expect_stop(last_message(), "The long-term monthly averages end after 12 of the months needed.",
                k_definition_error);
    EXPECT_EQ(table.TAvgCC[at(1, 24)], 22.0F);
    EXPECT_EQ(table.TAvgCC[at(2, 1)], 2.0F);
}

TEST_F(ScenarioNormalization, FaultsWithoutLongTermAverages) {
    const SimResults before = table;
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);
    expect_stop(last_message(), "The basin file has no table 'BasinAverages'.", k_definition_error);
    store_normals({});
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);
    expect_stop(last_message(), "The long-term monthly averages end after 0 of the months needed.",
                k_definition_error);
    EXPECT_THAT(changed_columns(before, table), IsEmpty());
}

TEST_F(ScenarioNormalization, FaultsIfTheDifferenceExceedsASingle) {
    auto rows = normals();
    rows[0].tavg = 3.0e38F;
    store_normals(rows);
    set(table.TAvg, 1, {-3.0e38, -3.0e38});
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);
    expect_stop(last_message(), "Overflow", k_definition_error);
}

TEST_F(ScenarioNormalization, FaultsAsAWholeIfOneDayExceedsASingle) {
    auto rows = normals();
    rows[0].tavg = 2.0e38F;
    store_normals(rows);
    // The average is 0, so each day rises by 2e38: too much for the second one, 3e38.
    set(table.TAvg, 1, {-3.0e38, 3.0e38});
    dialogs.then(Answer::Ok);
    EXPECT_EQ(apply({normalized(k_temperature)}), 1);
    expect_stop(last_message(), "Overflow", k_definition_error);
    EXPECT_EQ(table.TAvgCC[at(1, 1)], 2.0F);
}

}  // namespace
}  // namespace nivora
