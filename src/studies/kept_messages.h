// Dialogs of a study, which has no user to ask.
#pragma once

#include "base/dialogs.h"

#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// Answers every question so that the work goes on, and each input box with its own proposal; keeps the
/// messages.
class KeptMessages : public Dialogs {
public:
    Answer message(const Message& message) override {
        messages.push_back(message);
        return go_on_answer(message.buttons);
    }
    std::optional<std::string> input(const InputBox& box) override { return box.proposed; }
    std::optional<FileAnswer> file(const FileQuestion& /*question*/) override { return std::nullopt; }

    std::vector<Message> messages;
};

}  // namespace nivora
