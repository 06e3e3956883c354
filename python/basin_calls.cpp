#include "base/durable_file.h"
#include "prep/basin_definition.h"
#include "prep/daily_units.h"
#include "prep/table_load.h"
#include "python/calls.h"
#include "python/refusal.h"
#include "store/basin_store.h"
#include "store/daily_columns.h"
#include "store/daily_table.h"
#include "store/schema.h"

#include <pybind11/numpy.h>
#include <pybind11/stl.h>

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace nivora {
namespace {

py::object iso_date(const std::optional<DayCount>& day) {
    return day ? py::object(py::str(iso_date_text(*day))) : py::object(py::none());
}

/// Reads something of a basin, waiting for a program that writes it. The result is no object of Python.
template <typename Work>
auto read(const std::string& path, double wait, Work&& work) {
    const std::filesystem::path file = path_from_utf8(path);
    return patiently(file, wait, [&](std::chrono::milliseconds piece) {
        const OpenBasin open = open_to_read(file, piece, Check::Schema);
        return work(open.database());
    });
}

/// A basin's description and simulations as plain values.
py::dict basin_description(const std::string& path, double wait) {
    const BasinState basin = read(path, wait, [](BasinDatabase& database) {
        BasinState state;
        read_basin(database, state);
        return state;
    });
    py::list zones;
    for (const Zone& zone : basin.zones) {
        py::dict row;
        row["id"] = zone.id;
        row["area"] = zone.area;
        row["elevation"] = zone.elevation;
        zones.append(row);
    }
    py::list simulations;
    for (const Simulation& simulation : basin.simulations) {
        py::dict row;
        row["name"] = simulation.name;
        row["start"] = iso_date(simulation.start);
        row["end"] = iso_date(simulation.end);
        row["initial_runoff"] = simulation.initial_runoff;
        row["comments"] = simulation.comments.value_or("");
        simulations.append(row);
    }
    py::dict description;
    description["name"] = basin.basin_name;
    description["units"] = std::string{unit_words(basin.basin_units).name};
    description["zones"] = zones;
    description["simulations"] = simulations;
    return description;
}

std::vector<std::string> names_of_values(const TableSchema& table) {
    std::vector<std::string> names;
    names.reserve(table.fields.size());
    for (const Field& field : table.fields)
        if (field.name != "Zone" && field.name != "Date") names.push_back(field.name);
    return names;
}

/// The daily variables of every basin, in the order of their table.
std::vector<std::string> daily_variables() {
    for (const TableSchema& table : template_tables()) {
        if (table.name == k_physical_data) return names_of_values(table);
    }
    return {};
}

/// A daily field as it was read.
struct ReadField {
    DailyColumns columns;
    Units units = Units::NotFixed;
};

/// A daily field as a dict of its first day, an array of zone by day and its unit; no rows give no days.
py::dict daily_values(const std::string& path, const std::string& table, const std::string& field,
                      double wait) {
    const ReadField found = read(path, wait, [&](BasinDatabase& database) {
        BasinState basin;
        read_basin(database, basin);
        const RecordExtent extent = scan_daily_table(database, table);
        const std::array<std::string_view, 1> fields{field};
        // A table without rows has no first day; its period is empty.
        const DayCount last = extent.count > 0 ? extent.last : extent.first - 1;
        return ReadField{read_daily_columns(database, table, fields, basin.ZoneCount, extent.first, last),
                         basin.basin_units};
    });
    const DailyColumns& columns = found.columns;
    py::array_t<double> values(
        {static_cast<py::ssize_t>(columns.zones()), static_cast<py::ssize_t>(columns.days())});
    auto cells = values.mutable_unchecked<2>();
    for (int zone = 1; zone <= columns.zones(); ++zone) {
        py::ssize_t day = 0;
        for (const double value : columns.column(zone, 0)) cells(zone - 1, day++) = value;
    }
    py::dict daily;
    daily["first"] = columns.first();
    daily["values"] = values;
    daily["unit"] = daily_unit(field, found.units);
    return daily;
}

/// What the caller says of a table's text.
struct AskedLoad {
    std::string basin = {};
    TableLoad load = {};
    std::string text = {};
    std::optional<std::string> file = {};
    bool keep = true;
    double wait = 0.0;
};

py::dict loaded(const AskedLoad& asked) {
    const std::filesystem::path file = path_from_utf8(asked.basin);
    const LoadResult result = patiently(file, asked.wait, [&](std::chrono::milliseconds piece) {
        const ByteSource source =
            asked.file ? bytes_of_file(path_from_utf8(*asked.file)) : bytes_of_text(asked.text);
        const OpenBasin open = open_to_write(file, piece);
        return load_table(open.database(), source, asked.load, asked.keep);
    });
    py::list refusals;
    for (const RefusedRow& row : result.refusals) refusals.append(py::make_tuple(row.line, row.reason));
    py::dict counts;
    counts["added"] = result.added;
    counts["changed"] = result.changed;
    counts["equal"] = result.equal;
    counts["refused"] = result.refused;
    counts["refusals"] = refusals;
    return counts;
}

using TextPairs = std::vector<std::pair<std::string, std::string>>;

TableLoad table_load(const std::string& table, const std::string& field, const TextPairs& columns,
                     const std::string& zone, const TextPairs& units, const std::vector<std::string>& missing,
                     const std::string& dates, bool decimal_comma, const std::string& separator) {
    TableLoad load{.table = table, .wide_field = field, .zone = zone};
    for (const auto& [meaning, header] : columns) load.columns.push_back({meaning, header});
    for (const auto& [name, unit] : units) load.units.push_back({name, unit});
    load.form.missing = missing;
    if (!separator.empty()) load.form.separator = separator.front();
    load.form.decimal = decimal_comma ? DecimalSign::Comma : DecimalSign::Point;
    if (!dates.empty()) {
        const auto pattern = DatePattern::read(dates);
        if (!pattern) {
            throw TableFault(0, "'" + dates + "' is not a pattern of dates such as DD.MM.YYYY");
        }
        load.form.dates = *pattern;
    }
    return load;
}

std::string definition_of(const std::string& path, double wait) {
    return read(path, wait,
                [](BasinDatabase& database) { return definition_text(stored_definition(database)); });
}

/// The file of a basin in its present state, for another machine.
py::bytes basin_bytes(const std::string& path, double wait) {
    const std::string content = read(path, wait, [](BasinDatabase& database) {
        // A copy: to read the file itself beside the engine would drop the engine's locks.
        const PrivateFolder folder;
        const std::filesystem::path copy = folder.path() / "basin.mdb";
        copy_open_basin(database, copy);
        constexpr std::uintmax_t k_most_bytes = std::uintmax_t{4} << 30;
        return read_whole_file(copy, k_most_bytes);
    });
    return {content};
}

}  // namespace

void add_basin_calls(py::module_& module) {
    module.attr("daily_variables") = daily_variables();
    module.attr("daily_parameters") = names_of_values(parameter_table("simulation"));
    module.attr("physical_table") = std::string{k_physical_data};

    module.def("basin_description", &basin_description, py::arg("path"), py::arg("wait"));
    module.def("daily_values", &daily_values, py::arg("path"), py::arg("table"), py::arg("field"),
               py::arg("wait"));
    module.def("basin_bytes", &basin_bytes, py::arg("path"), py::arg("wait"));
    module.def("definition", &definition_of, py::arg("path"), py::arg("wait"));
    module.def(
        "new_basin",
        [](const std::string& path, const std::string& definition) {
            const py::gil_scoped_release released;
            make_basin(path_from_utf8(path), read_definition(definition));
        },
        py::arg("path"), py::arg("definition"));
    module.def(
        "load",
        [](std::string path, const std::string& table, std::string text, std::optional<std::string> file,
           const std::string& field, const TextPairs& columns, const std::string& zone,
           const TextPairs& units, const std::vector<std::string>& missing, const std::string& dates,
           bool decimal_comma, const std::string& separator, bool any_order, bool keep, double wait) {
            AskedLoad asked{.basin = std::move(path),
                            .load = table_load(table, field, columns, zone, units, missing, dates,
                                               decimal_comma, separator),
                            .text = std::move(text),
                            .file = std::move(file),
                            .keep = keep,
                            .wait = wait};
            asked.load.any_order = any_order;
            return loaded(asked);
        },
        py::arg("path"), py::arg("table"), py::kw_only(), py::arg("text") = "", py::arg("file") = py::none(),
        py::arg("field") = "", py::arg("columns") = TextPairs{}, py::arg("zone") = "",
        py::arg("units") = TextPairs{}, py::arg("missing") = std::vector<std::string>{},
        py::arg("dates") = "", py::arg("decimal_comma") = false, py::arg("separator") = "",
        py::arg("any_order") = false, py::arg("keep") = true, py::arg("wait"));
}

}  // namespace nivora
