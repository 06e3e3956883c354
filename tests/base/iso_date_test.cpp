#include "base/iso_date.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(ReadIsoDate, TakesYearMonthAndDayWithAllTheirDigits) {
    EXPECT_EQ(read_iso_date("2000-01-01"), 36526);
    EXPECT_EQ(read_iso_date("1996-04-01"), day_count({1996, 4, 1}));
    EXPECT_EQ(read_iso_date("1996-4-01"), std::nullopt);
    EXPECT_EQ(read_iso_date("1996-04-1"), std::nullopt);
    EXPECT_EQ(read_iso_date("96-04-01"), std::nullopt);
}

TEST(ReadIsoDate, IgnoresBlanksAroundTheDateOnly) {
    EXPECT_EQ(read_iso_date(" 2000-01-01\t"), 36526);
    EXPECT_EQ(read_iso_date("2000- 01-01"), std::nullopt);
    EXPECT_EQ(read_iso_date("2000-01-01 12:00"), std::nullopt);
}

TEST(ReadIsoDate, RefusesTheOtherFormThatABoxTakes) {
    EXPECT_TRUE(read_date("4/1/1996"));
    EXPECT_EQ(read_iso_date("4/1/1996"), std::nullopt);
    EXPECT_EQ(read_iso_date("04/01/1996"), std::nullopt);
}

TEST(ReadIsoDate, RefusesDaysThatDoNotExistAndYearsOutOfRange) {
    EXPECT_EQ(read_iso_date("2001-02-29"), std::nullopt);
    EXPECT_EQ(read_iso_date("2000-02-29"), 36585);
    EXPECT_EQ(read_iso_date("1899-12-31"), std::nullopt);
    EXPECT_EQ(read_iso_date("2301-01-01"), std::nullopt);
    EXPECT_EQ(read_iso_date(""), std::nullopt);
    EXPECT_EQ(read_iso_date("today"), std::nullopt);
}

}  // namespace
}  // namespace nivora
