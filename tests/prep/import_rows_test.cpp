// The daily rows, the parameter rows and the simulation record of an import.
#include "tests/prep/scratch_basin.h"

#include <gmock/gmock.h>

namespace nivora {
namespace {

using testing::DoubleEq;
using testing::FloatEq;
using testing::Optional;

constexpr const char* k_days_exist =
    "Physical variable data for simulation time period are present in the database.  Overwrite?";

TEST(ImportDays, ThereIsARowForEachDayOfEachZoneInOrder) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 6U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].zone, i < 3 ? 1 : 2);
        EXPECT_EQ(rows[i].date, day(1996, 4, 1) + static_cast<DayCount>(i % 3));
    }
}

TEST(ImportDays, EachVariableGoesToItsField) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[0].runoff, 10.0F);
    EXPECT_EQ(rows[0].tmax, 12.0F);
    EXPECT_EQ(rows[0].tmin, 4.0F);
    EXPECT_EQ(rows[0].tavg, 8.0F);
    EXPECT_EQ(rows[0].precip, 0.5F);
    EXPECT_EQ(rows[0].sca, 0.4F);
    EXPECT_EQ(rows[3].tmax, 6.0F);
    EXPECT_EQ(rows[3].tmin, -2.0F);
    EXPECT_EQ(rows[3].tavg, 2.0F);
    EXPECT_EQ(rows[3].precip, 0.7F);
    EXPECT_EQ(rows[3].sca, 0.9F);
}

TEST(ImportDays, RunoffIsInTheRowsOfEveryZone) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.section(LegacySection::Runoff) = numbered_section(1);
    basin.first_import(parts);
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 6U);
    // 1 April is day 31 + 29 + 31 + 1 = 92 of a leap year.
    EXPECT_EQ(rows[0].runoff, 1092.0F);
    EXPECT_EQ(rows[3].runoff, 1092.0F);
    EXPECT_EQ(rows[5].runoff, 1094.0F);
}

TEST(ImportDays, NetRadiationIsZero) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    for (const PhysicalRow& row : basin.days()) EXPECT_EQ(row.net_radiation, 0.0F);
}

TEST(ImportDays, AWaterYearTakesItsSpringFromTheStartOfTheValues) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.start = "1230";
    parts.end = "0102";
    parts.year = "1996";
    parts.section(LegacySection::Tavg) = numbered_section(2);
    basin.first_import(parts);
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 8U);
    EXPECT_EQ(rows[0].tavg, 1365.0F);  // 30 December of a leap year
    EXPECT_EQ(rows[1].tavg, 1366.0F);
    EXPECT_EQ(rows[2].tavg, 1001.0F);
    EXPECT_EQ(rows[3].tavg, 1002.0F);
    EXPECT_EQ(rows[3].date, day(1997, 1, 2));
    EXPECT_EQ(rows[4].tavg, 2365.0F);
    EXPECT_EQ(rows[7].tavg, 2002.0F);
}

TEST(ImportDays, ALeapYearGives366RowsAZone) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.start = "0101";
    parts.end = "1231";
    parts.section(LegacySection::Tavg) = numbered_section(2);
    basin.first_import(parts);
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 732U);
    for (std::size_t i = 0; i < 366; ++i) {
        ASSERT_EQ(rows[i].tavg, 1001.0F + static_cast<float>(i));
        ASSERT_EQ(rows[366 + i].tavg, 2001.0F + static_cast<float>(i));
    }
}

TEST(ImportParameters, EachParameterGoesToItsField) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    const std::vector<ParameterRow> rows = basin.parameters("first");
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[0].zone, 1);
    EXPECT_EQ(rows[0].date, day(1996, 4, 1));
    EXPECT_EQ(rows[0].tcrit, 1.0F);
    EXPECT_EQ(rows[0].lag_hours, 18.0F);
    EXPECT_EQ(rows[0].lapse_rate, 0.65F);
    EXPECT_EQ(rows[0].an, 0.4F);
    EXPECT_EQ(rows[0].cs, 0.9F);
    EXPECT_EQ(rows[0].cr, 0.7F);
    EXPECT_THAT(rows[0].rca, Optional(std::int16_t{1}));
    EXPECT_EQ(rows[5].zone, 2);
    EXPECT_EQ(rows[5].date, day(1996, 4, 3));
    EXPECT_EQ(rows[5].tcrit, 1.5F);
    EXPECT_EQ(rows[5].lag_hours, 12.0F);
    EXPECT_EQ(rows[5].lapse_rate, 0.6F);
    EXPECT_EQ(rows[5].an, 0.5F);
    EXPECT_EQ(rows[5].cs, 0.8F);
    EXPECT_EQ(rows[5].cr, 0.6F);
    EXPECT_THAT(rows[5].rca, Optional(std::int16_t{0}));
}

