#include "session/help_texts.h"

#include "tests/support/temporary_folder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

TEST(HelpText, IsTheTextBetweenTheTagsOfTheTopic) {
    const TemporaryFolder folder;
    folder.write("NIVORAHelp.txt", "[STRING1]one[/STRING1]\n[STRING17]\nThe plots.\n[/STRING17]");
    EXPECT_EQ(Help_Text(folder.path(), 1), "one");
    EXPECT_EQ(Help_Text(folder.path(), 17), "\nThe plots.\n");
}

TEST(HelpText, OfAMissingTopicNamesTheFile) {
    const TemporaryFolder folder;
    folder.write("NIVORAHelp.txt", "[STRING1]one[/STRING1]");
    EXPECT_EQ(Help_Text(folder.path(), 2),
              (folder / "NIVORAHelp.txt").string() + "\n\nThe requested text was not found in   ");
}

TEST(HelpText, OfATopicThatIsNotClosedIsTheDefault) {
    const TemporaryFolder folder;
    folder.write("NIVORAHelp.txt", "[STRING2]two, and no end");
    EXPECT_THAT(Help_Text(folder.path(), 2), HasSubstr("was not found"));
}

TEST(HelpText, OfAMissingFileIsTheDefault) {
    const TemporaryFolder folder;
    EXPECT_THAT(Help_Text(folder.path(), 0), HasSubstr("was not found"));
}

TEST(QuickHelp, LinesOfAWindowEndAtItsSecondTag) {
    const TemporaryFolder folder;
    folder.write("quickhelp.txt", "<frmA>\nx\n<frmA>\n<frmB>\r\nzero\r\none\r\n<frmB>\r\nrest\r\n");
    EXPECT_THAT(Load_QuickHelp(folder.path(), "frmB").lines, ElementsAre("zero", "one"));
}

TEST(QuickHelp, TheMainWindowsLinesAbove48AreItsMenus) {
    const TemporaryFolder folder;
    std::string content = "<frmNVR>\n";
    for (int line = 0; line <= 50; ++line) content += "line " + std::to_string(line) + "\n";
    folder.write("quickhelp.txt", content + "<frmNVR>\n");
    const QuickHelpTexts texts = Load_QuickHelp(folder.path(), "frmNVR");
    EXPECT_EQ(texts.lines.size(), 49U);
    EXPECT_EQ(texts.line(48), "line 48");
    EXPECT_THAT(texts.menu, ElementsAre("line 49", "line 50"));
    EXPECT_EQ(texts.menu_text(1), "line 50");
}

TEST(QuickHelp, OtherWindowsKeepLinesAbove48) {
    const TemporaryFolder folder;
    std::string content = "<frmX>\n";
    for (int line = 0; line <= 50; ++line) content += std::to_string(line) + "\n";
    folder.write("quickhelp.txt", content + "<frmX>\n");
    EXPECT_EQ(Load_QuickHelp(folder.path(), "frmX").line(50), "50");
}

TEST(QuickHelp, AFileWithoutTheWindowLeavesTheDefaultText) {
    const TemporaryFolder folder;
    folder.write("quickhelp.txt", "<frmA>\nx\n<frmA>\n");
    const QuickHelpTexts texts = Load_QuickHelp(folder.path(), "frmB");
    EXPECT_THAT(texts.lines, ElementsAre(HasSubstr("quickhelp.txt")));
    EXPECT_THAT(texts.line(7), HasSubstr("was not found"));
}

TEST(QuickHelp, AMissingFileLeavesTheDefaultText) {
    const TemporaryFolder folder;
    EXPECT_THAT(Load_QuickHelp(folder.path(), "frmNVR").line(0), HasSubstr("was not found"));
}

}  // namespace
}  // namespace nivora
