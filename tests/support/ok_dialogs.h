// Dialogs that answer every box with OK, for trials that cannot know how many boxes come.
#pragma once

#include "base/dialogs.h"

#include <optional>
#include <string>

namespace nivora {

class OkDialogs : public Dialogs {
public:
    Answer message(const Message& /*message*/) override { return Answer::Ok; }
    std::optional<std::string> input(const InputBox& box) override { return box.proposed; }
    std::optional<FileAnswer> file(const FileQuestion& /*question*/) override { return {}; }
};

}  // namespace nivora
