#include "base/dialogs.h"

#include "base/scripted_dialogs.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

TEST(Answers, HaveTheNamesOfTheirButtons) {
    EXPECT_STREQ(answer_name(Answer::Ok), "OK");
    EXPECT_STREQ(answer_name(Answer::Cancel), "Cancel");
    EXPECT_STREQ(answer_name(Answer::Yes), "Yes");
    EXPECT_STREQ(answer_name(Answer::No), "No");
}

std::vector<Answer> answers_of(Buttons buttons) {
    std::vector<Answer> answers;
    for (const Answer answer : {Answer::Ok, Answer::Cancel, Answer::Yes, Answer::No}) {
        if (offers(buttons, answer)) answers.push_back(answer);
    }
    return answers;
}

TEST(Buttons, OfferTheirOwnAnswersAndNoOther) {
    EXPECT_THAT(answers_of(Buttons::Ok), ElementsAre(Answer::Ok));
    EXPECT_THAT(answers_of(Buttons::OkCancel), ElementsAre(Answer::Ok, Answer::Cancel));
    EXPECT_THAT(answers_of(Buttons::YesNo), ElementsAre(Answer::Yes, Answer::No));
    EXPECT_THAT(answers_of(Buttons::YesNoCancel), ElementsAre(Answer::Cancel, Answer::Yes, Answer::No));
}

TEST(GoOnAnswer, IsOkOrYes) {
    EXPECT_EQ(go_on_answer(Buttons::Ok), Answer::Ok);
    EXPECT_EQ(go_on_answer(Buttons::OkCancel), Answer::Ok);
    EXPECT_EQ(go_on_answer(Buttons::YesNo), Answer::Yes);
    EXPECT_EQ(go_on_answer(Buttons::YesNoCancel), Answer::Yes);
}

TEST(RefusingAnswer, IsCancelBeforeNoAndOkIfThereIsNothingElse) {
    EXPECT_EQ(refusing_answer(Buttons::Ok), Answer::Ok);
    EXPECT_EQ(refusing_answer(Buttons::OkCancel), Answer::Cancel);
    EXPECT_EQ(refusing_answer(Buttons::YesNo), Answer::No);
    EXPECT_EQ(refusing_answer(Buttons::YesNoCancel), Answer::Cancel);
}

TEST(Message, HasTheProgramsTitleOneButtonAndNoIconByDefault) {
    const Message message{.text = "Done"};
    EXPECT_EQ(message.title, "Nivora");
    EXPECT_EQ(message.icon, Icon::None);
    EXPECT_EQ(message.buttons, Buttons::Ok);
    EXPECT_EQ(message.default_answer, std::nullopt);
}

TEST(Stop, ShowsTheStopIconAndAnOkButton) {
    ScriptedDialogs dialogs;
    dialogs.stop("No zones", "Missing data");
    dialogs.stop("No zones");
    ASSERT_EQ(dialogs.messages().size(), 2U);
    const Message& titled = dialogs.messages()[0].message;
    EXPECT_EQ(titled.text, "No zones");
    EXPECT_EQ(titled.title, "Missing data");
    EXPECT_EQ(titled.icon, Icon::Stop);
    EXPECT_EQ(titled.buttons, Buttons::Ok);
    EXPECT_EQ(dialogs.messages()[1].message.title, "Nivora");
}

Message question(const char* text, Buttons buttons = Buttons::YesNo) {
    return {.text = text, .buttons = buttons};
}

TEST(ScriptedDialogs, AnswersInTheOrderOfTheScript) {
    ScriptedDialogs dialogs;
    dialogs.then(Answer::No).then_text("Run 1").then(Answer::Yes).then_file("basin.mdb");
    EXPECT_EQ(dialogs.answers_left(), 4U);
    EXPECT_EQ(dialogs.message(question("Overwrite?")), Answer::No);
    EXPECT_EQ(dialogs.input({.prompt = "Name?"}), "Run 1");
    EXPECT_EQ(dialogs.message(question("Continue?")), Answer::Yes);
    EXPECT_EQ(dialogs.file({.title = "Save as"}), (FileAnswer{"basin.mdb", 0}));
    EXPECT_EQ(dialogs.answers_left(), 0U);
    EXPECT_THAT(dialogs.complaints(), IsEmpty());
}

TEST(ScriptedDialogs, KeepsWhatWasAsked) {
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Cancel).then_text("x").then_file("y");
    dialogs.message(
        {.text = "Save?", .title = "Save Data?", .icon = Icon::Question, .buttons = Buttons::YesNoCancel});
    EXPECT_EQ(dialogs.input({.prompt = "Name?", .title = "New", .proposed = "a"}), "x");
    EXPECT_EQ(
        dialogs.file({.title = "Open", .folder = "/basins", .patterns = {"Basin (*.mdb)"}, .saving = true}),
        (FileAnswer{"y", 0}));
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Save Data?");
    EXPECT_EQ(dialogs.messages()[0].message.icon, Icon::Question);
    EXPECT_EQ(dialogs.messages()[0].answer, Answer::Cancel);
    ASSERT_EQ(dialogs.inputs().size(), 1U);
    EXPECT_EQ(dialogs.inputs()[0].proposed, "a");
    ASSERT_EQ(dialogs.files().size(), 1U);
    EXPECT_EQ(dialogs.files()[0].folder, "/basins");
    EXPECT_TRUE(dialogs.files()[0].saving);
}

