// The daily sections of a legacy file: lines, repeats, and which day and zone a value belongs to.
#include "tests/prep/legacy_text.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::HasSubstr;

/// The first values of zone 1 in the section of Tmax, as the reader returns them.
std::vector<float> first_values(const std::string& section, std::size_t count) {
    LegacyParts parts;
    parts.section(LegacySection::Tmax) = section;
    const LegacyFile file = parts.read();
    const auto& slots = file.values[static_cast<std::size_t>(LegacySection::Tmax)].at(0);
    return {slots.begin() + 1, slots.begin() + 1 + static_cast<std::ptrdiff_t>(count)};
}

std::string refusal(LegacySection which, const std::string& section) {
    LegacyParts parts;
    parts.section(which) = section;
    try {
        static_cast<void>(parts.read());
    } catch (const LegacyFileError& error) {
        return error.what();
    }
    return {};
}

using Values = std::vector<float>;

TEST(LegacyRepeat, ThreeTimesOneHalfFillsThreeDays) {
    EXPECT_EQ(first_values("1,3*0.5,2/", 6), (Values{1, 0.5F, 0.5F, 0.5F, 2, 0}));
}

TEST(LegacyRepeat, BlanksAroundItsPartsDoNotCount) {
    EXPECT_EQ(first_values(" 2 * 0.5 , 1 * -3 /", 4), (Values{0.5F, 0.5F, -3, 0}));
}

TEST(LegacyRepeat, MayBeWrittenWithAPoint) { EXPECT_EQ(first_values("2.0*7/", 3), (Values{7, 7, 0})); }

TEST(LegacyRepeat, MayContinueIntoTheNextZone) {
    LegacyParts parts;
    parts.section(LegacySection::Tmax) = "360*1,12*2,360*3/";
    const LegacyFile file = parts.read();
    // 360 + 6 values fill zone 1; the other 6 of the twelve start zone 2.
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1996, 12, 31)), 2.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 1, 6)), 2.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 1, 7)), 3.0F);
}

TEST(LegacyRepeat, OneThatIsNotAPositiveWholeNumberIsRefusedAtItsLine) {
    for (const char* value : {"-3*1", "0*1", "1.5*1", "*1", "x*1", "1e400*1"}) {
        SCOPED_TRACE(value);
        EXPECT_THAT(refusal(LegacySection::Tmin, std::string{"1,2\n3,"} + value + "/"),
                    HasSubstr("Line 40, daily section 3 (Tmin): "));
    }
}

TEST(LegacyRepeat, AHugeOneIsRefused) {
    for (const char* value : {"1e300*1", "9999999999999999999*1", "2929*1"}) {
        SCOPED_TRACE(value);
        // Eight zones of 366 days are 2928 values.
        EXPECT_THAT(refusal(LegacySection::Tmin, std::string{value} + "/"), HasSubstr("2928 values"));
    }
}

TEST(LegacyRepeat, OneWithoutAValueOrWithTwoIsRefused) {
    for (const char* value : {"3*", "3*x", "3*4*5"}) {
        SCOPED_TRACE(value);
        EXPECT_THAT(refusal(LegacySection::Tmin, std::string{value} + "/"),
                    HasSubstr("Line 39, daily section 3 (Tmin): "));
    }
}

TEST(LegacyLines, ASectionEndsWithTheLineThatEndsWithASlash) {
    EXPECT_EQ(first_values("1,2\n3\n4,5/", 6), (Values{1, 2, 3, 4, 5, 0}));
}

TEST(LegacyLines, BlanksAfterTheSlashDoNotCount) {
    EXPECT_EQ(first_values("1,2\n3/ \t ", 4), (Values{1, 2, 3, 0}));
}

TEST(LegacyLines, ASlashAloneEndsASectionWithoutAValue) {
    EXPECT_EQ(first_values("1,2\n/", 3), (Values{1, 2, 0}));
    EXPECT_EQ(first_values("/", 2), (Values{0, 0}));
    EXPECT_EQ(first_values("  /", 2), (Values{0, 0}));
}

TEST(LegacyLines, ACommaAtTheEndOfALineAndALineWithoutAValueHaveNoMeaning) {
    EXPECT_EQ(first_values("1,2,\n\n  \n3,/", 4), (Values{1, 2, 3, 0}));
}

TEST(LegacyLines, AnEmptyPlaceBetweenCommasIsRefused) {
    EXPECT_THAT(refusal(LegacySection::Tmin, "1,,2/"), HasSubstr("Line 39, daily section 3 (Tmin): "));
}

TEST(LegacyLines, ASlashInTheMiddleOfALineIsRefused) {
    EXPECT_THAT(refusal(LegacySection::Tmin, "1/2,3/"), HasSubstr("'1/2' is not a number"));
    EXPECT_THAT(refusal(LegacySection::Tmin, "1,2//"), HasSubstr("'2/' is not a number"));
}

