#include "plots/plot_boxes.h"

#include "tests/plots/plot_values.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

Plot year(PlotNumber number = PlotNumber::SnowCover) {
    return plot_of(number, frame_of(k_october_2001, k_october_2002, 0.0F, 12.5F));
}

Plot depths(PlotNumber number = PlotNumber::DepletionOverMelt) {
    return plot_of(number, frame_of(0.0F, 84.256F, 0.0F, 1.0F));
}

TypedMaxima read(const Plot& plot, const BoxTexts& typed) {
    const auto reading = read_boxes(plot, box_texts(plot), typed);
    if (const auto* refusal = std::get_if<BoxRefusal>(&reading)) ADD_FAILURE() << refusal->text;
    return std::holds_alternative<TypedMaxima>(reading) ? std::get<TypedMaxima>(reading) : TypedMaxima{};
}

BoxRefusal refusal(const Plot& plot, const BoxTexts& typed) {
    const auto reading = read_boxes(plot, box_texts(plot), typed);
    if (const auto* found = std::get_if<BoxRefusal>(&reading)) return *found;
    ADD_FAILURE() << "taken: " << typed.x << " and " << typed.y;
    return {};
}

TEST(BoxTexts, ShowDateAndMaximum) {
    EXPECT_EQ(box_texts(year()), (BoxTexts{"10/01/2002", "12.5"}));
    EXPECT_EQ(box_texts(year(PlotNumber::WaterEquivalent)), (BoxTexts{"10/01/2002", "12.5"}));
}

TEST(BoxTexts, ShowADepthWithTwoDecimals) {
    for (const int number : {14, 20, 22})
        EXPECT_EQ(box_texts(depths(static_cast<PlotNumber>(number))), (BoxTexts{"84.26", "1"})) << number;
    Plot whole = depths();
    whole.frame.x_max = 84.0F;
    EXPECT_EQ(box_texts(whole).x, "84.");
}

TEST(BoxTexts, KeepTheDigitsOfASmallMaximum) {
    Plot plot = year();
    plot.frame.y_max = 0.0042F;
    EXPECT_EQ(box_texts(plot).y, "0.0042");
}

TEST(ReadBoxes, TakeDatesInBothFormsAndNumbers) {
    EXPECT_EQ(read(year(), {"9/30/2002", "12.5"}).x, 37529.0F);
    EXPECT_EQ(read(year(), {"2002-09-30", "12.5"}).x, 37529.0F);
    EXPECT_EQ(read(year(), {" 37529 ", "12.5"}).x, 37529.0F);
    EXPECT_EQ(read(year(), {"10/01/2002", " 20.25 "}).y, 20.25F);
    EXPECT_EQ(read(depths(), {"60.5", "1"}).x, 60.5F);
    EXPECT_EQ(read(depths(), {"9/30/2002", "1"}).x, 37529.0F);
}

TEST(ReadBoxes, ABoxThatWasNotEditedOrIsEmptyIsNoMaximum) {
    const TypedMaxima given = read(year(), box_texts(year()));
    EXPECT_FALSE(given.x || given.y);
    const TypedMaxima empty = read(year(), {"", "  "});
    EXPECT_FALSE(empty.x || empty.y);
    // Two decimals would cut the depth of 84.256.
    EXPECT_FALSE(read(depths(), {"84.26", "0.5"}).x);
}

TEST(ReadBoxes, LettersAreRefused) {
    const BoxRefusal date = refusal(year(), {"spring", "12.5"});
    EXPECT_EQ(date.box, BoxRefusal::Box::X);
    EXPECT_EQ(date.text,
              "The maximum X 'spring' is not a date between 1900 and 2300. Type a date, such as 9/30/2002.");
    EXPECT_EQ(refusal(depths(), {"12 cm", "1"}).text,
              "The maximum X '12 cm' is not a number. Type a number, such as 12.5.");
    const BoxRefusal y = refusal(year(), {"10/01/2002", "high"});
    EXPECT_EQ(y.box, BoxRefusal::Box::Y);
    EXPECT_EQ(y.text, "The maximum Y 'high' is not a number. Type a number, such as 12.5.");
}

TEST(ReadBoxes, ACommaIsNoPoint) {
    EXPECT_EQ(refusal(year(), {"10/01/2002", "1,5"}).box, BoxRefusal::Box::Y);
    EXPECT_EQ(refusal(depths(), {"1,5", "1"}).box, BoxRefusal::Box::X);
}

TEST(ReadBoxes, DatesThatAreNoneAreRefused) {
    for (const char* text : {"2/30/2002", "9/30/2301", "1e9", "1e300"})
        EXPECT_EQ(refusal(year(), {text, "12.5"}).box, BoxRefusal::Box::X) << text;
    EXPECT_EQ(refusal(depths(), {"1e300", "1"}).box, BoxRefusal::Box::X);
    EXPECT_EQ(refusal(year(), {"", "1e39"}).box, BoxRefusal::Box::Y);
}

TEST(ReadBoxes, AMaximumNotAboveTheMinimumIsRefused) {
    EXPECT_EQ(
        refusal(year(), {"10/1/2001", "12.5"}).text,
        "The maximum X '10/1/2001' is not after Oct 1, 2001, where the plot begins. Type a later date.");
    EXPECT_EQ(refusal(depths(), {"-1", "1"}).text,
              "The maximum X '-1' is not above 0, where the axis begins. Type a larger number.");
    EXPECT_EQ(refusal(year(), {"10/01/2002", "0"}).text,
              "The maximum Y '0' is not above 0, where the axis begins. Type a larger number.");
    Plot temperatures = year(PlotNumber::Temperatures);
    temperatures.frame.y_min = -20.0F;
    EXPECT_EQ(read(temperatures, {"10/01/2002", "-5"}).y, -5.0F);
}

TEST(PositionTexts, ShowDateOrDepthAndValue) {
    EXPECT_EQ(position_texts(year(), 37165.75, 3.456), (BoxTexts{" X: Oct 1, 2001", " Y: 3.46"}));
    EXPECT_EQ(position_texts(depths(), 12.346, 0.5), (BoxTexts{" X: 12.35", " Y: .5"}));
    EXPECT_EQ(position_texts(depths(), 12.0, -2.0), (BoxTexts{" X: 12.", " Y: -2."}));
}

TEST(PositionTexts, HoldFarOffTheCalendar) {
    EXPECT_EQ(position_texts(year(), 1e300, 0.0).x.substr(0, 4), " X: ");
    EXPECT_EQ(position_texts(year(), -1e300, 0.0).x.substr(0, 4), " X: ");
}

}  // namespace
}  // namespace nivora
