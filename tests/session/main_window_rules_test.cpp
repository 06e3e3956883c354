#include "session/main_window_rules.h"

#include "base/scripted_dialogs.h"
#include "store/table_io.h"
#include "tests/support/temporary_folder.h"

#include <gtest/gtest.h>

#include <cmath>

namespace nivora {
namespace {

TEST(BasinBoxKeys, DigitsPassEverywhere) {
    for (const BasinBox box :
         {BasinBox::Zones, BasinBox::ReferenceElevation, BasinBox::Latitude, BasinBox::Longitude}) {
        EXPECT_EQ(key_verdict(box, U'7', "1"), KeyVerdict::Passes);
        EXPECT_EQ(key_verdict(box, U'x', "1"), KeyVerdict::Dropped);
        EXPECT_EQ(key_verdict(box, U' ', "1"), KeyVerdict::Dropped);
    }
}

TEST(BasinBoxKeys, AMinusSignBeepsInTheZonesAndElevationBoxes) {
    EXPECT_EQ(key_verdict(BasinBox::Zones, U'-', ""), KeyVerdict::DroppedWithBeep);
    EXPECT_EQ(key_verdict(BasinBox::ReferenceElevation, U'-', ""), KeyVerdict::DroppedWithBeep);
}

TEST(BasinBoxKeys, APointIsDroppedSilentlyInTheZonesAndElevationBoxes) {
    EXPECT_EQ(key_verdict(BasinBox::Zones, U'.', ""), KeyVerdict::Dropped);
    EXPECT_EQ(key_verdict(BasinBox::ReferenceElevation, U'.', ""), KeyVerdict::Dropped);
}

TEST(BasinBoxKeys, AnglesTakeOneMinusSignAndOnePoint) {
    EXPECT_EQ(key_verdict(BasinBox::Latitude, U'-', ""), KeyVerdict::Passes);
    EXPECT_EQ(key_verdict(BasinBox::Latitude, U'-', "45"), KeyVerdict::Passes);
    EXPECT_EQ(key_verdict(BasinBox::Latitude, U'-', "-45"), KeyVerdict::Dropped);
    EXPECT_EQ(key_verdict(BasinBox::Longitude, U'.', "45"), KeyVerdict::Passes);
    EXPECT_EQ(key_verdict(BasinBox::Longitude, U'.', "4.5"), KeyVerdict::DroppedWithBeep);
}

TEST(BasinBoxKeys, NamesTakeEveryCharacter) {
    EXPECT_EQ(key_verdict(BasinBox::Name, U'!', ""), KeyVerdict::Passes);
    EXPECT_EQ(key_verdict(BasinBox::Description, U'水', ""), KeyVerdict::Passes);
}

TEST(ChangedBox, ANameIsCutToFiftyCharactersWithABeep) {
    const ChangedBox changed = changed_box(BasinBox::Name, std::string(51, 'a'));
    EXPECT_EQ(changed.text, std::string(50, 'a'));
    EXPECT_TRUE(changed.beep);
    EXPECT_FALSE(changed_box(BasinBox::Name, std::string(50, 'a')).beep);
}

TEST(ChangedBox, CharactersAreCountedNotBytes) {
    std::string name;
    for (int i = 0; i < 50; ++i) name += "ö";
    EXPECT_FALSE(changed_box(BasinBox::Name, name).beep);
    EXPECT_EQ(changed_box(BasinBox::Name, name + "ö").text, name);
}

TEST(ChangedBox, ADescriptionIsCutTo255Characters) {
    EXPECT_EQ(changed_box(BasinBox::Description, std::string(300, 'b')).text, std::string(255, 'b'));
}

TEST(ChangedBox, AMinusSignInTheMiddleRemovesEveryMinusSign) {
    const ChangedBox changed = changed_box(BasinBox::Latitude, "-4-5");
    EXPECT_EQ(changed.text, "45");
    ASSERT_TRUE(changed.message.has_value());
    EXPECT_EQ(changed.message->text, "If needed, negative sign must be the leftmost character of latitude");
    EXPECT_EQ(changed.message->title, "Invalid character");
    EXPECT_EQ(changed.message->icon, Icon::Stop);
    EXPECT_EQ(changed_box(BasinBox::Longitude, "1-").message->text,
              "If needed, negative sign must be the leftmost character of longitude");
    EXPECT_FALSE(changed_box(BasinBox::Latitude, "-45").message.has_value());
}

struct LimitCase {
    BasinBox box;
    const char* text;
    Units units;
    bool passes;
};

TEST(LeftBox, LimitsAreExact) {
    for (const LimitCase& c :
         std::vector<LimitCase>{{BasinBox::Zones, "16", Units::Metric, true},
                                {BasinBox::Zones, "17", Units::Metric, false},
                                {BasinBox::Zones, "0", Units::Metric, false},
                                {BasinBox::Zones, "1", Units::Metric, true},
                                {BasinBox::ReferenceElevation, "8849", Units::Metric, true},
                                {BasinBox::ReferenceElevation, "8850", Units::Metric, false},
                                {BasinBox::ReferenceElevation, "29035", Units::English, true},
                                {BasinBox::ReferenceElevation, "29036", Units::English, false},
                                {BasinBox::Latitude, "-90", Units::Metric, true},
                                {BasinBox::Latitude, "90.1", Units::Metric, false},
                                {BasinBox::Latitude, "-", Units::Metric, true},
                                {BasinBox::Longitude, "180", Units::Metric, true},
                                {BasinBox::Longitude, "-180.5", Units::Metric, false},
                                {BasinBox::Longitude, "12abc", Units::Metric, true},
                                {BasinBox::Latitude, "   ", Units::Metric, true},
                                {BasinBox::Zones, "", Units::Metric, true}}) {
        EXPECT_EQ(!left_box_problem(c.box, c.text, c.units).has_value(), c.passes)
            << static_cast<int>(c.box) << " '" << c.text << "'";
    }
}

TEST(LeftBox, EachLimitHasItsTextAndTitle) {
    EXPECT_EQ(left_box_problem(BasinBox::Zones, "17", Units::Metric)->text,
              "Number of zones must be between 1 and 16");
    EXPECT_EQ(left_box_problem(BasinBox::Zones, "17", Units::Metric)->title, "Invalid zone specification");
    EXPECT_EQ(left_box_problem(BasinBox::ReferenceElevation, "9000", Units::Metric)->text,
              "Basin elevation out of range!");
    EXPECT_EQ(left_box_problem(BasinBox::ReferenceElevation, "9000", Units::Metric)->title,
              "Unreasonable basin elevation");
    EXPECT_EQ(left_box_problem(BasinBox::Latitude, "91", Units::Metric)->text,
              "Latitude must be between 90° North and 90° South (-90°)");
    EXPECT_EQ(left_box_problem(BasinBox::Latitude, "91", Units::Metric)->title, "Latitude out of range");
    EXPECT_EQ(latitude_problem(90.5).value().text,
              left_box_problem(BasinBox::Latitude, "91", Units::Metric)->text);
    EXPECT_FALSE(latitude_problem(90.0).has_value());
    EXPECT_TRUE(latitude_problem(std::nan("")).has_value());
    EXPECT_FALSE(latitude_problem(-90.0).has_value());
    EXPECT_EQ(left_box_problem(BasinBox::Longitude, "181", Units::Metric)->text,
              "Longitude must be between 180° East and 180° West (-180°)");
    EXPECT_EQ(left_box_problem(BasinBox::Longitude, "181", Units::Metric)->title, "Longitude out of range");
}

TEST(LeftBox, AnEmptyNameIsRequiredAndADescriptionIsNot) {
    EXPECT_EQ(left_box_problem(BasinBox::Name, "", Units::Metric)->text, "A basin name is required!");
    EXPECT_FALSE(left_box_problem(BasinBox::Description, "", Units::Metric).has_value());
}

TEST(Labels, ShowTheUnitsOfTheBasin) {
    EXPECT_EQ(reference_elevation_label(Units::Metric), "Reference Elevation (m):");
    EXPECT_EQ(reference_elevation_label(Units::English), "Reference Elevation (ft):");
    EXPECT_EQ(basin_area_label(Units::Metric), "Basin Area (km²):");
    EXPECT_EQ(basin_area_label(Units::English), "Basin Area (mi²):");
}

TEST(ZoneHeaders, TheAreaHasASmallKOnceTheUnitsWereChosen) {
    EXPECT_EQ(zone_header(2, Units::Metric), "Zone Area (km²)");
    EXPECT_EQ(zone_header(2, Units::English), "Zone Area (mi²)");
}

TEST(ZoneHeaders, ElevationsEndWithTheUnit) {
    EXPECT_EQ(zone_header(3, Units::English), "Hypsometric Mean Elevation (ft)");
    EXPECT_EQ(zone_header(5, Units::English), "Avg Elevation, NE Aspect (ft)");
    EXPECT_EQ(zone_header(11, Units::Metric), "Avg Elevation, SW Aspect (m) ");
    EXPECT_EQ(zone_header(4, Units::Metric), "% NE Aspect");
}

TEST(SimulationHeaders, TheInitialRunoffShowsTheUnitOfDischarge) {
    EXPECT_EQ(simulation_header(13, Units::Metric), "Initial Runoff (CMS)");
    EXPECT_EQ(simulation_header(13, Units::English), "Initial Runoff (CFS)");
    EXPECT_EQ(simulation_header(13, Units::NotFixed), "Intital Runoff");
    EXPECT_EQ(simulation_header(15, Units::Metric), "X Recesion Coefficient");
}

TEST(Ampersands, AreDoubledForLabels) { EXPECT_EQ(doubled_ampersands("Snow & Ice &"), "Snow && Ice &&"); }

class MainWindowRules : public testing::Test {
protected:
    MainWindowRules() {
        session_.basin.Work_File = folder_ / "new.mdb";
        BasinDatabase::create_template(session_.basin.Work_File);
    }

