// The rows that the daily tables lack for a period, and how each mode adds them.
#include "prep/daily_records.h"

#include "store/transactions.h"
#include "tests/prep/prep_fixture.h"

#include <stdexcept>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

class DailyRecords : public PrepTest {
protected:
    Answer build(DataView mode) {
        prep_.Data_View = mode;
        return Build_Daily_Records(context_, database_);
    }
};

// The daily variables.

TEST_F(DailyRecords, AnEmptyRecordGetsEveryZoneAndDayOfThePeriodWithEmptyFields) {
    select("wet", october(1), october(2));
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(build(DataView::PhysicalData), Answer::Yes);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT Runoff, Tmax, Tmin, Tavg, Precip, SCA, NetRadiation FROM PhysicalData"),
                ElementsAre("- - - - - - -", "- - - - - - -", "- - - - - - -", "- - - - - - -"));
    EXPECT_TRUE(is_free());
}

TEST_F(DailyRecords, TheUserIsAskedBeforeDailyVariablesAreAdded) {
    select("wet", october(1), october(2));
    dialogs_.then(Answer::No);
    EXPECT_EQ(build(DataView::PhysicalData), Answer::No);
    EXPECT_EQ(last_message().text,
              "Daily physical data records for the period '10/01/1980 to 10/02/1980' will be added to this "
              "basin's physical data table.  Ok?");
    EXPECT_EQ(last_message().title, k_program_title);
    EXPECT_EQ(last_message().buttons, Buttons::YesNo);
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
}

TEST_F(DailyRecords, ANoLeavesTheDatesOfTheCurrentSimulationAlone) {
    select("wet", october(1), october(2));
    basin_.Current_Start = october(20);
    dialogs_.then(Answer::No);
    build(DataView::PhysicalData);
    EXPECT_THAT(basin_.Current_Start, Optional(october(20)));
}

TEST_F(DailyRecords, DailyVariablesAddedGiveTheCurrentSimulationTheirDates) {
    prep_.Daily_Start = october(5);
    prep_.Daily_End = october(6);
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_THAT(basin_.Current_Start, Optional(october(5)));
    EXPECT_THAT(basin_.Current_End, Optional(october(6)));
}

TEST_F(DailyRecords, WithoutASelectedSimulationThePeriodIsTheCallers) {
    select("not selected", october(20), october(21));
    basin_.current_row.reset();
    prep_.Daily_Start = october(5);
    prep_.Daily_End = october(5);
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 5", "2 5"));
}

TEST_F(DailyRecords, ASelectedSimulationsPeriodPrecedesTheCallers) {
    select("wet", october(1), october(1));
    prep_.Daily_Start = october(5);
    prep_.Daily_End = october(9);
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "2 1"));
    EXPECT_EQ(prep_.Daily_Start, october(1));
    EXPECT_EQ(prep_.Daily_End, october(1));
}

TEST_F(DailyRecords, ASelectedSimulationWithoutADateAddsNothing) {
    select("wet", october(1), october(1)).end.reset();
    EXPECT_THROW(build(DataView::PhysicalData), std::invalid_argument);
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
}

TEST_F(DailyRecords, ARecordThatHasThePeriodAsksNothingAndStaysAsItIs) {
    select("wet", october(2), october(3));
    add_physical({{.zone = 1, .date = october(1)},
                  {.zone = 1, .date = october(2), .runoff = 4.5F},
                  {.zone = 1, .date = october(3)},
                  {.zone = 2, .date = october(2)},
                  {.zone = 2, .date = october(3), .tavg = -1.5F}});
    const auto before = rows("SELECT * FROM PhysicalData");
    EXPECT_EQ(build(DataView::PhysicalData), Answer::Ok);
    EXPECT_EQ(messages(), 0U);
    EXPECT_EQ(rows("SELECT * FROM PhysicalData"), before);
}

TEST_F(DailyRecords, OnlyTheMissingDaysAreAddedAfterTheOthers) {
    select("wet", october(1), october(3));
    add_physical({{.zone = 1, .date = october(2), .runoff = 4.5F},
                  {.zone = 2, .date = october(1), .runoff = 5.5F},
                  {.zone = 2, .date = october(3), .runoff = 6.5F}});
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 2", "2 1", "2 3", "1 1", "1 3", "2 2"));
    EXPECT_THAT(rows("SELECT Runoff FROM PhysicalData ORDER BY rowid"),
                ElementsAre("4.5", "5.5", "6.5", "-", "-", "-"));
}

TEST_F(DailyRecords, DaysOutsideThePeriodDoNotCountAsPresent) {
    select("wet", october(3), october(4));
    // As many rows as the period needs, four, but only one of them is in the period.
    add_physical({{.zone = 1, .date = october(1)},
                  {.zone = 1, .date = october(2)},
                  {.zone = 1, .date = october(3)},
                  {.zone = 1, .date = october(5)}});
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "1 2", "1 3", "1 5", "1 4", "2 3", "2 4"));
}

