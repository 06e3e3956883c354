// Tables of the open basin from and into CSV files.
#pragma once

#include "prep/table_load.h"
#include "session/session.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace nivora {

/// A table that the user can choose.
struct ChosenTable {
    std::string name;     ///< as it is stored
    std::string caption;  ///< as the user reads it
};

/// The tables that can be loaded: daily variables, monthly averages, and the parameters of each simulation,
/// as far as the working file has them.
[[nodiscard]] std::vector<ChosenTable> loadable_tables(const BasinState& basin);
/// Those of them that the working file has, and the results of the last run if there are any.
[[nodiscard]] std::vector<ChosenTable> writable_tables(const BasinState& basin);

/// The units of a table's values; a simulation's may have changed since the basin was saved.
[[nodiscard]] Units units_of_table(const BasinState& basin, const std::string& table);

/// Why a file can't be read as a table: it is the basin itself, whose locks a second reader would drop, or no
/// regular file. A sentence; empty if it can.
[[nodiscard]] std::string unreadable_table(const BasinState& basin, const std::filesystem::path& file);

/// Asks before results of an earlier run are discarded. @return whether a change of the data may be made
[[nodiscard]] bool results_may_be_lost(Session& session);

/// A file was loaded into a table of the working file: inputs have changed, results are out of date.
void table_was_loaded(Session& session);

/// Writes a table of the working file. @throws FileError, StoreError, with a file that was there unchanged
void write_table(const BasinState& basin, const std::string& table, bool with_units,
                 const std::filesystem::path& file);

}  // namespace nivora
