// The list of what is likely to be wrong in the daily variables, on a real display: opened from the menu by
// keys, left for the daily editor by a double click and by Enter, and made anew when the editor closes.
#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>

namespace nivora {
namespace {

class DataCheckOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        BasinDatabase database{session_.basin.Work_File, Access::ReadWrite};
        database.execute("UPDATE PhysicalData SET SCA = 1.5 WHERE Zone = 2 AND Date = " +
                         std::to_string(k_cover_day));
        database.execute("UPDATE PhysicalData SET Precip = NULL WHERE Zone = 3 AND Date = " +
                         std::to_string(k_precipitation_day));
    }

    QWidget* open_check() {
        press({"alt+l", "m", "c"});
        QWidget* window = await_window("frmDataCheck");
        if (window != nullptr) await_active(*window);
        return window;
    }
    static GridView& list(const QWidget& window) {
        return *window.findChild<GridView*>(QStringLiteral("grdFindings"));
    }
    static std::string cell(const QWidget& window, int row, int column) {
        return from_qt(list(window).model()->index(row, column).data().toString());
    }
    static int row_of(const QWidget& window, const std::string& what, const std::string& zone) {
        for (int row = 0; row < list(window).model()->rowCount(); ++row) {
            if (cell(window, row, 0) == what && cell(window, row, 1) == zone) return row;
        }
        return -1;
    }
    static void double_click_row(const QWidget& window, int row) {
        GridView& grid = list(window);
        grid.scrollTo(grid.model()->index(row, 0));
        settle();
        // Each click waits until it has arrived, which may take longer than a user's hand.
        const int usual = QApplication::doubleClickInterval();
        QApplication::setDoubleClickInterval(k_arrival_ms);
        click_cell(grid, row, 0);
        click_cell(grid, row, 0);
        QApplication::setDoubleClickInterval(usual);
    }
    static GridView& days(const QWidget& editor) {
        return *editor.findChild<GridView*>(QStringLiteral("Spread"));
    }
    static std::string day_at_cursor(const QWidget& editor) {
        const GridView& grid = days(editor);
        return from_qt(grid.model()->index(grid.currentIndex().row(), 0).data().toString());
    }
    static std::string column_at_cursor(const QWidget& editor) {
        const GridView& grid = days(editor);
        return from_qt(grid.model()->headerData(grid.currentIndex().column(), Qt::Horizontal).toString());
    }

    static constexpr int k_arrival_ms = 3000;
    static constexpr DayCount k_cover_day = 35704;          // 1 October 1997
    static constexpr DayCount k_precipitation_day = 35710;  // 7 October 1997
};

TEST_F(DataCheckOnScreenTest, ADoubleClickGoesToTheDayAndTheListIsMadeAnewAfterTheRepair) {
    QWidget* check = open_check();
    ASSERT_NE(check, nullptr);
    EXPECT_EQ(focused(), "grdFindings");
    const int cover = row_of(*check, "Cover outside 0 to 1", "B");
    ASSERT_GE(cover, 0);
    EXPECT_EQ(cell(*check, cover, 2), "CDC");
    const int before = list(*check).model()->rowCount();
    in_modal("frmData", [&](QWidget& editor) {
        EXPECT_EQ(day_at_cursor(editor), long_date_text(k_cover_day));
        EXPECT_EQ(column_at_cursor(editor), "CDC");
        type("1");
        press({"Return", "alt+d"});
        EXPECT_FALSE(editor.isVisible());
    });
    double_click_row(*check, cover);
    await([&] { return modal_windows_seen_ == 1; });
    EXPECT_EQ(modal_windows_seen_, 1);
    settle();
    EXPECT_EQ(row_of(*check, "Cover outside 0 to 1", "B"), -1);
    EXPECT_EQ(list(*check).model()->rowCount(), before - 1);
    EXPECT_TRUE(check->isVisible());
}

TEST_F(DataCheckOnScreenTest, EnterGoesToTheDayAndEscapeComesBackWithTheListAsItWas) {
    QWidget* check = open_check();
    ASSERT_NE(check, nullptr);
    const int missing = row_of(*check, "Missing value", "C");
    ASSERT_GE(missing, 0);
    list(*check).scrollTo(list(*check).model()->index(missing, 0));
    settle();
    click_cell(list(*check), missing, 6);
    in_modal("frmData", [&](QWidget& editor) {
        EXPECT_EQ(day_at_cursor(editor), long_date_text(k_precipitation_day));
        EXPECT_EQ(column_at_cursor(editor), "Precip");
        press({"Escape"});
        EXPECT_FALSE(editor.isVisible());
    });
    press({"Return"});
    await([&] { return modal_windows_seen_ == 1; });
    EXPECT_EQ(modal_windows_seen_, 1);
    settle();
    EXPECT_EQ(row_of(*check, "Missing value", "C"), missing);
    EXPECT_EQ(list(*check).currentIndex().row(), missing) << "the cursor stays on the finding";
    press({"Escape"});
    EXPECT_TRUE(await([] { return open_window("frmDataCheck") == nullptr; }));
}

}  // namespace
}  // namespace nivora
