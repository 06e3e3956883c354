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

}  // namespace
}  // namespace nivora
