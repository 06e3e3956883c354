// Why a document outside the program could not be opened.
#pragma once

namespace nivora {

// Results of opening a document; values from 33 on mean success.
inline constexpr int k_file_not_found = 2;
inline constexpr int k_access_denied = 5;
inline constexpr int k_no_association = 31;
inline constexpr int k_document_opened = 33;

/// The text of such a result.
[[nodiscard]] const char* errmsg(int code);

}  // namespace nivora
