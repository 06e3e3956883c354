// A look at a file before it is loaded: its first rows, and what its columns seem to hold.
#pragma once

#include "prep/table_load.h"
#include "store/database.h"

#include <cstddef>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// The first rows of a file as a reader with a separator takes them.
struct TableSample {
    char separator = ',';
    std::vector<std::string> headers = {};
    std::vector<std::vector<std::string>> rows = {};  ///< a row may have fewer or more cells than the headers
    std::string fault = {};  ///< why the reading ended: a sentence; empty if it did not
};

/// Reads the headers and at most this many rows. @throws FileError
[[nodiscard]] TableSample read_sample(const ByteSource& source, std::optional<char> separator,
                                      std::size_t rows);

/// What the columns of a file may be for a table.
struct ColumnMeanings {
    std::vector<std::string> keys = {};    ///< `Zone` and `Date`, or `Month`; in the wide form without `Zone`
    std::vector<std::string> values = {};  ///< fields; in the wide form the letters of zones
};
/// @param wide whether each zone has a column. @throws TableFault for a table that can't be loaded
[[nodiscard]] ColumnMeanings column_meanings(BasinDatabase& database, const std::string& table, bool wide);

/// The fields that a table takes from a file. @throws TableFault
[[nodiscard]] std::vector<std::string> loaded_fields(BasinDatabase& database, const std::string& table);

/// A column of the file and what the user says of it.
struct ColumnChoice {
    std::string header = {};
    std::string meaning = {};  ///< one of the meanings; empty: it is not read
    std::string unit = {};     ///< stated; empty: that of the basin, or the one in brackets behind the header

    bool operator==(const ColumnChoice&) const = default;
};

/// What the headers say: the meaning that each of them names, in any case of letters, without a unit in
/// brackets; none for any other header.
[[nodiscard]] std::vector<ColumnChoice> guessed_columns(const TableSample& sample,
                                                        const ColumnMeanings& meanings);

/// Puts the choices into what is to be loaded: the columns and the units.
void state_columns(TableLoad& load, const std::vector<ColumnChoice>& choices);

}  // namespace nivora
