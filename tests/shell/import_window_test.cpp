// What an import through the File menu changes in a basin, and what it asks.
#include "tests/shell/import_window_fixture.h"

#include <QCheckBox>
#include <QGroupBox>
#include <QPlainTextEdit>
#include <QRadioButton>
#include <algorithm>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* k_zones_question =
    "A definition of the zones in this basin already exists.  Overwrite?";
constexpr const char* k_days_question =
    "Physical variable data for simulation time period are present in the database.  Overwrite?";

TEST_F(ImportWindowTest, ANewBasinTakesUnitsNameAndZonesFromTheFile) {
    leave_definition(0);
    name("spring").import(legacy({}));
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
    ASSERT_EQ(dialogs_.files().size(), 1U);
    EXPECT_EQ(dialogs_.files()[0].title, "Import a DOS NVR data file");
    ASSERT_EQ(dialogs_.inputs().size(), 1U);
    EXPECT_EQ(dialogs_.inputs()[0].prompt, "Enter a unique name to associate with this data");
    EXPECT_EQ(dialogs_.inputs()[0].title, "Name the Imported Simulation");
    EXPECT_EQ(dialogs_.inputs()[0].proposed, "alder");
    EXPECT_EQ(box(0)->text(), QStringLiteral("Alder Brook"));
    EXPECT_EQ(box(2)->text(), QStringLiteral("1800"));
    EXPECT_FALSE(find<QComboBox>("Combo1")->isVisible());
    EXPECT_EQ(find<QLabel>("lblUnits")->text(), QStringLiteral("Metric"));
    EXPECT_FALSE(box(1)->isVisible());
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("2"));
    EXPECT_EQ(find<QTableView>("vaSpread1")->model()->rowCount(), 2);
    EXPECT_EQ(zone_cell(1, 1) + zone_cell(2, 1), "AB");
    EXPECT_EQ(zone_cell(1, 2), "40");
    EXPECT_EQ(zone_cell(2, 3), "2500");
    // 40 + 60 km².
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("100"));
    EXPECT_THAT(simulations(), ElementsAre("spring"));
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("spring"));
}

TEST_F(ImportWindowTest, AnImportedBasinIsUnsavedAndCanBeEditedAndRun) {
    session_.basin.Output_Valid = true;
    import_first();
    EXPECT_TRUE(session_.basin.New_Basin);
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_TRUE(session_.basin.Input_Changed);
    EXPECT_FALSE(session_.basin.Output_Valid);
    EXPECT_FALSE(enabled("mnuFileItem(4)"));
    for (const char* action :
         {"mnuFileItem(5)", "mnuDataOpt(0)", "mnuDataOpt(4)", "mnuDataOptVar(0)", "mnuDataOptVar(1)",
          "mnuDataOpt(5)", "mnuRun", "mnuRunSim", "mnuRunFor", "mnuTools", "mnuToolsItm(0)"}) {
        EXPECT_TRUE(enabled(action)) << action;
    }
    EXPECT_TRUE(find<QPushButton>("Command1(1)")->isEnabled());
    EXPECT_TRUE(find<QPushButton>("Command1(2)")->isEnabled());
}

TEST_F(ImportWindowTest, TheWholeRecordOfAnImportedBasinOpensWithoutAQuestion) {
    import_first();
    int days = 0;
    modal_.then("frmData", [&](QWidget& window) {
        days = element<QTableView>(window, "Spread").model()->rowCount();
        element<QPushButton>(window, "Command1(1)").click();
    });
    choose("mnuDataOptVar(0)");
    // 1 to 3 April.
    EXPECT_EQ(days, 3);
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
}

