// What an import does to the basin's header, units and zones, and which questions and messages it shows.
#include "tests/prep/scratch_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::DoubleEq;
using testing::Optional;

constexpr const char* k_zones_exist = "A definition of the zones in this basin already exists.  Overwrite?";

LegacyParts english() {
    LegacyParts parts;
    parts.units = "1";
    return parts;
}

/// Another year with other zones, so that replaced values differ from kept ones.
LegacyParts next_year() {
    LegacyParts parts;
    parts.year = "1997";
    parts.name = "\"Other Brook\"";
    parts.reference_elevation = "999";
    parts.pairs[0] = "41,1501";
    parts.pairs[1] = "61,2501";
    return parts;
}

TEST(ImportHeader, ABlankBasinTakesNameElevationZonesAndUnits) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const BasinDescription header = basin.header();
    EXPECT_THAT(header.name, Optional(std::string{"Alder Brook"}));
    EXPECT_THAT(header.reference_elevation, Optional(DoubleEq(1800.0)));
    EXPECT_THAT(header.zones, Optional(std::int16_t{2}));
    EXPECT_THAT(header.units, Optional(Units::Metric));
    EXPECT_EQ(header.latitude, std::nullopt);
    EXPECT_EQ(header.description, std::nullopt);
}

TEST(ImportHeader, ABlankReferenceElevationStaysBlank) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.reference_elevation = "";
    basin.first_import(parts);
    EXPECT_EQ(basin.header().reference_elevation, std::nullopt);
}

TEST(ImportHeader, ALongNameIsCutToFiftyCharactersButNotWithinOne) {
    const ScratchBasin basin;
    LegacyParts parts;
    std::string name;
    for (int i = 0; i < 60; ++i) name += "\xc3\xbc";
    parts.name = "\"" + name + "\"";
    basin.first_import(parts);
    EXPECT_THAT(basin.header().name, Optional(name.substr(0, 100)));
}

/// A basin as the main window leaves it once its number of zones is fixed: zone rows without areas.
class BasinWithFixedZones : public ScratchBasin {
public:
    explicit BasinWithFixedZones(int zones) {
        execute("UPDATE BasinDescription SET Units = 0, Zones = " + std::to_string(zones));
        for (int zone = 1; zone <= zones; ++zone) {
            execute("INSERT INTO ZoneDescription (ZoneId, ZoneArea, HypsometricElevation) VALUES ('" +
                    std::to_string(zone) + "', 0, 0)");
        }
    }
};

TEST(ImportHeader, AnUnnamedBasinWithFixedZonesTakesNameAndElevation) {
    for (const Answer zones : {Answer::Yes, Answer::No}) {
        const BasinWithFixedZones basin{2};
        ScriptedDialogs dialogs;
        dialogs.then(zones).then_text("first");
        ASSERT_TRUE(basin.import(LegacyParts{}, dialogs));
        EXPECT_THAT(basin.header().name, Optional(std::string{"Alder Brook"}));
        EXPECT_THAT(basin.header().reference_elevation, Optional(DoubleEq(1800.0)));
        EXPECT_THAT(basin.zones().front().area, Optional(DoubleEq(zones == Answer::Yes ? 40.0 : 0.0)));
    }
}

TEST(ImportHeader, AnUnnamedBasinWithOtherZonesIsRefusedAndStaysUnnamed) {
    const BasinWithFixedZones basin{3};
    const std::string before = file_bytes(basin.path());
    ScriptedDialogs dialogs;
    EXPECT_FALSE(basin.import(LegacyParts{}, dialogs));
    EXPECT_EQ(dialogs.messages()[0].message.text, "Zones in import file don't match basin");
    EXPECT_EQ(file_bytes(basin.path()), before);
}

TEST(ImportHeader, ANamedBasinWithoutZonesKeepsItsNameAndTakesTheZones) {
    const ScratchBasin basin;
    basin.execute("UPDATE BasinDescription SET BasinName = 'Mine', Units = 0");
    basin.first_import(LegacyParts{});
    EXPECT_THAT(basin.header().name, Optional(std::string{"Mine"}));
    EXPECT_THAT(basin.header().reference_elevation, Optional(DoubleEq(1800.0)));
    EXPECT_THAT(basin.header().zones, Optional(std::int16_t{2}));
    EXPECT_EQ(basin.zones().size(), 2U);
}

TEST(ImportHeader, ANamedBasinWithoutZonesKeepsTheElevationThatItHas) {
    const ScratchBasin basin;
    basin.execute("UPDATE BasinDescription SET BasinName = 'Mine', RefElev = 1234");
    basin.first_import(LegacyParts{});
    EXPECT_THAT(basin.header().reference_elevation, Optional(DoubleEq(1234.0)));
}