TEST_F(DailyRecords, UnorderedAndDuplicateRowsAreKeptAndCountAsPresent) {
    select("wet", october(1), october(3));
    add_physical({{.zone = 2, .date = october(3), .runoff = 1.0F},
                  {.zone = 1, .date = october(1), .runoff = 2.0F},
                  {.zone = 1, .date = october(1), .runoff = 3.0F},
                  {.zone = 1, .date = october(3), .runoff = 4.0F}});
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    // Zone 1, day 1 is stored twice; 1/2, 2/1 and 2/2 were missing.
    EXPECT_THAT(days("PhysicalData"), ElementsAre("2 3", "1 1", "1 1", "1 3", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT Runoff FROM PhysicalData WHERE Runoff IS NOT NULL ORDER BY rowid"),
                ElementsAre("1.0", "2.0", "3.0", "4.0"));
}

TEST_F(DailyRecords, RowsOfZonesThatTheBasinDoesNotHaveCountAndStay) {
    select("wet", october(1), october(1));
    add_physical({{.zone = 3, .date = october(1)}, {.zone = 4, .date = october(1)}});
    EXPECT_EQ(build(DataView::PhysicalData), Answer::Ok) << "two rows are there, and two are needed";
    EXPECT_THAT(days("PhysicalData"), ElementsAre("3 1", "4 1"));
}

TEST_F(DailyRecords, ADateWithATimePartIsItsDay) {
    select("wet", october(1), october(1));
    database_.execute("INSERT INTO PhysicalData (Zone, Date) VALUES (1, " + std::to_string(october(1)) +
                      ".75)");
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_THAT(rows("SELECT Zone FROM PhysicalData"), ElementsAre("1", "2"));
}

TEST_F(DailyRecords, APeriodOverANewYearAndALeapDayIsComplete) {
    basin_.ZoneCount = 1;
    prep_.Daily_Start = *day_count({1995, 12, 31});
    prep_.Daily_End = *day_count({1996, 3, 1});
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    // 1 day in December, 31 in January, 29 in February, 1 in March: 62.
    EXPECT_THAT(
        rows("SELECT count(*), min(Date), max(Date) FROM PhysicalData"),
        ElementsAre("62 " + std::to_string(prep_.Daily_Start) + " " + std::to_string(prep_.Daily_End)));
}

TEST_F(DailyRecords, WithoutATableOfDailyVariablesNothingIsAsked) {
    database_.drop_table(k_physical_data);
    EXPECT_EQ(refused([&] { build(DataView::PhysicalData); }), StoreFault::Missing);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(DailyRecords, TheExtentIsKnownOnceRowsWereAdded) {
    select("wet", october(3), october(5));
    dialogs_.then(Answer::Yes);
    build(DataView::PhysicalData);
    EXPECT_EQ(prep_.record.first, october(3));
    EXPECT_EQ(prep_.record.last, october(5));
    EXPECT_EQ(prep_.record.zones, 2);
    EXPECT_EQ(prep_.record.count, 6);
}

TEST_F(DailyRecords, AddingWithinATransactionLeavesTheCommitToTheCaller) {
    select("wet", october(1), october(1));
    dialogs_.then(Answer::Yes);
    {
        const HeldTransaction transaction{database_};
        build(DataView::PhysicalData);
    }
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
}

// Days that are added with zeros.

TEST_F(DailyRecords, DaysAddedAsZerosReadZeroInEveryField) {
    add_physical({{.zone = 1, .date = october(2), .runoff = 4.5F}});
    add_missing_days_as_zeros(database_, {october(1), october(2)}, 2);
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 2", "1 1", "2 1", "2 2"));
    const std::string fields = "Runoff, Tmax, Tmin, Tavg, Precip, SCA, NetRadiation";
    EXPECT_THAT(rows("SELECT " + fields + " FROM PhysicalData ORDER BY rowid"),
                ElementsAre("4.5 - - - - - -", "0.0 0.0 0.0 0.0 0.0 0.0 0.0", "0.0 0.0 0.0 0.0 0.0 0.0 0.0",
                            "0.0 0.0 0.0 0.0 0.0 0.0 0.0"));
    EXPECT_TRUE(is_free());
}

// The extent of a table.

TEST_F(DailyRecords, TheExtentOfAnEmptyRecordHasNoRows) {
    EXPECT_EQ(Scan_Physical_Data(database_).count, 0);
    EXPECT_EQ(Scan_Physical_Data(database_).zones, 0);
}

TEST_F(DailyRecords, TheExtentOfATableIsItsRowsItsLastZoneAndItsEndDays) {
    make_parameter_table("dry \"A\"");
    add_parameters("dry \"A\"", {parameter_day(2, october(9)), parameter_day(1, october(3)),
                                 parameter_day(1, october(4))});
    const RecordExtent extent = scan_daily_table(database_, "DRY \"a\"");
    EXPECT_EQ(extent.count, 3);
    EXPECT_EQ(extent.zones, 2);
    EXPECT_EQ(extent.first, october(3));
    EXPECT_EQ(extent.last, october(9));
}

TEST_F(DailyRecords, AMissingTableHasNoExtent) {
    EXPECT_EQ(refused([&] { static_cast<void>(scan_daily_table(database_, "none")); }), StoreFault::Missing);
}

}  // namespace
}  // namespace nivora
