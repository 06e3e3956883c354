#include "store/monthly_table.h"
#include "tests/windows/prep/prep_window_fixture.h"
#include "windows/prep/frmLongTermAvg.h"

#include <QAction>
#include <QGroupBox>
#include <QLabel>
#include <QMenuBar>
#include <QSignalSpy>

namespace nivora {
namespace {

using testing::ElementsAre;

/// The window of the long-term monthly averages.
class MonthlyAveragesWindowTest : public PrepWindowTest {
protected:
    void make_months() {
        std::vector<MonthlyRow> months;
        for (std::int16_t zone = 1; zone <= k_zones; ++zone) {
            for (int month = 1; month <= 12; ++month)
                months.push_back({.zone = zone, .month = month_name(month)});
        }
        BasinDatabase database = file_.open();
        if (!database.has_table(k_basin_averages)) database.create_table(basin_averages_table());
        add_rows<MonthlyRow>(database, basin_averages_table(), months);
    }
    /// Zone 1 has two days in October with a precipitation of 1 and 2,
    /// and one in November without precipitation.
    void add_days() {
        std::vector<PhysicalRow> rows(3);
        for (PhysicalRow& row : rows) row.zone = 1;
        rows[0].date = october(1);
        rows[0].tmax = 10.0F;
        rows[0].tmin = -2.0F;
        rows[0].tavg = 4.0F;
        rows[0].precip = 1.0F;
        rows[1].date = *day_count({1985, 10, 7});
        rows[1].tmax = 13.0F;
        rows[1].precip = 2.0F;
        rows[2].date = october(32);
        rows[2].tmax = 5.0F;
        BasinDatabase database = file_.open();
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }
    void open() {
        auto window = std::make_unique<frmLongTermAvg>(context());
        opened_ = window->open();
        window_ = std::move(window);
        if (opened_) show_window();
    }
    GridView* grid() { return find<GridView>("vaSpread1"); }
    QSpinBox* zone() { return find<QSpinBox>("UpDown1"); }
    std::string shown(int row, int column) {
        return from_qt(grid()->model()->index(row - 1, column - 1).data().toString());
    }
    std::vector<std::string> month(int row) {
        return {shown(row, 2), shown(row, 3), shown(row, 4), shown(row, 5)};
    }
    void set(int row, int column, const char* text) {
        grid()->setFocus();
        grid()->setCurrentIndex(grid()->model()->index(row - 1, column - 1));
        type(text);
        key(Qt::Key_Return);
    }
    std::string stored_month(const char* field, int zone, const char* month) {
        return stored("SELECT " + std::string{field} + " FROM BasinAverages WHERE Zone = " +
                      std::to_string(zone) + " AND Month = '" + month + "'");
    }