TEST(LegacyLines, EveryKindOfLineEndIsRead) {
    for (const char* line_end : {"\n", "\r\n", "\r"}) {
        LegacyParts parts;
        parts.line_end = line_end;
        parts.section(LegacySection::Tmax) = "1,2\n3\n/";
        const LegacyFile file = parts.read();
        EXPECT_EQ(file.basin_name, "Alder Brook");
        EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1996, 1, 3)), 3.0F);
        EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1996, 1, 4)), 0.0F);
        EXPECT_EQ(file.value(LegacySection::RCA, 0, day(1996, 1, 1)), 1.0F);
    }
}

TEST(LegacyLines, AllKindsOfLineEndCountAsOneLineInARefusal) {
    for (const char* line_end : {"\n", "\r\n", "\r"}) {
        LegacyParts parts;
        parts.line_end = line_end;
        parts.section(LegacySection::RCA) = "x/";
        try {
            static_cast<void>(parts.read());
            FAIL() << "was read";
        } catch (const LegacyFileError& error) {
            EXPECT_EQ(error.line(), 49);
            EXPECT_THAT(error.what(), HasSubstr("daily section 13 (RCA)"));
        }
    }
}

TEST(LegacyLines, TheLastLineNeedsNoLineEnd) {
    std::string text = LegacyParts{}.text();
    text.pop_back();
    ASSERT_EQ(text.back(), '/');
    EXPECT_EQ(read_legacy_file(text).value(LegacySection::RCA, 0, day(1996, 4, 1)), 1.0F);
}

TEST(LegacyLines, WhatFollowsTheLastSectionIsNotRead) {
    EXPECT_EQ(read_legacy_file(LegacyParts{}.text() + "remarks\n\x1a").zones.size(), 2U);
}

TEST(LegacyLines, AByteOrderMarkIsSkipped) {
    const LegacyFile file = read_legacy_file("\xEF\xBB\xBF" + LegacyParts{}.text());
    EXPECT_EQ(file.version, 3.2F);
    EXPECT_EQ(file.zones.size(), 2U);
}

TEST(LegacyValues, AllFormsOfANumberAreRead) {
    EXPECT_EQ(first_values("+1,-2,.5,5.,1.5e1,1.5E+1,25D-1/", 7), (Values{1, -2, 0.5F, 5, 15, 15, 2.5F}));
}

TEST(LegacyValues, AreRoundedToSingles) {
    // From 16777216 on Singles are 2 apart; ties round to the even one.
    EXPECT_EQ(first_values("16777217,16777219/", 2), (Values{16777216, 16777220}));
}

TEST(LegacyValues, LettersAreRefusedAtTheirLine) {
    EXPECT_THAT(refusal(LegacySection::Precip, "1,2\nrain,4/"),
                HasSubstr("Line 42, daily section 5 (Precip): 'rain' is not a number"));
    EXPECT_THAT(refusal(LegacySection::Precip, "12abc/"), HasSubstr("'12abc' is not a number"));
    EXPECT_THAT(refusal(LegacySection::Precip, "1 2/"), HasSubstr("'1 2' is not a number"));
    EXPECT_THAT(refusal(LegacySection::Precip, "nan/"), HasSubstr("'nan' is not a number"));
    EXPECT_THAT(refusal(LegacySection::Precip, "inf/"), HasSubstr("'inf' is not a number"));
    EXPECT_THAT(refusal(LegacySection::Precip, "0x10/"), HasSubstr("'0x10' is not a number"));
}

TEST(LegacyValues, OneBeyondTheLargestSingleIsRefused) {
    EXPECT_EQ(first_values("3.4e38/", 1), (Values{3.4e38F}));
    for (const char* value : {"3.5e38", "-3.5e38", "4*1e39", "1e400"}) {
        SCOPED_TRACE(value);
        EXPECT_THAT(refusal(LegacySection::Cs, std::string{value} + "/"),
                    HasSubstr("Line 47, daily section 11 (Cs): "));
    }
}

TEST(LegacyValues, ARainSwitchMustFitAnInteger) {
    EXPECT_EQ(refusal(LegacySection::RCA, "32767,-32768/"), "");
    for (const char* value : {"32768", "-32769", "1e9", "32767.4999"}) {
        SCOPED_TRACE(value);  // the last one is 32767.5 as a Single, which rounds to 32768
        EXPECT_THAT(refusal(LegacySection::RCA, std::string{value} + "/"),
                    HasSubstr("Line 49, daily section 13 (RCA): "));
    }
}

