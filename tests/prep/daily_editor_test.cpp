// The daily editor: a zone's daily values, edited in one transaction.
#include "prep/daily_editor.h"

#include "tests/prep/prep_fixture.h"

#include <limits>

namespace nivora {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

constexpr double k_null = std::numeric_limits<double>::quiet_NaN();
constexpr double k_infinite = std::numeric_limits<double>::infinity();

// Column numbers in the view of a parameter table.
constexpr std::size_t k_lapse_rate = 1;
constexpr std::size_t k_an = 3;
constexpr std::size_t k_lag = 4;
constexpr std::size_t k_rca = 7;
constexpr std::size_t k_y = 9;

DailyQuery query_of(const std::string& table, DataView view, std::optional<Period> period = {}) {
    return {.table = table, .fields = daily_fields(view), .period = period};
}

class DailyEditorTest : public PrepTest {
protected:
    DailyEditorTest() {
        make_parameter_table("wet");
        add_parameters("wet", {parameter_day(2, october(1), 0.25F), parameter_day(1, october(3), 0.75F),
                               parameter_day(1, october(1), 0.5F), parameter_day(1, october(2))});
    }

    [[nodiscard]] DailyEditor open(std::optional<Period> period = {}) const {
        return {file_.path(), DataView::Parameters, query_of("wet", DataView::Parameters, period)};
    }

    std::vector<double> column(const DailyEditor& editor, std::size_t number) {
        std::vector<double> values;
        for (std::size_t row = 0; row < editor.rows(); ++row) values.push_back(editor.value(row, number));
        return values;
    }

    /// A field's values in the file, zone by zone and day by day.
    std::vector<std::string> stored(const std::string& field) {
        return rows("SELECT " + field + " FROM wet ORDER BY Zone, Date");
    }
};

MATCHER(IsMissing, "") { return is_missing(arg); }

TEST_F(DailyEditorTest, SaysWhyAColumnCannotTakeANumber) {
    const DailyEditor editor = open();
    EXPECT_EQ(editor.refusal(k_lag, 42.0), "");
    EXPECT_EQ(editor.refusal(k_lag, 42.5), "the number must lie between 0 and 42");
    EXPECT_EQ(editor.refusal(k_rca, 2.0), "the number must lie between 0 and 1");
    EXPECT_EQ(editor.refusal(k_rca, 0.5), "a whole number is needed");
    EXPECT_EQ(editor.refusal(k_y, -10.0), "the number must lie between -9.99 and 9.99");
    EXPECT_EQ(editor.refusal(k_an, 1e39), "the number is too large");
    EXPECT_EQ(editor.refusal(k_an, k_null), "");
}

// What is shown.

TEST_F(DailyEditorTest, OpensOnTheDaysOfZone1InTheirOrder) {
    const DailyEditor editor = open();
    EXPECT_EQ(editor.zone(), 1);
    ASSERT_EQ(editor.rows(), 3U);
    EXPECT_EQ(editor.date(0), october(1));
    EXPECT_EQ(editor.date(1), october(2));
    EXPECT_EQ(editor.date(2), october(3));
    EXPECT_EQ(editor.value(2, 0), static_cast<double>(october(3)));
    EXPECT_EQ(editor.value(0, k_an), 0.5);
    EXPECT_THAT(editor.value(1, k_an), IsMissing());
    EXPECT_EQ(editor.value(2, k_an), 0.75);
    EXPECT_FALSE(editor.changed());
}

TEST_F(DailyEditorTest, ShowsTheDaysOfAPeriodWithBothItsEnds) {
    const DailyEditor editor = open(Period{october(2), october(3)});
    ASSERT_EQ(editor.rows(), 2U);
    EXPECT_EQ(editor.date(0), october(2));
    EXPECT_EQ(editor.date(1), october(3));
}

TEST_F(DailyEditorTest, ShowsAnotherZoneAndKeepsTheChanges) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_an, 2.0));
    editor.show_zone(2);
    EXPECT_EQ(editor.zone(), 2);
    EXPECT_THAT(column(editor, k_an), ElementsAre(0.25));
    EXPECT_TRUE(editor.set_value(0, k_an, 4.0));
    editor.show_zone(1);
    EXPECT_EQ(editor.value(0, k_an), 2.0);
    editor.commit();
    EXPECT_THAT(stored("An"), ElementsAre("2.0", "-", "0.75", "4.0"));
}

