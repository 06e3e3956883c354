#include "engine/lag_distribution.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

constexpr const char* k_total_text =
    "Distribution of daily melt over the period specified must equal 1 (100%).  Please correct before "
    "proceeding";

std::string total(const std::vector<std::string>& shares) { return lag_total_text(shares); }

TEST(LagDayCount, From0To6IsAccepted) {
    for (const double days : {0.0, 1.0, 2.0, 3.0, 4.0, 5.0, 6.0}) {
        EXPECT_FALSE(lag_day_count_problem(days).has_value()) << days;
    }
}

TEST(LagDayCount, OutsideIsStopped) {
    for (const double days : {-1.0, 7.0, 66.0, 1e300}) {
        const auto problem = lag_day_count_problem(days);
        ASSERT_TRUE(problem.has_value()) << days;
        EXPECT_EQ(problem->text, "Day count must be from 0 to 6");
        EXPECT_EQ(problem->icon, Icon::Stop);
        EXPECT_EQ(problem->buttons, Buttons::Ok);
    }
}

TEST(LagTotal, IsTheTextOfTheSum) {
    EXPECT_EQ(total({"1.0"}), "1");
    EXPECT_EQ(total({"0.5", "0.25", "0.125"}), "0.875");
    EXPECT_EQ(total({}), "0");
    EXPECT_EQ(total({"1", "0.5"}), "1.5");
}

TEST(LagTotal, CountsAnEmptyBoxAs0) {
    EXPECT_EQ(total({"", "", ""}), "0");
    EXPECT_EQ(total({"0.5", "", "0.5"}), "1");
    EXPECT_EQ(total({"."}), "0");
}

TEST(LagTotal, OfThreeTenthsTwiceAndFourTenthsPrintsAs1) {
    // In Singles: 0.3 + 0.3 = 0.60000002; + 0.4 = 1.00000003, whose nearest Single is 1.
    EXPECT_EQ(total({"0.3", "0.3", "0.4"}), "1");
}

TEST(LagTotal, IsSummedInSingles) {
    // In Singles: 0.26 + 0.52 = 0.77999997; + 0.21 = 0.98999995, which prints one digit below 0.99.
    EXPECT_EQ(total({"0.26", "0.52", "0.21"}), "0.9899999");
}

TEST(LagTotal, SharesThatMake1InDecimalsAreStoppedIfTheirSinglesDoNot) {
    // In Singles: 0.59 + 0.38 = 0.96999997; + 0.03 = 0.99999994.
    const std::string text = total({"0.59", "0.38", "0.03"});

    EXPECT_EQ(text, "0.9999999");
    EXPECT_TRUE(lag_total_problem(text).has_value());
}

TEST(LagTotal, SharesWhoseSinglesBarelyExceed1AreAccepted) {
    // In Singles: 0.66 + 0.23 = 0.89000005; + 0.1 = 0.99000007; + 0.01 = 1.00000012. With seven digits: 1.
    const std::string text = total({"0.66", "0.23", "0.1", "0.01"});

    EXPECT_EQ(text, "1");
    EXPECT_FALSE(lag_total_problem(text).has_value());
}

TEST(LagTotal, Of0AndOf1AreAccepted) {
    EXPECT_FALSE(lag_total_problem("0").has_value());
    EXPECT_FALSE(lag_total_problem("1").has_value());
}

TEST(LagTotal, OfAnythingElseIsStopped) {
    for (const char* text : {"0.9999999", "1.000001", "0.5", "2", "-1"}) {
        const auto problem = lag_total_problem(text);
        ASSERT_TRUE(problem.has_value()) << text;
        EXPECT_EQ(problem->text, k_total_text);
        EXPECT_EQ(problem->icon, Icon::Stop);
        EXPECT_EQ(problem->buttons, Buttons::Ok);
    }
}

TEST(LagTotal, JustBelow1PrintsAsLessAndIsStopped) {
    // 0.9999999 as a Single is 0.99999988.
    const std::string text = total({"0.5", "0.4999999"});

    EXPECT_EQ(text, "0.9999999");
    EXPECT_TRUE(lag_total_problem(text).has_value());
}

TEST(LagDistributionOfBoxes, HoldsTheCountAndTheShares) {
    EXPECT_THAT(lag_distribution(3, std::vector<std::string>{"0.5", "0.3", "0.2", "", "", ""}),
                ElementsAre(3.0F, 0.5F, 0.3F, 0.2F, 0.0F, 0.0F, 0.0F, 0.0F));
}

TEST(LagDistributionOfBoxes, CountsAnEmptyBoxAs0) {
    EXPECT_THAT(lag_distribution(3, std::vector<std::string>{"0.5", "", "0.5", "", "", ""}),
                ElementsAre(3.0F, 0.5F, 0.0F, 0.5F, 0.0F, 0.0F, 0.0F, 0.0F));
}

TEST(LagDistributionOfBoxes, OfATotalOf0IsNoneWhateverTheNumberOfDays) {
    const auto none = ElementsAre(0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F);
    EXPECT_THAT(lag_distribution(1, std::vector<std::string>{"0"}), none);
    EXPECT_THAT(lag_distribution(3, std::vector<std::string>{"", "0.0", "."}), none);
    EXPECT_THAT(lag_distribution(6, std::vector<std::string>(6)), none);
}

TEST(LagDistributionOfBoxes, OfNoDaysIsNone) {
    EXPECT_THAT(lag_distribution(0, std::vector<std::string>(6)),
                ElementsAre(0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F, 0.0F));
}

TEST(LagWeights, AreTheSharesOldestFirst) {
    EXPECT_THAT(lag_weights({3.0F, 0.5F, 0.3F, 0.2F}), ElementsAre(0.2, 0.3, 0.5));
    EXPECT_THAT(lag_weights({1.0F, 1.0F}), ElementsAre(1.0));
    EXPECT_THAT(lag_weights({6.0F, 0.1F, 0.2F, 0.3F, 0.25F, 0.1F, 0.05F}),
                ElementsAre(0.05, 0.1, 0.25, 0.3, 0.2, 0.1));
}

TEST(LagWeights, AreRoundedToFiveDecimals) {
    // 1/3; 0.000005, as a Single 0.0000049999999 and thus below the tie; 0.123456; 0.0000051.
    EXPECT_THAT(lag_weights({4.0F, 1.0F / 3.0F, 0.000005F, 0.123456F, 0.0000051F}),
                ElementsAre(0.00001, 0.12346, 0.0, 0.33333));
}

TEST(LagWeights, OfNoDistributionAreNone) { EXPECT_THAT(lag_weights({}), IsEmpty()); }

TEST(LagWeights, IgnoreSharesBeyondTheCount) {
    EXPECT_THAT(lag_weights({2.0F, 0.5F, 0.25F, 0.125F}), ElementsAre(0.25, 0.5));
}

}  // namespace
}  // namespace nivora
