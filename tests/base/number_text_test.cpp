#include "base/number_text.h"

#include "tests/support/printed_seed.h"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <cstdio>
#include <limits>
#include <random>

namespace nivora {
namespace {

constexpr float k_nan = std::numeric_limits<float>::quiet_NaN();

TEST(SingleText, HasNoZerosAfterTheLastDigit) {
    EXPECT_EQ(single_text(0.0F), "0");
    EXPECT_EQ(single_text(1.0F), "1");
    EXPECT_EQ(single_text(-1.5F), "-1.5");
    EXPECT_EQ(single_text(100000.0F), "100000");
    EXPECT_EQ(single_text(0.1F), "0.1");
    EXPECT_EQ(single_text(-0.25F), "-0.25");
}

TEST(SingleText, HasAtMostSevenDigits) {
    EXPECT_EQ(single_text(1234567.0F), "1234567");
    EXPECT_EQ(single_text(123.4567F), "123.4567");
    EXPECT_EQ(single_text(1.0F / 3.0F), "0.3333333");
    EXPECT_EQ(single_text(2.0F / 3.0F), "0.6666667");
    EXPECT_EQ(single_text(0.012345678F), "0.01234568");
    EXPECT_EQ(single_text(999999.9375F), "999999.9");
    EXPECT_EQ(single_text(99999.99609375F), "100000");  // the eighth digit rounds all nines up
}

TEST(SingleText, TurnsToPowersOfTenAtTenMillion) {
    EXPECT_EQ(single_text(9999999.0F), "9999999");
    EXPECT_EQ(single_text(10000000.0F), "1E+07");
    EXPECT_EQ(single_text(12345678.0F), "1.234568E+07");
    EXPECT_EQ(single_text(16777216.0F), "1.677722E+07");
    EXPECT_EQ(single_text(-10000000.0F), "-1E+07");
    EXPECT_EQ(single_text(1e10F), "1E+10");
}

TEST(SingleText, TurnsToPowersOfTenBelowOneTenThousandth) {
    EXPECT_EQ(single_text(0.0001F), "0.0001");
    EXPECT_EQ(single_text(0.00012345678F), "0.0001234568");
    EXPECT_EQ(single_text(0.00009999F), "9.999E-05");
    EXPECT_EQ(single_text(0.00001F), "1E-05");
    EXPECT_EQ(single_text(-0.00001F), "-1E-05");
}

TEST(SingleText, OfTheLargestAndSmallestSingles) {
    EXPECT_EQ(single_text(std::numeric_limits<float>::max()), "3.402823E+38");
    EXPECT_EQ(single_text(std::numeric_limits<float>::lowest()), "-3.402823E+38");
    EXPECT_EQ(single_text(std::numeric_limits<float>::min()), "1.175494E-38");
    EXPECT_EQ(single_text(std::numeric_limits<float>::denorm_min()), "1.401298E-45");
}

TEST(SingleText, OfANegativeZeroHasNoSign) { EXPECT_EQ(single_text(-0.0F), "0"); }

TEST(SingleText, OfAMissingValueIsEmpty) { EXPECT_EQ(single_text(k_nan), ""); }

TEST(DoubleText, HasAtMostFifteenDigits) {
    EXPECT_EQ(double_text(0.1 + 0.2), "0.3");
    EXPECT_EQ(double_text(1.0 / 3.0), "0.333333333333333");
    EXPECT_EQ(double_text(2.0 / 3.0), "0.666666666666667");
    EXPECT_EQ(double_text(1234.5), "1234.5");
    EXPECT_EQ(double_text(999999999999999.0), "999999999999999");
}

TEST(DoubleText, TurnsToPowersOfTenAtSixteenDigitsAndBelowOneTenThousandth) {
    EXPECT_EQ(double_text(1e15), "1E+15");
    EXPECT_EQ(double_text(0.0001), "0.0001");
    EXPECT_EQ(double_text(0.00001), "1E-05");
    EXPECT_EQ(double_text(std::numeric_limits<double>::max()), "1.79769313486232E+308");
}

TEST(DoubleText, OfANegativeZeroIsZeroAndOfAMissingValueEmpty) {
    EXPECT_EQ(double_text(-0.0), "0");
    EXPECT_EQ(double_text(std::nan("")), "");
}

TEST(SpacedSingleText, HasABlankInThePlaceOfAMinusSign) {
    EXPECT_EQ(spaced_single_text(1.5F), " 1.5");
    EXPECT_EQ(spaced_single_text(-1.5F), "-1.5");
    EXPECT_EQ(spaced_single_text(0.0F), " 0");
    EXPECT_EQ(spaced_single_text(-0.0F), " 0");
    EXPECT_EQ(spaced_single_text(1e7F), " 1E+07");
    EXPECT_EQ(spaced_single_text(k_nan), "");
}

TEST(ShortestText, OfEasyNumbers) {
    EXPECT_EQ(shortest_text(0.1F), "0.1");
    EXPECT_EQ(shortest_text(0.1), "0.1");
    EXPECT_EQ(shortest_text(-12.75), "-12.75");
    EXPECT_EQ(shortest_text(16777216.0F), "16777216");
    EXPECT_EQ(shortest_text(0.0), "0");
}

TEST(ShortestText, KeepsTheSignOfAZero) { EXPECT_EQ(shortest_text(-0.0), "-0"); }

TEST(ShortestText, OfAMissingValueIsEmpty) {
    EXPECT_EQ(shortest_text(k_nan), "");
    EXPECT_EQ(shortest_text(std::nan("")), "");
}

/// The shortest exponent form that reads back to the same Single, found by trial.
std::string shortest_power_form(float value) {
    for (int digits = 0; digits <= 8; ++digits) {
        char text[32];
        std::snprintf(text, sizeof text, "%.*e", digits, static_cast<double>(value));
        if (std::bit_cast<std::uint32_t>(std::strtof(text, nullptr)) == std::bit_cast<std::uint32_t>(value)) {
            return text;
        }
    }
    return "none";
}

TEST(ShortestText, OfRandomSinglesReadsBackToTheSameBitsAndIsNoLongerThanNecessary) {
    std::mt19937 random{printed_seed()};
    for (int i = 0; i < 20000; ++i) {
        const auto bits = static_cast<std::uint32_t>(random());
        const auto value = std::bit_cast<float>(bits);
        if (!std::isfinite(value)) continue;
        const std::string text = shortest_text(value);
        ASSERT_EQ(std::bit_cast<std::uint32_t>(std::strtof(text.c_str(), nullptr)), bits) << text;
        ASSERT_EQ(leading_number(text), std::strtod(text.c_str(), nullptr)) << text;
        ASSERT_LE(text.size(), shortest_power_form(value).size()) << text;
    }
}

TEST(ShortestText, OfRandomDoublesReadsBackToTheSameBits) {
    std::mt19937_64 random{printed_seed()};
    for (int i = 0; i < 20000; ++i) {
        const std::uint64_t bits = random();
        const auto value = std::bit_cast<double>(bits);
        if (!std::isfinite(value)) continue;
        const std::string text = shortest_text(value);
        ASSERT_EQ(std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)), bits) << text;
        const auto read = exact_number(text);
        ASSERT_TRUE(read) << text;
        ASSERT_EQ(std::bit_cast<std::uint64_t>(*read), bits) << text;
    }
}

// Seven digits are not always enough to read back the same Single, but the error stays within their rounding.
TEST(SingleText, OfRandomSinglesReadsBackWithinHalfOfTheSeventhDigit) {
    std::mt19937 random{printed_seed()};
    for (int i = 0; i < 20000; ++i) {
        const auto value = std::bit_cast<float>(static_cast<std::uint32_t>(random()));
        if (!std::isnormal(value)) continue;
        const std::string text = single_text(value);
        const double exact = static_cast<double>(value);
        // Half a unit of the seventh digit is at most 5e-7 of the number: the worst case begins with a 1.
        ASSERT_LE(std::abs(leading_number(text) - exact), std::abs(exact) * 5.000001e-7) << text;
    }
}

}  // namespace
}  // namespace nivora