TEST_F(DailyEditorTest, AZoneWithoutRowsHasNone) {
    DailyEditor editor = open();
    editor.show_zone(9);
    EXPECT_EQ(editor.rows(), 0U);
}

TEST_F(DailyEditorTest, APeriodWithoutRowsHasNone) {
    EXPECT_EQ(open(Period{october(20), october(21)}).rows(), 0U);
}

TEST_F(DailyEditorTest, FindsItsTableInAnyCase) {
    const DailyEditor editor{file_.path(), DataView::Parameters, query_of("WET", DataView::Parameters)};
    EXPECT_EQ(editor.rows(), 3U);
}

TEST_F(DailyEditorTest, ANameInAnyScriptIsATableName) {
    const std::string name = "O'Hara \"wet\" 100%";
    make_parameter_table(name);
    add_parameters(name, {parameter_day(1, october(1), 0.5F)});
    DailyEditor editor{file_.path(), DataView::Parameters, query_of(name, DataView::Parameters)};
    EXPECT_TRUE(editor.set_value(0, k_an, 1.5));
    editor.mass_edit(MassEdit::Add, k_an, 0, 0, 1.0F);
    EXPECT_EQ(editor.value(0, k_an), 2.5);
}

TEST_F(DailyEditorTest, AMissingTableOrFieldIsRefused) {
    EXPECT_EQ(refused([&] {
                  DailyEditor(file_.path(), DataView::Parameters, query_of("none", DataView::Parameters));
              }),
              StoreFault::Missing);
    EXPECT_EQ(refused([&] {
                  DailyEditor(file_.path(), DataView::Parameters, query_of("wet", DataView::PhysicalData));
              }),
              StoreFault::Statement);
    EXPECT_TRUE(is_free()) << "the file is let go of";
}

TEST_F(DailyEditorTest, TextInsteadOfANumberIsRefused) {
    database_.execute("UPDATE wet SET An = 'much'");
    EXPECT_EQ(refused([&] { static_cast<void>(open()); }), StoreFault::Value);
}

// Single values.

TEST_F(DailyEditorTest, AValueKeepsThePrecisionOfItsField) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_an, 0.1));
    EXPECT_EQ(editor.value(0, k_an), static_cast<double>(0.1F)) << "a Single";
    EXPECT_TRUE(editor.set_value(0, k_y, 0.025));
    EXPECT_EQ(editor.value(0, k_y), 0.025) << "a Double";
    editor.commit();
    // 0.1 as a Single is 13421773 / 2^27.
    EXPECT_THAT(
        rows("SELECT An = 13421773.0 / 134217728.0, Ycoeff = 0.025 FROM wet WHERE Zone = 1 AND Date = " +
             std::to_string(october(1))),
        ElementsAre("1 1"));
}

TEST_F(DailyEditorTest, AValueCanBeRemoved) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_an, k_null));
    EXPECT_THAT(editor.value(0, k_an), IsMissing());
    editor.commit();
    EXPECT_THAT(stored("An"), ElementsAre("-", "-", "0.75", "0.25"));
}

TEST_F(DailyEditorTest, AValueThatItsFieldCannotHoldIsRefused) {
    DailyEditor editor = open();
    EXPECT_FALSE(editor.set_value(0, k_an, k_infinite));
    EXPECT_FALSE(editor.set_value(0, k_an, 3.5e38)) << "the largest Single is about 3.4e38";
    EXPECT_FALSE(editor.set_value(0, k_an, -3.5e38));
    EXPECT_EQ(editor.value(0, k_an), 0.5);
    EXPECT_TRUE(editor.set_value(0, k_an, -3.0e38));
}

TEST_F(DailyEditorTest, TheContributingAreaIs0Or1) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_rca, 0.0));
    EXPECT_TRUE(editor.set_value(0, k_rca, 1.0));
    for (const double value : {0.5, 2.0, -1.0, 1e9}) EXPECT_FALSE(editor.set_value(0, k_rca, value)) << value;
    EXPECT_EQ(editor.value(0, k_rca), 1.0);
}

TEST_F(DailyEditorTest, TheLagLiesBetween0And42Hours) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_lag, 0.0));
    EXPECT_TRUE(editor.set_value(0, k_lag, 42.0));
    EXPECT_FALSE(editor.set_value(0, k_lag, 42.01));
    EXPECT_FALSE(editor.set_value(0, k_lag, -0.01));
    EXPECT_EQ(editor.value(0, k_lag), 42.0);
}

