#include "base/calendar.h"
#include "base/number_text.h"
#include "tests/support/comma_locale.h"

#include <gtest/gtest.h>

#include <array>
#include <cstdio>
#include <sstream>
#include <string>

namespace nivora {
namespace {

void expect_points_everywhere() {
    EXPECT_EQ(single_text(1234567.0F), "1234567");
    EXPECT_EQ(single_text(0.5F), "0.5");
    EXPECT_EQ(single_text(12345678.0F), "1.234568E+07");
    EXPECT_EQ(double_text(1234.5), "1234.5");
    EXPECT_EQ(spaced_single_text(0.5F), " 0.5");
    EXPECT_EQ(shortest_text(0.1F), "0.1");
    EXPECT_EQ(shortest_text(1234.5), "1234.5");
    EXPECT_EQ(format_number(1234567.125, "0.00"), "1234567.13");
    EXPECT_EQ(format_number(0.0, ".#####"), ".");
    EXPECT_EQ(leading_number("1.5"), 1.5);
    EXPECT_EQ(leading_number("1,5"), 1.0);
    EXPECT_EQ(leading_number("1.234,5"), 1.234);
    EXPECT_EQ(exact_number("1.5"), 1.5);
    EXPECT_EQ(exact_number("1,5"), std::nullopt);
    EXPECT_EQ(long_date_text(36526), "01/01/2000");
    EXPECT_EQ(time_text(36526.75), "6:00:00 PM");
    EXPECT_EQ(read_date("1/1/2000"), 36526);
}

TEST(NumbersInALocaleWithADecimalComma, KeepTheirPointInTheLocaleOfTheLanguage) {
    const CommaLocale comma;
    std::ostringstream stream;
    stream << 1234567.5F;
    ASSERT_NE(stream.str().find(','), std::string::npos) << "the locale does not work: " << stream.str();
    expect_points_everywhere();
}

TEST(NumbersInALocaleWithADecimalComma, KeepTheirPointInTheLocaleOfTheSystem) {
    ProcessLocale locale;
    if (!locale.set_decimal_comma()) GTEST_SKIP() << "this machine has no locale with a decimal comma";
    std::array<char, 16> text{};
    std::snprintf(text.data(), text.size(), "%.1f", 0.5);
    ASSERT_STREQ(text.data(), "0,5");
    expect_points_everywhere();
}

}  // namespace
}  // namespace nivora
