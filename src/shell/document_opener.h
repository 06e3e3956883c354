// Opening documents with the programs that the user's system has for them.
#pragma once

#include <filesystem>

namespace nivora {

/// Opens a document.
///
/// @return at least `k_document_opened` if it was opened, otherwise the number
/// of the reason, whose text is `errmsg`
[[nodiscard]] int StartDoc(const std::filesystem::path& file);

}  // namespace nivora
