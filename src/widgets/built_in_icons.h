// Icons that do not depend on the icon themes of the desktop.
#pragma once

#include <QStringList>

namespace nivora {

/// While it lives, the style's standard icons are those that come with the program. A search in the icon
/// themes reads many files, which the first window need not wait for. Icons that are made later, such as
/// those of messages, are the desktop's.
class BuiltInIcons {
public:
    BuiltInIcons();
    BuiltInIcons(const BuiltInIcons&) = delete;
    BuiltInIcons& operator=(const BuiltInIcons&) = delete;
    ~BuiltInIcons();

private:
    QStringList of_desktop_;  ///< where themes are searched
};

}  // namespace nivora
