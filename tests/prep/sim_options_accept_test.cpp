// Accepting a simulation's definition.
#include "prep/sim_options.h"
#include "tests/prep/prep_fixture.h"

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::Optional;

constexpr const char* k_invalid = "Missing/invalid data\n";

class SimOptionsAccept : public PrepTest {
protected:
    SimOptionsAccept() {
        make_parameter_table("wet");
        prep_.SimOptions_Mode = SimOptionsMode::Add;
        form_.name = "wet";
        form_.run_number = "3";
        form_.start = "10/01/1980";
        form_.end = "10/02/1980";
        form_.initial_runoff = "2.5";
        form_.threshold = "6.00";
        form_.comments = "made by hand";
        form_.first_values = {"0.5", "1.5", "0.625", "0.875", "0.75", "1", "18", "1.125", "0.03125"};
    }

    bool accept() { return accept_sim_options(context_, database_, form_); }

    /// Like an edit of a row in the grid.
    void edit_row() {
        select("wet", october(1), october(2));
        prep_.SimOptions_Mode = SimOptionsMode::Edit;
        form_.grid_row = 0;
    }

    std::vector<std::string> cells(std::size_t row) {
        std::vector<std::string> texts;
        for (int column = 1; column <= 17; ++column) texts.push_back(basin_.simulations.at(row).text(column));
        return texts;
    }

    SimOptionsForm form_;
};

// Adding.

TEST_F(SimOptionsAccept, AnAddedSimulationGetsItsRowItsParametersAndItsDays) {
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    ASSERT_EQ(basin_.simulations.size(), 1U);
    EXPECT_THAT(cells(0), ElementsAre("wet", "3", "10/01/1980", "10/02/1980", "Metric", "Average",
                                      "Basinwide", "Basinwide", "Basinwide", "Basinwide", "Basinwide",
                                      "Basinwide", "2.5", "6", "1.125", "0.03125", "made by hand"));
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT DISTINCT An, Tcrit, LapseRate, Cs, Cr, RCA, LagTime, Xcoeff, Ycoeff FROM wet"),
                ElementsAre("0.5 1.5 0.625 0.875 0.75 1 18.0 1.125 0.03125"));
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
}

TEST_F(SimOptionsAccept, ANewSimulationHasThePlaceholderOfItsScenarios) {
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_THAT(rows("SELECT SimulationFile, ScenarioFile, Comments FROM ClimateScenarioIndex"),
                ElementsAre("wet None No climate change"));
    EXPECT_TRUE(database_.has_table("None"));
}

TEST_F(SimOptionsAccept, AnEditKeepsTheExistingScenarios) {
    edit_row();
    database_.execute(
        "INSERT INTO ClimateScenarioIndex (SimulationFile, ScenarioFile) VALUES ('wet', 'warm')");
    EXPECT_TRUE(accept());
    EXPECT_THAT(rows("SELECT SimulationFile, ScenarioFile FROM ClimateScenarioIndex"),
                ElementsAre("wet warm"));
}

TEST_F(SimOptionsAccept, AnAddedSimulationIsTheCurrentOne) {
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
    EXPECT_THAT(basin_.current_row, Optional(std::size_t{0}));
    EXPECT_THAT(basin_.Current_Start, Optional(october(1)));
    EXPECT_THAT(basin_.Current_End, Optional(october(2)));
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_TRUE(basin_.Input_Changed);
}

TEST_F(SimOptionsAccept, TheParametersAreReportedBeforeTheDaysAreAskedAbout) {
    dialogs_.then(Answer::Yes);
    accept();
    ASSERT_EQ(messages(), 2U);
    EXPECT_EQ(dialogs_.messages()[0].message.buttons, Buttons::Ok);
    EXPECT_THAT(dialogs_.messages()[0].message.text, testing::StartsWith("The parameter table"));
    EXPECT_THAT(dialogs_.messages()[1].message.text, testing::StartsWith("Daily physical data records"));
}

TEST_F(SimOptionsAccept, AddingEndsInTheModeOfTheDailyVariables) {
    prep_.Data_View = DataView::Results;
    dialogs_.then(Answer::Yes);
    accept();
    EXPECT_EQ(prep_.Data_View, DataView::PhysicalData);
    EXPECT_EQ(prep_.Daily_Start, october(1));
    EXPECT_EQ(prep_.Daily_End, october(2));
}

