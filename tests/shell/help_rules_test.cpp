#include "shell/frmAbout.h"
#include "shell/frmNVRHelp.h"
#include "shell/frmSplash.h"
#include "tests/shell/main_window_fixture.h"

#include <QCheckBox>
#include <QClipboard>
#include <QGroupBox>
#include <QTextBrowser>
#include <QTextDocument>

namespace nivora {
namespace {

class HelpRulesTest : public MainWindowTest {
protected:
    /// The help window of the program, if it is shown.
    static QWidget* shown_help() {
        for (QWidget* top : QApplication::topLevelWidgets()) {
            if (top->objectName() == QStringLiteral("frmNVRHelp") && top->isVisible()) return top;
        }
        return nullptr;
    }
    static int help_windows() {
        int windows = 0;
        for (const QWidget* top : QApplication::topLevelWidgets())
            windows += top->objectName() == QStringLiteral("frmNVRHelp") ? 1 : 0;
        return windows;
    }
    template <typename Window>
    static QStringList label_texts(const Window& window) {
        QStringList texts;
        for (const QLabel* label : window.template findChildren<QLabel*>()) texts << label->text();
        return texts;
    }
};

TEST_F(HelpRulesTest, EachTopicHasItsIndexCaptionAndNumber) {
    struct Topic {
        int index;
        const char* caption;
        int topic;
    };
    constexpr std::array<Topic, 18> k_topics{{{0, "Nivora Main Window", 0},
                                              {1, "&Main Window Menu Bar", 98},
                                              {2, "&Edit Simulation Control Information", 2},
                                              {3, "Edit &Basin Variables", 7},
                                              {4, "Edit Simulation &Parameters", 71},
                                              {5, "Simulation Results (data)", 72},
                                              {6, "Simulation Statistics", 8},
                                              {7, "&Climate Change Scenario Definition", 4},
                                              {8, "&Run a Climate Change", 5},
                                              {9, "Long-Term Monthly Averages", 6},
                                              {10, "&Output Definition", 9},
                                              {11, "&File Display", 10},
                                              {12, "Help for (this screen)", 16},
                                              {13, "Output Graphics", 17},
                                              {14, "Graphics", 18},
                                              {15, "Line Attributes", 13},
                                              {16, "Populate Physical Data Table", 3},
                                              {17, "Custom Time Lag Distribution", 12}}};
    std::string pages;
    for (const Topic& topic : k_topics) {
        const std::string number = std::to_string(topic.topic);
        pages += "[STRING" + number + "]page " + number + "[/STRING" + number + "]\n";
    }
    program_.write("NIVORAHelp.txt", pages);
    frmNVRHelp help(WindowContext{session_, quick_help_, program_.path(), printing_});
    auto* text = help.findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    for (const Topic& topic : k_topics) {
        auto* action = help.findChild<QAction*>(QStringLiteral("mnuHlpItm(%1)").arg(topic.index));
        ASSERT_NE(action, nullptr) << topic.index;
        EXPECT_EQ(action->text(), QString::fromUtf8(topic.caption));
        action->trigger();
        QString name = QString::fromUtf8(topic.caption);
        EXPECT_EQ(help.windowTitle(), QStringLiteral("Help for ") + name.remove(QLatin1Char('&')));
        EXPECT_EQ(text->toPlainText(), QStringLiteral("page %1").arg(topic.topic));
    }
    EXPECT_EQ(help.findChild<QAction*>(QStringLiteral("mnuHlpItm(19)"))->text(),
              QStringLiteral("Hollin Flow Model (Nivora) Users Manual"));
}

TEST_F(HelpRulesTest, CopyTakesTheSelectionWithItsLinesAndEndsIt) {
    program_.write("NIVORAHelp.txt", "[STRING8]first line\n\nsecond line\n\nthird line[/STRING8]");
    frmNVRHelp help(WindowContext{session_, quick_help_, program_.path(), printing_});
    help.show_topic(8);
    auto* text = help.findChild<QTextBrowser*>(QStringLiteral("txtHelp"));
    QTextCursor cursor = text->document()->find(QStringLiteral("first line"));
    const int end = text->document()->find(QStringLiteral("second")).selectionEnd();
    cursor.setPosition(cursor.selectionStart());
    cursor.setPosition(end, QTextCursor::KeepAnchor);
    text->setTextCursor(cursor);
    help.findChild<QAction*>(QStringLiteral("mnuCopy"))->trigger();
    EXPECT_EQ(QApplication::clipboard()->text(), QStringLiteral("first line\n\nsecond"));
    EXPECT_FALSE(text->textCursor().hasSelection());
}

TEST_F(HelpRulesTest, ThePageIsShownUnchangedEvenIfItLooksLikeMarkup) {
    program_.write("NIVORAHelp.txt", "[STRING8]a < b & c > d <b>bold</b>[/STRING8]");
    frmNVRHelp help(WindowContext{session_, quick_help_, program_.path(), printing_});
    help.show_topic(8);
    EXPECT_EQ(help.findChild<QTextBrowser*>(QStringLiteral("txtHelp"))->toPlainText(),
              QStringLiteral("a < b & c > d <b>bold</b>"));
}

TEST_F(HelpRulesTest, AMissingTopicShowsTheTextThatNamesTheFile) {
    program_.write("NIVORAHelp.txt", "[STRING8]open and never closed");
    frmNVRHelp help(WindowContext{session_, quick_help_, program_.path(), printing_});
    help.show_topic(8);
    const QString page = help.findChild<QTextBrowser*>(QStringLiteral("txtHelp"))->toPlainText();
    EXPECT_TRUE(page.startsWith(QString::fromStdString((program_ / "NIVORAHelp.txt").string())));
    EXPECT_TRUE(page.contains(QStringLiteral("The requested text was not found in")));
}

TEST_F(HelpRulesTest, TheHelpWindowIsOneAndStaysUntilItIsClosed) {
    EXPECT_EQ(help_windows(), 0);
    choose("mnuHelpItm(0)");
    ASSERT_NE(shown_help(), nullptr);
    EXPECT_EQ(shown_help()->windowTitle(), QStringLiteral("Help for Nivora Main Window"));
    session_.desktop.show_help_topic(8);
    EXPECT_EQ(shown_help()->windowTitle(), QStringLiteral("Help for Simulation Statistics"));
    EXPECT_EQ(help_windows(), 1);
    shown_help()->findChild<QAction*>(QStringLiteral("mnuClose"))->trigger();
    EXPECT_EQ(shown_help(), nullptr);
    choose("mnuHelpItm(0)");
    EXPECT_NE(shown_help(), nullptr);
    EXPECT_EQ(help_windows(), 1);
}

TEST_F(HelpRulesTest, TheWelcomeWindowHasItsTexts) {
    frmSplash splash(session_, true);
    EXPECT_EQ(splash.windowTitle(), QStringLiteral("Welcome to NVR for Windows"));
    const QStringList texts = label_texts(splash);
    EXPECT_TRUE(texts.contains(QStringLiteral("Hollin Flow Model for Windows ")));
    EXPECT_TRUE(texts.contains(QStringLiteral("Version 1.00.06")));
    EXPECT_TRUE(texts.contains(QStringLiteral(
        "Although Nivora has been tested by its developers, NO warranty, expressed or implied, is made as to "
        "the accuracy and functioning of the program and related program material nor shall the fact of "
        "distribution constitute any such warranty,  and NO responsibility is assumed by the developers in "
        "connection therewith.")));
    EXPECT_EQ(splash.findChild<QGroupBox*>()->title(), QStringLiteral("Disclaimer"));
    EXPECT_EQ(splash.findChild<QCheckBox*>(QStringLiteral("Check1"))->text(),
              QStringLiteral("Check here to skip this introduction in the future"));
    const std::array<const char*, 3> captions{"&Start", "&New User?", "&Exit program"};
    for (int i = 0; i < 3; ++i) {
        EXPECT_EQ(splash.findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(i))->text(),
                  QString::fromUtf8(captions.at(static_cast<std::size_t>(i))));
    }
}

TEST_F(HelpRulesTest, TheWelcomeWindowsBoxShowsAndSetsTheOppositeOfTheSetting) {
    session_.settings.show_splash = false;
    frmSplash splash(session_, false);
    auto* skip = splash.findChild<QCheckBox*>(QStringLiteral("Check1"));
    EXPECT_TRUE(skip->isChecked());
    skip->click();
    EXPECT_TRUE(session_.settings.show_splash);
    skip->click();
    EXPECT_FALSE(session_.settings.show_splash);
}

TEST_F(HelpRulesTest, ANewUserAndF1OpenTheManualOverTheWelcomeWindow) {
    frmSplash splash(session_, true);
    splash.show();
    splash.findChild<QPushButton*>(QStringLiteral("Command1(1)"))->click();
    ASSERT_NE(shown_help(), nullptr);
    EXPECT_TRUE(splash.isVisible());
    const QString title = shown_help()->windowTitle();
    shown_help()->close();
    splash.activateWindow();
    settle();
    QTest::keyClick(&splash, Qt::Key_F1);
    ASSERT_NE(shown_help(), nullptr);
    EXPECT_EQ(shown_help()->windowTitle(), title);
    EXPECT_FALSE(splash.leaves());
}

TEST_F(HelpRulesTest, TheHelpMenuShowsTheWelcomeWindowAgainAndItsLastButtonOnlyReturns) {
    look_at_modal("frmSplash", [](QWidget* window) {
        auto* splash = qobject_cast<frmSplash*>(window);
        ASSERT_NE(splash, nullptr);
        auto* button = splash->findChild<QPushButton*>(QStringLiteral("Command1(2)"));
        EXPECT_EQ(button->text(), QStringLiteral("Return to NVR"));
        button->click();
        EXPECT_FALSE(splash->leaves());
    });
    choose("mnuHelpItm(1)");
    EXPECT_TRUE(seen_);
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(HelpRulesTest, TheHelpMenuShowsTheAboutWindowAndItsButtonClosesIt) {
    look_at_modal("frmAbout", [](QWidget* window) {
        auto* about = qobject_cast<frmAbout*>(window);
        ASSERT_NE(about, nullptr);
        EXPECT_EQ(about->windowTitle(), QStringLiteral("About the Hollin Flow Model for Windows"));
        auto* button = about->findChild<QPushButton*>(QStringLiteral("Command1"));
        EXPECT_EQ(button->text(), QStringLiteral("Close"));
        button->click();
        EXPECT_FALSE(about->isVisible());
    });
    choose("mnuHelpItm(3)");
    EXPECT_TRUE(seen_);
}

TEST_F(HelpRulesTest, WithoutAToolTheSystemInformationIsUnavailable) {
    const QByteArray path = qgetenv("PATH");
    qputenv("PATH", QByteArray::fromStdString(user_.path().string()));
    choose("mnuHelpItm(4)");
    qputenv("PATH", path);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "System Information Is Unavailable At This Time");
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
}

}  // namespace
}  // namespace nivora
