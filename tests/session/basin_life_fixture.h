// A program folder with its template, a session on it, and scripted answers for every box.
#pragma once

#include "base/durable_file.h"
#include "base/scripted_dialogs.h"
#include "session/basin_life.h"
#include "session/basin_rows.h"
#include "session/main_window_rules.h"
#include "store/table_io.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

namespace nivora {

namespace fs = std::filesystem;

inline Simulation simulation_named(const std::string& name) {
    Simulation definition;
    definition.name = name;
    definition.start = *day_count({1996, 1, 1});
    definition.end = *day_count({1996, 12, 31});
    definition.units = Units::Metric;
    definition.initial_x = 1.05;
    definition.initial_y = 0.02;
    definition.comments = "kept";
    return definition;
}

/// Records the calls that a command of the File menu makes to the desktop.
struct WatchedDesktop : Desktop {
    WatchedDesktop() {
        refresh_main_window = [this] { ++refreshes; };
        leave_basin = [this] { ++left_basins; };
        go_to_field = [this](const UnstorableField& field) { shown = field; };
    }
    WatchedDesktop(const WatchedDesktop&) = delete;
    WatchedDesktop& operator=(const WatchedDesktop&) = delete;

    int refreshes = 0;
    int left_basins = 0;
    std::optional<UnstorableField> shown;
};

class BasinLifeTest : public testing::Test {
protected:
    BasinLifeTest() { BasinDatabase::create_template(program_ / "null.mdb"); }

    void SetUp() override { life_.start(); }

    void TearDown() override {
        EXPECT_TRUE(dialogs_.complaints().empty()) << dialogs_.complaints().front();
        EXPECT_EQ(dialogs_.answers_left(), 0U);
    }

    /// What a user types into a fresh basin.
    void define_basin(int simulations) {
        session_.basin.basin_name = "Alder Fork";
        fix_units(session_, Units::Metric);
        session_.basin.zones_text = "2";
        session_.basin.ZoneCount = 2;
        session_.basin.reference_elevation_text = "2107.35";
        session_.basin.latitude_text = "-41.5";
        session_.basin.zones = {{.id = "A", .area = 12.5, .elevation = 1500.0},
                                {.id = "B", .area = 30.25, .elevation = 2100.0}};
        for (int i = 1; i <= simulations; ++i) {
            session_.basin.simulations.push_back(simulation_named("run " + std::to_string(i)));
        }
        session_.basin.Basin_Changed = true;
        session_.basin.Input_Changed = true;
    }

    fs::path save_new_basin(const std::string& name) {
        const fs::path file = user_ / name;
        define_basin(2);
        dialogs_.then_file(file);
        life_.save_as();
        return file;
    }

    [[nodiscard]] const Message& last_message() const { return dialogs_.messages().back().message; }

    TemporaryFolder program_;
    TemporaryFolder user_;
    ScriptedDialogs dialogs_;
    WatchedDesktop desktop_;
    Session session_{dialogs_, desktop_};
    BasinLife life_{session_, program_.path()};
};

}  // namespace nivora
