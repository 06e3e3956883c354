// The daily editor by keyboard: decimals, units, refused entries, and pastes with their real questions.

#include "tests/screen/screen_fixture.h"
#include "widgets/desktop_dialogs.h"
#include "widgets/grid_view.h"

#include <QClipboard>
#include <QLabel>
#include <QMainWindow>
#include <QMessageBox>
#include <QPushButton>
#include <QStatusBar>

namespace nivora {
namespace {

/// The sample basin with its second simulation, 10/01/1997 to 09/30/1998.
class DailyEditorOnScreenTest : public MainWindowOnScreenTest {
protected:
    void SetUp() override {
        MainWindowOnScreenTest::SetUp();
        if (IsSkipped()) return;
        open_sample();
        click_cell(*find<QTableView>("DBGrid1"), 1, 0);
    }
    /// Opens a view of the editor, acts on it and closes it by Cancel.
    void in_editor(const char* entry, const std::function<void(NivoraWindow&, GridView&)>& act) {
        in_modal("frmData", [&](QWidget& window) {
            act(dynamic_cast<NivoraWindow&>(window), *window.findChild<GridView*>(QStringLiteral("Spread")));
            click(*window.findChild<QPushButton*>(QStringLiteral("Command1(1)")));
            EXPECT_FALSE(window.isVisible());
        });
        choose(entry);
    }
    static std::string shown(const GridView& grid, int row, int column) {
        return from_qt(grid.model()->index(row, column).data().toString());
    }
    static std::vector<std::string> first_days(const GridView& grid, int column) {
        return {shown(grid, 0, column), shown(grid, 1, column), shown(grid, 2, column)};
    }
    /// Pastes by its key, and answers the question by another key.
    void paste(const char* text, const char* answer, std::function<void(QMessageBox&)> look) {
        QApplication::clipboard()->setText(QString::fromUtf8(text));
        dialogs_.boxes = &boxes_;
        in_dialog<QMessageBox>([&](QMessageBox& box) {
            look(box);
            press({answer});
            EXPECT_FALSE(box.isVisible());
        });
        const int seen = modal_windows_seen_;
        press({"ctrl+v"});
        EXPECT_TRUE(await([&] { return modal_windows_seen_ == seen + 1; }));
        dialogs_.boxes = nullptr;
    }

    DesktopDialogs boxes_;
};

TEST_F(DailyEditorOnScreenTest, RecessionCoefficientsShowFourDecimals) {
    constexpr int k_y = 9;
    in_editor("mnuDataOpt(5)", [&](NivoraWindow&, GridView& grid) {
        grid.scrollTo(grid.model()->index(0, k_y));
        settle();
        const QImage before = picture_of_cell(grid, 0, k_y);
        click_cell(grid, 0, k_y);
        type("0.0253");
        press({"Return"});
        EXPECT_EQ(shown(grid, 0, k_y), "0.0253");
        EXPECT_THAT(shown(grid, 1, k_y), testing::MatchesRegex("0\\.[0-9][0-9][0-9][0-9]"));
        EXPECT_NE(picture_of_cell(grid, 0, k_y), before);
    });
}

TEST_F(DailyEditorOnScreenTest, ARefusedEntryIsReportedInTheStatusLine) {
    in_editor("mnuDataOptVar(1)", [&](NivoraWindow& window, GridView& grid) {
        const std::string before = shown(grid, 0, 1);
        const QImage silent = picture(*window.statusBar());
        click_cell(grid, 0, 1);
        type("450,5");
        press({"Return"});
        EXPECT_EQ(shown(grid, 0, 1), before);
        EXPECT_EQ(from_qt(window.statusBar()->currentMessage()),
                  "'450,5' is not accepted for Runoff, 10/01/1997, zone 1: a number has a point as its "
                  "decimal sign and no other separators.");
        EXPECT_NE(picture(*window.statusBar()), silent);
    });
}

TEST_F(DailyEditorOnScreenTest, AHalfDonePasteAsksAndEnterLeavesAllCellsAsTheyAre) {
    in_editor("mnuDataOptVar(1)", [&](NivoraWindow&, GridView& grid) {
        const auto before = first_days(grid, 1);
        click_cell(grid, 0, 1);
        paste("1,5\n7\n8\n", "Return", [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Paste"));
            EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::No));
            EXPECT_THAT(from_qt(box.text()),
                        testing::StartsWith("1 of the 3 pasted cells can't be accepted: '1,5' for Runoff, "
                                            "10/01/1997, zone 1; "));
        });
        EXPECT_EQ(first_days(grid, 1), before);
        paste("1,5\n7\n8\n", "alt+y", [](QMessageBox&) {});
        EXPECT_THAT(first_days(grid, 1), testing::ElementsAre(before[0], "7.00", "8.00"));
    });
}