    bool opened_ = false;
};

TEST_F(MonthlyAveragesWindowTest, TwelveMonthsOfAZoneShow) {
    make_months();
    file_.change(
        "UPDATE BasinAverages SET TMaxN = 1.5, TMinN = -2, TAvgN = 0.25, PrecipN = 7 WHERE Zone = 1 AND "
        "Month = 'Feb'");
    open();
    EXPECT_EQ(from_qt(window_->windowTitle()), "Long-term Monthly Averages");
    std::vector<std::string> headers;
    for (int column = 0; column < 5; ++column)
        headers.push_back(from_qt(grid()->model()->headerData(column, Qt::Horizontal).toString()));
    EXPECT_THAT(headers, ElementsAre("Month", "Maximum Temperature", "Minimum Temperature",
                                     "Average Temperature", "Precipitation"));
    ASSERT_EQ(grid()->model()->rowCount(), 12);
    EXPECT_EQ(shown(1, 1), "January");
    EXPECT_EQ(shown(12, 1), "December");
    EXPECT_THAT(month(2), ElementsAre("1.50", "-2.00", "0.25", "7.00"));
    EXPECT_THAT(month(1), ElementsAre("", "", "", ""));
    EXPECT_EQ(from_qt(find<QGroupBox>("Frame2")->title()), "Zone 1 of 2");
    EXPECT_EQ(zone()->maximum(), 2);
    EXPECT_EQ(from_qt(find<QLabel>("panel1")->text()), "alp.mdb");
}

TEST_F(MonthlyAveragesWindowTest, ButtonsAndMenuHaveTheGivenCaptions) {
    make_months();
    open();
    std::vector<std::string> captions;
    for (int index = 0; index < 5; ++index) captions.push_back(from_qt(button(index)->text()));
    EXPECT_THAT(captions, ElementsAre("&Accept", "&Cancel", "&Help", "Recalculate", "&Print"));
    EXPECT_EQ(from_qt(find<QAction>("mnuEditItm(0)")->text()), "&Copy");
    EXPECT_EQ(from_qt(find<QAction>("mnuEditItm(1)")->text()), "&Print");
    EXPECT_TRUE(find<QAction>("mnuEditItm(1)")->isEnabled());
    EXPECT_TRUE(find<QPushButton>("Command1(4)")->isEnabled());
}

TEST_F(MonthlyAveragesWindowTest, WalkingThroughMissingMonthsAndTypingTheSameValueIsNotAnEdit) {
    make_months();
    file_.change("UPDATE BasinAverages SET TMaxN = 1.5 WHERE Zone = 1 AND Month = 'Jan'");
    open();
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 2));
    for (const Qt::Key step : {Qt::Key_Down, Qt::Key_Return, Qt::Key_Tab}) key(step);
    set(1, 2, "1.50");
    EXPECT_THAT(month(1), ElementsAre("1.50", "", "", ""));
    press(0);
    EXPECT_EQ(stored("SELECT count(*) FROM BasinAverages WHERE TMinN IS NOT NULL"), "0");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MonthlyAveragesWindowTest, WithoutPhysicalDataTheStatusAsksForRecalculate) {
    make_months();
    open();
    auto* status = window_->findChild<QLabel*>(QStringLiteral("panel2"));
    ASSERT_NE(status, nullptr);
    EXPECT_EQ(from_qt(status->text()), "Click 'Recalculate' button");
}

TEST_F(MonthlyAveragesWindowTest, WithPhysicalDataTheStatusShowsTheFileAlone) {
    make_months();
    add_days();
    open();
    EXPECT_EQ(window_->findChild<QLabel*>(QStringLiteral("panel2")), nullptr);
}

