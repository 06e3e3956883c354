// The help window beside a modal window that asked for it.

#include "tests/screen/screen_fixture.h"

#include <QCheckBox>
#include <QPushButton>
#include <QWindow>

namespace nivora {
namespace {

class HelpBesideTest : public MainWindowOnScreenTest {};

TEST_F(HelpBesideTest, HelpAndWelcomeCanBothBeUsedAndTheHelpStays) {
    QWidget* help = nullptr;
    in_modal("frmSplash", [&](QWidget& welcome) {
        click(*welcome.findChild<QPushButton*>(QStringLiteral("Command1(1)")));
        help = await_window("frmNVRHelp");
        ASSERT_NE(help, nullptr);
        await_active(*help);
        EXPECT_EQ(help->windowHandle()->transientParent(), welcome.windowHandle());
        press({"ctrl+a", "ctrl+c"});
        help->move(700, 500);  // beside the welcome
        settle();
        auto* skip = welcome.findChild<QCheckBox*>(QStringLiteral("Check1"));
        const bool before = skip->isChecked();
        click(*skip, QPoint(8, skip->height() / 2));
        EXPECT_NE(skip->isChecked(), before) << "the help does not block the welcome";
        welcome.close();
    });
    choose("mnuHelpItm(1)");
    EXPECT_EQ(modal_windows_seen_, 1);
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    press({"Escape"});
    help->activateWindow();
    await_active(*help);
    press({"Escape"});
    EXPECT_FALSE(help->isVisible());
    EXPECT_TRUE(window_->isVisible());
}

}  // namespace
}  // namespace nivora