TEST_F(ImportWindowTest, TheDefinitionShowsWhatTheFileHolds) {
    std::vector<std::string> texts;
    std::vector<std::string> captions;
    leave_definition(0, [&](QWidget& window) {
        for (int i = 1; i <= 14; ++i) {
            const std::string name = "mtxt(" + std::to_string(i) + ")";
            texts.push_back(from_qt(element<QLineEdit>(window, name.c_str()).text()));
        }
        EXPECT_EQ(element<QLabel>(window, "lblSimName").text(), QStringLiteral("snow && rain"));
        EXPECT_TRUE(element<QRadioButton>(window, "optUnits(0)").isChecked());
        EXPECT_TRUE(element<QRadioButton>(window, "optTempType(0)").isChecked());
        for (int i = 0; i < 6; ++i) {
            const std::string name = "ByZone(" + std::to_string(i) + ")";
            EXPECT_FALSE(element<QCheckBox>(window, name.c_str()).isChecked()) << i;
        }
        EXPECT_EQ(element<QPlainTextEdit>(window, "mtxt(15)").toPlainText(), QString{});
        for (const QLabel* label : window.findChildren<QLabel*>()) captions.push_back(from_qt(label->text()));
    });
    name("snow & rain").import(legacy({}));
    // Run number, period, runoff, threshold; degree-day factor, critical temperature, lapse rate, snow and
    // rain coefficients, contributing area, lag, x and y of zone 1 on the first day.
    EXPECT_THAT(texts, ElementsAre("", "04/01/1996", "04/03/1996", "", "5", "0.4", "1", "0.65", "0.9", "0.7",
                                   "1", "18", "0.9", "0.05"));
    // The values come from the file, not from a stored first day.
    EXPECT_THAT(captions, testing::Not(testing::Contains(HasSubstr("(Zone 1, Day 1)"))));
}

TEST_F(ImportWindowTest, AnEnglishFileShowsItsUnitsAndKeepsItsThreshold) {
    LegacyParts parts;
    parts.units = "1";
    std::string threshold;
    leave_definition(0, [&](QWidget& window) {
        EXPECT_TRUE(element<QRadioButton>(window, "optUnits(1)").isChecked());
        EXPECT_THAT(from_qt(element<QGroupBox>(window, "Frame1(5)").title()), HasSubstr("(in)"));
        threshold = from_qt(element<QLineEdit>(window, "mtxt(5)").text());
    });
    name("first").import(legacy(parts));
    EXPECT_EQ(threshold, "5");
    EXPECT_EQ(find<QLabel>("lblUnits")->text(), QStringLiteral("English"));
}

TEST_F(ImportWindowTest, AcceptTakesTheDefinitionAsItWasChangedInItsWindow) {
    leave_definition(0, [](QWidget& window) {
        type_over(element<QLineEdit>(window, "mtxt(4)"), QStringLiteral("12.5"));
        type_over(element<QLineEdit>(window, "mtxt(1)"), QStringLiteral("3"));
    });
    name("first").import(legacy({}));
    ASSERT_EQ(session_.basin.simulations.size(), 1U);
    const Simulation& row = session_.basin.simulations[0];
    EXPECT_EQ(row.initial_runoff, 12.5F);
    EXPECT_EQ(row.run_number, std::int16_t{3});
    EXPECT_EQ(row.precipitation_threshold, 5.0F);
    EXPECT_EQ(row.start, day(1996, 4, 1));
    EXPECT_EQ(row.end, day(1996, 4, 3));
}

TEST_F(ImportWindowTest, FirstValuesThatAreChangedInTheWindowOverwriteNoDays) {
    leave_definition(
        0, [](QWidget& window) { type_over(element<QLineEdit>(window, "mtxt(6)"), QStringLiteral("0.99")); });
    name("first").import(legacy({}));
    EXPECT_THAT(rows("SELECT DISTINCT Zone, round(An, 3) FROM first ORDER BY Zone"),
                ElementsAre("1 0.4", "2 0.5"));
}

TEST_F(ImportWindowTest, CancelLeavesTheImportedTablesWithoutAGridRow) {
    leave_definition(1);
    name("first").import(legacy({}));
    EXPECT_THAT(simulations(), IsEmpty());
    EXPECT_THAT(rows("SELECT count(*) FROM first"), ElementsAre("6"));
    EXPECT_THAT(rows("SELECT count(*) FROM PhysicalData"), ElementsAre("6"));
    EXPECT_EQ(box(0)->text(), QStringLiteral("Alder Brook"));
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("2"));
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_FALSE(find<QPushButton>("Command1(1)")->isEnabled());
    EXPECT_FALSE(enabled("mnuRunSim"));
}

TEST_F(ImportWindowTest, AfterACancelledImportItsNameIsTakenAndMayBeOverwritten) {
    leave_definition(1);
    name("first").import(legacy({}));
    leave_definition(0);
    // The zones are those of the file; the days stay.
    name("first").answer(Answer::Yes).answer(Answer::No).import(legacy({}));
    ASSERT_EQ(dialogs_.messages().size(), 2U);
    EXPECT_EQ(dialogs_.messages()[0].message.title, "Duplicate simulation same");
    EXPECT_EQ(dialogs_.messages()[0].message.text,
              "The current database already contains a simulation named 'first '.  Overwrite?");
    EXPECT_THAT(simulations(), ElementsAre("first"));
    EXPECT_THAT(rows("SELECT count(*) FROM first"), ElementsAre("6"));
}

