#include "reports/printed_page.h"

#include "tests/reports/recorded_device.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr const char* k_own_setup = "Click Print/Page Setup to change your margin definition.";
constexpr const char* k_main_setup =
    "Click File/Page Setup on the main window menu to change your margin definition.";

PageSetup setup() {
    PageSetup page;
    page.margins = {0.5F, 1.0F, 0.5F, 1.0F};
    page.orientation = 2;
    page.paper = "A4";
    return page;
}

std::string refusal_of(const std::vector<std::string>& refused) {
    RecordedDevice device;
    device.refused = refused;
    const auto refusal = Printer_Setup(device, setup());
    return refusal ? refusal->text : "none";
}

TEST(PrinterSetup, AsksForFontSizeBoldOrientationMarginsAndPaperInThisOrder) {
    RecordedDevice device;
    EXPECT_FALSE(Printer_Setup(device, setup()));
    EXPECT_THAT(device.taken, ElementsAre("font Courier New", "size 7.250000", "bold", "orientation 2",
                                          "margins 0.500000", "paper A4"));
}

TEST(PrinterSetup, EachRefusalHasItsOwnText) {
    EXPECT_EQ(refusal_of({"font Courier New", "font Courier"}),
              "Unable to set the printer font (Courier New)");
    EXPECT_EQ(refusal_of({"size 7.250000"}), "Unable to set the printer fontsize (7.25)");
    EXPECT_EQ(refusal_of({"bold"}), "Unable to set the printer font to 'Bold'");
    EXPECT_EQ(refusal_of({"orientation 2"}), "Unable to set the printer page orientation ");
    EXPECT_EQ(refusal_of({"margins 0.500000"}), "Unable to set the printer margin");
    EXPECT_EQ(refusal_of({"paper A4"}), "Unable to initialize the printer pagesize/position.");
}

TEST(PrinterSetup, TheSecondFontNameStandsInForTheFirst) {
    RecordedDevice device;
    device.refused = {"font Courier New"};
    EXPECT_FALSE(Printer_Setup(device, setup()));
    EXPECT_EQ(device.taken[1], "font Courier");
}

TEST(PrinterSetup, TheFirstRefusalEndsIt) {
    RecordedDevice device;
    device.refused = {"bold"};
    EXPECT_TRUE(Printer_Setup(device, setup()));
    EXPECT_EQ(device.taken.back(), "bold");
}

class MarginRefusal : public testing::Test {
protected:
    // 80 hyphens of 87 twips are 6960 wide, 40 lines of 145 are 5800 high.
    MarginRefusal() { device_.usable(6960, 5800); }

    RecordedDevice device_;
};

TEST_F(MarginRefusal, HyphensThatJustFitAndExactlyFortyLinesPass) {
    EXPECT_FALSE(margin_refusal(device_, "frmPrint"));
}

TEST_F(MarginRefusal, ATwipLessIsTooNarrow) {
    device_.metrics.right += 1;
    const auto refusal = margin_refusal(device_, "frmPrint");
    ASSERT_TRUE(refusal);
    EXPECT_EQ(refusal->text,
              std::string{"Nivora reports are too wide for the current horizontal margin definition.\n"} +
                  k_main_setup);
    EXPECT_EQ(refusal->title, "Nivora margin definition error");
    EXPECT_EQ(refusal->icon, Icon::Stop);
    EXPECT_EQ(margin_refusal(device_, "frmFileDisp")->text,
              std::string{"Nivora reports are too wide for the current horizontal margin definition.\n"} +
                  k_own_setup);
}

TEST_F(MarginRefusal, ATwipLessIsThirtyNineLines) {
    device_.metrics.bottom += 1;
    const auto refusal = margin_refusal(device_, "frmFileDisp");
    ASSERT_TRUE(refusal);
    const std::string text =
        "The Nivora recommended minimum page height is 40 lines.  The current vertical margin definition "
        "results in a 39 line page.\n";
    EXPECT_EQ(refusal->text, text + k_own_setup);
    EXPECT_EQ(refusal->title, "Nivora margin definition error");
    EXPECT_EQ(margin_refusal(device_, "Results")->text, text + k_main_setup);
}

TEST_F(MarginRefusal, TheWidthIsCheckedFirst) {
    device_.metrics.right += 1;
    device_.metrics.bottom += 1;
    EXPECT_EQ(margin_refusal(device_, "frmPrint")->icon, Icon::Stop);
}

TEST_F(MarginRefusal, MarginsThatEatThePageLeaveNoLine) {
    device_.metrics.top = device_.metrics.paper_height;
    EXPECT_THAT(margin_refusal(device_, "frmPrint")->text, testing::HasSubstr("results in a 0 line page."));
    device_.metrics.left = device_.metrics.paper_width;
    EXPECT_THAT(margin_refusal(device_, "frmPrint")->text, testing::HasSubstr("too wide"));
}

TEST(PrintError, JoinsTextAndNumber) {
    const Message message = print_error("Printer error", 482);
    EXPECT_EQ(message.text, "Printer error, Error Code #482.  Error raised during print request (PrintOut) ");
    EXPECT_EQ(message.title, "Printout subroutine error trap");
}

}  // namespace
}  // namespace nivora
