#include "prep/data_check.h"

#include "base/single.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

DayCount day_of(int year, int month, int day) { return day_count({year, month, day}).value(); }

/// Rows without a fault, which a test changes.
class DataCheckTest : public testing::Test {
protected:
    /// Days from 1 May 2001 on in each zone.
    explicit DataCheckTest(int zones = 2, int days = 40) : days_(days) {
        setting.zones = zones;
        for (std::size_t month = 4; month <= 9; ++month) setting.melt_months.at(month) = true;
        rows.fields.resize(k_checked_fields.size());
        for (int zone = 1; zone <= zones; ++zone) {
            for (int day = 0; day < days; ++day) {
                rows.zone.push_back(zone);
                rows.date.push_back(k_start + day);
                const double wave = std::sin(day * 0.7);
                const std::array<double, 6> values{10.0 + wave, 2.0 + wave,       6.0 + wave,
                                                   0.0,         0.9 - 0.02 * day, 5.0 + wave};
                for (std::size_t field = 0; field < values.size(); ++field)
                    rows.fields[field].push_back(values.at(field));
            }
        }
    }

    double& value(const std::string& field, int zone, int day) {
        const auto found = std::find(k_checked_fields.begin(), k_checked_fields.end(), field);
        return rows.fields[static_cast<std::size_t>(found - k_checked_fields.begin())]
                          [static_cast<std::size_t>((zone - 1) * days_ + day)];
    }

    /// "Missing value A Tavg 5-7: text" with zones as letters and days from 0.
    [[nodiscard]] std::vector<std::string> found() const {
        std::vector<std::string> texts;
        for (const DataFinding& finding : check_daily_rows(rows, setting).findings) {
            texts.push_back(std::string{data_fault_text(finding.fault)} + " " +
                            static_cast<char>('A' + finding.zone - 1) + " " + std::string{finding.field()} +
                            " " + std::to_string(finding.first - k_start) + "-" +
                            std::to_string(finding.last - k_start) + ": " + finding_text(finding));
        }
        return texts;
    }

    void remove_row(int zone, int day) {
        const auto at = static_cast<std::ptrdiff_t>((zone - 1) * days_ + day);
        rows.zone.erase(rows.zone.begin() + at);
        rows.date.erase(rows.date.begin() + at);
        for (auto& field : rows.fields) field.erase(field.begin() + at);
    }

    void double_row(int zone, int day) {
        const auto same = [&](std::size_t row) {
            return rows.zone[row] == zone && rows.date[row] == k_start + day;
        };
        std::size_t row = 0;
        while (!same(row)) ++row;
        const auto at = static_cast<std::ptrdiff_t>(row);
        rows.zone.insert(rows.zone.begin() + at, zone);
        rows.date.insert(rows.date.begin() + at, k_start + day);
        for (auto& field : rows.fields) field.insert(field.begin() + at, double{field[row]});
    }

    const DayCount k_start = day_of(2001, 5, 1);
    int days_;
    DailyRows rows;
    DataCheckSetting setting;
};

TEST_F(DataCheckTest, GoodDataHasNoFindings) {
    EXPECT_THAT(found(), IsEmpty());
    EXPECT_EQ(check_daily_rows(rows, setting).days, 40);
    EXPECT_THAT(check_daily_rows({}, setting).findings, IsEmpty());
}

TEST_F(DataCheckTest, FindsGapsWithinAndAtTheEndsOfTheRecord) {
    for (const int day : {39, 38, 11, 10, 0}) remove_row(2, day);
    EXPECT_THAT(found(), ElementsAre("Gap B  0-0: The zone has no row on 1 day.",
                                     "Gap B  10-11: The zone has no row on 2 days.",
                                     "Gap B  38-39: The zone has no row on 2 days."));
}

TEST_F(DataCheckTest, AZoneWithoutRowsIsOneGap) {
    setting.zones = 3;
    EXPECT_THAT(found(), ElementsAre("Gap C  0-39: The zone has no row on 40 days."));
}

