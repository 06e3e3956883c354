#include "widgets/strip_colours.h"

#include "widgets/colours.h"

#include <QStyle>

namespace nivora {

StripColours strip_colours(const Settings& settings, const QStyle& style) {
    const QPalette own = style.standardPalette();
    return {.fore = settings.quick_help_fore.value_or(number_of(own.color(QPalette::Text))),
            .back = settings.quick_help_back.value_or(number_of(own.color(QPalette::Base)))};
}

QPalette strip_palette(StripColours colours, const QStyle& style) {
    QPalette palette = style.standardPalette();
    palette.setColor(QPalette::Base, colour_of(colours.back));
    palette.setColor(QPalette::Text, colour_of(colours.fore));
    return palette;
}

}  // namespace nivora
