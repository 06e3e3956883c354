// Undo and redo by the keys of a real keyboard, whose modifiers are held down while the window acts.
#include "store/basin_marks.h"
#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QSpinBox>

namespace nivora {
namespace {

class UndoOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        mark_saved(session_.basin);
    }

    GridView& zones() { return *find<GridView>("vaSpread1"); }
    GridView& simulations() { return *find<GridView>("DBGrid1"); }
    std::string zone_cell(int row, int column) {
        return from_qt(zones().model()->index(row - 1, column - 1).data().toString());
    }
    static std::string whole(const GridView& grid, int row, int column) {
        return from_qt(grid.cells().whole_text(row - 1, column - 1));
    }
};

TEST_F(UndoOnScreenTest, EditsOfBothGridsAreTakenBackInTheirOrder) {
    const std::string area = zone_cell(2, 2);
    const Simulation before = session_.basin.simulations[1];
    click_cell(zones(), 1, 1);
    type("10.5");
    press({"Return"});
    click_cell(simulations(), 1, 1);
    type("77");
    press({"Tab"});
    EXPECT_EQ(session_.basin.simulations[1].run_number, 77);
    press({"ctrl+z"});
    EXPECT_EQ(session_.basin.simulations[1], before);
    EXPECT_TRUE(simulations().hasFocus());
    EXPECT_EQ(simulations().currentIndex().row(), 1);
    EXPECT_EQ(simulations().selectionModel()->selectedRows().size(), 1);
    press({"ctrl+z"});
    EXPECT_EQ(zone_cell(2, 2), area);
    EXPECT_TRUE(zones().hasFocus());
    EXPECT_EQ(zones().selectionModel()->selectedIndexes().size(), 1) << "the cell alone is selected";
    EXPECT_FALSE(session_.basin.Basin_Changed);
    press({"ctrl+shift+z"});
    EXPECT_EQ(zone_cell(2, 2), "10.5");
    EXPECT_EQ(zones().selectionModel()->selectedIndexes().size(), 1);
    press({"ctrl+y"});
    EXPECT_EQ(session_.basin.simulations[1].run_number, 77);
}

TEST_F(UndoOnScreenTest, ABoxTakesBackItsCharactersAndThenTheWindowItsEdits) {
    const std::string name = session_.basin.basin_name;
    const std::string area = zone_cell(2, 2);
    click_cell(zones(), 1, 1);
    type("10.5");
    press({"Return"});
    auto* box = find<QLineEdit>("Text(0)");
    click(*box);
    press({"End"});
    type("xy");
    EXPECT_EQ(session_.basin.basin_name, name + "xy");
    press({"ctrl+z"});
    EXPECT_EQ(session_.basin.basin_name, name);
    EXPECT_EQ(from_qt(box->text()), name);
    press({"ctrl+z"});
    EXPECT_EQ(zone_cell(2, 2), area);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(UndoOnScreenTest, TheDailyEditorSelectsWhatItTakesBack) {
    click_cell(simulations(), 1, 0);
    in_modal("frmData", [&](QWidget& window) {
        GridView& grid = *window.findChild<GridView*>(QStringLiteral("Spread"));
        const std::string first = whole(grid, 1, 2);
        const std::string second = whole(grid, 2, 2);
        click_cell(grid, 0, 1);
        press({"shift+Down", "ctrl+x"});
        EXPECT_EQ(whole(grid, 2, 2), "0");
        click_cell(grid, 5, 3);
        press({"ctrl+z"});
        EXPECT_EQ(whole(grid, 1, 2), first);
        EXPECT_EQ(whole(grid, 2, 2), second);
        EXPECT_EQ(grid.block().first_row, 0);
        EXPECT_EQ(grid.block().last_row, 1);
        EXPECT_EQ(grid.block().first_column, 1);
        EXPECT_EQ(grid.block().last_column, 1);
        EXPECT_EQ(drawn_points(picture_of_cell(grid, 1, 1)) > 10, true) << "the value is painted again";
        press({"Escape"});  // nothing is left to lose: no question
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuDataOpt(5)");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(UndoOnScreenTest, UndoLeadsBackFromAZoneWhoseNumberWasTyped) {
    click_cell(simulations(), 1, 0);
    in_modal("frmData", [&](QWidget& window) {
        GridView& grid = *window.findChild<GridView*>(QStringLiteral("Spread"));
        auto& zone = *window.findChild<QSpinBox*>(QStringLiteral("UpDown1"));
        const std::string before = whole(grid, 1, 2);
        click_cell(grid, 0, 1);
        press({"ctrl+x"});
        EXPECT_EQ(whole(grid, 1, 2), "0");
        click(zone, {10, zone.height() / 2});
        press({"ctrl+a", "3", "Return"});
        EXPECT_EQ(zone.value(), 3);
        press({"ctrl+a", "2", "ctrl+z"});
        EXPECT_EQ(from_qt(zone.text()), "3") << "the keys take back what is typed and not entered";
        EXPECT_EQ(zone.value(), 3);
        press({"ctrl+z"});
        EXPECT_EQ(zone.value(), 1) << "the edit was in zone 1";
        EXPECT_EQ(from_qt(zone.text()), "1");
        EXPECT_EQ(whole(grid, 1, 2), before);
        press({"alt+c"});
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuDataOpt(5)");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_TRUE(dialogs_.messages().empty());
}

}  // namespace
}  // namespace nivora
