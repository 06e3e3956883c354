#include "shell/frmAbout.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

#include <QClipboard>
#include <QTextBrowser>

namespace nivora {
namespace {

using testing::HasSubstr;

class HelpWindowTest : public MainWindowTest {
protected:
    frmNVRHelp help_{WindowContext{session_, quick_help_, program_.path(), printing_}};
    QTextBrowser* text_ = help_.findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
};

TEST_F(HelpWindowTest, ShowsATopicUnderItsName) {
    help_.show_topic(12);
    EXPECT_EQ(help_.windowTitle(), QStringLiteral("Help for Custom Time Lag Distribution"));
    EXPECT_FALSE(text_->toPlainText().startsWith(QString::fromStdString(program_.path().string())));
}

TEST_F(HelpWindowTest, EveryTopicOfItsMenuHasAText) {
    for (int index = 0; index <= 17; ++index) {
        auto* action = help_.findChild<QAction*>(QStringLiteral("mnuHlpItm(%1)").arg(index));
        ASSERT_NE(action, nullptr) << index;
        action->trigger();
        EXPECT_FALSE(text_->toPlainText().startsWith(QString::fromStdString(program_.path().string())))
            << index;
        EXPECT_EQ(help_.windowTitle(), QStringLiteral("Help for ") + action->text().remove(QLatin1Char('&')));
    }
}

TEST_F(HelpWindowTest, TheManualIsALinkWhereItIsMentioned) {
    help_.show_topic(0);
    EXPECT_THAT(text_->toHtml().toStdString(), HasSubstr("href=\"manual\""));
}

TEST_F(HelpWindowTest, ATopicAfterTheManualsLinkIsPlainTextAgain) {
    help_.show_topic(0);
    text_->setTextCursor(text_->document()->find(QStringLiteral("Nivora Users Manual")));
    help_.show_topic(12);
    EXPECT_EQ(text_->toHtml().indexOf(QStringLiteral("href")), -1);
    EXPECT_FALSE(QTextCursor(text_->document()).charFormat().fontUnderline());
}

/// A desktop whose tool finds no program for any document.
class ManualWithoutProgramTest : public HelpWindowTest {
protected:
    ManualWithoutProgramTest() {
        const auto asker = user_.write("xdg-mime", "#!/bin/sh\nexit 0\n");
        std::filesystem::permissions(asker, std::filesystem::perms::owner_all);
        qputenv("PATH", QByteArray::fromStdString(user_.path().string()) + ":" + path_);
        QApplication::clipboard()->setText(QStringLiteral("before"));
    }
    ~ManualWithoutProgramTest() override { qputenv("PATH", path_); }

    const QByteArray path_ = qgetenv("PATH");
    const std::filesystem::path manual_ =
        program_.write("Hollin Flow Model (Nivora) Users Manual.pdf", "%PDF-1.4");
};

TEST_F(ManualWithoutProgramTest, ItsPathIsShownAndCopiedOnAClick) {
    dialogs_.then(Answer::Yes);
    help_.findChild<QAction*>(QStringLiteral("mnuHlpItm(19)"))->trigger();
    EXPECT_EQ(last_message().title, "Unable to access the Nivora Users Manual");
    EXPECT_THAT(
        last_message().text,
        HasSubstr("version:\tFile not found\nAdobe .pdf version:    \tNo association for file extension"));
    EXPECT_THAT(last_message().text, HasSubstr(manual_.string()));
    EXPECT_EQ(QApplication::clipboard()->text().toStdString(), manual_.string());
}

TEST_F(ManualWithoutProgramTest, NoDoesNotChangeTheClipboard) {
    dialogs_.then(Answer::No);
    help_.findChild<QAction*>(QStringLiteral("mnuHlpItm(19)"))->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("before"));
}

TEST_F(HelpWindowTest, AMissingManualIsReportedWithBothReasons) {
    help_.findChild<QAction*>(QStringLiteral("mnuHlpItm(19)"))->trigger();
    EXPECT_EQ(last_message().title, "Unable to access the Nivora Users Manual");
    EXPECT_EQ(last_message().text,
              "The Nivora Users Manual is unavailable for the following reasons: \n\n"
              "Microsoft Word version:\tFile not found\n"
              "Adobe .pdf version:    \tFile not found");
}

TEST_F(HelpWindowTest, CopyTakesTheWholeTextWhereNothingIsSelected) {
    help_.show_topic(8);
    help_.findChild<QAction*>(QStringLiteral("mnuCopy"))->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), text_->toPlainText());
}

TEST_F(HelpWindowTest, TheMainWindowOpensItAtItsOwnTopic) {
    choose("mnuHelpItm(0)");
    bool shown = false;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        shown = shown ||
                (top->windowTitle() == QStringLiteral("Help for Nivora Main Window") && top->isVisible());
    }
    EXPECT_TRUE(shown);
}

TEST_F(HelpWindowTest, TheWelcomeWindowKeepsTheOppositeOfItsBox) {
    frmSplash splash(session_, true);
    auto* skip = splash.findChild<QAbstractButton*>(QStringLiteral("Check1"));
    EXPECT_FALSE(skip->isChecked());
    skip->click();
    EXPECT_FALSE(session_.settings.show_splash);
}

