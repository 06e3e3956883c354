// Moves of the cursor in the daily editor: to a date, to missing values, and to changed ones.
#pragma once

#include <QObject>

class QMenu;

namespace nivora {

class DailyModel;
class Dialogs;
class GridView;
class NivoraWindow;

/// Adds the keys Ctrl+G, F3, Shift+F3, Ctrl+F3 and Ctrl+Shift+F3 to the window, and their entries to the
/// grid's context menu.
class DailyMoves : public QObject {
    Q_OBJECT

public:
    DailyMoves(NivoraWindow& window, GridView& grid, const DailyModel& days, Dialogs& user);

private:
    void add_entries(QMenu* menu);
    void go_to_date();
    void go_to_missing(bool forward);
    void go_to_changed(bool forward);
    [[nodiscard]] QString changed_elsewhere() const;
    void go_to_row(int row);
    void show(const QString& text);

    NivoraWindow& window_;
    GridView& grid_;
    const DailyModel& days_;
    Dialogs& user_;
};

}  // namespace nivora