// 0.5 and 2.5 are ties and round to the even whole number.
TEST(ImportParameters, TheRainSwitchIsRoundedToAWholeNumber) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.section(LegacySection::RCA) = "91*0,0.5,0.6,2.5/";
    basin.first_import(parts);
    const std::vector<ParameterRow> rows = basin.parameters("first");
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_THAT(rows[0].rca, Optional(std::int16_t{0}));
    EXPECT_THAT(rows[1].rca, Optional(std::int16_t{1}));
    EXPECT_THAT(rows[2].rca, Optional(std::int16_t{2}));
}

TEST(ImportParameters, WithoutAChangeDayXAndYAreTheSameOnAllDays) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    for (const ParameterRow& row : basin.parameters("first")) {
        EXPECT_EQ(row.xcoeff, 0.9);
        EXPECT_EQ(row.ycoeff, 0.05);
    }
}

TEST(ImportParameters, FromTheChangeDayOnTheLaterXAndYHoldInEveryZone) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.change_day = "0402";
    basin.first_import(parts);
    const std::vector<ParameterRow> rows = basin.parameters("first");
    ASSERT_EQ(rows.size(), 6U);
    for (std::size_t i = 0; i < rows.size(); ++i) {
        EXPECT_EQ(rows[i].xcoeff, i % 3 == 0 ? 0.9 : 0.8);
        EXPECT_EQ(rows[i].ycoeff, i % 3 == 0 ? 0.05 : 0.04);
    }
}

TEST(ImportParameters, AChangeDayBeforeTheStartComesInTheYearAfter) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.start = "1231";
    parts.end = "0102";
    parts.change_day = "0101";
    basin.first_import(parts);
    const std::vector<ParameterRow> rows = basin.parameters("first");
    ASSERT_EQ(rows.size(), 6U);
    EXPECT_EQ(rows[0].xcoeff, 0.9);
    EXPECT_EQ(rows[1].xcoeff, 0.8);
    EXPECT_EQ(rows[2].xcoeff, 0.8);
}

TEST(ImportRecord, TakesNameDatesUnitsAndThreshold) {
    const ScratchBasin basin;
    const Simulation definition = basin.first_import(LegacyParts{}, "Spring 1996").definition;
    EXPECT_EQ(definition.name, "Spring 1996");
    EXPECT_THAT(definition.start, Optional(day(1996, 4, 1)));
    EXPECT_THAT(definition.end, Optional(day(1996, 4, 3)));
    EXPECT_THAT(definition.units, Optional(Units::Metric));
    EXPECT_THAT(definition.precipitation_threshold, Optional(FloatEq(5.0F)));
}

TEST(ImportRecord, IsBasinwideAndAverageWithABlankInitialRunoff) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.units = "1";
    const Simulation definition = basin.first_import(parts).definition;
    EXPECT_THAT(definition.units, Optional(Units::English));
    EXPECT_THAT(definition.temperature_values, Optional(std::int16_t{0}));
    for (const auto& distribution :
         {definition.temperature, definition.precipitation, definition.lapse_rate,
          definition.runoff_coefficients, definition.critical_temperature, definition.recession}) {
        EXPECT_THAT(distribution, Optional(Distribution::Basinwide));
    }
    EXPECT_EQ(definition.initial_runoff, std::nullopt);
}

TEST(ImportRecord, KeepsTheFirstDaysParametersOfZoneOne) {
    const ScratchBasin basin;
    LegacyParts parts;
    // The first day of the period is day 92 of the leap year.
    parts.section(LegacySection::An) = "91*1,0.45,0.46,272*2,366*3/";
    const ParameterRow first = basin.first_import(parts).first_values;
    EXPECT_EQ(first.zone, 1);
    EXPECT_EQ(first.date, day(1996, 4, 1));
    EXPECT_EQ(first.an, 0.45F);
    EXPECT_EQ(first.tcrit, 1.0F);
    EXPECT_EQ(first.lapse_rate, 0.65F);
    EXPECT_EQ(first.lag_hours, 18.0F);
    EXPECT_EQ(first.cs, 0.9F);
    EXPECT_EQ(first.cr, 0.7F);
    EXPECT_THAT(first.rca, Optional(std::int16_t{1}));
}

TEST(ImportRecord, HasTheFirstXAndYEvenWhereTheyChangeOnTheFirstDay) {
    const ScratchBasin basin;
    LegacyParts parts;
    parts.change_day = "0401";
    const SimulationRecord record = basin.first_import(parts);
    EXPECT_EQ(basin.parameters("first").at(0).xcoeff, 0.8);
    EXPECT_EQ(record.first_values.xcoeff, 0.9);
    EXPECT_EQ(record.first_values.ycoeff, 0.05);
    EXPECT_THAT(record.definition.initial_x, Optional(DoubleEq(0.9)));
    EXPECT_THAT(record.definition.initial_y, Optional(DoubleEq(0.05)));
}

