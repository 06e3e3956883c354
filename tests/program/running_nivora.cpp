#include "tests/program/running_nivora.h"

#include "base/durable_file.h"

#include <fstream>
#include <thread>

namespace nivora {

namespace fs = std::filesystem;

UserFolders::UserFolders(const std::string& name)
    : program_(folder_ / path_from_utf8(name)), documents_(folder_ / path_from_utf8("basins of " + name)) {
    const fs::path built{NIVORA_PROGRAM_FOLDER};
    for (const fs::path& folder : {program_, documents_, home()}) fs::create_directory(folder);
    for (const char* file : {"nivora", "null.mdb", "NIVORAHelp.txt", "quickhelp.txt"}) {
        fs::copy_file(built / file, program_ / file);
    }
}

fs::path UserFolders::settings_file() const {
    return home() / "settings" / "Ambrel-Hollin" / "Nivora" / "Version 1.0.ini";
}

std::string UserFolders::log_text() const { return fs::exists(log()) ? file_bytes(log()) : std::string{}; }

Environment UserFolders::environment() const {
    return {{"HOME", home().string()},
            {"XDG_CONFIG_HOME", (home() / "settings").string()},
            {"XDG_DATA_HOME", (home() / "data").string()},
            // The sanitizers' leak check would report what the platform's libraries keep until the end.
            {"ASAN_OPTIONS", "detect_leaks=0"},
            {"LC_ALL", "C.UTF-8"}};
}

void UserFolders::write_settings(const std::string& content) const {
    fs::create_directories(settings_file().parent_path());
    std::ofstream{settings_file(), std::ios::binary | std::ios::trunc} << content;
}

fs::path UserFolders::sample(const std::string& name) const {
    const fs::path file = documents_ / path_from_utf8(name);
    fs::copy_file(fs::path{NIVORA_PROGRAM_FOLDER} / "samples/ellervane.mdb", file);
    return file;
}

void ProgramTest::SetUp() {
    const auto missing = TestDisplay::missing_programs();
    if (!missing.empty())
        GTEST_SKIP() << "these tests need a display; not installed: " << testing::PrintToString(missing);
    display_ = make_display();
    reader_ = std::make_unique<ScreenReader>(display_->bus_address());
}

std::unique_ptr<StartedProgram> ProgramTest::start(const UserFolders& folders, const Environment& more) {
    Environment environment = display_->environment();
    for (const Environment& part : {folders.environment(), more}) {
        for (const auto& [name, value] : part) environment[name] = value;
    }
    return std::make_unique<StartedProgram>(std::vector<std::string>{(folders.program() / "nivora").string()},
                                            environment, folders.log());
}

std::string ProgramTest::all_windows(const StartedProgram& program) const {
    std::string words;
    for (const ScreenElement& window : reader_->windows(program.number())) {
        words += "window '" + window.name() + "'\n" + window.all_words();
    }
    const auto picture = fs::path{NIVORA_BINARY_DIR} / "failed_program_test.png";
    display_->keep_picture(picture);
    return words + "The program printed: " + program.printed() +
           "\nA picture of the display: " + picture.string();
}

std::optional<ScreenElement> ProgramTest::await_window(StartedProgram& program, const std::string& title) {
    std::optional<ScreenElement> window;
    wait_until([&] {
        window = reader_->window(program.number(), title);
        return window.has_value() || !program.runs();
    });
    EXPECT_TRUE(window) << "no window '" << title << "' but " << all_windows(program);
    return window;
}

bool ProgramTest::await_gone(StartedProgram& program, const std::string& title) {
    const bool gone = wait_until([&] { return !reader_->window(program.number(), title); });
    EXPECT_TRUE(gone) << "still there: " << title;
    return gone;
}

std::optional<ScreenElement> ProgramTest::await(StartedProgram& program, const std::string& window,
                                                const std::string& role, const std::string& name) {
    std::optional<ScreenElement> element;
    const bool found = wait_until([&] {
        const auto frame = reader_->window(program.number(), window);
        element = frame ? frame->find(role, name) : std::nullopt;
        return (element && element->is_enabled()) || !program.runs();
    });
    EXPECT_TRUE(found && element) << "no " << role << " '" << name << "' in " << all_windows(program);
    return element;
}

void ProgramTest::click(StartedProgram& program, const std::string& window, const std::string& role,
                        const std::string& name) {
    const auto element = await(program, window, role, name);
    if (!element) return;
    // A window that was just shown may still move to its place.
    ScreenElement::Point place = element->middle();
    wait_until([&] {
        const ScreenElement::Point before = place;
        std::this_thread::sleep_for(std::chrono::milliseconds{50});
        place = element->middle();
        return place.x == before.x && place.y == before.y;
    });
    click_at(place);
}

void ProgramTest::click_at(ScreenElement::Point place) const {
    display_->click(place.x * scale(), place.y * scale());
}

void ProgramTest::open_menu(StartedProgram& program, const std::string& key, const std::string& entry) {
    const bool open = wait_until([&] {
        // If the closing of another window left this one without the keyboard,
        // it is clicked, as a user would do.
        const auto frame = reader_->window(program.number(), k_main_title);
        if (frame && !frame->is_active()) {
            if (const auto bar = frame->find("status bar", "")) click_at(bar->middle());
        }
        display_->press({key});
        return wait_until(
            [&] {
                const auto window = reader_->window(program.number(), k_main_title);
                return window && window->find("menu item", entry);
            },
            Seconds{2.0});
    });
    EXPECT_TRUE(open) << "no menu entry '" << entry << "' in " << all_windows(program);
}

void ProgramTest::press(StartedProgram& program, const std::string& window,
                        const std::vector<std::string>& keys) {
    const bool active = wait_until([&] {
        const auto frame = reader_->window(program.number(), window);
        return frame && frame->is_active();
    });
    EXPECT_TRUE(active) << "the window '" << window << "' has not got the keyboard; " << all_windows(program);
    display_->press(keys);
}

std::string ProgramTest::message_text(StartedProgram& program, const std::string& title) {
    const auto box = await_window(program, title);
    return box ? box->all_words() : std::string{};
}

void ProgramTest::leave_message(StartedProgram& program, const std::string& title,
                                const std::string& button) {
    click(program, title, "push button", button);
    wait_until([&] { return !program.runs() || !reader_->window(program.number(), title); });
}

}  // namespace nivora
