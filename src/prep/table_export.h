// A table of a basin as a CSV file.
#pragma once

#include "base/units.h"
#include "store/database.h"

#include <functional>
#include <optional>
#include <string>
#include <string_view>

namespace nivora {

/// A text as a cell of a CSV file: in quotation marks if necessary, and if it is empty, to distinguish it
/// from a missing value.
[[nodiscard]] std::string csv_text(const std::string& text);

/// Writes a table row by row, so that its size does not matter: a line of field names, then the stored rows,
/// with ISO dates and numbers that read back to the same bits; a missing value is empty.
///
/// @param units the units of the values: each name of a field with a unit gets it in brackets, which a load
/// of the file understands; nothing: plain names
/// @param write takes pieces of the file. @throws StoreError
void write_csv(BasinDatabase& database, const std::string& table, std::optional<Units> units,
               const std::function<void(std::string_view piece)>& write);

}  // namespace nivora
