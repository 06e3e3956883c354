// A results table of two zones, and a basin file with a scenario to apply to it.
#pragma once

#include "climate/scenario_application.h"
#include "climate/scenario_codes.h"
#include "store/transactions.h"
#include "tests/engine/engine_fixture.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>

#include <bit>
#include <cstdint>
#include <type_traits>

namespace nivora {

inline constexpr const char* k_definition_error = "Error in climate change definition";
inline constexpr const char* k_missing_title = "Missing/invalid data in climate change scenario";
inline constexpr const char* k_missing_text =
    "The selected CC scenario, 'warm', contains missing value(s).  Please correct before continuing";

/// The message about a row that lacks a value.
[[nodiscard]] inline std::string missing_in_row(int row, const std::string& what) {
    return std::string{k_missing_text} + "\nRow " + std::to_string(row) + " " + what + ".";
}
/// The end of that message where the row itself is complete.
inline constexpr const char* k_missing_data =
    "needs a value that the days or the monthly averages do not have";

/// The names of the columns in which two tables of equal size differ in any bit.
[[nodiscard]] inline std::vector<std::string> changed_columns(const SimResults& before,
                                                              const SimResults& after) {
    std::vector<std::vector<std::uint64_t>> bits[2];
    const SimResults* tables[2] = {&before, &after};
    for (int i = 0; i < 2; ++i) {
        SimResults::visit(*tables[i], [&](const auto& column) {
            auto& words = bits[i].emplace_back();
            for (const auto value : column) {
                using Value = std::remove_const_t<decltype(value)>;
                if constexpr (std::is_same_v<Value, float>) {
                    words.push_back(std::bit_cast<std::uint32_t>(value));
                } else if constexpr (std::is_same_v<Value, double>) {
                    words.push_back(std::bit_cast<std::uint64_t>(value));
                } else {
                    words.push_back(static_cast<std::uint64_t>(value));
                }
            }
        });
    }
    std::vector<std::string> names;
    const auto fields = sim_results_table().fields;
    for (std::size_t column = 0; column < fields.size(); ++column) {
        if (bits[0][column] != bits[1][column]) names.push_back(fields[column].name);
    }
    return names;
}

/// Two zones and the days 1 to 6 April 1996. The scenario's name is "warm".
class ScenarioTest : public EngineTest {
protected:
    void SetUp() override { start(2, first, 6); }

    /// A row of the scenario; its first and last day are counted in days of the table, from 1.
    [[nodiscard]] ScenarioRow edit(int variable, EditAction action, float factor, int first_day = 1,
                                   int last_day = 6, int zones = 0) const {
        ScenarioRow row;
        row.variable = variable;
        row.start = first + first_day - 1;
        row.end = first + last_day - 1;
        row.action = static_cast<int>(action);
        row.factor = factor;
        row.zones = zones;
        return row;
    }

    /// Stores the rows as the scenario "warm" and applies it.
    int apply(const std::vector<ScenarioRow>& rows) {
        // One transaction, since each transaction flushes the disk.
        atomically_if(database, [&] {
            if (!database.has_table("warm")) database.create_table(scenario_table("warm"));
            clear_table(database, "warm");
            add_rows<ScenarioRow>(database, scenario_table("warm"), rows);
            return true;
        });
        return Apply_Scenario(database, table, basin, "warm", dialogs);
    }

    [[nodiscard]] const AskedMessage& last_message() const { return dialogs.messages().back(); }

    DayCount first = date_of(1996, 4, 1);
    BasinFile file;
    BasinDatabase database = file.open();
};

}  // namespace nivora