TEST(ScriptedDialogs, AFileHasThePatternOfTheScriptOrElseTheSelectedOne) {
    ScriptedDialogs dialogs;
    dialogs.then_file("a").then_file("b", 0);
    const FileQuestion question{.patterns = {"Text Files (*.txt)", "All Files (*.*)"}, .pattern = 1};
    EXPECT_EQ(dialogs.file(question), (FileAnswer{"a", 1}));
    EXPECT_EQ(dialogs.file(question), (FileAnswer{"b", 0}));
}

TEST(FilePatterns, HaveTheEndingInTheirParentheses) {
    EXPECT_EQ(pattern_ending("Bitmap Files (*.bmp)"), ".bmp");
    EXPECT_EQ(pattern_ending("Maps (old) (*.map)"), ".map");
    EXPECT_EQ(pattern_ending("All Files (*.*)"), "");
    EXPECT_EQ(pattern_ending("Bitmap Files"), "");
    EXPECT_EQ(pattern_ending("(*."), "");
}

TEST(FilePatterns, AreFoundByTheEndingOfANameInAnyCase) {
    const std::vector<std::string> patterns{"Bitmap Files (*.bmp)", "Text Files (*.txt)", "All Files (*.*)"};
    EXPECT_EQ(pattern_of_name(patterns, "/data/alder.TXT"), 1U);
    EXPECT_EQ(pattern_of_name(patterns, "alder.bmp"), 0U);
    EXPECT_EQ(pattern_of_name(patterns, "alder.txt.old"), std::nullopt);
    EXPECT_EQ(pattern_of_name(patterns, "/data.txt/alder"), std::nullopt);
    EXPECT_EQ(pattern_of_name(patterns, ""), std::nullopt);
}

TEST(ScriptedDialogs, CancelledBoxesGiveNothingBack) {
    ScriptedDialogs dialogs;
    dialogs.then_text(std::nullopt).then_file(std::nullopt);
    EXPECT_EQ(dialogs.input({.prompt = "Name?"}), std::nullopt);
    EXPECT_EQ(dialogs.file({.title = "Open"}), std::nullopt);
    EXPECT_THAT(dialogs.complaints(), IsEmpty());
}

TEST(ScriptedDialogs, AMessageWithOnlyOkNeedsAndTakesNoAnswer) {
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes);
    EXPECT_EQ(dialogs.message(question("Done", Buttons::Ok)), Answer::Ok);
    EXPECT_EQ(dialogs.answers_left(), 1U);
    EXPECT_THAT(dialogs.complaints(), IsEmpty());
}

TEST(ScriptedDialogs, AnUnexpectedBoxIsAComplaintAndIsRefused) {
    ScriptedDialogs dialogs;
    EXPECT_EQ(dialogs.message(question("Overwrite?", Buttons::YesNo)), Answer::No);
    EXPECT_EQ(dialogs.message(question("Save?", Buttons::YesNoCancel)), Answer::Cancel);
    EXPECT_EQ(dialogs.message(question("Continue?", Buttons::OkCancel)), Answer::Cancel);
    EXPECT_EQ(dialogs.input({.prompt = "Name?"}), std::nullopt);
    EXPECT_EQ(dialogs.file({.title = "Open"}), std::nullopt);
    EXPECT_THAT(dialogs.complaints(),
                ElementsAre("not expected: Overwrite?", "not expected: Save?", "not expected: Continue?",
                            "not expected: Name?", "not expected: Open"));
    EXPECT_EQ(dialogs.messages().size(), 3U);
}

TEST(ScriptedDialogs, AnotherKindOfBoxIsAComplaintAndLeavesTheAnswerForTheRightOne) {
    ScriptedDialogs dialogs;
    dialogs.then_text("Run 1");
    EXPECT_EQ(dialogs.message(question("Overwrite?")), Answer::No);
    EXPECT_EQ(dialogs.file({.title = "Open"}), std::nullopt);
    EXPECT_EQ(dialogs.answers_left(), 1U);
    EXPECT_EQ(dialogs.input({.prompt = "Name?"}), "Run 1");
    EXPECT_THAT(dialogs.complaints(), ElementsAre("another kind of question was expected: Overwrite?",
                                                  "another kind of question was expected: Open"));
}

TEST(ScriptedDialogs, AnAnswerThatTheBoxDoesNotOfferIsAComplaint) {
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Ok).then(Answer::Yes);
    EXPECT_EQ(dialogs.message(question("Overwrite?", Buttons::YesNo)), Answer::No);
    EXPECT_EQ(dialogs.message(question("Continue?", Buttons::OkCancel)), Answer::Cancel);
    EXPECT_THAT(dialogs.complaints(), ElementsAre("no button OK: Overwrite?", "no button Yes: Continue?"));
    EXPECT_EQ(dialogs.messages()[0].answer, Answer::No);
}

TEST(ScriptedDialogs, CountsTheUnusedAnswers) {
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_file("a").then_text("b");
    EXPECT_EQ(dialogs.message(question("Overwrite?")), Answer::Yes);
    EXPECT_EQ(dialogs.answers_left(), 2U);
    EXPECT_THAT(dialogs.complaints(), IsEmpty());
}

}  // namespace
}  // namespace nivora
