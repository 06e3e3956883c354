// What reaches the printer from the windows of reports.

#include "reports/report_pages.h"
#include "tests/windows/reports/report_window_fixture.h"

#include <QCheckBox>

namespace nivora {
namespace {

using testing::EndsWith;
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
    // How many pages that saves depends on the font; the second page begins elsewhere in any.
    EXPECT_LE(without.pages.size(), with.pages.size());
    EXPECT_NE(without.page(1), with.page(1));
}

TEST_F(ReportPrintTest, TheOutputDefinitionPrintsWithPageBreaks) {
    frmPrint window(context());
    window.show();
    in<QCheckBox>(window, QStringLiteral("Check1(2)"))->click();
    button(window, 1)->click();
    const std::string text = report_file();
    printing_.print_report(&window, {.text = text});
    printing_.print_report(&window, {.text = text, .No_Table_Head = true});
    ASSERT_EQ(printers_.jobs().size(), 3U);
    const auto& printed = printers_.jobs()[0];
    EXPECT_NE(printed.page(1), printers_.jobs()[2].page(1));
    ASSERT_EQ(printed.pages.size(), printers_.jobs()[1].pages.size());
    for (std::size_t page = 0; page < printed.pages.size(); ++page)
        EXPECT_EQ(printed.page(page), printers_.jobs()[1].page(page)) << page;
}

TEST_F(ReportPrintTest, EachWindowSaysWhereItsMarginsAreChanged) {
    frmPrint window(context());
    window.show();
    frmFileDisp display(context());
    display.show();
    in<QAction>(display, QStringLiteral("mnuRptItm(0)"))->trigger();
    in<QCheckBox>(window, QStringLiteral("Check1(0)"))->click();
    const auto expect_told = [&](const char* refusal) {
        button(window, 1)->click();
        EXPECT_EQ(last_message().title, "Nivora margin definition error");
        EXPECT_THAT(last_message().text, HasSubstr(refusal));
        EXPECT_THAT(
            last_message().text,
            EndsWith("\nClick File/Page Setup on the main window menu to change your margin definition."));
        for (const char* entry : {"mnuPrintItm(0)", "mnuPrintItm(1)"}) {
            in<QAction>(display, QString::fromUtf8(entry))->trigger();
            EXPECT_THAT(last_message().text, HasSubstr(refusal));
            EXPECT_THAT(last_message().text,
                        EndsWith("\nClick Print/Page Setup to change your margin definition."));
        }
    };
    session_.settings.page.margins = {5.0F, 1.0F, 5.0F, 1.0F};
    expect_told("Nivora reports are too wide");
    session_.settings.page.margins = {1.0F, 50.0F, 1.0F, 50.0F};
    expect_told("results in a 0 line page.");
    EXPECT_EQ(dialogs_.messages().size(), 6U);
    EXPECT_THAT(printed(), testing::IsEmpty());
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
