#include "widgets/desktop_dialogs.h"

#include "base/durable_file.h"
#include "widgets/busy_pointer.h"
#include "widgets/caller.h"
#include "widgets/qt_text.h"

#include <QCloseEvent>
#include <QFileDialog>
#include <QGridLayout>
#include <QInputDialog>
#include <QKeyEvent>
#include <QLineEdit>
#include <QMessageBox>
#include <QPushButton>
#include <QScreen>
#include <QStyle>

namespace nivora {
namespace {

QMessageBox::Icon icon_of(Icon icon) {
    switch (icon) {
        case Icon::Stop: return QMessageBox::Critical;
        case Icon::Question: return QMessageBox::Question;
        case Icon::Warning: return QMessageBox::Warning;
        case Icon::Information: return QMessageBox::Information;
        case Icon::None: break;
    }
    return QMessageBox::NoIcon;
}

QMessageBox::StandardButton button_of(Answer answer) {
    switch (answer) {
        case Answer::Cancel: return QMessageBox::Cancel;
        case Answer::Yes: return QMessageBox::Yes;
        case Answer::No: return QMessageBox::No;
        case Answer::Ok: break;
    }
    return QMessageBox::Ok;
}

Answer answer_of(int button, Buttons buttons) {
    switch (button) {
        case QMessageBox::Ok: return Answer::Ok;
        case QMessageBox::Yes: return Answer::Yes;
        case QMessageBox::No: return Answer::No;
        case QMessageBox::Cancel: return Answer::Cancel;
        default: return refusing_answer(buttons);
    }
}

/// The width at which the title bar of a box shows its whole title beside the title bar's buttons, but at
/// most the screen's width.
int width_of_title(const QDialog& box) {
    constexpr int k_title_buttons = 6;
    QFont font = box.font();
    font.setBold(true);
    const int bar = box.style()->pixelMetric(QStyle::PM_TitleBarHeight);
    const int wanted = QFontMetrics(font).horizontalAdvance(box.windowTitle()) + k_title_buttons * bar;
    return std::min(wanted, box.screen()->availableGeometry().width() - bar);
}

/// The box is as wide as its layout requires, so a spacer as wide as its title is added to it.
void make_room_for_title(QMessageBox& box) {
    if (auto* layout = qobject_cast<QGridLayout*>(box.layout())) {
        layout->addItem(new QSpacerItem(width_of_title(box), 0, QSizePolicy::Minimum, QSizePolicy::Fixed),
                        layout->rowCount(), 0, 1, layout->columnCount());
    }
}

/// A box that Escape and its close control close without any of its buttons.
class ChoiceBox : public QMessageBox {
public:
    using QMessageBox::QMessageBox;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (event->matches(QKeySequence::Cancel)) return reject();
        QMessageBox::keyPressEvent(event);
    }
    void closeEvent(QCloseEvent* event) override { QDialog::closeEvent(event); }
};

/// The pattern that is selected in a dialog.
std::size_t selected_pattern(const QFileDialog& dialog, const FileQuestion& question) {
    // Some versions of Qt give the caption alone, as the dialog shows it.
    const QString selected = dialog.selectedNameFilter();
    for (std::size_t pattern = 0; pattern < question.patterns.size(); ++pattern) {
        const std::string& caption = question.patterns[pattern];
        if (selected == to_qt(caption) || selected == name_filter(caption)) return pattern;
    }
    return question.pattern;
}

/// Selects the pattern of an ending that the user types. The dialog itself gives the name the ending of a
/// pattern that the user selects.
void let_endings_select(QFileDialog& dialog, const FileQuestion& question) {
    auto* name = dialog.findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    if (name == nullptr) return;
    QObject::connect(name, &QLineEdit::textEdited, &dialog, [&dialog, &question, name](const QString& text) {
        const auto typed = pattern_of_name(question.patterns, path_from_utf8(from_qt(text)));
        if (!typed || *typed == selected_pattern(dialog, question)) return;
        const int cursor = name->cursorPosition();
        dialog.selectNameFilter(name_filter(question.patterns[*typed]));
        // The dialog has just written the ending anew, in lower case.
        name->setText(text);
        name->setCursorPosition(cursor);
    });
}

}  // namespace

