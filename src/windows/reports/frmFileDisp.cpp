#include "windows/reports/frmFileDisp.h"

#include "base/calendar.h"
#include "reports/report_choice.h"
#include "reports/report_view.h"
#include "widgets/busy_pointer.h"
#include "widgets/controls.h"
#include "widgets/page_dialogs.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"
#include "windows/reports/report_printing.h"

#include <QAction>
#include <QApplication>
#include <QClipboard>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QHBoxLayout>
#include <QLabel>
#include <QMenu>
#include <QMenuBar>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QResizeEvent>
#include <QScreen>
#include <QScrollBar>
#include <QTextCursor>
#include <QTextDocument>
#include <QVBoxLayout>
#include <utility>

namespace nivora {
namespace {

constexpr int k_help_topic = 10;
constexpr int k_text_help = 1;
constexpr int k_title_help = 2;
constexpr int k_status_help = 3;
constexpr int k_close_help = 4;
constexpr int k_page_breaks_help = 5;
constexpr int k_no_page_breaks_help = 6;
constexpr int k_print_help = 7;
constexpr int k_page_setup_help = 8;
constexpr int k_copy_help = 9;
constexpr int k_first_report_help = 10;
constexpr int k_reports_help = 19;
constexpr int k_all_reports_help = 20;
constexpr int k_help_help = 21;

constexpr int k_all_reports_entry = 10;
constexpr int k_tab_columns = 8;
/// The width of six months and a margin, in characters.
constexpr int k_columns = 127;
constexpr int k_lines = 40;

/// "Courier New", or the nearest fixed-pitch font of the system.
QFont fixed_font() {
    const auto is_fixed_pitch = [](const QFont& font) {
        const QFontMetricsF metrics(font);
        return metrics.horizontalAdvance(QLatin1Char('i')) == metrics.horizontalAdvance(QLatin1Char('M'));
    };
    QFont font(QStringLiteral("Courier New"));
    font.setStyleHint(QFont::TypeWriter);
    font.setFixedPitch(true);
    if (!is_fixed_pitch(font)) font.setFamily(QFontDatabase::systemFont(QFontDatabase::FixedFont).family());
    font.setPointSizeF(QApplication::font().pointSizeF());
    return font;
}

/// Shows lines that are not wrapped. Their layout does not depend on the width of the window, but
/// QPlainTextEdit discards that of all lines at every change of it, and when the window opens.
class UnwrappedText : public QPlainTextEdit {
public:
    using QPlainTextEdit::QPlainTextEdit;

protected:
    void resizeEvent(QResizeEvent* event) override {
        QResizeEvent of_the_same_width(event->size(),
                                       QSize(event->size().width(), event->oldSize().height()));
        QPlainTextEdit::resizeEvent(&of_the_same_width);
    }
};

QPlainTextEdit* make_text(QWidget* parent) {
    auto* text = new UnwrappedText(parent);
    text->setObjectName(QStringLiteral("RichTextBox1"));
    text->setAccessibleName(QStringLiteral("Reports"));
    text->setFont(fixed_font());
    text->setLineWrapMode(QPlainTextEdit::NoWrap);
    text->setReadOnly(true);
    text->setTextInteractionFlags(Qt::TextSelectableByMouse | Qt::TextSelectableByKeyboard);
    text->setTabChangesFocus(true);
    text->setUndoRedoEnabled(false);
    text->setTabStopDistance(k_tab_columns * QFontMetricsF(text->font()).horizontalAdvance(QLatin1Char(' ')));
    NivoraWindow::set_help(text, k_text_help);
    return text;
}

/// Shows a text from its beginning. QPlainTextEdit::setPlainText would go through all lines a second time, to
/// give them the format of its cursor, which takes a fifth of the time.
void fill_view(QPlainTextEdit& view, const QString& text) {
    view.document()->setPlainText(text);
    view.setTextCursor(QTextCursor(view.document()));
}

}  // namespace

frmFileDisp::frmFileDisp(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmFileDisp", WindowNumber::frmFileDisp, parent),
      title_(make_label(QStringLiteral("lblWindow"), QStringLiteral("File Display "), k_title_help, this)),
      text_(make_text(this)) {
    setWindowTitle(QStringLiteral("File Display"));
    title_->setTextFormat(Qt::PlainText);
    title_->setAlignment(Qt::AlignCenter);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->addWidget(title_);
    layout->addWidget(text_, 1);
    auto* foot = new QWidget(this);
    auto* row = new QHBoxLayout(foot);
    auto* close_button = new QPushButton(QStringLiteral("Close"), foot);
    close_button->setObjectName(QStringLiteral("cmdCancel"));
    set_help(close_button, k_close_help);
    row->addStretch(1);
    row->addWidget(close_button);
    set_content(content, foot);
    connect(close_button, &QPushButton::clicked, this, &QWidget::close);
    make_menus();
    explain_status_bar(k_status_help);
    set_first_focus(text_);
    setTabOrder(text_, close_button);
    set_default_button(close_button);
    close_on_escape();
    resize_to_reports();
}

/// Shows six months and forty lines, as far as the screen has room for them.
void frmFileDisp::resize_to_reports() {
    const QFontMetricsF metrics(text_->font());
    const int around = 2 * text_->frameWidth() + text_->verticalScrollBar()->sizeHint().width();
    const QSizeF reports(metrics.horizontalAdvance(QLatin1Char('0')) * k_columns,
                         metrics.lineSpacing() * k_lines);
    const QSize wanted = reports.toSize() + QSize(around + 40, around + 160);
    resize(wanted.boundedTo(screen()->availableGeometry().size() * 0.9));
}

QAction* frmFileDisp::add_entry(QMenu* menu, const QString& name, const QString& caption, int help) {
    QAction* entry = menu->addAction(caption);
    entry->setObjectName(name);
    entry->setProperty(k_help_line, help);
    return entry;
}

/// A menu that opens also while QuickHelp is on, so that its entries can be explained; it then shows its own
/// line.
QMenu* frmFileDisp::add_menu(const QString& name, const QString& caption, int help) {
    QMenu* menu = menuBar()->addMenu(caption);
    menu->setObjectName(name);
    connect(menu, &QMenu::aboutToShow, this, [this, help] {
        if (context().quick_help.is_on()) explain_line(help);
    });
    return menu;
}

void frmFileDisp::make_menus() {
    make_print_menu();
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    edit->setObjectName(QStringLiteral("mnuEdit"));
    connect(add_entry(edit, QStringLiteral("mnuEditItm"), QStringLiteral("&Copy to ClipBoard"), k_copy_help),
            &QAction::triggered, this, &frmFileDisp::copy);
    // Intended: this menu has no entries and is never shown.
    QMenu* view = menuBar()->addMenu(QStringLiteral("View"));
    view->setObjectName(QStringLiteral("mnuView"));
    view->menuAction()->setVisible(false);
    make_report_menu();
    QAction* help = menuBar()->addAction(QStringLiteral("&Help"), this,
                                         [this] { session().desktop.show_help_topic(k_help_topic); });
    help->setObjectName(QStringLiteral("mnuHelp"));
    help->setProperty(k_help_line, k_help_help);
    add_key(*this, Qt::Key_F1, *help);
}

void frmFileDisp::make_print_menu() {
    QMenu* menu = add_menu(QStringLiteral("mnuPrint"), QStringLiteral("Print"), k_print_help);
    QAction* with = add_entry(menu, QStringLiteral("mnuPrintItm(0)"),
                              QStringLiteral("&Print with Page Breaks"), k_page_breaks_help);
    add_key(*this, QKeySequence(Qt::CTRL | Qt::Key_P), *with);
    const QAction* without = add_entry(menu, QStringLiteral("mnuPrintItm(1)"),
                                       QStringLiteral("Print without Page &Breaks"), k_no_page_breaks_help);
    menu->addSeparator()->setObjectName(QStringLiteral("mnuPrintItm(2)"));
    const QAction* page =
        add_entry(menu, QStringLiteral("mnuPrintItm(3)"), QStringLiteral("Page &Setup"), k_page_setup_help);
    connect(with, &QAction::triggered, this, [this] { print_report_file(context(), this, file_, true); });
    connect(without, &QAction::triggered, this, [this] { print_report_file(context(), this, file_, false); });
    connect(page, &QAction::triggered, this, [this] { Page_Setup(session().settings.page, this); });
}

void frmFileDisp::make_report_menu() {
    QMenu* menu = add_menu(QStringLiteral("mnuRpts"), QStringLiteral("&Reports"), k_reports_help);
    const ReportChoice choice(session().basin, session().run);
    for (const Report report : k_all_reports) {
        const int index = static_cast<int>(report);
        QAction* entry = add_entry(menu, QStringLiteral("mnuRptItm(%1)").arg(index),
                                   to_qt(choice.caption(report)), k_first_report_help + index);
        entry->setEnabled(choice.is_enabled(report));
        connect(entry, &QAction::triggered, this, [this, report] { produce({report}); });
    }
    menu->addSeparator();
    connect(add_entry(menu, QStringLiteral("mnuRptItm(%1)").arg(k_all_reports_entry),
                      QStringLiteral("&Print All"), k_all_reports_help),
            &QAction::triggered, this,
            [this] { produce(choosable_reports(session().basin, session().run)); });
}

void frmFileDisp::show_report_file(ReportFile file, const std::string& title) {
    file_ = std::move(file);
    show_file_name(file_.path);
    title_->setText(to_qt(title));
    fill_view(*text_, shown_text());
}

/// The text of the file without marks.
QString frmFileDisp::shown_text() const { return to_qt(shown_report_text(file_.text)); }

/// Shows the new file also if a report was refused: it holds the reports before that one.
void frmFileDisp::produce(const std::vector<Report>& reports) {
    ReportFileOutcome outcome;
    {
        const BusyPointer busy;
        outcome = write_report_file(session(), context().writable_folder(), reports, local_now());
    }
    if (outcome.problem) session().dialogs.message(*outcome.problem);
    if (!outcome.file) return;
    // Intended: the title is that of the reports that were asked for, however many of them were made.
    show_report_file(std::move(*outcome.file),
                     display_title(reports, reported_climate_step(session().basin, session().run)));
}

void frmFileDisp::copy() {
    QTextCursor cursor = text_->textCursor();
    if (!cursor.hasSelection()) {
        QApplication::clipboard()->setText(shown_text());
        return;
    }
    QApplication::clipboard()->setText(
        cursor.selectedText().replace(QChar::ParagraphSeparator, QLatin1Char('\n')));
    cursor.clearSelection();
    text_->setTextCursor(cursor);
}

}  // namespace nivora
