#include "store/daily_fields.h"

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
using testing::IsEmpty;

constexpr std::size_t k_an = 0;
constexpr std::size_t k_rca = 1;
constexpr std::size_t k_x = 2;

/// Days 100 to 102 of zone 1 in a parameter table, stored in reverse, and day 100 of zone 2.
class DailyFieldsTest : public testing::Test {
protected:
    DailyFieldsTest() {
        database_.create_table(parameter_table("Wet"));
        const std::vector<ParameterRow> rows{{.zone = 1, .date = 102, .an = 0.75F, .rca = 0, .xcoeff = 1.5},
                                             {.zone = 1, .date = 101, .rca = {}},
                                             {.zone = 1, .date = 100, .an = 0.5F, .rca = 1, .xcoeff = 1.25},
                                             {.zone = 2, .date = 100, .an = 9.0F, .rca = {}}};
        add_rows<ParameterRow>(database_, parameter_table("Wet"), rows);
    }

    [[nodiscard]] DailyFields fields(const std::optional<Period>& period = {}) {
        return {database_, selection(period)};
    }
    [[nodiscard]] static DailySelection selection(const std::optional<Period>& period) {
        return {
            .table = "wet",
            .fields = {{"An", FieldType::Single}, {"RCA", FieldType::Integer}, {"Xcoeff", FieldType::Double}},
            .period = period};
    }

    [[nodiscard]] std::vector<std::string> stored(const std::string& field) const {
        return file_.column("SELECT " + field + " FROM Wet ORDER BY rowid");
    }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
};

TEST_F(DailyFieldsTest, ReadTheDaysOfAZoneInDateOrderWithTheirRowNumbers) {
    const ZoneDays days = fields().read(1);
    EXPECT_THAT(days.dates, ElementsAre(100, 101, 102));
    EXPECT_THAT(days.rows, ElementsAre(3, 2, 1));
    ASSERT_EQ(days.values.size(), 9U);  // three fields a day
    EXPECT_EQ(days.values[0], 0.5);
    EXPECT_EQ(days.values[1], 1.0);
    EXPECT_EQ(days.values[2], 1.25);
    EXPECT_EQ(days.values[6], 0.75);
    EXPECT_THAT(fields().read(3).dates, IsEmpty());
}

TEST_F(DailyFieldsTest, AMissingValueIsNaN) {
    const ZoneDays days = fields().read(1);
    for (const std::size_t value : {3U, 4U, 5U}) EXPECT_TRUE(std::isnan(days.values.at(value))) << value;
}

TEST_F(DailyFieldsTest, RowsOfOneDayComeInStoredOrder) {
    database_.execute("INSERT INTO Wet (Zone, Date) VALUES (1, 100)");
    EXPECT_THAT(fields().read(1).rows, ElementsAre(3, 5, 2, 1));
}

TEST_F(DailyFieldsTest, BothEndsOfAPeriodAreInItEvenWithATimePart) {
    database_.execute("UPDATE Wet SET Date = 101.75 WHERE rowid = 2");
    EXPECT_THAT(fields(Period{101, 101}).read(1).dates, ElementsAre(101));
    EXPECT_THAT(fields(Period{100, 101}).read(1).dates, ElementsAre(100, 101));
    EXPECT_THAT(fields(Period{103, 200}).read(1).dates, IsEmpty());
}

TEST_F(DailyFieldsTest, WithVariablesOnlyDaysOfBothTablesAreRead) {
    const PhysicalRow row{.zone = 1, .date = 102, .runoff = 7.0F};
    add_rows<PhysicalRow>(database_, template_table(k_physical_data), std::span{&row, 1});
    DailyFields both{database_,
                     {.table = "Wet",
                      .fields = {{"Runoff", FieldType::Single}, {"An", FieldType::Single}},
                      .period = {},
                      .with_variables = true}};
    const ZoneDays days = both.read(1);
    EXPECT_THAT(days.dates, ElementsAre(102));
    EXPECT_THAT(days.values, ElementsAre(7.0, 0.75));
}

TEST_F(DailyFieldsTest, AValueIsStoredInItsRowAlone) {
    DailyFields wet = fields();
    wet.store(2, k_an, 4.5);
    wet.store(1, k_an, std::nan(""));
    wet.store(3, k_rca, 0.0);
    wet.store(77, k_an, 1.0);  // no such row
    EXPECT_THAT(stored("An"), ElementsAre("Null", "4.5", "0.5", "9.0"));
    EXPECT_THAT(stored("RCA"), ElementsAre("0", "Null", "0", "Null"));
    EXPECT_EQ(refused([&] { wet.store(1, k_x, std::numeric_limits<double>::infinity()); }),
              StoreFault::Value);
}

