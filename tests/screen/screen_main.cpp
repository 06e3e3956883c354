// The main function of these tests: it starts a display with a window manager, then the application on it.

#include "tests/screen/screen_fixture.h"

#include <QApplication>
#include <cstdlib>
#include <memory>

namespace {

const nivora::TestDisplay* the_display = nullptr;

}  // namespace

namespace nivora {

const TestDisplay* screen_display() { return the_display; }

}  // namespace nivora

int main(int argc, char** argv) {
    using namespace nivora;
    testing::InitGoogleMock(&argc, argv);
    std::unique_ptr<TestDisplay> display;
    if (testing::GTEST_FLAG(list_tests) || !TestDisplay::missing_programs().empty()) {
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
    } else {
        display = std::make_unique<TestDisplay>();
        for (const auto& [name, value] : display->environment()) {
            // No screen reader listens here, and reporting everything to one costs time.
            if (name == "QT_LINUX_ACCESSIBILITY_ALWAYS_ON" || value.empty()) {
                unsetenv(name.c_str());
            } else {
                setenv(name.c_str(), value.c_str(), 1);
            }
        }
        the_display = display.get();
    }
    const QApplication application(argc, argv);
    return RUN_ALL_TESTS();
}
