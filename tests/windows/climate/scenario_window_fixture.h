// The window of the scenarios.
#pragma once

#include "tests/windows/climate/climate_window_fixture.h"
#include "windows/climate/frmCC.h"

#include <QAction>
#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QPlainTextEdit>

namespace nivora {

class ScenarioWindowTest : public ClimateWindowTest {
protected:
    static constexpr int k_variable = 1;
    static constexpr int k_start = 2;
    static constexpr int k_end = 3;
    static constexpr int k_action = 4;
    static constexpr int k_factor = 5;
    static constexpr int k_zones = 6;

    ScenarioWindowTest() {
        write(SixDays{});
        QApplication::clipboard()->clear();
    }

    /// Opens the window on one scenario with one row, or on none.
    void open_scenario() {
        add_scenario(k_scenario, {SixDays{}.plus_one});
        open();
    }
    void open() {
        auto window = std::make_unique<frmCC>(context());
        opened_ = window->open();
        window_ = std::move(window);
        if (opened_) show_window();
    }
    void reopen() {
        window_.reset();
        open();
    }

    GridView* grid() { return find<GridView>("vaSpread1"); }
    QComboBox* chooser() { return find<QComboBox>("DBCombo1"); }
    QLineEdit* winter_end() { return find<QLineEdit>("MaskEdBox2"); }
    QPlainTextEdit* comments() { return find<QPlainTextEdit>("txtComments"); }
    QPushButton* action(int index) { return find<QPushButton>("Command2(" + std::to_string(index) + ")"); }
    void press_action(int index) { QTest::mouseClick(action(index), Qt::LeftButton); }
    void choose(const char* name) { chooser()->setCurrentText(QString::fromUtf8(name)); }

    /// Row and column from 1, as the user counts them.
    void go_to(int row, int column) {
        grid()->setFocus();
        grid()->setCurrentIndex(grid()->model()->index(row - 1, column - 1));
    }
    std::string cell(int row, int column) {
        return from_qt(grid()->model()->index(row - 1, column - 1).data().toString());
    }
    std::vector<std::string> cells_of(int row) {
        std::vector<std::string> texts;
        for (int column = k_variable; column <= k_zones; ++column) texts.push_back(cell(row, column));
        return texts;
    }
    /// The items that the editor of a cell offers.
    std::vector<std::string> offered(int row, int column) {
        go_to(row, column);
        key(Qt::Key_F2);
        std::vector<std::string> texts;
        if (auto* list = qobject_cast<QComboBox*>(QApplication::focusWidget())) {
            for (int item = 0; item < list->count(); ++item) texts.push_back(from_qt(list->itemText(item)));
        }
        key(Qt::Key_Escape);
        return texts;
    }
    /// Chooses an item of a cell's list by keys, and stays in the row, one column to the right.
    void pick(int row, int column, const char* item) {
        go_to(row, column);
        key(Qt::Key_F2);
        auto* list = qobject_cast<QComboBox*>(QApplication::focusWidget());
        ASSERT_NE(list, nullptr);
        const int wanted = list->findText(QString::fromUtf8(item));
        ASSERT_GE(wanted, 0) << item << " is not offered";
        key(Qt::Key_Home);
        for (int step = 0; step < wanted; ++step) key(Qt::Key_Down);
        key(Qt::Key_Tab);
    }
    /// Types over the value of a cell, and stays in the row, one column to the right.
    void set(int row, int column, const std::string& text) {
        go_to(row, column);
        type(text);
        key(Qt::Key_Tab);
    }
    void set_winter_end(const char* text) {
        winter_end()->setFocus();
        winter_end()->selectAll();
        key(Qt::Key_Delete);
        key(Qt::Key_Home);
        type(text);
    }
    /// Moves the focus from the winter end date to the comments.
    void leave_winter_end() {
        comments()->setFocus();
        QTest::qWait(1);
    }

    /// The first column of the rows of a query on the file, as texts; "Null" for a missing value.
    std::vector<std::string> stored(const std::string& query) {
        BasinDatabase database{file_, Access::ReadOnly};
        SQLite::Statement rows{database.sql(), query};
        std::vector<std::string> texts;
        while (rows.executeStep())
            texts.push_back(rows.isColumnNull(0) ? "Null" : rows.getColumn(0).getString());
        return texts;
    }
    std::vector<std::string> references() {
        return stored("SELECT SimulationFile || '/' || ScenarioFile FROM ClimateScenarioIndex");
    }
    bool has_table(const char* name) { return BasinDatabase{file_, Access::ReadOnly}.has_table(name); }

    bool opened_ = false;
};

}  // namespace nivora