QString name_filter(const std::string& caption) {
    const QString text = to_qt(caption);
    const auto open = text.lastIndexOf(QLatin1Char('('));
    const auto close = text.lastIndexOf(QLatin1Char(')'));
    if (open < 0 || close < open) return text;
    QStringList patterns;
    for (const QString& shown :
         text.mid(open + 1, close - open - 1).split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
        const QString pattern = shown == QStringLiteral("*.*") ? QStringLiteral("*") : shown;
        patterns << pattern.toLower() << pattern.toUpper();
    }
    patterns.removeDuplicates();
    return QStringLiteral("%1 (%2)").arg(text, patterns.join(QLatin1Char(' ')));
}

Answer DesktopDialogs::message(const Message& message) {
    const BusyPause pause;
    QMessageBox box(icon_of(message.icon), to_qt(message.title), to_qt(message.text), QMessageBox::NoButton,
                    calling_window());
    box.setTextFormat(Qt::PlainText);
    for (const Answer answer : {Answer::Ok, Answer::Yes, Answer::No, Answer::Cancel}) {
        if (offers(message.buttons, answer)) box.addButton(button_of(answer));
    }
    box.setDefaultButton(button_of(message.default_answer.value_or(go_on_answer(message.buttons))));
    make_room_for_title(box);
    return answer_of(box.exec(), message.buttons);
}

std::optional<std::size_t> DesktopDialogs::choose(const Choice& choice) {
    const BusyPause pause;
    ChoiceBox box(icon_of(choice.icon), to_qt(choice.title), to_qt(choice.text), QMessageBox::NoButton,
                  calling_window());
    box.setTextFormat(Qt::PlainText);
    QList<QAbstractButton*> buttons;
    // One role for all keeps their order.
    for (const std::string& caption : choice.buttons)
        buttons << box.addButton(to_qt(caption), QMessageBox::ActionRole);
    if (auto* first = qobject_cast<QPushButton*>(buttons.value(0))) box.setDefaultButton(first);
    make_room_for_title(box);
    box.exec();
    const auto index = buttons.indexOf(box.clickedButton());
    if (index < 0) return std::nullopt;
    return static_cast<std::size_t>(index);
}

std::optional<std::string> DesktopDialogs::input(const InputBox& box) {
    const BusyPause pause;
    QInputDialog dialog(calling_window());
    dialog.setWindowTitle(to_qt(box.title));
    dialog.setLabelText(to_qt(box.prompt));
    dialog.setTextValue(to_qt(box.proposed));
    dialog.setMinimumWidth(width_of_title(dialog));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return from_qt(dialog.textValue());
}

std::optional<FileAnswer> DesktopDialogs::file(const FileQuestion& question) {
    const BusyPause pause;
    QFileDialog dialog(calling_window(), to_qt(question.title), to_qt(path_text(question.folder)));
    QStringList filters;
    for (const std::string& caption : question.patterns) filters << name_filter(caption);
    // Not every dialog of a system lets the ending of the name follow the filter.
    dialog.setOption(QFileDialog::DontUseNativeDialog, question.pattern_decides);
    // The dialog shows the filter without its last parentheses, which is the caption.
    dialog.setOption(QFileDialog::HideNameFilterDetails);
    dialog.setNameFilters(filters);
    dialog.setAcceptMode(question.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(question.saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // The rules of the program ask about replacing a file, in their own words.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (question.pattern < question.patterns.size())
        dialog.selectNameFilter(filters[static_cast<qsizetype>(question.pattern)]);
    if (!question.proposed_name.empty()) dialog.selectFile(to_qt(question.proposed_name));
    if (question.pattern_decides) let_endings_select(dialog, question);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return FileAnswer{path_from_utf8(from_qt(dialog.selectedFiles().front())),
                      selected_pattern(dialog, question)};
}

}  // namespace nivora