TEST_F(DailyEditorOnScreenTest, ABlockWithDatesIsOfferedByDateAndEnterTakesTheOffer) {
    in_editor("mnuDataOptVar(1)", [&](NivoraWindow&, GridView& grid) {
        const std::string second = shown(grid, 1, 1);
        click_cell(grid, 5, 3);  // any cell
        paste("Date\tRunoff\n10/03/1997\t33\n10/01/1997\t11\n", "Return", [](QMessageBox& box) {
            EXPECT_EQ(box.windowTitle(), QStringLiteral("Paste by date"));
            EXPECT_EQ(box.defaultButton(), box.button(QMessageBox::Yes));
        });
        EXPECT_THAT(first_days(grid, 1), testing::ElementsAre("11.00", second, "33.00"));
    });
}

TEST_F(DailyEditorOnScreenTest, WalkingThroughMissingCellsStoresNothingAndDoneAsksNothing) {
    BasinDatabase{session_.basin.Work_File, Access::ReadWrite}.execute("UPDATE PhysicalData SET Tmax = NULL");
    session_.basin.Output_Valid = true;
    in_modal("frmData", [&](QWidget& window) {
        auto& grid = *window.findChild<GridView*>(QStringLiteral("Spread"));
        click_cell(grid, 0, 2);
        press({"Down", "Return", "F2", "Return", "Right", "Left", "Tab", "Up"});
        EXPECT_THAT(first_days(grid, 2), testing::Each(""));
        press({"alt+d"});
        EXPECT_FALSE(window.isVisible());
    });
    choose("mnuDataOptVar(1)");
    EXPECT_EQ(modal_windows_seen_, 1);
    EXPECT_TRUE(dialogs_.messages().empty());
    EXPECT_TRUE(session_.basin.Output_Valid);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(DailyEditorOnScreenTest, TheUnitOfAColumnIsInItsTipTheStatusLineAndQuickHelp) {
    constexpr int k_precipitation = 6;
    in_editor("mnuDataOptVar(1)", [&](NivoraWindow& window, GridView& grid) {
        click_cell(grid, 0, k_precipitation);
        const auto* told = window.findChild<QLabel*>(QStringLiteral("unitPanel"));
        EXPECT_EQ(told->text(), QStringLiteral("Precip: cm"));
        EXPECT_GT(drawn_points(picture(*told)), 30);
        point_at(*grid.viewport(), grid.visualRect(grid.model()->index(2, k_precipitation)).center());
        EXPECT_TRUE(QToolTip::isVisible());
        EXPECT_EQ(QToolTip::text(), QStringLiteral("Precip: cm"));
        const auto* quick_help = window.findChild<QWidget*>(QStringLiteral("btnHelp"));
        click(*quick_help);
        click_cell(grid, 1, k_precipitation);
        EXPECT_TRUE(window.help_text().endsWith(QStringLiteral("Unit: cm."))) << from_qt(window.help_text());
        EXPECT_GT(drawn_points(picture(*window.findChild<QWidget*>(QStringLiteral("lblHelp")))), 200);
        click(*quick_help);
    });
}

}  // namespace
}  // namespace nivora