TEST_F(DailyEditorTest, RecessionCoefficientsLieWithin999) {
    DailyEditor editor = open();
    for (const std::size_t coefficient : {std::size_t{8}, k_y}) {
        EXPECT_TRUE(editor.set_value(0, coefficient, -9.99));
        EXPECT_TRUE(editor.set_value(0, coefficient, 9.99));
        EXPECT_FALSE(editor.set_value(0, coefficient, 9.991));
        EXPECT_FALSE(editor.set_value(0, coefficient, -10.0));
        EXPECT_EQ(editor.value(0, coefficient), 9.99);
    }
}

TEST_F(DailyEditorTest, OtherColumnsHaveNoLimits) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_an, -1e6));
    EXPECT_TRUE(editor.set_value(0, k_lapse_rate, 1e6));
}

TEST_F(DailyEditorTest, ADateCannotBeSet) {
    DailyEditor editor = open();
    EXPECT_FALSE(editor.set_value(0, 0, static_cast<double>(october(9))));
    EXPECT_EQ(editor.date(0), october(1));
}

TEST_F(DailyEditorTest, OnlyAnotherValueIsAChange) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_an, 0.5));
    EXPECT_TRUE(editor.set_value(1, k_an, k_null));
    EXPECT_FALSE(editor.set_value(0, 0, 1.0));
    EXPECT_FALSE(editor.changed());
    EXPECT_TRUE(editor.set_value(1, k_an, 0.0));
    EXPECT_TRUE(editor.changed()) << "zero is no missing value";
}

// Commit and roll-back.

TEST_F(DailyEditorTest, ARollBackRestoresAllZones) {
    DailyEditor editor = open();
    EXPECT_TRUE(editor.set_value(0, k_an, 2.0));
    editor.show_zone(2);
    editor.mass_edit(MassEdit::Add, k_an, 0, 0, 1.0F);
    editor.roll_back();
    EXPECT_THAT(stored("An"), ElementsAre("0.5", "-", "0.75", "0.25"));
    EXPECT_TRUE(is_free());
}

TEST_F(DailyEditorTest, WhatIsNotCommittedIsRolledBack) {
    {
        DailyEditor editor = open();
        EXPECT_TRUE(editor.set_value(0, k_an, 2.0));
        EXPECT_FALSE(is_free()) << "nobody else writes meanwhile";
    }
    EXPECT_THAT(stored("An"), ElementsAre("0.5", "-", "0.75", "0.25"));
    EXPECT_TRUE(is_free());
}

TEST_F(DailyEditorTest, AcceptsNothingAfterItsEnd) {
    DailyEditor editor = open();
    editor.commit();
    EXPECT_FALSE(editor.set_value(0, k_an, 2.0));
    EXPECT_EQ(refused([&] { editor.mass_edit(MassEdit::Add, k_an, 0, 0, 1.0F); }), StoreFault::ReadOnly);
    editor.roll_back();
    EXPECT_THAT(stored("An"), ElementsAre("0.5", "-", "0.75", "0.25"));
}

// Other views.

TEST_F(DailyEditorTest, TheDailyVariablesHaveNoLimits) {
    add_physical({{.zone = 1, .date = october(1), .runoff = 3.5F}});
    DailyEditor editor{file_.path(), DataView::PhysicalData,
                       query_of("PhysicalData", DataView::PhysicalData)};
    EXPECT_EQ(editor.value(0, 1), 3.5);
    EXPECT_TRUE(editor.set_value(0, 5, 2.5)) << "a snow cover above 1";
    EXPECT_TRUE(editor.set_value(0, 1, -4.0));
    editor.commit();
    EXPECT_THAT(rows("SELECT Runoff, SCA FROM PhysicalData"), ElementsAre("-4.0 2.5"));
}

TEST_F(DailyEditorTest, ResultsCanBeEdited) {
    database_.create_table(sim_results_table());
    database_.execute("INSERT INTO SimResults (Zone, Date, RCA) VALUES (1, " + std::to_string(october(1)) +
                      ", 1)");
    DailyEditor editor{file_.path(), DataView::Results, query_of("SimResults", DataView::Results)};
    ASSERT_EQ(editor.columns().size(), 56U) << "the date and 55 values";
    EXPECT_EQ(editor.value(0, 29), 1.0) << "RCA is field 31, Zone is left out, and columns count from 0";
    EXPECT_FALSE(editor.set_value(0, 29, 0.5));
    EXPECT_TRUE(editor.set_value(0, 29, 7.0)) << "it has no limits here";
}

