// Small basins, results tables and basin files for the engine tests.
#pragma once

#include "base/calendar.h"
#include "base/scripted_dialogs.h"
#include "engine/run_statistics.h"
#include "engine/runoff_custom_lag.h"
#include "engine/runoff_simulation.h"
#include "engine/snow_melt.h"
#include "engine/zone_inputs.h"
#include "store/basin_store.h"
#include "store/table_io.h"
#include "store/transactions.h"

#include <gtest/gtest.h>

#include <cmath>
#include <initializer_list>
#include <string>
#include <vector>

namespace nivora {

/// The day count of a calendar date.
[[nodiscard]] inline DayCount date_of(int year, int month, int day) {
    return day_count({year, month, day}).value();
}

/// The first day of most runs.
inline const DayCount k_first = date_of(2001, 6, 1);
/// The first day of the inputs in the tests of a zone's inputs.
inline const DayCount k_first_input = date_of(2000, 10, 12);

/// The message of a recession that would not fall.
inline constexpr const char* k_limit_text =
    " Present x, y recession coefficient values result in k => 1 which was replaced by the limit k = 0.99 in "
    "order to avoid impossible results.  The user is advised to select new x and y values to keep k < 1. ";

/// The area in km² on which 1 cm of water a day is exactly 100 m³/s:
/// 864 km² x 10^6 m²/km² x 0.01 m / 86,400 s = 8,640,000 m³ / 86,400 s.
inline constexpr double k_area_of_100 = 864.0;

[[nodiscard]] inline Zone make_zone(int number, double area, double elevation) {
    Zone zone;
    zone.id = std::string(1, static_cast<char>('A' + number - 1));
    zone.area = area;
    zone.elevation = elevation;
    return zone;
}

/// A simulation over a period with mean temperatures and all options basinwide.
[[nodiscard]] inline Simulation make_simulation(const std::string& name, DayCount first, DayCount last) {
    Simulation simulation;
    simulation.name = name;
    simulation.run_number = std::int16_t{1};
    simulation.start = first;
    simulation.end = last;
    simulation.units = Units::Metric;
    simulation.temperature_values = std::int16_t{0};
    simulation.temperature = Distribution::Basinwide;
    simulation.precipitation = Distribution::Basinwide;
    simulation.lapse_rate = Distribution::Basinwide;
    simulation.runoff_coefficients = Distribution::Basinwide;
    simulation.critical_temperature = Distribution::Basinwide;
    simulation.recession = Distribution::Basinwide;
    simulation.initial_runoff = 10.0F;
    simulation.precipitation_threshold = 6.0F;
    return simulation;
}

template <typename Column>
void fill(Column& column, double value) {
    column.assign(column.size(), static_cast<typename Column::value_type>(value));
}

/// Compares text and title; `expect_stop` compares icon and buttons as well.
inline void expect_message(const AskedMessage& asked, const std::string& text, const std::string& title) {
    EXPECT_EQ(asked.message.text, text);
    EXPECT_EQ(asked.message.title, title);
}

inline void expect_stop(const AskedMessage& asked, const std::string& text, const std::string& title) {
    expect_message(asked, text, title);
    EXPECT_EQ(asked.message.icon, Icon::Stop);
    EXPECT_EQ(asked.message.buttons, Buttons::Ok);
}

/// A basin, its results table and scripted dialogs. Starts with calm days: no precipitation, no snow cover, 0
/// degrees, rain counting in full, runoff coefficients of 1, a lag of 6 hours. With x = y = 0 a day's
/// discharge is its lagged input.
class EngineTest : public ::testing::Test {
protected:
    BasinState basin;
    RunState run;
    ScriptedDialogs dialogs;
    SimResults table;
    int days_of_table = 0;

    /// Creates zones of 864 km² at 1000, 1500, 2000 ... m with the station at
    /// 1000 m, and their days, stored zone by zone.
    void start(int zones, DayCount first, int days) {
        days_of_table = days;
        basin.Units_Code = Units::Metric;
        basin.ZoneCount = zones;
        basin.zones_text = std::to_string(zones);
        basin.reference_elevation_text = "1000";
        basin.latitude_text = "46.5";
        basin.zones.clear();
        for (int z = 1; z <= zones; ++z) {
            basin.zones.push_back(make_zone(z, k_area_of_100, 1000.0 + 500.0 * (z - 1)));
        }
        basin.basin_area_text = basin_area_text(basin.zones);
        basin.simulations = {make_simulation("Test", first, first + days - 1)};
        select_simulation(basin, 0);
        run.RunStart = first;
        run.RunEnd = first + days - 1;
        run.InitialRunoff = 10.0F;

        table = {};
        table.resize(static_cast<std::size_t>(zones * days));
        for (int z = 1; z <= zones; ++z) {
            for (int day = 1; day <= days; ++day) {
                table.Zone[at(z, day)] = static_cast<std::int16_t>(z);
                table.Date[at(z, day)] = first + day - 1;
            }
        }
        for (auto* column :
             {&table.TMax,     &table.TMaxCC,  &table.Tmin,      &table.TminCC,       &table.TAvg,
              &table.TAvgCC,   &table.Precip,  &table.PrecipCC,  &table.SCA,          &table.SCACC,
              &table.LR,       &table.LRCC,    &table.Tcrit,     &table.TcritCC,      &table.NetRad,
              &table.NetRadCC, &table.ActualQ, &table.SCAclim,   &table.SCAclimWA,    &table.SCAclimWAMA,
              &table.MDCincl,  &table.MDCexcl, &table.MDCexclWA, &table.MDCexclWAnew, &table.MeltOffset}) {
            fill(*column, 0.0);
        }
        for (auto* column : {&table.CS, &table.CSCC, &table.CR, &table.CRCC, &table.RCA, &table.RCACC,
                             &table.AN, &table.ANCC}) {
            fill(*column, 1.0);
        }
        for (auto* column : {&table.LagTime, &table.LagTimeCC}) fill(*column, 6.0);
        for (auto* column :
             {&table.Xcoeff, &table.XcoeffCC, &table.YCoeff, &table.YCoeffCC, &table.DailyQPresent}) {
            fill(*column, 0.0);
        }
    }

