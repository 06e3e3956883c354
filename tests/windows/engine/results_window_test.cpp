#include "tests/shell/main_window_fixture.h"
#include "widgets/qt_text.h"
#include "windows/engine/Results.h"

#include <QApplication>
#include <QClipboard>
#include <QDateTime>
#include <QScreen>
#include <QTextEdit>

namespace nivora {
namespace {

class ResultsWindowTest : public MainWindowTest {
protected:
    void SetUp() override {
        session_.run.RunTitle = "Year round Simulation";
        session_.run.RunKind = 3;
        session_.run.MeasuredVolume = 123.5F;
        session_.run.AvgMeasuredQ = 4.25F;
        session_.run.ComputedVolume = 120.25F;
        session_.run.AvgComputedQ = 4.0F;
        session_.run.VolumeDifference = 2.5F;
        session_.run.CoefficientR2 = -0.125F;
        session_.run.statistics = StatisticsReach::All;
    }

    QString cell(int row, int column) {
        return results_.findChild<QTableView*>(QStringLiteral("SpdStat"))
            ->model()
            ->index(row - 1, column - 1)
            .data()
            .toString();
    }
    QString label(int index) {
        return results_.findChild<QLabel*>(QStringLiteral("Lbl(%1)").arg(index))->text();
    }
    QPushButton* button(int index) {
        return results_.findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(index));
    }

