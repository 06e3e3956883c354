// Dialogs that answer from a script and record the questions, for tests of code that asks the user.
#pragma once

#include "base/dialogs.h"

#include <deque>
#include <variant>

namespace nivora {

/// A message that was shown, and its answer.
struct AskedMessage {
    Message message;
    Answer answer = Answer::Ok;
};

/// Answers in the order of the script.
///
/// A message with an OK button alone needs no line in the script. Any other box that the script does not
/// expect next, or an answer that the box does not offer, is kept as a complaint and answered with Cancel, No
/// or nothing.
class ScriptedDialogs : public Dialogs {
public:
    Answer message(const Message& message) override;
    std::optional<std::size_t> choose(const Choice& choice) override;
    std::optional<std::string> input(const InputBox& box) override;
    std::optional<FileAnswer> file(const FileQuestion& question) override;

    ScriptedDialogs& then(Answer answer);
    /// @param button its index; nothing closes the question without one
    ScriptedDialogs& then_choice(std::optional<std::size_t> button);
    ScriptedDialogs& then_text(std::optional<std::string> text);
    /// @param pattern index of the pattern that is left selected; nothing for the one that the box selects
    ScriptedDialogs& then_file(std::optional<std::filesystem::path> path,
                               std::optional<std::size_t> pattern = std::nullopt);

    [[nodiscard]] const std::vector<AskedMessage>& messages() const { return messages_; }
    [[nodiscard]] const std::vector<Choice>& choices() const { return choices_; }
    [[nodiscard]] const std::vector<InputBox>& inputs() const { return inputs_; }
    [[nodiscard]] const std::vector<FileQuestion>& files() const { return files_; }

    /// What the script did not expect; a test that ends with complaints,
    /// or with answers left over, has failed.
    [[nodiscard]] const std::vector<std::string>& complaints() const { return complaints_; }
    [[nodiscard]] std::size_t answers_left() const { return script_.size(); }

private:
    struct TextAnswer {
        std::optional<std::string> text;
    };
    struct ChosenFile {
        std::optional<std::filesystem::path> path;
        std::optional<std::size_t> pattern;
    };
    struct ChosenButton {
        std::optional<std::size_t> index;
    };
    using Step = std::variant<Answer, TextAnswer, ChosenFile, ChosenButton>;

    template <typename Kind>
    std::optional<Kind> next(const std::string& what);

    std::deque<Step> script_;
    std::vector<AskedMessage> messages_;
    std::vector<Choice> choices_;
    std::vector<InputBox> inputs_;
    std::vector<FileQuestion> files_;
    std::vector<std::string> complaints_;
};

}  // namespace nivora
