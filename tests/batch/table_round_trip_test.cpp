// A basin that is exported table by table, made again by its definition and loaded: the same, bit for bit.
#include "prep/basin_definition.h"
#include "store/monthly_table.h"
#include "store/transactions.h"
#include "tests/batch/run_basin.h"
#include "tests/support/random_trials.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <optional>
#include <utility>

namespace nivora {
namespace {

/// All values of all tables, with their types and bits, in stored order.
std::vector<std::string> stored_content(const std::string& file) {
    BasinDatabase database{file, Access::ReadOnly};
    std::vector<std::string> names = database.table_names();
    std::sort(names.begin(), names.end());
    std::vector<std::string> content;
    for (const std::string& name : names) {
        std::string fields = name + ":";
        for (const Field& field : database.table_fields(name))
            fields += " " + field.name + " " + declared_type(field);
        content.push_back(fields);
        SQLite::Statement query{database.sql(), "SELECT * FROM " + quoted_name(name) + " ORDER BY rowid"};
        while (query.executeStep()) {
            std::string row = name;
            for (int i = 0; i < query.getColumnCount(); ++i) {
                const SQLite::Column value = query.getColumn(i);
                row += value.isNull()   ? " null"
                       : value.isText() ? " '" + value.getString() + "'"
                       : value.isInteger()
                           ? " " + std::to_string(value.getInt64())
                           : " bits " + std::to_string(std::bit_cast<std::uint64_t>(value.getDouble()));
            }
            content.push_back(row);
        }
    }
    return content;
}

/// Makes a basin of what the commands write of another one.
void make_again(const TemporaryFolder& folder, const std::string& file, const std::string& again) {
    const auto path = [&](const std::string& name) { return (folder.path() / name).string(); };
    folder.write("definition.json", printed({"definition", file}));
    ASSERT_NE(printed({"new", again, "--definition", path("definition.json")}), "");
    std::vector<std::string> tables{k_physical_data};
    {
        BasinDatabase database{file, Access::ReadOnly};
        if (database.has_table(k_basin_averages)) tables.emplace_back(k_basin_averages);
        for (const Simulation& simulation :
             read_table<Simulation>(database, template_table(k_simulation_index)))
            tables.push_back(simulation.name);
    }
    for (const std::string& table : tables) {
        ASSERT_EQ(printed({"export", file, table, "--csv", path("table.csv")}), "");
        ASSERT_NE(printed({"load", again, table, "--csv", path("table.csv")}), "");
    }
}

class RandomBasins : public RandomTrials<testing::Test> {
protected:
    /// A value that a field holds, or a missing one.
    float single(double low, double high) {
        return by_chance(0.1) ? k_missing : static_cast<float>(between(low, high)) + 0.0F;
    }
    double real(double low, double high) { return by_chance(0.1) ? std::nan("") : between(low, high) + 0.0; }

    std::string text() {
        static const std::vector<std::string> k_pieces{"a",  "Wet year", ",", "\"", "\n",
                                                       "ä°", " ",        "'", "\\"};
        std::string made = "x";
        for (int i = whole_between(0, 5); i > 0; --i)
            made +=
                k_pieces[static_cast<std::size_t>(whole_between(0, static_cast<int>(k_pieces.size()) - 1))];
        return made;
    }

    template <typename Value>
    std::optional<Value> perhaps(Value value) {
        return by_chance(0.2) ? std::nullopt : std::optional{value};
    }

    BasinDefinition definition() {
        BasinDefinition made;
        const Units units = by_chance(0.5) ? Units::Metric : Units::English;
        made.basin = {.name = perhaps(text()),
                      .description = perhaps(text()),
                      .zones = {},
                      .units = units,
                      .reference_elevation = perhaps(between(-10.0, 5000.0)),
                      .latitude = perhaps(between(-90.0, 90.0)),
                      .longitude = perhaps(between(-180.0, 180.0))};
        const int zones = whole_between(1, 16);
        for (int zone = 1; zone <= zones; ++zone) {
            Zone& row = made.zones.emplace_back();
            row.id = zone_letter(zone);
            row.area = perhaps(between(0.0, 1e4));
            row.elevation = perhaps(between(0.0, 1e4));
            row.notes = perhaps(text());
            for (Aspect& aspect : row.aspects)
                aspect = {.share = perhaps(between(0.0, 100.0)), .elevation = perhaps(between(0.0, 1e4))};
        }
        for (int i = whole_between(0, 3); i > 0; --i) made.simulations.push_back(simulation(i, units));
        for (const Simulation& row : made.simulations) {
            if (by_chance(0.5)) made.scenarios.push_back(scenario(row.name));
        }
        return made;
    }

