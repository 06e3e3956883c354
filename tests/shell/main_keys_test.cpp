#include "session/basin_rows.h"
#include "tests/shell/main_window_fixture.h"

#include <QMenuBar>

namespace nivora {
namespace {

/// Keys of the main window beside its menus.
class MainKeysTest : public MainWindowTest {
protected:
    void press(Qt::Key key, Qt::KeyboardModifiers modifiers = Qt::NoModifier) {
        window_->activateWindow();
        settle();
        QTest::keyClick(QApplication::focusWidget() != nullptr ? QApplication::focusWidget() : window_.get(),
                        key, modifiers);
        settle();
    }
    QString tip(const char* entry) { return find<QAction>(entry)->toolTip(); }
    static QWidget* shown(const char* name) {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QString::fromUtf8(name) && top->isVisible()) return top;
        }
        return nullptr;
    }
    static void close(const char* name) {
        if (QWidget* window = shown(name)) window->close();
    }
};

TEST_F(MainKeysTest, MenusShowTheirKeysInTipsAlone) {
    EXPECT_EQ(tip("mnuFileItem(0)"), QStringLiteral("Ctrl+N"));
    EXPECT_EQ(tip("mnuFileItem(1)"), QStringLiteral("Ctrl+O"));
    EXPECT_EQ(tip("mnuFileItem(4)"), QStringLiteral("Ctrl+S"));
    EXPECT_EQ(tip("mnuFileItem(5)"), QStringLiteral("Ctrl+Shift+S"));
    EXPECT_EQ(tip("mnuReports"), QStringLiteral("Ctrl+P"));
    EXPECT_EQ(tip("mnuHelpItm(0)"), QStringLiteral("F1"));
    EXPECT_TRUE(find<QMenu>("mnuFile")->toolTipsVisible());
    for (const QAction* entry : find<QMenu>("mnuFile")->actions()) EXPECT_TRUE(entry->shortcut().isEmpty());
}

TEST_F(MainKeysTest, ControlOOpensABasin) {
    const auto file = user_ / "ellervane.mdb";
    std::filesystem::copy_file(std::filesystem::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", file);
    dialogs_.then_file(file);
    press(Qt::Key_O, Qt::ControlModifier);
    EXPECT_EQ(session_.basin.Basin_File, file);
}

TEST_F(MainKeysTest, ControlSSavesWhatIsBeingTyped) {
    const auto file = open_sample();
    type(0, "Renamed");
    press(Qt::Key_S, Qt::ControlModifier);
    BasinDatabase saved{file, Access::ReadOnly};
    BasinState basin;
    read_basin(saved, basin);
    EXPECT_EQ(basin.basin_name, "Renamed");
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MainKeysTest, ControlShiftSAsksForAName) {
    open_sample();
    dialogs_.then_file(user_ / "other.mdb");
    press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_EQ(session_.basin.Basin_File, user_ / "other.mdb");
}

TEST_F(MainKeysTest, ControlNMakesANewBasin) {
    open_sample();
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_TRUE(session_.basin.New_Basin);
    EXPECT_TRUE(session_.basin.simulations.empty());
}

TEST_F(MainKeysTest, AKeyOfAnEntryThatCannotBeChosenDoesNothing) {
    ASSERT_FALSE(find<QAction>("mnuReports")->isEnabled());
    press(Qt::Key_P, Qt::ControlModifier);
    EXPECT_EQ(shown("frmPrint"), nullptr);
    ASSERT_FALSE(find<QAction>("mnuFileItem(4)")->isEnabled());
    press(Qt::Key_S, Qt::ControlModifier);
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(MainKeysTest, AKeyOfAnEntryInADisabledMenuDoesNothing) {
    open_sample();
    find<QAction>("mnuFile")->setEnabled(false);
    press(Qt::Key_S, Qt::ControlModifier | Qt::ShiftModifier);
    EXPECT_TRUE(dialogs_.files().size() == 1U);  // the one that opened the sample
}

TEST_F(MainKeysTest, F1OpensTheHelpOfTheWindow) {
    press(Qt::Key_F1);
    ASSERT_NE(shown("frmNVRHelp"), nullptr);
    EXPECT_EQ(shown("frmNVRHelp")->windowTitle(), QStringLiteral("Help for Nivora Main Window"));
    close("frmNVRHelp");
}

TEST_F(MainKeysTest, F5RepeatsTheLastRun) {
    open_sample();
    choose("mnuRunSimVar(1)");
    ASSERT_NE(shown("Results"), nullptr);
    close("Results");
    press(Qt::Key_F5);
    EXPECT_NE(shown("Results"), nullptr);
    EXPECT_EQ(session_.run.RunKind, k_year_round_simulation);
    close("Results");
}

TEST_F(MainKeysTest, F5RepeatsAForecastWithItsQuestion) {
    open_sample();
    dialogs_.then_text("9");
    choose("mnuRunForVar(1)");
    close("Results");
    dialogs_.then_text("7");
    press(Qt::Key_F5);
    EXPECT_EQ(session_.run.UpdateInterval, 7);
    close("Results");
}

TEST_F(MainKeysTest, F5BeforeAnyRunOpensTheRunMenu) {
    open_sample();
    press(Qt::Key_F5);
    EXPECT_TRUE(find<QMenu>("mnuRun")->isVisible());
    EXPECT_EQ(shown("Results"), nullptr);
    find<QMenu>("mnuRun")->close();
}

TEST_F(MainKeysTest, F5WithoutASimulationShowsThatNoRunIsOffered) {
    press(Qt::Key_F5);
    EXPECT_TRUE(find<QMenu>("mnuRun")->isVisible());
    EXPECT_FALSE(enabled("mnuRunSim"));
    EXPECT_TRUE(dialogs_.messages().empty());
    find<QMenu>("mnuRun")->close();
}

TEST_F(MainKeysTest, F5DoesNotRunAfterAMessageAboutTheBasin) {
    open_sample();
    choose("mnuRunSimVar(1)");
    close("Results");
    auto* zones = find<QTableView>("vaSpread1")->model();
    zones->setData(zones->index(1, 1), QStringLiteral("0"));
    press(Qt::Key_F5);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Zone area must be greater than zero!");
    EXPECT_EQ(shown("Results"), nullptr);
}

TEST_F(MainKeysTest, WhileQuickHelpIsOnKeysOnlyExplain) {
    open_sample();
    quick_help_.set_on(true);
    press(Qt::Key_N, Qt::ControlModifier);
    EXPECT_FALSE(session_.basin.New_Basin);
    press(Qt::Key_F1);
    EXPECT_EQ(shown("frmNVRHelp"), nullptr);
    quick_help_.set_on(false);
    press(Qt::Key_F1);
    EXPECT_NE(shown("frmNVRHelp"), nullptr);
    close("frmNVRHelp");
}

}  // namespace
}  // namespace nivora
