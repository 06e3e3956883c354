#include "reports/format_value.h"

#include "base/number_text.h"
#include "base/single.h"
#include "tests/support/random_trials.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <string>
#include <vector>

namespace nivora {
namespace {

using testing::ElementsAre;

TEST(FormatValue, IsCutToItsWidthAndFilledWithBlanks) {
    EXPECT_EQ(Format_Value(0.5, 8), "0.50000 ");
    EXPECT_EQ(Format_Value(12.34567, 8), "12.34567");
    EXPECT_EQ(Format_Value(123.456789, 8), "123.4567");  // 123.45679 cut, not rounded again
    EXPECT_EQ(Format_Value(0.65, 4), "0.65");
}

TEST(FormatValue, RoundsHalfAwayFromZeroAtTheFifthDecimal) {
    EXPECT_EQ(Format_Value(0.000005, 8), "0.00001 ");
    EXPECT_EQ(Format_Value(-0.000005, 9), "-0.00001 ");
    EXPECT_EQ(Format_Value(9.999999, 8), "10.00000");
}

TEST(FormatValue, CountsTheSignAsPartOfTheIntegerPart) {
    EXPECT_EQ(Format_Value(-1234.0, 5), "-1234");
    EXPECT_EQ(Format_Value(-12345.0, 5), "-1.E4");  // -1.234500 cut to three characters
    EXPECT_EQ(Format_Value(12345.0, 5), "12345");
}

TEST(FormatValue, TakesTheExponentFormWhereTheIntegerPartDoesNotFit) {
    EXPECT_EQ(Format_Value(123456789.0, 8), "1.2345E8");
    EXPECT_EQ(Format_Value(99999999.0, 8), "99999999");
    EXPECT_EQ(Format_Value(1e12, 8), "1.000E12");
    EXPECT_EQ(Format_Value(-3.4e38, 8), "-3.40E38");
    EXPECT_EQ(Format_Value(static_cast<double>(std::numeric_limits<float>::max()), 4), "3E38");
    EXPECT_EQ(Format_Value(static_cast<double>(std::numeric_limits<float>::max()), 5), "3.E38");
}

/// The forms of a value in the widths of the daily tables: 8, 5, 4 and 3.
std::vector<std::string> forms(double value) {
    return {Format_Value(value, 8), Format_Value(value, 5), Format_Value(value, 4), Format_Value(value, 3)};
}

TEST(FormatValue, OfASingleExtremeKeepsTheExponentAndWhatFitsOfTheMantissa) {
    constexpr auto largest = static_cast<double>(std::numeric_limits<float>::max());
    // 3.402823E38: the exponent takes three characters and leaves five, two, one and none.
    EXPECT_THAT(forms(largest), ElementsAre("3.402E38", "3.E38", "3E38", "E38"));
    // -3.402823E38: the sign is the first character of the mantissa.
    EXPECT_THAT(forms(-largest), ElementsAre("-3.40E38", "-3E38", "-E38", "E38"));
}

TEST(FormatValue, OfTheSmallestSinglesIsZero) {
    constexpr auto smallest = static_cast<double>(std::numeric_limits<float>::min());
    constexpr auto denormal = static_cast<double>(std::numeric_limits<float>::denorm_min());
    for (const double value : {smallest, -smallest, denormal, -denormal})
        EXPECT_THAT(forms(value), ElementsAre("0.00000 ", "0.000", "0.00", "0.0"));
}

TEST(FormatValue, OfTheFirstNumberThatDoesNotFitTakesTheExponentForm) {
    // The digits before the point fit in 99999999, 99999, 9999 and 999; one more does not.
    EXPECT_EQ(Format_Value(100000000.0, 8), "1.0000E8");
    EXPECT_EQ(Format_Value(99999.0, 5), "99999");
    EXPECT_EQ(Format_Value(100000.0, 5), "1.0E5");
    EXPECT_EQ(Format_Value(9999.0, 4), "9999");
    EXPECT_EQ(Format_Value(10000.0, 4), "1.E4");
    EXPECT_EQ(Format_Value(-1000.0, 4), "-1E3");
    EXPECT_EQ(Format_Value(999.0, 3), "999");
    EXPECT_EQ(Format_Value(1000.0, 3), "1E3");
    EXPECT_EQ(Format_Value(-100.0, 3), "-E2");
}

TEST(FormatValue, OfAnInfiniteNumberIsBlank) {
    constexpr double infinite = std::numeric_limits<double>::infinity();
    EXPECT_THAT(forms(infinite), ElementsAre("        ", "     ", "    ", "   "));
    EXPECT_EQ(Format_Value(-infinite, 8), "        ");
    EXPECT_EQ(format_whole_value(infinite, 8), "        ");
    EXPECT_EQ(right_aligned_whole(-infinite, 3), "   ");
}

TEST(FormatValue, OfAVerySmallNumberIsZero) { EXPECT_EQ(Format_Value(1e-30, 8), "0.00000 "); }

TEST(FormatValue, OfANegativeZeroBearsNoSign) {
    EXPECT_EQ(Format_Value(-0.0, 8), "0.00000 ");
    EXPECT_EQ(Format_Value(-0.000001, 8), "0.00000 ");
    EXPECT_EQ(Format_Value(-0.04, 4), "0.0 ");
    EXPECT_EQ(Format_Value(-0.003, 5), "0.00 ");
    EXPECT_EQ(Format_Value(-0.04, 5), "-0.04");
}

TEST(FormatValue, OfAMissingValueIsBlank) {
    const auto missing = static_cast<double>(k_missing);
    EXPECT_EQ(Format_Value(missing, 5), "     ");
    EXPECT_EQ(format_whole_value(missing, 8), "        ");
    EXPECT_EQ(right_aligned_whole(missing, 3), "   ");
}

TEST(FormatValue, AWholeNumberGetsFourZeros) {
    EXPECT_EQ(format_whole_value(1.0, 8), "1.0000  ");
    EXPECT_EQ(format_whole_value(-32768.0, 8), "-32768.0");
}

TEST(FormatValue, AWholeNumberStandsAtTheRightOfItsColumns) {
    EXPECT_EQ(right_aligned_whole(1.0, 3), "  1");
    EXPECT_EQ(right_aligned_whole(31.0, 3), " 31");
    EXPECT_EQ(right_aligned_whole(-31.0, 3), "-31");
    // 31 days of 32767, and of -32768: 1015777 and -1015808.
    EXPECT_EQ(right_aligned_whole(1015777.0, 3), "1E6");
    EXPECT_EQ(right_aligned_whole(-1015808.0, 3), "-E6");
    EXPECT_EQ(right_aligned_whole(static_cast<double>(std::numeric_limits<float>::max()), 3), "E38");
}

class FormatValueTrials : public RandomTrials<testing::Test> {
protected:
    /// A number in the pattern alone.
    static std::string by_pattern(double value) {
        std::string text = format_number(value, "####0.00000");
        text.resize(24, ' ');
        return text;
    }
};

TEST_F(FormatValueTrials, EveryNumberHasTheDigitsOfItsPattern) {
    try_often(20000, [this] {
        const double size = std::pow(10.0, between(-7.0, 7.5));
        const double sign = by_chance(0.5) ? -1.0 : 1.0;
        const double single = static_cast<double>(static_cast<float>(sign * size));
        EXPECT_EQ(Format_Value(single, 24), by_pattern(single));
        EXPECT_EQ(Format_Value(sign * size, 24), by_pattern(sign * size));
        // As near to the middle of two results as a Double can be, on either side.
        const double middle = sign * (std::floor(size) + (whole_between(0, 99999) + 0.5) / 100000.0);
        for (const double value : {middle, std::nextafter(middle, 0.0), std::nextafter(middle, 2.0 * middle)})
            EXPECT_EQ(Format_Value(value, 24), by_pattern(value));
    });
}

}  // namespace
}  // namespace nivora
