// The columns of the daily editor: hidden, moved and shown again.
#pragma once

#include "session/column_layout.h"

#include <QObject>
#include <string>
#include <vector>

class QMenu;
class QPoint;

namespace nivora {

class DailyModel;
class GridView;
class NivoraWindow;
struct Settings;

/// Arranges the columns of a table as the user left them in this view, and adds the menus and keys that
/// change that: a right click on a header, "Columns" in the menu of the cells, Ctrl+L, and for the column of
/// the cursor Ctrl+0, Alt+Left and Alt+Right. The settings keep the layout by view; the basin knows nothing
/// of it.
class DailyColumns : public QObject {
    Q_OBJECT

public:
    /// @param view the name under which the settings keep the layout
    /// @param widths of the columns that the view offers, once they have been measured; 0 if one was not
    DailyColumns(NivoraWindow& window, GridView& grid, DailyModel& days, Settings& settings, std::string view,
                 std::vector<int>& widths);

    /// Arranges the columns of a table that was just opened.
    void open();
    /// Shows a column of the editor if it is hidden.
    void reveal(std::size_t field_column);

private:
    void apply(std::size_t active);
    void fit();
    void keep_widths();
    void change(void (DailyColumns::*act)(std::size_t));
    void hide(std::size_t column);
    void move_left(std::size_t column) { layout_.move(column, false); }
    void move_right(std::size_t column) { layout_.move(column, true); }
    void show_menu(int column, const QPoint& at);
    void show_menu_of_cursor();
    void fill_menu(QMenu& menu, int column);

    GridView& grid_;
    DailyModel& days_;
    Settings& settings_;
    std::string view_;
    std::vector<int>& widths_;
    ColumnLayout layout_;
};

}  // namespace nivora
