// Which column of a loaded file holds what.
#pragma once

#include "base/units.h"
#include "prep/stated_units.h"
#include "prep/table_load.h"
#include "store/schema.h"

#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace nivora {

/// What is known of the basin and the table before the file is read.
struct LoadTarget {
    std::string table;          ///< as it is stored, or will be
    std::vector<Field> fields;  ///< that a file may give, without the key
    bool monthly = false;       ///< the key is zone and month, otherwise zone and day
    int zones = 0;
    std::vector<std::string> zone_names;
    Units units = Units::NotFixed;  ///< of its values: the basin's, or for parameters the simulation's
};

/// What can be loaded into a table. @throws TableFault for a table that can't be, or a basin without zones
[[nodiscard]] LoadTarget load_target(BasinDatabase& database, const std::string& table);

/// A column with values.
struct ValueColumn {
    std::size_t cell = 0;   ///< its place in a row of the file
    std::size_t field = 0;  ///< in LoadedColumns::fields
    int zone = 0;           ///< 0: the zone of the row
    UnitConversion conversion = {};
};

struct LoadedColumns {
    std::size_t cells = 0;                 ///< in each row
    std::size_t key = 0;                   ///< the cell of the day or the month
    std::optional<std::size_t> zone = {};  ///< the cell of the zone
    int fixed_zone = 0;                    ///< of all rows, if above 0
    std::vector<Field> fields = {};        ///< that the file gives
    std::vector<ValueColumn> values = {};
};

/// The zone that a text names, from 1: by its number, its name in the basin, or its letter; nothing for
/// another text.
[[nodiscard]] std::optional<int> zone_of_text(std::string_view text, const LoadTarget& target);

/// Matches the first row of a file with what is stated. @throws TableFault
[[nodiscard]] LoadedColumns match_columns(std::span<const std::string_view> header, std::size_t line,
                                          const TableLoad& load, const LoadTarget& target);

}  // namespace nivora
