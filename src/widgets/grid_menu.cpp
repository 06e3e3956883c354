#include "widgets/grid_menu.h"

#include "widgets/grid_view.h"

#include <QMenu>

namespace nivora {

QAction* add_grid_entry(QMenu& menu, const char* name, const char* caption, const QKeySequence& keys,
                        bool enabled, const std::function<void()>& act, QAction* before) {
    // The key stands in the text: as a shortcut of the entry it would compete with the grid's own key.
    QString text = QString::fromUtf8(caption);
    if (!keys.isEmpty()) text += QLatin1Char('\t') + keys.toString(QKeySequence::NativeText);
    auto* entry = new QAction(text, &menu);
    QObject::connect(entry, &QAction::triggered, entry, act);
    menu.insertAction(before, entry);
    entry->setObjectName(QString::fromUtf8(name));
    entry->setEnabled(enabled);
    return entry;
}

QMenu* make_grid_menu(GridView& grid) {
    auto* menu = new QMenu(&grid);
    menu->setObjectName(QStringLiteral("mnuGrid"));
    menu->setAccessibleName(QStringLiteral("Commands for the selected cells"));
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const bool copies = grid.block().rows() > 0;
    add_grid_entry(*menu, "gridCut", "Cu&t", QKeySequence::Cut, grid.can_cut(), [&grid] { grid.cut(); });
    add_grid_entry(*menu, "gridCopy", "&Copy", QKeySequence::Copy, copies, [&grid] { grid.copy(); });
    add_grid_entry(*menu, "gridCopyWithHeaders", "Copy with &headers", k_copy_with_headers, copies,
                   [&grid] { grid.copy_with_headers(); });
    add_grid_entry(*menu, "gridPaste", "&Paste", QKeySequence::Paste, grid.can_paste(),
                   [&grid] { grid.paste(); });
    return menu;
}

}  // namespace nivora
