#include "base/number_text.h"

#include <gtest/gtest.h>

#include <limits>
#include <utility>

namespace nivora {
namespace {

using std::literals::string_view_literals::operator""sv;

constexpr double k_infinity = std::numeric_limits<double>::infinity();

TEST(LeadingNumber, StopsAtTheFirstCharacterThatIsNotPartOfANumber) {
    EXPECT_EQ(leading_number("12abc"), 12.0);
    EXPECT_EQ(leading_number("12 "), 12.0);
    EXPECT_EQ(leading_number("1,5"), 1.0);
    EXPECT_EQ(leading_number("1.2.3"), 1.2);
    EXPECT_EQ(leading_number("-3.5x"), -3.5);
    EXPECT_EQ(leading_number("0x10"), 0.0);
    EXPECT_EQ(leading_number("7-3"), 7.0);
}

TEST(LeadingNumber, IsZeroIfThereIsNone) {
    for (const char* text :
         {"",    " ",   ".",   "-",   "+",    "-.",  "+.",       "abc", "e5", ".e5",         "--1",
          "+-1", "-+1", "- 1", "inf", "-inf", "nan", "Infinity", ",5",  "$5", "\xEF\xBC\x91"}) {
        EXPECT_EQ(leading_number(text), 0.0) << '\'' << text << '\'';
    }
}

TEST(LeadingNumber, TakesBlanksAndASignInFront) {
    EXPECT_EQ(leading_number("  7"), 7.0);
    EXPECT_EQ(leading_number("\t7"), 7.0);
    EXPECT_EQ(leading_number("+3"), 3.0);
    EXPECT_EQ(leading_number("-3"), -3.0);
    EXPECT_EQ(leading_number("  -0.5 m"), -0.5);
}

TEST(LeadingNumber, NeedsNoDigitOnOneSideOfThePoint) {
    EXPECT_EQ(leading_number(".5"), 0.5);
    EXPECT_EQ(leading_number("-.5"), -0.5);
    EXPECT_EQ(leading_number("+.5"), 0.5);
    EXPECT_EQ(leading_number("5."), 5.0);
    EXPECT_EQ(leading_number("5.e1"), 50.0);
}

TEST(LeadingNumber, TakesEAndDForPowersOfTen) {
    EXPECT_EQ(leading_number("1e5"), 100000.0);
    EXPECT_EQ(leading_number("1E+2"), 100.0);
    EXPECT_EQ(leading_number("1d2"), 100.0);
    EXPECT_EQ(leading_number("1D-2"), 0.01);
    EXPECT_EQ(leading_number("-2.5e-1x"), -0.25);
    EXPECT_EQ(leading_number("1e5.5"), 100000.0);
}

TEST(LeadingNumber, IgnoresAnEWithoutDigits) {
    EXPECT_EQ(leading_number("1e"), 1.0);
    EXPECT_EQ(leading_number("1e+"), 1.0);
    EXPECT_EQ(leading_number("2d-"), 2.0);
    EXPECT_EQ(leading_number("3east"), 3.0);
    EXPECT_EQ(leading_number("3days"), 3.0);
    EXPECT_EQ(leading_number("1e 5"), 1.0);
}

TEST(LeadingNumber, BeyondADoubleIsInfinite) {
    EXPECT_EQ(leading_number("1e308"), 1e308);
    EXPECT_EQ(leading_number("1e309"), k_infinity);
    EXPECT_EQ(leading_number("-1e309"), -k_infinity);
    EXPECT_EQ(leading_number("1e400x"), k_infinity);
    EXPECT_EQ(leading_number("1d400"), k_infinity);
    EXPECT_EQ(leading_number("1e99999999999999999999"), k_infinity);
    EXPECT_EQ(leading_number("-1e+99999999999999999999"), -k_infinity);
    EXPECT_EQ(leading_number("1" + std::string(400, '0')), k_infinity);
    EXPECT_EQ(leading_number("1" + std::string(400, '0') + ".0"), k_infinity);
}

TEST(LeadingNumber, TooSmallForADoubleIsZero) {
    EXPECT_EQ(leading_number("4.9406564584124654e-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(leading_number("1e-310"), 1e-310);
    EXPECT_EQ(leading_number("1e-400"), 0.0);
    EXPECT_EQ(leading_number("-1e-400"), 0.0);
    EXPECT_EQ(leading_number("1d-400"), 0.0);
    EXPECT_EQ(leading_number("1e-99999999999999999999"), 0.0);
    EXPECT_EQ(leading_number("0." + std::string(400, '0') + "1"), 0.0);
    EXPECT_EQ(leading_number("." + std::string(400, '0') + "1"), 0.0);
}

TEST(LeadingNumber, OfZeroTimesAnyPowerIsZero) {
    EXPECT_EQ(leading_number("0e99999999999999999999"), 0.0);
    EXPECT_EQ(leading_number("0.000e+400"), 0.0);
    EXPECT_EQ(leading_number("0e-400"), 0.0);
}

TEST(LeadingNumber, ManyDigitsAndAPowerOfTenMayCancel) {
    const std::string zeros(400, '0');
    EXPECT_EQ(leading_number("1" + zeros + "e-400"), 1.0);
    EXPECT_EQ(leading_number("0." + zeros + "1e401"), 1.0);
    // 10^400 x 10^-10 is still too large, and 10^-401 x 10^10 still too small.
    EXPECT_EQ(leading_number("1" + zeros + "e-10"), k_infinity);
    EXPECT_EQ(leading_number("-1" + zeros + "e-10"), -k_infinity);
    EXPECT_EQ(leading_number("0." + zeros + "1e10"), 0.0);
    EXPECT_EQ(leading_number("0." + zeros + "1e+10"), 0.0);
}

TEST(ExactNumber, TakesATextThatIsANumberFromEndToEnd) {
    EXPECT_EQ(exact_number("12"), 12.0);
    EXPECT_EQ(exact_number("-12.5"), -12.5);
    EXPECT_EQ(exact_number("+5"), 5.0);
    EXPECT_EQ(exact_number(".5"), 0.5);
    EXPECT_EQ(exact_number("5."), 5.0);
    EXPECT_EQ(exact_number("1e5"), 100000.0);
    EXPECT_EQ(exact_number("1d2"), 100.0);
    EXPECT_EQ(exact_number("0"), 0.0);
}

TEST(ExactNumber, IgnoresBlanksAroundTheNumber) {
    EXPECT_EQ(exact_number(" 12 "), 12.0);
    EXPECT_EQ(exact_number("\t-1.5\r\n"), -1.5);
}

TEST(ExactNumber, IsNothingForAnyOtherText) {
    for (const char* text :
         {"",      " ",   ".",   "-",   "+",    "12abc", "abc", "1,5",       "1 2",   "1e", "1e+",
          "1.2.3", "--1", "+-5", "- 5", "0x10", "nan",   "inf", "-infinity", "1e5.5", "5%", "\xEF\xBC\x91"}) {
        EXPECT_EQ(exact_number(text), std::nullopt) << '\'' << text << '\'';
    }
    EXPECT_EQ(exact_number("1\0"sv), std::nullopt);
}

TEST(ExactNumber, BeyondADoubleIsNothing) {
    EXPECT_EQ(exact_number("1e308"), 1e308);
    EXPECT_EQ(exact_number("1e400"), std::nullopt);
    EXPECT_EQ(exact_number("-1e400"), std::nullopt);
    EXPECT_EQ(exact_number("1" + std::string(400, '0') + "e-10"), std::nullopt);
}

TEST(ExactNumber, TooSmallForADoubleIsZero) { EXPECT_EQ(exact_number("1e-400"), 0.0); }

}  // namespace
}  // namespace nivora
