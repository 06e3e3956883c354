// The parameter table of a definition, its first values, and the rows of a climate run.
#include "prep/daily_records.h"
#include "tests/prep/prep_fixture.h"

#include <stdexcept>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr const char* k_overwrite =
    "you are about to overwrite this simulation's existing parameter table using the values shown!  "
    "Continue!";
constexpr const char* k_values_of = "SELECT LapseRate, Tcrit, An, Cs, Cr, LagTime, RCA, Xcoeff, Ycoeff FROM ";

/// Halves and quarters, which every field holds exactly.
ParameterRow first_values() {
    ParameterRow row;
    row.tcrit = 0.75F;
    row.lag_hours = 18.0F;
    row.lapse_rate = 0.625F;
    row.an = 0.375F;
    row.cs = 0.875F;
    row.cr = 0.5F;
    row.rca = std::int16_t{1};
    row.xcoeff = 1.0625;
    row.ycoeff = 0.03125;
    return row;
}
constexpr const char* k_first_values_text = "0.625 0.75 0.375 0.875 0.5 18.0 1 1.0625 0.03125";

class FirstValuesTest : public PrepTest {
protected:
    FirstValuesTest() {
        make_parameter_table("wet");
        prep_.Data_View = DataView::Parameters;
        prep_.working_record.first_values = first_values();
    }

    Answer build(const std::string& table = "wet") { return Build_Daily_Records(context_, database_, table); }

    std::vector<std::string> values(const std::string& table) {
        return rows(k_values_of + quoted_name(table) + " ORDER BY rowid");
    }
};

TEST_F(FirstValuesTest, FillEveryZoneAndDayOfANewTable) {
    select("wet", october(1), october(2));
    EXPECT_EQ(build(), Answer::Ok);
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(values("wet"), ElementsAre(k_first_values_text, k_first_values_text, k_first_values_text,
                                           k_first_values_text));
    EXPECT_TRUE(is_free());
}

TEST_F(FirstValuesTest, ANewTableIsReportedAndNotAskedAbout) {
    select("wet", october(1), october(1));
    build();
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text,
              "The parameter table for this simulation will be created using the initial parameter table\n"
              "values shown on this window.  Once the parameter table for a simulation has been created,\n"
              " it may be edited by clicking 'Data/Parameters'.");
    EXPECT_EQ(last_message().title, k_program_title);
    EXPECT_EQ(last_message().buttons, Buttons::Ok);
}

TEST_F(FirstValuesTest, OverwriteTheExistingDaysOfATable) {
    select("wet", october(1), october(2));
    add_parameters("wet", {parameter_day(2, october(1), 9.0F)});
    build();
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(days("wet"), ElementsAre("2 1", "1 1", "1 2", "2 2"));
    EXPECT_THAT(values("wet"), ElementsAre(k_first_values_text, k_first_values_text, k_first_values_text,
                                           k_first_values_text));
}

TEST_F(FirstValuesTest, OfACompleteTableAreWrittenAfterAQuestion) {
    select("wet", october(1), october(1));
    add_parameters("wet", {parameter_day(1, october(1), 8.0F), parameter_day(2, october(1), 9.0F)});
    dialogs_.then(Answer::Ok);
    EXPECT_EQ(build(), Answer::Ok);
    ASSERT_EQ(messages(), 1U);
    EXPECT_EQ(last_message().text, k_overwrite);
    EXPECT_EQ(last_message().title, "Replace existing parameter table?");
    EXPECT_EQ(last_message().buttons, Buttons::OkCancel);
    EXPECT_THAT(values("wet"), ElementsAre(k_first_values_text, k_first_values_text));
}

TEST_F(FirstValuesTest, ACancelLeavesACompleteTableAsItWas) {
    select("wet", october(1), october(1));
    add_parameters("wet", {parameter_day(1, october(1), 8.0F), parameter_day(2, october(1), 9.0F)});
    dialogs_.then(Answer::Cancel);
    EXPECT_EQ(build(), Answer::Cancel);
    EXPECT_THAT(rows("SELECT An FROM wet ORDER BY rowid"), ElementsAre("8.0", "9.0"));
}

TEST_F(FirstValuesTest, RowsOutsideThePeriodCountAsPresentAndKeepTheirValues) {
    select("wet", october(3), october(3));
    // Two rows are needed and two exist, though neither is in the period.
    add_parameters("wet", {parameter_day(1, october(1), 8.0F), parameter_day(1, october(2), 9.0F)});
    dialogs_.then(Answer::Ok);
    build();
    EXPECT_EQ(last_message().text, k_overwrite);
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "1 3", "2 3"));
    EXPECT_THAT(rows("SELECT An FROM wet ORDER BY rowid"), ElementsAre("8.0", "9.0", "0.375", "0.375"));
}

TEST_F(FirstValuesTest, AreWrittenIntoBothRowsOfADayThatHasTwo) {
    select("wet", october(1), october(1));
    add_parameters("wet", {parameter_day(1, october(1), 8.0F), parameter_day(1, october(1), 9.0F)});
    dialogs_.then(Answer::Ok);
    build();
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 1", "2 1"));
    EXPECT_THAT(rows("SELECT An FROM wet ORDER BY rowid"), ElementsAre("0.375", "0.375", "0.375"));
}

