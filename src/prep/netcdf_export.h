// A daily table of a basin as a NetCDF file, by the conventions for climate and forecast data (CF 1.8).
#pragma once

#include "prep/netcdf_table.h"
#include "store/database.h"

#include <optional>
#include <string>

namespace nivora {

/// What the file should say of results, which the basin does not tell itself.
struct NetcdfOrigin {
    std::optional<std::string> simulation = {};
    std::optional<std::string> run = {};  ///< such as "Year round Simulation"
};

/// Reads a daily table: the basin's variables, a simulation's parameters, or results. The file has a
/// dimension `zone`, with the letters, areas and elevations of the zones, and a dimension `date`, with all
/// days of the record; each field is zone by date. A missing value, and a day that a zone lacks, is the fill
/// value.
///
/// @throws StoreError, also for a table without zones and days
[[nodiscard]] NetcdfTable netcdf_table(BasinDatabase& database, const std::string& table,
                                       const NetcdfOrigin& origin);

/// The bytes of a file. @throws FileError if the module can't be loaded or the library refuses
[[nodiscard]] std::string netcdf_bytes(const NetcdfTable& table);

}  // namespace nivora
