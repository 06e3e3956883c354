// The import of legacy files through the File menu.
#pragma once

#include "base/text.h"
#include "tests/prep/legacy_text.h"
#include "tests/shell/main_window_fixture.h"
#include "tests/shell/window_driver.h"
#include "widgets/qt_text.h"

#include <SQLiteCpp/Database.h>
#include <SQLiteCpp/Statement.h>
#include <gmock/gmock.h>

namespace nivora {

class ImportWindowTest : public MainWindowTest {
public:
    std::filesystem::path legacy(const LegacyParts& parts, const char* name = "alder.NVR") {
        return user_.write(name, parts.text());
    }

    /// Chooses Import and this file. The answers to the questions that follow are already in the script.
    void import(const std::filesystem::path& file) {
        dialogs_.then_file(file);
        for (Step& step : steps_) step(dialogs_);
        steps_.clear();
        choose("mnuFileItem(2)");
    }
    ImportWindowTest& answer(Answer given) {
        steps_.emplace_back([given](ScriptedDialogs& dialogs) { dialogs.then(given); });
        return *this;
    }
    ImportWindowTest& name(std::optional<std::string> given) {
        steps_.emplace_back([given](ScriptedDialogs& dialogs) { dialogs.then_text(given); });
        return *this;
    }

    /// Inspects the definition window and closes it by a button: 0 accepts, 1 cancels.
    void leave_definition(
        int button, std::function<void(QWidget&)> look = [](QWidget&) {}) {
        modal_.then("SimOptions", [button, look](QWidget& window) {
            look(window);
            element<QPushButton>(window, button == 0 ? "Command1(0)" : "Command1(1)").click();
        });
    }

    /// Imports the first simulation of a basin and accepts it.
    void import_first(const LegacyParts& parts = {}) {
        leave_definition(0);
        name("first").import(legacy(parts));
        ASSERT_EQ(simulations(), std::vector<std::string>{"first"});
    }

    /// The names in the simulation grid.
    std::vector<std::string> simulations() {
        std::vector<std::string> names;
        const auto* model = find<QTableView>("DBGrid1")->model();
        for (int row = 0; row < model->rowCount(); ++row)
            names.push_back(from_qt(model->index(row, 0).data().toString()));
        return names;
    }

    std::string zone_cell(int zone, int column) {
        const auto* model = find<QTableView>("vaSpread1")->model();
        return from_qt(model->index(zone - 1, column - 1).data().toString());
    }

    /// The rows of a query on the working file, read without the store;
    /// the fields of a row are joined by blanks.
    [[nodiscard]] std::vector<std::string> rows(const std::string& query) const {
        SQLite::Database raw{session_.basin.Work_File.string(), SQLite::OPEN_READONLY};
        SQLite::Statement statement{raw, query};
        std::vector<std::string> texts;
        while (statement.executeStep()) {
            auto& text = texts.emplace_back();
            for (int i = 0; i < statement.getColumnCount(); ++i) {
                if (i > 0) text += ' ';
                text += statement.isColumnNull(i) ? "Null" : statement.getColumn(i).getString();
            }
        }
        return texts;
    }

    /// The whole content of the working file, table by table.
    [[nodiscard]] std::vector<std::string> contents() const {
        std::vector<std::string> all = rows("SELECT type, name, sql FROM sqlite_master ORDER BY type, name");
        for (const std::string& table :
             rows("SELECT name FROM sqlite_master WHERE type = 'table' ORDER BY name")) {
            all.push_back("table " + table);
            for (std::string& row : rows("SELECT rowid, * FROM " + quoted_name(table) + " ORDER BY rowid"))
                all.push_back(std::move(row));
        }
        return all;
    }

    /// The state of the basin that an import without effect does not change.
    [[nodiscard]] std::vector<std::string> state() const {
        const BasinState& basin = session_.basin;
        std::vector<std::string> all{std::to_string(basin.New_Basin),
                                     std::to_string(basin.Basin_Changed),
                                     std::to_string(basin.Input_Changed),
                                     std::to_string(basin.Output_Valid),
                                     std::to_string(static_cast<int>(basin.Units_Code)),
                                     std::to_string(basin.ZoneCount),
                                     basin.basin_name,
                                     basin.zones_text,
                                     basin.reference_elevation_text,
                                     basin.basin_area_text,
                                     basin.Current_Sim_Name,
                                     std::to_string(basin.simulations.size()),
                                     basin.current_row ? std::to_string(*basin.current_row) : "none"};
        for (const Zone& zone : basin.zones) {
            all.push_back(zone.id + " " + std::to_string(zone.area.value_or(-1)) + " " +
                          std::to_string(zone.elevation.value_or(-1)));
        }
        return all;
    }

    /// Imports a file that leads to no definition, and expects that nothing has changed.
    void expect_nothing_from(const std::filesystem::path& file) {
        const auto before = contents();
        const auto state_before = state();
        const auto simulations_before = simulations();
        import(file);
        EXPECT_EQ(contents(), before);
        EXPECT_EQ(state(), state_before);
        EXPECT_EQ(simulations(), simulations_before);
    }

    using Step = std::function<void(ScriptedDialogs&)>;
    std::vector<Step> steps_;
};

}  // namespace nivora
