// QuickHelp: a state of the whole program in which every element explains itself and none acts.
#pragma once

#include <QObject>

class QAction;
class QWidget;

namespace nivora {

class NivoraWindow;

/// It is on exactly when the pointer is the arrow with the question mark. While it is on, one event filter
/// for all windows shows the text of the element that was clicked, or reached by a key, and swallows the
/// event; no handler has to test for it.
class QuickHelp : public QObject {
    Q_OBJECT

public:
    explicit QuickHelp(QObject* parent = nullptr);

    [[nodiscard]] bool is_on() const { return on_; }
    void set_on(bool on);
    void toggle() { set_on(!on_); }

signals:
    void changed(bool on);
    /// The user asks for the colours of the strip, by a right click on it or its menu key.
    void colours_wanted(QWidget* window);
    /// The settings have other colours for the strip.
    void colours_changed();

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    bool filter_widget(QWidget* widget, QEvent* event);
    bool filter_menu(QWidget* menu, QEvent* event);
    bool filter_bar(QWidget* bar, QEvent* event);

    bool on_ = false;
};

/// The property of a widget that holds the number of its help line.
inline constexpr const char* k_help_line = "helpLine";
/// The property of a widget with a help line that holds the unit of its number in this basin.
inline constexpr const char* k_help_unit = "helpUnit";
/// The property of a grid whose columns explain themselves: the help line of column c, from 1, is this number
/// plus c. A grid whose columns the user arranges says in the header's k_column_role which one it is.
inline constexpr const char* k_help_columns = "helpColumns";
/// The property of a grid whose rows explain themselves: the help line of row r, from 1, is this number plus
/// r; or a list holds the line of each row.
inline constexpr const char* k_help_rows = "helpRows";
/// The property of a menu action that holds the number of its text among the menu texts.
inline constexpr const char* k_help_menu = "helpMenu";

}  // namespace nivora
