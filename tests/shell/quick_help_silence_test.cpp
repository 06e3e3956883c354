#include "shell/frmNVRHelp.h"
#include "tests/shell/quick_help_fixture.h"
#include "windows/engine/Results.h"
#include "windows/engine/frmRuns.h"
#include "windows/engine/frmTimeLagDist.h"
#include "windows/prep/frmDataCheck.h"
#include "windows/prep/frmParameterChange.h"
#include "windows/prep/frmTableExport.h"
#include "windows/prep/frmTableImport.h"

namespace nivora {
namespace {

TEST_F(QuickHelpSilenceTest, EveryElementOfTheMainWindowIsSilent) {
    quick_help_.set_on(true);
    walk_widgets(*window_, "frmNVR");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfAFreshMainWindowIsSilentToo) {
    choose("mnuFileItem(0)");
    choose_units(0, Answer::Yes);
    dialogs_before_ = asked();
    quick_help_.set_on(true);
    walk_widgets(*window_, "frmNVR");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheTimeLagWindowIsSilent) {
    session_.run.LagDistribution = {2.0F, 0.75F, 0.25F};
    frmTimeLagDist lag(context());
    lag.show();
    quick_help_.set_on(true);
    walk_widgets(lag, "frmTimeLagDist");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheRunsIsSilent) {
    frmRuns runs(context());
    runs.fill();
    runs.show();
    quick_help_.set_on(true);
    walk_widgets(runs, "frmRuns");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheCheckOfDataIsSilent) {
    frmDataCheck check(context());
    check.look();
    check.show();
    quick_help_.set_on(true);
    walk_widgets(check, "frmDataCheck");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheImportAndTheExportOfATableIsSilent) {
    frmTableImport table_import(context());
    table_import.show();
    frmTableExport table(context());
    table.show();
    quick_help_.set_on(true);
    walk_widgets(table_import, "frmTableImport");
    walk_widgets(table, "frmTableExport");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheChangeOfAParameterIsSilent) {
    auto* grid = find<QTableView>("DBGrid1");
    grid->setCurrentIndex(grid->model()->index(0, 0));
    frmParameterChange change(context());
    ASSERT_TRUE(change.open());
    change.show();
    quick_help_.set_on(true);
    walk_widgets(change, "frmParameterChange");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheResultsWindowIsSilent) {
    Results results(context());
    results.fill();
    results.show();
    quick_help_.set_on(true);
    walk_widgets(results, "Results");
}

TEST_F(QuickHelpSilenceTest, EveryElementOfTheHelpWindowIsSilent) {
    frmNVRHelp help(context());
    help.show_topic(0);
    help.show();
    quick_help_.set_on(true);
    walk_widgets(help, "frmNVRHelp");
}

TEST_F(QuickHelpSilenceTest, EveryMenuEntryOfTheMainWindowIsSilentByMouseKeyAndLetter) {
    quick_help_.set_on(true);
    // 7 File items, 1 recent file, 3 and 4 of Edit, 1, 2 and 1 of Options, 4 and 2 of Data, 1 and 4 of Run,
    // 3 Tools, 4 Help
    walk_menus(*window_, "frmNVR", 37);
}

TEST_F(QuickHelpSilenceTest, EveryMenuEntryOfTheHelpWindowIsSilent) {
    frmNVRHelp help(context());
    help.show_topic(0);
    help.show();
    quick_help_.set_on(true);
    // 19 topics and documents, Print, Close, Copy
    walk_menus(help, "frmNVRHelp", 22);
}

TEST_F(QuickHelpSilenceTest, AnEntryOnTheBarItselfIsSilent) {
    quick_help_.set_on(true);
    const QuickHelpTexts texts = Load_QuickHelp(program_.path(), "frmNVR");
    const std::string before = state();
    struct Entry {
        const char* name;
        Qt::Key letter;
        int text;
    };
    for (const Entry& entry : {Entry{"mnuWinGraphics", Qt::Key_G, 29}, Entry{"mnuReports", Qt::Key_R, 30}}) {
        auto* action = find<QAction>(entry.name);
        auto* bar = window_->menuBar();
        const QSignalSpy triggered(action, &QAction::triggered);
        window_->explain_widget(nullptr);
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(action).center());
        expect_silent(*window_, before, k_disabled + texts.menu_text(entry.text), entry.name);
        window_->explain_widget(nullptr);
        bar->setActiveAction(action);
        QTest::keyClick(bar, Qt::Key_Return);
        expect_silent(*window_, before, k_disabled + texts.menu_text(entry.text), entry.name);
        bar->setActiveAction(nullptr);
        EXPECT_TRUE(triggered.isEmpty()) << entry.name;
    }
    frmNVRHelp help(context());
    help.show();
    auto* fonts = help.findChild<QAction*>(QStringLiteral("mnuFonts"));
    const QSignalSpy triggered(fonts, &QAction::triggered);
    QTest::mouseClick(help.menuBar(), Qt::LeftButton, {}, help.menuBar()->actionGeometry(fonts).center());
    EXPECT_TRUE(triggered.isEmpty());
}

TEST_F(QuickHelpSilenceTest, TheAcceleratorOfABarEntryExplainsIt) {
    quick_help_.set_on(true);
    const QSignalSpy triggered(find<QAction>("mnuWinGraphics"), &QAction::triggered);
    window_->activateWindow();
    QTest::keyClick(window_.get(), Qt::Key_G, Qt::AltModifier);
    EXPECT_TRUE(triggered.isEmpty());
    EXPECT_EQ(window_->help_text().toStdString(),
              k_disabled + Load_QuickHelp(program_.path(), "frmNVR").menu_text(29));
}

TEST_F(QuickHelpSilenceTest, TheAcceleratorOfAButtonExplainsIt) {
    quick_help_.set_on(true);
    window_->activateWindow();
    auto* add = find<QPushButton>("Command1(0)");
    const QSignalSpy clicked(add, &QPushButton::clicked);
    QTest::keyClick(window_.get(), Qt::Key_A, Qt::AltModifier);
    QTest::qWait(150);  // an accelerator keeps the button down for a tenth of a second
    EXPECT_TRUE(clicked.isEmpty());
    EXPECT_EQ(window_->help_text().toStdString(), Load_QuickHelp(program_.path(), "frmNVR").line(39));
}

TEST_F(QuickHelpSilenceTest, MenuTextsAreNumberedAsTheMenusAre) {
    const auto number = [this](const std::string& name) {
        return find<QAction>(name.c_str())->property("helpMenu").toInt();
    };
    for (const int item : {0, 1, 2, 4, 5, 7, 9})
        EXPECT_EQ(number("mnuFileItem(" + std::to_string(item) + ")"), item);
    for (int entry = 1; entry <= 4; ++entry)
        EXPECT_EQ(number("mnuFileArray(" + std::to_string(entry) + ")"), 11) << entry;
    for (const int item : {0, 2, 4, 5, 7})
        EXPECT_EQ(number("mnuDataOpt(" + std::to_string(item) + ")"), item + 11);
    EXPECT_EQ(number("mnuWinGraphics"), 29);
    EXPECT_EQ(number("mnuReports"), 30);
}

TEST_F(QuickHelpSilenceTest, ElementsOfTheMainWindowHaveTheirLines) {
    struct Element {
        const char* name;
        int line;
    };
    for (const Element& element :
         {Element{"Label1(0)", 3}, Element{"Label1(1)", 7}, Element{"Label1(2)", 4}, Element{"Label1(3)", 6},
          Element{"Label1(4)", 8}, Element{"Label1(5)", 5}, Element{"Label1(6)", 21},
          Element{"Label1(7)", 46}, Element{"Label1(8)", 9}, Element{"lblBasinArea", 46},
          Element{"Combo1", 9}, Element{"Command1(0)", 39}, Element{"Command1(1)", 40},
          Element{"Command1(2)", 41}}) {
        EXPECT_EQ(find<QWidget>(element.name)->property("helpLine").toInt(), element.line) << element.name;
    }
}

TEST_F(QuickHelpSilenceTest, EveryColumnOfTheZoneGridExplainsItself) {
    auto* grid = find<QTableView>("vaSpread1");
    quick_help_.set_on(true);
    const std::string before = state();
    const QuickHelpTexts texts = Load_QuickHelp(program_.path(), "frmNVR");
    for (int column = 0; column < 11; ++column) {
        grid->scrollTo(grid->model()->index(0, column));
        const QPoint place = grid->visualRect(grid->model()->index(0, column)).center();
        QTest::mouseClick(grid->viewport(), Qt::LeftButton, {}, place);
        expect_silent(*window_, before, texts.line(9 + column + 1), std::to_string(column));
    }
}

}  // namespace
}  // namespace nivora