TEST(ImportRecord, IsNotInTheSimulationIndexYet) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    EXPECT_TRUE(basin.rows<Simulation>(template_table(k_simulation_index)).empty());
}

/// 2 to 5 April of the same year with a runoff of 20; two of its days belong to the first import, too.
LegacyParts overlapping() {
    LegacyParts parts;
    parts.start = "0402";
    parts.end = "0405";
    parts.section(LegacySection::Runoff) = "366*20/";
    return parts;
}

TEST(ImportOverDays, DaysThatExistAreAskedAboutAfterTheName) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then_text("second").then(Answer::Yes);
    ASSERT_TRUE(basin.import(overlapping(), dialogs));
    EXPECT_TRUE(dialogs.complaints().empty());
    ASSERT_EQ(dialogs.messages().size(), 1U);
    EXPECT_EQ(dialogs.messages()[0].message.text, k_days_exist);
    EXPECT_EQ(dialogs.messages()[0].message.title,
              "Import file contains days already present in the database!");
    EXPECT_EQ(dialogs.messages()[0].message.buttons, Buttons::YesNo);
}

TEST(ImportOverDays, YesReplacesTheDaysOfThePeriodAndNoOthers) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then_text("second").then(Answer::Yes);
    ASSERT_TRUE(basin.import(overlapping(), dialogs));
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 10U);  // 1 to 5 April in two zones
    for (const PhysicalRow& row : rows) {
        EXPECT_EQ(row.runoff, row.date == day(1996, 4, 1) ? 10.0F : 20.0F);
    }
}

TEST(ImportOverDays, NoKeepsTheRowsAndAddsTheMissingDaysAlone) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    ScriptedDialogs dialogs;
    dialogs.then_text("second").then(Answer::No);
    ASSERT_TRUE(basin.import(overlapping(), dialogs));
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 10U);
    for (const PhysicalRow& row : rows) {
        EXPECT_EQ(row.runoff, row.date <= day(1996, 4, 3) ? 10.0F : 20.0F);
    }
}

TEST(ImportOverDays, NoAddsAMissingZoneOfADay) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    basin.execute("DELETE FROM PhysicalData WHERE Zone = 2 AND Date = " + std::to_string(day(1996, 4, 2)));
    LegacyParts parts;
    parts.section(LegacySection::Runoff) = "366*20/";
    ScriptedDialogs dialogs;
    dialogs.then_text("second").then(Answer::No);
    ASSERT_TRUE(basin.import(parts, dialogs));
    const std::vector<PhysicalRow> rows = basin.days();
    ASSERT_EQ(rows.size(), 6U);
    for (const PhysicalRow& row : rows) {
        const bool added = row.zone == 2 && row.date == day(1996, 4, 2);
        EXPECT_EQ(row.runoff, added ? 20.0F : 10.0F);
    }
}

TEST(ImportOverDays, BothAnswersGiveTheNewSimulationAllItsParameters) {
    for (const Answer answer : {Answer::Yes, Answer::No}) {
        const ScratchBasin basin;
        basin.first_import(LegacyParts{});
        ScriptedDialogs dialogs;
        dialogs.then_text("second").then(answer);
        ASSERT_TRUE(basin.import(overlapping(), dialogs));
        EXPECT_EQ(basin.parameters("second").size(), 8U);
        EXPECT_EQ(basin.parameters("first").size(), 6U);
    }
}

TEST(ImportOverDays, OtherDaysAreNotAskedAbout) {
    const ScratchBasin basin;
    basin.first_import(LegacyParts{});
    LegacyParts parts;
    parts.start = "0404";  // the day after the last one
    parts.end = "0405";
    ScriptedDialogs dialogs;
    dialogs.then_text("second");
    ASSERT_TRUE(basin.import(parts, dialogs));
    EXPECT_TRUE(dialogs.complaints().empty());
    EXPECT_EQ(basin.days().size(), 10U);
}

TEST(ImportOverDays, RowsOfZonesThatTheBasinLacksAreNeitherAskedAboutNorDeleted) {
    const ScratchBasin basin;
    basin.execute("INSERT INTO PhysicalData (Zone, Date, Runoff) VALUES (3, " +
                  std::to_string(day(1996, 4, 2)) + ", 99)");
    basin.first_import(LegacyParts{});
    EXPECT_EQ(basin.days().size(), 7U);
}

}  // namespace
}  // namespace nivora
