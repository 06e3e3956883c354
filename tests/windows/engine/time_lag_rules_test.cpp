#include "tests/shell/main_window_fixture.h"
#include "windows/engine/frmTimeLagDist.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

class TimeLagRulesTest : public MainWindowTest {
protected:
    void SetUp() override { open(); }

    void open() {
        lag_ = std::make_unique<frmTimeLagDist>(
            WindowContext{session_, quick_help_, program_.path(), printing_});
        lag_->show();
        lag_->activateWindow();
        QTest::qWait(1);
    }

    QLineEdit* text(int index) { return lag_->findChild<QLineEdit*>(QStringLiteral("Text1(%1)").arg(index)); }
    QPushButton* button(int index) {
        return lag_->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(index));
    }
    [[nodiscard]] QString total() { return lag_->findChild<QLabel*>(QStringLiteral("lblDistTotal"))->text(); }
    void give_count(const char* count) {
        text(0)->setText(QString::fromUtf8(count));
        leave(text(0));
    }
    void give_share(int index, const char* share) {
        text(index)->setText(QString::fromUtf8(share));
        leave(text(index));
    }
    [[nodiscard]] QColor shown_colour(int index) {
        const QPalette::ColorGroup group = text(index)->isEnabled() ? QPalette::Active : QPalette::Disabled;
        return text(index)->palette().color(group, QPalette::Base);
    }

    std::unique_ptr<frmTimeLagDist> lag_;
};

TEST_F(TimeLagRulesTest, TheToolsMenuOpensItBeforeAllOthers) {
    lag_.reset();
    choose_units(0, Answer::Yes);
    give_zones("1", Answer::Yes);
    look_at_modal("frmTimeLagDist", [](QWidget* lag) {
        EXPECT_EQ(lag->windowTitle(), QStringLiteral("Custom Time Lag Distribution"));
        EXPECT_EQ(lag->windowModality(), Qt::ApplicationModal);
    });
    choose("mnuToolsItm(4)");
    EXPECT_TRUE(seen_);
}

TEST_F(TimeLagRulesTest, LabelsAndButtonsHaveTheirTexts) {
    QStringList texts;
    for (const QLabel* label : lag_->findChildren<QLabel*>()) texts << label->text();
    for (const char* caption : {"# of days contributing to a daily melt total (1-6):", "Current", "Day-1",
                                "Day-2", "Day-3", "Day-4", "Day-5", "Distribution Total (must equal 1.0)"}) {
        EXPECT_TRUE(texts.contains(QString::fromUtf8(caption))) << caption;
    }
    EXPECT_EQ(button(0)->text(), QStringLiteral("&Accept"));
    EXPECT_EQ(button(1)->text(), QStringLiteral("&Cancel"));
    EXPECT_EQ(button(2)->text(), QStringLiteral("&Help"));
}

TEST_F(TimeLagRulesTest, WithoutADistributionTheFirstShareStartsAtTheWhole) {
    EXPECT_EQ(text(1)->text(), QStringLiteral("1.0"));
    for (int i : {0, 2, 3, 4, 5, 6}) EXPECT_EQ(text(i)->text(), QString{}) << i;
    for (int i = 1; i <= 6; ++i) EXPECT_FALSE(text(i)->isEnabled()) << i;
    EXPECT_TRUE(text(0)->isEnabled());
    EXPECT_EQ(total(), QStringLiteral("0"));
    give_count("1");
    EXPECT_TRUE(text(1)->isEnabled());
    EXPECT_EQ(total(), QStringLiteral("1"));
    button(0)->click();
    EXPECT_THAT(session_.run.LagDistribution, testing::ElementsAre(1.0F, 1.0F, 0, 0, 0, 0, 0, 0));
}

TEST_F(TimeLagRulesTest, AcceptingAtOnceDefinesNoDistribution) {
    button(0)->click();
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_THAT(session_.run.LagDistribution, testing::Each(0.0F));
}

TEST_F(TimeLagRulesTest, SharesWithATotalOfZeroRemoveTheDistribution) {
    session_.run.LagDistribution = {2.0F, 0.5F, 0.5F};
    open();
    give_share(1, "0");
    give_share(2, "");
    EXPECT_EQ(total(), QStringLiteral("0"));
    button(0)->click();
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_THAT(session_.run.LagDistribution, testing::Each(0.0F));
    open();
    EXPECT_EQ(text(0)->text(), QString{}) << "no distribution is defined";
}