TEST_F(DailyFieldsTest, AChangeAffectsOneZoneAndPeriodAndLeavesMissingValues) {
    DailyFields wet = fields();
    wet.change(1, {100, 101}, k_an, MassEdit::Add, 1.0);
    EXPECT_THAT(stored("An"), ElementsAre("0.75", "Null", "1.5", "9.0"));
    wet.change(1, {100, 102}, k_an, MassEdit::Multiply, 2.0);
    EXPECT_THAT(stored("An"), ElementsAre("1.5", "Null", "3.0", "9.0"));
}

TEST_F(DailyFieldsTest, AChangeRoundsASingleAndAnIntegerButNoDouble) {
    DailyFields wet = fields();
    wet.change(1, {100, 100}, k_an, MassEdit::Add, 0.1);
    wet.change(1, {100, 100}, k_x, MassEdit::Add, 0.1);
    wet.change(1, {100, 102}, k_rca, MassEdit::Add, 0.5);  // 1.5 becomes 2, 0.5 becomes 0
    const ZoneDays days = wet.read(1);
    EXPECT_EQ(days.values[0], static_cast<double>(0.6F));
    EXPECT_EQ(days.values[2], 1.35);
    EXPECT_EQ(days.values[1], 2.0);
    EXPECT_EQ(days.values[7], 0.0);
}

TEST_F(DailyFieldsTest, AResultThatExceedsItsFieldIsRefusedAtOnceOrWhenItIsRead) {
    DailyFields wet = fields();
    EXPECT_TRUE(refused([&] { wet.change(1, {100, 102}, k_an, MassEdit::Multiply, 1e39); }).has_value());
    wet.change(1, {100, 102}, k_rca, MassEdit::Multiply, 40000.0);
    EXPECT_EQ(refused([&] { static_cast<void>(wet.read(1)); }), StoreFault::Value);
}

TEST_F(DailyFieldsTest, AMissingTableOrFieldAndATextAreRefused) {
    EXPECT_EQ(refused([&] {
                  DailyFields none{database_, {.table = "none", .fields = {}, .period = {}}};
              }),
              StoreFault::Missing);
    DailyFields wrong{database_, {.table = "Wet", .fields = {{"Runoff", FieldType::Single}}, .period = {}}};
    EXPECT_EQ(refused([&] { static_cast<void>(wrong.read(1)); }), StoreFault::Statement);
    database_.execute("UPDATE Wet SET An = 'much' WHERE rowid = 2");
    EXPECT_EQ(refused([&] { static_cast<void>(fields().read(1)); }), StoreFault::Value);
}

/// Days of the daily variables as they are visited: zone, day and discharge.
class VisitDays : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> visited(int last_zone) {
        std::vector<std::string> days;
        const std::vector<Field> runoff{{"Runoff", FieldType::Single}};
        visit_days(
            database_, k_physical_data, runoff, last_zone,
            [&](int zone, DayCount day, std::span<const double> values) {
                const std::string value = std::isnan(values[0]) ? "-" : std::to_string(values[0]);
                days.push_back(std::to_string(zone) + "/" + std::to_string(day) + " " + value.substr(0, 3));
            });
        return days;
    }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
};

TEST_F(VisitDays, GoesZoneByZoneAndDayByDayUpToTheLastZone) {
    database_.execute(
        "INSERT INTO PhysicalData (Zone, Date, Runoff) VALUES (2, 100, 4), (1, 101, 3), (1, 100, NULL), "
        "(3, 100, 9), (0, 100, 9), (1, NULL, 9), (1, 101, 2)");
    EXPECT_THAT(visited(2), ElementsAre("1/100 -", "1/101 3.0", "1/101 2.0", "2/100 4.0"));
}

TEST_F(VisitDays, OfAMissingTableOrWithATextIsRefused) {
    EXPECT_EQ(
        refused([&] { visit_days(database_, "none", {}, 1, [](int, DayCount, std::span<const double>) {}); }),
        StoreFault::Missing);
    database_.execute("INSERT INTO PhysicalData (Zone, Date, Runoff) VALUES (1, 100, 'much')");
    EXPECT_EQ(refused([&] { static_cast<void>(visited(1)); }), StoreFault::Value);
}

}  // namespace
}  // namespace nivora
