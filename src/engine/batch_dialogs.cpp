#include "engine/batch_dialogs.h"

#include <algorithm>
#include <ostream>

namespace nivora {
namespace {

std::string on_one_line(std::string text) {
    std::replace_if(
        text.begin(), text.end(), [](char c) { return c == '\n' || c == '\r'; }, ' ');
    return text;
}

}  // namespace

void BatchDialogs::report(const ReportedMessage& message) {
    report_ << on_one_line(message.title + ": " + message.text + " [" + answer_name(message.answer) + "]")
            << '\n';
    messages_.push_back(message);
}

Answer BatchDialogs::message(const Message& message) {
    const Answer answer = refuse_ ? refusing_answer(message.buttons) : go_on_answer(message.buttons);
    if (message.buttons == Buttons::Ok) refused_ = true;
    report({message.title, message.text, answer});
    return answer;
}

std::optional<std::string> BatchDialogs::input(const InputBox& box) {
    if (proposals_accepted_) {
        report({box.title, box.prompt, refuse_ ? Answer::Cancel : Answer::Ok});
        if (refuse_) return std::nullopt;
        return box.proposed;
    }
    if (input_given_) {
        report_problem(box.title, box.prompt);
        return std::nullopt;
    }
    input_given_ = true;
    return input_.value_or(box.proposed);
}

std::optional<FileAnswer> BatchDialogs::file(const FileQuestion&) { return std::nullopt; }

void BatchDialogs::report_problem(const std::string& title, const std::string& text) {
    refused_ = true;
    report({title, text, Answer::Ok});
}

void BatchDialogs::report_note(const std::string& text) { report_ << "Note: " << on_one_line(text) << '\n'; }

void BatchDialogs::report_notes(const std::vector<RunNote>& notes, Units units) {
    for (const RunNote& note : notes) report_note(note_text(note, units));
}

}  // namespace nivora
