#include "session/desktop.h"

#include "session/basin_rows.h"

#include <gtest/gtest.h>

namespace nivora {
namespace {

TEST(Desktop, CallsThatNobodySetDoNothing) {
    const Desktop desktop{};
    desktop.commit_edits();
    desktop.go_to_field(UnstorableField{});
    desktop.refresh_main_window();
    desktop.show_help_topic(3);
    desktop.open_daily_editor();
    desktop.leave_basin();
    EXPECT_FALSE(desktop.refuses_typed_box());
}

TEST(Desktop, ACallReachesTheFunctionThatWasSet) {
    Desktop desktop;
    int topic = 0;
    desktop.show_help_topic = [&topic](int asked) { topic = asked; };
    desktop.refuses_typed_box = [] { return true; };
    desktop.show_help_topic(12);
    EXPECT_EQ(topic, 12);
    EXPECT_TRUE(desktop.refuses_typed_box());
}

TEST(Desktop, AFunctionThatWasRemovedIsNotCalled) {
    Desktop desktop;
    int refreshes = 0;
    desktop.refresh_main_window = [&refreshes] { ++refreshes; };
    desktop.refresh_main_window();
    desktop = Desktop{};
    desktop.refresh_main_window();
    EXPECT_EQ(refreshes, 1);
}

}  // namespace
}  // namespace nivora