TEST_F(DataCheckTest, FindsMissingValuesOfAFieldThatTheZoneHas) {
    value("Tavg", 2, 5) = value("Tavg", 2, 6) = value("Precip", 1, 39) = as_double(k_missing);
    value("Runoff", 2, 3) = as_double(k_missing);  // the discharge of zone 1 counts
    for (int day = 0; day < 40; ++day) value("Tmax", 2, day) = as_double(k_missing);
    EXPECT_THAT(found(), ElementsAre("Missing value A Precip 39-39: Precip has no value on 1 day.",
                                     "Missing value B Tavg 5-6: Tavg has no value on 2 days."));
}

TEST_F(DataCheckTest, ListsAFieldThatIsMissingOnAllDaysWhereARunNeedsIt) {
    const double none = as_double(k_missing);
    for (int day = 0; day < 40; ++day) {
        value("SCA", 2, day) = value("Runoff", 1, day) = value("Precip", 2, day) = value("Tavg", 2, day) =
            none;
        value("Tavg", 1, day) = none;  // the extremes are there
    }
    EXPECT_THAT(found(), ElementsAre("Missing value B SCA 0-39: The snow cover has no value on 40 days."));
    for (int day = 0; day < 40; ++day) value("Tmin", 1, day) = none;
    EXPECT_THAT(found(), ElementsAre("Missing value A Tmin 0-39: Tmin has no value on 40 days.",
                                     "Missing value A Tavg 0-39: Tavg has no value on 40 days.",
                                     "Missing value B SCA 0-39: The snow cover has no value on 40 days."));
}

TEST_F(DataCheckTest, AGapDividesDaysOfOneFault) {
    value("Tavg", 1, 5) = value("Tavg", 1, 6) = value("Tavg", 1, 7) = as_double(k_missing);
    remove_row(1, 6);
    EXPECT_THAT(found(), ElementsAre("Missing value A Tavg 5-5: Tavg has no value on 1 day.",
                                     "Gap A  6-6: The zone has no row on 1 day.",
                                     "Missing value A Tavg 7-7: Tavg has no value on 1 day."));
}

TEST_F(DataCheckTest, FindsCoverOutsideItsRange) {
    value("SCA", 1, 0) = 1.25;
    value("SCA", 2, 39) = -0.01;
    EXPECT_THAT(
        found(),
        ElementsAre(
            "Cover outside 0 to 1 A SCA 0-0: The snow cover is 1.25, which is not between 0 and 1.",
            "Cover outside 0 to 1 B SCA 39-39: The snow cover is -0.01, which is not between 0 and 1."));
}

TEST_F(DataCheckTest, FindsCoverThatGrowsInTheMeltSeasonAlone) {
    value("SCA", 1, 10) = 0.8;  // after 0.72
    value("SCA", 1, 11) = 0.85;
    value("SCA", 2, 20) = 0.54;  // after 0.52: too little to count
    EXPECT_THAT(
        found(),
        ElementsAre(
            "Cover rises in melt A SCA 10-11: The snow cover grows from 0.72 to 0.85 in the melt season."));
    setting.melt_months = {};
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DataCheckTest, FindsAMinimumAboveTheMaximum) {
    value("Tmin", 2, 3) = 15.0;
    value("Tmin", 2, 4) = 15.5;
    const auto texts = found();
    ASSERT_EQ(texts.size(), 1U);
    EXPECT_THAT(texts[0],
                testing::StartsWith(
                    "Tmin above Tmax B Tmin 3-4: The minimum temperature, 15, is above the maximum, "));
}

TEST_F(DataCheckTest, FindsJumpsOfTheTemperature) {
    value("Tavg", 1, 12) = 40.0;
    const auto texts = found();
    ASSERT_EQ(texts.size(), 2U);  // up and down
    EXPECT_THAT(texts[0], testing::StartsWith("Jump A Tavg 12-12: Tavg goes from "));
    EXPECT_THAT(texts[1], testing::StartsWith("Jump A Tavg 13-13: Tavg goes from 40 to "));
    setting.english = true;  // 36 °F
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DataCheckTest, FindsJumpsOfTheDischargeThatAreLargeAndSteep) {
    value("Runoff", 1, 12) = 90.0;
    const auto texts = found();
    ASSERT_EQ(texts.size(), 2U);
    EXPECT_THAT(texts[0], testing::StartsWith("Jump A Runoff 12-12: Runoff goes from "));
    value("Runoff", 1, 12) = 21.0;  // less than five times as much
    EXPECT_THAT(found(), IsEmpty());
    value("Runoff", 2, 12) = 90.0;  // no discharge of the basin
    EXPECT_THAT(found(), IsEmpty());
}

