// The module: the library of NetCDF behind a plain function.
#include "base/version.h"
#include "prep/netcdf_table.h"

#include <netcdf.h>
#include <netcdf_mem.h>

#include <cmath>
#include <cstdint>
#include <cstdlib>
#include <limits>
#include <stdexcept>

namespace nivora {
namespace {

/// Throws what the library says of a call that failed.
void check(int status) {
    if (status != NC_NOERR) throw std::runtime_error(nc_strerror(status));
}

void put_texts(int file, int variable, const TextAttributes& attributes) {
    for (const auto& [name, text] : attributes)
        check(nc_put_att_text(file, variable, name.c_str(), text.size(), text.data()));
}

/// A file in memory, which the library keeps until it is closed.
class MemoryFile {
public:
    MemoryFile() {
        constexpr std::size_t k_first_size = std::size_t{1} << 20;
        check(nc_create_mem("table.nc", NC_NETCDF4, k_first_size, &id_));
    }
    MemoryFile(const MemoryFile&) = delete;
    MemoryFile& operator=(const MemoryFile&) = delete;
    ~MemoryFile() {
        if (id_ >= 0) nc_abort(id_);
    }

    [[nodiscard]] int id() const { return id_; }

    /// Closes the file and hands its bytes over.
    [[nodiscard]] std::string close() {
        NC_memio memory{};
        check(nc_close_memio(id_, &memory));
        id_ = -1;
        std::string bytes{static_cast<const char*>(memory.memory), memory.size};
        std::free(memory.memory);  // the library took it by malloc
        return bytes;
    }

private:
    int id_ = -1;
};

/// The dimensions of a file.
struct Dimensions {
    int zone = 0;
    int date = 0;
};

int put_numbers(int file, const char* name, int dimension, const std::vector<double>& values,
                const TextAttributes& attributes) {
    int variable = 0;
    check(nc_def_var(file, name, NC_DOUBLE, 1, &dimension, &variable));
    const double fill = std::numeric_limits<double>::quiet_NaN();
    check(nc_def_var_fill(file, variable, NC_FILL, &fill));
    put_texts(file, variable, attributes);
    if (!values.empty()) check(nc_put_var_double(file, variable, values.data()));
    return variable;
}

Dimensions put_axes(int file, const NetcdfTable& table) {
    Dimensions dimensions;
    check(nc_def_dim(file, "zone", table.zones.size(), &dimensions.zone));
    check(nc_def_dim(file, "date", table.dates.size(), &dimensions.date));
    int zone = 0;
    check(nc_def_var(file, "zone", NC_STRING, 1, &dimensions.zone, &zone));
    put_texts(file, zone, {{"long_name", "elevation zone, from the lowest"}, {"cf_role", "timeseries_id"}});
    std::vector<const char*> letters;
    letters.reserve(table.zones.size());
    for (const std::string& letter : table.zones) letters.push_back(letter.c_str());
    if (!letters.empty()) check(nc_put_var_string(file, zone, letters.data()));

    int date = 0;
    check(nc_def_var(file, "date", NC_INT, 1, &dimensions.date, &date));
    put_texts(file, date,
              {{"long_name", "day"},
               {"standard_name", "time"},
               {"axis", "T"},
               {"units", "days since 1899-12-30"},
               {"calendar", "standard"}});
    const std::vector<int> days(table.dates.begin(), table.dates.end());
    if (!days.empty()) check(nc_put_var_int(file, date, days.data()));
    put_numbers(file, "area", dimensions.zone, table.areas, table.area_attributes);
    put_numbers(file, "elevation", dimensions.zone, table.elevations, table.elevation_attributes);
    return dimensions;
}

/// Whole numbers with a fill value for those that are missing.
template <typename Number, typename Put>
void put_whole_numbers(const std::vector<double>& values, Number fill, Put put) {
    std::vector<Number> numbers;
    numbers.reserve(values.size());
    for (const double value : values)
        numbers.push_back(std::isnan(value) ? fill : static_cast<Number>(value));
    check(put(numbers.data()));
}

void put_field(int file, const Dimensions& dimensions, const NetcdfField& field) {
    constexpr std::int16_t k_no_short = NC_FILL_SHORT;
    constexpr std::int32_t k_no_int = NC_FILL_INT;
    const float no_float = std::numeric_limits<float>::quiet_NaN();
    const double no_double = std::numeric_limits<double>::quiet_NaN();
    nc_type type = NC_FLOAT;
    const void* fill = &no_float;
    switch (field.type) {
        case NetcdfType::Short: type = NC_SHORT, fill = &k_no_short; break;
        case NetcdfType::Int: type = NC_INT, fill = &k_no_int; break;
        case NetcdfType::Double: type = NC_DOUBLE, fill = &no_double; break;
        case NetcdfType::Float: break;
    }
    const int axes[]{dimensions.zone, dimensions.date};
    int variable = 0;
    check(nc_def_var(file, field.name.c_str(), type, 2, axes, &variable));
    check(nc_def_var_fill(file, variable, NC_FILL, fill));
    put_texts(file, variable, field.attributes);
    put_texts(file, variable, {{"coordinates", "area elevation"}});
    if (field.values.empty()) return;
    if (field.type == NetcdfType::Short) {
        put_whole_numbers(field.values, k_no_short, [&](const std::int16_t* numbers) {
            return nc_put_var_short(file, variable, numbers);
        });
    } else if (field.type == NetcdfType::Int) {
        put_whole_numbers(field.values, k_no_int, [&](const std::int32_t* numbers) {
            return nc_put_var_int(file, variable, numbers);
        });
    } else {
        check(nc_put_var_double(file, variable, field.values.data()));
    }
}

void write(const NetcdfTable& table, std::string& bytes, std::string& problem) {
    try {
        MemoryFile file;
        put_texts(file.id(), NC_GLOBAL, table.attributes);
        const Dimensions dimensions = put_axes(file.id(), table);
        for (const NetcdfField& field : table.fields) put_field(file.id(), dimensions, field);
        bytes = file.close();
    } catch (const std::exception& error) {
        problem = error.what();
    }
}

constexpr NetcdfMethods k_methods{.write = write};

}  // namespace
}  // namespace nivora

extern "C" {

const char* nivora_module_version();
const char* nivora_module_version() { return nivora::k_version; }

const nivora::NetcdfMethods* nivora_netcdf_methods();
const nivora::NetcdfMethods* nivora_netcdf_methods() { return &nivora::k_methods; }
}