TEST(LegacyValues, ASectionThatIsTooLongIsRefused) {
    EXPECT_EQ(refusal(LegacySection::Tmax, "2928*1/"), "");
    EXPECT_THAT(refusal(LegacySection::Tmax, "2928*1,1/"), HasSubstr("Line 38, daily section 2 (Tmax): "));
    EXPECT_EQ(refusal(LegacySection::Runoff, "366*1/"), "");
    EXPECT_THAT(refusal(LegacySection::Runoff, "366*1,1/"), HasSubstr("Line 37, daily section 1 (runoff): "));
}

TEST(LegacyDays, AZoneHas366ValuesInEveryYear) {
    for (const char* year : {"1995", "1996"}) {
        SCOPED_TRACE(year);
        LegacyParts parts;
        parts.year = year;
        parts.section(LegacySection::Tmax) = numbered_section(2);
        const LegacyFile file = parts.read();
        const int number = year == std::string{"1996"} ? 1996 : 1995;
        EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(number, 1, 1)), 1001.0F);
        EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(number, 1, 1)), 2001.0F);
    }
}

// 1 March is day 31 + 28 + 1 = 60 of a common year and 31 + 29 + 1 = 61 of a
// leap year; 31 December is day 365 or 366.
TEST(LegacyDays, AValueBelongsToTheOrdinalOfItsDay) {
    LegacyParts parts;
    parts.section(LegacySection::Tmax) = numbered_section(2);
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1996, 2, 29)), 1060.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1996, 3, 1)), 1061.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 12, 31)), 2366.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1995, 3, 1)), 1060.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1995, 12, 31)), 2365.0F);
}

// The days after the turn of the year come from the start of the zone's
// values, by their ordinal in their own year.
TEST(LegacyDays, AfterTheTurnOfTheYearTheOrdinalStartsAgain) {
    LegacyParts parts;
    parts.start = "1201";
    parts.end = "0331";
    parts.year = "1995";
    parts.section(LegacySection::Tmax) = numbered_section(2);
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1995, 12, 31)), 1365.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, day(1996, 1, 1)), 1001.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 3, 31)), 2091.0F);  // 31 + 29 + 31
}

TEST(LegacyDays, RunoffIsOneSeriesForAllZones) {
    LegacyParts parts;
    parts.section(LegacySection::Runoff) = numbered_section(1);
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.value(LegacySection::Runoff, 0, day(1996, 1, 5)), 1005.0F);
    EXPECT_EQ(file.value(LegacySection::Runoff, 1, day(1996, 1, 5)), 1005.0F);
}

TEST(LegacyDays, ZonesBeyondThoseOfTheFileAreSkipped) {
    LegacyParts parts;
    parts.section(LegacySection::Tmax) = numbered_section(8);
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.values[static_cast<std::size_t>(LegacySection::Tmax)].size(), 2U);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 1, 1)), 2001.0F);
    EXPECT_EQ(file.value(LegacySection::Tmin, 0, day(1996, 1, 1)), 4.0F);
}

TEST(LegacyDays, ASlotThatTheFileOmitsIsZero) {
    LegacyParts parts;
    parts.section(LegacySection::Tmax) = "366*5,2*6/";
    const LegacyFile file = parts.read();
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 1, 2)), 6.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 1, day(1996, 1, 3)), 0.0F);
}

TEST(LegacyDays, TheSectionsComeInTheirOrder) {
    LegacyParts parts;
    for (int section = 0; section < k_legacy_sections; ++section) {
        parts.sections[static_cast<std::size_t>(section)] = "366*" + std::to_string(section + 1) + "/";
    }
    const LegacyFile file = parts.read();
    const DayCount date = day(1996, 4, 1);
    EXPECT_EQ(file.value(LegacySection::Runoff, 0, date), 1.0F);
    EXPECT_EQ(file.value(LegacySection::Tmax, 0, date), 2.0F);
    EXPECT_EQ(file.value(LegacySection::Tmin, 0, date), 3.0F);
    EXPECT_EQ(file.value(LegacySection::Tavg, 0, date), 4.0F);
    EXPECT_EQ(file.value(LegacySection::Precip, 0, date), 5.0F);
    EXPECT_EQ(file.value(LegacySection::SCA, 0, date), 6.0F);
    EXPECT_EQ(file.value(LegacySection::Tcrit, 0, date), 7.0F);
    EXPECT_EQ(file.value(LegacySection::LagTime, 0, date), 8.0F);
    EXPECT_EQ(file.value(LegacySection::LapseRate, 0, date), 9.0F);
    EXPECT_EQ(file.value(LegacySection::An, 0, date), 10.0F);
    EXPECT_EQ(file.value(LegacySection::Cs, 0, date), 11.0F);
    EXPECT_EQ(file.value(LegacySection::Cr, 0, date), 12.0F);
    EXPECT_EQ(file.value(LegacySection::RCA, 0, date), 13.0F);
}

}  // namespace
}  // namespace nivora
