#include "shell/frmNVRHelp.h"
#include "tests/shell/quick_help_fixture.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmTimeLagDist.h"

#include <QHeaderView>

namespace nivora {
namespace {

using QuickHelpStateTest = QuickHelpSilenceTest;

TEST_F(QuickHelpStateTest, GridsTakeNoKeyAndOpenNoEditor) {
    quick_help_.set_on(true);
    const std::string before = state();
    for (const char* name : {"vaSpread1", "DBGrid1"}) {
        auto* grid = find<QTableView>(name);
        for (const Qt::Key key :
             {Qt::Key_F2, Qt::Key_1, Qt::Key_Delete, Qt::Key_Down, Qt::Key_Return, Qt::Key_PageDown}) {
            QTest::keyClick(grid, key);
            QTest::keyClick(grid->viewport(), key);
        }
        QTest::keyClick(grid, Qt::Key_V, Qt::ControlModifier);
        QTest::keyClick(grid, Qt::Key_X, Qt::ControlModifier);
        QTest::mouseDClick(grid->viewport(), Qt::LeftButton, {},
                           grid->visualRect(grid->model()->index(1, 1)).center());
        QTest::mouseClick(grid->horizontalHeader()->viewport(), Qt::LeftButton);
        EXPECT_EQ(state(), before) << name;
    }
}

TEST_F(QuickHelpStateTest, AnInputMethodEntersNothingEither) {
    session_.run.LagDistribution = {1.0F, 1.0F};
    frmTimeLagDist lag(context());
    lag.show();
    auto* share = lag.findChild<QLineEdit*>(QStringLiteral("Text1(1)"));
    share->setFocus();
    quick_help_.set_on(true);
    QInputMethodEvent typed;
    typed.setCommitString(QStringLiteral("5"));
    QApplication::sendEvent(share, &typed);
    EXPECT_EQ(share->text(), QStringLiteral("1"));
}

TEST_F(QuickHelpStateTest, TheCloseControlOfEveryWindowIsRefused) {
    frmTimeLagDist lag(context());
    Results results(context());
    frmNVRHelp help(context());
    type(4, "changed, so that leaving would ask");
    for (NivoraWindow* window : std::initializer_list<NivoraWindow*>{&lag, &results, &help, window_.get()}) {
        quick_help_.set_on(false);
        window->show();
        quick_help_.set_on(true);
        EXPECT_FALSE(window->close());
        EXPECT_TRUE(window->isVisible());
        EXPECT_EQ(window->help_text(),
                  QStringLiteral(
                      "The Windows native control for closing the form is disabled while QuickHelp' is on."));
    }
    EXPECT_EQ(asked(), dialogs_before_);
}

TEST_F(QuickHelpStateTest, BoxesAndGridsOfTheMainWindowAreInertWhileItIsOn) {
    const auto expect_enabled = [this](bool on) {
        for (int number = 0; number <= 5; ++number) EXPECT_EQ(box(number)->isEnabled(), on) << number;
        EXPECT_EQ(find<QTableView>("vaSpread1")->isEnabled(), on);
        EXPECT_EQ(find<QTableView>("DBGrid1")->isEnabled(), on);
    };
    expect_enabled(true);
    box(3)->setFocus();
    quick_help_.set_on(true);
    expect_enabled(false);
    EXPECT_EQ(asked(), dialogs_before_);
    EXPECT_FALSE(session_.basin.Basin_Changed);
    quick_help_.set_on(false);
    expect_enabled(true);
    EXPECT_EQ(QApplication::focusWidget(), box(0));
}

TEST_F(QuickHelpStateTest, AMainWindowThatOpensMeanwhileStartsInert) {
    quick_help_.set_on(true);
    frmNVR other(context());
    other.show();
    EXPECT_FALSE(other.findChild<QLineEdit*>(QStringLiteral("Text(0)"))->isEnabled());
    EXPECT_TRUE(other.findChild<QWidget*>(QStringLiteral("lblHelp"))->isVisible());
    quick_help_.set_on(false);
    EXPECT_TRUE(other.findChild<QLineEdit*>(QStringLiteral("Text(0)"))->isEnabled());
}

TEST_F(QuickHelpStateTest, WindowsShareTheStateAndAnyButtonSwitchesIt) {
    frmTimeLagDist lag(context());
    Results results(context());
    lag.show();
    results.show();
    const auto shown = [](const QWidget& window) {
        return window.findChild<QWidget*>(QStringLiteral("lblHelp"))->isVisible();
    };
    const auto button = [](const QWidget& window) {
        return window.findChild<QToolButton*>(QStringLiteral("btnHelp"));
    };
    button(lag)->click();
    for (const QWidget* window : std::initializer_list<const QWidget*>{&lag, &results, window_.get()}) {
        EXPECT_TRUE(shown(*window));
        EXPECT_TRUE(button(*window)->isChecked());
        EXPECT_EQ(button(*window)->toolTip(), QStringLiteral("Hide 'QuickHelp'"));
    }
    QTest::mouseClick(button(results), Qt::LeftButton);
    for (const QWidget* window : std::initializer_list<const QWidget*>{&lag, &results, window_.get()}) {
        EXPECT_FALSE(shown(*window));
        EXPECT_FALSE(button(*window)->isChecked());
        EXPECT_EQ(button(*window)->toolTip(), QStringLiteral("View 'QuickHelp'"));
    }
}

TEST_F(QuickHelpStateTest, AWindowGrowsByTheStripAndShrinksBack) {
    Results results(context());
    results.move(0, 0);
    results.resize(560, 480);
    results.show();
    QTest::qWait(1);
    const int before = results.height();
    quick_help_.set_on(true);
    EXPECT_EQ(results.height(), before + results.findChild<QWidget*>(QStringLiteral("lblHelp"))->height());
    quick_help_.set_on(false);
    QTest::qWait(1);
    EXPECT_EQ(results.height(), before);
}

TEST_F(QuickHelpStateTest, TheStripTakesTheColoursOfTheSettings) {
    session_.settings.quick_help_back = 0x80FFFF;  // red 255, green 255, blue 128
    session_.settings.quick_help_fore = 0x000080;  // red 128
    quick_help_.set_on(true);
    const QPalette palette = find<QWidget>("lblHelp")->palette();
    EXPECT_EQ(palette.color(QPalette::Base), QColor(255, 255, 128));
    EXPECT_EQ(palette.color(QPalette::Text), QColor(128, 0, 0));
}

}  // namespace
}  // namespace nivora
