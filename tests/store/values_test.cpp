#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace nivora {
namespace {

using std::literals::string_literals::operator""s;

constexpr double k_infinity = std::numeric_limits<double>::infinity();

/// A table of one row with a field of each kind, filled past the store.
class OneRow {
public:
    OneRow() {
        file_.change(
            "CREATE TABLE One (i SMALLINT, l INTEGER, s FLOAT, d DOUBLE, t DATE, x TEXT(3));"
            "INSERT INTO One VALUES (Null, Null, Null, Null, Null, Null)");
    }

    /// Puts the value of an SQL expression into a field and reads it back through the store.
    template <typename Value>
    Value read(const std::string& field, const std::string& expression) const {
        file_.change("UPDATE One SET " + field + " = " + expression);
        BasinDatabase database = file_.open(Access::ReadOnly);
        return guarded([&] {
            SQLite::Statement row{database.sql(), "SELECT " + field + " FROM One"};
            row.executeStep();
            Value value{};
            read_value(row, 0, value);
            return value;
        });
    }

    /// How that ends where the store refuses the value.
    template <typename Value>
    std::optional<StoreFault> refusal(const std::string& field, const std::string& expression) const {
        return refused([&] { static_cast<void>(read<Value>(field, expression)); });
    }

    /// Writes a value through the store and gives back how the file keeps it.
    template <typename Value>
    std::string written(const std::string& field, const Value& value) const {
        {
            BasinDatabase database = file_.open();
            guarded([&] {
                SQLite::Statement update{database.sql(), "UPDATE One SET " + field + " = ?"};
                bind_value(update, 1, value);
                update.exec();
            });
        }
        return file_.column("SELECT " + field + " FROM One").at(0);
    }

