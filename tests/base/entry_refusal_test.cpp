#include "base/entry_refusal.h"

#include <gtest/gtest.h>

#include <array>

namespace nivora {
namespace {

constexpr const char* k_separators = "a number has a point as its decimal sign and no other separators";

TEST(EntryRefusal, ReadableAndBlankTextsAreNotRefused) {
    for (const char* text : {"", "  ", "1", "-0.5", "1e3", " 7 "})
        EXPECT_EQ(number_refusal(text), "") << text;
    for (const char* text : {"", "3.4e38"}) EXPECT_EQ(single_refusal(text), "") << text;
    for (const char* text : {"", "-32768", "32767", "4.0"}) EXPECT_EQ(integer_refusal(text), "") << text;
    for (const char* text : {"", "2/29/2004", "2004-02-29", "01/01/1900", "12/31/2300"})
        EXPECT_EQ(date_refusal(text), "") << text;
}

TEST(EntryRefusal, CommasBlanksAndApostrophesInANumberAreNamed) {
    for (const char* text : {"450,5", "1,234.5", "1.234,5", "2 000", "1'000"})
        EXPECT_EQ(number_refusal(text), k_separators) << text;
}

TEST(EntryRefusal, ATextIsNotANumber) {
    for (const char* text : {"abc", "-", ".", "10/01/1980", "1.2.3", "12abc", "a,b"})
        EXPECT_EQ(number_refusal(text), "this is not a number") << text;
}

TEST(EntryRefusal, ANumberThatExceedsItsFieldIsTooLarge) {
    EXPECT_EQ(number_refusal("1e400"), "the number is too large");
    EXPECT_EQ(number_refusal("1e39"), "");
    EXPECT_EQ(single_refusal("1e39"), "the number is too large");
    EXPECT_EQ(integer_refusal("32768"), "the number must lie between -32768 and 32767");
    EXPECT_EQ(integer_refusal("4.5"), "a whole number is needed");
    EXPECT_EQ(integer_refusal("4,5"), k_separators);
}

TEST(EntryRefusal, ADateIsRefusedForItsFormItsDayOrItsYear) {
    for (const char* text : {"02/31/2006", "2006-02-31", "13/01/2006", "00/10/2006"})
        EXPECT_EQ(date_refusal(text), "the calendar has no such day") << text;
    for (const char* text : {"12/31/1899", "01/01/2301", "1899-12-31"})
        EXPECT_EQ(date_refusal(text), "the year must lie between 1900 and 2300") << text;
    for (const char* text : {"31.12.2006", "02/29/", "01/02/06", "Oct 1", "450,5"})
        EXPECT_EQ(date_refusal(text), "a date has the form mm/dd/yyyy") << text;
}

TEST(EntryRefusal, AListTakesItsItemsInAnyCase) {
    const std::array<std::string, 2> items{"Metric", "English"};
    EXPECT_EQ(item_refusal(" metric ", items), "");
    EXPECT_EQ(item_refusal("", items), "");
    EXPECT_EQ(item_refusal("Imperial", items), "it must be one of 'Metric', 'English'");
}

TEST(EntryRefusal, LimitsAreShownAsNumbers) {
    EXPECT_EQ(limits_refusal(-9.99, 9.99), "the number must lie between -9.99 and 9.99");
    EXPECT_EQ(limits_refusal(0.0, 42.0), "the number must lie between 0 and 42");
}

}  // namespace
}  // namespace nivora