TEST_F(SimOptionsAccept, DaysThatTheRecordHasAreNotAskedAboutAndStay) {
    add_physical({{.zone = 1, .date = october(1), .runoff = 1.5F},
                  {.zone = 1, .date = october(2), .runoff = 2.5F},
                  {.zone = 2, .date = october(1), .runoff = 3.5F},
                  {.zone = 2, .date = october(2), .runoff = 4.5F}});
    EXPECT_TRUE(accept());
    EXPECT_EQ(messages(), 1U);
    EXPECT_THAT(rows("SELECT Runoff FROM PhysicalData"), ElementsAre("1.5", "2.5", "3.5", "4.5"));
}

TEST_F(SimOptionsAccept, ANoToTheDaysStillAddsTheSimulation) {
    dialogs_.then(Answer::No);
    EXPECT_TRUE(accept());
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
}

TEST_F(SimOptionsAccept, TheRecordGrowsByAPeriodOutsideIt) {
    basin_.ZoneCount = 1;
    add_physical({{.zone = 1, .date = october(20)}});
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_THAT(days("PhysicalData"), ElementsAre("1 20", "1 1", "1 2"));
    EXPECT_EQ(prep_.record.first, october(1));
    EXPECT_EQ(prep_.record.last, october(20));
}

TEST_F(SimOptionsAccept, AnotherSimulationIsAddedAfterTheOthers) {
    select("dry", october(5), october(6));
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    ASSERT_EQ(basin_.simulations.size(), 2U);
    EXPECT_EQ(basin_.simulations[1].name, "wet");
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2")) << "the days of the new row";
}

// The message names the box in error by the caption that the user sees.

TEST_F(SimOptionsAccept, InvalidDataNamesTheBoxOfADate) {
    form_.start = "02/30/1980";
    EXPECT_FALSE(accept());
    EXPECT_EQ(last_message().text,
              "Missing/invalid data\nThe box 'Start Date' holds '02/30/1980': the calendar has no such day.");
    form_.start = "10/01/1980";
    form_.end = "//";  // as a masked box returns it when it is empty
    EXPECT_FALSE(accept());
    EXPECT_EQ(last_message().text,
              "Missing/invalid data\nThe box 'End Date' is empty; it needs a date, mm/dd/yyyy.");
}

TEST_F(SimOptionsAccept, InvalidDataNamesTheBoxOfEachFirstValue) {
    const std::array<const char*, k_first_values> captions{
        "Degree Day Factor",          "Critical Temperature",       "Temperature Lapse Rate",
        "Runoff Coefficients (Snow)", "Runoff Coefficients (Rain)", "Rainfall Contributing Area",
        "Lag Time to Gage (hr)",      "X recession coefficient",    "Y recession coefficient"};
    const auto whole = form_.first_values;
    for (std::size_t value = 0; value < k_first_values; ++value) {
        const std::string box = "Missing/invalid data\nThe box '" + std::string{captions.at(value)} + "' ";
        form_.first_values = whole;
        form_.first_values.at(value) = "x";
        EXPECT_FALSE(accept());
        EXPECT_EQ(last_message().text, box + "holds 'x': this is not a number.");
        form_.first_values.at(value) = " ";
        EXPECT_FALSE(accept());
        const bool integer = value == 5 || value == 6;
        EXPECT_EQ(last_message().text,
                  box + "is empty; it needs " + (integer ? "a whole number." : "a number."));
    }
}

TEST_F(SimOptionsAccept, InvalidDataNamesWhatTheStoreRefused) {
    database_.drop_table("wet");
    EXPECT_FALSE(accept());
    EXPECT_THAT(last_message().text,
                testing::AllOf(testing::StartsWith(k_invalid), testing::HasSubstr("wet")));
}

// Dates.

TEST_F(SimOptionsAccept, DatesThatCannotBeReadAreInvalidData) {
    for (const char* text : {"", "02/29/1981", "soon", "  /  /    "}) {
        form_.end = text;
        EXPECT_FALSE(accept());
        EXPECT_THAT(last_message().text, testing::StartsWith(k_invalid));
        EXPECT_EQ(last_message().icon, Icon::Stop);
    }
    EXPECT_TRUE(basin_.simulations.empty());
}

TEST_F(SimOptionsAccept, APeriodOfMoreThan366DaysOrOfOneIsRefused) {
    // 10/01/1980 to 10/02/1981 are 367 days.
    for (const char* end : {"10/02/1981", "10/01/1980", "09/30/1980"}) {
        form_.end = end;
        EXPECT_FALSE(accept());
        EXPECT_EQ(last_message().text, "Date range error!");
        EXPECT_EQ(last_message().icon, Icon::Stop);
    }
    EXPECT_TRUE(basin_.simulations.empty());
    EXPECT_FALSE(basin_.Basin_Changed);
}

