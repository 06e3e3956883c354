// Escape does what the close control of a window does.

#include "tests/screen/screen_fixture.h"
#include "windows/prep/frmPopulate.h"

#include <QLineEdit>

namespace nivora {
namespace {

class EscapeTest : public MainWindowOnScreenTest {
protected:
    void show_period_window() {
        frmPopulate(WindowContext{session_, quick_help_, program_.path(), printing_}, nullptr).show_modal();
        EXPECT_EQ(modal_windows_seen_, 1);
    }
};

TEST_F(EscapeTest, EscapeLeavesThePeriodWindowWhereverItsFocusIs) {
    for (const char* name : {"MaskEdBox1(0)", "MaskEdBox1(1)", "Command1(0)", "Command1(1)", "btnHelp"}) {
        modal_windows_seen_ = 0;
        in_modal("frmPopulate", [&](QWidget& window) {
            window.findChild<QWidget*>(QString::fromUtf8(name))->setFocus();
            press({"Escape"});
            EXPECT_FALSE(window.isVisible()) << name;
        });
        show_period_window();
    }
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(EscapeTest, WhileQuickHelpIsOnItIsRefusedInTheSameWordsAsTheCloseControl) {
    in_modal("frmPopulate", [&](QWidget& window) {
        auto& shown = dynamic_cast<NivoraWindow&>(window);
        quick_help_.set_on(true);
        window.close();
        const QString refused = shown.help_text();
        EXPECT_TRUE(refused.contains(QStringLiteral("is disabled while QuickHelp")));
        window.findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(1)"))->setFocus();
        shown.explain_widget(window.findChild<QLineEdit*>(QStringLiteral("MaskEdBox1(1)")));
        ASSERT_NE(shown.help_text(), refused);
        const QWidget* strip = window.findChild<QWidget*>(QStringLiteral("lblHelp"));
        const QImage before = picture(*strip);
        press({"Escape"});
        EXPECT_TRUE(window.isVisible());
        EXPECT_EQ(shown.help_text(), refused);
        EXPECT_NE(picture(*strip), before);
        quick_help_.set_on(false);
        press({"Escape"});
        EXPECT_FALSE(window.isVisible());
    });
    show_period_window();
}

}  // namespace
}  // namespace nivora
