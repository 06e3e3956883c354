// A basin file of two zones with the state that the rules of data preparation work on.
#pragma once

#include "base/scripted_dialogs.h"
#include "prep/prep_state.h"
#include "store/table_io.h"
#include "store/transactions.h"
#include "tests/prep/days.h"
#include "tests/support/basin_file.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <ostream>

namespace nivora {

/// How a failing test prints these types.
inline void PrintTo(Answer answer, std::ostream* out) { *out << answer_name(answer); }
inline void PrintTo(const Period& period, std::ostream* out) {
    *out << iso_date_text(period.start) << " to " << iso_date_text(period.end);
}

/// The days of October 1980, which most tests use; other numbers reach the days around it.
inline DayCount october(int day) { return *day_count({1980, 10, 1}) + day - 1; }

/// A row of a parameter table with only a degree-day factor.
inline ParameterRow parameter_day(std::int16_t zone, DayCount date, float an = k_missing) {
    ParameterRow row;
    row.zone = zone;
    row.date = date;
    row.an = an;
    return row;
}

class PrepTest : public testing::Test {
protected:
    PrepTest() {
        basin_.Work_File = file_.path();
        basin_.ZoneCount = 2;
        basin_.basin_units = Units::Metric;
        basin_.Units_Code = Units::Metric;
    }

    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    /// Adds a simulation to the grid and selects it.
    Simulation& select(const std::string& name, DayCount start, DayCount end) {
        Simulation row;
        row.name = name;
        row.start = start;
        row.end = end;
        row.units = Units::Metric;
        basin_.simulations.push_back(row);
        select_simulation(basin_, basin_.simulations.size() - 1);
        return basin_.simulations.back();
    }

    void make_parameter_table(const std::string& name) {
        database_.create_table(parameter_table(name));
        database_.create_daily_index(name);
    }

    void add_physical(std::initializer_list<PhysicalRow> rows) {
        add_rows<PhysicalRow>(database_, template_table(k_physical_data), std::vector<PhysicalRow>{rows});
    }
    void add_parameters(const std::string& name, std::initializer_list<ParameterRow> rows) {
        add_rows<ParameterRow>(database_, parameter_table(name), std::vector<ParameterRow>{rows});
    }

    /// The rows of a query as texts, with their fields separated by blanks; "-" is a missing value.
    std::vector<std::string> rows(const std::string& query) {
        SQLite::Statement statement{database_.sql(), query};
        std::vector<std::string> texts;
        while (statement.executeStep()) {
            std::string text;
            for (int column = 0; column < statement.getColumnCount(); ++column) {
                text += column == 0 ? "" : " ";
                text += is_null(statement, column) ? "-" : statement.getColumn(column).getString();
            }
            texts.push_back(text);
        }
        return texts;
    }

    /// Zone and day of October 1980 of each row of a table, in stored order.
    std::vector<std::string> days(const std::string& table) {
        return rows("SELECT Zone, CAST(Date - " + std::to_string(october(0)) + " AS INTEGER) FROM " +
                    quoted_name(table) + " ORDER BY rowid");
    }

    /// Whether no transaction is open on the connection.
    bool is_free() {
        try {
            const HeldTransaction own{database_};
            return own.is_open();
        } catch (const StoreError&) {
            return false;
        }
    }

    [[nodiscard]] const Message& last_message() const { return dialogs_.messages().back().message; }
    [[nodiscard]] std::size_t messages() const { return dialogs_.messages().size(); }

    BasinFile file_;
    BasinDatabase database_ = file_.open();
    BasinState basin_;
    PrepState prep_;
    ScriptedDialogs dialogs_;
    PrepContext context_{basin_, prep_, dialogs_};
};

}  // namespace nivora
