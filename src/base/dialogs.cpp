#include "base/dialogs.h"

#include "base/durable_file.h"
#include "base/text.h"

#include <algorithm>

namespace nivora {

std::string pattern_ending(std::string_view pattern) {
    const std::size_t open = pattern.rfind("(*.");
    if (open == std::string_view::npos || !pattern.ends_with(')')) return {};
    const std::string_view ending = pattern.substr(open + 2, pattern.size() - open - 3);
    return ending == ".*" ? std::string{} : std::string{ending};
}

std::optional<std::size_t> pattern_of_name(const std::vector<std::string>& patterns,
                                           const std::filesystem::path& name) {
    const std::string ending = path_text(name.extension());
    if (ending.empty()) return std::nullopt;
    const auto found = std::find_if(patterns.begin(), patterns.end(), [&](const std::string& pattern) {
        return same_name(pattern_ending(pattern), ending);
    });
    if (found == patterns.end()) return std::nullopt;
    return static_cast<std::size_t>(found - patterns.begin());
}

std::optional<std::size_t> Dialogs::choose(const Choice& /*choice*/) { return std::nullopt; }

void Dialogs::stop(const std::string& text, const std::string& title) {
    message({.text = text, .title = title, .icon = Icon::Stop});
}

const char* answer_name(Answer answer) {
    switch (answer) {
        case Answer::Ok: return "OK";
        case Answer::Cancel: return "Cancel";
        case Answer::Yes: return "Yes";
        case Answer::No: return "No";
    }
    return "";
}

bool offers(Buttons buttons, Answer answer) {
    switch (buttons) {
        case Buttons::Ok: return answer == Answer::Ok;
        case Buttons::OkCancel: return answer == Answer::Ok || answer == Answer::Cancel;
        case Buttons::YesNo: return answer == Answer::Yes || answer == Answer::No;
        case Buttons::YesNoCancel: return answer != Answer::Ok;
    }
    return false;
}

Answer go_on_answer(Buttons buttons) {
    return buttons == Buttons::YesNo || buttons == Buttons::YesNoCancel ? Answer::Yes : Answer::Ok;
}

Answer refusing_answer(Buttons buttons) {
    if (buttons == Buttons::Ok) return Answer::Ok;
    return buttons == Buttons::YesNo ? Answer::No : Answer::Cancel;
}

}  // namespace nivora
