// The File and Run menus on a real display, worked by keys.

#include "base/durable_file.h"
#include "tests/screen/screen_fixture.h"

#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

namespace nivora {
namespace {

class FileMenuOnScreen : public MainWindowOnScreenTest {
protected:
    QTableView* zones() { return find<QTableView>("vaSpread1"); }

    /// Opens the Run menu with the mouse, and closes it.
    void open_run_menu() {
        auto* run = find<QMenu>("mnuRun");
        click(*window_->menuBar(), window_->menuBar()->actionGeometry(run->menuAction()).center());
        EXPECT_TRUE(await([&] { return run->isVisible(); }));
        press({"Escape"});
        EXPECT_TRUE(await([&] { return !run->isVisible(); }));
    }
    /// Types over a cell without leaving its editor.
    void type_over_cell(int row, int column, const std::string& text) {
        click_cell(*zones(), row, column);
        press({"F2", "ctrl+a"});
        type(text);
    }
    [[nodiscard]] std::string told() const {
        return dialogs_.messages().empty() ? "" : dialogs_.messages().back().message.text;
    }
    QString panel() { return find<QLabel>("panel1")->text(); }
};

TEST_F(FileMenuOnScreen, AnAreaInAnOpenEditorIsCheckedBeforeTheRunMenuOpens) {
    open_sample();
    type_over_cell(1, 1, "0");
    open_run_menu();
    EXPECT_EQ(told(), "Zone area must be greater than zero!");
    type_over_cell(1, 1, "42.5");
    const std::size_t messages = dialogs_.messages().size();
    open_run_menu();
    EXPECT_EQ(dialogs_.messages().size(), messages);
    EXPECT_EQ(session_.basin.zones[1].area, 42.5);
}

TEST_F(FileMenuOnScreen, AnElevationThatIsBeingTypedIsCheckedByTheRunMenuAndBySave) {
    const auto file = open_sample();
    const std::string before = file_bytes(file);
    auto* elevation = find<QLineEdit>("Text(2)");
    const auto type_elevation = [&] {
        click(*elevation);
        press({"ctrl+a"});
        type("99999");
    };
    type_elevation();
    open_run_menu();
    EXPECT_EQ(told(), "Basin elevation out of range!");
    EXPECT_EQ(elevation->text(), QString{});
    type_elevation();
    const std::size_t messages = dialogs_.messages().size();
    press({"alt+f", "s"});
    EXPECT_TRUE(await([&] { return dialogs_.messages().size() > messages; }));
    EXPECT_EQ(told(), "Basin elevation out of range!");
    EXPECT_TRUE(file_bytes(file) == before);
}

TEST_F(FileMenuOnScreen, TheLastSimulationDeletedLeavesTheFocusInTheGridAndNotAtQuickHelp) {
    open_sample();
    for (int left = 2; left > 0; --left) {
        dialogs_.then(Answer::Yes);
        click(*find<QPushButton>("Command1(1)"));
    }
    EXPECT_TRUE(session_.basin.simulations.empty());
    EXPECT_EQ(QApplication::focusWidget(), find<QTableView>("DBGrid1"));
    press({"space"});
    EXPECT_FALSE(quick_help_.is_on());
}

TEST_F(FileMenuOnScreen, ResultsOfTheOldBasinLeaveTheScreenWithIt) {
    const auto file = open_sample();
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    session_.basin.Basin_Changed = false;
    choose("mnuFileItem(0)");
    EXPECT_FALSE(results->isVisible()) << "New";
    dialogs_.then_file(file);
    choose("mnuFileItem(1)");
    choose("mnuRunSimVar(1)");
    ASSERT_NE(await_window("Results"), nullptr);
    session_.basin.Basin_Changed = false;
    dialogs_.then_file(file);
    choose("mnuFileItem(1)");
    EXPECT_EQ(session_.basin.Basin_File, file);
    EXPECT_FALSE(results->isVisible()) << "Open";
}

TEST_F(FileMenuOnScreen, AFirstSaveThroughTheQuestionShowsTheNameAndOffersSave) {
    open_sample();
    session_.basin.Basin_File = program_ / "null.mdb";  // the same work, without a name yet
    session_.basin.New_Basin = true;
    session_.basin.Basin_Changed = true;
    session_.shell.save = false;
    session_.desktop.refresh_main_window();
    const auto first = user_ / "first.mdb";
    dialogs_.then(Answer::Yes).then_file(first).then_file(std::nullopt);
    press({"alt+f", "o"});
    EXPECT_TRUE(await([&] { return panel() == QString::fromStdString(path_text(first)); }));
    EXPECT_TRUE(find<QAction>("mnuFileItem(4)")->isEnabled());
}

TEST_F(FileMenuOnScreen, ChosenUnitsLeaveTheLabelsWithTheAnswerNo) {
    const QString before = find<QLabel>("Label1(5)")->text();
    click(*find<QLineEdit>("Text(0)"));
    press({"Return"});
    press({"Down", "Down"});
    EXPECT_EQ(find<QComboBox>("Combo1")->currentText(), QStringLiteral("English"));
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), QStringLiteral("Reference Elevation (ft):"));
    dialogs_.then(Answer::No);
    press({"Return"});
    EXPECT_EQ(find<QComboBox>("Combo1")->currentIndex(), -1);
    EXPECT_EQ(find<QLabel>("Label1(5)")->text(), before);
}

TEST_F(FileMenuOnScreen, TheEditMenuIsEnabledAgainWhenTheDailyEditorCloses) {
    open_sample();
    in_modal("frmData", [&](QWidget& editor) {
        auto* cancel = editor.findChild<QPushButton*>(QStringLiteral("Command1(1)"));
        ASSERT_NE(cancel, nullptr);
        click(*cancel);
    });
    choose("mnuDataOptVar(1)");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_TRUE(find<QAction>("mnuEdit")->isEnabled());
}

}  // namespace
}  // namespace nivora
