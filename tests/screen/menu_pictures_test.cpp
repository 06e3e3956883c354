// Menus and buttons as the screen shows them: what is grey, which entries
// have pictures, and what opens by its key.

#include "tests/screen/screen_fixture.h"
#include "widgets/grid_view.h"

#include <QClipboard>
#include <QComboBox>
#include <QLineEdit>
#include <QMenu>
#include <QMenuBar>
#include <QPushButton>

namespace nivora {
namespace {

/// The luminance of the darkest pixel: near 0 for the text of an enabled element, well above for grey text.
int darkest(const QImage& image) {
    int least = 255;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) least = std::min(least, qGray(image.pixel(x, y)));
    }
    return least;
}

constexpr int k_text = 90;   ///< enabled text is at most this light
constexpr int k_grey = 120;  ///< grey text is at least this light

class MenuPicturesTest : public MainWindowOnScreenTest {
protected:
    QMenuBar& bar() { return *window_->menuBar(); }
    QRect place_in_bar(const char* menu) { return bar().actionGeometry(find<QMenu>(menu)->menuAction()); }
    int darkest_in_bar(const char* menu) {
        return darkest(picture(bar(), place_in_bar(menu).adjusted(2, 2, -2, -2)));
    }
    /// Runs an action while a menu is open.
    template <typename Look>
    void while_open(const char* name, Look look) {
        click(bar(), place_in_bar(name).center());
        auto* menu = find<QMenu>(name);
        ASSERT_TRUE(await([&] { return menu->isVisible(); })) << name;
        look(*menu);
        press({"Escape", "Escape"});
        ASSERT_TRUE(await([&] { return !menu->isVisible(); })) << name;
    }
    int darkest_entry(QMenu& menu, const char* entry) {
        return darkest(picture(menu, menu.actionGeometry(find<QAction>(entry)).adjusted(26, 3, -26, -3)));
    }
    /// Chooses units and makes two zones by keys alone; Escape closes the window of the first period.
    void define_basin() {
        click(*find<QLineEdit>("Text(0)"));
        press({"ctrl+a"});
        type("Alder");
        press({"Return", "Down"});
        dialogs_.then(Answer::Yes);
        press({"Return"});
        ASSERT_EQ(session_.basin.basin_units, Units::Metric);
        ASSERT_EQ(QApplication::focusWidget(), find<QLineEdit>("Text(1)"));
        type("2");
        dialogs_.then(Answer::Yes);
        in_modal("frmPopulate", [](QWidget& window) {
            press({"Escape"});
            EXPECT_FALSE(window.isVisible()) << "Escape goes on without populating";
        });
        press({"Return"});
        ASSERT_TRUE(await([&] { return modal_windows_seen_ == 1; }));
        ASSERT_EQ(session_.basin.zones.size(), 2U);
    }
    /// Adds a simulation of three days in the window of its definition.
    void add_simulation() {
        dialogs_.then_text("hand").then(Answer::Yes);
        in_modal("SimOptions", [](QWidget& window) {
            int box = 6;
            for (const char* value : {"0.45", "0.75", "0.65", "0.8", "0.7", "1", "18", "1.05", "0.025"})
                window.findChild<QLineEdit*>(QStringLiteral("mtxt(%1)").arg(box++))
                    ->setText(QString::fromUtf8(value));
            window.findChild<QLineEdit*>(QStringLiteral("mtxt(3)"))->setText(QStringLiteral("10/03/1980"));
            press({"alt+a"});
        });
        click(*find<QPushButton>("Command1(0)"));
        ASSERT_TRUE(await([&] { return modal_windows_seen_ == 2; }));
        ASSERT_EQ(session_.basin.Current_Sim_Name, "hand");
    }
    void type_areas() {
        auto* zones = find<GridView>("vaSpread1");
        for (int row = 0; row < 2; ++row) {
            click_cell(*zones, row, 1);
            type(row == 0 ? "12.5" : "30");
            press({"Tab"});
        }
    }
};

TEST_F(MenuPicturesTest, RunIsGreyUntilTheAreasOfABasinThatIsMadeByHandAreTyped) {
    EXPECT_LT(darkest_in_bar("mnuData"), k_text);
    define_basin();
    add_simulation();
    EXPECT_GT(darkest_in_bar("mnuRun"), k_grey) << "a simulation is there, and no area";
    type_areas();
    EXPECT_LT(darkest_in_bar("mnuRun"), k_text);
}

