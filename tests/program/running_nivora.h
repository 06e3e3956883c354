// The desktop program as a user has it: in a folder of its own, with settings of its own, on a display.
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
    /// @param name how the folders are called, with whatever letters a user may give them
    explicit UserFolders(const std::string& name = "program");

    [[nodiscard]] std::filesystem::path program() const { return program_; }
    [[nodiscard]] std::filesystem::path documents() const { return documents_; }
    [[nodiscard]] std::filesystem::path home() const { return folder_ / "home"; }
    [[nodiscard]] std::filesystem::path settings_file() const;
    [[nodiscard]] std::filesystem::path log() const { return folder_ / "nivora.log"; }
    [[nodiscard]] std::string log_text() const;
    [[nodiscard]] Environment environment() const;

    /// Writes the settings file as it stands when the program starts.
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

/// A test of the program on a display. It is skipped, and says so, where the machine has no display programs.
class ProgramTest : public testing::Test {
protected:
    void SetUp() override;
    /// The display of the test.
    virtual std::unique_ptr<TestDisplay> make_display() const { return std::make_unique<TestDisplay>(); }

    /// How many points of the display stand for one unit in which the program tells where its elements are.
    virtual int scale() const { return 1; }

    /// Starts the program of the folders.
    std::unique_ptr<StartedProgram> start(const UserFolders& folders, const Environment& more = {});

    /// Waits for a window. The test fails where it does not come; the program's other windows are told then.
    std::optional<ScreenElement> await_window(StartedProgram& program, const std::string& title);
    /// Waits until a window of this title is gone.
    bool await_gone(StartedProgram& program, const std::string& title);
    /// Waits for an element of a window and for it to be enabled.
    std::optional<ScreenElement> await(StartedProgram& program, const std::string& window,
                                       const std::string& role, const std::string& name);
    /// Clicks an element with the mouse, once it stands still.
    void click(StartedProgram& program, const std::string& window, const std::string& role,
               const std::string& name);
    /// Presses a key until a menu entry is seen, as a menu that opens while others close may miss one key.
    void open_menu(StartedProgram& program, const std::string& key, const std::string& entry);
    /// Waits until a window has the keyboard, and types.
    void press(StartedProgram& program, const std::string& window, const std::vector<std::string>& keys);
    /// The text of a message box, which is then left by its button.
    std::string message_text(StartedProgram& program, const std::string& title);
    void leave_message(StartedProgram& program, const std::string& title, const std::string& button);

    [[nodiscard]] const TestDisplay& display() const { return *display_; }
    [[nodiscard]] const ScreenReader& reader() const { return *reader_; }
    /// What the windows of a program show, for a failure.
    [[nodiscard]] std::string all_windows(const StartedProgram& program) const;

private:
    void click_at(ScreenElement::Point place) const;

    std::unique_ptr<TestDisplay> display_;
    std::unique_ptr<ScreenReader> reader_;
};

}  // namespace nivora
