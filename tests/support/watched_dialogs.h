// A script for every box, which also lets a test inspect the windows while a box is shown.
#pragma once

#include "base/scripted_dialogs.h"

#include <functional>

namespace nivora {

class WatchedDialogs : public ScriptedDialogs {
public:
    Answer message(const Message& message) override {
        look(message.title);
        if (boxes != nullptr) {
            const Answer answer = boxes->message(message);
            if (message.buttons != Buttons::Ok) then(answer);
        }
        return ScriptedDialogs::message(message);
    }
    std::optional<std::string> input(const InputBox& box) override {
        look(box.title);
        return ScriptedDialogs::input(box);
    }

    /// The title of the box that is shown.
    [[nodiscard]] const std::string& title() const { return title_; }

    std::function<void()> while_shown;
    /// If set, shows the messages instead of the script, so that a test can answer them with keys and mouse.
    Dialogs* boxes = nullptr;

private:
    void look(const std::string& title) {
        title_ = title;
        if (while_shown) while_shown();
    }

    std::string title_;
};

}  // namespace nivora
