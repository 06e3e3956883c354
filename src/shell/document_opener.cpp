#include "shell/document_opener.h"

#include "base/durable_file.h"
#include "session/document_reasons.h"
#include "widgets/qt_text.h"

#include <QDesktopServices>
#include <QMimeDatabase>
#include <QProcess>
#include <QStandardPaths>
#include <QUrl>
#include <fstream>

namespace nivora {
namespace {

/// Whether the desktop has no program for a type of document. Its opener would then end without an error, so
/// this is checked first.
bool is_known_to_lack_a_program(const QString& file) {
    constexpr int k_patience_in_ms = 3000;
    const QString asker = QStandardPaths::findExecutable(QStringLiteral("xdg-mime"));
    if (asker.isEmpty()) return false;
    const QString kind = QMimeDatabase().mimeTypeForFile(file, QMimeDatabase::MatchExtension).name();
    QProcess asked;
    asked.start(asker, {QStringLiteral("query"), QStringLiteral("default"), kind});
    return asked.waitForFinished(k_patience_in_ms) && asked.exitCode() == 0 &&
           asked.readAllStandardOutput().trimmed().isEmpty();
}

}  // namespace

int StartDoc(const std::filesystem::path& file) {
    std::error_code unreadable;
    if (!std::filesystem::exists(file, unreadable)) return k_file_not_found;
    if (!std::ifstream{file}) return k_access_denied;
    const QString name = to_qt(path_text(file));
    if (is_known_to_lack_a_program(name)) return k_no_association;
    return QDesktopServices::openUrl(QUrl::fromLocalFile(name)) ? k_document_opened : k_no_association;
}

}  // namespace nivora