    // The stages, on the rows of the run's period.
    [[nodiscard]] bool zone_inputs() { return Zone_Inputs(table, rows(), basin_inputs(basin), run, dialogs); }
    void snow_melt() { Snow_Melt(table, rows(), basin_inputs(basin), run, dialogs); }
    [[nodiscard]] bool runoff_simulation() {
        settle_precipitation_threshold(basin);
        return Runoff_Simulation(table, rows(), basin_inputs(basin), run, dialogs);
    }
    [[nodiscard]] bool runoff_custom_lag() {
        settle_precipitation_threshold(basin);
        return Runoff_Custom_Lag(table, rows(), basin_inputs(basin), run, dialogs);
    }
    StatisticsReach run_statistics() { return Run_Statistics(table, rows(), run, dialogs); }

    [[nodiscard]] RunRows rows() const { return run_rows(table, run.RunStart, run.RunEnd); }

    /// The row of a zone and a day; both count from 1.
    [[nodiscard]] std::size_t at(int zone, int day) const {
        return static_cast<std::size_t>((zone - 1) * days_of_table + day - 1);
    }

    /// Sets a zone's values of a column, from day 1 on.
    template <typename Column>
    void set(Column& column, int zone, std::initializer_list<double> values) {
        int day = 1;
        for (const double value : values) {
            column[at(zone, day++)] = static_cast<typename Column::value_type>(value);
        }
    }

    template <typename Column>
    void fill_zone(Column& column, int zone, double value) {
        for (int day = 1; day <= days_of_table; ++day) {
            column[at(zone, day)] = static_cast<typename Column::value_type>(value);
        }
    }

    /// A zone's values of a column, from day 1 on.
    template <typename Column>
    [[nodiscard]] Column days(const Column& column, int zone = 1) const {
        const auto begin = column.begin() + static_cast<std::ptrdiff_t>(at(zone, 1));
        return Column(begin, begin + days_of_table);
    }

    /// Removes a row, as if the day had no data. Afterwards `at` gives wrong rows.
    void remove_row(std::size_t row) {
        SimResults::visit(
            table, [&](auto& column) { column.erase(column.begin() + static_cast<std::ptrdiff_t>(row)); });
    }

    Simulation& simulation() { return *basin.current_simulation(); }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }
};

/// A basin file with one simulation, row by row.
struct SmallBasin {
    BasinDescription header;
    std::vector<Zone> zones;
    Simulation simulation;
    std::vector<PhysicalRow> physical;
    std::vector<ParameterRow> parameters;

    /// Zones of 864 km² with a mild, dry period: 1 °C at the station, no snow, k = 0.5 and 10 m³/s.
    SmallBasin(int zone_count, DayCount first, int days) {
        header.name = "Small basin";
        header.zones = static_cast<std::int16_t>(zone_count);
        header.units = Units::Metric;
        header.reference_elevation = 1000.0;
        header.latitude = 46.5;
        simulation = make_simulation("Test", first, first + days - 1);
        for (int z = 1; z <= zone_count; ++z) {
            zones.push_back(make_zone(z, k_area_of_100, 1000.0 + 500.0 * (z - 1)));
            for (DayCount date = first; date < first + days; ++date) {
                add_day(z, date);
            }
        }
    }

    void add_day(int zone, DayCount date) {
        PhysicalRow variables;
        variables.zone = static_cast<std::int16_t>(zone);
        variables.date = date;
        variables.runoff = 10.0F;
        variables.tmax = 2.0F;
        variables.tmin = 0.0F;
        variables.tavg = 1.0F;
        variables.precip = 0.0F;
        variables.sca = 0.0F;
        physical.push_back(variables);
        ParameterRow row;
        row.zone = static_cast<std::int16_t>(zone);
        row.date = date;
        row.tcrit = 0.5F;
        row.lag_hours = 6.0F;
        row.lapse_rate = 0.0F;
        row.an = 0.5F;
        row.cs = 1.0F;
        row.cr = 1.0F;
        row.rca = std::int16_t{1};
        row.xcoeff = 0.5;
        row.ycoeff = 0.0;
        parameters.push_back(row);
    }

    void write(const std::filesystem::path& path) const {
        BasinDatabase::create_template(path);
        BasinDatabase database{path, Access::ReadWrite};
        // One transaction, since each transaction flushes the disk.
        atomically_if(database, [&] {
            write_basin_description(database, header);
            add_rows<Zone>(database, template_table(k_zone_description), zones);
            add_rows<Simulation>(database, template_table(k_simulation_index), std::vector{simulation});
            add_rows<PhysicalRow>(database, template_table(k_physical_data), physical);
            database.create_table(parameter_table(simulation.name));
            add_rows<ParameterRow>(database, parameter_table(simulation.name), parameters);
            return true;
        });
    }
};

/// The state of the basin in a file after it was opened and its first simulation selected.
[[nodiscard]] inline BasinState opened_basin(const std::filesystem::path& path) {
    BasinState basin;
    basin.Work_File = path;
    basin.Basin_File = path;
    BasinDatabase database{path, Access::ReadOnly};
    read_basin(database, basin);
    select_simulation(basin, 0);
    return basin;
}

}  // namespace nivora
