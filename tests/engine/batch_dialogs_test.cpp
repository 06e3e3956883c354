// The dialogs of the batch program: which answers they give and what they print.
#include "engine/batch_dialogs.h"

#include <gmock/gmock.h>

#include <sstream>

namespace nivora {
namespace {

TEST(BatchDialogs, QuestionsAreAnsweredSoThatTheWorkContinues) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    EXPECT_EQ(dialogs.message({.text = "Continue?", .title = "A", .buttons = Buttons::OkCancel}), Answer::Ok);
    EXPECT_EQ(dialogs.message({.text = "Overwrite?", .title = "B", .buttons = Buttons::YesNo}), Answer::Yes);
    EXPECT_EQ(dialogs.message({.text = "Replace?", .title = "C", .buttons = Buttons::YesNoCancel}),
              Answer::Yes);
    EXPECT_EQ(report.str(), "A: Continue? [OK]\nB: Overwrite? [Yes]\nC: Replace? [Yes]\n");
    EXPECT_FALSE(dialogs.was_refused());
}

TEST(BatchDialogs, WithRefuseQuestionsAreAnsweredWithCancelOrNo) {
    std::ostringstream report;
    BatchDialogs dialogs{report, true};
    EXPECT_EQ(dialogs.message({.text = "Continue?", .title = "A", .buttons = Buttons::OkCancel}),
              Answer::Cancel);
    EXPECT_EQ(dialogs.message({.text = "Overwrite?", .title = "B", .buttons = Buttons::YesNo}), Answer::No);
    EXPECT_EQ(dialogs.message({.text = "Replace?", .title = "C", .buttons = Buttons::YesNoCancel}),
              Answer::Cancel);
    EXPECT_EQ(report.str(), "A: Continue? [Cancel]\nB: Overwrite? [No]\nC: Replace? [Cancel]\n");
}

TEST(BatchDialogs, ANoteIsOneLineAndNotARefusal) {
    std::ostringstream report;
    BatchDialogs dialogs{report, true};
    dialogs.report_note("A value is missing.\r\nIt is that of Tmax.");
    EXPECT_EQ(report.str(), "Note: A value is missing.  It is that of Tmax.\n");
    EXPECT_FALSE(dialogs.was_refused());
    EXPECT_TRUE(dialogs.messages().empty());
}

TEST(BatchDialogs, AMessageThatAsksNothingSaysNo) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    EXPECT_EQ(dialogs.message({.text = "Impossible"}), Answer::Ok);
    EXPECT_TRUE(dialogs.was_refused());
    EXPECT_EQ(report.str(), "Nivora: Impossible [OK]\n");
}

TEST(BatchDialogs, AMessageIsOneLineWhateverItsText) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    dialogs.message({.text = "one\ntwo\r\nthree", .title = "T"});
    EXPECT_EQ(report.str(), "T: one two  three [OK]\n");
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].text, "one\ntwo\r\nthree");
}

TEST(BatchDialogs, AnInputBoxGetsThePreparedText) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    dialogs.prepare_input("mine");
    EXPECT_EQ(dialogs.input({.prompt = "Name?", .title = "T", .proposed = "offered"}), "mine");
    EXPECT_EQ(report.str(), "");
}

TEST(BatchDialogs, AnInputBoxGetsWhatItProposesIfNothingIsPrepared) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    EXPECT_EQ(dialogs.input({.prompt = "Name?", .title = "T", .proposed = "offered"}), "offered");
}

TEST(BatchDialogs, AnInputBoxThatAsksAgainIsCancelledAndReported) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    dialogs.prepare_input("a.b");
    EXPECT_EQ(dialogs.input({.prompt = "Name?", .title = "T", .proposed = {}}), "a.b");
    EXPECT_EQ(dialogs.input({.prompt = "Invalid", .title = "T", .proposed = {}}), std::nullopt);
    EXPECT_EQ(report.str(), "T: Invalid [OK]\n");
    EXPECT_TRUE(dialogs.was_refused());
}

TEST(BatchDialogs, AFileQuestionGetsNoFile) {
    std::ostringstream report;
    BatchDialogs dialogs{report, false};
    EXPECT_EQ(dialogs.file({}), std::nullopt);
}

}  // namespace
}  // namespace nivora
