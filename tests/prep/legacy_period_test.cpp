// The dates in the header of a legacy file: the period, and the day on which x and y change.
#include "tests/prep/legacy_text.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::Optional;

LegacyParts of_period(const std::string& start, const std::string& end, const std::string& year) {
    LegacyParts parts;
    parts.start = start;
    parts.end = end;
    parts.year = year;
    return parts;
}

std::string period_refusal(const LegacyParts& parts) {
    try {
        static_cast<void>(parts.read());
    } catch (const LegacyFileError& error) {
        return error.what();
    }
    return {};
}

TEST(LegacyPeriod, MonthAndDayComeFromTwoCharactersEach) {
    const LegacyFile file = of_period("0102", "1109", "1995").read();
    EXPECT_EQ(file.start, day(1995, 1, 2));
    EXPECT_EQ(file.end, day(1995, 11, 9));
}

TEST(LegacyPeriod, BlanksAroundADateDoNotCount) {
    const LegacyFile file = of_period("  0102 ", "\" 1109 \"", "1995").read();
    EXPECT_EQ(file.start, day(1995, 1, 2));
    EXPECT_EQ(file.end, day(1995, 11, 9));
}

TEST(LegacyPeriod, AWholeYearMayBeCovered) {
    const LegacyFile leap = of_period("0101", "1231", "1996").read();
    EXPECT_EQ(leap.end - leap.start + 1, 366);
    const LegacyFile common = of_period("0101", "1231", "1995").read();
    EXPECT_EQ(common.end - common.start + 1, 365);
}

TEST(LegacyPeriod, AnEarlierEndMonthIsInTheNextYear) {
    const LegacyFile winter = of_period("1215", "0110", "1996").read();
    EXPECT_EQ(winter.start, day(1996, 12, 15));
    EXPECT_EQ(winter.end, day(1997, 1, 10));
    const LegacyFile water_year = of_period("1001", "0930", "1997").read();
    EXPECT_EQ(water_year.end - water_year.start + 1, 365);
}

TEST(LegacyPeriod, EqualMonthsDoNotCrossTheYear) {
    const LegacyFile file = of_period("0605", "0607", "1996").read();
    EXPECT_EQ(file.start, day(1996, 6, 5));
    EXPECT_EQ(file.end, day(1996, 6, 7));
}

TEST(LegacyPeriod, InEqualMonthsAnEndBeforeTheStartIsRefused) {
    EXPECT_THAT(period_refusal(of_period("0607", "0605", "1996")), HasSubstr("Line 4, header item 4: "));
}

TEST(LegacyPeriod, ItMayBeOneDay) {
    const LegacyFile file = of_period("0605", "0605", "1996").read();
    EXPECT_EQ(file.start, file.end);
}

TEST(LegacyPeriod, TheLeapDayIsTakenFromItsOwnYear) {
    EXPECT_EQ(of_period("0229", "0301", "1996").read().start, day(1996, 2, 29));
    EXPECT_THAT(period_refusal(of_period("0229", "0301", "1995")), HasSubstr("Line 2, header item 2: "));
    EXPECT_EQ(of_period("1101", "0229", "1995").read().end, day(1996, 2, 29));
    EXPECT_THAT(period_refusal(of_period("1101", "0229", "1996")), HasSubstr("Line 4, header item 4: "));
}

TEST(LegacyPeriod, TextsThatAreNotDatesAreRefusedAtTheirLine) {
    for (const char* text :
         {"", "0", "101", "0431", "1301", "0001", "0100", "ab01", "01cd", "\"\"", "-101",
          // The whole item counts, including what follows a date.
          "0403\xc3\xb9", "0403\xf9", "04031", "0403 x", "04 3", "3.157", "3.15", "+4+3", "1e01", "0403.0"}) {
        SCOPED_TRACE(text);
        EXPECT_THAT(period_refusal(of_period(text, "1231", "1996")), HasSubstr("Line 2, header item 2: "));
        EXPECT_THAT(period_refusal(of_period("0101", text, "1996")), HasSubstr("Line 4, header item 4: "));
    }
}

