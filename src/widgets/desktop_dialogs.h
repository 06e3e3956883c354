// The questions of the program as boxes on the desktop.
#pragma once

#include "base/dialogs.h"

class QWidget;

namespace nivora {

/// Shows every question before the window that is active.
class DesktopDialogs : public Dialogs {
public:
    Answer message(const Message& message) override;
    std::optional<std::string> input(const InputBox& box) override;
    std::optional<std::filesystem::path> file(const FileQuestion& question) override;
};

}  // namespace nivora