    Results results_{WindowContext{session_, quick_help_, program_.path(), printing_}};
};

TEST_F(ResultsWindowTest, LabelsShowMetricUnits) {
    session_.basin.Units_Code = Units::Metric;
    results_.fill();
    EXPECT_EQ(cell(1, 1), QStringLiteral("Measured Runoff Volume (10^6 m³)"));
    EXPECT_EQ(cell(2, 1), QStringLiteral("Average Measured Runoff (m³/s): "));
    EXPECT_EQ(cell(3, 1), QStringLiteral("Computed Runoff Volume (10^6 m³)"));
    EXPECT_EQ(cell(4, 1), QStringLiteral("Average Computed Runoff  (m³/s): "));
    EXPECT_EQ(cell(5, 1), QStringLiteral("Volume Difference (%): "));
    EXPECT_EQ(cell(6, 1), QStringLiteral("Coefficient of Determination (R²):"));
}

TEST_F(ResultsWindowTest, LabelsShowEnglishUnits) {
    session_.basin.Units_Code = Units::English;
    results_.fill();
    EXPECT_EQ(cell(1, 1), QStringLiteral("Measured Runoff Volume (10^6 f³)"));
    EXPECT_EQ(cell(2, 1), QStringLiteral("Average Measured Runoff (f³/s): "));
    EXPECT_EQ(cell(3, 1), QStringLiteral("Computed Runoff Volume (10^6 f³)"));
    EXPECT_EQ(cell(4, 1), QStringLiteral("Average Computed Runoff  (f³/s): "));
}

TEST_F(ResultsWindowTest, ValuesAreInTheirOrderAndANegativeCoefficientIsShownAsItIs) {
    results_.fill();
    EXPECT_EQ(cell(1, 2), QStringLiteral("123.5"));
    EXPECT_EQ(cell(2, 2), QStringLiteral("4.25"));
    EXPECT_EQ(cell(3, 2), QStringLiteral("120.25"));
    EXPECT_EQ(cell(4, 2), QStringLiteral("4"));
    EXPECT_EQ(cell(5, 2), QStringLiteral("2.5"));
    EXPECT_EQ(cell(6, 2), QStringLiteral("-0.125"));
}

TEST_F(ResultsWindowTest, ASimulationNamesItsKindAlone) {
    results_.fill();
    EXPECT_EQ(results_.windowTitle(), QStringLiteral("Statistics, Year round Simulation"));
}

TEST_F(ResultsWindowTest, AForecastShowsItsInterval) {
    session_.run.RunTitle = "Melt Season Forecast";
    session_.run.UpdateInterval = 7;
    for (const int kind : {0, 1}) {
        session_.run.RunKind = kind;
        results_.fill();
        EXPECT_EQ(results_.windowTitle(),
                  QStringLiteral("Statistics, Melt Season Forecast (updating every 7 days)"));
    }
    session_.run.RunKind = 2;
    results_.fill();
    EXPECT_EQ(results_.windowTitle(), QStringLiteral("Statistics, Melt Season Forecast"));
}

TEST_F(ResultsWindowTest, NoSnowModeIsNamedLast) {
    session_.run.NoSnow = true;
    results_.fill();
    EXPECT_EQ(results_.windowTitle(), QStringLiteral("Statistics, Year round Simulation  {no snow}"));
    session_.run.RunKind = 1;
    session_.run.RunTitle = "Year round Forecast";
    session_.run.UpdateInterval = 3;
    results_.fill();
    EXPECT_EQ(results_.windowTitle(),
              QStringLiteral("Statistics, Year round Forecast (updating every 3 days)  {no snow}"));
}

TEST_F(ResultsWindowTest, NamesAndCommentsAreThoseOfTheBasinAndItsSimulation) {
    open_sample();
    session_.basin.simulations[0].comments = "first line\nsecond line";
    const QDateTime before = QDateTime::currentDateTime().addSecs(-1);
    results_.fill();
    EXPECT_EQ(label(7), QStringLiteral("Ellervane at Corben Bridge"));
    EXPECT_EQ(label(8), QStringLiteral("ellervane-1996"));
    const QDateTime shown = QLocale::c().toDateTime(label(9), QStringLiteral("M/d/yyyy h:mm:ss AP"));
    ASSERT_TRUE(shown.isValid()) << label(9).toStdString();
    EXPECT_GE(shown, before);
    EXPECT_LE(shown, QDateTime::currentDateTime().addSecs(1));  // rounded to the second
    EXPECT_EQ(results_.findChild<QTextEdit*>(QStringLiteral("RichTextBox1"))->toPlainText(),
              QStringLiteral("first line\nsecond line"));
}

TEST_F(ResultsWindowTest, AStatisticThatAFaultPreventedStaysEmpty) {
    session_.run.statistics = StatisticsReach::Volumes;
    results_.fill();
    EXPECT_EQ(cell(4, 2), QStringLiteral("4"));
    EXPECT_EQ(cell(5, 2), QString{});
    EXPECT_EQ(cell(6, 2), QString{});
}

TEST_F(ResultsWindowTest, NotesShowWholeAboveTheCommentsAndInShortInTheStatusLine) {
    const auto* notes = results_.findChild<QLabel*>(QStringLiteral("lblNotes"));
    results_.fill();
    EXPECT_TRUE(notes->isHidden());
    session_.basin.results_time = 40000.5;
    session_.run.RunStart = *day_count({2001, 6, 1});
    session_.run.RunEnd = session_.run.RunStart + 9;
    RunNote note;
    note.zones = {1};
    note.start = session_.run.RunStart;
    note.end = session_.run.RunEnd;
    note.first = note.last = note.start + 3;
    note.days = 1;
    session_.run.notes = {note};
    results_.fill();
    EXPECT_FALSE(notes->isHidden());
    EXPECT_EQ(notes->text(), to_qt("Note: " + note_text(note, Units::Metric)));
    const auto* status = results_.findChild<QLabel*>(QStringLiteral("panel2"));
    EXPECT_EQ(status->text(),
              QStringLiteral("06/01/2001 to 06/10/2001, 10 days; 1 of 10 days without rows in zone 1"));
    session_.basin.Input_Changed = true;
    results_.refresh_status();
    EXPECT_EQ(status->text(),
              QStringLiteral("Out of date: inputs have changed since the run of 7/6/2009 12:00:00 PM"));
}

TEST_F(ResultsWindowTest, TheLabelsBesideThemHaveTheirTexts) {
    QStringList texts;
    for (const QLabel* shown : results_.findChildren<QLabel*>()) texts << shown->text();
    for (const char* text : {"Basin Name:  ", "Simulation:", "Run Date:"}) {
        EXPECT_TRUE(texts.contains(QString::fromUtf8(text))) << text;
    }
}

TEST_F(ResultsWindowTest, NothingInItCanBeEdited) {
    results_.fill();
    EXPECT_TRUE(results_.findChild<QTextEdit*>(QStringLiteral("RichTextBox1"))->isReadOnly());
    EXPECT_EQ(results_.findChild<QTableView*>(QStringLiteral("SpdStat"))->editTriggers(),
              QAbstractItemView::NoEditTriggers);
}

TEST_F(ResultsWindowTest, TheStatisticsCanBeCopiedWithTheirLabels) {
    session_.basin.Units_Code = Units::Metric;
    results_.fill();
    results_.show();
    auto* table = results_.findChild<QTableView*>(QStringLiteral("SpdStat"));
    table->setFocus();
    table->selectionModel()->select(QItemSelection(table->model()->index(4, 0), table->model()->index(5, 1)),
                                    QItemSelectionModel::ClearAndSelect);
    QTest::keyClick(table, Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(from_qt(QApplication::clipboard()->text()),
              "Volume Difference (%): \t2.5\nCoefficient of Determination (R²):\t-0.125\n");
}

TEST_F(ResultsWindowTest, ItsButtonsPrintHelpAndHide) {
    EXPECT_EQ(button(0)->text(), QStringLiteral("&Print"));
    EXPECT_TRUE(button(0)->isEnabled());
    EXPECT_EQ(button(1)->text(), QStringLiteral("&Help"));
    EXPECT_EQ(button(2)->text(), QStringLiteral("&Done"));
    results_.fill();
    results_.show();
    button(1)->click();
    bool help = false;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        help = help ||
               (top->windowTitle() == QStringLiteral("Help for Simulation Statistics") && top->isVisible());
    }
    EXPECT_TRUE(help);
    EXPECT_TRUE(results_.isVisible());
    button(2)->click();
    EXPECT_FALSE(results_.isVisible());
}

TEST_F(ResultsWindowTest, TheStatusBarNamesTheBasinsFile) {
    const auto file = open_sample();
    results_.fill();
    EXPECT_EQ(results_.findChild<QLabel*>(QStringLiteral("panel1"))->text(),
              QString::fromStdString(file.string()));
}

TEST_F(ResultsWindowTest, ItOpensWhereItWasClosed) {
    results_.show();
    results_.move(40, 60);
    results_.resize(500, 520);
    results_.close();
    EXPECT_EQ(session_.settings.places[4].top, 60);
    EXPECT_EQ(session_.settings.places[4].left, 40);
    Results again{WindowContext{session_, quick_help_, program_.path(), printing_}};
    again.show();
    EXPECT_EQ(again.pos(), QPoint(40, 60));
    EXPECT_EQ(again.size(), QSize(500, 520));
}

}  // namespace
}  // namespace nivora