TEST_F(DataCheckTest, FindsValuesThatStandStill) {
    for (int day = 4; day < 8; ++day) value("Tavg", 1, day) = 6.0;
    for (int day = 20; day < 29; ++day) value("Runoff", 1, day) = 5.0;
    EXPECT_THAT(found(), IsEmpty());  // 4 and 9 days
    value("Tavg", 1, 8) = 6.0;
    value("Runoff", 1, 29) = 5.0;
    EXPECT_THAT(found(), ElementsAre("Constant A Tavg 4-8: Tavg is 6 on 5 days on end.",
                                     "Constant A Runoff 20-29: Runoff is 5 on 10 days on end."));
    for (int day = 4; day < 9; ++day) value("Tavg", 1, day) = 0.0;  // a value that was not measured
    EXPECT_EQ(found().size(), 1U);
}

TEST_F(DataCheckTest, FindsADischargeOfZero) {
    value("Runoff", 1, 0) = value("Runoff", 1, 1) = value("Runoff", 2, 5) = 0.0;
    EXPECT_THAT(found(),
                ElementsAre("Discharge of zero A Runoff 0-1: The measured discharge is 0 on 2 days."));
}

TEST_F(DataCheckTest, KeepsAllFindingsInLittleRoom) {
    DailyRows many;
    many.fields.resize(k_checked_fields.size());
    for (int day = 0; day < 25000; ++day) {
        many.zone.push_back(1);
        many.date.push_back(10000 + day);
        for (std::size_t field = 0; field < 6; ++field)
            many.fields[field].push_back(field == 3 && day % 2 == 0 ? as_double(k_missing) : 0.0);
    }
    for (double& discharge : many.fields[5]) discharge = as_double(k_missing);
    const DataCheck check = check_daily_rows(many, setting);
    EXPECT_EQ(check.findings.size(), 12501U);  // and zone B without rows
    EXPECT_LE(sizeof(DataFinding), 20U);
}

TEST_F(DataCheckTest, FindsDaysWithMoreThanOneRow) {
    double_row(2, 6);
    double_row(2, 5);
    double_row(1, 39);
    double_row(1, 39);  // three rows on a day
    double_row(1, 0);
    double_row(1, 2);  // the day between has one row
    EXPECT_THAT(found(), ElementsAre("Doubled row A  0-0: The zone has more than one row on 1 day.",
                                     "Doubled row A  2-2: The zone has more than one row on 1 day.",
                                     "Doubled row A  39-39: The zone has more than one row on 1 day.",
                                     "Doubled row B  5-6: The zone has more than one row on 2 days."));
}

TEST_F(DataCheckTest, TellsTheSnowCoverInWords) {
    value("SCA", 1, 5) = as_double(k_missing);
    EXPECT_THAT(found(), ElementsAre("Missing value A SCA 5-5: The snow cover has no value on 1 day."));
}

TEST_F(DataCheckTest, AFindingCoversTheCellsOfItsDaysAndField) {
    value("Tavg", 2, 5) = value("Tavg", 2, 6) = as_double(k_missing);
    const DataFinding finding = check_daily_rows(rows, setting).findings.at(0);
    EXPECT_TRUE(covers(finding, {2, k_start + 5, "Tavg"}));
    EXPECT_TRUE(covers(finding, {2, k_start + 6, "tavg"}));
    EXPECT_FALSE(covers(finding, {2, k_start + 4, "Tavg"}));
    EXPECT_FALSE(covers(finding, {2, k_start + 7, "Tavg"}));
    EXPECT_FALSE(covers(finding, {1, k_start + 5, "Tavg"}));
    EXPECT_FALSE(covers(finding, {2, k_start + 5, "Precip"}));
}

}  // namespace
}  // namespace nivora
