// The main window on a real display.

#include "tests/screen/screen_fixture.h"

#include <QLineEdit>

namespace nivora {
namespace {

TEST_F(MainWindowOnScreenTest, ShowsAFrameOfTheWindowManagerAroundItself) {
    EXPECT_GT(window_->frameGeometry().height(), window_->geometry().height());
}

TEST_F(MainWindowOnScreenTest, TakesKeysOfTheDisplayInTheNameBox) {
    auto* name = find<QLineEdit>("Text(0)");
    click(*name);
    press({"ctrl+a"});
    type("Alder");
    EXPECT_EQ(from_qt(name->text()), "Alder");
}

}  // namespace
}  // namespace nivora
