#include "base/calendar.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace nivora {
namespace {

constexpr double k_second = 1.0 / 86400.0;

// 1900-01-01 is day 2; 100 years later, with the 24 leap years 1904 to 1996: 2 + 36500 + 24 = 36526.
constexpr DayCount k_new_year_2000 = 36526;

TEST(DayCount, IsZeroOnTheThirtiethOfDecember1899) {
    EXPECT_EQ(day_count({1899, 12, 30}), 0);
    EXPECT_EQ(civil_date(0), (CivilDate{1899, 12, 30}));
}

TEST(DayCount, OfKnownDays) {
    EXPECT_EQ(day_count({1899, 12, 31}), 1);
    EXPECT_EQ(day_count({1900, 1, 1}), 2);
    EXPECT_EQ(day_count({1899, 12, 29}), -1);
    EXPECT_EQ(day_count({2000, 1, 1}), k_new_year_2000);
    // 100 years after 2000-01-01, with the 25 leap years 2000 to 2096: 36526 + 36500 + 25 = 73051.
    EXPECT_EQ(day_count({2100, 1, 1}), 73051);
    // 2300-01-01 is 200 years after 2100-01-01, with 48 leap years (2104 to 2296 without 2200), and
    // 2300-12-31 is 364 days later: 73051 + 73000 + 48 + 364 = 146463.
    EXPECT_EQ(day_count({2300, 12, 31}), 146463);
}

TEST(DayCount, FebruaryOf1900And2100Has28DaysAndOf2000Has29) {
    EXPECT_EQ(day_count({1900, 2, 29}), std::nullopt);
    EXPECT_EQ(day_count({2100, 2, 29}), std::nullopt);
    // In a leap year 1 March comes 60 days after 1 January, one day more than in
    // other years; the day before is the 29th.
    EXPECT_EQ(day_count({2000, 2, 29}), k_new_year_2000 + 59);
    EXPECT_EQ(day_count({2000, 3, 1}), k_new_year_2000 + 60);
    EXPECT_EQ(*day_count({1900, 3, 1}) - *day_count({1900, 2, 28}), 1);
    EXPECT_EQ(*day_count({2100, 3, 1}) - *day_count({2100, 2, 28}), 1);
    EXPECT_EQ(*day_count({2004, 3, 1}) - *day_count({2004, 2, 28}), 2);
}

TEST(DayCount, OfADayThatDoesNotExistIsNothing) {
    for (const CivilDate& date :
         {CivilDate{2001, 0, 1}, CivilDate{2001, 13, 1}, CivilDate{2001, -1, 1}, CivilDate{2001, 1, 0},
          CivilDate{2001, 1, 32}, CivilDate{2001, 1, -1}, CivilDate{2001, 4, 31}, CivilDate{2001, 2, 29},
          CivilDate{2001, 6, 31}, CivilDate{2001, 9, 31}, CivilDate{2001, 11, 31}, CivilDate{2001, 257, 1},
          CivilDate{2001, 1, 257}}) {
        EXPECT_EQ(day_count(date), std::nullopt) << date.year << '-' << date.month << '-' << date.day;
    }
}

// Steps from day to day by the calendar rules as written out here, independent of the library's own.
TEST(DayCount, GoesByOneFromTheFirstYearToTheLast) {
    CivilDate date{1900, 1, 1};
    std::array<int, 13> lengths{0, 31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
    int ordinal = 1;
    for (DayCount day = 2; day <= 146463; ++day) {
        ASSERT_EQ(civil_date(day), date) << day;
        ASSERT_EQ(day_count(date), day);
        ASSERT_EQ(day_of_year(day), ordinal) << day;
        const bool leap = date.year % 400 == 0 || (date.year % 4 == 0 && date.year % 100 != 0);
        lengths[2] = leap ? 29 : 28;
        ++ordinal;
        if (++date.day <= lengths.at(static_cast<std::size_t>(date.month))) continue;
        date.day = 1;
        if (++date.month <= 12) continue;
        date.month = 1;
        ++date.year;
        ordinal = 1;
    }
    EXPECT_EQ(date, (CivilDate{2301, 1, 1}));
}

TEST(DayOfYear, CountsTheLeapDay) {
    EXPECT_EQ(day_of_year(*day_count({2001, 1, 1})), 1);
    EXPECT_EQ(day_of_year(*day_count({2001, 3, 1})), 60);    // 31 + 28 + 1
    EXPECT_EQ(day_of_year(*day_count({2004, 3, 1})), 61);    // 31 + 29 + 1
    EXPECT_EQ(day_of_year(*day_count({2001, 10, 1})), 274);  // 365 - 31 - 30 - 31 + 1
    EXPECT_EQ(day_of_year(*day_count({2001, 12, 31})), 365);
    EXPECT_EQ(day_of_year(*day_count({2004, 12, 31})), 366);
    EXPECT_EQ(day_of_year(*day_count({1900, 12, 31})), 365);
}

TEST(WholeDay, DropsTheTimePart) {
    EXPECT_EQ(whole_day(36526.0), 36526);
    EXPECT_EQ(whole_day(36526.5), 36526);
    EXPECT_EQ(whole_day(36526.999999), 36526);
    EXPECT_EQ(whole_day(0.25), 0);
}

TEST(WholeDay, OfADateOutOfRangeIsTheLargestOne) {
    EXPECT_EQ(whole_day(1e300), 1000000);
    EXPECT_EQ(whole_day(-1e300), -1000000);
    EXPECT_EQ(whole_day(std::numeric_limits<double>::quiet_NaN()), 1000000);
    EXPECT_EQ(whole_day(1000000.0), 1000000);
}

TEST(DateText, HasTwoDigitsForMonthAndDayInTheLongForm) {
    EXPECT_EQ(long_date_text(k_new_year_2000), "01/01/2000");
    EXPECT_EQ(long_date_text(0), "12/30/1899");
    EXPECT_EQ(long_date_text(146463), "12/31/2300");
}

TEST(DateText, HasNoLeadingZerosInTheShortForm) {
    EXPECT_EQ(short_date_text(k_new_year_2000), "1/1/2000");
    EXPECT_EQ(short_date_text(k_new_year_2000 + 31 + 8), "2/9/2000");
    EXPECT_EQ(short_date_text(146463), "12/31/2300");
}

TEST(DateText, BeginsWithTheYearInTheIsoForm) {
    EXPECT_EQ(iso_date_text(k_new_year_2000 + 31 + 8), "2000-02-09");
    EXPECT_EQ(iso_date_text(0), "1899-12-30");
}

TEST(MomentText, HasNoTimeAtMidnight) { EXPECT_EQ(iso_moment_text(36526.0), "2000-01-01"); }

TEST(MomentText, HasTheTimeOfAnyOtherMoment) {
    EXPECT_EQ(iso_moment_text(36526.5), "2000-01-01T12:00:00");
    EXPECT_EQ(iso_moment_text(36526.25 + 61 * k_second), "2000-01-01T06:01:01");
    EXPECT_EQ(iso_moment_text(36526.0 + k_second), "2000-01-01T00:00:01");
}

TEST(MomentText, OfLessThanHalfASecondIsMidnight) {
    EXPECT_EQ(iso_moment_text(36526.0 + 0.4 * k_second), "2000-01-01");
}

TEST(MomentText, OfTheLastHalfSecondStaysInItsDay) {
    EXPECT_EQ(iso_moment_text(36526.0 + 86399.6 * k_second), "2000-01-01T23:59:59");
}

TEST(TimeText, ReadsTwelveAtMidnightAndAtNoon) {
    EXPECT_EQ(time_text(36526.0), "12:00:00 AM");
    EXPECT_EQ(time_text(36526.5), "12:00:00 PM");
    EXPECT_EQ(time_text(0.0), "12:00:00 AM");
    EXPECT_EQ(time_text(0.5 + 3599 * k_second), "12:59:59 PM");
    EXPECT_EQ(time_text(3599 * k_second), "12:59:59 AM");
}

TEST(TimeText, ChangesToPmAtNoon) {
    EXPECT_EQ(time_text(43199 * k_second), "11:59:59 AM");
    EXPECT_EQ(time_text(43200 * k_second), "12:00:00 PM");
    EXPECT_EQ(time_text(46800 * k_second), "1:00:00 PM");
}

TEST(TimeText, HasNoLeadingZeroForTheHourAndTwoDigitsAfterIt) {
    EXPECT_EQ(time_text(36526.0 + (3600 + 120 + 3) * k_second), "1:02:03 AM");
    EXPECT_EQ(time_text(36526.75), "6:00:00 PM");
}

TEST(TimeText, RoundsToTheSecond) {
    EXPECT_EQ(time_text(0.4 * k_second), "12:00:00 AM");
    EXPECT_EQ(time_text(0.6 * k_second), "12:00:01 AM");
    EXPECT_EQ(time_text(43199.6 * k_second), "12:00:00 PM");
}

TEST(TimeText, NeverRoundsIntoTheNextDay) {
    EXPECT_EQ(time_text(36526.0 + 86399.4 * k_second), "11:59:59 PM");
    EXPECT_EQ(time_text(36526.0 + 86399.6 * k_second), "11:59:59 PM");
}

TEST(ReadDate, TakesOneOrTwoDigitsForMonthAndDay) {
    EXPECT_EQ(read_date("1/1/2000"), k_new_year_2000);
    EXPECT_EQ(read_date("01/01/2000"), k_new_year_2000);
    EXPECT_EQ(read_date("1/01/2000"), k_new_year_2000);
    EXPECT_EQ(read_date("2/9/2000"), k_new_year_2000 + 31 + 8);
    EXPECT_EQ(read_date("12/31/1999"), k_new_year_2000 - 1);
}

TEST(ReadDate, TakesTheIsoForm) {
    EXPECT_EQ(read_date("2000-01-01"), k_new_year_2000);
    EXPECT_EQ(read_date("1999-12-31"), k_new_year_2000 - 1);
    EXPECT_EQ(read_date("2000-02-29"), k_new_year_2000 + 59);
}

TEST(ReadDate, IgnoresBlanksAroundTheDate) {
    EXPECT_EQ(read_date("  1/1/2000\r\n"), k_new_year_2000);
    EXPECT_EQ(read_date("\t2000-01-01 "), k_new_year_2000);
}

TEST(ReadDate, TakesOnlyTheYears1900To2300) {
    EXPECT_EQ(read_date("1/1/1900"), 2);
    EXPECT_EQ(read_date("12/31/2300"), 146463);
    EXPECT_EQ(read_date("2300-12-31"), 146463);
    EXPECT_EQ(read_date("12/31/1899"), std::nullopt);
    EXPECT_EQ(read_date("1/1/2301"), std::nullopt);
    EXPECT_EQ(read_date("1899-12-30"), std::nullopt);
    EXPECT_EQ(read_date("2301-01-01"), std::nullopt);
}

TEST(ReadDate, KnowsTheLeapYears) {
    EXPECT_EQ(read_date("2/29/2000"), k_new_year_2000 + 59);
    EXPECT_EQ(read_date("2/29/1900"), std::nullopt);
    EXPECT_EQ(read_date("2/29/2100"), std::nullopt);
    EXPECT_EQ(read_date("2/30/2000"), std::nullopt);
}

TEST(ReadDate, OfATextThatIsNotADateIsNothing) {
    for (const char* text : {"",
                             " ",
                             "/",
                             "//",
                             "-",
                             "--",
                             "1/1",
                             "2000",
                             "1/1/",
                             "/1/2000",
                             "1//2000",
                             "1/1/00",
                             "1/1/200",
                             "1/1/20000",
                             "001/1/2000",
                             "1/001/2000",
                             "13/1/2000",
                             "0/1/2000",
                             "1/0/2000",
                             "1/32/2000",
                             "4/31/2000",
                             "-1/1/2000",
                             "+1/1/2000",
                             "1/-1/2000",
                             "1/1/-200",
                             "1/1/+200",
                             "1 /1/2000",
                             "1/ 1/2000",
                             "1/1/2000x",
                             "x1/1/2000",
                             "1/1/2000/",
                             "1/1/2000/1",
                             "1-1-2000",
                             "2000/01/01",
                             "2000-1-1",
                             "2000-01-1",
                             "200-01-01",
                             "2000-13-01",
                             "2000-00-01",
                             "2000-01-00",
                             "2000-01-32",
                             "-2000-01-01",
                             "2000-01-01-",
                             "1.1.2000",
                             "1/Jan/2000",
                             "Jan 1, 2000",
                             "1/1-2000",
                             "2000-01-01T00:00:00",
                             "\xD9\xA1/1/2000",
                             "1/1/2000 12:00:00 AM"}) {
        EXPECT_EQ(read_date(text), std::nullopt) << '\'' << text << '\'';
    }
}

TEST(ReadDate, ReadsWhatTheThreeTextFormsWrite) {
    for (DayCount day = 2; day <= 146463; day += 17) {
        EXPECT_EQ(read_date(long_date_text(day)), day);
        EXPECT_EQ(read_date(short_date_text(day)), day);
        EXPECT_EQ(read_date(iso_date_text(day)), day);
    }
}

}  // namespace
}  // namespace nivora
