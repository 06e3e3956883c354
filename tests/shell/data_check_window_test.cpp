// The window of the look through the daily variables, opened from the main window.
#include "store/daily_rows.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "windows/prep/frmDataCheck.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QSpinBox>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class DataCheckWindowTest : public MainWindowTest {
protected:
    DataCheckWindowTest() {
        open_sample();
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        first_ = first_day_of(database);
        database.execute("UPDATE PhysicalData SET SCA = 1.5 WHERE Zone = 2 AND Date = " +
                         std::to_string(first_ + 3));
        database.execute("UPDATE PhysicalData SET Precip = NULL WHERE Zone = 3 AND Date = " +
                         std::to_string(first_ + 7));
    }

    static DayCount first_day_of(BasinDatabase& database) {
        return read_daily_rows(database, k_physical_data, std::array<std::string_view, 1>{"Precip"}, 1, 1,
                               {0, 100000})
            .date.front();
    }

    frmDataCheck* check() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<frmDataCheck*>(window)) return found;
        }
        return nullptr;
    }
    void open_check() {
        choose("mnuCheckData");
        ASSERT_NE(check(), nullptr);
        ASSERT_TRUE(check()->isVisible());
    }
    GridView* list() { return check()->findChild<GridView*>(QStringLiteral("grdFindings")); }
    QComboBox* choice(const char* name) { return check()->findChild<QComboBox*>(QString::fromUtf8(name)); }
    std::string told() { return from_qt(check()->findChild<QLabel*>(QStringLiteral("lblTold"))->text()); }
    std::string cell(int row, int column) {
        return from_qt(list()->model()->index(row, column).data().toString());
    }
    int row_of(const std::string& what, const std::string& zone) {
        for (int row = 0; row < list()->model()->rowCount(); ++row) {
            if (cell(row, 0) == what && cell(row, 1) == zone) return row;
        }
        ADD_FAILURE() << "no " << what << " in zone " << zone;
        return 0;
    }

    DayCount first_ = 0;
};

TEST_F(DataCheckWindowTest, ListsWhatIsWrongByZoneAndDay) {
    open_check();
    const int cover = row_of("Cover outside 0 to 1", "B");
    EXPECT_EQ(cell(cover, 2), "CDC");  // as in the daily editor
    EXPECT_EQ(cell(cover, 3), long_date_text(first_ + 3));
    EXPECT_EQ(cell(cover, 5), "1");
    EXPECT_EQ(cell(cover, 6), "The snow cover is 1.5, which is not between 0 and 1.");
    EXPECT_LT(cover, row_of("Missing value", "C"));
    EXPECT_THAT(told(), HasSubstr(" findings in 1004 days."));
}

TEST_F(DataCheckWindowTest, ShowsOneKindOrOneZone) {
    open_check();
    const int all = list()->model()->rowCount();
    choice("cboKind")->setCurrentText(QStringLiteral("Missing value"));
    EXPECT_EQ(list()->model()->rowCount(), 1);
    EXPECT_EQ(cell(0, 6), "Precip has no value on 1 day.");
    EXPECT_THAT(told(), HasSubstr(" days, 1 of this choice."));
    choice("cboZone")->setCurrentText(QStringLiteral("B"));
    EXPECT_EQ(list()->model()->rowCount(), 0);
    EXPECT_FALSE(check()->findChild<QPushButton*>(QStringLiteral("Command1(0)"))->isEnabled());  // Go to
    choice("cboKind")->setCurrentIndex(0);
    choice("cboZone")->setCurrentIndex(0);
    EXPECT_EQ(list()->model()->rowCount(), all);
}

TEST_F(DataCheckWindowTest, CopiesTheFindingsWithTheirHeaders) {
    open_check();
    for (QPushButton* button : check()->findChildren<QPushButton*>()) {
        if (button->text().contains(QStringLiteral("Copy"))) button->click();
    }
    EXPECT_THAT(from_qt(QApplication::clipboard()->text()),
                StartsWith("What\tZone\tField\tFirst day\tLast day\tDays\tFinding"));
}

TEST_F(DataCheckWindowTest, GoesToTheDayInTheEditorAndLooksAgainAfterwards) {
    open_check();
    const int cover = row_of("Cover outside 0 to 1", "B");
    modal_.then("frmData", [&](QWidget& editor) {
        auto* days = editor.findChild<GridView*>();
        EXPECT_EQ(from_qt(days->model()->index(days->currentIndex().row(), 0).data().toString()),
                  long_date_text(first_ + 3));
        EXPECT_EQ(days->currentIndex().data().toString(), QStringLiteral("1.50"));
        settle();
        EXPECT_LT(days->rowAt(0), days->currentIndex().row()) << "the days before it are in view";
        EXPECT_TRUE(days->model()->setData(days->currentIndex(), QStringLiteral("1")));
        for (QPushButton* button : editor.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("&Done")) button->click();
        }
    });
    list()->setCurrentIndex(list()->model()->index(cover, 0));
    emit list()->doubleClicked(list()->model()->index(cover, 0));
    for (int row = 0; row < list()->model()->rowCount(); ++row)
        EXPECT_NE(cell(row, 0), "Cover outside 0 to 1");
}