TEST_F(SimOptionsAccept, APeriodOf366DaysIsAccepted) {
    form_.end = "10/01/1981";
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_EQ(days("wet").size(), 2U * 366U);
}

// Units.

TEST_F(SimOptionsAccept, UnitsThatAreNotFixedAreAskedAboutAndFixed) {
    basin_.basin_units = basin_.Units_Code = Units::NotFixed;
    form_.units = Units::English;
    dialogs_.then(Answer::Ok).then(Answer::Yes);
    EXPECT_TRUE(accept());
    const Message& question = dialogs_.messages().front().message;
    EXPECT_EQ(question.text,
              "Once units are established within a basin, any additional simulations for the basin "
              "must use the same units.  Continue?");
    EXPECT_EQ(question.title, "Are your units correct?");
    EXPECT_EQ(question.buttons, Buttons::OkCancel);
    EXPECT_EQ(basin_.Units_Code, Units::English);
}

TEST_F(SimOptionsAccept, ACancelAtTheUnitsLeavesANewRowWithItsFirstCells) {
    basin_.basin_units = basin_.Units_Code = Units::NotFixed;
    dialogs_.then(Answer::Cancel);
    EXPECT_FALSE(accept());
    EXPECT_EQ(basin_.Units_Code, Units::NotFixed);
    ASSERT_EQ(basin_.simulations.size(), 1U);
    EXPECT_THAT(cells(0), ElementsAre("wet", "3", "10/01/1980", "10/02/1980", "Metric", "", "", "", "", "",
                                      "", "", "", "", "", "", ""));
    EXPECT_THAT(days("wet"), IsEmpty());
    EXPECT_EQ(basin_.Current_Sim_Name, "--");
}

TEST_F(SimOptionsAccept, ASecondAcceptUsesTheRowThatTheFirstAdded) {
    basin_.basin_units = basin_.Units_Code = Units::NotFixed;
    dialogs_.then(Answer::Cancel).then(Answer::Ok).then(Answer::Yes);
    EXPECT_FALSE(accept());
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.simulations.size(), 1U);
}

TEST_F(SimOptionsAccept, UnitsThatAreFixedStayThoseOfTheBasin) {
    form_.units = Units::English;
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.Units_Code, Units::Metric);
    EXPECT_THAT(basin_.simulations[0].units, Optional(Units::English));
}

// Cells and first values.

TEST_F(SimOptionsAccept, BoxesWithoutANumberLeaveTheirCellsEmpty) {
    form_.run_number = "first";
    form_.initial_runoff = "2,5";
    form_.threshold = "";
    form_.comments = "";
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    for (const int column : {2, 13, 14, 17}) EXPECT_EQ(basin_.simulations[0].text(column), "") << column;
}

TEST_F(SimOptionsAccept, NumbersThatExceedTheirCellsLeaveThemEmpty) {
    form_.run_number = "40000";
    form_.initial_runoff = "4e38";
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.simulations[0].text(2), "");
    EXPECT_EQ(basin_.simulations[0].text(13), "");
}

TEST_F(SimOptionsAccept, OptionsGoIntoTheirColumns) {
    form_.temperature_values = 1;
    for (std::size_t item = 0; item < form_.by_zone.size(); ++item) {
        SCOPED_TRACE(item);
        form_.by_zone.fill(false);
        form_.by_zone[item] = true;
        edit_row();
        EXPECT_TRUE(accept());
        EXPECT_EQ(basin_.simulations[0].value(6), 1.0);
        for (int column = 7; column <= 12; ++column)
            EXPECT_EQ(basin_.simulations[0].value(column), column == static_cast<int>(item) + 7 ? 1.0 : 0.0);
    }
}

