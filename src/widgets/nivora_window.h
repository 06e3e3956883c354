// What all windows have in common.
#pragma once

#include "session/help_texts.h"
#include "session/session.h"
#include "widgets/grid_model.h"
#include "widgets/quick_help.h"
#include "widgets/window_numbers.h"

#include <QMainWindow>
#include <QPointer>
#include <filesystem>
#include <vector>

class QLabel;
class QPushButton;
class QShortcut;
class QTextEdit;
class QToolButton;

namespace nivora {

class KeptPlace;
class Printing;

/// The objects that every window needs.
struct WindowContext {
    Session& session;
    QuickHelp& quick_help;
    std::filesystem::path
        program_folder;  ///< of the help texts and the sheet of scenarios, which are only read
    Printing& printing;
    std::filesystem::path work_folder = {};  ///< empty if the program writes beside itself

    /// Where reports are written.
    [[nodiscard]] const std::filesystem::path& writable_folder() const {
        return work_folder.empty() ? program_folder : work_folder;
    }
};

/// A window with a QuickHelp button and strip, a status bar that shows the basin's file, a kept position, and
/// its help texts. The strip and the button's state follow QuickHelp;
/// while it is on the window can't be closed.
class NivoraWindow : public QMainWindow {
    Q_OBJECT

public:
    /// @param name   the window's name, which is its section among the help texts
    /// @param number its number among the kept window positions
    NivoraWindow(const WindowContext& context, const char* name, WindowNumber number,
                 QWidget* parent = nullptr);

    /// Shows the window in front of its caller, which is the active window, until it is closed.
    void show_modal();
    void setVisible(bool visible) override;
    /// The window that this one stays in front of from its next opening on; null for none.
    void set_caller(QWidget* caller) { caller_ = caller; }
    [[nodiscard]] QWidget* caller() const { return caller_; }

    /// Gives an element its help line. A widget without one is explained by the nearest parent that has one.
    static void set_help(QWidget* widget, int line);

    /// Takes an action without an entry, for its key, which acts while QuickHelp is off.
    void take_key(QAction* key);

    void explain_widget(QWidget* widget);
    /// @param unit of what the line explains, in the units of the basin; empty if there is none
    void explain_line(int line, const QString& unit = {});
    void explain_menu(int number);
    [[nodiscard]] bool is_help_button(const QWidget* widget) const;
    [[nodiscard]] bool is_help_strip(const QWidget* widget) const;
    [[nodiscard]] QString help_text() const;

    /// The colour of a box or cell whose content was refused.
    static constexpr unsigned k_refused_colour = GridModel::k_refused_colour;

protected:
    [[nodiscard]] Session& session() { return context_.session; }
    [[nodiscard]] const WindowContext& context() const { return context_; }

    /// Puts the window's own content above the strip. It scrolls if the screen is too small for it.
    ///
    /// @param foot what stays visible below the content, such as the buttons that close the window;
    ///             may be null
    void set_content(QWidget* content, QWidget* foot = nullptr);
    /// The element that has the focus when the window opens; by default the first one in the content
    /// that accepts keys.
    void set_first_focus(QWidget* element) { first_focus_ = element; }
    /// The button that Enter presses if it has no other meaning.
    void set_default_button(QPushButton* button);
    /// Lets Escape close the window like its close control; while QuickHelp is on, both only show a message.
    void close_on_escape();
    /// The tip of the QuickHelp button while QuickHelp is off, if it is not the usual one.
    void set_help_tip(const QString& tip);
    /// Gives the basin's file in the status bar its help line.
    void explain_status_bar(int line);
    /// Shows a text at the right of the status bar.
    void show_status(const QString& text);
    /// Shows the basin's file in the status bar.
    void show_basin_file();
    /// Shows another file in its place.
    void show_file_name(const std::filesystem::path& file);
    /// Shows a message while an element has the colour of refused input.
    void refuse(QWidget* element, const Message& message);
    /// Whether an event means that a box is left or entered: an open menu, a question or another window only
    /// interrupts the work in it.
    [[nodiscard]] bool leaves_box(const QEvent* event) const;
    /// Lets the user leave a box for a button, such as Cancel, without a check of its text: the message would
    /// swallow the press of the button.
    static void leave_unchecked(QWidget* button);
    [[nodiscard]] static bool enters_box(const QEvent* event);
    /// What QuickHelp changes in a window besides its strip.
    virtual void quick_help_changed(bool on) { static_cast<void>(on); }

    void changeEvent(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

private:
    void focus_content();
    void add_area_keys();
    void move_to_area(bool forward);
    /// @return whether the key had a meaning
    bool open_menu_by_key(Qt::KeyboardModifiers with);
    [[nodiscard]] const QWidget* area_of(const QWidget* element) const;
    [[nodiscard]] QSize room_for_content() const;
    void show_quick_help(bool on);
    void make_room(bool on, int height_before);
    void show_text(const std::string& text);
    void show_strip_colours();

    WindowContext context_;
    KeptPlace* place_;
    QuickHelpTexts texts_;
    QToolButton* help_button_;
    QString help_tip_ = QStringLiteral("View 'QuickHelp'");
    QTextEdit* strip_;
    QLabel* basin_file_;
    QLabel* status_ = nullptr;
    QWidget* frame_;
    QWidget* foot_ = nullptr;
    QPointer<QWidget> caller_;
    QWidget* first_focus_ = nullptr;
    QPushButton* default_button_ = nullptr;
    std::vector<QShortcut*> area_keys_;  ///< disabled by QuickHelp, as the following
    std::vector<QAction*> keys_;
    bool opened_ = false;
    int grown_ = 0;
};

}  // namespace nivora
