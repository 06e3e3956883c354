// Texts of the model as texts of Qt.
#pragma once

#include <QString>
#include <string_view>

namespace nivora {

[[nodiscard]] inline QString qt_text(std::string_view text) {
    return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}

}  // namespace nivora
