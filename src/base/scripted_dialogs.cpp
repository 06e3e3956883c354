#include "base/scripted_dialogs.h"

namespace nivora {

template <typename Kind>
std::optional<Kind> ScriptedDialogs::next(const std::string& what) {
    if (script_.empty()) {
        complaints_.push_back("not expected: " + what);
        return std::nullopt;
    }
    const Step step = script_.front();
    if (!std::holds_alternative<Kind>(step)) {
        complaints_.push_back("another kind of question was expected: " + what);
        return std::nullopt;
    }
    script_.pop_front();
    return std::get<Kind>(step);
}

Answer ScriptedDialogs::message(const Message& message) {
    Answer answer = refusing_answer(message.buttons);
    if (message.buttons != Buttons::Ok) {
        const auto scripted = next<Answer>(message.text);
        if (scripted && offers(message.buttons, *scripted)) {
            answer = *scripted;
        } else if (scripted) {
            complaints_.push_back(std::string{"no button "} + answer_name(*scripted) + ": " + message.text);
        }
    }
    messages_.push_back({message, answer});
    return answer;
}

std::optional<std::size_t> ScriptedDialogs::choose(const Choice& choice) {
    choices_.push_back(choice);
    const auto scripted = next<ChosenButton>(choice.text);
    if (!scripted || !scripted->index) return std::nullopt;
    if (*scripted->index < choice.buttons.size()) return scripted->index;
    complaints_.push_back("no button " + std::to_string(*scripted->index) + ": " + choice.text);
    return std::nullopt;
}

std::optional<std::string> ScriptedDialogs::input(const InputBox& box) {
    inputs_.push_back(box);
    const auto scripted = next<TextAnswer>(box.prompt);
    return scripted ? scripted->text : std::nullopt;
}

std::optional<FileAnswer> ScriptedDialogs::file(const FileQuestion& question) {
    files_.push_back(question);
    const auto scripted = next<ChosenFile>(question.title);
    if (!scripted || !scripted->path) return std::nullopt;
    return FileAnswer{*scripted->path, scripted->pattern.value_or(question.pattern)};
}

ScriptedDialogs& ScriptedDialogs::then(Answer answer) {
    script_.emplace_back(answer);
    return *this;
}

ScriptedDialogs& ScriptedDialogs::then_choice(std::optional<std::size_t> button) {
    script_.emplace_back(ChosenButton{button});
    return *this;
}

ScriptedDialogs& ScriptedDialogs::then_text(std::optional<std::string> text) {
    script_.emplace_back(TextAnswer{std::move(text)});
    return *this;
}

ScriptedDialogs& ScriptedDialogs::then_file(std::optional<std::filesystem::path> path,
                                            std::optional<std::size_t> pattern) {
    script_.emplace_back(ChosenFile{std::move(path), pattern});
    return *this;
}

}  // namespace nivora