TEST_F(SimOptionsAccept, AFirstValueThatIsMissingIsInvalidDataAndChangesNothing) {
    const auto whole = form_.first_values;
    for (std::size_t value = 0; value < k_first_values; ++value) {
        for (const char* text : {"", "x", "0,5", "4e38"}) {
            SCOPED_TRACE(std::to_string(value) + " " + text);
            form_.first_values = whole;
            form_.first_values.at(value) = text;
            EXPECT_EQ(faulty_first_value(form_), static_cast<FirstValue>(value));
            EXPECT_FALSE(accept());
            EXPECT_THAT(last_message().text, testing::StartsWith(k_invalid));
            EXPECT_TRUE(basin_.simulations.empty());
            EXPECT_FALSE(basin_.Basin_Changed);
        }
    }
    EXPECT_EQ(messages(), 4U * k_first_values) << "no table is announced that is not written";
    EXPECT_THAT(days("wet"), IsEmpty());
    form_.first_values = whole;
    EXPECT_EQ(faulty_first_value(form_), std::nullopt);
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.simulations.size(), 1U);
}

TEST_F(SimOptionsAccept, ASwitchAndALagMustFitTheirIntegers) {
    for (const FirstValue whole : {FirstValue::RCA, FirstValue::LagTime}) {
        const auto values = form_.first_values;
        form_.first_values.at(static_cast<std::size_t>(whole)) = "40000";
        EXPECT_EQ(faulty_first_value(form_), whole);
        form_.first_values = values;
    }
    form_.first_values.at(static_cast<std::size_t>(FirstValue::An)) = "40000";
    EXPECT_EQ(faulty_first_value(form_), std::nullopt);
}

// A name that a row of the grid has already.

TEST_F(SimOptionsAccept, ASimulationThatIsOverwrittenKeepsItsRow) {
    select("Wet", october(20), october(25)).comments = "the old one";
    select("dry", october(5), october(6));
    dialogs_.then(Answer::Yes);
    EXPECT_TRUE(accept());
    ASSERT_EQ(basin_.simulations.size(), 2U);
    EXPECT_THAT(cells(0), ElementsAre("wet", "3", "10/01/1980", "10/02/1980", "Metric", "Average",
                                      "Basinwide", "Basinwide", "Basinwide", "Basinwide", "Basinwide",
                                      "Basinwide", "2.5", "6", "1.125", "0.03125", "made by hand"));
    EXPECT_THAT(basin_.current_row, Optional(std::size_t{0}));
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2")) << "the days of the overwritten row";
}

TEST_F(SimOptionsAccept, NamesOfRowsCompareWithoutCaseInEveryScript) {
    const std::vector<std::pair<std::string, std::string>> names{{"Frühling Öst", "FRÜHLING ÖST"},
                                                                 {"Весна", "ВЕСНА"}};
    for (const auto& [stored, typed] : names) {
        select(stored, october(20), october(25));
        prep_.SimOptions_Mode = SimOptionsMode::Import;
        form_.name = typed;
        form_.grid_row.reset();
        const std::size_t rows_before = basin_.simulations.size();
        EXPECT_TRUE(accept());
        EXPECT_EQ(basin_.simulations.size(), rows_before);
        EXPECT_EQ(basin_.simulations.back().name, typed);
    }
}

TEST_F(SimOptionsAccept, AMissingParameterTableIsInvalidData) {
    database_.drop_table("wet");
    EXPECT_FALSE(accept());
    ASSERT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text, testing::StartsWith(k_invalid));
    // The row is in the grid by now, and must not be lost without a question.
    EXPECT_EQ(basin_.simulations.size(), 1U);
    EXPECT_TRUE(basin_.Basin_Changed);
}

TEST_F(SimOptionsAccept, ACompleteParameterTableIsAskedAboutAndACancelKeepsTheWindow) {
    basin_.ZoneCount = 1;
    add_parameters("wet", {parameter_day(1, october(1), 8.0F), parameter_day(1, october(2), 9.0F)});
    add_physical({{.zone = 1, .date = october(1)}, {.zone = 1, .date = october(2)}});
    dialogs_.then(Answer::Cancel);
    EXPECT_FALSE(accept());
    EXPECT_EQ(last_message().title, "Replace existing parameter table?");
    EXPECT_THAT(rows("SELECT An FROM wet"), ElementsAre("8.0", "9.0"));
    EXPECT_EQ(basin_.Current_Sim_Name, "--");
    dialogs_.then(Answer::Ok);
    EXPECT_TRUE(accept());
    EXPECT_THAT(rows("SELECT An FROM wet"), ElementsAre("0.5", "0.5"));
}

TEST_F(SimOptionsAccept, AfterACancelAtTheParametersTheDaysAreStillAskedAbout) {
    basin_.ZoneCount = 1;
    add_parameters("wet", {parameter_day(1, october(1), 8.0F), parameter_day(1, october(2), 9.0F)});
    dialogs_.then(Answer::Cancel).then(Answer::No);
    EXPECT_TRUE(accept()) << "the later answer counts";
    EXPECT_EQ(messages(), 2U);
}

