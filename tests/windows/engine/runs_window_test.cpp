// The window of the last runs, and what the main window lists in it.
#include "base/number_text.h"
#include "session/listed_runs.h"
#include "tests/shell/main_window_fixture.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"
#include "windows/engine/frmRuns.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QClipboard>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class RunsWindowTest : public MainWindowTest {
protected:
    frmRuns* runs() {
        for (QWidget* window : QApplication::topLevelWidgets()) {
            if (auto* found = qobject_cast<frmRuns*>(window)) return found;
        }
        return nullptr;
    }
    void open_runs() {
        choose("mnuRuns");
        ASSERT_NE(runs(), nullptr);
        ASSERT_TRUE(runs()->isVisible());
    }
    GridView* table(const char* name) { return runs()->findChild<GridView*>(QString::fromUtf8(name)); }
    std::string cell(const char* name, int row, int column) {
        return from_qt(table(name)->model()->index(row - 1, column - 1).data().toString());
    }
    int rows(const char* name) { return table(name)->model()->rowCount(); }
    std::string label(const char* name) {
        return from_qt(runs()->findChild<QLabel*>(QString::fromUtf8(name))->text());
    }
    void select(int first, int last) {
        auto* grid = table("grdRuns");
        grid->selectionModel()->select(
            QItemSelection(grid->model()->index(first - 1, 0), grid->model()->index(last - 1, 0)),
            QItemSelectionModel::ClearAndSelect | QItemSelectionModel::Rows);
    }
    void choose_simulation(int row) {
        auto* grid = find<QTableView>("DBGrid1");
        grid->setCurrentIndex(grid->model()->index(row - 1, 0));
    }
    void run_both() {
        open_sample();
        choose_simulation(1);
        choose("mnuRunSimVar(1)");
        choose_simulation(2);
        choose("mnuRunSimVar(0)");
    }
};

TEST_F(RunsWindowTest, EachRunIsARowTheNewestFirst) {
    run_both();
    open_runs();
    ASSERT_EQ(rows("grdRuns"), 2);
    EXPECT_EQ(cell("grdRuns", 1, 2), "ellervane-1997-98");
    EXPECT_EQ(cell("grdRuns", 1, 3), "Melt Season Simulation");
    EXPECT_EQ(cell("grdRuns", 2, 2), "ellervane-1996");
    EXPECT_EQ(cell("grdRuns", 2, 3), "Year round Simulation");
    EXPECT_EQ(cell("grdRuns", 2, 5), "01/01/1996");
    EXPECT_EQ(cell("grdRuns", 1, 10), single_text(session_.run.CoefficientR2));
    EXPECT_TRUE(table("grdRuns")->isColumnHidden(12)) << "one basin needs no column for its file";
}

TEST_F(RunsWindowTest, ARunIsAddedWhileTheWindowIsOpen) {
    run_both();
    open_runs();
    choose("mnuRunSimVar(1)");
    EXPECT_EQ(rows("grdRuns"), 3);
    EXPECT_EQ(cell("grdRuns", 1, 3), "Year round Simulation");
}

TEST_F(RunsWindowTest, TwoRunsAreComparedInNumbers) {
    run_both();
    open_runs();
    EXPECT_THAT(label("lblCompared"), StartsWith("Select two runs"));
    EXPECT_EQ(rows("grdCompared"), 0);
    select(1, 2);
    EXPECT_THAT(label("lblCompared"), StartsWith("Rows 2 and 1."));
    ASSERT_EQ(rows("grdCompared"), 19);
    EXPECT_EQ(cell("grdCompared", 1, 1), "Simulation");
    EXPECT_EQ(cell("grdCompared", 1, 2), "ellervane-1996");
    EXPECT_EQ(cell("grdCompared", 1, 3), "ellervane-1997-98");
    const auto colour = [&](int row) {
        return table("grdCompared")->model()->index(row - 1, 1).data(Qt::BackgroundRole).isValid();
    };
    EXPECT_TRUE(colour(1)) << "the simulations differ";
    EXPECT_FALSE(colour(17)) << "the units do not";
    const auto& list = session_.runs.runs();
    EXPECT_EQ(cell("grdCompared", 11, 1), "Coefficient of Determination (R²)");
    EXPECT_EQ(cell("grdCompared", 11, 4), seven_digit_text(static_cast<double>(*list[1].statistics[5]) -
                                                           static_cast<double>(*list[0].statistics[5])));
}

TEST_F(RunsWindowTest, AllRunsAreCopiedUnderTheirHeaders) {
    run_both();
    open_runs();
    runs()->findChild<QPushButton*>(QStringLiteral("Command1(0)"))->click();
    const std::string copied = from_qt(QApplication::clipboard()->text());
    EXPECT_THAT(copied, StartsWith("Time\tSimulation\tKind\tScenario\tStart\tEnd\tMeasured volume\t"));
    EXPECT_EQ(std::count(copied.begin(), copied.end(), '\n'), 3) << copied;
    EXPECT_THAT(copied, HasSubstr("ellervane-1996\tYear round Simulation\t"));
}

TEST_F(RunsWindowTest, OfOtherBasinsAreListedOnDemand) {
    run_both();
    ListedRun other = session_.runs.runs().front();
    other.basin = "/data/birch.mdb";
    session_.runs.add(other);
    open_runs();
    EXPECT_EQ(rows("grdRuns"), 2);
    runs()->findChild<QCheckBox*>(QStringLiteral("chkAllBasins"))->click();
    EXPECT_EQ(rows("grdRuns"), 3);
    EXPECT_EQ(cell("grdRuns", 1, 13), "/data/birch.mdb");
    EXPECT_FALSE(table("grdRuns")->isColumnHidden(12));
}

TEST_F(RunsWindowTest, AMovedBasinHasNoneAndSaysWhy) {
    run_both();
    session_.basin.Basin_File = user_ / "moved.mdb";
    open_runs();
    EXPECT_EQ(rows("grdRuns"), 0);
    EXPECT_THAT(label("lblTold"), HasSubstr("saved under another name"));
    EXPECT_FALSE(runs()->findChild<QPushButton*>(QStringLiteral("Command1(0)"))->isEnabled());
}

TEST_F(RunsWindowTest, ADeletedSimulationIsMarked) {
    run_both();
    open_runs();
    dialogs_.then(Answer::Yes);
    choose("mnuEditItmDelete(0)");
    EXPECT_EQ(cell("grdRuns", 1, 2), "ellervane-1997-98 (no longer in the basin)");
    EXPECT_EQ(cell("grdRuns", 2, 2), "ellervane-1996");
}

TEST_F(RunsWindowTest, AFaultOfTheListIsTold) {
    user_.write("runs.list", "nothing");
    session_.runs.keep_in(user_ / "runs.list");
    run_both();
    session_.runs.keep_in(user_ / "other" / "runs.list");
    user_.write("again.list", "nothing");
    session_.runs.keep_in(user_ / "again.list");
    open_runs();
    EXPECT_THAT(label("lblTold"), HasSubstr("again.list.damaged"));
    EXPECT_EQ(rows("grdRuns"), 2);
}

}  // namespace
}  // namespace nivora
