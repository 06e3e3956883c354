#include "base/dialogs.h"

namespace nivora {

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
