// The questions that the program asks of its user, and the one interface through which they are asked.
#pragma once

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// The title of a box that has none of its own.
inline constexpr const char* k_program_title = "Nivora";

enum class Icon { None, Stop, Question, Warning, Information };
enum class Buttons { Ok, OkCancel, YesNo, YesNoCancel };
enum class Answer { Ok, Cancel, Yes, No };

struct Message {
    std::string text = {};
    std::string title = k_program_title;
    Icon icon = Icon::None;
    Buttons buttons = Buttons::Ok;
    std::optional<Answer> default_answer = std::nullopt;  ///< the first button if not set
};

/// A question whose buttons have captions of their own.
struct Choice {
    std::string text = {};
    std::string title = k_program_title;
    Icon icon = Icon::None;
    std::vector<std::string> buttons = {};  ///< the captions, from the left; the first is the default button
};

struct InputBox {
    std::string prompt = {};
    std::string title = k_program_title;
    std::string proposed = {};
};

struct FileQuestion {
    std::string title = {};
    std::filesystem::path folder = {};
    std::string proposed_name = {};
    std::vector<std::string> patterns = {};  ///< such as "Nivora basin (*.mdb)"
    bool saving = false;
    std::size_t pattern = 0;  ///< index of the pattern that is selected at first
    /// Whether the selected pattern decides what is written. An ending that the user types then selects its
    /// pattern, as far as one of them has it.
    bool pattern_decides = false;
};

struct FileAnswer {
    std::filesystem::path file = {};
    std::size_t pattern = 0;  ///< index of the pattern that the user left selected

    bool operator==(const FileAnswer&) const = default;
};

/// The ending of a pattern such as "Text Files (*.txt)": ".txt"; empty for "All Files (*.*)".
[[nodiscard]] std::string pattern_ending(std::string_view pattern);

/// The index of the first pattern that has the ending of a name, in upper or lower case; nothing if none has
/// it, or if the name has no ending.
[[nodiscard]] std::optional<std::size_t> pattern_of_name(const std::vector<std::string>& patterns,
                                                         const std::filesystem::path& name);

/// Asks the user. Every box of the program goes through here, so that the desktop, the batch program and the
/// tests can each answer in their own way.
class Dialogs {
public:
    Dialogs() = default;
    Dialogs(const Dialogs&) = delete;
    Dialogs& operator=(const Dialogs&) = delete;
    virtual ~Dialogs() = default;

    /// Shows a message and returns the button that closed it.
    virtual Answer message(const Message& message) = 0;
    /// Shows a question and returns the index of the button that closed it; nothing if it was closed without
    /// one, or where no user can answer.
    virtual std::optional<std::size_t> choose(const Choice& choice);
    /// Asks for a text; nothing if the user cancelled.
    virtual std::optional<std::string> input(const InputBox& box) = 0;
    /// Asks for a file; nothing if the user cancelled.
    virtual std::optional<FileAnswer> file(const FileQuestion& question) = 0;

    /// A message with the stop icon and an OK button.
    void stop(const std::string& text, const std::string& title = k_program_title);
};

[[nodiscard]] const char* answer_name(Answer answer);

/// Whether a box with these buttons can be left with this answer.
[[nodiscard]] bool offers(Buttons buttons, Answer answer);

/// The answer that continues the work: OK or Yes.
[[nodiscard]] Answer go_on_answer(Buttons buttons);
/// The answer that stops it: Cancel if there is one, otherwise No; OK if there is no other button.
[[nodiscard]] Answer refusing_answer(Buttons buttons);

}  // namespace nivora
