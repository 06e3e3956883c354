// The questions of the program as boxes on the desktop.
#pragma once

#include "base/dialogs.h"

#include <QString>

namespace nivora {

/// The filter of a file dialog behind a caption such as "Windows NVR Data (*.mdb)": the caption as it
/// stands, then, which does not show, the patterns to search with. "*.*" finds every file, also where the
/// platform would ask for a point in the name; capitals and small letters are the same.
[[nodiscard]] QString name_filter(const std::string& caption);

/// Shows every question before the window that is active.
class DesktopDialogs : public Dialogs {
public:
    Answer message(const Message& message) override;
    std::optional<std::string> input(const InputBox& box) override;
    std::optional<std::filesystem::path> file(const FileQuestion& question) override;
};

}  // namespace nivora