    Simulation simulation(int number, Units units) {
        const DayCount start = *day_count({1990, 1, 1}) + whole_between(0, 3000);
        const auto spread = [this] {
            return perhaps(by_chance(0.5) ? Distribution::Basinwide : Distribution::ByZone);
        };
        Simulation row{};
        row.name = "year \"" + std::to_string(number) + "\"";
        row.run_number = perhaps(static_cast<std::int16_t>(whole_between(-32768, 32767)));
        row.start = perhaps(start);
        row.end = perhaps(start + whole_between(0, 400));
        row.units = perhaps(units);
        row.temperature_values = perhaps(static_cast<std::int16_t>(whole_between(0, 1)));
        row.temperature = spread();
        row.precipitation = spread();
        row.lapse_rate = spread();
        row.runoff_coefficients = spread();
        row.critical_temperature = spread();
        row.recession = spread();
        row.initial_runoff = perhaps(static_cast<float>(between(0.0, 100.0)));
        row.precipitation_threshold = perhaps(static_cast<float>(between(0.0, 10.0)));
        row.initial_x = perhaps(between(0.0, 2.0));
        row.initial_y = perhaps(between(0.0, 1.0));
        row.comments = perhaps(text());
        return row;
    }

    ScenarioDefinition scenario(const std::string& simulation) {
        ScenarioDefinition made;
        made.index = {.simulation = simulation,
                      .scenario = "warmer in " + simulation,
                      .winter_end_date = perhaps(35000.0 + whole_between(0, 1000) / 2.0),
                      .creation_date = perhaps(between(35000.0, 46000.0)),
                      .comments = perhaps(text())};
        for (int i = whole_between(0, 4); i > 0; --i) {
            made.edits.push_back({.variable = perhaps(static_cast<std::int32_t>(whole_between(0, 11))),
                                  .start = perhaps(DayCount{35000}),
                                  .end = perhaps(DayCount{35100}),
                                  .action = perhaps(static_cast<std::int32_t>(whole_between(0, 4))),
                                  .factor = single(-10.0, 10.0),
                                  .zones = perhaps(static_cast<std::int32_t>(whole_between(0, 16)))});
        }
        return made;
    }

    /// The zones and days of a daily table: some are missing, and zones or days come first.
    std::vector<std::pair<std::int16_t, DayCount>> keys(int zones) {
        std::vector<std::pair<std::int16_t, DayCount>> made;
        const DayCount first = *day_count({1990, 1, 1}) + whole_between(0, 3000);
        const int days = whole_between(0, 60);
        const bool by_day = by_chance(0.5);
        for (int i = 0; i < zones * days; ++i) {
            const int zone = by_day ? i % zones : i / days;
            const int day = by_day ? i / zones : i % days;
            if (!by_chance(0.05)) made.emplace_back(static_cast<std::int16_t>(zone + 1), first + day);
        }
        return made;
    }

    void fill(BasinDatabase& database, const BasinDefinition& made) {
        const int zones = static_cast<int>(made.zones.size());
        std::vector<PhysicalRow> days;
        for (const auto& [zone, date] : keys(zones)) {
            days.push_back({.zone = zone,
                            .date = date,
                            .runoff = single(0.0, 500.0),
                            .tmax = single(-40.0, 40.0),
                            .tmin = single(-40.0, 40.0),
                            .tavg = single(-40.0, 40.0),
                            .precip = single(0.0, 20.0),
                            .sca = single(0.0, 1.0),
                            .net_radiation = single(-1e6, 1e6)});
        }
        add_rows<PhysicalRow>(database, template_table(k_physical_data), days);
        for (const Simulation& simulation : made.simulations) {
            std::vector<ParameterRow> rows;
            for (const auto& [zone, date] : keys(zones)) {
                rows.push_back({.zone = zone,
                                .date = date,
                                .tcrit = single(-5.0, 5.0),
                                .lag_hours = single(0.0, 100.0),
                                .lapse_rate = single(-1.0, 1.0),
                                .an = single(0.0, 1.0),
                                .cs = single(0.0, 1.0),
                                .cr = single(0.0, 1.0),
                                .rca = perhaps(static_cast<std::int16_t>(whole_between(0, 1))),
                                .xcoeff = real(0.0, 2.0),
                                .ycoeff = real(-1.0, 1.0)});
            }
            add_rows<ParameterRow>(database, parameter_table(simulation.name), rows);
        }
        if (by_chance(0.5)) return;
        Ensure_Monthly_Table(database);
        for (int zone = 1; zone <= zones; ++zone) {
            for (StoredMonth month : read_stored_year(database, zone)) {
                for (float& value : month.values) value = single(-100.0, 100.0);
                store_month(database, month);
            }
        }
    }
};

TEST_F(RandomBasins, ABasinIsMadeAgainOfItsTablesAndItsDefinition) {
    try_often(25, [&] {
        const TemporaryFolder folder;
        const std::string file = (folder.path() / "first.mdb").string();
        const std::string again = (folder.path() / "again.mdb").string();
        BasinDatabase::create_template(file);
        {
            BasinDatabase database{file, Access::ReadWrite};
            const BasinDefinition made = definition();
            atomically(database, [&] {
                store_definition(database, made);
                fill(database, made);
            });
        }
        make_again(folder, file, again);
        EXPECT_EQ(stored_content(again), stored_content(file));
        EXPECT_EQ(printed({"definition", again}), printed({"definition", file}));
    });
}

TEST_F(YearBasinTest, AnImportedBasinWithAScenarioIsMadeAgain) {
    const std::string again = basin.path("again.mdb");
    make_again(basin.folder(), file(), again);
    EXPECT_EQ(stored_content(again), stored_content(file()));
    EXPECT_EQ(batch({"run", again, "--simulation", "alder"}).out,
              batch({"run", file(), "--simulation", "alder"}).out);
}

}  // namespace
}  // namespace nivora