TEST_F(HelpWindowTest, TheWelcomeWindowEndsTheProgramAtItsStartOnly) {
    frmSplash at_start(session_, true);
    at_start.findChild<QPushButton*>(QStringLiteral("Command1(2)"))->click();
    EXPECT_TRUE(at_start.leaves());
    frmSplash later(session_, false);
    auto* button = later.findChild<QPushButton*>(QStringLiteral("Command1(2)"));
    EXPECT_EQ(button->text(), QStringLiteral("Return to NVR"));
    button->click();
    EXPECT_FALSE(later.leaves());
    frmSplash start(session_, true);
    start.findChild<QPushButton*>(QStringLiteral("Command1(0)"))->click();
    EXPECT_FALSE(start.leaves());
}

TEST_F(HelpWindowTest, TheAboutWindowSaysWhatTheProgramIs) {
    const frmAbout about;
    EXPECT_EQ(about.windowTitle(), QStringLiteral("About the Hollin Flow Model for Windows"));
    QStringList texts;
    for (const QLabel* label : about.findChildren<QLabel*>()) texts << label->text();
    EXPECT_TRUE(texts.contains(QStringLiteral("32-bit Window Based Application")));
    EXPECT_TRUE(texts.contains(QString::fromUtf8(disclaimer_text())));
}

/// Searching in the help window, in pages of which the first has snow twice and the fourth once.
class HelpSearchTest : public HelpWindowTest {
protected:
    HelpSearchTest() {
        program_.write("NIVORAHelp.txt",
                       "[STRING0]Snow melts. Then SNOW stays.[/STRING0][STRING98]A page of menus.[/STRING98]"
                       "[STRING2]Control information.[/STRING2][STRING7]More snow.[/STRING7]");
        help_.show_topic(0);
        help_.show();
        help_.activateWindow();
        settle();
    }

    QLineEdit* box() { return help_.findChild<QLineEdit*>(QStringLiteral("txtFind")); }
    QString outcome() { return help_.findChild<QLabel*>(QStringLiteral("lblFind"))->text(); }
    int place() { return text_->textCursor().selectionStart(); }
    void open() { QTest::keyClick(&help_, Qt::Key_F, Qt::ControlModifier); }
    void search(const char* text) {
        open();
        QTest::keyClicks(box(), QString::fromUtf8(text));
        QTest::keyClick(box(), Qt::Key_Return);
    }
    void expect_at(const char* topic, int place_of_it) {
        EXPECT_EQ(help_.windowTitle().toStdString(), std::string{"Help for "} + topic);
        EXPECT_EQ(place(), place_of_it);
        EXPECT_EQ(text_->textCursor().selectedText().toLower(), QStringLiteral("snow"));
    }
};

TEST_F(HelpSearchTest, TheBarIsHiddenUntilControlFOpensIt) {
    EXPECT_FALSE(box()->isVisible());
    open();
    EXPECT_TRUE(box()->isVisible());
    EXPECT_TRUE(box()->hasFocus());
}

TEST_F(HelpSearchTest, EnterGoesFromPlaceToPlaceThroughAllTopicsAndAround) {
    search("snow");
    expect_at("Nivora Main Window", 0);
    QTest::keyClick(box(), Qt::Key_Return);
    expect_at("Nivora Main Window", 17);
    EXPECT_EQ(outcome(), QString{});
    QTest::keyClick(box(), Qt::Key_Return);
    expect_at("Edit Basin Variables", 5);
    EXPECT_EQ(outcome(), QStringLiteral("In another topic"));
    QTest::keyClick(box(), Qt::Key_F3);
    expect_at("Nivora Main Window", 0);
}

TEST_F(HelpSearchTest, WithShiftItGoesBackward) {
    search("snow");
    QTest::keyClick(box(), Qt::Key_Return, Qt::ShiftModifier);
    expect_at("Edit Basin Variables", 5);
    QTest::keyClick(box(), Qt::Key_F3, Qt::ShiftModifier);
    expect_at("Nivora Main Window", 17);
}

TEST_F(HelpSearchTest, ATextOfOnePageIsFoundAgainFromItsStart) {
    search("melts");
    EXPECT_EQ(place(), 5);
    QTest::keyClick(box(), Qt::Key_Return);
    EXPECT_EQ(place(), 5);
    EXPECT_EQ(outcome(), QString{});
}

TEST_F(HelpSearchTest, ATextThatNoTopicHasIsToldUntilAnotherIsTyped) {
    search("glacier");
    EXPECT_EQ(outcome(), QStringLiteral("Not found in any topic"));
    EXPECT_FALSE(text_->textCursor().hasSelection());
    QTest::keyClicks(box(), QStringLiteral("s"));
    EXPECT_EQ(outcome(), QString{});
}

TEST_F(HelpSearchTest, EscapeClosesTheBarFirstAndThenTheWindow) {
    search("snow");
    QTest::keyClick(box(), Qt::Key_Escape);
    EXPECT_FALSE(box()->isVisible());
    EXPECT_TRUE(help_.isVisible());
    EXPECT_TRUE(text_->hasFocus());
    QTest::keyClick(text_, Qt::Key_Escape);
    EXPECT_FALSE(help_.isVisible());
}

TEST_F(HelpSearchTest, WithoutATextF3OpensTheBar) {
    QTest::keyClick(&help_, Qt::Key_F3);
    EXPECT_TRUE(box()->hasFocus());
}

}  // namespace
}  // namespace nivora
