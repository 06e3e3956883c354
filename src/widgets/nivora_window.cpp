#include "widgets/nivora_window.h"

#include "base/durable_file.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QCloseEvent>
#include <QEventLoop>
#include <QLabel>
#include <QPointer>
#include <QScreen>
#include <QStatusBar>
#include <QStyle>
#include <QTextEdit>
#include <QToolBar>
#include <QToolButton>
#include <QVBoxLayout>
#include <QVariant>

namespace nivora {
namespace {

constexpr int k_strip_lines = 4;
constexpr const char* k_leaves_unchecked = "leavesUnchecked";
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

/// A colour whose red stands in the lowest byte.
QColor colour_of(std::int32_t value) { return {value & 0xFF, value >> 8 & 0xFF, value >> 16 & 0xFF}; }

bool interrupts(Qt::FocusReason reason) {
    return reason == Qt::ActiveWindowFocusReason || reason == Qt::PopupFocusReason ||
           reason == Qt::MenuBarFocusReason;
}

}  // namespace

NivoraWindow::NivoraWindow(const WindowContext& context, const char* name, WindowNumber number,
                           QWidget* parent)
    : QMainWindow(parent),
      context_(context),
      number_(static_cast<std::size_t>(number)),
      texts_(Load_QuickHelp(context.program_folder, name)),
      help_button_(new QToolButton(this)),
      strip_(make_strip(this)),
      basin_file_(new QLabel(this)),
      frame_(new QWidget(this)) {
    setObjectName(QString::fromUtf8(name));
    help_button_->setObjectName(QStringLiteral("btnHelp"));
    help_button_->setCheckable(true);
    help_button_->setText(QStringLiteral("QuickHelp"));
    help_button_->setIcon(style()->standardIcon(QStyle::SP_MessageBoxQuestion));
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
    show_quick_help(context_.quick_help.is_on());
}

void NivoraWindow::set_content(QWidget* content) {
    auto* layout = static_cast<QVBoxLayout*>(frame_->layout());
    layout->insertWidget(0, content, 1);
}

void NivoraWindow::show_basin_file() {
    basin_file_->setText(to_qt(path_text(context_.session.basin.Basin_File)));
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
        // Until its layouts know that the strip is gone they keep the window from shrinking.
        frame_->layout()->activate();
        layout()->activate();
        resize(width(), height_before - grown_);
        grown_ = 0;
    }
}

void NivoraWindow::show_text(const std::string& text) {
    const Settings& settings = context_.session.settings;
    QPalette palette = style()->standardPalette();
    if (settings.quick_help_back) palette.setColor(QPalette::Base, colour_of(*settings.quick_help_back));
    if (settings.quick_help_fore) palette.setColor(QPalette::Text, colour_of(*settings.quick_help_fore));
    strip_->setPalette(palette);
    strip_->setPlainText(to_qt(text));
}

void NivoraWindow::explain_widget(QWidget* widget) {
    if (is_help_strip(widget)) return show_text(k_strip_text);
    for (QWidget* at = widget; at != nullptr && at != this; at = at->parentWidget()) {
        const QVariant line = at->property(k_help_line);
        if (line.isValid()) return show_text(texts_.line(line.toInt()));
    }
    show_text(texts_.line(0));
}

void NivoraWindow::explain_line(int line) { show_text(texts_.line(line)); }

void NivoraWindow::explain_menu(int number) { show_text(k_menus_disabled + texts_.menu_text(number)); }

bool NivoraWindow::is_help_button(const QWidget* widget) const { return widget == help_button_; }

bool NivoraWindow::is_help_strip(const QWidget* widget) const {
    return widget == strip_ || strip_->isAncestorOf(widget);
}

QString NivoraWindow::help_text() const { return strip_->toPlainText(); }

void NivoraWindow::refuse(QWidget* element, const Message& message) {
    const QPalette before = element->palette();
    QPalette refused = before;
    refused.setColor(QPalette::Base, QColor::fromRgb(k_refused_colour));
    element->setPalette(refused);
    context_.session.dialogs.message(message);
    element->setPalette(before);
}

bool NivoraWindow::leaves_box(const QEvent* event) const {
    if (context_.quick_help.is_on() || event->type() != QEvent::FocusOut) return false;
    const QWidget* next = QApplication::focusWidget();
    if (next != nullptr && next->property(k_leaves_unchecked).toBool()) return false;
    return !interrupts(static_cast<const QFocusEvent*>(event)->reason());
}

void NivoraWindow::leave_unchecked(QWidget* button) { button->setProperty(k_leaves_unchecked, true); }

bool NivoraWindow::enters_box(const QEvent* event) {
    return event->type() == QEvent::FocusIn && !interrupts(static_cast<const QFocusEvent*>(event)->reason());
}

void NivoraWindow::show_modal() {
    const QPointer<QWidget> before = QApplication::activeWindow();
    setWindowModality(Qt::ApplicationModal);
    QEventLoop loop;
    setAttribute(Qt::WA_DeleteOnClose, false);
    show();
    while (isVisible()) loop.processEvents(QEventLoop::WaitForMoreEvents);
    if (before) before->activateWindow();
}

void NivoraWindow::closeEvent(QCloseEvent* event) {
    if (context_.quick_help.is_on()) {
        show_text(k_close_refused);
        event->ignore();
        return;
    }
    save_position();
    event->accept();
}

void NivoraWindow::showEvent(QShowEvent* event) {
    QMainWindow::showEvent(event);
    if (placed_) return;
    placed_ = true;
    const WindowPlace& place = context_.session.settings.places.at(number_);
    if (!place.top || !place.left) return;
    if (place.width && place.height) resize(*place.width, *place.height);
    const QRect screen_area = screen()->availableGeometry();
    const Corner corner = kept_on_screen({*place.left - screen_area.left(), *place.top - screen_area.top()},
                                         frameGeometry().width(), frameGeometry().height(),
                                         screen_area.width(), screen_area.height());
    move(screen_area.left() + corner.left, screen_area.top() + corner.top);
}

void NivoraWindow::save_position() {
    context_.session.settings.places.at(number_) = {
        .top = pos().y(), .left = pos().x(), .height = height(), .width = width()};
}

}  // namespace nivora