TEST_F(DataCheckWindowTest, EnterInTheListGoesToTheFinding) {
    open_check();
    list()->setCurrentIndex(list()->model()->index(row_of("Missing value", "C"), 0));
    bool opened = false;
    modal_.then("frmData", [&](QWidget& editor) {
        opened = true;
        auto* days = editor.findChild<GridView*>();
        EXPECT_EQ(from_qt(days->model()->index(days->currentIndex().row(), 0).data().toString()),
                  long_date_text(first_ + 7));
        EXPECT_EQ(
            from_qt(days->model()->headerData(days->currentIndex().column(), Qt::Horizontal).toString()),
            "Precip");
        editor.close();
    });
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_TRUE(opened);
}

TEST_F(DataCheckWindowTest, LooksAtTheNextBasin) {
    open_check();
    EXPECT_GT(list()->model()->rowCount(), 0);
    choose("mnuFileItem(0)");
    EXPECT_EQ(list()->model()->rowCount(), 0);
    EXPECT_EQ(told(), "The basin has no daily variables.");
}

TEST_F(DataCheckWindowTest, GoesToNoRowOfAZoneThatTheBasinDoesNotHave) {
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.execute("INSERT INTO PhysicalData (Zone, Date) VALUES (9, " + std::to_string(first_) + ")");
    }
    open_check();
    const int row = row_of("No such zone", "9");
    EXPECT_EQ(cell(row, 6), "The basin has no zone 9, but 1 row of it.");
    list()->setCurrentIndex(list()->model()->index(row, 0));
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_EQ(
        last_message().text,
        "The rows of zone 9 can't be shown: the basin has 5 zones, and the daily editor shows these alone.");
}

TEST_F(DataCheckWindowTest, IsMadeAnewAfterAnyEditOfTheDailyVariables) {
    open_check();
    const int cover = row_of("Cover outside 0 to 1", "B");
    EXPECT_GE(cover, 0);
    modal_.then("frmData", [&](QWidget& editor) {
        {
            auto* zone = editor.findChild<QSpinBox*>();
            zone->setValue(2);
        }
        auto* days = editor.findChild<GridView*>();
        for (int row = 0; row < days->model()->rowCount(); ++row) {
            if (from_qt(days->model()->index(row, 0).data().toString()) != long_date_text(first_ + 3))
                continue;
            int column = 1;
            while (days->model()->headerData(column, Qt::Horizontal).toString() != QStringLiteral("CDC"))
                ASSERT_LT(++column, days->model()->columnCount());
            EXPECT_TRUE(days->model()->setData(days->model()->index(row, column), QStringLiteral("1")));
        }
        for (QPushButton* button : editor.findChildren<QPushButton*>()) {
            if (button->text() == QStringLiteral("&Done")) button->click();
        }
    });
    choose("mnuDataOptVar(1)");
    for (int row = 0; row < list()->model()->rowCount(); ++row)
        EXPECT_NE(cell(row, 0), "Cover outside 0 to 1");
}

TEST_F(DataCheckWindowTest, GoesToNoZoneThatTheBasinLostMeanwhile) {
    open_check();
    const int missing = row_of("Missing value", "C");
    session_.basin.ZoneCount = 2;
    list()->setCurrentIndex(list()->model()->index(missing, 0));
    QTest::keyClick(list(), Qt::Key_Return);
    EXPECT_THAT(last_message().text, StartsWith("The rows of zone 3 can't be shown: the basin has 2 zones,"));
    session_.basin.ZoneCount = 5;
}

TEST_F(DataCheckWindowTest, OtherKeysChangeNothing) {
    open_check();
    const std::string before = cell(0, 6);
    const int rows = list()->model()->rowCount();
    QApplication::clipboard()->setText(QStringLiteral("1\t2\n3\t4"));
    for (const int key : {Qt::Key_X, Qt::Key_Delete, Qt::Key_Backspace, Qt::Key_F2, Qt::Key_Space, Qt::Key_5})
        QTest::keyClick(list(), static_cast<Qt::Key>(key));
    for (const int key : {Qt::Key_V, Qt::Key_X, Qt::Key_Z}) {
        list()->setCurrentIndex(list()->model()->index(0, 6));
        QTest::keyClick(list(), static_cast<Qt::Key>(key), Qt::ControlModifier);
    }
    EXPECT_EQ(cell(0, 6), before);
    EXPECT_EQ(list()->model()->rowCount(), rows);
    EXPECT_FALSE(session_.basin.Input_Changed);
}

