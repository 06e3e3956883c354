#include "shell/window_keeper.h"

#include "tests/shell/main_window_fixture.h"

#include <algorithm>

namespace nivora {
namespace {

/// The windows of a separate keeper, beside those of the main window.
class WindowKeeperTest : public MainWindowTest {
protected:
    static std::ptrdiff_t open_windows(const char* name) {
        return std::ranges::count_if(QApplication::topLevelWidgets(), [name](const QWidget* top) {
            return top->isVisible() && top->objectName() == QString::fromUtf8(name);
        });
    }
    static QString title_of(const char* name) {
        for (const QWidget* top : QApplication::topLevelWidgets()) {
            if (top->isVisible() && top->objectName() == QString::fromUtf8(name)) return top->windowTitle();
        }
        return {};
    }

    WindowKeeper keeper_{WindowContext{session_, quick_help_, program_.path(), printing_}};
};

TEST_F(WindowKeeperTest, OpensNothingByItself) {
    keeper_.refresh();
    keeper_.close_results();
    keeper_.close_all();
    EXPECT_TRUE(keeper_.may_leave_climate_run());
    for (const char* name : {"Results", "frmCtrlClim", "frmNVRHelp"})
        EXPECT_EQ(open_windows(name), 0) << name;
}

TEST_F(WindowKeeperTest, TheHelpIsOneWindowWithTheTopicThatWasAskedForLast) {
    keeper_.show_help_topic(8);
    keeper_.show_help_topic(12);
    EXPECT_EQ(open_windows("frmNVRHelp"), 1);
    EXPECT_EQ(title_of("frmNVRHelp"), QStringLiteral("Help for Custom Time Lag Distribution"));
}

TEST_F(WindowKeeperTest, TheStatisticsReopenInTheirOneWindow) {
    keeper_.show_results();
    keeper_.close_results();
    EXPECT_EQ(open_windows("Results"), 0);
    keeper_.show_results();
    keeper_.show_results();
    EXPECT_EQ(open_windows("Results"), 1);
}

TEST_F(WindowKeeperTest, TheEndOfAnEvaluationClosesTheStatistics) {
    open_sample();
    keeper_.show_results();
    keeper_.show_climate_run();
    ASSERT_EQ(open_windows("frmCtrlClim"), 1);
    EXPECT_TRUE(keeper_.may_leave_climate_run()) << "no step has begun";
    keeper_.close_all();
    EXPECT_EQ(open_windows("frmCtrlClim"), 0);
    EXPECT_EQ(open_windows("Results"), 0);
}

TEST_F(WindowKeeperTest, CloseAllClosesWhatIsOpen) {
    keeper_.show_results();
    keeper_.show_help_topic(0);
    keeper_.close_all();
    EXPECT_EQ(open_windows("Results"), 0);
    EXPECT_EQ(open_windows("frmNVRHelp"), 0);
}

TEST_F(WindowKeeperTest, WindowsAreDestroyedWithTheirKeeper) {
    {
        WindowKeeper other{WindowContext{session_, quick_help_, program_.path(), printing_}};
        other.show_help_topic(0);
        EXPECT_EQ(open_windows("frmNVRHelp"), 1);
    }
    EXPECT_EQ(open_windows("frmNVRHelp"), 0);
}

}  // namespace
}  // namespace nivora
