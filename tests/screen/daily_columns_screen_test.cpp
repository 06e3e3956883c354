// Columns of the daily table, hidden and moved by the keys and the mouse of a display.

#include "store/database.h"
#include "tests/screen/screen_fixture.h"
#include "widgets/fitted_label.h"
#include "widgets/frozen_column.h"
#include "widgets/grid_view.h"

#include <SQLiteCpp/Statement.h>

#include <QClipboard>
#include <QHeaderView>
#include <QMenu>
#include <QPushButton>
#include <QScrollBar>
#include <QStatusBar>
#include <filesystem>

namespace nivora {
namespace {

/// The parameter table of the sample's second simulation in a window that is too narrow for it.
class DailyColumnsOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        click_cell(*find<QTableView>("DBGrid1"), 1, 0);
    }
    void in_parameters(const std::function<void(NivoraWindow&, GridView&)>& act) {
        modal_windows_seen_ = 0;
        in_modal("frmData", [&](QWidget& window) {
            window.resize(560, 520);
            settle();
            act(dynamic_cast<NivoraWindow&>(window), *window.findChild<GridView*>(QStringLiteral("Spread")));
            click(*window.findChild<QPushButton*>(QStringLiteral("Command1(1)")));
            EXPECT_FALSE(window.isVisible());
        });
        choose("mnuDataOpt(5)");
        EXPECT_EQ(modal_windows_seen_, 1);
    }
    static std::vector<std::string> seen_headers(const GridView& grid) {
        std::vector<std::string> texts;
        for (int column = 0; column < grid.model()->columnCount(); ++column)
            texts.push_back(from_qt(grid.cells().header(column)));
        return texts;
    }
    /// The visible menu of columns; null if there is none.
    static QMenu* menu_of_columns(const GridView& grid) {
        for (QMenu* found : grid.findChildren<QMenu*>(QStringLiteral("mnuColumns"))) {
            if (found->isVisible()) return found;
        }
        return nullptr;
    }
    static QMenu* right_click_header(const GridView& grid, const QHeaderView& header, int column) {
        const QPoint at = header.viewport()->mapToGlobal(QPoint(
            header.sectionViewportPosition(column) + header.sectionSize(column) / 2, header.height() / 2));
        screen_display()->right_click(at.x(), at.y());
        await([&] { return menu_of_columns(grid) != nullptr; });
        settle();
        return menu_of_columns(grid);
    }
    /// What the screen shows of a column's header.
    static QImage picture_of_header(const GridView& grid, int column) {
        const QHeaderView& header = *grid.horizontalHeader();
        return picture(header, QRect(header.sectionViewportPosition(column), 0,
                                     header.sectionSize(column) - 2, header.height()));
    }
};

TEST_F(DailyColumnsOnScreenTest, TheMenuOfAHeaderHidesItsColumnAndTheNextOneStandsInItsPlace) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        click_cell(grid, 0, 1);
        const QImage next = picture_of_header(grid, 3);
        QMenu* menu = right_click_header(grid, *grid.horizontalHeader(), 2);
        ASSERT_NE(menu, nullptr);
        EXPECT_GT(drawn_points(picture(*menu)), 1000);
        press({"h"});
        EXPECT_EQ(menu_of_columns(grid), nullptr);
        screen_display()->point_at(5, 5);
        settle();
        EXPECT_EQ(seen_headers(grid).at(2), "AN");
        EXPECT_EQ(picture_of_header(grid, 2), next);
        EXPECT_TRUE(grid.hasFocus());
    });
}

TEST_F(DailyColumnsOnScreenTest, KeysMoveAndHideAndTheListShowsAgain) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        const auto before = seen_headers(grid);
        click_cell(grid, 3, 2);
        press({"alt+Left"});
        EXPECT_EQ(seen_headers(grid).at(1), "Tcrit");
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(3, 1));
        press({"alt+Right"});
        EXPECT_EQ(seen_headers(grid), before);
        press({"ctrl+0"});
        EXPECT_EQ(seen_headers(grid).size(), before.size() - 1);
        press({"ctrl+l"});
        ASSERT_TRUE(await([&] { return menu_of_columns(grid) != nullptr; }));
        press({"a"});
        EXPECT_EQ(seen_headers(grid), before);
        EXPECT_TRUE(grid.hasFocus());
        press({"ctrl+l"});
        ASSERT_TRUE(await([&] { return menu_of_columns(grid) != nullptr; }));
        press({"Escape"});
        EXPECT_EQ(menu_of_columns(grid), nullptr);
        EXPECT_TRUE(grid.isVisible());
    });
}