TEST_F(DataCheckWindowTest, EnterDoesNothingOnceTheBasinIsClosed) {
    open_check();
    choose("mnuFileItem(0)");
    ASSERT_EQ(list()->model()->rowCount(), 0);
    const std::size_t messages = dialogs_.messages().size();
    QTest::keyClick(list(), Qt::Key_Return);
    emit list()->doubleClicked({});
    EXPECT_EQ(dialogs_.messages().size(), messages);
    QTest::keyClick(check(), Qt::Key_Escape);
    EXPECT_FALSE(check()->isVisible());
}

/// Runs of the sample's simulation whose data lack a value.
class MissingValueOfferTest : public DataCheckWindowTest {
protected:
    void lack(const std::string& field, int zone, DayCount day) {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.execute("UPDATE PhysicalData SET " + field + " = NULL WHERE Zone = " + std::to_string(zone) +
                         " AND Date = " + std::to_string(day));
    }
    [[nodiscard]] DayCount run_start() const { return *session_.basin.current_simulation()->start; }
    [[nodiscard]] std::vector<std::string> told_texts() const {
        std::vector<std::string> texts;
        for (const AskedMessage& asked : dialogs_.messages()) texts.push_back(asked.message.text);
        return texts;
    }
    static constexpr const char* k_offer =
        "The daily variables lack a value that the run needs. Show the missing values?";
};

TEST_F(MissingValueOfferTest, LeadsToTheValueThatStoppedTheRun) {
    lack("Precip", 1, run_start() + 20);
    lack("Precip", 1, run_start() + 21);
    dialogs_.then(Answer::Yes);
    choose("mnuRunSimVar(1)");
    const auto texts = told_texts();
    ASSERT_GE(texts.size(), 2U);
    EXPECT_EQ(texts.back(), k_offer);
    EXPECT_EQ(texts[texts.size() - 2], "Null value(s) in simulation parameter table on " +
                                           long_date_text(run_start() + 20) +
                                           ", in Zone 1\nThe missing value is that of Precip.");
    ASSERT_NE(check(), nullptr);
    EXPECT_TRUE(check()->isVisible());
    EXPECT_EQ(choice("cboKind")->currentText(), QStringLiteral("Missing value"));
    EXPECT_EQ(choice("cboZone")->currentIndex(), 1);
    const int row = list()->currentIndex().row();
    EXPECT_EQ(cell(row, 2), "Precip");
    EXPECT_EQ(cell(row, 3), long_date_text(run_start() + 20));
    EXPECT_EQ(cell(row, 4), long_date_text(run_start() + 21));
}

TEST_F(MissingValueOfferTest, ComesAfterARunWithoutSnowAndMeltOfSomeDays) {
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.execute("UPDATE PhysicalData SET SCA = NULL WHERE Zone = 4");
        database.execute("UPDATE \"" + session_.basin.current_simulation()->name + "\" SET RCA = 0");
    }
    let_pass("Results");
    dialogs_.then(Answer::No);
    choose("mnuRunSimVar(1)");
    ASSERT_FALSE(told_texts().empty());
    EXPECT_EQ(told_texts().back(), k_offer);
    EXPECT_EQ(check(), nullptr) << "the answer was No";
}

TEST_F(MissingValueOfferTest, DoesNotComeWhereAParameterIsMissing) {
    const std::string table = session_.basin.current_simulation()->name;
    {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.execute("UPDATE \"" + table + "\" SET LapseRate = NULL WHERE Zone = 1");
    }
    choose("mnuRunSimVar(1)");
    const auto texts = told_texts();
    ASSERT_FALSE(texts.empty());
    EXPECT_THAT(texts.back(), HasSubstr("The missing value is that of LapseRate."));
}

TEST_F(MissingValueOfferTest, DoesNotComeAfterARunThatLacksNothing) {
    lack("Runoff", 1, run_start() + 3);  // no run needs it
    let_pass("Results");
    const std::size_t before = dialogs_.messages().size();
    choose("mnuRunSimVar(1)");
    for (std::size_t i = before; i < dialogs_.messages().size(); ++i) EXPECT_NE(told_texts()[i], k_offer);
}

}  // namespace
}  // namespace nivora
