// A save that is refused because of a cell: what the message says, and where the cursor goes.

#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QLineEdit>
#include <limits>

namespace nivora {
namespace {

class RefusedSaveTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        click(*find<QLineEdit>("Text(0)"));
    }
    void expect_refused(const char* grid_name, int row, int column, const std::string& named) {
        press({"alt+f", "s"});
        ASSERT_TRUE(await([&] { return !dialogs_.messages().empty(); }));
        EXPECT_THAT(last_message().text, testing::StartsWith("Missing/invalid simulation data\n" + named));
        auto* grid = find<GridView>(grid_name);
        EXPECT_EQ(QApplication::focusWidget(), grid);
        EXPECT_EQ(grid->currentIndex(), grid->model()->index(row, column));
        EXPECT_TRUE(grid->viewport()->rect().intersects(grid->visualRect(grid->currentIndex())));
    }
};

TEST_F(RefusedSaveTest, ACellOfASimulationIsNamedAndHasTheCursor) {
    session_.basin.simulations[1].precipitation_threshold = std::numeric_limits<float>::infinity();
    expect_refused("DBGrid1", 1, 13,
                   "The cell 'Precipitation Threshold' of the simulation 'ellervane-1997-98' ");
    type("6");
    press({"Return"});
    EXPECT_EQ(session_.basin.simulations[1].precipitation_threshold, 6.0F);
    press({"alt+f", "s"});
    EXPECT_TRUE(await([&] { return !session_.basin.Basin_Changed; })) << "the cell was typed anew";
    EXPECT_EQ(dialogs_.messages().size(), 1U);
}

TEST_F(RefusedSaveTest, ACellOfAZoneIsNamedAndHasTheCursor) {
    session_.basin.zones[3].aspects[3].elevation = std::numeric_limits<double>::infinity();
    expect_refused("vaSpread1", 3, 10, "The cell 'Avg Elevation, SW Aspect (m)' of zone 4 ");
}

}  // namespace
}  // namespace nivora
