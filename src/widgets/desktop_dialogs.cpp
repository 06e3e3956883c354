#include "widgets/desktop_dialogs.h"

#include "base/durable_file.h"
#include "widgets/qt_text.h"

#include <QApplication>
#include <QFileDialog>
#include <QInputDialog>
#include <QMessageBox>

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

}  // namespace

Answer DesktopDialogs::message(const Message& message) {
    QMessageBox box(icon_of(message.icon), to_qt(message.title), to_qt(message.text), QMessageBox::NoButton,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText);
    for (const Answer answer : {Answer::Ok, Answer::Yes, Answer::No, Answer::Cancel}) {
        if (offers(message.buttons, answer)) box.addButton(button_of(answer));
    }
    box.setDefaultButton(button_of(message.default_answer.value_or(go_on_answer(message.buttons))));
    return answer_of(box.exec(), message.buttons);
}

std::optional<std::string> DesktopDialogs::input(const InputBox& box) {
    QInputDialog dialog(QApplication::activeWindow());
    dialog.setWindowTitle(to_qt(box.title));
    dialog.setLabelText(to_qt(box.prompt));
    dialog.setTextValue(to_qt(box.proposed));
    if (dialog.exec() != QDialog::Accepted) return std::nullopt;
    return from_qt(dialog.textValue());
}

std::optional<std::filesystem::path> DesktopDialogs::file(const FileQuestion& question) {
    QFileDialog dialog(QApplication::activeWindow(), to_qt(question.title),
                       to_qt(path_text(question.folder)));
    QStringList patterns;
    for (const std::string& pattern : question.patterns) patterns << to_qt(pattern);
    dialog.setNameFilters(patterns);
    dialog.setAcceptMode(question.saving ? QFileDialog::AcceptSave : QFileDialog::AcceptOpen);
    dialog.setFileMode(question.saving ? QFileDialog::AnyFile : QFileDialog::ExistingFile);
    // The rules of the program ask about replacing a file, in their own words.
    dialog.setOption(QFileDialog::DontConfirmOverwrite);
    if (!question.proposed_name.empty()) dialog.selectFile(to_qt(question.proposed_name));
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty()) return std::nullopt;
    return path_from_utf8(from_qt(dialog.selectedFiles().front()));
}

}  // namespace nivora