TEST_F(ImportWindowTest, NoToOverwritingASimulationChangesNothing) {
    import_first();
    name("FIRST").answer(Answer::No);
    expect_nothing_from(legacy({}));
}

TEST_F(ImportWindowTest, UnitsThatAreFixedStayAndZonesAreMade) {
    choose_units(0, Answer::Yes);
    leave_definition(0);
    name("first").import(legacy({}));
    EXPECT_EQ(find<QLabel>("lblUnits")->text(), QStringLiteral("Metric"));
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("2"));
    EXPECT_THAT(simulations(), ElementsAre("first"));
}

TEST_F(ImportWindowTest, OtherUnitsThanTheBasinsAreRefused) {
    choose_units(1, Answer::Yes);
    expect_nothing_from(legacy({}));
    EXPECT_EQ(last_message().title, "Import failed.  Simulation units inconsistent with basin.");
    EXPECT_EQ(last_message().text,
              "You cannot mix English & Metric units in the same basin database.  Please create a new "
              "database");
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
}

TEST_F(ImportWindowTest, AnotherNumberOfZonesIsRefused) {
    import_first();
    LegacyParts parts;
    parts.zones = "3";
    parts.pairs = legacy_pairs(3);
    expect_nothing_from(legacy(parts));
    EXPECT_EQ(last_message().text, "Zones in import file don't match basin");
    EXPECT_EQ(last_message().icon, Icon::Stop);
}

/// A second file for the basin of the first: other zones, two of the first file's days, and two new ones.
LegacyParts later_days() {
    LegacyParts parts;
    parts.start = "0402";
    parts.end = "0405";
    parts.name = "\"Another Brook\"";
    parts.reference_elevation = "999";
    parts.pairs[0] = "41,1600";
    parts.section(LegacySection::Precip) = "366*3,366*4/";
    return parts;
}

TEST_F(ImportWindowTest, YesToBothQuestionsReplacesZonesAndDays) {
    import_first();
    leave_definition(0);
    answer(Answer::Yes).name("second").answer(Answer::Yes).import(legacy(later_days()));
    ASSERT_EQ(dialogs_.messages().size(), 2U);
    EXPECT_EQ(dialogs_.messages()[0].message.text, k_zones_question);
    EXPECT_EQ(dialogs_.messages()[0].message.title, "Importing a .NVR file");
    EXPECT_EQ(dialogs_.messages()[0].message.buttons, Buttons::YesNoCancel);
    EXPECT_EQ(dialogs_.messages()[1].message.text, k_days_question);
    EXPECT_EQ(dialogs_.messages()[1].message.title,
              "Import file contains days already present in the database!");
    EXPECT_EQ(dialogs_.messages()[1].message.buttons, Buttons::YesNo);
    EXPECT_EQ(zone_cell(1, 2), "41");
    EXPECT_EQ(zone_cell(1, 3), "1600");
    // 41 + 60 km².
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("101"));
    // Zone 1: the first file's 1 April stays, 2 and 3 April are the second's, 4 and 5 April are new.
    EXPECT_THAT(rows("SELECT Precip FROM PhysicalData WHERE Zone = 1 ORDER BY Date"),
                ElementsAre("0.5", "3.0", "3.0", "3.0", "3.0"));
    EXPECT_THAT(rows("SELECT count(*) FROM PhysicalData"), ElementsAre("10"));
    // A basin that has a definition keeps its name and its reference elevation.
    EXPECT_EQ(box(0)->text(), QStringLiteral("Alder Brook"));
    EXPECT_EQ(box(2)->text(), QStringLiteral("1800"));
    EXPECT_THAT(simulations(), ElementsAre("first", "second"));
}

TEST_F(ImportWindowTest, NoToBothQuestionsKeepsZonesAndDaysAndAddsTheMissingDays) {
    import_first();
    leave_definition(0);
    answer(Answer::No).name("second").answer(Answer::No).import(legacy(later_days()));
    EXPECT_EQ(zone_cell(1, 2), "40");
    EXPECT_EQ(zone_cell(1, 3), "1500");
    EXPECT_THAT(rows("SELECT Precip FROM PhysicalData WHERE Zone = 1 ORDER BY Date"),
                ElementsAre("0.5", "0.5", "0.5", "3.0", "3.0"));
    EXPECT_THAT(rows("SELECT count(*) FROM second"), ElementsAre("8"));
    EXPECT_THAT(simulations(), ElementsAre("first", "second"));
}