TEST_F(MonthlyAveragesWindowTest, AMissingTableIsReportedAndTheWindowDoesNotOpen) {
    file_.change("DROP TABLE IF EXISTS BasinAverages");
    open();
    EXPECT_FALSE(opened_);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Missing invalid BasinAverages table");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

TEST_F(MonthlyAveragesWindowTest, AnotherZoneIsChosenByArrowOrNumber) {
    make_months();
    file_.change("UPDATE BasinAverages SET TMaxN = Zone WHERE Month = 'Mar'");
    open();
    zone()->setValue(2);
    EXPECT_EQ(from_qt(find<QGroupBox>("Frame2")->title()), "Zone 2 of 2");
    EXPECT_EQ(shown(3, 2), "2.00");
    auto* number = find<QLineEdit>("Text1");
    for (const auto& [typed, shows] :
         {std::pair{"3", "2.00"}, std::pair{"0", "2.00"}, std::pair{"1", "1.00"}}) {
        number->setFocus();
        number->selectAll();
        QTest::keyClicks(number, QString::fromUtf8(typed));
        QTest::keyClick(number, Qt::Key_Return);
        EXPECT_EQ(shown(3, 2), shows) << typed;
    }
}

TEST_F(MonthlyAveragesWindowTest, RecalculateWithoutPhysicalDataIsRefused) {
    make_months();
    open();
    press(3);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().title, "No physical data");
    EXPECT_EQ(last_message().text,
              "There are no physical data (temperature and precipitation) present in the current database!");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MonthlyAveragesWindowTest, RecalculateAveragesAMonthOverAllYearsWithoutMissingValues) {
    make_months();
    add_days();
    open();
    press(3);
    // Tmax (10 + 13) / 2, Tmin and Tavg of the one day that has them, precipitation (1 + 2) / 2.
    EXPECT_THAT(month(10), ElementsAre("11.50", "-2.00", "4.00", "1.50"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(MonthlyAveragesWindowTest, AMonthWithoutDaysOrWithoutPrecipitationKeepsItsValues) {
    make_months();
    file_.change("UPDATE BasinAverages SET TMaxN = 9, PrecipN = 8");
    add_days();
    open();
    press(3);
    EXPECT_EQ(shown(10, 2), "11.50");
    EXPECT_THAT(month(11), ElementsAre("9.00", "", "", "8.00"));
    EXPECT_THAT(month(12), ElementsAre("9.00", "", "", "8.00"));
    zone()->setValue(2);
    EXPECT_THAT(month(10), ElementsAre("9.00", "", "", "8.00"));
}

TEST_F(MonthlyAveragesWindowTest, ATableThatFailsDuringRecalculateIsReported) {
    make_months();
    add_days();
    file_.change("DROP TABLE PhysicalData; CREATE TABLE PhysicalData (Zone SMALLINT)");
    file_.change("INSERT INTO PhysicalData VALUES (1)");
    open();
    ASSERT_TRUE(opened_);
    press(3);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, "Error accessing the BasinAverages table for this basin");
}

TEST_F(MonthlyAveragesWindowTest, AcceptKeepsARecalculationAndInvalidatesTheResults) {
    make_months();
    add_days();
    session_.basin.Output_Valid = true;
    open();
    press(3);
    EXPECT_EQ(stored_month("TMaxN", 1, "Oct"), "Null");
    press(0);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(stored_month("TMaxN", 1, "Oct"), "11.5");
    EXPECT_FALSE(session_.basin.Output_Valid);
}

TEST_F(MonthlyAveragesWindowTest, AcceptWithoutAChangeStillInvalidatesTheResults) {
    make_months();
    session_.basin.Output_Valid = true;
    open();
    press(0);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MonthlyAveragesWindowTest, CancelUndoesARecalculation) {
    make_months();
    add_days();
    session_.basin.Output_Valid = true;
    open();
    press(3);
    press(1);
    EXPECT_FALSE(window_->isVisible());
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(stored_month("TMaxN", 1, "Oct"), "Null");
    EXPECT_TRUE(session_.basin.Output_Valid);
    window_.reset();
    file_.change("UPDATE BasinAverages SET TMaxN = 1");  // the file is free again
}

TEST_F(MonthlyAveragesWindowTest, TypedValuesWaitForAccept) {
    make_months();
    open();
    set(4, 5, "12.345");
    EXPECT_EQ(shown(4, 5), "12.35");  // as a Single, 12.345 is slightly greater
    EXPECT_EQ(stored_month("PrecipN", 1, "Apr"), "Null");
    press(0);
    EXPECT_EQ(stored_month("round(PrecipN, 4)", 1, "Apr"), "12.345");
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
}

TEST_F(MonthlyAveragesWindowTest, MonthsThatAreOnlyPassedByKeyStayMissing) {
    make_months();
    open();
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    for (int i = 0; i < 3; ++i) key(Qt::Key_Down);
    press(0);
    EXPECT_EQ(stored("SELECT count(*) FROM BasinAverages WHERE TMaxN IS NULL"), "24");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MonthlyAveragesWindowTest, AMonthThatIsDeletedIsMissing) {
    make_months();
    file_.change("UPDATE BasinAverages SET TMaxN = 9");
    open();
    grid()->setFocus();
    grid()->setCurrentIndex(grid()->model()->index(0, 1));
    key(Qt::Key_Delete);
    EXPECT_EQ(shown(1, 2), "");
    press(0);
    EXPECT_EQ(stored_month("TMaxN", 1, "Jan"), "Null");
}

TEST_F(MonthlyAveragesWindowTest, TheNamesOfTheMonthsAreLocked) {
    make_months();
    open();
    set(1, 1, "x");
    EXPECT_EQ(shown(1, 1), "January");
}

TEST_F(MonthlyAveragesWindowTest, CopyPutsTheBlockOnTheClipboard) {
    make_months();
    file_.change("UPDATE BasinAverages SET TMaxN = 1.125, TMinN = 2 WHERE Zone = 1 AND Month = 'Jan'");
    open();
    grid()->setCurrentIndex(grid()->model()->index(0, 0));
    grid()->selectionModel()->select(
        QItemSelection(grid()->model()->index(0, 0), grid()->model()->index(0, 2)),
        QItemSelectionModel::ClearAndSelect);
    choose("mnuEditItm(0)");
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("January\t1.125\t2\n"));
}

TEST_F(MonthlyAveragesWindowTest, TheCloseControlAsksIfTypedValuesAreLost) {
    make_months();
    open();
    set(4, 5, "12");
    dialogs_.then(Answer::No);
    EXPECT_FALSE(window_->close());
    EXPECT_EQ(last_message().text, "The values that you typed are lost if the window is closed.  Close it?");
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window_->close());
    EXPECT_EQ(stored_month("PrecipN", 1, "Apr"), "Null");
}