TEST_F(DailyColumnsOnScreenTest, TheDatesStayInViewBesideMovedColumns) {
    in_parameters([&](NivoraWindow&, GridView& grid) {
        click_cell(grid, 2, 1);
        press({"ctrl+0", "alt+Right"});
        grid.horizontalScrollBar()->setValue(grid.horizontalScrollBar()->maximum());
        settle();
        const auto& days = *grid.findChild<FrozenColumn*>();
        ASSERT_TRUE(days.isVisible());
        const QHeaderView& header = *days.horizontalHeader();
        QMenu* menu = right_click_header(grid, header, 0);
        ASSERT_NE(menu, nullptr);
        EXPECT_FALSE(menu->findChild<QAction*>(QStringLiteral("columnHide"))->isEnabled());
        press({"Escape"});
        click(*days.viewport(), days.visualRect(grid.model()->index(3, 0)).center());
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(3, 0));
        press({"Right"});
        EXPECT_GE(grid.columnViewportPosition(1), days.isVisible() ? days.width() : 0);
    });
}

TEST_F(DailyColumnsOnScreenTest, CopyAndPasteActOnTheSeenColumnsAndTheNextOpeningShowsThemAgain) {
    std::vector<std::string> left;
    in_parameters([&](NivoraWindow&, GridView& grid) {
        click_cell(grid, 0, 2);
        press({"ctrl+0"});
        QApplication::clipboard()->setText(QStringLiteral("0.11\t0.22\n"));
        click_cell(grid, 0, 1);
        press({"ctrl+v"});
        EXPECT_EQ(from_qt(grid.cells().whole_text(0, 1)), "0.11");
        EXPECT_EQ(from_qt(grid.cells().whole_text(0, 2)), "0.22");
        press({"shift+Right", "ctrl+shift+c"});
        EXPECT_EQ(from_qt(QApplication::clipboard()->text()), "LapseRate\tAN\n0.11\t0.22\n");
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(0, 2));
        press({"ctrl+F3"});
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(0, 1));
        press({"ctrl+F3"});
        EXPECT_EQ(grid.currentIndex(), grid.model()->index(0, 2));
        left = seen_headers(grid);
    });
    in_parameters([&](NivoraWindow&, GridView& grid) { EXPECT_EQ(seen_headers(grid), left); });
}

TEST_F(DailyColumnsOnScreenTest, ASavedBasinHasTheSameValuesAndAnotherOneTheSameColumns) {
    const auto other = user_ / "other.mdb";
    std::filesystem::copy_file(user_ / "ellervane.mdb", other);
    std::vector<std::string> left;
    in_modal("frmData", [&](QWidget& window) {
        GridView& grid = *window.findChild<GridView*>(QStringLiteral("Spread"));
        click_cell(grid, 0, 2);
        press({"ctrl+0", "alt+Right"});
        QApplication::clipboard()->setText(QStringLiteral("0.11\t0.22\t0.33\n"));
        click_cell(grid, 0, 1);
        press({"ctrl+v"});
        left = seen_headers(grid);
        click(*window.findChild<QPushButton*>(QStringLiteral("Command1(0)")));
    });
    choose("mnuDataOpt(5)");
    EXPECT_THAT(left, testing::ElementsAre("Date", "LapseRate", "LagTime", "AN", "CS", "Cr", "RCA", "Xcoeff",
                                           "Ycoeff"));
    choose("mnuFileItem(4)");
    dialogs_.then_file(other);
    choose("mnuFileItem(1)");
    click_cell(*find<QTableView>("DBGrid1"), 1, 0);
    in_parameters([&](NivoraWindow&, GridView& grid) {
        EXPECT_EQ(seen_headers(grid), left);
        EXPECT_NE(from_qt(grid.cells().whole_text(0, 1)), "0.11");
    });
    BasinDatabase saved{user_ / "ellervane.mdb", Access::ReadOnly};
    const auto value = [&](const char* field) {
        SQLite::Statement row{saved.sql(),
                              std::string{"SELECT round("} + field +
                                  ", 4) FROM \"ellervane-1997-98\" WHERE Zone = 1 ORDER BY Date"};
        row.executeStep();
        return row.getColumn(0).getDouble();
    };
    EXPECT_EQ(value("LapseRate"), 0.11);
    EXPECT_EQ(value("LagTime"), 0.22);
    EXPECT_EQ(value("An"), 0.33);
    EXPECT_NE(value("Tcrit"), 0.22) << "it was hidden";
}

TEST_F(DailyColumnsOnScreenTest, ANarrowStatusBarShowsASumThatIsWhole) {
    in_parameters([&](NivoraWindow& window, GridView& grid) {
        click_cell(grid, 0, 4);
        press({"shift+Down", "shift+Down"});
        auto& sums = *window.findChild<FittedLabel*>(QStringLiteral("sumsPanel"));
        for (const int width : {560, 800, 1200}) {
            window.resize(width, 520);
            settle();
            const QString shown = sums.shown();
            EXPECT_LE(sums.fontMetrics().horizontalAdvance(shown), sums.width());
            EXPECT_FALSE(shown.endsWith(QChar(0x2026))) << width << from_qt(shown);
            EXPECT_THAT(from_qt(shown), testing::HasSubstr("Sum "));
            EXPECT_GT(drawn_points(picture(sums)), 60);
        }
        EXPECT_THAT(from_qt(sums.toolTip()), testing::HasSubstr("Maximum"));
    });
}

}  // namespace
}  // namespace nivora
