#include "widgets/built_in_icons.h"

#include <QIcon>

namespace nivora {

BuiltInIcons::BuiltInIcons() : of_desktop_(QIcon::themeSearchPaths()) {
    // An empty list would stand for the folders of the desktop.
    QIcon::setThemeSearchPaths({QStringLiteral(":/no-icon-themes")});
}

BuiltInIcons::~BuiltInIcons() { QIcon::setThemeSearchPaths(of_desktop_); }

}  // namespace nivora
