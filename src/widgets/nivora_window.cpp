#include "widgets/nivora_window.h"

#include "base/durable_file.h"
#include "widgets/accessible_elements.h"
#include "widgets/built_in_icons.h"
#include "widgets/caller.h"
#include "widgets/content_area.h"
#include "widgets/entry_box.h"
#include "widgets/file_label.h"
#include "widgets/grid_delegate.h"
#include "widgets/kept_place.h"
#include "widgets/qt_text.h"
#include "widgets/readable_palette.h"
#include "widgets/strip_colours.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QCloseEvent>
#include <QContextMenuEvent>
#include <QEventLoop>
#include <QGroupBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenuBar>
#include <QPointer>
#include <QPushButton>
#include <QScreen>
#include <QShortcut>
#include <QStatusBar>
#include <QStyle>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QVariant>
#include <utility>

namespace nivora {
namespace {

constexpr int k_strip_lines = 4;
constexpr const char* k_close_refused =
    "The Windows native control for closing the form is disabled while QuickHelp' is on.";
constexpr const char* k_menus_disabled = "  Menu items are disabled when 'QuickHelp' is on.";
constexpr const char* k_strip_text =
    "'Quickhelp' window.  When this window is visible, 'QuickHelp' is ON.  The user can view help related to "
    "each window element by clicking on the element. ";

QTextEdit* make_strip(QWidget* parent) {
    auto* strip = new QTextEdit(parent);
    strip->setObjectName(QStringLiteral("lblHelp"));
    strip->setReadOnly(true);
    strip->setAccessibleName(QStringLiteral("QuickHelp"));
    strip->setFixedHeight(strip->fontMetrics().lineSpacing() * k_strip_lines + 12);
    strip->hide();
    return strip;
}

/// Whether Tab can reach an element of a window.
bool takes_focus(const QWidget& element, const QWidget& window) {
    return element.window() == &window && (element.focusPolicy() & Qt::TabFocus) != 0 &&
           element.isEnabled() && element.focusProxy() == nullptr && element.isVisibleTo(&window);
}

/// Selects the text that typing would replace; gives a table an active cell.
void prepare_for_keys(QWidget& element) {
    if (auto* box = qobject_cast<QLineEdit*>(&element)) box->selectAll();
    auto* table = qobject_cast<QAbstractItemView*>(&element);
    if (table != nullptr && table->model() != nullptr && !table->currentIndex().isValid())
        table->setCurrentIndex(table->model()->index(0, 0));
}

}  // namespace

NivoraWindow::NivoraWindow(const WindowContext& context, const char* name, WindowNumber number,
                           QWidget* parent)
    : QMainWindow(parent),
      context_(context),
      place_(new KeptPlace(*this, context.session.settings, static_cast<std::size_t>(number))),
      texts_(Load_QuickHelp(context.program_folder, name)),
      help_button_(new QToolButton(this)),
      strip_(make_strip(this)),
      basin_file_(new FileLabel(this)),
      frame_(new QWidget(this)) {
    install_accessible_elements();
    make_texts_readable(*this);
    setObjectName(QString::fromUtf8(name));
    help_button_->setObjectName(QStringLiteral("btnHelp"));
    help_button_->setCheckable(true);
    help_button_->setText(QStringLiteral("QuickHelp"));
    {
        const BuiltInIcons icons;
        help_button_->setIcon(style()->standardIcon(QStyle::SP_MessageBoxQuestion));
    }
    help_button_->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    auto* toolbar = addToolBar(QStringLiteral("QuickHelp"));
    toolbar->setObjectName(QStringLiteral("Toolbar1"));
    toolbar->setMovable(false);
    toolbar->setContextMenuPolicy(Qt::PreventContextMenu);
    toolbar->addWidget(help_button_);

    auto* layout = new QVBoxLayout(frame_);
    layout->addWidget(strip_);
    setCentralWidget(frame_);

    basin_file_->setObjectName(QStringLiteral("panel1"));
    statusBar()->addWidget(basin_file_, 1);
    show_basin_file();

    connect(help_button_, &QToolButton::clicked, this, [this] { context_.quick_help.toggle(); });
    connect(&context_.quick_help, &QuickHelp::changed, this, [this](bool on) {
        show_quick_help(on);
        quick_help_changed(on);
    });
    connect(&context_.quick_help, &QuickHelp::colours_changed, this, &NivoraWindow::show_strip_colours);
    add_area_keys();
    show_quick_help(context_.quick_help.is_on());
}

void NivoraWindow::set_content(QWidget* content, QWidget* foot) {
    foot_ = foot;
    auto* area = new ContentArea(
        content, [this] { return room_for_content(); }, frame_);
    auto* layout = static_cast<QVBoxLayout*>(frame_->layout());
    layout->insertWidget(0, area, 1);
    if (foot_ == nullptr) return;
    // Aligned with the content, as if it were its last part.
    const QMargins around = content->layout()->contentsMargins();
    content->layout()->setContentsMargins(around.left(), around.top(), around.right(), 0);
    foot_->layout()->setContentsMargins(around.left(), 0, around.right(), around.bottom());
    layout->insertWidget(1, foot_);
}

/// The largest size for the content of this window on its screen.
QSize NivoraWindow::room_for_content() const {
    FrameWidths around = context_.session.settings.frame;
    if (around == FrameWidths{}) {
        constexpr int k_usual_border = 8;
        const int title_bar = style()->pixelMetric(QStyle::PM_TitleBarHeight);
        around = {k_usual_border, title_bar + k_usual_border, k_usual_border, k_usual_border};
    }
    const QLayout& layout = *frame_->layout();
    const QMargins margins = layout.contentsMargins();
    int height =
        around.top + around.bottom + margins.top() + margins.bottom() + statusBar()->sizeHint().height();
    if (const QWidget* menu = menuWidget()) height += menu->sizeHint().height();
    if (const auto* toolbar = qobject_cast<QWidget*>(help_button_->parent()))
        height += toolbar->sizeHint().height();
    if (strip_->isVisibleTo(this)) height += strip_->height() + layout.spacing();
    if (foot_ != nullptr) height += foot_->sizeHint().height() + layout.spacing();
    const int width = around.left + around.right + margins.left() + margins.right();
    return screen()->availableGeometry().size() - QSize(width, height);
}

void NivoraWindow::set_default_button(QPushButton* button) {
    default_button_ = button;
    // It looks like the default button even while another button has the focus.
    button->setAutoDefault(false);
    button->setDefault(true);
}

void NivoraWindow::close_on_escape() {
    auto* escape = new QShortcut(Qt::Key_Escape, this);
    connect(escape, &QShortcut::activated, this, [this] {
        QWidget* focused = focusWidget();
        if (focused == nullptr || !focused->property(k_grid_editor).toBool()) {
            close();
            return;
        }
        // Escape first ends the editing of a cell, without a change.
        QKeyEvent key(QEvent::KeyPress, Qt::Key_Escape, Qt::NoModifier);
        QApplication::sendEvent(focused, &key);
    });
}

/// F6 or Ctrl+Tab moves to the next area of the window, also out of a table, where Tab moves from cell to
/// cell; with Shift to the previous one.
void NivoraWindow::add_area_keys() {
    const auto add = [this](const QKeySequence& keys, bool forward) {
        auto* shortcut = new QShortcut(keys, this);
        connect(shortcut, &QShortcut::activated, this, [this, forward] { move_to_area(forward); });
        area_keys_.push_back(shortcut);
    };
    for (const Qt::Key key : {Qt::Key_F6, Qt::Key_Tab}) {
        const Qt::KeyboardModifier control = key == Qt::Key_Tab ? Qt::ControlModifier : Qt::NoModifier;
        add(QKeyCombination(control, key), true);
        add(QKeyCombination(control | Qt::ShiftModifier, key), false);
    }
}

void NivoraWindow::take_key(QAction* key) {
    key->setEnabled(!context_.quick_help.is_on());
    addAction(key);
    keys_.push_back(key);
}

/// The area of the window that contains an element: a table, a frame, the toolbar or the content area,
/// otherwise the window itself.
const QWidget* NivoraWindow::area_of(const QWidget* element) const {
    for (const QWidget* at = element; at != nullptr && at != this; at = at->parentWidget()) {
        if (qobject_cast<const QAbstractItemView*>(at) != nullptr) return at;
        if (qobject_cast<const QGroupBox*>(at) != nullptr) return at;
        if (qobject_cast<const QToolBar*>(at) != nullptr) return at;
        if (qobject_cast<const ContentArea*>(at) != nullptr) return at;
    }
    return this;
}

void NivoraWindow::move_to_area(bool forward) {
    QWidget* start = focusWidget() != nullptr ? focusWidget() : this;
    const QWidget* area = area_of(start);
    const auto next = [forward](QWidget* at) {
        return forward ? at->nextInFocusChain() : at->previousInFocusChain();
    };
    for (QWidget* at = next(start); at != start; at = next(at)) {
        if (!takes_focus(*at, *this) || area_of(at) == area) continue;
        at->setFocus(Qt::TabFocusReason);
        return;
    }
}

/// Sets the focus to the content when the window opens; by default the QuickHelp button would get it.
void NivoraWindow::focus_content() {
    QWidget* element = focusWidget();
    if (element == nullptr || element == help_button_) element = first_focus_;
    for (QWidget* at = frame_->nextInFocusChain(); element == nullptr && at != frame_;
         at = at->nextInFocusChain()) {
        if (frame_->isAncestorOf(at) && takes_focus(*at, *this)) element = at;
    }
    if (element == nullptr) return;
    element->setFocus();
    prepare_for_keys(*element);
}

void NivoraWindow::setVisible(bool visible) {
    if (visible && !isVisible()) {
        place_->put(caller_ ? *caller_->screen() : *screen());
        nivora::set_caller(*this, caller_);
        if (!std::exchange(opened_, true)) focus_content();
    }
    if (!visible && isVisible()) place_->keep(grown_);
    QMainWindow::setVisible(visible);
}

void NivoraWindow::keyPressEvent(QKeyEvent* event) {
    const bool enter = event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter;
    const bool alone = (event->modifiers() & ~Qt::KeypadModifier) == 0;
    if (event->key() == Qt::Key_F10 && !event->isAutoRepeat() && open_menu_by_key(event->modifiers())) return;
    // A key that was already held down in the previous window is ignored.
    if (!enter || !alone || event->isAutoRepeat()) return QMainWindow::keyPressEvent(event);
    auto* focused = qobject_cast<QPushButton*>(focusWidget());
    QPushButton* button = focused != nullptr ? focused : default_button_;
    if (button != nullptr) button->click();
}

/// F10 opens the first menu; Shift+F10 that of an element, as the Menu key does, which not every keyboard
/// has.
bool NivoraWindow::open_menu_by_key(Qt::KeyboardModifiers with) {
    QWidget* element = focusWidget();
    if (with == Qt::ShiftModifier && element != nullptr) {
        const QPoint middle = element->rect().center();
        QContextMenuEvent asks(QContextMenuEvent::Keyboard, middle, element->mapToGlobal(middle));
        return QApplication::sendEvent(element, &asks) && asks.isAccepted();
    }
    auto* bar = qobject_cast<QMenuBar*>(menuWidget());
    if (with != Qt::NoModifier || bar == nullptr) return false;
    for (QAction* entry : bar->actions()) {
        if (!entry->isVisible() || !entry->isEnabled() || entry->isSeparator()) continue;
        bar->setActiveAction(entry);
        break;
    }
    return true;
}

void NivoraWindow::show_basin_file() { show_file_name(context_.session.basin.Basin_File); }

void NivoraWindow::show_file_name(const std::filesystem::path& file) {
    basin_file_->setText(to_qt(path_text(file)));
}

void NivoraWindow::set_help_tip(const QString& tip) {
    help_tip_ = tip;
    if (!help_button_->isChecked()) help_button_->setToolTip(tip);
}

void NivoraWindow::explain_status_bar(int line) { set_help(basin_file_, line); }

void NivoraWindow::show_status(const QString& text) {
    if (status_ == nullptr) {
        status_ = new QLabel(this);
        status_->setObjectName(QStringLiteral("panel2"));
        statusBar()->addPermanentWidget(status_);
    }
    status_->setText(text);
}

void NivoraWindow::set_help(QWidget* widget, int line) { widget->setProperty(k_help_line, line); }

void NivoraWindow::show_quick_help(bool on) {
    for (QShortcut* key : area_keys_) key->setEnabled(!on);
    for (QAction* key : keys_) key->setEnabled(!on);
    help_button_->setChecked(on);
    help_button_->setToolTip(on ? QStringLiteral("Hide 'QuickHelp'") : help_tip_);
    const int height_before = height();
    strip_->setVisible(on);
    make_room(on, height_before);
    if (on) show_text(texts_.line(0));
}

/// The window grows by its strip, as far as the screen allows, and shrinks back.
void NivoraWindow::make_room(bool on, int height_before) {
    if (!isVisible() || isMaximized() || isFullScreen()) return;
    if (on) {
        const int below = frameGeometry().bottom() - height() + height_before;
        const int room = std::max(0, screen()->availableGeometry().bottom() - below);
        resize(width(), height_before + std::min(strip_->height(), room));
        grown_ = height() - height_before;
    } else {
        // The window can't shrink until its layouts know that the strip is hidden.
        frame_->layout()->activate();
        layout()->activate();
        resize(width(), height_before - grown_);
        grown_ = 0;
    }
}

void NivoraWindow::show_text(const std::string& text) {
    show_strip_colours();
    strip_->setPlainText(to_qt(text));
}

void NivoraWindow::show_strip_colours() {
    strip_->setPalette(strip_palette(strip_colours(context_.session.settings, *style()), *style()));
}

void NivoraWindow::explain_widget(QWidget* widget) {
    if (is_help_strip(widget)) return show_text(k_strip_text);
    for (QWidget* at = widget; at != nullptr && at != this; at = at->parentWidget()) {
        const QVariant line = at->property(k_help_line);
        if (line.isValid()) return explain_line(line.toInt(), at->property(k_help_unit).toString());
    }
    show_text(texts_.line(0));
}

void NivoraWindow::explain_line(int line, const QString& unit) {
    const std::string here = unit.isEmpty() ? std::string{} : "  Unit: " + from_qt(unit) + ".";
    show_text(texts_.line(line) + here);
}

void NivoraWindow::explain_menu(int number) { show_text(k_menus_disabled + texts_.menu_text(number)); }

bool NivoraWindow::is_help_button(const QWidget* widget) const { return widget == help_button_; }

bool NivoraWindow::is_help_strip(const QWidget* widget) const {
    return widget == strip_ || strip_->isAncestorOf(widget);
}

QString NivoraWindow::help_text() const { return strip_->toPlainText(); }

void NivoraWindow::refuse(QWidget* element, const Message& message) {
    refuse_entry(*element, message, context_.session.dialogs);
}

bool NivoraWindow::leaves_box(const QEvent* event) const {
    return nivora::leaves_box(*event, context_.quick_help);
}

void NivoraWindow::leave_unchecked(QWidget* button) { nivora::leave_unchecked(*button); }

bool NivoraWindow::enters_box(const QEvent* event) { return nivora::enters_box(*event); }

void NivoraWindow::show_modal() {
    const QPointer<QWidget> before = calling_window();
    set_caller(before);
    setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    setAttribute(Qt::WA_DeleteOnClose, false);
    show();
    while (isVisible()) loop.processEvents(QEventLoop::WaitForMoreEvents);
    if (before) before->activateWindow();
}

void NivoraWindow::changeEvent(QEvent* event) {
    if (event->type() == QEvent::ActivationChange && isActiveWindow()) note_activation(*this);
    if (event->type() == QEvent::ApplicationPaletteChange) make_texts_readable(*this);
    QMainWindow::changeEvent(event);
}

void NivoraWindow::closeEvent(QCloseEvent* event) {
    if (context_.quick_help.is_on()) {
        show_text(k_close_refused);
        event->ignore();
        return;
    }
    event->accept();
}

}  // namespace nivora
