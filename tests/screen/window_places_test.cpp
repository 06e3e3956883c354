// Where windows appear on a real display, from one opening to the next.

#include "base/durable_file.h"
#include "shell/settings_store.h"
#include "tests/screen/screen_fixture.h"

#include <QPushButton>
#include <QWindow>

namespace nivora {
namespace {

constexpr std::size_t k_main = 1;

class WindowPlacesTest : public MainWindowOnScreenTest {
protected:
    [[nodiscard]] QPoint corner() const { return window_->frameGeometry().topLeft(); }
    [[nodiscard]] QRect screen_area() const { return window_->screen()->availableGeometry(); }

    /// Closes the main window and opens it again, as the next start of the program does.
    void start_again() {
        window_->close();
        settle();
        window_.reset();
        session_.basin = {};
        start_main_window();
    }

    /// Closes the main window and opens it again with only what the end of the program wrote to the settings.
    void start_with_written_settings() {
        window_->close();
        settle();
        window_.reset();
        session_.basin = {};
        QSettings store{to_qt(path_text(user_ / "settings.ini")), QSettings::IniFormat};
        Save_Settings(store, session_.settings);
        session_.settings = Load_Settings(store);
        start_main_window();
    }

    void start_with(std::optional<int> left, std::optional<int> top) {
        window_->close();
        settle();
        window_.reset();
        session_.basin = {};
        session_.settings.places[k_main] = {.top = top, .left = left, .height = {}, .width = {}};
        start_main_window();
    }
};

TEST_F(WindowPlacesTest, AWindowWithoutAPlaceIsCentred) {
    const QRect frame = window_->frameGeometry();
    const QPoint off = frame.center() - screen_area().center();
    EXPECT_LE(std::abs(off.x()), 2) << off.x();
    EXPECT_LE(std::abs(off.y()), 2) << off.y();
}

TEST_F(WindowPlacesTest, StartsDoNotMoveTheWindow) {
    window_->move(140, 90);
    settle();
    ASSERT_EQ(corner(), QPoint(140, 90));
    for (int start = 0; start < 5; ++start) {
        start_again();
        EXPECT_EQ(corner(), QPoint(140, 90)) << start;
        EXPECT_EQ(session_.settings.places[k_main].top, 90);
    }
}

TEST_F(WindowPlacesTest, OpeningsWithinOneRunDoNotMoveAWindow) {
    std::optional<QPoint> first;
    for (int opening = 0; opening < 5; ++opening) {
        QPoint found;
        in_modal("frmTimeLagDist", [&](QWidget& window) { found = window.frameGeometry().topLeft(); });
        find<QAction>("mnuTools")->setEnabled(true);
        choose("mnuToolsItm(4)");
        if (!first) first = found;
        EXPECT_EQ(found, *first) << opening;
    }
    EXPECT_EQ(modal_windows_seen_, 5);
}

TEST_F(WindowPlacesTest, AKeptCornerOfZeroIsRestored) {
    start_with(0, 0);
    EXPECT_EQ(corner(), QPoint(0, 0));
    start_again();
    EXPECT_EQ(corner(), QPoint(0, 0));
}

TEST_F(WindowPlacesTest, ATitleBarAboveOrBesideTheScreenIsBroughtBack) {
    for (const QPoint kept : {QPoint(-4000, -300), QPoint(-7, -25), QPoint(5000, 4000), QPoint(1270, 20)}) {
        start_with(kept.x(), kept.y());
        settle();
        const QRect frame = window_->frameGeometry();
        EXPECT_TRUE(screen_area().contains(frame))
            << kept.x() << " " << kept.y() << ": " << frame.left() << " " << frame.top() << " "
            << frame.right() << " " << frame.bottom();
    }
}

TEST_F(WindowPlacesTest, TheSizeIsRestoredWithThePlace) {
    window_->move(30, 40);
    settle();
    window_->resize(window_->minimumSizeHint() + QSize(90, 60));
    settle();
    const QSize size = window_->size();
    const QPoint place = corner();
    start_with_written_settings();
    EXPECT_EQ(window_->size(), size);
    EXPECT_EQ(corner(), place);
}

TEST_F(WindowPlacesTest, AModalWindowHasTheMainWindowAsItsCaller) {
    in_modal("frmTimeLagDist", [&](QWidget& window) {
        EXPECT_EQ(window.windowHandle()->transientParent(), window_->windowHandle());
    });
    find<QAction>("mnuTools")->setEnabled(true);
    choose("mnuToolsItm(4)");
    EXPECT_EQ(modal_windows_seen_, 1);
}

}  // namespace
}  // namespace nivora
