// A daily table as a NetCDF file holds it, and the module that writes such files: the library takes longer to
// load than most commands take to run.
#pragma once

#include "base/calendar.h"

#include <string>
#include <utility>
#include <vector>

namespace nivora {

using TextAttributes = std::vector<std::pair<std::string, std::string>>;

enum class NetcdfType { Short, Int, Float, Double };

/// A field, zone by date.
struct NetcdfField {
    std::string name = {};
    NetcdfType type = NetcdfType::Float;
    TextAttributes attributes = {};
    /// All days of a zone after those of the zone before; NaN for a missing value. Values that were stored
    /// with fewer bits are exact, so that they get their bits back.
    std::vector<double> values = {};
};

struct NetcdfTable {
    TextAttributes attributes = {};       ///< of the file
    std::vector<std::string> zones = {};  ///< "A", "B", ...
    std::vector<double> areas = {};       ///< by zone
    std::vector<double> elevations = {};  ///< by zone
    TextAttributes area_attributes = {};
    TextAttributes elevation_attributes = {};
    std::vector<DayCount> dates = {};  ///< in order, without a gap
    std::vector<NetcdfField> fields = {};
};

/// The functions of the module, which is built with the program that loads it.
struct NetcdfMethods {
    /// Sets the bytes of a NetCDF-4 file, or the problem that the library told.
    void (*write)(const NetcdfTable& table, std::string& bytes, std::string& problem);
};

/// Loads the module at the first call; it stays loaded. @throws FileError if it can't be loaded
[[nodiscard]] const NetcdfMethods& netcdf_methods();

}  // namespace nivora
