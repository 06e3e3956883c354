// Opening documents with the programs that the user's system has for them.
#pragma once

#include <filesystem>

namespace nivora {

/// Opens a document.
///
/// @return at least `k_document_opened` where that worked, otherwise the reason, which `errmsg` tells in
/// words
[[nodiscard]] int StartDoc(const std::filesystem::path& file);

}  // namespace nivora