TEST_F(ImportWindowTest, DaysOutsideTheRecordAreAddedWithoutAQuestion) {
    import_first();
    LegacyParts parts;
    parts.year = "1997";
    leave_definition(0);
    name("second").import(legacy(parts));
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
    EXPECT_THAT(rows("SELECT count(*) FROM PhysicalData"), ElementsAre("12"));
}

TEST_F(ImportWindowTest, CancelAtTheZonesEndsTheImport) {
    import_first();
    answer(Answer::Cancel);
    expect_nothing_from(legacy(later_days()));
    EXPECT_EQ(last_message().text, k_zones_question);
}

TEST_F(ImportWindowTest, WithoutANameNothingIsImported) {
    for (const std::optional<std::string>& given : {std::optional<std::string>{}, {""}, {"  "}}) {
        name(given);
        expect_nothing_from(legacy({}));
    }
    EXPECT_THAT(dialogs_.messages(), IsEmpty());
    import_first();
    answer(Answer::Yes).name(std::nullopt);
    expect_nothing_from(legacy(later_days()));
}

TEST_F(ImportWindowTest, WithoutAFileNothingIsAsked) {
    const auto before = contents();
    dialogs_.then_file(std::nullopt);
    choose("mnuFileItem(2)");
    EXPECT_EQ(contents(), before);
    EXPECT_FALSE(session_.basin.Basin_Changed);
    EXPECT_THAT(dialogs_.inputs(), IsEmpty());
}

TEST_F(ImportWindowTest, ANameThatNoTableCanHaveIsAskedForAgain) {
    leave_definition(0);
    name("a.b").name(" O'Brien's \"50 %\" ").import(legacy({}, "Spring.nvr"));
    ASSERT_EQ(dialogs_.inputs().size(), 2U);
    EXPECT_EQ(dialogs_.inputs()[1].prompt, "Invalid character(s) in name, please re-enter");
    EXPECT_EQ(dialogs_.inputs()[1].title, "Name the Imported Simulation");
    EXPECT_EQ(dialogs_.inputs()[1].proposed, "Spring");
    EXPECT_THAT(simulations(), ElementsAre("O'Brien's \"50 %\""));
}

TEST_F(ImportWindowTest, ANamedBasinWithoutZonesTakesThemAndKeepsItsName) {
    choose_units(0, Answer::Yes);
    type(0, "Mine");
    leave_definition(0);
    name("first").import(legacy({}));
    EXPECT_THAT(dialogs_.messages().size(), 1U) << "the units alone were asked about";
    EXPECT_EQ(box(0)->text(), QStringLiteral("Mine"));
    EXPECT_EQ(box(2)->text(), QStringLiteral("1800"));
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("2"));
    EXPECT_EQ(zone_cell(2, 2), "60");
}

TEST_F(ImportWindowTest, AnUnconfirmedNumberOfZonesFixesNothing) {
    choose_units(0, Answer::Yes);
    type(1, "3");
    leave_definition(0);
    name("first").import(legacy({}));
    EXPECT_EQ(find<QLabel>("lblZones")->text(), QStringLiteral("2"));
    EXPECT_THAT(simulations(), ElementsAre("first"));
}

TEST_F(ImportWindowTest, AnUnnamedBasinWithFixedZonesTakesNameAndElevation) {
    choose_units(0, Answer::Yes);
    give_zones("2", Answer::Yes);
    leave_definition(0);
    answer(Answer::Yes).name("first").import(legacy({}));
    EXPECT_EQ(box(0)->text(), QStringLiteral("Alder Brook"));
    EXPECT_EQ(box(2)->text(), QStringLiteral("1800"));
    EXPECT_EQ(zone_cell(1, 2), "40");
    EXPECT_EQ(find<QLabel>("lblBasinArea")->text(), QStringLiteral("100"));
}

TEST_F(ImportWindowTest, AfterAnImportItsSimulationIsTheCurrentOne) {
    import_first();
    leave_definition(0);
    answer(Answer::No).name("second").answer(Answer::No).import(legacy(later_days()));
    EXPECT_EQ(find<QTableView>("DBGrid1")->currentIndex().row(), 1);
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("second"));
    EXPECT_EQ(session_.basin.Current_Start, day(1996, 4, 2));
    EXPECT_TRUE(enabled("mnuDataOpt(2)"));
}