TEST_F(MonthlyAveragesWindowTest, ClosingIsRefusedWhileQuickHelpIsOn) {
    make_months();
    open();
    set(4, 5, "12");
    quick_help_.set_on(true);
    EXPECT_FALSE(window_->close());
    EXPECT_EQ(messages(), 0U);
    quick_help_.set_on(false);
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(window_->close());
}

TEST_F(MonthlyAveragesWindowTest, HelpShowsItsTopic) {
    make_months();
    open();
    press(2);
    EXPECT_EQ(desktop_.topics.size(), 1U);
}

TEST_F(MonthlyAveragesWindowTest, AnotherZoneKeepsTheBlock) {
    make_months();
    open();
    const auto* model = grid()->model();
    grid()->setCurrentIndex(model->index(3, 1));
    grid()->selectionModel()->select(QItemSelection(model->index(3, 1), model->index(5, 2)),
                                     QItemSelectionModel::ClearAndSelect);
    const QSignalSpy resets(model, &QAbstractItemModel::modelReset);
    zone()->setValue(2);
    EXPECT_TRUE(resets.isEmpty());
    EXPECT_EQ(grid()->block().first_row, 3);
    EXPECT_EQ(grid()->block().last_row, 5);
    EXPECT_EQ(grid()->block().last_column, 2);
    EXPECT_EQ(grid()->currentIndex(), model->index(3, 1));
}

TEST_F(MonthlyAveragesWindowTest, ChangesAndWhatIsBeingTypedAreKnownForACrash) {
    make_months();
    open();
    set(4, 5, "12.5");
    EXPECT_THAT(session_.prep.daily_edits.lines(), testing::MatchesRegex("v PrecipN [0-9]+ 12.5\n"));
    EXPECT_EQ(session_.prep.daily_edits.table(), "BasinAverages");
    grid()->setCurrentIndex(grid()->model()->index(0, 2));
    grid()->setFocus();
    type("-3.25");
    ASSERT_TRUE(session_.prep.note_typed);
    session_.prep.note_typed();
    EXPECT_THAT(session_.prep.daily_edits.typed(), testing::MatchesRegex("v TMinN [0-9]+ -3.25\n"));
    key(Qt::Key_Escape);
    session_.prep.note_typed();
    EXPECT_EQ(session_.prep.daily_edits.typed(), "");
    window_.reset();
    EXPECT_FALSE(session_.prep.note_typed);
    EXPECT_TRUE(session_.prep.daily_edits.empty());
}

TEST_F(MonthlyAveragesWindowTest, TypingIsTakenBackInItsZone) {
    make_months();
    open();
    set(2, 2, "7.5");
    EXPECT_EQ(month(2)[0], "7.50");
    const std::string none = month(1)[0];
    zone()->setValue(2);
    grid()->setFocus();
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(zone()->value(), 1);
    EXPECT_EQ(month(2)[0], none);
    window_->close();
    EXPECT_FALSE(window_->isVisible()) << "nothing is lost, so nothing is asked";
    EXPECT_EQ(messages(), 0U);
}

TEST_F(MonthlyAveragesWindowTest, ACalculationIsTakenBackAsAWhole) {
    make_months();
    add_days();
    open();
    set(10, 5, "3");
    QTest::mouseClick(button(3), Qt::LeftButton);
    EXPECT_EQ(month(10)[3], "1.50");
    EXPECT_EQ(month(10)[0], "11.50");
    grid()->setFocus();
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_EQ(month(10)[3], "3.00");
    key(Qt::Key_Z, Qt::ControlModifier);
    EXPECT_NE(month(10)[3], "3.00");
    key(Qt::Key_Y, Qt::ControlModifier);
    key(Qt::Key_Y, Qt::ControlModifier);
    EXPECT_EQ(month(10)[0], "11.50");
    press(0);
    EXPECT_EQ(stored_month("TMaxN", 1, "Oct"), "11.5");
}

}  // namespace
}  // namespace nivora
