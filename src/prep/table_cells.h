// The cells of a loaded file as values of fields.
#pragma once

#include "prep/stated_units.h"
#include "prep/table_load.h"
#include "store/schema.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// A text of the file for a message: on one line, and cut.
[[nodiscard]] std::string shown_cell(std::string_view text);

/// Reads numbers in the form of a file.
class NumberCells {
public:
    /// @throws TableFault if a text can't stand for a missing value
    explicit NumberCells(const CellForm& form);

    /// The value of a cell as its field keeps it, NaN for a missing one; nothing if it can't be read.
    /// @param reason why it can't, as a clause without a full stop
    [[nodiscard]] std::optional<double> read(std::string_view cell, const Field& field,
                                             const UnitConversion& conversion, std::string& reason) const;

private:
    [[nodiscard]] bool is_missing_mark(std::string_view text) const;
    [[nodiscard]] std::optional<double> number(std::string_view text) const;
    [[nodiscard]] std::string refusal(std::string_view text, const Field& field) const;

    DecimalSign decimal_;
    std::vector<std::string> marks_;
    std::vector<double> mark_values_;
};

}  // namespace nivora