TEST_F(DailyEditorTest, AScenarioShowsTheDaysThatBothTablesHaveForReadingOnly) {
    add_physical({{.zone = 1, .date = october(2), .runoff = 2.5F},
                  {.zone = 1, .date = october(3), .runoff = 3.5F},
                  {.zone = 1, .date = october(4), .runoff = 4.5F}});
    DailyEditor editor{file_.path(), DataView::Scenario,
                       query_of("wet", DataView::Scenario, Period{october(1), october(4)})};
    ASSERT_EQ(editor.columns().size(), 17U);
    ASSERT_EQ(editor.rows(), 2U);
    EXPECT_EQ(editor.date(0), october(2));
    EXPECT_EQ(editor.value(1, 1), 3.5);
    EXPECT_EQ(editor.value(1, 10), 0.75);
    EXPECT_FALSE(editor.set_value(1, 1, 9.0));
    EXPECT_FALSE(editor.set_value(1, 10, 9.0));
    EXPECT_EQ(refused([&] { editor.mass_edit(MassEdit::Add, 10, 0, 1, 1.0F); }), StoreFault::ReadOnly);
    EXPECT_FALSE(editor.changed());
}

// Columns.

std::vector<std::string> headers(DataView view) {
    std::vector<std::string> texts;
    for (const DailyColumn& column : daily_columns(view, daily_fields(view))) texts.push_back(column.header);
    return texts;
}

TEST(DailyColumns, SnowCoverOfTheDailyVariablesIsHeadedCDC) {
    EXPECT_THAT(headers(DataView::PhysicalData),
                ElementsAre("Date", "Runoff", "Tmax", "Tmin", "Tavg", "CDC", "Precip", "NetRadiation"));
}

TEST(DailyColumns, ParametersAreHeadedByTheirFields) {
    EXPECT_THAT(headers(DataView::Parameters), ElementsAre("Date", "LapseRate", "Tcrit", "AN", "LagTime",
                                                           "CS", "Cr", "RCA", "Xcoeff", "Ycoeff"));
}

TEST(DailyColumns, SnowCoverAndNewMeltOfTheResultsAreHeadedByTheirSymbols) {
    const auto texts = headers(DataView::Results);
    // Field n of the table is in column n - 1, counted from 1; `texts` counts from 0.
    EXPECT_EQ(texts.at(1), "ActualQ");
    EXPECT_EQ(texts.at(10), "CDC");
    EXPECT_EQ(texts.at(11), "CDCCC");
    EXPECT_EQ(texts.at(12), "CDCclim");
    EXPECT_EQ(texts.at(14), "CDCclimWAMA");
    EXPECT_EQ(texts.at(40), "M·(1-S)");
    EXPECT_EQ(texts.at(55), "AZMwork");
}

TEST(DailyColumns, AScenarioHas17ColumnsInTheOrderOfTheRun) {
    EXPECT_THAT(headers(DataView::Scenario),
                ElementsAre("Date", "Runoff", "TMax", "Tmin", "Tavg", "Precip", "SCA", "NetRadiation",
                            "LapseRate", "Tcrit", "AN", "LagTime", "CS", "cr", "RCA", "Xcoeff", "Ycoeff"));
}

TEST(DailyColumns, NumbersShowTwoDecimalsRecessionCoefficientsFourAndSwitchesNone) {
    for (const DataView view : {DataView::Parameters, DataView::Results, DataView::Scenario}) {
        for (const DailyColumn& column : daily_columns(view, daily_fields(view))) {
            const bool whole = column.field == "Date" || column.field == "RCA" || column.field == "RCACC";
            const bool recession = column.field.starts_with("X") || column.field.starts_with("Y");
            EXPECT_EQ(column.decimals, whole ? 0 : recession ? 4 : 2) << column.field;
        }
    }
}

TEST(DailyColumns, HaveTheTypesOfTheirFields) {
    const auto columns = daily_columns(DataView::Scenario, daily_fields(DataView::Scenario));
    EXPECT_EQ(columns[0].type, FieldType::Date);
    EXPECT_EQ(columns[1].type, FieldType::Single);
    EXPECT_EQ(columns[14].type, FieldType::Integer);
    EXPECT_EQ(columns[15].type, FieldType::Double);
    EXPECT_EQ(columns[16].type, FieldType::Double);
}

}  // namespace
}  // namespace nivora
