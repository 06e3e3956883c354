// Conversions between the program's UTF-8 texts and Qt.
#pragma once

#include <QString>
#include <filesystem>
#include <string>

namespace nivora {

[[nodiscard]] inline QString to_qt(const std::string& text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

[[nodiscard]] inline std::string from_qt(const QString& text) { return text.toStdString(); }

}  // namespace nivora
