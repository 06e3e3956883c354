// A message box with the frame that the window manager draws around it.

#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_dialogs.h"

#include <QLayout>
#include <QMessageBox>
#include <QWindow>

namespace nivora {
namespace {

/// The pixels of a title bar that differ from the rest of their line: its text and its icons.
int drawn_in_title_bar(const QWidget& box) {
    // A widget may learn of its frame only when it is moved; its window asks for it.
    const QWindow& window = *box.windowHandle();
    const QRect frame = window.frameGeometry();
    const QImage bar =
        box.screen()
            ->grabWindow(0, frame.left(), frame.top(), frame.width(), window.geometry().top() - frame.top())
            .toImage();
    int count = 0;
    for (int y = 0; y < bar.height(); ++y) {
        std::map<QRgb, int> colours;
        for (int x = 0; x < bar.width(); ++x) ++colours[bar.pixel(x, y)];
        int most = 0;
        for (const auto& [colour, points] : colours) most = std::max(most, points);
        count += bar.width() - most;
    }
    return count;
}

/// The same once it has not changed for a while: the window manager draws a frame when it comes to it.
int settled_in_title_bar(const QWidget& box) {
    int drawn = -1;
    for (int equal = 0, looks = 0; equal < 5 && looks < 100; ++looks) {
        const int now = drawn_in_title_bar(box);
        equal = now == drawn && now > 0 ? equal + 1 : 0;
        drawn = now;
        QTest::qWait(100);
    }
    return drawn;
}

using MessageBoxOnScreenTest = MainWindowOnScreenTest;

// If the title were cut short, a wider box would show more of it.
TEST_F(MessageBoxOnScreenTest, ItIsWideEnoughForItsTitle) {
    int as_shown = 0;
    int wide = 0;
    in_dialog<QMessageBox>([&](QMessageBox& box) {
        as_shown = settled_in_title_bar(box);
        const QSize size = box.size();
        box.layout()->setSizeConstraint(QLayout::SetNoConstraint);
        box.setFixedSize(size + QSize(150, 0));
        ASSERT_TRUE(await([&] { return box.windowHandle()->frameGeometry().width() >= size.width() + 150; }));
        wide = settled_in_title_bar(box);
        press({"Return"});
    });
    DesktopDialogs dialogs;
    dialogs.message({.text = "No.",
                     .title = "Database changes disable all model output (plots, reports) that utilize "
                              "computed values"});
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_GT(as_shown, 500);
    EXPECT_NEAR(as_shown, wide, as_shown / 50);
}

}  // namespace
}  // namespace nivora