TEST(ImportHeader, AFileWithoutANameLeavesThePlaceholder) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.name = "\"  \"";
    basin.first_import(parts);
    EXPECT_THAT(basin.header().name, Optional(std::string{k_unnamed_basin}));
}

TEST(ImportHeader, TheBasinOfALaterImportKeepsItsNameAndElevation) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_text("second");
    ASSERT_TRUE(basin.import(next_year(), dialogs));
    EXPECT_THAT(basin.header().name, Optional(std::string{"Alder Brook"}));
    EXPECT_THAT(basin.header().reference_elevation, Optional(DoubleEq(1800.0)));
}

TEST(ImportUnits, ABasinWithoutUnitsTakesThoseOfTheFile) {
    const ScratchBasin basin;
    EXPECT_THAT(basin.header().units, Optional(Units::NotFixed));
    basin.first_import(english());
    EXPECT_THAT(basin.header().units, Optional(Units::English));
}

TEST(ImportUnits, OtherUnitsThanTheBasinsAreRefused) {
    for (const bool basin_is_english : {false, true}) {
        const ScratchBasin basin;
        basin.first_import(basin_is_english ? english() : LegacyParts{});
        const std::string before = file_bytes(basin.path());
        ScriptedDialogs dialogs;
        EXPECT_FALSE(basin.import(basin_is_english ? LegacyParts{} : english(), dialogs));
        ASSERT_EQ(dialogs.messages().size(), 1U);
        const Message& message = dialogs.messages()[0].message;
        EXPECT_EQ(message.text,
                  "You cannot mix English & Metric units in the same basin database.  Please create a new "
                  "database");
        EXPECT_EQ(message.title, "Import failed.  Simulation units inconsistent with basin.");
        EXPECT_EQ(message.buttons, Buttons::Ok);
        EXPECT_TRUE(dialogs.inputs().empty());
        EXPECT_EQ(file_bytes(basin.path()), before);
    }
}

TEST(ImportUnits, UnitsThatWereChosenInABlankBasinCount) {
    const ScratchBasin basin;
    basin.execute("UPDATE BasinDescription SET Units = 1");
    ScriptedDialogs dialogs;
    EXPECT_FALSE(basin.import(LegacyParts{}, dialogs));
    EXPECT_EQ(dialogs.messages().size(), 1U);
    basin.first_import(english());
    EXPECT_THAT(basin.header().name, Optional(std::string{"Alder Brook"}));
}

TEST(ImportZones, ABlankBasinGetsARowForEachZone) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.zones = "8";
    parts.pairs = legacy_pairs(8);
    basin.first_import(parts);
    const std::vector<Zone> zones = basin.zones();
    ASSERT_EQ(zones.size(), 8U);
    for (std::size_t i = 0; i < zones.size(); ++i) {
        SCOPED_TRACE(i);
        const double number = static_cast<double>(i) + 1.0;
        EXPECT_EQ(zones[i].id, std::string(1, "ABCDEFGH"[i]));
        EXPECT_THAT(zones[i].area, Optional(DoubleEq(number * 10.0)));
        EXPECT_THAT(zones[i].elevation, Optional(DoubleEq(900.0 + number * 100.0)));
        EXPECT_EQ(zones[i].notes, std::nullopt);
    }
}

TEST(ImportZones, EachAspectGetsTheShareOneAndTheZonesElevation) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::vector<Zone> zones = basin.zones();
    ASSERT_EQ(zones.size(), 2U);
    for (const Aspect& aspect : zones[0].aspects) {
        EXPECT_THAT(aspect.share, Optional(DoubleEq(1.0)));
        EXPECT_THAT(aspect.elevation, Optional(DoubleEq(1500.0)));
    }
    for (const Aspect& aspect : zones[1].aspects) EXPECT_THAT(aspect.elevation, Optional(DoubleEq(2500.0)));
}

TEST(ImportZones, ZonesThatWereJustCreatedAreNotAskedAbout) {
    const ScratchBasin basin;
    ScriptedDialogs dialogs;
    dialogs.then_text("first");
    ASSERT_TRUE(basin.import(LegacyParts{}, dialogs));
    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_TRUE(dialogs.complaints().empty());
}

TEST(ImportZones, ZonesEqualToThoseOfTheFileAreNotAskedAboutAndKeepTheirAspects) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    LegacyParts parts;
    parts.year = "1997";
    const std::string share = template_table(k_zone_description).fields.at(4).name;
    basin.execute("UPDATE ZoneDescription SET " + quoted_name(share) + " = 25 WHERE ZoneId = 'A'");
    ScriptedDialogs dialogs;
    dialogs.then_text("second");
    ASSERT_TRUE(basin.import(parts, dialogs));
    EXPECT_TRUE(dialogs.messages().empty());
    EXPECT_TRUE(dialogs.complaints().empty());
    EXPECT_THAT(basin.zones().front().aspects[0].share, Optional(DoubleEq(25.0)));
}

