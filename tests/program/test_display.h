// A separate display for one test, with a window manager and the bus
// on which programs describe their windows.
#pragma once

#include "tests/program/started_program.h"
#include "tests/support/temporary_folder.h"

#include <memory>
#include <string>
#include <vector>

namespace nivora {

class TestDisplay {
public:
    /// The programs that a display needs and this machine lacks.
    [[nodiscard]] static std::vector<std::string> missing_programs();

    /// @param screen width, height and depth of its screen
    explicit TestDisplay(const std::string& screen = "1280x1024x24");

    /// What a program needs to find the display and the bus.
    [[nodiscard]] Environment environment() const;
    [[nodiscard]] const std::string& bus_address() const { return bus_address_; }

    /// Presses keys by their X names: "alt+f", "Return", "ctrl+Home".
    void press(const std::vector<std::string>& keys) const;
    /// Types a text, letter by letter.
    void type(const std::string& text) const;
    /// Moves the mouse.
    void point_at(int x, int y) const;
    /// Clicks with the left button.
    void click(int x, int y) const;
    void right_click(int x, int y) const;
    /// Presses or releases a button where the mouse is: 1 is the left one, 3 the right one.
    void button_down(int button) const;
    void button_up(int button) const;
    /// Turns the wheel by a notch where the mouse is, while keys are held: "shift".
    void turn_wheel(bool away, const std::vector<std::string>& held = {}) const;
    /// Writes a picture of the whole display, to look at after a failure.
    void keep_picture(const std::filesystem::path& file) const;

private:
    void start_display(const std::string& screen);
    void start_bus();
    void start_window_manager();
    void send(std::vector<std::string> command) const;

    TemporaryFolder folder_;
    std::string name_;
    std::string bus_address_;
    std::unique_ptr<StartedProgram> display_;
    std::unique_ptr<StartedProgram> bus_;
    std::unique_ptr<StartedProgram> window_manager_;
};

}  // namespace nivora
