// The questions of the program as boxes on the desktop.
#pragma once

#include "base/dialogs.h"

#include <QString>

namespace nivora {

/// The filter of a file dialog for a caption such as "Windows NVR Data (*.mdb)": the unchanged caption, then
/// the patterns to search with, which are not shown. "*.*" finds every file, even if the platform requires a
/// point in the name; the case of letters is ignored.
[[nodiscard]] QString name_filter(const std::string& caption);

/// Shows every question in front of the active window.
class DesktopDialogs : public Dialogs {
public:
    Answer message(const Message& message) override;
    std::optional<std::size_t> choose(const Choice& choice) override;
    std::optional<std::string> input(const InputBox& box) override;
    std::optional<FileAnswer> file(const FileQuestion& question) override;
};

}  // namespace nivora
