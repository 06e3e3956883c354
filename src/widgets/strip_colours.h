// The colours of the QuickHelp strip.
#pragma once

#include "session/settings.h"

#include <QPalette>

class QStyle;

namespace nivora {

/// Red in the lowest byte.
struct StripColours {
    std::int32_t fore = 0;
    std::int32_t back = 0;
};

/// The colours of the settings; in the place of one that is not set, that of the style.
[[nodiscard]] StripColours strip_colours(const Settings& settings, const QStyle& style);

/// A text in these colours.
[[nodiscard]] QPalette strip_palette(StripColours colours, const QStyle& style);

}  // namespace nivora
