// A program that was killed, and the next start.
#pragma once

#include "base/durable_file.h"
#include "prep/daily_editor.h"
#include "session/basin_recovery.h"
#include "store/basin_marks.h"
#include "tests/session/basin_life_fixture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace nivora {

/// A program that was killed, and the one that is started after it in the same folder.
class BasinRecoveryTest : public BasinLifeTest {
protected:
    static constexpr std::size_t k_recover = 0;
    static constexpr std::size_t k_copy = 1;
    static constexpr std::size_t k_discard = 2;

    void TearDown() override {
        BasinLifeTest::TearDown();
        EXPECT_TRUE(next_dialogs_.complaints().empty()) << next_dialogs_.complaints().front();
        EXPECT_EQ(next_dialogs_.answers_left(), 0U);
    }

    /// What the program does from time to time.
    void keep() {
        life_.keep_recovery();
        life_.finish_recovery();
    }

    /// A second program starts; the first one is taken for killed.
    bool start_again() {
        next_life_ = std::make_unique<BasinLife>(next_, program_.path());
        return next_life_->start();
    }

    [[nodiscard]] bool has_state() const { return fs::exists(state_file_); }
    [[nodiscard]] std::string question() const {
        return next_dialogs_.choices().empty() ? "no question" : next_dialogs_.choices().back().text;
    }
    [[nodiscard]] Message told() const {
        return next_dialogs_.messages().empty() ? Message{} : next_dialogs_.messages().back().message;
    }
    /// The description that is kept for a crash.
    [[nodiscard]] std::string kept_description() const {
        const auto state = read_recovery_file(state_file_);
        return state ? state->basin_description : "no state";
    }

    /// Names of the files in the program folder that begin with a word.
    [[nodiscard]] std::vector<std::string> files(const std::string& begin) const {
        std::vector<std::string> found;
        for (const auto& entry : fs::directory_iterator{program_.path()}) {
            const std::string name = path_text(entry.path().filename());
            if (name.starts_with(begin)) found.push_back(name);
        }
        std::sort(found.begin(), found.end());
        return found;
    }

    /// Rows for the daily editor, in the working file.
    void add_days() {
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        std::vector<PhysicalRow> rows;
        for (DayCount day = 35000; day < 35003; ++day)
            rows.push_back({.zone = 1, .date = day, .runoff = 1.0F, .tmax = 2.0F});
        add_rows<PhysicalRow>(database, template_table(k_physical_data), rows);
    }

    [[nodiscard]] std::unique_ptr<DailyEditor> edit() {
        return std::make_unique<DailyEditor>(
            session_.basin.Work_File, DataView::PhysicalData,
            DailyQuery{.table = "PhysicalData", .fields = {"Date", "Runoff", "Tmax"}, .period = {}},
            &session_.prep.daily_edits);
    }

    [[nodiscard]] static std::vector<float> runoff_in(const fs::path& file) {
        BasinDatabase database{file, Access::ReadOnly};
        std::vector<float> values;
        for (const PhysicalRow& row : read_table<PhysicalRow>(database, template_table(k_physical_data)))
            values.push_back(row.runoff);
        return values;
    }

    fs::path state_file_ = program_ / "recovery.state";
    ScriptedDialogs next_dialogs_;
    WatchedDesktop next_desktop_;
    Session next_{next_dialogs_, next_desktop_};
    std::unique_ptr<BasinLife> next_life_;
};

}  // namespace nivora