TEST_F(ImportWindowTest, AfterACancelledDefinitionTheSelectionStays) {
    import_first();
    leave_definition(0);
    answer(Answer::No).name("second").answer(Answer::No).import(legacy(later_days()));
    leave_definition(1);
    answer(Answer::No).name("third").answer(Answer::No).import(legacy(later_days()));
    EXPECT_THAT(simulations(), ElementsAre("first", "second"));
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("second"));
}

TEST_F(ImportWindowTest, AnImportOverASimulationKeepsOneRowOfItsName) {
    import_first();
    leave_definition(0);
    answer(Answer::No).name("second").answer(Answer::No).import(legacy(later_days()));
    leave_definition(0);
    LegacyParts parts;
    parts.end = "0402";
    name("FIRST").answer(Answer::Yes).answer(Answer::No).import(legacy(parts));
    EXPECT_THAT(simulations(), ElementsAre("FIRST", "second"));
    EXPECT_EQ(session_.basin.simulations[0].end, day(1996, 4, 2));
    EXPECT_EQ(find<QLabel>("lblSimVisible")->text(), QStringLiteral("FIRST"));
    EXPECT_THAT(rows("SELECT count(*) FROM first"), ElementsAre("4"));
}

TEST_F(ImportWindowTest, UnsavedZonesAndSimulationsSurviveAnImport) {
    import_first();
    session_.basin.simulations[0].comments = "not saved yet";
    auto& zones = *find<QTableView>("vaSpread1");
    type_into_cell(zones, 1, 1, QStringLiteral("77"));
    leave_definition(0);
    answer(Answer::No).name("second").answer(Answer::No).import(legacy(later_days()));
    EXPECT_EQ(zone_cell(2, 2), "77");
    EXPECT_THAT(rows("SELECT ZoneArea FROM ZoneDescription"), ElementsAre("40.0", "77.0"));
    EXPECT_THAT(simulations(), ElementsAre("first", "second"));
    EXPECT_EQ(session_.basin.simulations[0].comments, "not saved yet");
}

TEST_F(ImportWindowTest, UnsavedZonesAndSimulationsSurviveARefusedImport) {
    import_first();
    type_into_cell(*find<QTableView>("vaSpread1"), 1, 1, QStringLiteral("77"));
    answer(Answer::Cancel);
    expect_nothing_from(legacy(later_days()));
    EXPECT_EQ(zone_cell(2, 2), "77");
    EXPECT_THAT(rows("SELECT ZoneArea FROM ZoneDescription"), ElementsAre("40.0", "60.0"));
}

TEST_F(ImportWindowTest, AnImportIntoAnOpenedBasinCanBeSavedOverItsFile) {
    open_sample();
    LegacyParts parts;
    parts.zones = "5";
    parts.pairs = legacy_pairs(5);
    parts.year = "1950";
    const auto before = simulations();
    leave_definition(0);
    answer(Answer::No).name("old spring").import(legacy(parts));
    EXPECT_TRUE(session_.basin.Basin_Changed);
    EXPECT_FALSE(session_.basin.New_Basin);
    EXPECT_TRUE(enabled("mnuFileItem(4)"));
    choose("mnuFileItem(4)");
    auto expected = before;
    expected.emplace_back("old spring");
    EXPECT_EQ(simulations(), expected);
    EXPECT_FALSE(session_.basin.Basin_Changed);
}

TEST_F(ImportWindowTest, AnImportClosesThePlotsAndACancelledOneLeavesThem) {
    const auto plots = [] {
        const QWidgetList tops = QApplication::topLevelWidgets();
        return std::any_of(tops.begin(), tops.end(), [](const QWidget* top) {
            return top->isVisible() && top->objectName() == QStringLiteral("frmNVRPlot");
        });
    };
    import_first();
    choose("mnuWinGraphics");
    ASSERT_TRUE(plots());
    dialogs_.then_file(std::nullopt);
    choose("mnuFileItem(2)");
    EXPECT_TRUE(plots());
    leave_definition(0);
    answer(Answer::No).name("second").answer(Answer::No).import(legacy(later_days()));
    EXPECT_FALSE(plots());
}

}  // namespace
}  // namespace nivora
