#include "widgets/window_keys.h"

#include "widgets/nivora_window.h"

#include <QAbstractButton>
#include <QAction>
#include <QMenu>
#include <algorithm>

namespace nivora {
namespace {

QString shown(const QKeySequence& keys) { return keys.toString(QKeySequence::NativeText); }

}  // namespace

bool can_be_chosen(const QAction& entry) {
    if (!entry.isEnabled() || !entry.isVisible()) return false;
    const QObjectList owners = entry.associatedObjects();
    return std::all_of(owners.begin(), owners.end(), [](const QObject* owner) {
        const auto* menu = qobject_cast<const QMenu*>(owner);
        return menu == nullptr || can_be_chosen(*menu->menuAction());
    });
}

QAction* new_window_key(NivoraWindow& window, const QKeySequence& keys) {
    auto* key = new QAction(&window);
    key->setShortcut(keys);
    key->setAutoRepeat(false);
    window.take_key(key);
    return key;
}

void add_key(NivoraWindow& window, const QKeySequence& keys, QAction& entry) {
    QObject::connect(new_window_key(window, keys), &QAction::triggered, &entry, [&entry] {
        if (can_be_chosen(entry)) entry.trigger();
    });
    entry.setToolTip(shown(keys));
    for (QObject* owner : entry.associatedObjects()) {
        if (auto* menu = qobject_cast<QMenu*>(owner)) menu->setToolTipsVisible(true);
    }
}

void add_key(NivoraWindow& window, const QKeySequence& keys, QAbstractButton& button) {
    QObject::connect(new_window_key(window, keys), &QAction::triggered, &button, [&button] {
        if (button.isVisible()) button.click();
    });
    if (button.toolTip().isEmpty()) button.setToolTip(shown(keys));
}

}  // namespace nivora
