#include "store/daily_writer.h"

#include "store/table_io.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;

class DailyWriterTest : public testing::Test {
protected:
    [[nodiscard]] std::vector<std::string> stored(const std::string& expression) const {
        return file_.column("SELECT " + expression + " FROM PhysicalData ORDER BY rowid");
    }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
};

TEST_F(DailyWriterTest, AddsDaysWithTheSameValuesAndNullElsewhere) {
    const std::array<FieldValue, 2> values{{{"Runoff", 1.5}, {"SCA", std::nan("")}}};
    DailyWriter writer{database_, "physicaldata", values};
    writer.add(2, 101);
    writer.add(1, 100);
    EXPECT_THAT(stored("Zone || '/' || Date"), ElementsAre("2/101", "1/100"));
    EXPECT_THAT(stored("Runoff"), ElementsAre("1.5", "1.5"));
    EXPECT_THAT(stored("SCA"), ElementsAre("Null", "Null"));
    EXPECT_THAT(stored("Tmax"), ElementsAre("Null", "Null"));
}

TEST_F(DailyWriterTest, AddsDaysWithoutValues) {
    DailyWriter writer{database_, k_physical_data, {}};
    writer.add(1, 100);
    writer.overwrite(1);  // no fields to write
    EXPECT_THAT(stored("Runoff"), ElementsAre("Null"));
}

TEST_F(DailyWriterTest, OverwritesItsFieldsOfARowAndNoOther) {
    database_.execute(
        "INSERT INTO PhysicalData (Zone, Date, Runoff, Tmax) VALUES (1, 100, 1, 8), (1, 101, 2, 9)");
    const std::array<FieldValue, 1> values{{{"Runoff", 5.0}}};
    DailyWriter writer{database_, k_physical_data, values};
    writer.overwrite(2);
    writer.overwrite(77);  // no such row
    EXPECT_THAT(stored("Runoff"), ElementsAre("1.0", "5.0"));
    EXPECT_THAT(stored("Tmax"), ElementsAre("8.0", "9.0"));
}

TEST_F(DailyWriterTest, AnIntegerFieldHoldsAWholeNumber) {
    database_.create_table(parameter_table("Wet"));
    const std::array<FieldValue, 2> values{{{"RCA", 1.0}, {"LagTime", 18.0}}};
    DailyWriter{database_, "Wet", values}.add(1, 100);
    EXPECT_THAT(file_.column("SELECT typeof(RCA) || ' ' || RCA FROM Wet"), ElementsAre("integer 1"));
    EXPECT_THAT(file_.column("SELECT LagTime FROM Wet"), ElementsAre("18.0"));
}

TEST_F(DailyWriterTest, AMissingTableOrFieldAndAnInfiniteValueAreRefused) {
    const auto write = [&](const char* table, const char* field, double value) {
        const std::array<FieldValue, 1> values{{{field, value}}};
        return refused([&] { const DailyWriter writer{database_, table, values}; });
    };
    EXPECT_EQ(write("none", "Runoff", 1.0), StoreFault::Missing);
    EXPECT_EQ(write("PhysicalData", "An", 1.0), StoreFault::Statement);
    EXPECT_EQ(write("PhysicalData", "Runoff", std::numeric_limits<double>::infinity()), StoreFault::Value);
    EXPECT_EQ(write("PhysicalData", "Runoff", 1.0), std::nullopt);
}

}  // namespace
}  // namespace nivora
