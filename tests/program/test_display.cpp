#include "tests/program/test_display.h"

#include <unistd.h>

#include <array>
#include <stdexcept>

namespace nivora {

std::vector<std::string> TestDisplay::missing_programs() {
    std::vector<std::string> missing;
    for (const char* program : {"Xvfb", "openbox", "xdotool", "dbus-daemon"}) {
        if (!is_installed(program)) missing.emplace_back(program);
    }
    return missing;
}

TestDisplay::TestDisplay(const std::string& screen) {
    std::filesystem::create_directory(folder_ / "cache");
    std::filesystem::create_directory(folder_ / "runtime");
    std::filesystem::permissions(folder_ / "runtime", std::filesystem::perms::owner_all);
    start_display(screen);
    start_bus();
    start_window_manager();
}

void TestDisplay::start_display(const std::string& screen) {
    std::array<int, 2> pipe_ends{};
    if (pipe(pipe_ends.data()) != 0) throw std::runtime_error("there is no pipe");
    // The server finds a free number itself and reports it.
    display_ = std::make_unique<StartedProgram>(
        std::vector<std::string>{"Xvfb", "-displayfd", std::to_string(pipe_ends[1]), "-screen", "0", screen,
                                 "-nolisten", "tcp", "-noreset"},
        Environment{}, folder_ / "display.log", pipe_ends[1]);
    close(pipe_ends[1]);
    std::string number;
    char letter = 0;
    while (read(pipe_ends[0], &letter, 1) == 1 && letter != '\n') number += letter;
    close(pipe_ends[0]);
    if (number.empty()) throw std::runtime_error("the display did not start: " + display_->printed());
    name_ = ":" + number;
}

void TestDisplay::start_bus() {
    bus_ = std::make_unique<StartedProgram>(
        std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--print-address",
                                 "--address=unix:dir=" + folder_.path().string()},
        environment(), folder_ / "bus.log");
    const bool told = wait_until([this] { return bus_->printed().find('\n') != std::string::npos; });
    if (!told) throw std::runtime_error("the bus did not start: " + bus_->printed());
    bus_address_ = bus_->printed().substr(0, bus_->printed().find('\n'));
}

void TestDisplay::start_window_manager() {
    window_manager_ = std::make_unique<StartedProgram>(std::vector<std::string>{"openbox"}, environment(),
                                                       folder_ / "window_manager.log");
    const bool there = wait_until([this] {
        const Finished asked = run_program({"xdotool", "get_num_desktops"}, environment());
        return asked.status == 0 && asked.printed.find_first_of("123456789") != std::string::npos;
    });
    if (!there) throw std::runtime_error("the window manager did not start: " + window_manager_->printed());
}

Environment TestDisplay::environment() const {
    return {{"DISPLAY", name_},
            {"WAYLAND_DISPLAY", ""},
            {"XAUTHORITY", ""},
            {"SESSION_MANAGER", ""},
            {"XDG_RUNTIME_DIR", (folder_ / "runtime").string()},
            {"XDG_CACHE_HOME", (folder_ / "cache").string()},
            {"QT_QPA_PLATFORM", "xcb"},
            {"DBUS_SESSION_BUS_ADDRESS", bus_address_},
            {"QT_LINUX_ACCESSIBILITY_ALWAYS_ON", "1"}};
}

void TestDisplay::send(std::vector<std::string> command) const {
    const Finished sent = run_program(command, environment());
    if (sent.status != 0) throw std::runtime_error("xdotool: " + sent.printed);
}

void TestDisplay::press(const std::vector<std::string>& keys) const {
    std::vector<std::string> command{"xdotool", "key", "--delay", "15"};
    command.insert(command.end(), keys.begin(), keys.end());
    send(command);
}

void TestDisplay::type(const std::string& text) const {
    send({"xdotool", "type", "--delay", "8", "--", text});
}

// Without --sync, which waits 15 seconds where the mouse is already in place. The display takes what one
// command sends in its order, so a click comes after the move.
void TestDisplay::point_at(int x, int y) const {
    send({"xdotool", "mousemove", std::to_string(x), std::to_string(y)});
}

void TestDisplay::click(int x, int y) const {
    send({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "1"});
}

void TestDisplay::right_click(int x, int y) const {
    send({"xdotool", "mousemove", std::to_string(x), std::to_string(y), "click", "3"});
}

void TestDisplay::button_down(int button) const { send({"xdotool", "mousedown", std::to_string(button)}); }

void TestDisplay::button_up(int button) const { send({"xdotool", "mouseup", std::to_string(button)}); }

// The display counts the wheel among the buttons: 4 is a notch away from the user, 5 one back.
void TestDisplay::turn_wheel(bool away, const std::vector<std::string>& held) const {
    std::vector<std::string> command{"xdotool"};
    for (const std::string& key : held) command.insert(command.end(), {"keydown", key});
    command.insert(command.end(), {"click", away ? "4" : "5"});
    for (const std::string& key : held) command.insert(command.end(), {"keyup", key});
    send(command);
}

void TestDisplay::keep_picture(const std::filesystem::path& file) const {
    if (is_installed("import")) run_program({"import", "-window", "root", file.string()}, environment());
}

}  // namespace nivora
