// The desktop program as a user runs it: in its own folder, with its own settings, on a display.
#pragma once

#include "tests/program/screen_reader.h"
#include "tests/program/test_display.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

namespace nivora {

inline constexpr const char* k_main_title = "NIVORA - Hollin Flow Model for Windows";
inline constexpr const char* k_welcome_title = "Welcome to NVR for Windows";

/// The folders of one user: a copy of the program folder, settings, and a place for basins.
class UserFolders {
public:
    /// @param name the name of the program folder, with any characters that a user may choose
    explicit UserFolders(const std::string& name = "program");

    [[nodiscard]] std::filesystem::path program() const { return program_; }
    [[nodiscard]] std::filesystem::path documents() const { return documents_; }
    [[nodiscard]] std::filesystem::path home() const { return folder_ / "home"; }
    [[nodiscard]] std::filesystem::path settings_file() const;
    [[nodiscard]] std::filesystem::path log() const { return folder_ / "nivora.log"; }
    [[nodiscard]] std::string log_text() const;
    [[nodiscard]] Environment environment() const;

    /// Writes the settings file that the program finds when it starts.
    void write_settings(const std::string& content) const;
    /// Settings with the welcome window off.
    void without_welcome() const { write_settings("[Startup]\nSplashScreen%3A=0\n"); }
    /// The sample basin in the documents folder.
    std::filesystem::path sample(const std::string& name = "ellervane.mdb") const;

private:
    TemporaryFolder folder_;
    std::filesystem::path program_;
    std::filesystem::path documents_;
};

/// A test of the program on a display. It is skipped with a message if the machine has no display programs.
class ProgramTest : public testing::Test {
protected:
    void SetUp() override;
    /// The display of the test.
    virtual std::unique_ptr<TestDisplay> make_display() const { return std::make_unique<TestDisplay>(); }

    /// How many pixels of the display make one unit of the coordinates that
    /// the program reports for its elements.
    virtual int scale() const { return 1; }

    /// Starts the program in these folders.
    std::unique_ptr<StartedProgram> start(const UserFolders& folders, const Environment& more = {});

    /// Waits for a window. If it does not open, the test fails and lists the program's other windows.
    std::optional<ScreenElement> await_window(StartedProgram& program, const std::string& title);
    /// Waits until a window of this title is gone.
    bool await_gone(StartedProgram& program, const std::string& title);
    /// Waits for an element of a window and for it to be enabled.
    std::optional<ScreenElement> await(StartedProgram& program, const std::string& window,
                                       const std::string& role, const std::string& name);
    /// Clicks an element with the mouse, once it has stopped moving.
    void click(StartedProgram& program, const std::string& window, const std::string& role,
               const std::string& name);
    /// Presses a key until a menu entry is visible: a menu that opens while others close may miss one key.
    void open_menu(StartedProgram& program, const std::string& key, const std::string& entry);
    /// Waits until a window has the keyboard, and types.
    void press(StartedProgram& program, const std::string& window, const std::vector<std::string>& keys);
    /// The text of a message box, which leave_message then closes by a button.
    std::string message_text(StartedProgram& program, const std::string& title);
    void leave_message(StartedProgram& program, const std::string& title, const std::string& button);

    [[nodiscard]] const TestDisplay& display() const { return *display_; }
    [[nodiscard]] const ScreenReader& reader() const { return *reader_; }
    /// What the windows of a program show, for a failure message.
    [[nodiscard]] std::string all_windows(const StartedProgram& program) const;

private:
    void click_at(ScreenElement::Point place) const;

    std::unique_ptr<TestDisplay> display_;
    std::unique_ptr<ScreenReader> reader_;
};

}  // namespace nivora
