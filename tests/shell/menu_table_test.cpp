#include "tests/shell/main_window_fixture.h"

#include <gmock/gmock.h>

#include <QMenuBar>

namespace nivora {
namespace {

using testing::ElementsAre;

constexpr const char* k_line = "--";

/// The captions of a menu from top to bottom, "--" for a separator.
std::vector<std::string> captions(const QWidget* menu) {
    std::vector<std::string> texts;
    for (const QAction* action : menu->actions())
        texts.push_back(action->isSeparator() ? k_line : action->text().toStdString());
    return texts;
}

std::vector<std::string> names(const QWidget* menu) {
    std::vector<std::string> texts;
    for (const QAction* action : menu->actions()) texts.push_back(action->objectName().toStdString());
    return texts;
}

class MenuTableTest : public MainWindowTest {
protected:
    [[nodiscard]] std::vector<std::string> captions_of(const char* menu) {
        return captions(find<QMenu>(menu));
    }
};

TEST_F(MenuTableTest, TheBarHasItsMenusInOrder) {
    EXPECT_THAT(names(window_->menuBar()),
                ElementsAre("mnuFile", "mnuEdit", "mnuOpt", "mnuData", "mnuRun", "mnuTools", "mnuWinGraphics",
                            "mnuReports", "", "mnuHelp"));
    EXPECT_THAT(captions(window_->menuBar()),
                ElementsAre("&File", "Ed&it", "&Options", "Da&ta", "&Run", "Too&ls", "&Graphics", "&Reports",
                            k_line, "&Help"));
}

TEST_F(MenuTableTest, TheHelpMenuIsAtTheRightEndOfTheBar) {
    QMenuBar* bar = window_->menuBar();
    const QRect help = bar->actionGeometry(find<QAction>("mnuHelp"));
    const QRect reports = bar->actionGeometry(find<QAction>("mnuReports"));
    EXPECT_GT(help.right(), bar->width() - 12);
    EXPECT_GT(help.left(), reports.right() + 100);
}

TEST_F(MenuTableTest, OpenSaveAndPageSetupHavePicturesOnceTheMenuOpens) {
    auto* file = find<QMenu>("mnuFile");
    file->popup(QPoint{});
    file->close();
    for (int item = 0; item <= 9; ++item) {
        const bool picture = item == 1 || item == 4 || item == 7;
        const auto* entry = find<QAction>(("mnuFileItem(" + std::to_string(item) + ")").c_str());
        EXPECT_EQ(!entry->icon().isNull(), picture) << item;
        EXPECT_TRUE(!picture || entry->isIconVisibleInMenu()) << item;
    }
}

TEST_F(MenuTableTest, TheFileMenuHasItsItemsLinesAndPlacesForRecentFiles) {
    EXPECT_THAT(captions_of("mnuFile"),
                ElementsAre("&New", "&Open", "&Import", k_line, "&Save", "Save &As ...", k_line,
                            "&Page Setup", k_line, "E&xit", k_line, "", "", "", ""));
    EXPECT_THAT(names(find<QMenu>("mnuFile")),
                ElementsAre("mnuFileItem(0)", "mnuFileItem(1)", "mnuFileItem(2)", "mnuFileItem(3)",
                            "mnuFileItem(4)", "mnuFileItem(5)", "mnuFileItem(6)", "mnuFileItem(7)",
                            "mnuFileItem(8)", "mnuFileItem(9)", "mnuFileArray(0)", "mnuFileArray(1)",
                            "mnuFileArray(2)", "mnuFileArray(3)", "mnuFileArray(4)"));
}

TEST_F(MenuTableTest, TheEditMenuHasItsItemsAndRowsAndColumns) {
    EXPECT_THAT(captions_of("mnuEdit"), ElementsAre("Cu&t", "&Copy", "&Paste", k_line, "&Insert", "&Delete"));
    EXPECT_THAT(captions_of("mnuEditItem(4)"), ElementsAre("Add ...", "&Column"));
    EXPECT_THAT(captions_of("mnuEditItem(5)"), ElementsAre("Delete ...", "&Column"));
    EXPECT_THAT(names(find<QMenu>("mnuEditItem(4)")),
                ElementsAre("mnuEditItmInsert(0)", "mnuEditItmInsert(1)"));
    EXPECT_THAT(names(find<QMenu>("mnuEditItem(5)")),
                ElementsAre("mnuEditItmDelete(0)", "mnuEditItmDelete(1)"));
}

TEST_F(MenuTableTest, TheRowItemsSpeakOfSimulationsWhileTheirGridHasTheFocus) {
    open_sample();
    find<QTableView>("DBGrid1")->setFocus();
    EXPECT_EQ(find<QAction>("mnuEditItmInsert(0)")->text(), QStringLiteral("Add Simulation"));
    EXPECT_EQ(find<QAction>("mnuEditItmDelete(0)")->text(), QStringLiteral("Delete Simulation"));
    find<QTableView>("vaSpread1")->setFocus();
    EXPECT_EQ(find<QAction>("mnuEditItmInsert(0)")->text(), QStringLiteral("Add ..."));
    EXPECT_EQ(find<QAction>("mnuEditItmDelete(0)")->text(), QStringLiteral("Delete ..."));
}

TEST_F(MenuTableTest, TheOptionsMenuHasItsItems) {
    const auto texts = captions_of("mnuOpt");
    ASSERT_EQ(texts.size(), 6U);
    EXPECT_EQ(texts[0], "&Run year-round simulations in 'No Snow' mode");
    EXPECT_EQ(texts[3], "Melting Procedure");
    EXPECT_EQ(texts[5], "&Clear Recent Files");
    for (const std::size_t line : {1U, 2U, 4U}) EXPECT_EQ(texts[line], k_line) << line;
    EXPECT_THAT(captions_of("mnuOptItem(3)"), ElementsAre("Temperature", "Temperature/Radiation"));
}

TEST_F(MenuTableTest, TheDataMenuHasItsItems) {
    EXPECT_THAT(captions_of("mnuData"),
                ElementsAre("&Simulation Definition", k_line, "&Climate Change Scenario Definition", k_line,
                            "&Variables", "&Parameters", k_line, "&Results"));
    EXPECT_THAT(captions_of("mnuDataOpt(4)"), ElementsAre("&Period of record", "&Current simulation"));
}

TEST_F(MenuTableTest, TheRunMenuHasItsItems) {
    EXPECT_THAT(captions_of("mnuRun"), ElementsAre("&Simulation", "&Forecast", k_line, "C&limate Change"));
    EXPECT_THAT(names(find<QMenu>("mnuRun")),
                ElementsAre("mnuRunSim", "mnuRunFor", "mnuRunSep1", "mnuRunClim"));
    EXPECT_THAT(captions_of("mnuRunSim"), ElementsAre("&Melt Season Simulation", "&Year round Simulation"));
    EXPECT_THAT(captions_of("mnuRunFor"), ElementsAre("&Melt Season Forecast", "&Year round Forecast"));
}

TEST_F(MenuTableTest, TheToolsMenuHasItsItems) {
    EXPECT_THAT(captions_of("mnuTools"),
                ElementsAre("&Calculate Long-term Monthly Averages", k_line, "Convert from Metric to English",
                            k_line, "&Define a custom time lag distribution for the basin", "&More ..."));
    EXPECT_THAT(captions_of("mnuToolsItm(5)"),
                ElementsAre("&Runs", "&Check data", "&Import a table ...", "&Export a table ..."));
}

TEST_F(MenuTableTest, TheHelpMenuHasItsItems) {
    EXPECT_THAT(captions_of("mnuHelp"), ElementsAre("&Help for Nivora main window", "Show Nivora &Welcome",
                                                    k_line, "&About NVR for Windows", "&System Information"));
}

TEST_F(MenuTableTest, EveryEntryHasANameAndItsIndexIsItsPlace) {
    for (const char* menu : {"mnuFile", "mnuEdit", "mnuOpt", "mnuData", "mnuTools", "mnuHelp"}) {
        const QList<QAction*> actions = find<QMenu>(menu)->actions();
        for (qsizetype place = 0; place < actions.size(); ++place) {
            const QString name = actions.at(place)->objectName();
            if (name.startsWith(QStringLiteral("mnuFileArray"))) continue;
            EXPECT_TRUE(name.endsWith(QStringLiteral("(%1)").arg(place)))
                << menu << ' ' << place << ' ' << name.toStdString();
        }
    }
}

TEST_F(MenuTableTest, NoTwoEntriesOfAMenuShareAnAccelerator) {
    for (const QMenu* menu : window_->findChildren<QMenu*>()) {
        if (!menu->objectName().startsWith(QStringLiteral("mnu"))) continue;
        std::map<QString, QString> taken;
        for (const QAction* action : menu->actions()) {
            const QString keys = QKeySequence::mnemonic(action->text()).toString();
            if (keys.isEmpty() || !action->isVisible()) continue;
            EXPECT_FALSE(taken.contains(keys))
                << action->text().toStdString() << " and " << taken[keys].toStdString();
            taken[keys] = action->text();
        }
    }
}

TEST_F(MenuTableTest, RecentFilesAreHiddenWithTheirLineUntilThereAreAny) {
    for (int entry = 0; entry <= 4; ++entry) {
        EXPECT_FALSE(find<QAction>(("mnuFileArray(" + std::to_string(entry) + ")").c_str())->isVisible())
            << entry;
    }
    const auto file = open_sample();
    EXPECT_TRUE(find<QAction>("mnuFileArray(0)")->isVisible());
    EXPECT_EQ(find<QAction>("mnuFileArray(1)")->text(), QString::fromStdString(file.string()));
    EXPECT_FALSE(find<QAction>("mnuFileArray(2)")->isVisible());
}

TEST_F(MenuTableTest, ClearingTheRecentFilesHidesThemWithTheirLineAtOnce) {
    open_sample();
    choose("mnuOptItem(5)");
    EXPECT_FALSE(find<QAction>("mnuFileArray(0)")->isVisible());
    EXPECT_FALSE(find<QAction>("mnuFileArray(1)")->isVisible());
    EXPECT_TRUE(session_.settings.recent_files.empty());
}

TEST_F(MenuTableTest, AnAmpersandInARecentNameIsShownAndIsNotAnAccelerator) {
    session_.settings.recent_files = {"/data/snow & ice.mdb"};
    session_.desktop.refresh_main_window();
    EXPECT_EQ(find<QAction>("mnuFileArray(1)")->text(), QStringLiteral("/data/snow && ice.mdb"));
}

TEST_F(MenuTableTest, ExactlyOneMeltingProcedureIsTickedAndShown) {
    auto* temperature = find<QAction>("mnuOptSubItem(0)");
    auto* radiation = find<QAction>("mnuOptSubItem(1)");
    EXPECT_TRUE(temperature->isChecked());
    EXPECT_FALSE(radiation->isChecked());
    choose("mnuOptSubItem(1)");
    EXPECT_FALSE(temperature->isChecked());
    EXPECT_TRUE(radiation->isChecked());
    choose("mnuOptSubItem(1)");
    EXPECT_TRUE(radiation->isChecked());
    EXPECT_EQ(find<QLabel>("panel2")->text(), QStringLiteral("Temperature/Radiation"));
    choose("mnuOptSubItem(0)");
    EXPECT_TRUE(temperature->isChecked());
    EXPECT_FALSE(radiation->isChecked());
    EXPECT_EQ(find<QLabel>("panel2")->text(), QStringLiteral("Temperature"));
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(MenuTableTest, TheConversionBoxHasOneTextAndConvertsNothing) {
    open_sample();
    choose("mnuToolsItm(2)");
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    EXPECT_EQ(last_message().text, "Database conversion routine in development");
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
    EXPECT_EQ(session_.basin.Units_Code, Units::Metric);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

}  // namespace
}  // namespace nivora