    TemporaryFolder folder_;
    ScriptedDialogs dialogs_;
    Desktop desktop_;
    Session session_{dialogs_, desktop_};
};

TEST_F(MainWindowRules, UnitsAreStoredAtOnce) {
    fix_units(session_, Units::English);
    BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
    EXPECT_EQ(read_basin_description(database).units, Units::English);
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
    EXPECT_FALSE(session_.shell.units_list_shown);
    EXPECT_TRUE(session_.shell.zones_box_shown);
}

TEST_F(MainWindowRules, AConfirmedNumberCreatesTheZonesAndTheirMonths) {
    fix_zones(session_, 3);
    BasinDatabase database{session_.basin.Work_File, Access::ReadOnly};
    EXPECT_EQ(read_basin_description(database).zones, 3);
    const auto zones = read_table<Zone>(database, template_table(k_zone_description));
    ASSERT_EQ(zones.size(), 3U);
    EXPECT_EQ(zones[2].id, "C");
    const auto months = read_table<MonthlyRow>(database, basin_averages_table());
    ASSERT_EQ(months.size(), 36U);
    EXPECT_EQ(months[35].zone, 3);
    EXPECT_EQ(months[35].month, "Dec");
    EXPECT_TRUE(is_missing(static_cast<double>(months[35].precip)));
    EXPECT_EQ(session_.basin.ZoneCount, 3);
    EXPECT_TRUE(session_.shell.zones_fixed_shown);
    EXPECT_FALSE(session_.shell.zones_box_shown);
    EXPECT_TRUE(session_.shell.variables);
    EXPECT_TRUE(session_.shell.tools_menu);
    EXPECT_TRUE(session_.basin.Basin_Changed);
}

TEST_F(MainWindowRules, ASimulationNeedsANameUnitsAndZones) {
    session_.basin.basin_name = k_unnamed_basin;
    session_.basin.basin_units = Units::Metric;
    session_.shell.zones_fixed_shown = true;
    EXPECT_EQ(add_simulation_problem(session_)->text,
              "Provide a name for the basin, the # of zones, and the units of measurement before creating a "
              "simulation");
    session_.basin.basin_name = "Alder";
    EXPECT_FALSE(add_simulation_problem(session_).has_value());
    session_.basin.basin_units = Units::NotFixed;
    EXPECT_TRUE(add_simulation_problem(session_).has_value());
    session_.basin.basin_units = Units::Metric;
    session_.shell.zones_fixed_shown = false;
    EXPECT_TRUE(add_simulation_problem(session_).has_value());
}

TEST_F(MainWindowRules, NoSnowModeDisablesMeltSeasonAndClimateRunsAndExplainsItselfOnlyWhenSwitchedOn) {
    session_.shell.run_simulation = true;
    session_.shell.run_climate = true;
    const auto told = toggle_no_snow(session_);
    ASSERT_TRUE(told.has_value());
    EXPECT_EQ(told->title, "No Snow Description");
    EXPECT_EQ(told->icon, Icon::Information);
    EXPECT_EQ(told->text.substr(0, 30), "When this menu is checked, the");
    EXPECT_TRUE(session_.run.NoSnow);
    EXPECT_FALSE(session_.shell.melt_season);
    EXPECT_FALSE(session_.shell.run_climate);
    EXPECT_FALSE(toggle_no_snow(session_).has_value());
    EXPECT_TRUE(session_.shell.melt_season);
    EXPECT_TRUE(session_.shell.run_climate);
}

TEST_F(MainWindowRules, NoSnowSwitchedOnAndOffWithoutASimulationLeavesTheClimateRunDisabled) {
    static_cast<void>(toggle_no_snow(session_));
    static_cast<void>(toggle_no_snow(session_));
    EXPECT_FALSE(session_.shell.run_climate);
}

TEST_F(MainWindowRules, TheRunMenuIsEnabledOnceAreasAreTyped) {
    Simulation definition;
    definition.name = "by hand";
    session_.basin.simulations = {definition};
    choose_simulation_row(session_, 0);
    EXPECT_FALSE(session_.shell.run_menu) << "the area reads --";
    session_.basin.zones = {{.id = "1", .area = 12.5}};
    take_zone_areas(session_);
    EXPECT_EQ(session_.basin.basin_area_text, "12.5");
    EXPECT_TRUE(session_.shell.run_menu);
}

TEST_F(MainWindowRules, ASimulationInOtherUnitsLeavesTheUnitsOfTheBasin) {
    fix_units(session_, Units::Metric);
    Simulation definition;
    definition.name = "english";
    definition.units = Units::English;
    session_.basin.simulations = {definition};
    choose_simulation_row(session_, 0);
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
    EXPECT_EQ(session_.basin.basin_units, Units::Metric);
}

// The limits of usual values: an area of 10^7, and the highest elevation for the units.
TEST_F(MainWindowRules, UnusuallyLargeValuesAreAskedAboutInOneQuestion) {
    session_.basin.basin_units = Units::Metric;
    session_.basin.zones = {{.id = "1", .area = 1e7, .elevation = 1500.0},
                            {.id = "2", .area = 12.5, .elevation = 8849.0}};
    EXPECT_FALSE(unusual_zones(session_.basin).has_value()) << "the limits themselves pass";
    session_.basin.zones = {{.id = "1", .area = 12.5, .elevation = 1500.0},
                            {.id = "2", .area = 25000000.0, .elevation = 8850.0}};
    const auto unusual = unusual_zones(session_.basin);
    ASSERT_TRUE(unusual.has_value());
    EXPECT_EQ(unusual->question.text,
              "These zone values are unusually large:\nZone 2: area 25000000 km²\nZone 2: mean "
              "elevation 8850 m\nAre they right?");
    EXPECT_EQ(unusual->question.buttons, Buttons::YesNo);
    EXPECT_EQ(unusual->question.default_answer, Answer::No);
    EXPECT_EQ(unusual->zone, 2);
    EXPECT_EQ(unusual->column, 2);
}

TEST_F(MainWindowRules, ElevationsHaveTheLimitOfTheBasinsOwnUnits) {
    session_.basin.basin_units = Units::English;
    session_.basin.Units_Code = Units::Metric;  // a simulation in other units
    session_.basin.zones = {{.id = "1", .area = 12.5, .elevation = 29035.0}};
    EXPECT_FALSE(unusual_zones(session_.basin).has_value());
    session_.basin.zones[0].elevation = 29036.0;
    ASSERT_TRUE(unusual_zones(session_.basin).has_value());
    EXPECT_NE(unusual_zones(session_.basin)->question.text.find("29036 ft"), std::string::npos);
    EXPECT_EQ(unusual_zones(session_.basin)->column, 3);
}

TEST_F(MainWindowRules, SelectingARowSetsTheCurrentSimulationAndEnablesTheRuns) {
    Simulation definition;
    definition.name = "wet & cold";
    definition.start = 35000;
    definition.end = 35100;
    definition.units = Units::English;
    session_.basin.simulations = {definition};
    session_.basin.basin_area_text = "12";
    choose_simulation_row(session_, 0);
    EXPECT_EQ(session_.basin.Current_Sim_Name, "wet & cold");
    EXPECT_EQ(session_.basin.Current_Start, 35000);
    EXPECT_EQ(session_.basin.Current_End, 35100);
    EXPECT_EQ(session_.basin.Units_Code, Units::English);
    EXPECT_TRUE(session_.shell.run_simulation);
    EXPECT_TRUE(session_.shell.run_menu);
    EXPECT_TRUE(session_.shell.parameters);
    EXPECT_TRUE(session_.run.results_enabled);
}

TEST_F(MainWindowRules, WithoutZoneAreasThereIsNoRunMenu) {
    session_.basin.simulations = {Simulation{}};
    choose_simulation_row(session_, 0);
    EXPECT_FALSE(session_.shell.run_menu);
}

}  // namespace
}  // namespace nivora
