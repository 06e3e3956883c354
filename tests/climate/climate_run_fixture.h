// A basin file of two equal zones, six days and one scenario, whose six steps can be worked out by hand.
#pragma once

#include "base/durable_file.h"
#include "climate/climate_run.h"
#include "engine/results_store.h"
#include "store/transactions.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/temporary_folder.h"

#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>

#include <bit>

namespace nivora {

inline constexpr const char* k_scenario = "Warmer";

/// Two zones of 864 km²; in each of them 1 cm a day is 100 m³/s. k = 0.5;
/// half of a day's input comes a day later.
///
///     day             1 (30 Mar)  2     | 3 (1 Apr)  4      5      6
///     period          winter            | summer
///     temperature     0           0     | 2          2      2      2
///     precipitation   4           0     | 0          0      0      0       snow below 3 degree days
///     cover           1           1     | 0.875      0.625  0.375  0.125
///     measured        9           11    | 9          11     9      11
///
/// The degree-day factor is 0.5, the scenario adds 1 degree on every day.
struct SixDays : SmallBasin {
    static constexpr int k_days = 6;
    static constexpr int k_winter_days = 2;

    explicit SixDays(int zone_count = 2) : SmallBasin(zone_count, first_day(), k_days) {
        simulation.initial_runoff = 10.0F;
        for (PhysicalRow& row : physical) {
            const auto day = static_cast<std::size_t>(row.date - first_day());
            row.tavg = std::array{0.0F, 0.0F, 2.0F, 2.0F, 2.0F, 2.0F}.at(day);
            row.precip = day == 0 ? 4.0F : 0.0F;
            row.sca = std::array{1.0F, 1.0F, 0.875F, 0.625F, 0.375F, 0.125F}.at(day);
            row.runoff = day % 2 == 0 ? 9.0F : 11.0F;
        }
        for (ParameterRow& row : parameters) row.tcrit = 3.0F;
        plus_one.variable = 1;
        plus_one.start = first_day();
        plus_one.end = first_day() + k_days - 1;
        plus_one.action = 0;
        plus_one.factor = 1.0F;
        plus_one.zones = 0;
    }

    static DayCount first_day() { return date_of(2001, 3, 30); }
    static DayCount winter_end() { return first_day() + k_winter_days - 1; }

    ScenarioRow plus_one;
};

/// Adds a scenario to a basin file.
inline void write_scenario(const std::filesystem::path& file, const std::string& name, double winter_end,
                           const std::vector<ScenarioRow>& rows) {
    BasinDatabase database{file, Access::ReadWrite};
    atomically_if(database, [&] {
        add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index),
                                   std::vector{ScenarioIndexRow{.simulation = "Test",
                                                                .scenario = name,
                                                                .winter_end_date = winter_end,
                                                                .creation_date = std::nullopt,
                                                                .comments = "one degree more"}});
        database.create_table(scenario_table(name));
        add_rows<ScenarioRow>(database, scenario_table(name), rows);
        return true;
    });
}

class ClimateRunTest : public testing::Test {
protected:
    /// Writes the basin and its scenario, opens it and selects the scenario.
    void open(const SmallBasin& small, double winter_end, const std::vector<ScenarioRow>& rows) {
        small.write(file);
        write_scenario(file, k_scenario, winter_end, rows);
        basin = opened_basin(file);
        begin_climate(context());
        climate.scenario = k_scenario;
    }
    void open(const SixDays& small, double winter_end) { open(small, winter_end, {small.plus_one}); }
    void open_six_days() { open(SixDays{}, static_cast<double>(SixDays::winter_end())); }

    [[nodiscard]] ClimateContext context() {
        return {.run = {basin, run, dialogs},
                .climate = climate,
                .report_file = report,
                .now = static_cast<double>(date_of(2001, 11, 5)) + 0.5};
    }

    /// Runs a step; the test has to answer the questions of step 5.
    StepOutcome take(int number) {
        const StepOutcome outcome = run_climate_step(context(), number);
        end_climate_step(context(), number, outcome);
        return outcome;
    }
    StepOutcome step(int number) {
        if (number == 5) {
            for (int zone = 1; zone <= basin.ZoneCount; ++zone) dialogs.then_text("0");
        }
        return take(number);
    }
    /// Runs the steps `from` to `last`; each of them must complete.
    void run_to(int last, int from = 1) {
        for (int number = from; number <= last; ++number)
            ASSERT_EQ(step(number), StepOutcome::Done) << "step " << number;
    }
    /// Runs a step that must be suspended.
    void suspended(int number) {
        ASSERT_EQ(step(number), StepOutcome::Suspended);
        expect_message(dialogs.messages().back(),
                       "Climate change, step " + std::to_string(number) + " was 'cancelled' by the user",
                       "CC run suspended");
    }

    [[nodiscard]] SimResults results() {
        BasinDatabase database{file, Access::ReadOnly};
        return load_results(database);
    }
    void change(const std::string& statement) { BasinDatabase{file, Access::ReadWrite}.execute(statement); }

    /// A zone's values of a column from day `first` to day `last` of the simulation, counted from 1.
    template <typename Values>
    [[nodiscard]] static Values days_of(const SimResults& table, const Values& column, int zone, int first,
                                        int last) {
        Values values;
        for (std::size_t row = 0; row < table.size(); ++row) {
            const DayCount day = table.Date[row] - SixDays::first_day() + 1;
            if (table.Zone[row] == zone && day >= first && day <= last) values.push_back(column[row]);
        }
        return values;
    }

    [[nodiscard]] const AskedMessage& last_message() const { return dialogs.messages().back(); }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder / "basin.mdb";
    std::filesystem::path report = folder / "NVR_DfGN.out";
    BasinState basin;
    RunState run;
    ClimateState climate;
    ScriptedDialogs dialogs;
};

inline void PrintTo(StepOutcome outcome, std::ostream* out) {
    constexpr std::array k_names{"Refused", "NotRun", "Suspended", "Done"};
    *out << k_names.at(static_cast<std::size_t>(outcome));
}

/// The names of the columns in which two tables of equal size differ
/// in any bit. Two missing values are equal.
[[nodiscard]] inline std::vector<std::string> differing_columns(const SimResults& before,
                                                                const SimResults& after) {
    using Bits = std::vector<std::uint64_t>;
    const auto bits_of = [](const SimResults& table) {
        std::vector<Bits> columns;
        SimResults::visit(table, [&](const auto& column) {
            Bits bits;
            for (const auto value : column) {
                const auto wide = static_cast<double>(value);
                bits.push_back(is_missing(wide) ? std::bit_cast<std::uint64_t>(static_cast<double>(k_missing))
                                                : std::bit_cast<std::uint64_t>(wide));
            }
            columns.push_back(std::move(bits));
        });
        return columns;
    };
    const auto a = bits_of(before);
    const auto b = bits_of(after);
    std::vector<std::string> names;
    for (std::size_t column = 0; column < a.size(); ++column) {
        if (a[column] != b[column]) names.push_back(sim_results_table().fields[column].name);
    }
    return names;
}

}  // namespace nivora