TEST_F(MenuPicturesTest, ClimateChangeNeedsASimulationAlsoAfterNoSnowWentOnAndOff) {
    define_basin();
    type_areas();
    auto* zones = find<GridView>("vaSpread1");
    for (int row = 0; row < 2; ++row) {
        click_cell(*zones, row, 2);
        type("1500");
        press({"Tab"});
    }
    for (const bool on : {true, false}) {
        choose("mnuOptItem(0)");
        ASSERT_EQ(session_.run.NoSnow, on);
        while_open("mnuRun",
                   [&](QMenu& menu) { EXPECT_GT(darkest_entry(menu, "mnuRunClim"), k_grey) << on; });
    }
    session_.basin.Basin_Changed = false;
    open_sample();
    choose("mnuOptItem(0)");
    choose("mnuOptItem(0)");
    while_open("mnuRun", [&](QMenu& menu) { EXPECT_LT(darkest_entry(menu, "mnuRunClim"), k_text); });
}

TEST_F(MenuPicturesTest, OpenSaveAndPageSetupHaveAPictureAndNewHasNone) {
    open_sample();
    while_open("mnuFile", [&](QMenu& menu) {
        const auto points = [&](const char* entry) {
            const QRect place = menu.actionGeometry(find<QAction>(entry));
            return drawn_points(picture(menu, {place.left() + 3, place.top() + 3, 20, place.height() - 6}));
        };
        for (const char* entry : {"mnuFileItem(1)", "mnuFileItem(4)", "mnuFileItem(7)"})
            EXPECT_GT(points(entry), 30) << entry;
        for (const char* entry : {"mnuFileItem(0)", "mnuFileItem(5)", "mnuFileItem(9)"})
            EXPECT_LT(points(entry), 5) << entry;
    });
}

TEST_F(MenuPicturesTest, HelpIsAtTheRightEndOfTheMenuBar) {
    const QRect help = place_in_bar("mnuHelp");
    EXPECT_LE(bar().width() - help.right(), 12);
    EXPECT_GT(drawn_points(picture(bar(), help)), 30);
    const auto* reports = find<QAction>("mnuReports");
    const int from = bar().actionGeometry(const_cast<QAction*>(reports)).right() + 4;
    ASSERT_GT(help.left() - from, 100);
    EXPECT_LT(drawn_points(picture(bar(), {from, help.top() + 2, help.left() - from - 4, help.height() - 6})),
              5)
        << "nothing stands between";
    click(bar(), {bar().width() - 20, help.center().y()});
    auto* menu = find<QMenu>("mnuHelp");
    EXPECT_TRUE(await([&] { return menu->isVisible(); }));
    press({"Escape", "Escape"});
}

TEST_F(MenuPicturesTest, PrintButtonsAreAsDarkAsTheOthersInEachWindow) {
    open_sample();
    click_cell(*find<GridView>("DBGrid1"), 1, 0);
    const auto look = [&](QWidget& window) {
        int prints = 0;
        int others = 0;
        for (const auto* button : window.findChildren<QPushButton*>()) {
            if (!button->isVisible() || button->text().isEmpty() || !button->isEnabled()) continue;
            ++(button->text() == QStringLiteral("&Print") ? prints : others);
            EXPECT_LT(darkest(picture(*button, button->rect().adjusted(6, 5, -6, -5))), k_text)
                << button->text().toStdString();
        }
        EXPECT_EQ(prints, 1) << window.objectName().toStdString();
        EXPECT_GE(others, 2) << window.objectName().toStdString();
    };
    for (const auto& [window, command] :
         {std::pair{"frmData", "mnuDataOpt(5)"}, std::pair{"frmLongTermAvg", "mnuToolsItm(0)"}}) {
        in_modal(window, look);
        choose(command);
    }
    EXPECT_EQ(modal_windows_seen_, 2);
    choose("mnuRunSimVar(1)");
    QWidget* results = await_window("Results");
    ASSERT_NE(results, nullptr);
    await_active(*results);
    look(*results);
    results->close();
    EXPECT_TRUE(dialogs_.messages().empty());
}

TEST_F(MenuPicturesTest, ARefusedPasteNamesThePlaceAndTheRule) {
    open_sample();
    auto* zones = find<GridView>("vaSpread1");
    const auto before = session_.basin.zones[1].area;
    QApplication::clipboard()->setText(QStringLiteral("much"));
    click_cell(*zones, 1, 1);
    press({"ctrl+v"});
    ASSERT_EQ(dialogs_.messages().size(), 1U);
    const Message& told = dialogs_.messages()[0].message;
    EXPECT_EQ(told.title, "Paste");
    EXPECT_THAT(told.text, testing::HasSubstr("Zone Area (km²), zone 2"));
    EXPECT_THAT(told.text, testing::HasSubstr("'much'"));
    EXPECT_THAT(told.text, testing::HasSubstr("this is not a number"));
    EXPECT_EQ(session_.basin.zones[1].area, before);
}

}  // namespace
}  // namespace nivora
