// The help window beside a modal window that opened it.

#include "shell/frmSplash.h"
#include "tests/screen/screen_fixture.h"

#include <QCheckBox>
#include <QPushButton>
#include <QScrollBar>
#include <QTextBrowser>
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
        help->move(700, 500);  // beside the welcome window
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

TEST_F(HelpBesideTest, HelpAndTheWelcomeOfTheStartCanBothBeUsed) {
    window_->hide();  // the welcome window comes before it
    frmSplash welcome(session_, true);
    QWidget* help = nullptr;
    in_modal("frmSplash", [&](QWidget&) {
        press({"alt+n"});
        help = await_window("frmNVRHelp");
        ASSERT_NE(help, nullptr);
        await_active(*help);
        auto* text = help->findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
        ASSERT_NE(text, nullptr);
        const QString first = text->toPlainText();
        for (QAction* topic : help->findChildren<QAction*>()) {
            if (topic->text().contains(QStringLiteral("Main"))) topic->trigger();
        }
        EXPECT_NE(text->toPlainText(), first) << "the welcome does not block the help";
        press({"Next"});
        EXPECT_GT(text->verticalScrollBar()->value(), 0);
        welcome.activateWindow();
        await_active(welcome);
        press({"alt+s"});
        EXPECT_FALSE(welcome.isVisible()) << "the help does not block the welcome";
    });
    EXPECT_EQ(welcome.exec(), QDialog::Accepted);
    EXPECT_FALSE(welcome.leaves());
    EXPECT_EQ(modal_windows_seen_, 1);
    window_->show();
    await_active(*window_);
    ASSERT_NE(help, nullptr);
    EXPECT_TRUE(help->isVisible());
    help->activateWindow();
    await_active(*help);
    press({"Escape"});
    EXPECT_FALSE(help->isVisible());
}

}  // namespace
}  // namespace nivora
