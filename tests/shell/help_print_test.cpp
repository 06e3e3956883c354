// Printing a topic of the help.

#include "shell/frmNVRHelp.h"
#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

#include <QTextBrowser>
#include <fstream>
#include <sstream>

namespace nivora {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

class HelpPrintTest : public MainWindowTest {
protected:
    void print() { help_.findChild<QAction*>(QStringLiteral("mnuPrint"))->trigger(); }
    [[nodiscard]] std::string shown() const {
        return help_.findChild<QTextBrowser*>(QStringLiteral("txtHelp"))->toPlainText().toStdString();
    }

    frmNVRHelp help_{WindowContext{session_, quick_help_, program_.path(), printing_}};
};

TEST_F(HelpPrintTest, PrintsTheTopicUnderItsName) {
    help_.show_topic(8);
    print();
    ASSERT_EQ(printers_.jobs().size(), 1U);
    const RecordedJob& job = printers_.jobs()[0];
    EXPECT_THAT(job.page(0), StartsWith("Help for Simulation Statistics\n"));
    EXPECT_THAT(job.page(0), HasSubstr("Page 1 of " + std::to_string(job.pages.size())));
    for (const auto& page : job.pages) {
        for (const RecordedText& text : page) {
            EXPECT_GE(text.x, 72.0 - 0.1) << text.text;
            EXPECT_LE(text.x + text.width, job.paper_width - 72.0 + 0.1) << text.text;
        }
    }
    EXPECT_EQ(printers_.window(), &help_);
}

TEST_F(HelpPrintTest, ALongTopicHasAllItsWordsOnItsPages) {
    help_.show_topic(0);
    print();
    const RecordedJob& job = printers_.jobs()[0];
    std::string printed;
    for (std::size_t page = 0; page < job.pages.size(); ++page) printed += job.page(page);
    const auto words = [](const std::string& text) {
        std::istringstream reader(text);
        int count = 0;
        for (std::string word; reader >> word;) ++count;
        return count;
    };
    // Each page adds nine words: "Help for Nivora Main Window" and "Page 1 of 3".
    EXPECT_EQ(words(printed), words(shown()) + 9 * static_cast<int>(job.pages.size()));
}

TEST_F(HelpPrintTest, ATextFileHoldsTheTopic) {
    help_.show_topic(12);
    printers_.then(PrintTarget::Text);
    dialogs_.then_file(user_ / "help.txt");
    print();
    std::ifstream file{user_ / "help.txt", std::ios::binary};
    std::ostringstream text;
    text << file.rdbuf();
    std::string plain;
    for (const char character : text.str()) {
        if (character != '\r') plain += character;
    }
    std::string topic = shown();
    if (!topic.ends_with('\n')) topic += '\n';
    EXPECT_EQ(plain, topic);
    EXPECT_THAT(text.str(), EndsWith("\r\n"));
    EXPECT_GT(text.str().size(), plain.size()) << "lines end with CR LF";
}

}  // namespace
}  // namespace nivora