TEST(LegacyPeriod, AYearOutsideTheProgramsRangeIsRefused) {
    EXPECT_EQ(of_period("0101", "0102", "1900").read().start, day(1900, 1, 1));
    EXPECT_EQ(of_period("0101", "0102", "2300").read().start, day(2300, 1, 1));
    for (const char* year : {"1899", "2301", "96", "-1996", "1996.5", "MCMXCVI", ""}) {
        SCOPED_TRACE(year);
        EXPECT_THAT(period_refusal(of_period("0101", "0102", year)), HasSubstr("Line 19, header item 19: "));
    }
}

LegacyParts with_change(const std::string& change_day) {
    LegacyParts parts = of_period("1001", "0930", "1996");
    parts.change_day = change_day;
    return parts;
}

TEST(LegacyChangeDay, FromTheStartOnItIsInTheYearOfTheStart) {
    EXPECT_THAT(with_change("1115").read().change_day, Optional(day(1996, 11, 15)));
    EXPECT_THAT(with_change("1001").read().change_day, Optional(day(1996, 10, 1)));
}

TEST(LegacyChangeDay, BeforeTheStartItIsInTheNextYear) {
    EXPECT_THAT(with_change("0615").read().change_day, Optional(day(1997, 6, 15)));
    EXPECT_THAT(with_change("0930").read().change_day, Optional(day(1997, 9, 30)));
}

// A period within one year has no day of the next year: the change is after its end and never happens.
TEST(LegacyChangeDay, BeforeTheStartOfAPeriodWithinOneYearItComesAfterItsEnd) {
    LegacyParts parts = of_period("0401", "0930", "1996");
    parts.change_day = "0301";
    EXPECT_THAT(parts.read().change_day, Optional(day(1997, 3, 1)));
}

TEST(LegacyChangeDay, ALeapDayBeforeTheStartIsThatOfTheNextYear) {
    LegacyParts parts = of_period("1001", "0930", "1995");
    parts.change_day = "0229";
    EXPECT_THAT(parts.read().change_day, Optional(day(1996, 2, 29)));
}

TEST(LegacyChangeDay, ALeapDayThatIsInNeitherYearIsRefused) {
    EXPECT_THAT(period_refusal(with_change("0229")),
                HasSubstr("Line 25, header item 25: "));  // 1997 has none
    LegacyParts parts = of_period("0101", "1231", "1995");
    parts.change_day = "0229";
    EXPECT_THAT(period_refusal(parts), HasSubstr("Line 25, header item 25: "));
}

TEST(LegacyChangeDay, AnEmptyItemMeansNoChange) {
    for (const char* empty : {"\"\"", "", "  ", "\"  \""}) {
        SCOPED_TRACE(empty);
        EXPECT_EQ(with_change(empty).read().change_day, std::nullopt);
    }
}

TEST(LegacyChangeDay, WithoutAChangeTheLaterCoefficientsAreNotRead) {
    LegacyParts parts = with_change("");
    parts.x_later = "none";
    parts.y_later = "";
    EXPECT_EQ(parts.read().x, 0.9);
}

TEST(LegacyChangeDay, WithAChangeTheLaterCoefficientsMustBeNumbers) {
    LegacyParts parts = with_change("0615");
    parts.x_later = "none";
    EXPECT_THAT(period_refusal(parts), HasSubstr("Line 22, header item 22: "));
    parts = with_change("0615");
    parts.y_later = "";
    EXPECT_THAT(period_refusal(parts), HasSubstr("Line 24, header item 24: "));
}

TEST(LegacyChangeDay, ATextThatIsNotADateIsRefused) {
    for (const char* text : {"soon", "1", "1332", "06/15", "0615x", "3.157", "06150", "6.15"}) {
        SCOPED_TRACE(text);
        EXPECT_THAT(period_refusal(with_change(text)), HasSubstr("Line 25, header item 25: "));
    }
}

}  // namespace
}  // namespace nivora
