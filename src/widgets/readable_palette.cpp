#include "widgets/readable_palette.h"

#include "widgets/colours.h"

#include <QApplication>
#include <QWidget>
#include <utility>

namespace nivora {
namespace {

constexpr int k_steps = 32;

/// A colour a part of the way from one to another.
QColor between(const QColor& from, const QColor& to, int step) {
    const auto mixed = [step](int first, int last) { return first + (last - first) * step / k_steps; };
    return {mixed(from.red(), to.red()), mixed(from.green(), to.green()), mixed(from.blue(), to.blue())};
}

/// The palest mixture of the texts of disabled and of enabled elements that can be read.
QColor readable_disabled(const QPalette& palette, QPalette::ColorRole text, QPalette::ColorRole ground) {
    const QColor pale = palette.color(QPalette::Disabled, text);
    const QColor strong = palette.color(QPalette::Active, text);
    const QColor behind = palette.color(QPalette::Disabled, ground);
    for (int step = 0; step < k_steps; ++step) {
        const QColor mixed = between(pale, strong, step);
        if (contrast(mixed, behind) >= k_readable_contrast) return mixed;
    }
    return strong;
}

/// The ground of selected texts, darker or lighter by what they need to be read on it.
QColor readable_selection(const QPalette& palette, QPalette::ColorGroup group) {
    const QColor text = palette.color(group, QPalette::HighlightedText);
    const QColor ground = palette.color(group, QPalette::Highlight);
    const QColor far = contrast(text, Qt::black) >= contrast(text, Qt::white) ? Qt::black : Qt::white;
    for (int step = 0; step < k_steps; ++step) {
        const QColor mixed = between(ground, far, step);
        if (contrast(text, mixed) >= k_readable_contrast) return mixed;
    }
    return far;
}

}  // namespace

QColor text_on_mark(const QColor& text, const QColor& mark, const QPalette& palette) {
    constexpr int k_half = 128;
    if (palette.color(QPalette::Base).lightness() >= k_half || contrast(text, mark) >= k_readable_contrast)
        return text;
    return contrast(Qt::black, mark) >= contrast(Qt::white, mark) ? Qt::black : Qt::white;
}

void make_texts_readable(QWidget& window) {
    const QPalette system = QApplication::palette();
    QPalette own;
    for (const auto& [text, ground] :
         {std::pair{QPalette::Text, QPalette::Base}, std::pair{QPalette::WindowText, QPalette::Window}})
        own.setColor(QPalette::Disabled, text, readable_disabled(system, text, ground));
    for (const QPalette::ColorGroup group : {QPalette::Active, QPalette::Inactive})
        own.setColor(group, QPalette::Highlight, readable_selection(system, group));
    window.setPalette(own);
}

void make_list_readable(QWidget& list) {
    QPalette own;
    own.setColor(QPalette::Disabled, QPalette::ButtonText,
                 readable_disabled(QApplication::palette(), QPalette::ButtonText, QPalette::Button));
    list.setPalette(own);
}

void make_links_readable(QWidget& element, QPalette::ColorRole ground) {
    QPalette palette = element.palette();
    const QColor behind = palette.color(ground);
    palette.setColor(QPalette::Link, readable_on(palette.color(QPalette::Link), behind));
    element.setPalette(palette);
}

}  // namespace nivora