TEST_F(TimeLagRulesTest, AShareOfZeroOpensEmptyAndDisabledAmongOthers) {
    session_.run.LagDistribution = {3.0F, 0.25F, 0.0F, 0.75F};
    open();
    EXPECT_EQ(text(0)->text(), QStringLiteral("3"));
    EXPECT_EQ(text(1)->text(), QStringLiteral("0.25"));
    EXPECT_EQ(text(2)->text(), QString{});
    EXPECT_FALSE(text(2)->isEnabled());
    EXPECT_EQ(text(3)->text(), QStringLiteral("0.75"));
    EXPECT_TRUE(text(3)->isEnabled());
    EXPECT_FALSE(text(4)->isEnabled());
    EXPECT_EQ(total(), QStringLiteral("1"));
}

TEST_F(TimeLagRulesTest, AWrongCountDoesNotPreventCancel) {
    text(0)->setFocus();
    text(0)->setText(QStringLiteral("9"));
    QTest::mousePress(button(1), Qt::LeftButton);
    QTest::qWait(1);
    QTest::mouseRelease(button(1), Qt::LeftButton);
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_FALSE(lag_->isVisible());
    open();
    give_count("9");
    EXPECT_EQ(dialogs_.messages().size(), 1U);
}

TEST_F(TimeLagRulesTest, AWrongCountIsNotAcceptedWhateverHasTheFocus) {
    give_count("2");
    give_share(1, "0.5");
    give_share(2, "0.5");
    text(0)->setText(QStringLiteral("66"));
    button(0)->click();
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_TRUE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution[0], 0.0F);
}

TEST_F(TimeLagRulesTest, TheCountTakes1To6Alone) {
    for (const char* key : {"0", "7", "8", "9", ".", "-", "a", " "}) {
        QTest::keyClicks(text(0), QString::fromUtf8(key));
        EXPECT_EQ(text(0)->text(), QString{}) << key;
    }
    for (const char* key : {"1", "2", "3", "4", "5", "6"}) {
        text(0)->selectAll();
        QTest::keyClicks(text(0), QString::fromUtf8(key));
        EXPECT_EQ(text(0)->text(), QString::fromUtf8(key));
    }
    QTest::keyClick(text(0), Qt::Key_Backspace);
    EXPECT_EQ(text(0)->text(), QString{});
}

TEST_F(TimeLagRulesTest, SharesTakeDigitsAndPointsAlone) {
    give_count("6");
    for (int i = 1; i <= 6; ++i) {
        text(i)->selectAll();
        QTest::keyClicks(text(i), QStringLiteral("-0a.1 2,3456789e"));
        EXPECT_EQ(text(i)->text(), QStringLiteral("0.123456789")) << i;
        QTest::keyClick(text(i), Qt::Key_Backspace);
        EXPECT_EQ(text(i)->text(), QStringLiteral("0.12345678")) << i;
    }
}

TEST_F(TimeLagRulesTest, EveryCountEnablesThatManySharesAndGreysTheRest) {
    const QColor white = shown_colour(0);
    for (int count = 1; count <= 6; ++count) {
        give_count(std::to_string(count).c_str());
        for (int i = 1; i <= 6; ++i) {
            EXPECT_EQ(text(i)->isEnabled(), i <= count) << count << ' ' << i;
            EXPECT_EQ(shown_colour(i) == white, i <= count) << count << ' ' << i;
        }
    }
}

