// Windows at twice the size on a screen of 1600 x 1000 points.

#include "tests/program/running_nivora.h"

#include <gmock/gmock.h>

#include <sstream>

namespace nivora {
namespace {

constexpr int k_width = 1600;
constexpr int k_height = 1000;
const Environment k_twice{{"QT_SCALE_FACTOR", "2"}};

struct Rectangle {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;
};

class SmallScreenTest : public ProgramTest {
protected:
    std::unique_ptr<TestDisplay> make_display() const override {
        return std::make_unique<TestDisplay>("1600x1000x24");
    }

    /// What a window covers on the screen, without its frame.
    Rectangle area_of(const std::string& title) {
        const Finished asked = run_program(
            {"xdotool", "search", "--onlyvisible", "--name", "^" + title, "getwindowgeometry", "--shell"},
            display().environment());
        std::map<std::string, int> values;
        std::istringstream lines{asked.printed};
        for (std::string line; std::getline(lines, line);) {
            const auto sign = line.find('=');
            if (sign != std::string::npos) values[line.substr(0, sign)] = std::atoi(line.c_str() + sign + 1);
        }
        EXPECT_GT(values["WIDTH"], 0) << title << ": " << asked.printed;
        return {values["X"], values["Y"], values["X"] + values["WIDTH"], values["Y"] + values["HEIGHT"]};
    }

    void expect_on_screen(StartedProgram& program, const std::string& title) {
        ASSERT_TRUE(await_window(program, title));
        Rectangle area;
        const bool inside = wait_until(
            [&] {
                area = area_of(title);
                return area.left >= 0 && area.top > 0 && area.right <= k_width && area.bottom <= k_height;
            },
            Seconds{5.0});
        EXPECT_TRUE(inside) << title << ": " << area.left << ", " << area.top << " to " << area.right << ", "
                            << area.bottom;
    }
};

TEST_F(SmallScreenTest, AllOfTheWelcomeIsInReach) {
    const UserFolders folders;
    const auto program = start(folders, k_twice);
    expect_on_screen(*program, k_welcome_title);
    click(*program, k_welcome_title, "check box", "Check here to skip this introduction in the future");
    click(*program, k_welcome_title, "push button", "Exit program");
    EXPECT_EQ(program->status(), 0);
}

TEST_F(SmallScreenTest, TheMainWindowAndTheDefinitionFitAndTheirButtonsAreInReach) {
    const UserFolders folders;
    const std::string basin = folders.sample().string();
    folders.write_settings("[Startup]\nSplashScreen%3A=0\n[Recent%20Files]\n1=" + basin + "\n");
    const auto program = start(folders, k_twice);
    expect_on_screen(*program, k_main_title);
    open_menu(*program, "alt+f", basin);
    click(*program, k_main_title, "menu item", basin);
    ASSERT_TRUE(await(*program, k_main_title, "label", basin));
    expect_on_screen(*program, k_main_title);

    press(*program, k_main_title, {"alt+e"});
    const std::string definition = "Edit Simulation Control Information";
    expect_on_screen(*program, definition);
    // The focus scrolls to the button, which can be hit then.
    press(*program, definition, {"shift+Tab", "shift+Tab", "shift+Tab"});
    click(*program, definition, "push button", "Cancel ");
    EXPECT_TRUE(await_gone(*program, definition));
}

}  // namespace
}  // namespace nivora