TEST(ImportZones, AnotherNumberOfZonesIsRefusedWithAStop) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::string before = file_bytes(basin.path());
    for (const int zones : {1, 3}) {
        LegacyParts parts;
        parts.zones = std::to_string(zones);
        parts.pairs = legacy_pairs(zones);
        ScriptedDialogs dialogs;
        EXPECT_FALSE(basin.import(parts, dialogs));
        ASSERT_EQ(dialogs.messages().size(), 1U);
        EXPECT_EQ(dialogs.messages()[0].message.text, "Zones in import file don't match basin");
        EXPECT_EQ(dialogs.messages()[0].message.icon, Icon::Stop);
        EXPECT_TRUE(dialogs.complaints().empty());
        EXPECT_EQ(file_bytes(basin.path()), before);
    }
}

TEST(ImportZones, UnitsAreCheckedBeforeZones) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    LegacyParts parts = english();
    parts.zones = "1";
    ScriptedDialogs dialogs;
    EXPECT_FALSE(basin.import(parts, dialogs));
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.title,
              "Import failed.  Simulation units inconsistent with basin.");
}

TEST(ImportZones, ThePresentDefinitionIsAskedAboutBeforeTheName) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_text("second");
    ASSERT_TRUE(basin.import(next_year(), dialogs));
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text, k_zones_exist);
    EXPECT_EQ(dialogs.messages()[0].message.title, "Importing a .NVR file");
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::YesNoCancel);
    EXPECT_TRUE(dialogs.complaints().empty());
}

TEST(ImportZones, YesReplacesTheDefinition) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_text("second");
    ASSERT_TRUE(basin.import(next_year(), dialogs));
    const std::vector<Zone> zones = basin.zones();
    ASSERT_EQ(zones.size(), 2U);
    EXPECT_THAT(zones[0].area, Optional(DoubleEq(41.0)));
    EXPECT_THAT(zones[1].elevation, Optional(DoubleEq(2501.0)));
}

TEST(ImportZones, NoKeepsTheDefinitionAndContinues) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then(Answer::No).then_text("second");
    ASSERT_TRUE(basin.import(next_year(), dialogs));
    const std::vector<Zone> zones = basin.zones();
    ASSERT_EQ(zones.size(), 2U);
    EXPECT_THAT(zones[0].area, Optional(DoubleEq(40.0)));
    EXPECT_EQ(basin.days().size(), 12U);  // two zones, three days, two years
    EXPECT_EQ(basin.parameters("second").size(), 6U);
}

TEST(ImportZones, CancelEndsTheImportAndChangesNothing) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::string before = file_bytes(basin.path());
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Cancel);
    EXPECT_FALSE(basin.import(next_year(), dialogs));
    EXPECT_TRUE(dialogs.inputs().empty());
    EXPECT_TRUE(dialogs.complaints().empty());
    EXPECT_EQ(file_bytes(basin.path()), before);
}

TEST(ImportMonths, TheMonthlyTableHasTwelveRowsOfZerosForEachZone) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::vector<MonthlyRow> months = basin.months();
    ASSERT_EQ(months.size(), 24U);
    EXPECT_EQ(months[0].zone, 1);
    EXPECT_EQ(months[0].month, "Jan");
    EXPECT_EQ(months[11].month, "Dec");
    EXPECT_EQ(months[12].zone, 2);
    EXPECT_EQ(months[12].month, "Jan");
    for (const MonthlyRow& row : months) {
        EXPECT_EQ(row.tmax, 0.0F);
        EXPECT_EQ(row.tmin, 0.0F);
        EXPECT_EQ(row.tavg, 0.0F);
        EXPECT_EQ(row.precip, 0.0F);
    }
}

TEST(ImportMonths, ALaterImportKeepsTheAverages) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    basin.execute("UPDATE BasinAverages SET PrecipN = 7.5 WHERE Zone = 2 AND Month = 'Mar'");
    ScriptedDialogs dialogs;
    dialogs.then(Answer::Yes).then_text("second");
    ASSERT_TRUE(basin.import(next_year(), dialogs));
    const std::vector<MonthlyRow> months = basin.months();
    ASSERT_EQ(months.size(), 24U);
    EXPECT_EQ(months[14].precip, 7.5F);
}

}  // namespace
}  // namespace nivora