TEST_F(TimeLagRulesTest, ACountOfZeroDisablesAllSharesAndShowsATotalOfZero) {
    give_count("2");
    give_share(1, "0.5");
    give_count("0");
    for (int i = 1; i <= 6; ++i) {
        EXPECT_FALSE(text(i)->isEnabled()) << i;
        EXPECT_EQ(text(i)->text(), QString{}) << i;
    }
    EXPECT_EQ(total(), QStringLiteral("0"));
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(TimeLagRulesTest, ARefusedCountIsRedWhileItsMessageShowsAndKeepsTheFocusAfterEnter) {
    give_count("2");
    text(0)->setFocus();
    text(0)->clear();
    QTest::keyClicks(text(0), QStringLiteral("66"));
    QTest::keyClick(text(0), Qt::Key_Return);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Day count must be from 0 to 6");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
    EXPECT_EQ(text(0)->text(), QString{});
    EXPECT_EQ(lag_->focusWidget(), text(0));
}

TEST_F(TimeLagRulesTest, ARefusedCountKeepsTheFocusAfterTab) {
    text(0)->setFocus();
    text(0)->setText(QStringLiteral("7"));
    QTest::keyClick(text(0), Qt::Key_Tab);
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(text(0)->text(), QString{});
    EXPECT_EQ(lag_->focusWidget(), text(0));
}

TEST_F(TimeLagRulesTest, AnotherWindowDoesNotLeaveTheCount) {
    text(0)->setText(QStringLiteral("7"));
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QApplication::sendEvent(text(0), &out);
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(TimeLagRulesTest, EnterLeadsFromBoxToBoxAndFromTheSixthToAccept) {
    text(0)->setFocus();
    QTest::keyClicks(text(0), QStringLiteral("6"));
    for (int i = 0; i < 6; ++i) {
        QTest::keyClick(text(i), i % 2 == 0 ? Qt::Key_Return : Qt::Key_Enter);
        EXPECT_EQ(lag_->focusWidget(), text(i + 1)) << i;
    }
    QTest::keyClick(text(6), Qt::Key_Return);
    EXPECT_EQ(lag_->focusWidget(), button(0));
    EXPECT_TRUE(lag_->isVisible());
}

TEST_F(TimeLagRulesTest, EnterOnAnEmptyCountLeadsToAccept) {
    text(0)->setFocus();
    QTest::keyClick(text(0), Qt::Key_Return);
    EXPECT_EQ(lag_->focusWidget(), button(0));
}

TEST_F(TimeLagRulesTest, TheTotalIsASumOfSinglesAndOnlyOnePasses) {
    give_count("3");
    give_share(1, "0.3");
    give_share(2, "0.3");
    EXPECT_EQ(total(), QStringLiteral("0.6"));
    give_share(3, "0.4");
    EXPECT_EQ(total(), QStringLiteral("1"));
    give_share(3, "");
    EXPECT_EQ(total(), QStringLiteral("0.6"));
    give_share(3, ".39999");
    EXPECT_EQ(total(), QStringLiteral("0.99999"));
    button(0)->click();
    EXPECT_TRUE(lag_->isVisible());
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text,
              "Distribution of daily melt over the period specified must equal 1 (100%).  Please correct "
              "before proceeding");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(session_.run.LagDistribution[0], 0.0F);
}

TEST_F(TimeLagRulesTest, MoreThanOneIsRefusedToo) {
    give_count("1");
    give_share(1, "1.1");
    button(0)->click();
    EXPECT_TRUE(lag_->isVisible());
    EXPECT_EQ(dialogs_.messages().size(), 1U);
}

TEST_F(TimeLagRulesTest, TheAcceleratorCountsTheShareThatIsBeingTyped) {
    session_.run.LagDistribution = {2.0F, 0.75F, 0.25F};
    open();
    text(2)->setFocus();
    text(2)->selectAll();
    QTest::keyClicks(text(2), QStringLiteral("0.9"));
    button(0)->click();
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_TRUE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution[2], 0.25F);
}

TEST_F(TimeLagRulesTest, TheAcceleratorCountsTheNumberOfDaysThatIsBeingTyped) {
    session_.run.LagDistribution = {2.0F, 0.75F, 0.25F};
    open();
    text(0)->setFocus();
    text(0)->selectAll();
    QTest::keyClicks(text(0), QStringLiteral("1"));
    button(0)->click();
    EXPECT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_TRUE(lag_->isVisible());
}

TEST_F(TimeLagRulesTest, AcceptKeepsSixShares) {
    give_count("6");
    const std::array<const char*, 6> shares{"0.5", "0.25", "0.125", "0.0625", "0.03125", "0.03125"};
    // 1/2 + 1/4 + 1/8 + 1/16 + 1/32 + 1/32 = 1, every term a Single
    for (int i = 1; i <= 6; ++i) give_share(i, shares.at(static_cast<std::size_t>(i - 1)));
    button(0)->click();
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution,
              (std::array<float, 8>{6.0F, 0.5F, 0.25F, 0.125F, 0.0625F, 0.03125F, 0.03125F, 0.0F}));
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(TimeLagRulesTest, ACountOfZeroWithAcceptRemovesTheDistribution) {
    session_.run.LagDistribution = {2.0F, 0.75F, 0.25F};
    open();
    give_count("0");
    button(0)->click();
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution, (std::array<float, 8>{}));
}

TEST_F(TimeLagRulesTest, CancelAndTheCloseControlKeepTheFormerDistribution) {
    const std::array<float, 8> before{2.0F, 0.75F, 0.25F};
    session_.run.LagDistribution = before;
    open();
    give_share(1, "0.5");
    button(1)->click();
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution, before);
    open();
    give_count("1");
    lag_->close();
    EXPECT_EQ(session_.run.LagDistribution, before);
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(TimeLagRulesTest, HelpOpensItsTopic) {
    button(2)->click();
    bool shown = false;
    for (QWidget* top : QApplication::topLevelWidgets()) {
        shown = shown || (top->windowTitle() == QStringLiteral("Help for Custom Time Lag Distribution") &&
                          top->isVisible());
    }
    EXPECT_TRUE(shown);
    EXPECT_TRUE(lag_->isVisible());
}

}  // namespace
}  // namespace nivora
