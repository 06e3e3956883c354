// Colours and dates in the windows of climate scenarios, as the screen shows them.

#include "tests/screen/climate_screen_fixture.h"
#include "widgets/grid_view.h"

#include <QLineEdit>

namespace nivora {
namespace {

constexpr QRgb k_light_cyan = 0x00FFFF;
constexpr QRgb k_refused = 0xFF8080;

class ClimateColoursTest : public ClimateOnScreenTest {
protected:
    /// The visible cells that are light cyan, rows and columns from 1.
    static std::vector<std::pair<int, int>> light_cyan(const GridView& grid) {
        std::vector<std::pair<int, int>> cells;
        for (int row = 0; row < grid.model()->rowCount(); ++row) {
            for (int column = 0; column < grid.model()->columnCount(); ++column) {
                if (grid.isColumnHidden(column)) continue;
                const QRect cell = grid.visualRect(grid.model()->index(row, column));
                EXPECT_TRUE(grid.viewport()->rect().contains(cell)) << row << " " << column;
                if (main_colour(picture_of_cell(grid, row, column)) == k_light_cyan)
                    cells.emplace_back(row + 1, column + 1);
            }
        }
        return cells;
    }
};

TEST_F(ClimateColoursTest, TheClickedValueAndItsSourcesAreLightCyanOnTheScreen) {
    add_scenario();
    QWidget* window = open_climate();
    ASSERT_NE(window, nullptr);
    tick_to(window, 6);
    auto& summary = *in<GridView>(window, "vaSpread1");
    auto& statistics = *in<GridView>(window, "SpdStat");
    using Cells = std::vector<std::pair<int, int>>;
    EXPECT_EQ(light_cyan(summary), Cells{});
    EXPECT_EQ(light_cyan(statistics), Cells{});
    click_cell(statistics, 0, 1);  // a source that is selected itself
    click_cell(summary, 0, 2);     // measured runoff of the year
    EXPECT_EQ(light_cyan(summary), (Cells{{1, 3}}));
    EXPECT_EQ(light_cyan(statistics), (Cells{{1, 2}, {1, 4}}));
    click_cell(summary, 2, 1);  // climate affected runoff of the summer
    EXPECT_EQ(light_cyan(summary), (Cells{{3, 2}}));
    EXPECT_EQ(light_cyan(statistics), (Cells{{4, 5}}));
    keep(*window, "climate-cyan.png");
    window->close();
}

TEST_F(ClimateColoursTest, ARefusedWinterEndIsLightRedAndTheKeptDateComesBackIntoTheBox) {
    add_scenario();
    const int flash = QApplication::cursorFlashTime();
    QApplication::setCursorFlashTime(0);  // no blinking cursor, as pictures are compared
    QRgb refused = 0;
    in_modal("frmCC", [&](QWidget& window) {
        auto& box = *in<QLineEdit>(&window, "MaskEdBox2");
        click(box);
        press({"ctrl+a"});
        const QImage kept = picture(box);
        ASSERT_EQ(box.text(), QStringLiteral("03/31/1998"));
        type("12312005");
        EXPECT_NE(picture(box), kept);
        dialogs_.while_shown = [&] { refused = main_colour(picture(box)); };
        press({"Tab"});
        ASSERT_EQ(dialogs_.messages().size(), 1U);
        EXPECT_EQ(dialogs_.messages()[0].message.text, "Invalid winter end date!");
        EXPECT_EQ(box.text(), QStringLiteral("03/31/1998"));
        EXPECT_EQ(QApplication::focusWidget(), &box);
        press({"ctrl+a"});
        EXPECT_EQ(picture(box), kept);
    });
    choose("mnuDataOpt(2)");
    QApplication::setCursorFlashTime(flash);
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_EQ(refused, k_refused);
}

}  // namespace
}  // namespace nivora
