// Which element has the keyboard when a window opens, and what Enter, Escape and F6 do there.

#include "tests/screen/screen_fixture.h"
#include "windows/prep/frmPopulate.h"

#include <QLineEdit>
#include <QPushButton>
#include <QSpinBox>

namespace nivora {
namespace {

class FirstFocusTest : public MainWindowOnScreenTest {};

TEST_F(FirstFocusTest, TypingAtTheStartReplacesTheNameThatIsProposed) {
    EXPECT_EQ(focused(), "Text(0)");
    type("Alder");
    EXPECT_EQ(from_qt(find<QLineEdit>("Text(0)")->text()), "Alder");
}

TEST_F(FirstFocusTest, TypingAfterNewReplacesTheNameThatIsProposed) {
    choose("mnuFileItem(0)");
    type("Birch");
    EXPECT_EQ(from_qt(find<QLineEdit>("Text(0)")->text()), "Birch");
}

TEST_F(FirstFocusTest, EscapeDoesNotEndTheProgram) {
    press({"Escape"});
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(FirstFocusTest, TheTimeLagWindowBeginsInItsFirstBoxAndEscapeCloses) {
    find<QAction>("mnuTools")->setEnabled(true);
    in_modal("frmTimeLagDist", [&](QWidget& window) {
        EXPECT_EQ(focused(), "Text1(0)");
        press({"Escape"});
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuToolsItm(4)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(FirstFocusTest, EnterPressesTheButtonThatHasTheFocus) {
    find<QAction>("mnuTools")->setEnabled(true);
    in_modal("frmTimeLagDist", [&](QWidget& window) {
        window.findChild<QPushButton*>(QStringLiteral("Command1(1)"))->setFocus();
        press({"Return"});
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuToolsItm(4)");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_EQ(session_.run.LagDistribution[0], 0.0F);
}

TEST_F(FirstFocusTest, TheDailyEditorBeginsInItsFirstCellAndF6LeadsOutOfTheGrid) {
    open_sample();
    in_modal("frmData", [&](QWidget& window) {
        EXPECT_EQ(focused(), "Spread");
        press({"Tab"});
        EXPECT_EQ(focused(), "Spread");
        press({"F6"});
        EXPECT_EQ(focused(), "Command1(0)");
        press({"shift+F6"});
        EXPECT_EQ(focused(), "Spread");
        press({"ctrl+Tab"});
        EXPECT_EQ(focused(), "Command1(0)");
        window.findChild<QSpinBox*>(QStringLiteral("UpDown1"))->setFocus();
        type("2");
        press({"Return"});
        EXPECT_TRUE(window.isVisible()) << "Enter in the zone's box takes the zone";
        press({"Escape"});
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuDataOpt(5)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(FirstFocusTest, EnterInACellGoesDownAndPressesNoButton) {
    open_sample();
    in_modal("frmData", [&](QWidget& window) {
        auto* grid = window.findChild<QTableView*>(QStringLiteral("Spread"));
        press({"F2", "Return"});
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(grid->currentIndex().row(), 1);
        press({"Return"});
        EXPECT_TRUE(window.isVisible());
        press({"Right", "F2"});  // the first column is locked
        EXPECT_TRUE(QApplication::focusWidget()->property("gridEditor").toBool());
        press({"Escape"});
        EXPECT_TRUE(window.isVisible()) << "Escape leaves the cell first";
        press({"Escape"});
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuDataOpt(5)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

TEST_F(FirstFocusTest, EnterInThePeriodWindowPressesItsDefaultButton) {
    in_modal("frmPopulate", [&](QWidget& window) {
        EXPECT_EQ(focused(), "MaskEdBox1(0)");
        EXPECT_TRUE(window.findChild<QPushButton*>(QStringLiteral("Command1(0)"))->isDefault());
        type("13");  // replaces the month of the proposed date
        press({"Return"});
        EXPECT_EQ(dialogs_.messages().size(), 1U);
        press({"Escape"});
        EXPECT_FALSE(window.isVisible());
    });
    frmPopulate(WindowContext{session_, quick_help_, program_.path(), printing_}, nullptr).show_modal();
    EXPECT_EQ(modal_windows_seen_, 1);
}

}  // namespace
}  // namespace nivora
