// Printing from the daily editor and from the monthly averages.

#include "reports/print_texts.h"
#include "store/monthly_table.h"
#include "tests/windows/prep/daily_window_fixture.h"
#include "windows/prep/frmLongTermAvg.h"

namespace nivora {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::Not;

class DailyPrintTest : public DailyWindowTest {
protected:
    /// The name that a print into a text file proposes.
    std::string proposed() {
        printers_.then(PrintTarget::Text);
        dialogs_.then_file(std::nullopt);
        press(2);
        return dialogs_.files().back().proposed_name;
    }
};

TEST_F(DailyPrintTest, PrintsTheShownZoneUnderTheHeadOfTheSimulation) {
    open_variables();
    zone()->setValue(2);
    press(2);
    ASSERT_EQ(printers_.jobs().size(), 1U);
    ASSERT_EQ(printers_.jobs()[0].pages.size(), 1U);
    const std::string page = printers_.jobs()[0].page(0);
    for (const char* text :
         {"Hollin Flow Model (Nivora)\n", "Version 1.10\n", "Simulation: s\n", "Basin name:   Alp\n",
          "Basin variables for simulation s  (Metric units)\n", "Zone 2 of 2\n", "Date\n", "CDC\n",
          "10/01/1980\n", "201.00\n", "204.00\n", "Page 1\n"})
        EXPECT_THAT(page, HasSubstr(text));
    EXPECT_THAT(page, Not(HasSubstr("101.00")));
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyPrintTest, TheEntryOfTheEditMenuPrintsAsTheButton) {
    open_variables();
    EXPECT_TRUE(find<QAction>("mnuEditItm(5)")->isEnabled());
    choose("mnuEditItm(5)");
    press(2);
    ASSERT_EQ(printers_.jobs().size(), 2U);
    EXPECT_EQ(printers_.jobs()[0].pages.size(), printers_.jobs()[1].pages.size());
}

TEST_F(DailyPrintTest, ASelectionOfRowsIsPrintedAlone) {
    open_variables();
    select(2, 2, 3, 2);
    press(2);
    const std::string page = printers_.jobs()[0].page(0);
    EXPECT_THAT(page, AllOf(HasSubstr("10/02/1980\n102.00\n"), HasSubstr("10/03/1980\n103.00\n")));
    EXPECT_THAT(page, AllOf(Not(HasSubstr("101.00")), Not(HasSubstr("104.00")), Not(HasSubstr("CDC"))));
}

TEST_F(DailyPrintTest, HiddenAndMovedColumnsArePrintedAsEver) {
    open_variables();
    press(2);
    go_to(1, 2);
    key(Qt::Key_Right, Qt::AltModifier);
    go_to(1, 4);
    key(Qt::Key_0, Qt::ControlModifier);
    ASSERT_EQ(headers().size(), 7U);
    press(2);
    ASSERT_EQ(printers_.jobs().size(), 2U);
    EXPECT_EQ(printers_.jobs()[1].page(0), printers_.jobs()[0].page(0));
    select(1, 2, 2, 3);
    press(2);
    const std::string page = printers_.jobs()[2].page(0);
    EXPECT_LT(page.find("Runoff\n"), page.find("Tmax\n")) << "in the order of the view";
}

TEST_F(DailyPrintTest, AValueThatIsBeingTypedIsPrinted) {
    open_variables();
    go_to(1, 2);
    type("77.5");
    choose("mnuEditItm(5)");
    EXPECT_THAT(printers_.jobs()[0].page(0), HasSubstr("77.50\n"));
}

TEST_F(DailyPrintTest, MoreThanTwoPagesOfFiftyRowsAreAskedAbout) {
    session_.basin.simulations.clear();
    add_simulation("s", october(1), october(151));
    add_physical(1, 151);
    open_prepared_variables();
    dialogs_.then(Answer::No);
    press(2);
    EXPECT_EQ(last_message().title, "Warning!  Potential large print job.");
    EXPECT_THAT(last_message().text, HasSubstr("or more pages.  Continue?"));
    EXPECT_TRUE(printers_.jobs()[0].pages.empty());
    dialogs_.then(Answer::Yes);
    press(2);
    EXPECT_GT(printers_.jobs()[1].pages.size(), 2U);
    select(1, 1, 100, 1);
    press(2);
    EXPECT_EQ(messages(), 2U) << "100 rows are two pages, and not asked about";
}

TEST_F(DailyPrintTest, EachViewProposesItsNameForATextFile) {
    session_.file_names.begin_in(program_.path());
    open_variables();
    EXPECT_EQ(proposed(), "alp_variables.txt");
    window_->close();
    open_parameters();
    EXPECT_EQ(proposed(), "alp_parameters.txt");
    window_->close();
    open_results();
    EXPECT_EQ(proposed(), "alp_Results.txt");
    EXPECT_EQ(daily_print_suffix(DataView::Scenario), "");
}

TEST_F(DailyPrintTest, TheResultsGoOnToTheRightWithTheirDates) {
    open_results();
    press(2);
    const RecordedJob& job = printers_.jobs()[0];
    ASSERT_GT(job.pages.size(), 2U);
    for (std::size_t page = 0; page < job.pages.size(); ++page) {
        EXPECT_THAT(job.page(page), HasSubstr("Date\n")) << page;
        EXPECT_THAT(job.page(page), HasSubstr("10/04/1980\n")) << page;
        EXPECT_THAT(job.page(page), HasSubstr("Page " + std::to_string(page + 1) + "\n"));
        for (const RecordedText& text : job.pages[page]) {
            EXPECT_GE(text.x, 72.0 - 0.1) << text.text;
            EXPECT_LE(text.x + text.width, job.paper_width - 72.0 + 0.1) << text.text;
        }
    }
}

TEST_F(DailyPrintTest, APrinterThatFailsLosesNothing) {
    open_variables();
    go_to(1, 2);
    type("77.5");
    printers_.jams = true;
    press(2);
    EXPECT_EQ(last_message().title, "Printout subroutine error trap");
    EXPECT_TRUE(window_->isVisible());
    press(0);
    EXPECT_EQ(stored("SELECT Runoff FROM PhysicalData WHERE Zone = 1 ORDER BY Date LIMIT 1"), "77.5");
}

class MonthlyPrintTest : public PrepWindowTest {
protected:
    void open() {
        std::vector<MonthlyRow> months;
        for (std::int16_t zone = 1; zone <= k_zones; ++zone) {
            for (int month = 1; month <= 12; ++month) {
                months.push_back({.zone = zone,
                                  .month = month_name(month),
                                  .precip = static_cast<float>(zone * 100 + month)});
            }
        }
        {
            BasinDatabase database = file_.open();
            if (!database.has_table(k_basin_averages)) database.create_table(basin_averages_table());
            add_rows<MonthlyRow>(database, basin_averages_table(), months);
        }
        auto window = std::make_unique<frmLongTermAvg>(context());
        ASSERT_TRUE(window->open());
        window_ = std::move(window);
        show_window();
    }
};

TEST_F(MonthlyPrintTest, PrintsTheMonthsOfTheShownZone) {
    open();
    find<QSpinBox>("UpDown1")->setValue(2);
    press(4);
    choose("mnuEditItm(1)");
    ASSERT_EQ(printers_.jobs().size(), 2U);
    for (const RecordedJob& job : printers_.jobs()) {
        ASSERT_EQ(job.pages.size(), 1U);
        const std::string page = job.page(0);
        for (const char* text : {"Long Term Monthly Averages\n", "Zone 2 of 2\n", "January\n", "December\n",
                                 "201.00\n", "212.00\n", "Basin name:   Alp\n", "Page 1\n"})
            EXPECT_THAT(page, HasSubstr(text));
        EXPECT_THAT(page, Not(HasSubstr("101.00")));
    }
}

TEST_F(MonthlyPrintTest, ASelectionOfRowsIsPrintedAlone) {
    open();
    auto* grid = find<GridView>("vaSpread1");
    const auto* model = grid->model();
    int precipitation = -1;
    for (int column = 0; column < model->columnCount(); ++column) {
        if (model->index(1, column).data().toString() == QStringLiteral("102.00")) precipitation = column;
    }
    ASSERT_GE(precipitation, 0);
    grid->setCurrentIndex(model->index(1, precipitation));
    grid->selectionModel()->select(
        QItemSelection(model->index(1, precipitation), model->index(2, precipitation)),
        QItemSelectionModel::ClearAndSelect);
    press(4);
    ASSERT_EQ(printers_.jobs().size(), 1U);
    const std::string page = printers_.jobs()[0].page(0);
    EXPECT_THAT(page, AllOf(HasSubstr("February\n102.00\n"), HasSubstr("March\n103.00\n")));
    for (const char* left_out : {"January", "101.00", "April", "104.00"})
        EXPECT_THAT(page, Not(HasSubstr(left_out)));
}

TEST_F(MonthlyPrintTest, ProposesTheBasinsNameForATextFile) {
    open();
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(std::nullopt);
    press(4);
    EXPECT_EQ(dialogs_.files().back().proposed_name, "alp.txt");
    EXPECT_TRUE(window_->isVisible());
}

}  // namespace
}  // namespace nivora
