// Windows at twice the size on a screen of 1600 x 1000 points.

#include "tests/program/running_nivora.h"
#include "tests/support/warmer_scenario.h"

#include <gmock/gmock.h>

#include <cstdlib>
#include <map>
#include <sstream>

namespace nivora {
namespace {

const Environment k_twice{{"QT_SCALE_FACTOR", "2"}};

class SmallScreenTest : public ProgramTest {
protected:
    std::unique_ptr<TestDisplay> make_display() const override {
        return std::make_unique<TestDisplay>("1600x1000x24");
    }
    int scale() const override { return 2; }

    using Values = std::map<std::string, int>;

    /// What the display tells of windows and of the mouse, by its names for it.
    Values told(std::vector<std::string> command) {
        command.insert(command.begin(), "xdotool");
        command.emplace_back("--shell");
        const Finished asked = run_program(command, display().environment());
        Values values;
        std::istringstream lines{asked.printed};
        for (std::string line; std::getline(lines, line);) {
            const auto sign = line.find('=');
            if (sign != std::string::npos) values[line.substr(0, sign)] = std::atoi(line.c_str() + sign + 1);
        }
        return values;
    }

    /// Whether the mouse reaches the first and the last point of a window, without its frame, and the title
    /// bar is above them. The mouse stops where the screen ends. Where a window stands is not asked for
    /// itself: the answer counts the frame twice.
    bool is_on_screen(const std::string& title, std::string& seen) {
        Values window = told({"search", "--onlyvisible", "--name", "^" + title, "getwindowgeometry"});
        if (window["WIDTH"] <= 0) return false;
        const auto mouse_at = [&](int x, int y) {
            return told({"mousemove", "--window", std::to_string(window["WINDOW"]), std::to_string(x),
                         std::to_string(y), "getmouselocation"});
        };
        Values first = mouse_at(0, 0);
        Values last = mouse_at(window["WIDTH"] - 1, window["HEIGHT"] - 1);
        std::ostringstream words;
        words << window["WIDTH"] << " x " << window["HEIGHT"] << ", in reach from " << first["X"] << ", "
              << first["Y"] << " to " << last["X"] << ", " << last["Y"];
        seen = words.str();
        return first["Y"] > 0 && last["X"] - first["X"] == window["WIDTH"] - 1 &&
               last["Y"] - first["Y"] == window["HEIGHT"] - 1;
    }

    void expect_on_screen(StartedProgram& program, const std::string& title) {
        ASSERT_TRUE(await_window(program, title));
        std::string seen;
        EXPECT_TRUE(wait_until([&] { return is_on_screen(title, seen); })) << title << ": " << seen;
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
    // The buttons are in sight though the boxes scroll.
    click(*program, definition, "push button", "Cancel ");
    EXPECT_TRUE(await_gone(*program, definition));
}

TEST_F(SmallScreenTest, TheEvaluationFitsAndItsButtonsAreInReach) {
    const UserFolders folders;
    const auto file = folders.sample();
    // The simulation of the first row, which is the current one after Open.
    add_warmer_scenario(file, "ellervane-1996", *day_count({1996, 1, 1}), *day_count({1996, 12, 31}));
    const std::string basin = file.string();
    folders.write_settings("[Startup]\nSplashScreen%3A=0\n[Recent%20Files]\n1=" + basin + "\n");
    const auto program = start(folders, k_twice);
    ASSERT_TRUE(await_window(*program, k_main_title));
    open_menu(*program, "alt+f", basin);
    click(*program, k_main_title, "menu item", basin);
    ASSERT_TRUE(await(*program, k_main_title, "label", basin));
    open_menu(*program, "alt+r", "Climate Change");
    click(*program, k_main_title, "menu item", "Climate Change");
    const std::string evaluation = "Run a Climate Change ";
    expect_on_screen(*program, evaluation);
    // The statistics that a step shows take their room from what scrolls, not from the buttons.
    click(*program, evaluation, "check box", "Step1:   Winter, Present Climate");
    ASSERT_TRUE(await(*program, evaluation, "check box", "Step 2:  Winter, Changed Climate"));
    expect_on_screen(*program, evaluation);
    click(*program, evaluation, "push button", "Abort");
    EXPECT_TRUE(await_gone(*program, evaluation));
}

}  // namespace
}  // namespace nivora
