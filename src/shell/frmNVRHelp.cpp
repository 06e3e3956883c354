#include "shell/frmNVRHelp.h"

#include "base/durable_file.h"
#include "reports/print_texts.h"
#include "reports/text_pages.h"
#include "session/document_reasons.h"
#include "shell/document_opener.h"
#include "shell/help_search.h"
#include "widgets/colours.h"
#include "widgets/printing.h"
#include "widgets/qt_text.h"
#include "widgets/window_keys.h"

#include <QApplication>
#include <QClipboard>
#include <QFontInfo>
#include <QMenuBar>
#include <QTextBrowser>
#include <QTextCursor>
#include <QTextDocumentFragment>
#include <QVBoxLayout>
#include <algorithm>
#include <optional>

namespace nivora {
namespace {

struct Topic {
    int index;
    const char* caption;
    int topic;
};

constexpr std::array<Topic, 18> k_topics{{{0, "Nivora Main Window", 0},
                                          {1, "&Main Window Menu Bar", 98},
                                          {2, "&Edit Simulation Control Information", 2},
                                          {3, "Edit &Basin Variables", 7},
                                          {4, "Edit Simulation &Parameters", 71},
                                          {5, "Simulation Results (data)", 72},
                                          {6, "Simulation Statistics", 8},
                                          {7, "&Climate Change Scenario Definition", 4},
                                          {8, "&Run a Climate Change", 5},
                                          {9, "Long-Term Monthly Averages", 6},
                                          {10, "&Output Definition", 9},
                                          {11, "&File Display", 10},
                                          {12, "Help for (this screen)", 16},
                                          {13, "Output Graphics", 17},
                                          {14, "Graphics", 18},
                                          {15, "Line Attributes", 13},
                                          {16, "Populate Physical Data Table", 3},
                                          {17, "Custom Time Lag Distribution", 12}}};

constexpr const char* k_manual = "Hollin Flow Model (Nivora) Users Manual";
constexpr const char* k_manual_link = "Nivora Users Manual";

QString plain(const char* caption) { return QString::fromUtf8(caption).remove(QLatin1Char('&')); }

/// Makes the first mention of the manual a link.
void mark_link(QTextDocument& page) {
    QTextCursor mention = page.find(QString::fromUtf8(k_manual_link), 0, QTextDocument::FindCaseSensitively);
    if (mention.isNull()) return;
    QTextCharFormat link;
    link.setAnchor(true);
    link.setAnchorHref(QStringLiteral("manual"));
    const QPalette palette = QApplication::palette();
    link.setForeground(readable_on(palette.color(QPalette::Link), palette.color(QPalette::Base)));
    link.setFontUnderline(true);
    mention.mergeCharFormat(link);
}

}  // namespace

frmNVRHelp::frmNVRHelp(const WindowContext& context, QWidget* parent)
    : NivoraWindow(context, "frmNVRHelp", WindowNumber::frmNVRHelp, parent),
      text_(new QTextBrowser(this)),
      search_(new HelpSearch(this)) {
    text_->setObjectName(QStringLiteral("txtHelp"));
    text_->setAccessibleName(QStringLiteral("Help text"));
    text_->setOpenLinks(false);
    set_help(text_, 1);
    auto* content = new QWidget(this);
    auto* layout = new QVBoxLayout(content);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(text_, 1);
    layout->addWidget(search_);
    set_content(content);
    set_first_focus(text_);
    make_menus();
    add_keys();
    close_on_escape();
    connect(text_, &QTextBrowser::anchorClicked, this, [this] { show_manual(); });
    resize(720, 620);
}

void frmNVRHelp::make_menus() {
    QMenu* file = menuBar()->addMenu(QStringLiteral("&File"));
    QAction* printing = file->addAction(QStringLiteral("&Print"), this, [this] { print(); });
    printing->setObjectName(QStringLiteral("mnuPrint"));
    printing->setProperty(k_help_line, 2);
    QAction* close_action = file->addAction(QStringLiteral("&Close"), this, &QWidget::close);
    close_action->setObjectName(QStringLiteral("mnuClose"));
    close_action->setProperty(k_help_line, 3);
    QMenu* edit = menuBar()->addMenu(QStringLiteral("&Edit"));
    QAction* copying = edit->addAction(QStringLiteral("&Copy to Clipboard"), this, [this] { copy(); });
    copying->setObjectName(QStringLiteral("mnuCopy"));
    copying->setProperty(k_help_line, 6);
    QAction* fonts = menuBar()->addAction(QStringLiteral("F&onts"), this, [this] {
        if (!fonts_.Choose_Font(text_->font(), this).text.isEmpty()) text_->setFont(fonts_.font());
    });
    fonts->setObjectName(QStringLiteral("mnuFonts"));
    fonts->setProperty(k_help_line, 4);
    QMenu* topics = menuBar()->addMenu(QStringLiteral("&Help for..."));
    for (const Topic& topic : k_topics) {
        QAction* action = topics->addAction(QString::fromUtf8(topic.caption), this,
                                            [this, number = topic.topic] { show_topic(number); });
        action->setObjectName(QStringLiteral("mnuHlpItm(%1)").arg(topic.index));
        action->setProperty(k_help_line, 5);
    }
    topics->addSeparator();
    QAction* manual = topics->addAction(QString::fromUtf8(k_manual), this, [this] { show_manual(); });
    manual->setObjectName(QStringLiteral("mnuHlpItm(19)"));
    manual->setProperty(k_help_line, 7);
}

void frmNVRHelp::add_keys() {
    add_key(*this, QKeySequence(Qt::CTRL | Qt::Key_P), *findChild<QAction*>(QStringLiteral("mnuPrint")));
    add_key(*this, Qt::Key_F1, *findChild<QAction*>(QStringLiteral("mnuHlpItm(12)")));
    const auto add = [this](const QKeySequence& keys, auto act) {
        connect(new_window_key(*this, keys), &QAction::triggered, this, act);
    };
    add(QKeySequence(Qt::CTRL | Qt::Key_F), [this] { search_->open(); });
    add(Qt::Key_F3, [this] { find(false); });
    add(QKeySequence(Qt::SHIFT | Qt::Key_F3), [this] { find(true); });
    connect(search_, &HelpSearch::asked, this, &frmNVRHelp::find);
    connect(search_, &HelpSearch::closed, text_, [this] { text_->setFocus(); });
}

void frmNVRHelp::show_topic(int topic) {
    topic_ = topic;
    QString name = QStringLiteral("Nivora");
    for (const Topic& known : k_topics) {
        if (known.topic == topic) name = plain(known.caption);
    }
    setWindowTitle(QStringLiteral("Help for ") + name);
    // New text would inherit the format of the text before it.
    text_->clear();
    text_->setCurrentCharFormat({});
    text_->setPlainText(to_qt(Help_Text(context().program_folder, topic)));
    mark_link(*text_->document());
}

/// Selects the next place after the selection, or the first one, or the same backward.
bool frmNVRHelp::find_in_page(bool backward, bool from_end) {
    QTextCursor from = text_->textCursor();
    if (from_end) from.movePosition(backward ? QTextCursor::End : QTextCursor::Start);
    const QTextDocument::FindFlags flags =
        backward ? QTextDocument::FindBackward : QTextDocument::FindFlags{};
    const QTextCursor found = text_->document()->find(search_->wanted(), from, flags);
    if (found.isNull()) return false;
    text_->setTextCursor(found);
    return true;
}

/// The nearest topic of the menu after the shown one, or before it, that has the text; nothing if no other
/// has.
std::optional<int> frmNVRHelp::other_topic_with(const QString& wanted, bool backward) {
    const auto shown = std::find_if(k_topics.begin(), k_topics.end(),
                                    [this](const Topic& topic) { return topic.topic == topic_; });
    const std::size_t count = k_topics.size();
    const std::size_t at = shown == k_topics.end() ? 0 : static_cast<std::size_t>(shown - k_topics.begin());
    for (std::size_t step = 1; step < count; ++step) {
        const Topic& topic = k_topics.at((at + (backward ? count - step : step)) % count);
        const QString text = to_qt(Help_Text(context().program_folder, topic.topic));
        if (text.contains(wanted, Qt::CaseInsensitive)) return topic.topic;
    }
    return std::nullopt;
}

/// Goes on in the other topics, since a user seldom knows which one tells what he looks for.
void frmNVRHelp::find(bool backward) {
    const QString wanted = search_->wanted();
    if (wanted.isEmpty()) return search_->open();
    search_->show_outcome({});
    if (find_in_page(backward, false)) return;
    if (const auto topic = other_topic_with(wanted, backward)) {
        show_topic(*topic);
        search_->show_outcome(QStringLiteral("In another topic"));
        static_cast<void>(find_in_page(backward, true));
    } else if (!find_in_page(backward, true)) {
        search_->show_outcome(QStringLiteral("Not found in any topic"));
    }
}

void frmNVRHelp::copy() {
    const QString selected = text_->textCursor().selection().toPlainText();
    QApplication::clipboard()->setText(selected.isEmpty() ? text_->toPlainText() : selected);
    QTextCursor cursor = text_->textCursor();
    cursor.clearSelection();
    text_->setTextCursor(cursor);
}

/// Prints the current topic in the font of the window.
void frmNVRHelp::print() {
    const QFontInfo font(text_->font());
    context().printing.print_text(this,
                                  {.text = from_qt(text_->toPlainText()),
                                   .title = from_qt(windowTitle()),
                                   .name = k_print_job_name,
                                   .font = {.family = from_qt(font.family()), .points = font.pointSizeF()}});
}

void frmNVRHelp::show_manual() {
    std::array<QString, 2> reasons;
    std::optional<std::filesystem::path> unopened;
    std::size_t at = 0;
    for (const char* ending : {".doc", ".pdf"}) {
        const auto file = context().program_folder / (std::string{k_manual} + ending);
        const int result = StartDoc(file);
        if (result >= k_document_opened) return;
        if (result == k_no_association) unopened = file;
        reasons.at(at++) = QString::fromUtf8(errmsg(result));
    }
    tell_unavailable(reasons, unopened);
}

/// Says why the manual did not open, and its path if only a program for it is missing.
void frmNVRHelp::tell_unavailable(const std::array<QString, 2>& reasons,
                                  const std::optional<std::filesystem::path>& unopened) {
    Message message{.text = from_qt(QStringLiteral("The Nivora Users Manual is unavailable for the following "
                                                   "reasons: \n\nMicrosoft Word version:\t%1\n"
                                                   "Adobe .pdf version:    \t%2")
                                        .arg(reasons[0], reasons[1])),
                    .title = "Unable to access the Nivora Users Manual"};
    if (unopened) {
        message.text +=
            "\n\nThe manual is in this file:\n" + path_text(*unopened) +
            "\n\nCopy this path to the clipboard, to open the manual with a program of your choice?";
        message.buttons = Buttons::YesNo;
    }
    if (session().dialogs.message(message) == Answer::Yes)
        QApplication::clipboard()->setText(to_qt(path_text(*unopened)));
}

}  // namespace nivora