// Edit and import.

TEST_F(SimOptionsAccept, AnEditChangesItsRowAndNoTable) {
    edit_row();
    form_.end = "10/03/1980";
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.simulations.size(), 1U);
    EXPECT_EQ(basin_.simulations[0].text(4), "10/03/1980");
    EXPECT_THAT(basin_.Current_End, Optional(october(3)));
    EXPECT_TRUE(basin_.Basin_Changed);
    EXPECT_EQ(messages(), 0U);
    EXPECT_THAT(days("wet"), IsEmpty());
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
}

TEST_F(SimOptionsAccept, AnEditFillsAnEmptyParameterTable) {
    edit_row();
    form_.rebuilds_table = true;
    EXPECT_TRUE(accept());
    ASSERT_EQ(messages(), 1U);
    EXPECT_THAT(last_message().text, testing::StartsWith("The parameter table for this simulation"));
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
    EXPECT_THAT(rows("SELECT DISTINCT An, Xcoeff FROM wet"), ElementsAre("0.5 1.125"));
    EXPECT_THAT(days("PhysicalData"), IsEmpty()) << "an edit adds no daily variables";
    EXPECT_EQ(prep_.Data_View, DataView::PhysicalData);
}

TEST_F(SimOptionsAccept, AnEditCreatesAMissingParameterTable) {
    edit_row();
    database_.drop_table("wet");
    form_.rebuilds_table = true;
    EXPECT_TRUE(accept());
    EXPECT_THAT(days("wet"), ElementsAre("1 1", "1 2", "2 1", "2 2"));
}

TEST_F(SimOptionsAccept, ARebuildNeedsAllFirstValuesAndChangesNothingWithoutThem) {
    edit_row();
    form_.rebuilds_table = true;
    form_.comments = "changed";
    form_.first_values.at(0).clear();
    EXPECT_FALSE(accept());
    EXPECT_THAT(last_message().text, testing::StartsWith(k_invalid));
    EXPECT_FALSE(basin_.simulations[0].comments.has_value());
    EXPECT_THAT(days("wet"), IsEmpty());
}

TEST_F(SimOptionsAccept, ARowNamedLikeATableOfTheBasinRebuildsNone) {
    edit_row();
    basin_.simulations[0].name = form_.name = "SimResults";
    form_.rebuilds_table = true;
    EXPECT_FALSE(accept());
    EXPECT_THAT(last_message().text, testing::StartsWith(k_invalid));
    EXPECT_FALSE(database_.has_table("SimResults"));
}

TEST_F(SimOptionsAccept, AnEditNeedsNoFirstValues) {
    edit_row();
    form_.first_values.fill("");
    EXPECT_TRUE(accept());
    EXPECT_EQ(basin_.simulations[0].text(15), "");
}

TEST_F(SimOptionsAccept, AnEditKeepsTheModeOfTheLastView) {
    edit_row();
    prep_.Data_View = DataView::Results;
    EXPECT_TRUE(accept());
    EXPECT_EQ(prep_.Data_View, DataView::Results);
}

TEST_F(SimOptionsAccept, AnEditWithoutARowIsInvalidData) {
    prep_.SimOptions_Mode = SimOptionsMode::Edit;
    EXPECT_FALSE(accept());
    EXPECT_THAT(last_message().text, testing::StartsWith(k_invalid));
    EXPECT_TRUE(basin_.simulations.empty());
}

TEST_F(SimOptionsAccept, TheFirstValuesAreThoseThatALaterBuildWrites) {
    edit_row();
    EXPECT_TRUE(accept());
    EXPECT_EQ(prep_.working_record.first_values.an, 0.5F);
    EXPECT_EQ(prep_.working_record.first_values.ycoeff, 0.03125);
}

TEST_F(SimOptionsAccept, AnImportAddsARowAndBuildsNothing) {
    prep_.SimOptions_Mode = SimOptionsMode::Import;
    EXPECT_TRUE(accept());
    ASSERT_EQ(basin_.simulations.size(), 1U);
    EXPECT_EQ(basin_.Current_Sim_Name, "wet");
    EXPECT_EQ(messages(), 0U);
    EXPECT_THAT(days("wet"), IsEmpty());
    EXPECT_THAT(days("PhysicalData"), IsEmpty());
}

}  // namespace
}  // namespace nivora
