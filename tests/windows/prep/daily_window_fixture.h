// The daily editor on each of its views.
#pragma once

#include "prep/data_menu.h"
#include "tests/windows/prep/prep_window_fixture.h"
#include "windows/prep/frmData.h"

#include <QAction>
#include <QGroupBox>
#include <QHeaderView>
#include <QLabel>

namespace nivora {

class DailyWindowTest : public PrepWindowTest {
protected:
    DailyWindowTest() {
        add_simulation("s", october(1), october(4));
        session_.basin.zones = {Zone{.id = "1"}, Zone{.id = "2"}};
    }

    void open_variables() {
        add_physical(1, 4);
        open_prepared_variables();
    }
    void open_prepared_variables() {
        BasinDatabase database = file_.open();
        ASSERT_EQ(mnuDataOptVar_Click(prep(), database, 1), DataOutcome::ShowEditor);
        open();
    }
    void open_parameters() {
        fill_parameter_table();
        prepare(DataEntry::Parameters);
    }
    void fill_parameter_table() {
        make_parameter_table("s");
        std::vector<ParameterRow> rows;
        for (const int zone : {1, 2}) {
            for (int day = 1; day <= 4; ++day) {
                ParameterRow row;
                row.zone = static_cast<std::int16_t>(zone);
                row.date = october(day);
                row.an = static_cast<float>(zone);
                row.lag_hours = 18.0F;
                row.rca = std::int16_t{0};
                row.xcoeff = 1.05;
                row.ycoeff = 0.025;
                rows.push_back(row);
            }
        }
        add_parameters("s", rows);
    }
    /// Opens results of both zones, four days each, with a discharge of 5; everything else is missing.
    void open_results() {
        if (!file_.open().has_table("s")) fill_parameter_table();
        make_results();
        prepare(DataEntry::Results);
    }
    void make_results() {
        BasinDatabase database = file_.open();
        database.create_table(sim_results_table());
        for (const int zone : {1, 2}) {
            for (int day = 1; day <= 4; ++day)
                database.execute("INSERT INTO SimResults (Zone, Date, DailyQ) VALUES (" +
                                 std::to_string(zone) + ", " + std::to_string(october(day)) + ", 5)");
        }
    }
    void prepare(DataEntry entry) {
        BasinDatabase database = file_.open();
        ASSERT_EQ(mnuDataOpt_Click(prep(), database, entry), DataOutcome::ShowEditor);
        open();
    }
    void open() {
        auto window = std::make_unique<frmData>(context());
        opened_ = window->open();
        window_ = std::move(window);
        if (!opened_) return;
        show_window();
        grid()->setFocus();
    }

    [[nodiscard]] PrepContext prep() { return {session_.basin, session_.prep, dialogs_}; }

    GridView* grid() { return find<GridView>("Spread"); }
    QSpinBox* zone() { return find<QSpinBox>("UpDown1"); }
    std::string zone_title() { return from_qt(find<QGroupBox>("Frame1")->title()); }
    /// Row and column from 1, as the user counts them.
    void go_to(int row, int column) { grid()->setCurrentIndex(grid()->model()->index(row - 1, column - 1)); }
    std::string shown(int row, int column) {
        return from_qt(grid()->model()->index(row - 1, column - 1).data().toString());
    }
    std::string whole(int row, int column) {
        return from_qt(grid()->cells().whole_text(row - 1, column - 1));
    }
    std::string header(int column) {
        return from_qt(grid()->model()->headerData(column - 1, Qt::Horizontal).toString());
    }
    std::vector<std::string> headers() {
        std::vector<std::string> texts;
        for (int column = 1; column <= grid()->model()->columnCount(); ++column)
            texts.push_back(header(column));
        return texts;
    }
    CellFormat::Kind kind(int column) { return grid()->cells().format(0, column - 1).kind; }
    void select(int first_row, int first_column, int last_row, int last_column) {
        const auto* model = grid()->model();
        go_to(first_row, first_column);
        grid()->selectionModel()->select(QItemSelection(model->index(first_row - 1, first_column - 1),
                                                        model->index(last_row - 1, last_column - 1)),
                                         QItemSelectionModel::ClearAndSelect);
    }
    /// Types over the value of a cell and ends the edit with Enter.
    void set(int row, int column, const char* text) {
        go_to(row, column);
        grid()->setFocus();
        type(text);
        key(Qt::Key_Return);
    }
    std::string runoff(int zone, int day) {
        return stored("SELECT Runoff FROM PhysicalData WHERE Zone = " + std::to_string(zone) +
                      " AND Date = " + std::to_string(october(day)));
    }

    bool opened_ = false;
};

}  // namespace nivora
