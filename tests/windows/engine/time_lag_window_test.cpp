#include "tests/shell/main_window_fixture.h"
#include "windows/engine/frmTimeLagDist.h"

namespace nivora {
namespace {

class TimeLagTest : public MainWindowTest {
protected:
    void SetUp() override { open(); }

    void open() {
        lag_ = std::make_unique<frmTimeLagDist>(
            WindowContext{session_, quick_help_, program_.path(), printing_});
        lag_->show();
    }

    QLineEdit* text(int index) { return lag_->findChild<QLineEdit*>(QStringLiteral("Text1(%1)").arg(index)); }
    void click(int index) {
        lag_->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(index))->click();
        QTest::qWait(1);
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

    std::unique_ptr<frmTimeLagDist> lag_;
};

TEST_F(TimeLagTest, WithoutADistributionAllBoxesAreEmptyAndTheSharesDisabled) {
    EXPECT_EQ(lag_->windowTitle(), QStringLiteral("Custom Time Lag Distribution"));
    EXPECT_EQ(text(0)->text(), QString{});
    for (int i = 1; i <= 6; ++i) EXPECT_FALSE(text(i)->isEnabled()) << i;
    EXPECT_EQ(total(), QStringLiteral("0"));
}

TEST_F(TimeLagTest, ACountEnablesSoManyShares) {
    give_count("3");
    for (int i = 1; i <= 6; ++i) EXPECT_EQ(text(i)->isEnabled(), i <= 3) << i;
}

TEST_F(TimeLagTest, ASmallerCountEmptiesWhatItDisables) {
    give_count("2");
    give_share(2, "0.5");
    give_count("1");
    EXPECT_EQ(text(2)->text(), QString{});
    EXPECT_FALSE(text(2)->isEnabled());
}

TEST_F(TimeLagTest, ACountBeyondSixIsRefused) {
    give_count("7");
    EXPECT_EQ(last_message().text, "Day count must be from 0 to 6");
    EXPECT_EQ(last_message().icon, Icon::Stop);
    EXPECT_EQ(text(0)->text(), QString{});
}

TEST_F(TimeLagTest, TheTotalIsTheSumOfTheSharesInUse) {
    give_count("3");
    give_share(1, "0.3");
    give_share(2, "0.3");
    give_share(3, "0.4");
    EXPECT_EQ(total(), QStringLiteral("1"));
}

TEST_F(TimeLagTest, AcceptKeepsADistributionThatSumsToOne) {
    give_count("2");
    give_share(1, "0.75");
    give_share(2, ".25");
    click(0);
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution, (std::array<float, 8>{2.0F, 0.75F, 0.25F}));
    open();
    EXPECT_EQ(text(0)->text(), QStringLiteral("2"));
    EXPECT_EQ(text(1)->text(), QStringLiteral("0.75"));
    EXPECT_EQ(total(), QStringLiteral("1"));
    EXPECT_FALSE(text(3)->isEnabled());
}

TEST_F(TimeLagTest, AcceptRefusesAnyOtherSum) {
    give_count("2");
    give_share(1, "0.75");
    click(0);
    EXPECT_TRUE(lag_->isVisible());
    EXPECT_EQ(
        last_message().text,
        "Distribution of daily melt over the period specified must equal 1 (100%).  Please correct before "
        "proceeding");
    EXPECT_EQ(session_.run.LagDistribution[0], 0.0F);
}

TEST_F(TimeLagTest, AnEmptyCountWithAcceptRemovesTheDistribution) {
    session_.run.LagDistribution = {1.0F, 1.0F};
    open();
    give_count("");
    click(0);
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution[0], 0.0F);
}

TEST_F(TimeLagTest, CancelKeepsNothing) {
    give_count("1");
    give_share(1, "1");
    click(1);
    EXPECT_FALSE(lag_->isVisible());
    EXPECT_EQ(session_.run.LagDistribution[0], 0.0F);
}

TEST_F(TimeLagTest, OnlyValidKeysReachTheBoxes) {
    QTest::keyClicks(text(0), QStringLiteral("07a.9-3"));
    EXPECT_EQ(text(0)->text(), QStringLiteral("3"));
    leave(text(0));
    text(1)->selectAll();
    QTest::keyClicks(text(1), QStringLiteral("0.x5-,"));
    EXPECT_EQ(text(1)->text(), QStringLiteral("0.5"));
}

TEST_F(TimeLagTest, EnterMovesToTheNextOpenBoxAndThenToAccept) {
    text(0)->setFocus();
    QTest::keyClicks(text(0), QStringLiteral("2"));
    QTest::keyClick(text(0), Qt::Key_Return);
    EXPECT_EQ(lag_->focusWidget(), text(1));
    QTest::keyClick(text(1), Qt::Key_Return);
    EXPECT_EQ(lag_->focusWidget(), text(2));
    QTest::keyClick(text(2), Qt::Key_Return);
    EXPECT_EQ(lag_->focusWidget()->objectName(), QStringLiteral("Command1(0)"));
}

}  // namespace
}  // namespace nivora
