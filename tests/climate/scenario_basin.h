// A basin file with a simulation, for tests of its scenarios.
#pragma once

#include "base/scripted_dialogs.h"
#include "climate/scenario_definitions.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace nivora {

/// The simulation "wet" is selected; it runs from 1 to 11 April 1996.
class ScenarioBasinTest : public testing::Test {
protected:
    ScenarioBasinTest() {
        basin.Work_File = file.path();
        basin.ZoneCount = 2;
        select("wet", first, first + 10);
    }

    void TearDown() override {
        EXPECT_EQ(dialogs.complaints(), std::vector<std::string>{});
        EXPECT_EQ(dialogs.answers_left(), 0U);
    }

    void select(const std::string& simulation, DayCount start, DayCount end) {
        basin.Current_Sim_Name = simulation;
        basin.Current_Start = start;
        basin.Current_End = end;
    }

    /// New with an answer to its question.
    std::optional<std::string> make(const std::string& name) {
        dialogs.then_text(name);
        return new_scenario(database, basin, dialogs);
    }

    [[nodiscard]] std::vector<ScenarioIndexRow> index() {
        return read_table<ScenarioIndexRow>(database, template_table(k_scenario_index));
    }
    /// "simulation/scenario" for each row of the index.
    [[nodiscard]] std::vector<std::string> references() {
        std::vector<std::string> texts;
        for (const ScenarioIndexRow& row : index()) texts.push_back(row.simulation + "/" + row.scenario);
        return texts;
    }
    [[nodiscard]] std::vector<ScenarioRow> rows(const std::string& scenario) {
        return read_table<ScenarioRow>(database, scenario_table(scenario));
    }

    void add_index_row(const std::string& simulation, const std::string& scenario) {
        add_rows<ScenarioIndexRow>(database, template_table(k_scenario_index),
                                   std::vector{ScenarioIndexRow{.simulation = simulation,
                                                                .scenario = scenario,
                                                                .winter_end_date = std::nullopt,
                                                                .creation_date = std::nullopt,
                                                                .comments = std::nullopt}});
    }
    void add_placeholder(const std::string& simulation) {
        add_index_row(simulation, k_no_scenario);
        if (!database.has_table(k_no_scenario)) database.create_table(scenario_table(k_no_scenario));
    }

    /// Whether no transaction is open on the connection.
    bool is_free() {
        try {
            const HeldTransaction own{database};
            return own.is_open();
        } catch (const StoreError&) {
            return false;
        }
    }

    void expect_last(const std::string& text, const std::string& title) {
        ASSERT_FALSE(dialogs.messages().empty());
        EXPECT_EQ(dialogs.messages().back().message.text, text);
        EXPECT_EQ(dialogs.messages().back().message.title, title);
    }

    DayCount first = day_count({1996, 4, 1}).value();
    BasinFile file;
    BasinDatabase database = file.open();
    BasinState basin;
    ScriptedDialogs dialogs;
};

/// A complete row of a scenario.
[[nodiscard]] inline ScenarioRow scenario_row(int variable, float factor) {
    ScenarioRow row;
    row.variable = variable;
    row.start = 35156;
    row.end = 35158;
    row.action = 0;
    row.factor = factor;
    row.zones = 0;
    return row;
}

}  // namespace nivora
