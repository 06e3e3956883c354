// A small basin with daily rows for tests of plots: its file, its state, and a pick of a plot.
#pragma once

#include "engine/results_store.h"
#include "plots/select_plot.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/basin_file.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

namespace nivora {

/// A basin with a simulation "wy2002" that was run. Its daily tables are empty until a test fills them.
class PlotBasin {
public:
    /// @param start first day of the simulation
    explicit PlotBasin(int zones = 1, int days = 4, const CivilDate& start = {2001, 10, 1})
        : first_(day_count(start).value()), days_(days) {
        basin.basin_name = "Alder";
        basin.Basin_File = "/basins/alder.mdb";
        basin.Work_File = file.path();
        basin.basin_units = Units::Metric;
        basin.Units_Code = Units::Metric;
        basin.ZoneCount = zones;
        basin.zones_text = std::to_string(zones);
        basin.latitude_text = "46.5";
        for (int zone = 1; zone <= zones; ++zone) basin.zones.push_back({.id = zone_letter(zone)});
        Simulation wy2002;
        wy2002.name = "wy2002";
        wy2002.start = first_;
        wy2002.end = day(days);
        wy2002.units = Units::Metric;
        wy2002.temperature_values = std::int16_t{1};
        for (auto* distribution : {&wy2002.temperature, &wy2002.precipitation, &wy2002.lapse_rate,
                                   &wy2002.runoff_coefficients, &wy2002.critical_temperature})
            *distribution = Distribution::ByZone;
        basin.simulations = {wy2002};
        select_simulation(basin, 0);
        basin.Output_Valid = true;
        run.LastRunSimulation = "wy2002";
        run.RunKind = k_year_round_simulation;
        run.RunTitle = "Year round Simulation";
        run.RunStart = first_;
        run.RunEnd = day(days);
        file.open().create_table(parameter_table("wy2002"));
    }

    [[nodiscard]] int zones() const { return basin.ZoneCount; }
    [[nodiscard]] int days() const { return days_; }
    /// A day of the simulation, from 1.
    [[nodiscard]] DayCount day(int number) const { return first_ + number - 1; }
    /// The same as a coordinate.
    [[nodiscard]] float x(int number) const { return static_cast<float>(day(number)); }
    [[nodiscard]] Simulation& simulation() { return basin.simulations[0]; }

    /// Writes rows of `PhysicalData` for all zones and days, as `fill` completes them.
    void write_variables(const std::function<void(PhysicalRow& row, int zone, int day)>& fill) {
        write_rows<PhysicalRow>(template_table(k_physical_data), fill);
    }
    /// The same for the parameters of the simulation.
    void write_parameters(const std::function<void(ParameterRow& row, int zone, int day)>& fill) {
        write_rows<ParameterRow>(parameter_table("wy2002"), fill);
    }
    /// Replaces `SimResults` by rows for all zones and days; what `fill` leaves is missing.
    void write_results(
        const std::function<void(SimResults& results, std::size_t row, int zone, int day)>& fill) {
        SimResults results;
        results.resize(static_cast<std::size_t>(zones() * days()));
        std::size_t row = 0;
        for (int zone = 1; zone <= zones(); ++zone) {
            for (int number = 1; number <= days(); ++number, ++row) {
                results.Zone[row] = static_cast<std::int16_t>(zone);
                results.Date[row] = day(number);
                fill(results, row, zone, number);
            }
        }
        store_results(results);
    }
    void store_results(const SimResults& results) {
        BasinDatabase database = file.open();
        ResultsReplacement replacement{database};
        replacement.commit(results);
    }

    /// The state after a step of an evaluation; its winter lasts to a day of the simulation.
    void take_step(int step, int winter_days) {
        run.ClimateStep = step;
        run.ScenarioName = "warm";
        const bool winter = step == 1 || step == 2;
        run.RunStart = winter ? first_ : day(winter_days + 1);
        run.RunEnd = winter ? day(winter_days) : day(days_);
    }

    [[nodiscard]] PlotSources sources() const { return {basin, run, results_current}; }

    [[nodiscard]] PlotOutcome select(PlotNumber plot, std::optional<int> zone = {},
                                     MeltStop melt_stop = MeltStop::FirstDryDay) {
        BasinDatabase database = file.open(Access::ReadOnly);
        return select_plot(database, {.plot = plot, .zone = zone, .melt_stop = melt_stop}, sources());
    }
    /// A plot that must not be refused.
    [[nodiscard]] Plot plot(PlotNumber number, std::optional<int> zone = {},
                            MeltStop melt_stop = MeltStop::FirstDryDay) {
        PlotOutcome outcome = select(number, zone, melt_stop);
        if (const auto* refusal = std::get_if<PlotRefusal>(&outcome)) {
            ADD_FAILURE() << "no plot " << number_of(number) << ": " << refusal->text;
            return {};
        }
        return std::get<Plot>(std::move(outcome));
    }
    /// The refusal of a plot that must not be made.
    [[nodiscard]] PlotRefusal refusal(PlotNumber number, std::optional<int> zone = {},
                                      MeltStop melt_stop = MeltStop::FirstDryDay) {
        const PlotOutcome outcome = select(number, zone, melt_stop);
        if (const auto* found = std::get_if<PlotRefusal>(&outcome)) return *found;
        ADD_FAILURE() << "plot " << number_of(number) << " was made";
        return {};
    }

    BasinFile file;
    BasinState basin;
    RunState run;
    bool results_current = true;

private:
    template <typename Row>
    void write_rows(const TableSchema& table, const std::function<void(Row& row, int zone, int day)>& fill) {
        std::vector<Row> rows;
        for (int zone = 1; zone <= zones(); ++zone) {
            for (int number = 1; number <= days(); ++number) {
                Row& row = rows.emplace_back();
                row.zone = static_cast<std::int16_t>(zone);
                row.date = day(number);
                fill(row, zone, number);
            }
        }
        BasinDatabase database = file.open();
        atomically(database, [&] { add_rows<Row>(database, table, rows); });
    }

    DayCount first_;
    int days_;
};

/// The text that a build shows that fails for a zone label.
[[nodiscard]] inline std::string unable_text(const std::string& zone_label) {
    return "Unable to plot " + zone_label + ".  Plotting error, missing or invalid data";
}

/// The y of the points of a curve.
[[nodiscard]] inline std::vector<float> ys_of(const PlotCurve& curve) {
    std::vector<float> ys;
    for (const PlotPoint& point : curve.points) ys.push_back(point.y);
    return ys;
}
/// The x of the points of a curve.
[[nodiscard]] inline std::vector<float> xs_of(const PlotCurve& curve) {
    std::vector<float> xs;
    for (const PlotPoint& point : curve.points) xs.push_back(point.x);
    return xs;
}

}  // namespace nivora
