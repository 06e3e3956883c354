// The Python module nivora._core: the calls that the package in python/nivora is made of.
#include "base/durable_file.h"
#include "base/version.h"
#include "engine/batch_dialogs.h"
#include "engine/named_run.h"
#include "engine/results_store.h"
#include "engine/results_summary.h"
#include "prep/daily_units.h"
#include "store/daily_columns.h"
#include "store/daily_table.h"
#include "store/schema.h"
#include "store/store_error.h"

#include <pybind11/numpy.h>
#include <pybind11/pybind11.h>
#include <pybind11/stl.h>

#include <array>
#include <chrono>
#include <cstdint>
#include <optional>
#include <sstream>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace py = pybind11;

namespace nivora {
namespace {

constexpr std::array<const char*, 6> k_statistics_keys{"MeasuredVolume", "AvgMeasuredQ",     "ComputedVolume",
                                                       "AvgComputedQ",   "VolumeDifference", "CoefficientR2"};

std::chrono::milliseconds milliseconds(double seconds) {
    constexpr double k_per_second = 1000.0;
    return std::chrono::milliseconds{static_cast<std::int64_t>(seconds * k_per_second)};
}

py::object iso_date(const std::optional<DayCount>& day) {
    return day ? py::object(py::str(iso_date_text(*day))) : py::object(py::none());
}

/// A basin's description and simulations as plain values.
py::dict basin_description(const std::string& path, double wait) {
    BasinState basin;
    {
        const py::gil_scoped_release released;
        const OpenBasin open = open_to_read(path_from_utf8(path), milliseconds(wait), Check::Schema);
        read_basin(open.database(), basin);
    }
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

/// The daily variables of every basin, in the order of their table.
std::vector<std::string> daily_variables() {
    std::vector<std::string> names;
    for (const TableSchema& table : template_tables()) {
        if (table.name != k_physical_data) continue;
        names.reserve(table.fields.size());
        for (const Field& field : table.fields)
            if (field.name != "Zone" && field.name != "Date") names.push_back(field.name);
    }
    return names;
}

/// A daily variable as a dict of its first day, an array of zone by day and its unit; no rows give no days.
py::dict daily_values(const std::string& path, const std::string& variable, double wait) {
    std::optional<DailyColumns> columns;
    Units units = Units::NotFixed;
    {
        const py::gil_scoped_release released;
        const OpenBasin open = open_to_read(path_from_utf8(path), milliseconds(wait), Check::Schema);
        BasinState basin;
        read_basin(open.database(), basin);
        units = basin.basin_units;
        const RecordExtent extent = scan_daily_table(open.database(), k_physical_data);
        const std::array<std::string_view, 1> fields{variable};
        // A table without rows has no first day; its period is empty.
        const DayCount last = extent.count > 0 ? extent.last : extent.first - 1;
        columns =
            read_daily_columns(open.database(), k_physical_data, fields, basin.ZoneCount, extent.first, last);
    }
    const auto days = static_cast<py::ssize_t>(columns->days());
    py::array_t<double> values({static_cast<py::ssize_t>(columns->zones()), days});
    auto cells = values.mutable_unchecked<2>();
    for (int zone = 1; zone <= columns->zones(); ++zone) {
        py::ssize_t day = 0;
        for (const double value : columns->column(zone, 0)) cells(zone - 1, day++) = value;
    }
    py::dict daily;
    daily["first"] = columns->first();
    daily["values"] = values;
    daily["unit"] = daily_unit(variable, units);
    return daily;
}

/// What a run was asked for.
struct AskedRun {
    std::string basin = {};
    std::string simulation = {};
    bool year_round = false;
    std::optional<std::string> forecast = {};
    bool no_snow = false;
    std::vector<std::string> lag_shares = {};
    bool refuse = false;
    double wait = 0.0;
};

/// A run and all that it left.
struct DoneRun {
    BasinState basin = {};
    RunState run = {};
    RunOutcome outcome = {};
    std::optional<SimResults> results = {};
    std::vector<ReportedMessage> messages = {};
    bool refused = false;
};

DoneRun run_asked(const AskedRun& asked) {
    DoneRun done;
    SimResults table;
    std::ostringstream report;
    BatchDialogs dialogs{report, asked.refuse};
    if (asked.forecast) dialogs.prepare_input(*asked.forecast);
    done.outcome =
        run_by_name({.basin = path_from_utf8(asked.basin),
                     .simulation = asked.simulation,
                     .choice = {.forecast = asked.forecast.has_value(), .index = asked.year_round ? 1 : 0},
                     .no_snow = asked.no_snow,
                     .lag_shares = asked.lag_shares,
                     .wait = milliseconds(asked.wait)},
                    {done.basin, done.run, dialogs}, &table);
    if (done.outcome.results_rebuilt) done.results = std::move(table);
    done.messages = dialogs.messages();
    done.refused = dialogs.was_refused();
    return done;
}

/// A column as an array that owns its values.
template <typename Value>
py::array column_array(const std::vector<Value>& column) {
    if constexpr (std::is_floating_point_v<Value> || std::is_same_v<Value, std::int16_t>) {
        return py::array_t<Value>(static_cast<py::ssize_t>(column.size()), column.data());
    } else {
        py::array_t<std::int64_t> array(static_cast<py::ssize_t>(column.size()));
        auto values = array.template mutable_unchecked<1>();
        for (std::size_t i = 0; i < column.size(); ++i)
            values(static_cast<py::ssize_t>(i)) = static_cast<std::int64_t>(column[i]);
        return array;
    }
}

py::dict done_as_dict(const DoneRun& done) {
    const Units units = done.basin.Units_Code;
    py::dict statistics;
    const auto values = statistics_values(done.run);
    for (std::size_t i = 0; i < values.size(); ++i) statistics[k_statistics_keys.at(i)] = values.at(i);
    statistics["FinalQ"] =
        done.outcome.completed ? py::object(py::float_(done.run.FinalQ[0])) : py::object(py::none());

    py::list messages;
    for (const ReportedMessage& message : done.messages)
        messages.append(py::make_tuple(message.title, message.text, answer_name(message.answer)));
    py::list notes;
    for (const RunNote& note : done.run.notes) notes.append(note_text(note, units));

    py::object columns = py::none();
    py::dict field_units;
    if (done.results) {
        py::dict arrays;
        SimResults::visit_named(*done.results, [&](const char* name, const auto& column) {
            arrays[name] = column_array(column);
            field_units[name] = daily_unit(name, units);
        });
        columns = arrays;
    }

    py::dict result;
    result["completed"] = done.outcome.completed && done.outcome.statistics == StatisticsReach::All;
    result["refused"] = done.refused;
    result["title"] = done.run.RunTitle;
    result["simulation"] = done.basin.Current_Sim_Name;
    result["discharge_unit"] = unit_words(units).discharge;
    result["statistics"] = statistics;
    result["messages"] = messages;
    result["notes"] = notes;
    result["columns"] = columns;
    result["units"] = field_units;
    return result;
}

py::dict run(const AskedRun& asked) {
    DoneRun done;
    {
        const py::gil_scoped_release released;
        done = run_asked(asked);
    }
    return done_as_dict(done);
}

}  // namespace
}  // namespace nivora

PYBIND11_MODULE(_core, module) {
    module.attr("version") = nivora::k_version;
    // Day 0 of the day counts in results.
    module.attr("day_zero") = "1899-12-30";

    py::register_exception<nivora::StoreError>(module, "StoreError", PyExc_RuntimeError);
    py::register_exception<nivora::FileError>(module, "FileError", PyExc_RuntimeError);

    module.attr("daily_variables") = nivora::daily_variables();

    module.def("daily_values", &nivora::daily_values, py::arg("path"), py::arg("variable"), py::arg("wait"));
    module.def("basin_description", &nivora::basin_description, py::arg("path"), py::arg("wait"));
    module.def(
        "run",
        [](std::string path, std::string simulation, bool year_round, std::optional<std::string> forecast,
           bool no_snow, std::vector<std::string> lag_shares, bool refuse, double wait) {
            return nivora::run({.basin = std::move(path),
                                .simulation = std::move(simulation),
                                .year_round = year_round,
                                .forecast = std::move(forecast),
                                .no_snow = no_snow,
                                .lag_shares = std::move(lag_shares),
                                .refuse = refuse,
                                .wait = wait});
        },
        py::arg("path"), py::arg("simulation"), py::kw_only(), py::arg("year_round"), py::arg("forecast"),
        py::arg("no_snow"), py::arg("lag_shares"), py::arg("refuse"), py::arg("wait"));
}
