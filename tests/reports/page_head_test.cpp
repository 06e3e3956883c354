#include "reports/page_head.h"

#include <gtest/gtest.h>

#include <string>

namespace nivora {
namespace {

/// 5 November 2001, 13:02:03
double afternoon() {
    return static_cast<double>(day_count({2001, 11, 5}).value()) + (13 * 3600 + 2 * 60 + 3) / 86400.0;
}

std::string blanks(std::size_t count) { return std::string(count, ' '); }

TEST(PageHead, HoldsTimeVersionAndPageNumberThenAFormFeed) {
    ReportLines lines;
    int page = 1;
    write_page_head(lines, page, afternoon());
    // The date and time have 20 characters; the label starts at column 24, 13 before 37; it ends with the
    // version at column 40, and "Page" from 65 ends at 68.
    EXPECT_EQ(lines.written(), "11/5/2001 1:02:03 PM" + blanks(3) + "NVR, Version 1.10" + blanks(24) +
                                   "Page" + blanks(9) + "1\r\n\f\r\n");
}

TEST(PageHead, PutsItsItemsAtTheirColumns) {
    ReportLines lines;
    int page = 12;
    write_page_head(lines, page, afternoon());
    const std::string& line = lines.written();
    EXPECT_EQ(line.find("1.10"), 37U - 1);
    EXPECT_EQ(line.find("Page"), 65U - 1);
    EXPECT_EQ(line.find("12\r\n"), 78U - 1);
}

TEST(PageHead, FitsOneLineAtTheLongestDateAndTime) {
    ReportLines lines;
    int page = 1;
    // 12/31/2001 12:59:59 PM has 22 characters, one less than the columns before the label.
    const double longest =
        static_cast<double>(day_count({2001, 12, 31}).value()) + (12 * 3600 + 59 * 60 + 59) / 86400.0;
    write_page_head(lines, page, longest);
    EXPECT_EQ(lines.written().substr(0, 40), "12/31/2001 12:59:59 PM NVR, Version 1.10");
}

TEST(PageHead, CountsThePages) {
    ReportLines lines;
    int page = 7;
    write_page_head(lines, page, afternoon());
    EXPECT_EQ(page, 8);
}

}  // namespace
}  // namespace nivora
