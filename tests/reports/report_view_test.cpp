#include "reports/report_view.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(ReportViewTest, LinesEndWithLineFeedsAlone) {
    EXPECT_EQ(shown_report_text("one\r\n\r\ntwo\r\n"), "one\n\ntwo\n");
    EXPECT_EQ(shown_report_text("one\ntwo"), "one\ntwo");
    EXPECT_EQ(shown_report_text(""), "");
}

TEST(ReportViewTest, MarksOfPagesAndBlocksAreEmptyLines) {
    EXPECT_EQ(shown_report_text("one\r\n\f\r\ntwo\r\n\x01\r\nthree\r\n"), "one\n\ntwo\n\nthree\n");
    EXPECT_EQ(shown_report_text("\f"), "");
}

TEST(ReportViewTest, OtherTextStaysAlsoBesideAMark) {
    EXPECT_EQ(shown_report_text("a\fb\r\n  Töss  \r\n"), "a\fb\n  Töss  \n");
}

TEST(ReportViewTest, TheDifferenceSignOfTheClimateReportIsShownAsInPrint) {
    EXPECT_EQ(shown_report_text("Winter Change (\x1eHW), Zone 1 = 2\r\n\x1e\x1e\r\n"),
              "Winter Change (ΔHW), Zone 1 = 2\nΔΔ\n");
}

}  // namespace
}  // namespace nivora
