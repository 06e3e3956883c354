// The windows as a screen reader reads them to a user who does not see them, element by element.

#include "tests/program/running_nivora.h"

#include <gmock/gmock.h>

#include <algorithm>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsSupersetOf;

class ReadingOrderTest : public ProgramTest {
protected:
    /// What is heard of an element: role and name, and the text where there is one that is not its name.
    static std::string heard(const ScreenElement& element) {
        const std::string name = element.name();
        const std::string text = element.text();
        return element.role() + ' ' + name + (text.empty() || text == name ? "" : " = " + text);
    }

    /// Everything with words below an element, in reading order; of a table its name alone.
    static void read(const ScreenElement& from, std::vector<std::string>& words) {
        for (const ScreenElement& child : from.children()) {
            if (!child.is_showing()) continue;
            const std::string role = child.role();
            if (!child.name().empty()) words.push_back(heard(child));
            if (role != "table" && role != "combo box") read(child, words);
        }
    }
    static std::vector<std::string> words_of(const ScreenElement& window) {
        std::vector<std::string> words;
        read(window, words);
        return words;
    }
    /// The words from one on, so many of them.
    static std::vector<std::string> part(const std::vector<std::string>& words, const std::string& first,
                                         std::size_t count) {
        const auto from = std::find(words.begin(), words.end(), first);
        const auto rest = static_cast<std::size_t>(words.end() - from);
        return {from, from + static_cast<std::ptrdiff_t>(std::min(rest, count))};
    }
};

TEST_F(ReadingOrderTest, AFreshMainWindowIsReadFromItsMenusToItsStatusBar) {
    const UserFolders folders;
    folders.without_welcome();
    const auto program = start(folders);
    const auto window = await_window(*program, k_main_title);
    ASSERT_TRUE(window);
    const auto words = words_of(*window);
    EXPECT_THAT(part(words, "menu item File", 4),
                ElementsAre("menu item File", "menu item Edit", "menu item Options", "menu item Data"));
    const std::string all = testing::PrintToString(words);
    EXPECT_THAT(part(words, "label Name:", 4),
                ElementsAre("label Name:", HasSubstr("text Name:"),
                            "label Units of Measurement:", HasSubstr("combo box Units of Measurement:")))
        << all;
    EXPECT_THAT(part(words, "label Latitude (dec):", 6),
                ElementsAre("label Latitude (dec):", "text Latitude (dec):", "label Longitude (dec):",
                            "text Longitude (dec):", "label Description:", "text Description:"))
        << all;
    EXPECT_THAT(words, IsSupersetOf({"table Elevation zones", "table Simulations"})) << all;
    EXPECT_THAT(words.back(), HasSubstr("label ")) << all;
}

TEST_F(ReadingOrderTest, TheWelcomeWindowIsReadBeforeItsButtons) {
    const UserFolders folders;
    const auto program = start(folders);
    const auto window = await_window(*program, k_welcome_title);
    ASSERT_TRUE(window);
    const auto words = words_of(*window);
    ASSERT_GE(words.size(), 5U);
    EXPECT_THAT(words.front(), HasSubstr("label Hollin Flow Model for Windows"));
    EXPECT_THAT(part(words, "check box Check here to skip this introduction in the future", 4),
                ElementsAre("check box Check here to skip this introduction in the future",
                            "push button Start", "push button New User?", "push button Exit program"))
        << testing::PrintToString(words);
}

TEST_F(ReadingOrderTest, F10OpensTheFirstMenuAndEscapeLeavesIt) {
    const UserFolders folders;
    folders.without_welcome();
    const auto program = start(folders);
    ASSERT_TRUE(await_window(*program, k_main_title));
    open_menu(*program, "F10", "Exit");
    display().press({"Escape"});
    display().press({"Escape"});
    const auto name = await(*program, k_main_title, "text", "Name:");
    ASSERT_TRUE(name);
    EXPECT_TRUE(wait_until([&] { return name->is_focused(); }, Seconds{5.0}));
}

}  // namespace
}  // namespace nivora
