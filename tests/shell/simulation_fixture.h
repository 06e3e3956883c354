// The main window on the sample basin: two simulations, five zones.
#pragma once

#include "tests/shell/main_window_fixture.h"
#include "widgets/grid_view.h"
#include "widgets/qt_text.h"

#include <gmock/gmock.h>

#include <QCheckBox>
#include <QClipboard>

namespace nivora {

class SimulationWindowTest : public MainWindowTest {
protected:
    SimulationWindowTest() {
        open_sample();
        window_->activateWindow();
        EXPECT_TRUE(QTest::qWaitForWindowActive(window_.get()));
        QApplication::clipboard()->clear();
    }

    GridView* grid() { return find<GridView>("DBGrid1"); }
    void press(int index) { find<QPushButton>(("Command1(" + std::to_string(index) + ")").c_str())->click(); }
    std::string label() { return from_qt(find<QLabel>("lblSimVisible")->text()); }
    std::size_t rows() { return session_.basin.simulations.size(); }
    Simulation& row(int number) {
        return session_.basin.simulations.at(static_cast<std::size_t>(number) - 1);
    }
    /// Row and column from 1, as the user counts them.
    void go_to(int number, int column) {
        grid()->setFocus();
        grid()->setCurrentIndex(grid()->model()->index(number - 1, column - 1));
    }
    std::string cell(int number, int column) {
        return from_qt(grid()->model()->index(number - 1, column - 1).data().toString());
    }
    QColor cell_colour(int number, int column) {
        return grid()->model()->index(number - 1, column - 1).data(Qt::BackgroundRole).value<QColor>();
    }
    std::string header(int column) {
        return from_qt(grid()->model()->headerData(column - 1, Qt::Horizontal).toString());
    }
    /// Sends a key to where a user's key would go: to the widget that has the focus.
    static void key(Qt::Key which, Qt::KeyboardModifiers with = Qt::NoModifier) {
        QTest::keyClick(QApplication::focusWidget(), which, with);
        QApplication::processEvents();  // the grid takes the text only after Enter was processed
    }
    static void keys(const char* text) {
        for (const char* at = text; *at != '\0'; ++at) QTest::keyClick(QApplication::focusWidget(), *at);
    }

    [[nodiscard]] BasinDatabase work_file() const { return {session_.basin.Work_File, Access::ReadWrite}; }
    bool has_table(const std::string& name) { return work_file().has_table(name); }
    std::int64_t count(const std::string& from) {
        BasinDatabase database = work_file();
        SQLite::Statement query{database.sql(), "SELECT count(*) FROM " + from};
        query.executeStep();
        return query.getColumn(0).getInt64();
    }

    /// Types the first values into the window of a definition.
    static void fill_first_values(QWidget* window) {
        const std::array<const char*, 9> values{"0.45", "0.75", "0.65", "0.8",  "0.7",
                                                "1",    "18",   "1.05", "0.025"};
        for (std::size_t i = 0; i < values.size(); ++i) {
            window->findChild<QLineEdit*>(QStringLiteral("mtxt(%1)").arg(i + 6))
                ->setText(QString::fromUtf8(values.at(i)));
        }
    }
    static void press_in(QWidget* window, int index) {
        window->findChild<QPushButton*>(QStringLiteral("Command1(%1)").arg(index))->click();
    }
};

}  // namespace nivora
