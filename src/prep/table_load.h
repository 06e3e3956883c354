// A table of daily values, or of the monthly averages, loaded from a CSV file into a basin: wholly or not at
// all.
#pragma once

#include "base/units.h"
#include "prep/csv_reader.h"
#include "prep/date_pattern.h"
#include "store/database.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace nivora {

enum class DecimalSign { Point, Comma };

/// How the cells of a file are written. An empty cell is a missing value in every file.
struct CellForm {
    std::optional<char> separator = {};  ///< found out if not set
    DecimalSign decimal = DecimalSign::Point;
    DatePattern dates = {};
    /// Other texts of a missing value; one that is a number stands for every text of that number.
    std::vector<std::string> missing = {};
};

/// A column of the file that is read, and what it holds.
struct NamedColumn {
    std::string meaning;  ///< `Zone`, `Date`, `Month` or a field; in the wide form also a zone
    std::string header;   ///< in the first row of the file
};

/// The unit in which the file gives a field.
struct StatedUnit {
    std::string field;  ///< empty: the only field that the file has
    std::string unit;
};

/// What a file holds and where it goes.
struct TableLoad {
    std::string table;  ///< `PhysicalData`, `BasinAverages` or a simulation's name
    /// The wide form: the field whose values the file has, a column for each zone. Empty: the long form, with
    /// columns for zone, day and fields.
    std::string wide_field = {};
    /// If empty, columns are known by their headers: in the long form each has to be a field, in the wide
    /// form a zone. A header may end with a unit in brackets. If not empty, columns not named here are left
    /// out, but for `Zone` and `Date`, or `Month`, under these headers.
    std::vector<NamedColumn> columns = {};
    std::string zone = {};  ///< the zone of all rows of a long form without a column `Zone`
    std::vector<StatedUnit> units = {};
    CellForm form = {};
    std::optional<Units> table_units = {};  ///< of the table's values; if not set, as the basin file has it
    bool any_order = false;                 ///< the days of a zone may stand in any order
};

/// A row that can't be loaded.
struct RefusedRow {
    std::size_t line = 0;  ///< of the file, from 1
    std::string reason;    ///< a clause without a full stop
};

/// The most refused rows that a result lists.
inline constexpr std::size_t k_listed_refusals = 100;

/// What became of the rows of a file. A row of the wide form counts once for each of its zones.
struct LoadResult {
    std::int64_t added = 0;    ///< a zone and day that the table did not have
    std::int64_t changed = 0;  ///< at least one value becomes another
    std::int64_t equal = 0;
    std::int64_t refused = 0;
    std::vector<RefusedRow> refusals = {};  ///< the first of them, in the file's order

    [[nodiscard]] bool writes() const { return refused == 0 && added + changed > 0; }
};

/// Why a file as a whole can't be loaded: its line, from 1 or 0 for none, and a clause without a full stop.
class TableFault : public std::runtime_error {
public:
    TableFault(std::size_t line, const std::string& reason) : std::runtime_error(reason), line_(line) {}

    [[nodiscard]] std::size_t line() const { return line_; }

private:
    std::size_t line_;
};

/// Loads a file: adds the zones and days that the table lacks, and changes values of those that it has.
/// Fields that the file does not have stay as they are, and are Null in added rows. If a row is refused,
/// nothing is changed.
///
/// @param keep false: only says what a load would do
/// @throws TableFault, CsvError, FileError, StoreError, with nothing changed
[[nodiscard]] LoadResult load_table(BasinDatabase& database, const ByteSource& source, const TableLoad& load,
                                    bool keep);

}  // namespace nivora
