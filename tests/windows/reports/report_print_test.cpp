// What reaches the printer from the windows of reports.

#include "tests/windows/reports/report_window_fixture.h"

#include <QCheckBox>

namespace nivora {
namespace {

using testing::HasSubstr;

class ReportPrintTest : public ReportWindowTest {
protected:
    [[nodiscard]] std::string printed() const {
        std::string text;
        for (const RecordedJob& job : printers_.jobs()) {
            for (std::size_t page = 0; page < job.pages.size(); ++page) text += job.page(page);
        }
        return text;
    }
};

TEST_F(ReportPrintTest, TheChosenReportsGoToThePrinterWithoutTheDisplay) {
    frmPrint window(context());
    window.show();
    for (const char* box : {"Check1(0)", "Check1(1)"}) in<QCheckBox>(window, QString::fromUtf8(box))->click();
    button(window, 1)->click();
    ASSERT_EQ(printers_.jobs().size(), 1U);
    EXPECT_EQ(printers_.window(), &window);
    EXPECT_THAT(printed(), HasSubstr("Current data description"));
    EXPECT_THAT(printed(), HasSubstr("Temperature Values"));
    EXPECT_TRUE(reports("Temperature Values"));
    EXPECT_FALSE(is_open("frmFileDisp"));
    EXPECT_TRUE(window.isVisible());
}

TEST_F(ReportPrintTest, ARefusedReportPrintsNothing) {
    frmPrint window(context());
    window.show();
    for (const char* box : {"Check1(0)", "Check1(4)"}) in<QCheckBox>(window, QString::fromUtf8(box))->click();
    button(window, 1)->click();
    EXPECT_EQ(last_message().title, "Missing data!");
    EXPECT_TRUE(printers_.offered_printers().empty());
}

TEST_F(ReportPrintTest, TheDisplayPrintsWhatItShowsWithAndWithoutTheHeadsOfTables) {
    frmFileDisp display(context());
    display.show();
    in<QAction>(display, QStringLiteral("mnuRptItm(2)"))->trigger();
    in<QAction>(display, QStringLiteral("mnuPrintItm(0)"))->trigger();
    in<QAction>(display, QStringLiteral("mnuPrintItm(1)"))->trigger();
    ASSERT_EQ(printers_.jobs().size(), 2U);
    EXPECT_EQ(printers_.window(), &display);
    const auto& with = printers_.jobs()[0];
    const auto& without = printers_.jobs()[1];
    EXPECT_THAT(with.page(0), HasSubstr("Degree Day Factors"));
    EXPECT_THAT(without.page(0), HasSubstr("Degree Day Factors"));
    EXPECT_LT(without.pages.size(), with.pages.size());
}

TEST_F(ReportPrintTest, ACancelledPrintKeepsTheWindowAndTheFile) {
    printers_.then(std::nullopt);
    frmPrint window(context());
    window.show();
    in<QCheckBox>(window, QStringLiteral("Check1(0)"))->click();
    button(window, 1)->click();
    EXPECT_TRUE(printers_.jobs().empty());
    EXPECT_TRUE(reports("Current data description"));
    EXPECT_TRUE(window.isVisible());
}

}  // namespace
}  // namespace nivora
