#include "tests/windows/prep/prep_window_fixture.h"
#include "windows/prep/frmPopulate.h"

namespace nivora {
namespace {

/// The window of the first period.
class PopulateTest : public PrepWindowTest {
protected:
    PopulateTest() { open(); }

    void open() {
        window_ = std::make_unique<frmPopulate>(context());
        show_window();
    }
    QLineEdit* date(int index) { return find<QLineEdit>("MaskEdBox1(" + std::to_string(index) + ")"); }
    std::string caption(const std::string& name) { return from_qt(find<QLabel>(name)->text()); }
    void fill_dates(const char* first, const char* last) {
        fill(date(0), first);
        fill(date(1), last);
    }
    std::string rows() { return stored("SELECT count(*) FROM PhysicalData"); }
};

TEST_F(PopulateTest, TheYear1990IsProposed) {
    EXPECT_EQ(from_qt(window_->windowTitle()), "Populate physical data table");
    EXPECT_EQ(date(0)->text(), QStringLiteral("01/01/1990"));
    EXPECT_EQ(date(1)->text(), QStringLiteral("12/31/1990"));
    EXPECT_EQ(caption("Label2(0)"), "Starting date (mm/dd/yyyy)");
    EXPECT_EQ(caption("Label2(1)"), "Ending date (mm/dd/yyyy)");
    EXPECT_EQ(
        caption("Label2(2)"),
        "Enter the starting and ending dates for the period for which data are available in this basin");
    EXPECT_EQ(from_qt(button(0)->text()), "&Accept dates");
    EXPECT_EQ(from_qt(button(1)->text()), "&Continue without populating");
    EXPECT_EQ(from_qt(button(2)->text()), "&Help");
}

TEST_F(PopulateTest, AcceptAsksAndAddsEmptyRowsForEachZoneAndDay) {
    session_.prep.Data_View = DataView::Parameters;
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "Daily physical data records for the period '01/01/1990 to 12/31/1990' will be added to this "
              "basin's physical data table.  Ok?");
    EXPECT_EQ(rows(), "730");  // 365 days of two zones
    EXPECT_EQ(
        stored("SELECT count(*) FROM PhysicalData WHERE Runoff IS NULL AND Tmax IS NULL AND Tmin IS NULL "
               "AND Tavg IS NULL AND Precip IS NULL AND SCA IS NULL AND NetRadiation IS NULL"),
        "730");
    EXPECT_EQ(session_.prep.Data_View, DataView::PhysicalData);
}

TEST_F(PopulateTest, TheExtentOfTheRecordIsReadAgain) {
    fill_dates("02281992", "03011992");
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_EQ(session_.prep.record.first, *day_count({1992, 2, 28}));
    EXPECT_EQ(session_.prep.record.last, *day_count({1992, 3, 1}));
    EXPECT_EQ(session_.prep.record.zones, 2);
    EXPECT_EQ(session_.prep.record.count, 6);  // 28 and 29 February and 1 March of two zones
}

TEST_F(PopulateTest, NoToTheQuestionEndsWithAnEmptyTable) {
    dialogs_.then(Answer::No);
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(rows(), "0");
}

TEST_F(PopulateTest, ContinueLeavesTheTableEmptyAndAsksNothing) {
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(rows(), "0");
}

TEST_F(PopulateTest, TheEndsOfTheAllowedRangeAreAccepted) {
    fill_dates("01011900", "01021900");
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_EQ(rows(), "4");
    open();
    fill_dates("12302300", "12312300");
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_EQ(rows(), "8");
}

TEST_F(PopulateTest, ADateThatDoesNotExistIsRefusedInItsBox) {
    fill_dates("02291991", "12311991");
    press(0);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "'02/29/1991' is not a date. Give month, day and year as mm/dd/yyyy, from 1900 to 2300.");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(QApplication::focusWidget(), date(0));
    EXPECT_EQ(rows(), "0");
}

TEST_F(PopulateTest, DatesOutsideTheRangeAreRefused) {
    fill_dates("12311899", "12311991");
    press(0);
    EXPECT_EQ(messages(), 1U);
    fill_dates("01011990", "01012301");
    press(0);
    EXPECT_EQ(messages(), 2U);
    EXPECT_EQ(QApplication::focusWidget(), date(1));
    EXPECT_EQ(rows(), "0");
}

TEST_F(PopulateTest, AnUnfinishedOrEmptyDateIsRefused) {
    fill_dates("0101", "12311991");
    press(0);
    EXPECT_EQ(messages(), 1U);
    fill_dates("", "12311991");
    press(0);
    EXPECT_EQ(messages(), 2U);
    EXPECT_TRUE(window_->isVisible());
    EXPECT_EQ(rows(), "0");
}

TEST_F(PopulateTest, AnEndBeforeTheStartIsRefusedAndOneDayIsEnough) {
    fill_dates("01021990", "01011990");
    press(0);
    EXPECT_EQ(last_message().text, "The ending date lies before the starting date.");
    EXPECT_EQ(rows(), "0");
    fill_dates("01021990", "01021990");
    dialogs_.then(Answer::Yes);
    press(0);
    EXPECT_EQ(rows(), "2");
}

TEST_F(PopulateTest, HelpShowsItsTopicAndKeepsTheWindowOpen) {
    press(2);
    EXPECT_EQ(desktop_.topics.size(), 1U);
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(PopulateTest, ClosingIsRefusedWhileQuickHelpIsOnAndKeepsThePositionOtherwise) {
    quick_help_.set_on(true);
    EXPECT_FALSE(window_->close());
    quick_help_.set_on(false);
    const auto number = static_cast<std::size_t>(WindowNumber::frmPopulate);
    EXPECT_FALSE(session_.settings.places.at(number).left.has_value());
    EXPECT_TRUE(window_->close());
    EXPECT_EQ(session_.settings.places.at(number).left, window_->pos().x());
}

}  // namespace
}  // namespace nivora
