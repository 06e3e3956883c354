#include "tests/shell/main_window_fixture.h"
#include "windows/engine/frmTimeLagDist.h"

#include <gmock/gmock.h>

#include <QMenuBar>

namespace nivora {
namespace {

using testing::HasSubstr;
using testing::StartsWith;

class QuickHelpTest : public MainWindowTest {
protected:
    void switch_on() {
        find<QToolButton>("btnHelp")->click();
        QTest::qWait(1);
    }
    [[nodiscard]] std::string text() const { return window_->help_text().toStdString(); }
    [[nodiscard]] std::string line(int number) const {
        return Load_QuickHelp(program_.path(), "frmNVR").line(number);
    }
};

TEST_F(QuickHelpTest, TheButtonTurnsItOnAndOff) {
    auto* strip = find<QWidget>("lblHelp");
    EXPECT_FALSE(strip->isVisible());
    switch_on();
    EXPECT_TRUE(quick_help_.is_on());
    EXPECT_TRUE(strip->isVisible());
    EXPECT_EQ(find<QToolButton>("btnHelp")->toolTip(), QStringLiteral("Hide 'QuickHelp'"));
    EXPECT_EQ(QApplication::overrideCursor()->shape(), Qt::WhatsThisCursor);
    EXPECT_EQ(text(), line(0));
    QTest::mouseClick(find<QToolButton>("btnHelp"), Qt::LeftButton);
    EXPECT_FALSE(quick_help_.is_on());
    EXPECT_FALSE(strip->isVisible());
    EXPECT_EQ(find<QToolButton>("btnHelp")->toolTip(), QStringLiteral("View 'QuickHelp'"));
    EXPECT_EQ(QApplication::overrideCursor(), nullptr);
}

TEST_F(QuickHelpTest, AClickedElementExplainsItselfAndDoesNothing) {
    switch_on();
    QTest::mouseClick(find<QPushButton>("Command1(0)"), Qt::LeftButton);
    EXPECT_EQ(text(), line(39));
    EXPECT_TRUE(dialogs_.messages().empty());
    QTest::mouseClick(box(3), Qt::LeftButton);
    EXPECT_EQ(text(), line(6));
    QTest::mouseClick(find<QLabel>("lblBasinArea"), Qt::LeftButton);
    EXPECT_EQ(text(), line(46));
}

TEST_F(QuickHelpTest, KeysTypeNothing) {
    switch_on();
    QTest::keyClicks(box(2), QStringLiteral("123"));
    EXPECT_EQ(box(2)->text(), QString{});
    EXPECT_EQ(text(), line(5));
}

TEST_F(QuickHelpTest, AColumnOfAGridExplainsItself) {
    open_sample();
    switch_on();
    for (const auto& [name, base] : {std::pair{"vaSpread1", 9}, std::pair{"DBGrid1", 21}}) {
        auto* grid = find<QTableView>(name);
        for (const int column : {0, 2}) {
            const QPoint place = grid->visualRect(grid->model()->index(0, column)).center();
            QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, place);
            EXPECT_EQ(text(), line(base + column + 1)) << name;
        }
    }
    EXPECT_EQ(session_.basin.current_row, 0U);
}

TEST_F(QuickHelpTest, TheCloseControlIsRefused) {
    switch_on();
    EXPECT_FALSE(window_->close());
    EXPECT_EQ(text(), "The Windows native control for closing the form is disabled while QuickHelp' is on.");
    EXPECT_TRUE(window_->isVisible());
}

TEST_F(QuickHelpTest, AMenuItemIsExplainedAndDisabled) {
    switch_on();
    auto* menu = find<QMenu>("mnuFile");
    menu->popup(QPoint(0, 0));
    QTest::qWait(1);
    const QRect place = menu->actionGeometry(find<QAction>("mnuFileItem(5)"));
    QTest::mouseClick(menu, Qt::LeftButton, {}, place.center());
    EXPECT_THAT(text(), HasSubstr("Menu items are disabled when 'QuickHelp' is on."));
    EXPECT_THAT(text(), HasSubstr(Load_QuickHelp(program_.path(), "frmNVR").menu_text(5)));
    EXPECT_TRUE(dialogs_.files().empty());
    menu->close();
}

TEST_F(QuickHelpTest, TheStateHoldsInAWindowThatOpensMeanwhile) {
    quick_help_.set_on(true);
    const WindowContext context{session_, quick_help_, program_.path(), printing_};
    frmTimeLagDist other(context);
    other.show();
    EXPECT_TRUE(other.findChild<QWidget*>(QStringLiteral("lblHelp"))->isVisible());
    EXPECT_THAT(other.help_text().toStdString(),
                StartsWith(Load_QuickHelp(program_.path(), "frmTimeLagDist").line(0).substr(0, 20)));
    quick_help_.set_on(false);
}

}  // namespace
}  // namespace nivora