    [[nodiscard]] const BasinFile& file() const { return file_; }

private:
    BasinFile file_;
};

TEST(IntegerField, HoldsWhatSixteenBitsHold) {
    const OneRow row;
    EXPECT_EQ(row.read<std::int16_t>("i", "32767"), 32767);
    EXPECT_EQ(row.read<std::int16_t>("i", "-32768"), -32768);
    EXPECT_EQ(row.read<std::int16_t>("i", "12.0"), 12);
    EXPECT_EQ(row.read<std::int16_t>("i", "'12'"), 12);  // the field turns a number written as text into one
}

TEST(IntegerField, RefusesALargerNumberInsteadOfWrappingIt) {
    const OneRow row;
    for (const char* number : {"32768", "-32769", "65536", "4294967296", "1e300", "-1e300", "9e999"}) {
        EXPECT_EQ(row.refusal<std::int16_t>("i", number), StoreFault::Value) << number;
        EXPECT_EQ(row.refusal<std::optional<std::int16_t>>("i", number), StoreFault::Value) << number;
    }
}

TEST(IntegerField, RefusesAFraction) {
    const OneRow row;
    EXPECT_EQ(row.refusal<std::int16_t>("i", "1.5"), StoreFault::Value);
}

TEST(LongField, HoldsWhatThirtyTwoBitsHold) {
    const OneRow row;
    EXPECT_EQ(row.read<std::int32_t>("l", "2147483647"), 2147483647);
    EXPECT_EQ(row.read<std::int32_t>("l", "-2147483648"), std::numeric_limits<std::int32_t>::min());
    EXPECT_EQ(row.refusal<std::int32_t>("l", "2147483648"), StoreFault::Value);
    EXPECT_EQ(row.refusal<std::int32_t>("l", "-2147483649"), StoreFault::Value);
}

TEST(SingleField, RoundsWhatItHolds) {
    const OneRow row;
    EXPECT_EQ(row.read<float>("s", "0.1"), 0.1F);
    EXPECT_EQ(row.read<float>("s", "16777217"), 16777216.0F);
    EXPECT_EQ(row.read<float>("s", "1e-50"), 0.0F);
    EXPECT_EQ(row.read<float>("s", "3.4028234663852886e38"), std::numeric_limits<float>::max());
}

TEST(SingleField, RefusesWhatNoSingleHolds) {
    const OneRow row;
    for (const char* number : {"3.5e38", "-3.5e38", "1e300", "9e999", "-9e999"}) {
        EXPECT_EQ(row.refusal<float>("s", number), StoreFault::Value) << number;
    }
}

TEST(DoubleField, HoldsEveryDoubleButAnInfiniteOne) {
    const OneRow row;
    EXPECT_EQ(row.read<double>("d", "1e300"), 1e300);
    EXPECT_EQ(row.read<double>("d", "7"), 7.0);
    EXPECT_EQ(row.refusal<double>("d", "9e999"), StoreFault::Value);
    EXPECT_EQ(row.refusal<double>("d", "-9e999"), StoreFault::Value);
    EXPECT_EQ(row.refusal<std::optional<double>>("d", "9e999"), StoreFault::Value);
}

TEST(DateField, DropsTheTimePartOfADay) {
    const OneRow row;
    EXPECT_EQ(row.read<DayCount>("t", "36526"), 36526);
    EXPECT_EQ(row.read<DayCount>("t", "36526.75"), 36526);
    EXPECT_EQ(row.read<double>("t", "36526.75"), 36526.75);
}

TEST(DateField, RefusesWhatIsNotADate) {
    const OneRow row;
    for (const char* date : {"1e7", "-1e7", "1e300", "9e999", "'2000-01-01'", "'1/1/2000'"}) {
        EXPECT_EQ(row.refusal<DayCount>("t", date), StoreFault::Value) << date;
        EXPECT_EQ(row.refusal<std::optional<DayCount>>("t", date), StoreFault::Value) << date;
    }
}

TEST(NumberField, RefusesTextAndAnythingElseThatIsNotANumber) {
    const OneRow row;
    for (const char* value : {"'warm'", "''", "'1,5'", "x'00'", "x'312e35'"}) {
        EXPECT_EQ(row.refusal<std::int16_t>("i", value), StoreFault::Value) << value;
        EXPECT_EQ(row.refusal<std::int32_t>("l", value), StoreFault::Value) << value;
        EXPECT_EQ(row.refusal<float>("s", value), StoreFault::Value) << value;
        EXPECT_EQ(row.refusal<double>("d", value), StoreFault::Value) << value;
        EXPECT_EQ(row.refusal<DayCount>("t", value), StoreFault::Value) << value;
        EXPECT_EQ(row.refusal<Distribution>("i", value), StoreFault::Value) << value;
    }
}

TEST(RefusedValue, IsNamedByItsField) {
    const OneRow row;
    EXPECT_EQ(refusal_text([&] { row.read<float>("s", "'warm'"); }),
              "The field 's' holds text instead of a number.");
    EXPECT_EQ(refusal_text([&] { row.read<std::int16_t>("i", "32768"); }),
              "The field 'i' holds a number that is out of range.");
}

TEST(DistributionField, IsZeroOrOne) {
    const OneRow row;
    EXPECT_EQ(row.read<Distribution>("i", "0"), Distribution::Basinwide);
    EXPECT_EQ(row.read<Distribution>("i", "1"), Distribution::ByZone);
    for (const char* code : {"2", "-1", "0.5", "32768"}) {
        EXPECT_EQ(row.refusal<Distribution>("i", code), StoreFault::Value) << code;
    }
}

TEST(NullField, IsAMissingValue) {
    const OneRow row;
    EXPECT_TRUE(std::isnan(row.read<float>("s", "Null")));
    EXPECT_TRUE(std::isnan(row.read<double>("d", "Null")));
    EXPECT_EQ(row.read<std::optional<std::int16_t>>("i", "Null"), std::nullopt);
    EXPECT_EQ(row.read<std::optional<std::int32_t>>("l", "Null"), std::nullopt);
    EXPECT_EQ(row.read<std::optional<float>>("s", "Null"), std::nullopt);
    EXPECT_EQ(row.read<std::optional<double>>("d", "Null"), std::nullopt);
    EXPECT_EQ(row.read<std::optional<DayCount>>("t", "Null"), std::nullopt);
    EXPECT_EQ(row.read<std::optional<std::string>>("x", "Null"), std::nullopt);
    EXPECT_EQ(row.read<std::optional<Distribution>>("i", "Null"), std::nullopt);
}

TEST(NullField, IsZeroOrEmptyIfThereIsNoMissingForm) {
    const OneRow row;
    EXPECT_EQ(row.read<std::int16_t>("i", "Null"), 0);
    EXPECT_EQ(row.read<std::int32_t>("l", "Null"), 0);
    EXPECT_EQ(row.read<DayCount>("t", "Null"), 0);
    EXPECT_EQ(row.read<std::string>("x", "Null"), "");
}

TEST(TextField, KeepsEveryCharacter) {
    const OneRow row;
    const std::string text = "it's \"100%\"\r\n\0\u00D6\U0001F3D4"s;
    row.written("x", text);
    BasinDatabase database = row.file().open(Access::ReadOnly);
    SQLite::Statement query{database.sql(), "SELECT x FROM One"};
    query.executeStep();
    std::string back;
    read_value(query, 0, back);
    EXPECT_EQ(back, text);
}

TEST(TextField, TellsAnEmptyTextFromAMissingOne) {
    const OneRow row;
    EXPECT_EQ(row.read<std::optional<std::string>>("x", "''"), "");
    EXPECT_EQ(row.written("x", std::optional<std::string>{""}), "");
    EXPECT_EQ(row.written("x", std::optional<std::string>{}), "Null");
}

TEST(WrittenNumber, ThatIsMissingIsNull) {
    const OneRow row;
    EXPECT_EQ(row.written("s", k_missing), "Null");
    EXPECT_EQ(row.written("d", std::nan("")), "Null");
    EXPECT_EQ(row.written("i", std::optional<std::int16_t>{}), "Null");
    EXPECT_EQ(row.written("d", std::optional<double>{}), "Null");
    EXPECT_EQ(row.written("d", std::optional<double>{std::nan("")}), "Null");
}

TEST(WrittenNumber, ThatIsANegativeZeroComesBackAsZero) {
    const OneRow row;
    EXPECT_EQ(row.written("s", -0.0F), "0.0");
    EXPECT_EQ(row.written("d", -0.0), "0.0");
    EXPECT_FALSE(std::signbit(row.read<double>("d", "-0.0")));
    EXPECT_FALSE(std::signbit(row.read<float>("s", "-0.0")));
}

TEST(BoundNumber, IsNeverANegativeZero) {
    const BasinFile file;
    BasinDatabase database = file.open(Access::ReadOnly);
    SQLite::Statement query{database.sql(), "SELECT ?"};
    bind_value(query, 1, -0.0);
    ASSERT_TRUE(query.executeStep());
    EXPECT_FALSE(std::signbit(query.getColumn(0).getDouble()));
}

TEST(WrittenNumber, ThatIsInfiniteIsRefused) {
    const OneRow row;
    row.written("d", 1.5);
    row.written("s", 1.5F);
    EXPECT_EQ(refused([&] { row.written("d", k_infinity); }), StoreFault::Value);
    EXPECT_EQ(refused([&] { row.written("d", -k_infinity); }), StoreFault::Value);
    EXPECT_EQ(refused([&] { row.written("s", std::numeric_limits<float>::infinity()); }), StoreFault::Value);
    EXPECT_EQ(row.file().column("SELECT d || ' ' || s FROM One"), std::vector<std::string>{"1.5 1.5"});
}

TEST(WrittenNumber, ThatIsASingleKeepsItsBits) {
    const OneRow row;
    for (const float value : {0.1F, 1.0F / 3.0F, 16777216.0F, std::numeric_limits<float>::max(),
                              std::numeric_limits<float>::denorm_min(), -2.5F}) {
        row.written("s", value);
        EXPECT_EQ(row.read<float>("s", "s"), value);
        EXPECT_EQ(row.read<double>("s", "s"), static_cast<double>(value));
    }
}

TEST(WrittenNumber, ThatIsADoubleKeepsItsBits) {
    const OneRow row;
    for (const double value : {0.1, 1.0 / 3.0, 1e300, std::numeric_limits<double>::denorm_min(), -2.5}) {
        row.written("d", value);
        EXPECT_EQ(row.read<double>("d", "d"), value);
    }
}

}  // namespace
}  // namespace nivora