TEST_F(FirstValuesTest, OfXAndYAreSinglesInADoubleField) {
    select("wet", october(1), october(1));
    prep_.working_record.first_values.xcoeff = 1.1;
    prep_.working_record.first_values.ycoeff = 0.025;
    build();
    // The Single nearest to 1.1 is 9227469 / 2^23; the one nearest to 0.025 is 13421773 / 2^29.
    EXPECT_THAT(rows("SELECT Xcoeff = 9227469.0 / 8388608.0, Ycoeff = 13421773.0 / 536870912.0 FROM wet"),
                ElementsAre("1 1", "1 1"));
}

TEST_F(FirstValuesTest, OfTheLagAreWholeHoursRoundedToEven) {
    select("wet", october(1), october(1));
    basin_.ZoneCount = 1;
    prep_.working_record.first_values.lag_hours = 6.5F;
    build();
    EXPECT_THAT(rows("SELECT LagTime FROM wet"), ElementsAre("6.0"));
}

TEST_F(FirstValuesTest, ThatAreMissingStopTheWorkAfterItsMessage) {
    const std::vector<void (*)(ParameterRow&)> losses{[](ParameterRow& row) { row.tcrit = k_missing; },
                                                      [](ParameterRow& row) { row.an = k_missing; },
                                                      [](ParameterRow& row) { row.lapse_rate = k_missing; },
                                                      [](ParameterRow& row) { row.cs = k_missing; },
                                                      [](ParameterRow& row) { row.lag_hours = k_missing; },
                                                      [](ParameterRow& row) { row.cr = k_missing; },
                                                      [](ParameterRow& row) { row.rca.reset(); },
                                                      [](ParameterRow& row) { row.xcoeff = k_missing; },
                                                      [](ParameterRow& row) { row.ycoeff = k_missing; }};
    select("wet", october(1), october(1));
    for (std::size_t i = 0; i < losses.size(); ++i) {
        SCOPED_TRACE(i);
        prep_.working_record.first_values = first_values();
        losses[i](prep_.working_record.first_values);
        EXPECT_THROW(build(), std::invalid_argument);
        EXPECT_EQ(messages(), i + 1);
        EXPECT_THAT(days("wet"), IsEmpty());
    }
    EXPECT_TRUE(is_free());
}

TEST_F(FirstValuesTest, ThatExceedTheirFieldsStopTheWork) {
    select("wet", october(1), october(1));
    prep_.working_record.first_values.lag_hours = 40000.0F;
    EXPECT_THROW(build(), std::invalid_argument);
    prep_.working_record.first_values = first_values();
    prep_.working_record.first_values.xcoeff = 1e300;
    EXPECT_THROW(build(), std::invalid_argument);
    EXPECT_THAT(days("wet"), IsEmpty());
}

TEST_F(FirstValuesTest, GoIntoTheTableThatTheirCallerNames) {
    make_parameter_table("dry");
    select("dry", october(3), october(3));
    build();
    EXPECT_THAT(days("dry"), IsEmpty());
    EXPECT_THAT(days("wet"), ElementsAre("1 3", "2 3"));
}

TEST_F(FirstValuesTest, WithoutATableNothingIsAsked) {
    select("wet", october(1), october(1));
    EXPECT_EQ(refused([&] { build({}); }), StoreFault::Missing);
    EXPECT_EQ(messages(), 0U);
}

TEST_F(FirstValuesTest, AreAllRolledBackIfARowIsRefused) {
    select("wet", october(1), october(2));
    database_.drop_table("wet");
    // A CHECK constraint of the table refuses the last of the four rows.
    database_.execute(
        "CREATE TABLE wet (Zone SMALLINT, Date DATE, Tcrit FLOAT, LagTime FLOAT, LapseRate FLOAT, An FLOAT, "
        "Cs FLOAT, Cr FLOAT, RCA SMALLINT, Xcoeff DOUBLE, Ycoeff DOUBLE, CHECK (Zone < 2 OR Date < " +
        std::to_string(october(2)) + "))");
    EXPECT_EQ(refused([&] { build(); }), StoreFault::Statement);
    EXPECT_THAT(days("wet"), IsEmpty());
    EXPECT_TRUE(is_free());
}

TEST_F(FirstValuesTest, LeaveTheDatesOfTheCurrentSimulationAlone) {
    select("wet", october(1), october(2));
    basin_.Current_Start = october(20);
    build();
    EXPECT_EQ(basin_.Current_Start, october(20));
}

// The mode of a climate run.

TEST_F(FirstValuesTest, InTheModeOfResultsRowsGetAZoneAndADateAlone) {
    add_parameters("wet", {parameter_day(1, october(1), 3.5F)});
    select("wet", october(1), october(2));
    prep_.Data_View = DataView::Results;
    dialogs_.then(Answer::Yes);
    EXPECT_EQ(build(), Answer::Yes);
    EXPECT_EQ(last_message().text, " message 2");
    EXPECT_EQ(last_message().title, "Climate change");
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT An, Cs, RCA FROM wet ORDER BY rowid"),
                ElementsAre("3.5 - -", "- - -", "- - -", "- - -"));
}

TEST_F(FirstValuesTest, InTheModeOfResultsANoAddsNothing) {
    select("wet", october(1), october(2));
    prep_.Data_View = DataView::Results;
    dialogs_.then(Answer::No);
    EXPECT_EQ(build(), Answer::No);
    EXPECT_THAT(days("wet"), IsEmpty());
}

TEST_F(FirstValuesTest, InTheModeOfAScenarioNothingIsAskedOrDone) {
    select("wet", october(1), october(2));
    prep_.Data_View = DataView::Scenario;
    EXPECT_EQ(build(), Answer::Ok);
    EXPECT_EQ(messages(), 0U);
    EXPECT_THAT(days("wet"), IsEmpty());
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
}

}  // namespace
}  // namespace nivora
