#include "base/single.h"

#include "tests/support/printed_seed.h"

#include <gtest/gtest.h>

#include <random>

namespace nivora {
namespace {

constexpr float k_largest = std::numeric_limits<float>::max();
constexpr float k_smallest = std::numeric_limits<float>::denorm_min();
constexpr double k_endless = std::numeric_limits<double>::infinity();

template <typename Work>
int fault_number(Work&& work) {
    try {
        work();
    } catch (const Fault& fault) {
        return fault.number();
    }
    return 0;
}

/// The text of the fault that `work` throws; empty if it throws none.
template <typename Work>
std::string fault_text(Work&& work) {
    try {
        work();
    } catch (const Fault& fault) {
        return fault.what();
    }
    return {};
}

TEST(Faults, HaveTheirNumbersAndTexts) {
    EXPECT_EQ(overflow_fault().number(), 6);
    EXPECT_STREQ(overflow_fault().what(), "Overflow");
    EXPECT_EQ(subscript_fault().number(), 9);
    EXPECT_STREQ(subscript_fault().what(), "Subscript out of range");
    EXPECT_EQ(null_fault().number(), 94);
    EXPECT_STREQ(null_fault().what(), "Invalid use of Null");
    EXPECT_EQ(no_record_fault().number(), 3021);
    EXPECT_STREQ(no_record_fault().what(), "No current record.");
}

TEST(ToSingle, RoundsToTheNearest) {
    EXPECT_EQ(to_single(0.1), 0.1F);
    EXPECT_EQ(to_single(-2.5), -2.5F);
    // Above 2^24 = 16777216 Singles are 2 apart: both odd numbers are
    // ties and round to the even multiple of 2.
    EXPECT_EQ(to_single(16777217.0), 16777216.0F);
    EXPECT_EQ(to_single(16777219.0), 16777220.0F);
    EXPECT_EQ(to_single(16777217.000001), 16777218.0F);
}

TEST(ToSingle, OfTooSmallANumberIsZero) {
    EXPECT_EQ(to_single(static_cast<double>(k_smallest)), k_smallest);
    EXPECT_EQ(to_single(static_cast<double>(k_smallest) / 2), 0.0F);  // a tie with 0, which is even
    EXPECT_EQ(to_single(1e-300), 0.0F);
}

TEST(ToSingle, BeyondTheLargestSingleIsFault6) {
    // The largest Single is 2^128 - 2^104. A number below 2^128 - 2^103, which
    // is half way to 2^128, rounds down to it.
    const double half_way = std::ldexp(1.0, 128) - std::ldexp(1.0, 103);
    EXPECT_EQ(to_single(static_cast<double>(k_largest)), k_largest);
    EXPECT_EQ(to_single(std::nextafter(half_way, 0.0)), k_largest);
    EXPECT_EQ(to_single(-std::nextafter(half_way, 0.0)), -k_largest);
    EXPECT_EQ(fault_number([&] { return to_single(half_way); }), k_fault_overflow);
    EXPECT_EQ(fault_number([&] { return to_single(-half_way); }), k_fault_overflow);
    EXPECT_EQ(fault_number([] { return to_single(1e300); }), k_fault_overflow);
    EXPECT_EQ(fault_number([] { return to_single(k_endless); }), k_fault_overflow);
    EXPECT_EQ(fault_text([] { return to_single(-k_endless); }), "Overflow");
}

TEST(ToSingle, OfAMissingValueIsFault94) {
    EXPECT_EQ(fault_number([] { return to_single(static_cast<double>(k_missing)); }), k_fault_null);
    EXPECT_EQ(fault_text([] { return to_single(std::nan("")); }), "Invalid use of Null");
}

TEST(ToSingleField, KeepsAMissingValueMissing) {
    EXPECT_TRUE(is_missing(static_cast<double>(to_single_field(std::nan("")))));
}

TEST(ToSingleField, RoundsAndOverflowsAsAVariableDoes) {
    EXPECT_EQ(to_single_field(0.1), 0.1F);
    EXPECT_EQ(to_single_field(16777217.0), 16777216.0F);
    EXPECT_EQ(fault_number([] { return to_single_field(3.5e38); }), k_fault_overflow);
    EXPECT_EQ(fault_number([] { return to_single_field(-k_endless); }), k_fault_overflow);
}

TEST(Present, GivesTheValueOrFault94) {
    EXPECT_EQ(required(1.5F), 1.5F);
    EXPECT_EQ(required(0.0), 0.0);
    EXPECT_EQ(fault_number([] { return required(k_missing); }), k_fault_null);
    EXPECT_EQ(fault_number([] { return required(std::nan("")); }), k_fault_null);
}

TEST(RoundHalfEven, TakesTiesAtFiveDecimalsToTheEvenDigit) {
    // 1/64 = 0.015625 and its odd multiples are exact in binary, and their sixth and last decimal is a 5.
    EXPECT_EQ(round_half_even(0.015625, 5), 0.01562);
    EXPECT_EQ(round_half_even(0.046875, 5), 0.04688);
    EXPECT_EQ(round_half_even(0.078125, 5), 0.07812);
    EXPECT_EQ(round_half_even(0.109375, 5), 0.10938);
    EXPECT_EQ(round_half_even(-0.015625, 5), -0.01562);
    EXPECT_EQ(round_half_even(-0.046875, 5), -0.04688);
    EXPECT_EQ(round_half_even(10.015625, 5), 10.01562);
}

TEST(RoundHalfEven, TakesTheNearestWhereThereIsNoTie) {
    EXPECT_EQ(round_half_even(0.0156251, 5), 0.01563);
    EXPECT_EQ(round_half_even(0.0156249, 5), 0.01562);
    EXPECT_EQ(round_half_even(1.234567, 5), 1.23457);
    EXPECT_EQ(round_half_even(-1.234567, 5), -1.23457);
    EXPECT_EQ(round_half_even(7.0, 5), 7.0);
    // The Single nearest to 0.1 is 0.100000001490116.
    EXPECT_EQ(round_half_even(static_cast<double>(0.1F), 5), 0.1);
}

TEST(RoundHalfEven, WorksAtEveryNumberOfDecimals) {
    EXPECT_EQ(round_half_even(0.5, 0), 0.0);
    EXPECT_EQ(round_half_even(1.5, 0), 2.0);
    EXPECT_EQ(round_half_even(2.5, 0), 2.0);
    EXPECT_EQ(round_half_even(-2.5, 0), -2.0);
    EXPECT_EQ(round_half_even(-3.5, 0), -4.0);
    EXPECT_EQ(round_half_even(0.25, 1), 0.2);
    EXPECT_EQ(round_half_even(0.75, 1), 0.8);
    EXPECT_EQ(round_half_even(0.125, 2), 0.12);
    EXPECT_EQ(round_half_even(0.375, 2), 0.38);
    EXPECT_EQ(round_half_even(0.1234567894, 9), 0.123456789);
}

// n / 64 * 100000 is exact in a Double, so the expected value can be worked out with whole numbers.
TEST(RoundHalfEven, AgreesWithWholeNumbersOverRandomSingles) {
    std::mt19937 random{printed_seed()};
    std::uniform_int_distribution<std::int64_t> sixty_fourths{-(1 << 23), 1 << 23};
    for (int i = 0; i < 20000; ++i) {
        const std::int64_t n = sixty_fourths(random);
        // n / 64 * 100000 = n * 3125 / 2. Of a half, the whole-number division leaves the part towards zero.
        const std::int64_t twice = n * 3125;
        std::int64_t rounded = twice / 2;
        if (twice % 2 != 0 && rounded % 2 != 0) rounded += twice > 0 ? 1 : -1;
        EXPECT_EQ(round_half_even(static_cast<double>(n) / 64.0, 5), static_cast<double>(rounded) / 1e5) << n;
    }
}

TEST(RoundHalfEven, NeverGivesANegativeZero) {
    for (const double value : {-0.0, -0.000001, -0.000005, -1e-300}) {
        const double rounded = round_half_even(value, 5);
        EXPECT_EQ(rounded, 0.0) << value;
        EXPECT_FALSE(std::signbit(rounded)) << value;
    }
    EXPECT_FALSE(std::signbit(round_half_even(-0.5, 0)));
}

TEST(RoundHalfEven, KeepsAMissingValueMissing) { EXPECT_TRUE(is_missing(round_half_even(std::nan(""), 5))); }

TEST(ToInteger16, RoundsTiesToTheEvenNumber) {
    EXPECT_EQ(to_integer16(0.5), 0);
    EXPECT_EQ(to_integer16(1.5), 2);
    EXPECT_EQ(to_integer16(2.5), 2);
    EXPECT_EQ(to_integer16(-0.5), 0);
    EXPECT_EQ(to_integer16(-1.5), -2);
    EXPECT_EQ(to_integer16(2.4999), 2);
    EXPECT_EQ(to_integer16(12.0), 12);
}

TEST(ToInteger16, EndsAtItsLimits) {
    EXPECT_EQ(to_integer16(32767.0), 32767);
    EXPECT_EQ(to_integer16(32767.49), 32767);
    EXPECT_EQ(to_integer16(32767.5), std::nullopt);  // a tie; the even 32768 does not fit
    EXPECT_EQ(to_integer16(32768.0), std::nullopt);
    EXPECT_EQ(to_integer16(-32768.0), -32768);
    EXPECT_EQ(to_integer16(-32768.5), -32768);  // a tie; the even -32768 fits
    EXPECT_EQ(to_integer16(-32768.51), std::nullopt);
    EXPECT_EQ(to_integer16(-32769.0), std::nullopt);
}

TEST(ToInteger16, OfAMissingOrInfiniteValueIsNothing) {
    EXPECT_EQ(to_integer16(std::nan("")), std::nullopt);
    EXPECT_EQ(to_integer16(k_endless), std::nullopt);
    EXPECT_EQ(to_integer16(-k_endless), std::nullopt);
    EXPECT_EQ(to_integer16(1e300), std::nullopt);
}

}  // namespace
}  // namespace nivora
