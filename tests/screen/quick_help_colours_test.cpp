// The colours of the QuickHelp strip, as the screen shows them.

#include "tests/screen/screen_fixture.h"

#include <QColorDialog>
#include <QPushButton>
#include <QTextEdit>
#include <QToolButton>

namespace nivora {
namespace {

constexpr QRgb k_orange = 0xFF8000;

class QuickHelpColoursOnScreenTest : public MainWindowOnScreenTest {
protected:
    [[nodiscard]] QTextEdit& strip() { return *find<QTextEdit>("lblHelp"); }

    static void right_click(const QWidget& widget) {
        const QPoint at = widget.mapToGlobal(widget.rect().center());
        ArrivedInput arrived;
        screen_display()->right_click(at.x(), at.y());
        await([&] { return arrived.button_releases() > 0; });
        settle();
    }
};

TEST_F(QuickHelpColoursOnScreenTest, ARightClickOnTheStripChangesItsColoursAndNoMenuOpens) {
    click(*find<QToolButton>("btnHelp"));
    ASSERT_TRUE(quick_help_.is_on());
    const QRgb before = main_colour(picture(*strip().viewport()));
    in_modal("frmColorDef", [&](QWidget& dialog) {
        EXPECT_EQ(QApplication::activePopupWidget(), nullptr);
        auto* field = dialog.findChild<QWidget*>(QStringLiteral("Picture2(1)"));
        auto* sample = dialog.findChild<QWidget*>(QStringLiteral("lblSample"));
        ASSERT_NE(field, nullptr);
        ASSERT_NE(sample, nullptr);
        EXPECT_EQ(main_colour(picture(*sample)), before);
        in_dialog<QColorDialog>([](QColorDialog& colours) {
            colours.setCurrentColor(QColor(255, 128, 0));
            press({"Return"});
        });
        click(*field);
        settle();
        EXPECT_EQ(main_colour(picture(*field)), k_orange);
        EXPECT_EQ(main_colour(picture(*sample)), k_orange);
        EXPECT_EQ(main_colour(picture(*strip().viewport())), before) << "before Accept";
        click(*dialog.findChild<QPushButton*>(QStringLiteral("Command1(0)")));
        EXPECT_FALSE(dialog.isVisible());
    });
    right_click(*strip().viewport());
    ASSERT_TRUE(await([&] { return modal_windows_seen_ == 2; }));
    settle();
    EXPECT_TRUE(quick_help_.is_on());
    EXPECT_EQ(session_.settings.quick_help_back, 255 + 128 * 0x100);
    EXPECT_EQ(main_colour(picture(*strip().viewport())), k_orange);
}

}  // namespace
}  // namespace nivora
