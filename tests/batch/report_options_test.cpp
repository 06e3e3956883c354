#include "batch/report_options.h"

#include "base/calendar.h"
#include "batch/report_output.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::Optional;

TEST(ReportOptions, NumbersOfReportsAreJoinedByCommas) {
    EXPECT_THAT(read_report_numbers("0,8"),
                Optional(ElementsAre(Report::DataDescription, Report::DeficitGain)));
    EXPECT_THAT(read_report_numbers("7"), Optional(ElementsAre(Report::InputSummary)));
    for (const char* text :
         {"", ",", "0,", ",0", "0,,1", "9", "10", "-1", "0;1", "0, 1", "all", "0,all", "a"})
        EXPECT_EQ(read_report_numbers(text), std::nullopt) << text;
}

TEST(ReportOptions, AMomentHasDateAndTimeInFull) {
    const auto day = static_cast<double>(day_count({2026, 3, 5}).value());
    EXPECT_EQ(read_iso_moment("2026-03-05T00:00:00"), day);
    EXPECT_EQ(read_iso_moment("2026-03-05T18:00:00"), day + 0.75);
    EXPECT_EQ(time_text(read_iso_moment("2026-03-05T13:30:15").value()), "1:30:15 PM");
    EXPECT_EQ(time_text(read_iso_moment("2026-03-05T23:59:59").value()), "11:59:59 PM");
    for (const char* text :
         {"", "2026-03-05", "2026-03-05T13:30", "2026-03-05 13:30:15", "2026-13-05T13:30:15",
          "2026-02-29T13:30:15", "2026-03-05T24:00:00", "2026-03-05T13:60:00", "2026-03-05T13:30:60",
          "2026-03-05T1a:30:15", "2026-03-05T13-30-15", "2026-3-5T13:30:15", "2026-03-05T13:30:15Z"}) {
        EXPECT_EQ(read_iso_moment(text), std::nullopt) << text;
    }
}

TEST(ReportOptions, TheEndOfAFilesNameTellsItsForm) {
    for (const char* name : {"a.txt", "folder.pdf/b.OUT", "c.Txt", "two.parts.out"})
        EXPECT_EQ(report_form(name), ReportForm::Text) << name;
    for (const char* name : {"a.pdf", "b.txt.PDF"}) EXPECT_EQ(report_form(name), ReportForm::Pdf) << name;
    for (const char* name : {"", "a", "a.csv", ".txt/a", "a.txt.mdb", "txt"})
        EXPECT_EQ(report_form(name), std::nullopt) << name;
}

}  // namespace
}  // namespace nivora
