#include "base/number_text.h"
#include "tests/support/printed_seed.h"

#include <fmt/format.h>
#include <gtest/gtest.h>

#include <cmath>
#include <cstdlib>
#include <limits>
#include <random>

namespace nivora {
namespace {

TEST(NumberPattern, ZeroAsksForADigitAlways) {
    EXPECT_EQ(format_number(0.0, "0"), "0");
    EXPECT_EQ(format_number(5.0, "00"), "05");
    EXPECT_EQ(format_number(-1.2, "000.0"), "-001.2");
    EXPECT_EQ(format_number(1.0, "0.00"), "1.00");
    EXPECT_EQ(format_number(0.5, "0.000"), "0.500");
}

TEST(NumberPattern, HashAsksForADigitWhereThereIsOne) {
    EXPECT_EQ(format_number(12.0, "#"), "12");
    EXPECT_EQ(format_number(0.0, "#"), "");
    EXPECT_EQ(format_number(0.25, "#.##"), ".25");
    EXPECT_EQ(format_number(0.25, "0.####"), "0.25");
    EXPECT_EQ(format_number(1.2, "#0.0##"), "1.2");
    EXPECT_EQ(format_number(1.25, "#0.0##"), "1.25");
    EXPECT_EQ(format_number(1.0, "#0.0##"), "1.0");
    EXPECT_EQ(format_number(0.0, "##0.0"), "0.0");
}

TEST(NumberPattern, PointStaysWithNothingAfterIt) {
    EXPECT_EQ(format_number(3.0, "0.#"), "3.");
    EXPECT_EQ(format_number(5.0, "#.##"), "5.");
    EXPECT_EQ(format_number(0.98, "#.#"), "1.");
    EXPECT_EQ(format_number(-3.0, "0.###"), "-3.");
}

TEST(NumberPattern, LonePointIsWhatIsLeftOfAZeroAndReadsBackAsZero) {
    EXPECT_EQ(format_number(0.0, ".#####"), ".");
    EXPECT_EQ(format_number(-0.0, ".#####"), ".");
    EXPECT_EQ(format_number(0.000004, ".#####"), ".");
    EXPECT_EQ(format_number(-0.000004, ".#####"), ".");
    EXPECT_EQ(leading_number(format_number(0.0, ".#####")), 0.0);
    EXPECT_EQ(format_number(0.00001, ".#####"), ".00001");
}

TEST(NumberPattern, DigitsBeforeThePointAreNeverCut) {
    EXPECT_EQ(format_number(1234567.0, "#"), "1234567");
    EXPECT_EQ(format_number(1234567.5, "0.0"), "1234567.5");
    EXPECT_EQ(format_number(12.5, ".#####"), "12.5");
    EXPECT_EQ(format_number(1e20, "0"), "100000000000000000000");
    // The largest Single to fifteen digits, 340282346638529 x 10^24.
    EXPECT_EQ(format_number(static_cast<double>(std::numeric_limits<float>::max()), "0"),
              "340282346638529000000000000000000000000");
}

TEST(NumberPattern, RoundsHalfAwayFromZero) {
    EXPECT_EQ(format_number(0.125, "0.00"), "0.13");
    EXPECT_EQ(format_number(-0.125, "0.00"), "-0.13");
    EXPECT_EQ(format_number(2.5, "0"), "3");
    EXPECT_EQ(format_number(-2.5, "0"), "-3");
    EXPECT_EQ(format_number(3.5, "0"), "4");
    EXPECT_EQ(format_number(0.5, "#"), "1");
    EXPECT_EQ(format_number(-0.5, "#"), "-1");
    EXPECT_EQ(format_number(0.5, "0"), "1");
    EXPECT_EQ(format_number(0.05, "0.0"), "0.1");
    EXPECT_EQ(format_number(0.375, "0.00"), "0.38");
}

TEST(NumberPattern, RoundsDownBelowTheHalf) {
    EXPECT_EQ(format_number(0.4, "#"), "");
    EXPECT_EQ(format_number(0.4, "0"), "0");
    EXPECT_EQ(format_number(2.4999, "0"), "2");
    EXPECT_EQ(format_number(0.04999, "0.0"), "0.0");
    EXPECT_EQ(format_number(0.005, "0.0"), "0.0");
    EXPECT_EQ(format_number(0.0005, "0"), "0");
}

// These three have no exact binary form, but rounded to fifteen digits they end in a 5.
TEST(NumberPattern, RoundsTheNumberThatFifteenDigitsShow) {
    EXPECT_EQ(format_number(1.005, "0.00"), "1.01");
    EXPECT_EQ(format_number(2.675, "0.00"), "2.68");
    EXPECT_EQ(format_number(1.2345, "0.000"), "1.235");
}

TEST(NumberPattern, CarriesNinesBeforeThePoint) {
    EXPECT_EQ(format_number(9.5, "#"), "10");
    EXPECT_EQ(format_number(999.5, "0"), "1000");
    EXPECT_EQ(format_number(99.995, "0.00"), "100.00");
    EXPECT_EQ(format_number(0.96, "#.#"), "1.");
    EXPECT_EQ(format_number(-0.995, "0.00"), "-1.00");
    EXPECT_EQ(format_number(0.0096, "0.000"), "0.010");
}

TEST(NumberPattern, ResultOfZeroHasNoSign) {
    EXPECT_EQ(format_number(-0.001, "0.00"), "0.00");
    EXPECT_EQ(format_number(-0.0, "0.0"), "0.0");
    EXPECT_EQ(format_number(-0.4, "#"), "");
    EXPECT_EQ(format_number(-0.4, "0"), "0");
    EXPECT_EQ(format_number(-0.005, "0.00"), "-0.01");
}

TEST(NumberPattern, OfTinyNumbersIsZero) {
    EXPECT_EQ(format_number(1e-20, "0.00"), "0.00");
    EXPECT_EQ(format_number(1e-310, "0.0"), "0.0");
    EXPECT_EQ(format_number(-1e-20, "#.#"), ".");
}

TEST(NumberPattern, OfAMissingValueIsEmpty) {
    EXPECT_EQ(format_number(std::nan(""), "0.00"), "");
    EXPECT_EQ(format_number(std::nan(""), ".#####"), "");
}

// m / 8 is exact in binary and equals 25 m / 2 hundredths. Rounded half away from zero with whole numbers
// this is (25 |m| + 1) / 2.
TEST(NumberPattern, AgreesWithWholeNumbersOverRandomEighths) {
    std::mt19937 random{printed_seed()};
    std::uniform_int_distribution<std::int64_t> eighths{-1'000'000'000, 1'000'000'000};
    for (int i = 0; i < 20000; ++i) {
        const std::int64_t m = eighths(random) >> (i % 30);
        const std::int64_t hundredths = (25 * std::abs(m) + 1) / 2;
        const std::string expected = fmt::format("{}{}.{:02}", m < 0 && hundredths != 0 ? "-" : "",
                                                 hundredths / 100, hundredths % 100);
        EXPECT_EQ(format_number(static_cast<double>(m) / 8.0, "0.00"), expected) << m;
    }
}

}  // namespace
}  // namespace nivora
